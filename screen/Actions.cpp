#include "Actions.h"

#include <map>

#include "hw_qeltvapi_apptv.h"
#include "hw_qeltvapi_broadcast.h"
#include "hw_qeltvapi_eas.h"
#include "hw_qeltvapi_inputsource.h"
#include "hw_qeltvapi_multiview.h"
#include "hw_qeltvapi_pvr_browser.h"
#include "hw_qeltvapi_pwddlg.h"
#include "hw_qeltvapi_record.h"
#include "hw_qeltvapi_scan.h"
#include "hw_qeltvapi_subtitle.h"
#include "layouts/presentation.h"
#include "layouts/rating.h"
#include "layouts/record.h"
#include "layouts/scan.h"

namespace screen {
namespace {

using Json = nlohmann::json;

// A name and the function of that name.
#define FUNCTION(name) #name, name

int64_t number(const Json& request, const char* name, int64_t lowest, int64_t highest) {
    const auto found = request.find(name);
    if (found == request.end() || !found->is_number_integer()) {
        throw BadRequest(std::string(name) + " is missing or no whole number");
    }
    // Values above the signed ones would wrap around.
    if (found->is_number_unsigned() && found->get<uint64_t>() > INT64_MAX) {
        throw BadRequest(std::string(name) + " is out of range");
    }
    const auto value = found->get<int64_t>();
    if (value < lowest || value > highest) {
        throw BadRequest(std::string(name) + " is out of range");
    }
    return value;
}

std::string text(const Json& request, const char* name, size_t longest) {
    const auto found = request.find(name);
    if (found == request.end() || !found->is_string() ||
        found->get_ref<const std::string&>().size() > longest) {
        throw BadRequest(std::string(name) + " is missing, no text or too long");
    }
    return *found;
}

int64_t key(Model& model, const Json& request) {
    const auto code = static_cast<int32_t>(number(request, "key", 0, 1000));
    return model.television().call(FUNCTION(a_qeltvapi_broadcast_key_handler), std::to_string(code),
                                   code);
}

int64_t select(Model& model, const Json& request) {
    const auto channel = static_cast<uint32_t>(number(request, "channel", 1, UINT32_MAX));
    const auto path = static_cast<int32_t>(number(request, "path", 0, QELTV_PATHS - 1));
    return model.television().call(
            FUNCTION(a_qeltvapi_broadcast_select_channel),
            "0, " + std::to_string(channel) + ", " + std::to_string(path) + ", 1", 0,
            static_cast<int32_t>(channel), path, path == 0 ? 1 : 0);
}

int64_t input(Model& model, const Json& request) {
    const auto id = static_cast<int32_t>(number(request, "input", 0, 254));
    const auto path = number(request, "path", 0, QELTV_PATHS - 1);
    const char* const name = path == 0 ? "main" : "sub";
    return model.television().call(FUNCTION(a_qeltvapi_inputsource_changesource_bysourceidandpath),
                                   std::to_string(id) + ", " + name, id, name);
}

int64_t view(Model& model, const Json& request) {
    const auto mode =
            static_cast<int32_t>(number(request, "mode", QELTV_TV_NORMAL, QELTV_TV_SIDE_BY_SIDE));
    return model.television().call(FUNCTION(a_qeltvapi_multiview_setNewTvMode),
                                   std::to_string(mode), mode);
}

int64_t pin(Model& model, const Json& request) {
    const std::string given = text(request, "pin", 16);
    const Television& television = model.television();
    // The PIN is in no list of calls.
    const int64_t answer =
            television.call(FUNCTION(a_qeltvapi_PWDDLG_checkPWD), "****", given.c_str());
    if (answer == QELTV_PIN_RIGHT &&
        model.shown().paths[0].connection.error == QELTV_TUNING_BLOCKED) {
        television.call(FUNCTION(a_qeltvapi_apptv_unlock_service), "main", "main");
    }
    model.pinJudged(answer == QELTV_PIN_RIGHT);
    return answer;
}

int64_t closePin(Model& model, const Json& /*request*/) {
    model.closePin();
    return 0;
}

int64_t teletext(Model& model, const Json& request) {
    const std::string page = text(request, "page", 3);
    char* end = nullptr;
    const unsigned long wanted = strtoul(page.c_str(), &end, 16);
    if (!page.empty() && (page.size() != 3 || *end != '\0' || wanted < 0x100 || wanted > 0x8ff)) {
        throw BadRequest("a page is 100 to 899");
    }
    model.showTeletext(static_cast<uint32_t>(wanted));
    return 0;
}

int64_t subtitle(Model& model, const Json& /*request*/) {
    const int64_t code = model.television().call(FUNCTION(a_qeltvapi_subtitle_set_next), "");
    model.wake();
    return code;
}

int64_t record(Model& model, const Json& /*request*/) {
    const Television& television = model.television();
    if (model.shown().passing.recording) {
        const int64_t handle =
                television.call(FUNCTION(a_qeltvapi_record_pvr_get_current_handle), "");
        const auto recording = static_cast<uint32_t>(handle);
        const std::string shown = std::to_string(recording);
        const int64_t code =
                television.call(FUNCTION(a_qeltvapi_record_pvr_stop), shown, recording);
        television.call(FUNCTION(a_qeltvapi_record_pvr_close), shown, recording);
        return code;
    }
    const int64_t handle =
            television.call(FUNCTION(a_qeltvapi_record_pvr_open_ex), "0, 1", uint32_t{0}, 1);
    return handle;
}

int64_t deleteRecording(Model& model, const Json& request) {
    const auto index = static_cast<uint32_t>(number(request, "index", 0, UINT32_MAX));
    return model.television().call(FUNCTION(a_qeltvapi_mmp_pvr_browser_delete_file_by_index),
                                   std::to_string(index), index);
}

int64_t book(Model& model, const Json& request) {
    QELTV_SCHEDULE_RECORD_T booking{};
    booking.channel = static_cast<uint32_t>(number(request, "channel", 1, UINT32_MAX));
    booking.start = number(request, "start", 0, INT64_MAX);
    booking.seconds = static_cast<uint32_t>(number(request, "seconds", 1, 86400));
    const std::string title = text(request, "title", 512);
    title.copy(booking.programme, sizeof(booking.programme) - 1);
    return model.television().call(
            FUNCTION(a_qeltvapi_set_schedule_record),
            std::to_string(booking.channel) + " at " + std::to_string(booking.start),
            static_cast<const void*>(&booking), 0u);
}

int64_t scan(Model& model, const Json& /*request*/) {
    const int64_t code = model.shown().scans
                                 ? model.television().call(FUNCTION(a_qeltvapi_cancel_scan), "")
                                 : model.television().call(FUNCTION(a_qeltvapi_start_scan),
                                                           "full, 0", uint64_t{QELTV_SCAN_FULL}, 0);
    model.wake();
    return code;
}

int64_t leaveAlert(Model& model, const Json& /*request*/) {
    return model.television().call(
            FUNCTION(a_qeltvapi_eas_set_android_exit_eas_no_change_channel_status), "1", 1);
}

#undef FUNCTION

using Action = int64_t (*)(Model&, const Json&);

const std::map<std::string, Action>& actions() {
    static const auto& all = *new std::map<std::string, Action>{
            {"key", key},
            {"select", select},
            {"input", input},
            {"view", view},
            {"pin", pin},
            {"close pin", closePin},
            {"teletext", teletext},
            {"subtitle", subtitle},
            {"record", record},
            {"delete recording", deleteRecording},
            {"book", book},
            {"scan", scan},
            {"leave alert", leaveAlert},
    };
    return all;
}

}  // namespace

int64_t act(Model& model, const std::string& body) {
    const Json request = Json::parse(body, nullptr, false);
    if (!request.is_object()) throw BadRequest("the request is no JSON object");
    const auto found = actions().find(text(request, "do", 32));
    if (found == actions().end()) throw BadRequest("there is no such action");
    return found->second(model, request);
}

}  // namespace screen
