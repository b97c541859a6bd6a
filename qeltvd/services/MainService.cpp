#define LOG_TAG "qeltvd"

#include "MainService.h"

#include <hwbinder/IPCThreadState.h>
#include <log/log.h>
#include <unistd.h>

#include <nlohmann/json.hpp>

#include "Code.h"
#include "Inputs.h"
#include "Notifier.h"
#include "Presentation.h"
#include "Raise.h"

namespace qeltvd {

namespace {

const char* nameOf(Fault::Kind kind) {
    switch (kind) {
        case Fault::Kind::kDie:
            return "die";
        case Fault::Kind::kLose:
            return "lose";
        case Fault::Kind::kCode:
            return "code";
        case Fault::Kind::kDelay:
            return "delay";
    }
    return "";
}

/** All of a word as a number of a control command. */
long long numberIn(const std::string& word, long long minimum, long long maximum) {
    size_t used = 0;
    long long number = 0;
    try {
        number = std::stoll(word, &used);
    } catch (const std::logic_error&) {
        used = 0;
    }
    if (used == 0 || used != word.size() || number < minimum || number > maximum) {
        throw std::invalid_argument(word + " is no number from " + std::to_string(minimum) +
                                    " to " + std::to_string(maximum));
    }
    return number;
}

/** "none", "die", "lose", "code N" or "delay MS"; behind each "times N" may follow. */
std::optional<Fault> faultIn(std::vector<std::string> words) {
    std::optional<uint32_t> times;
    if (words.size() >= 3 && words[words.size() - 2] == "times") {
        times = static_cast<uint32_t>(numberIn(words.back(), 0, UINT32_MAX));
        words.resize(words.size() - 2);
    }
    if (words == std::vector<std::string>{"none"}) return std::nullopt;
    if (words == std::vector<std::string>{"die"}) return Fault{Fault::Kind::kDie, 0, 1};
    if (words == std::vector<std::string>{"lose"})
        return Fault{Fault::Kind::kLose, 0, times.value_or(1)};
    if (words.size() == 2 && words[0] == "code") {
        return Fault{Fault::Kind::kCode, numberIn(words[1], INT32_MIN, INT32_MAX),
                     times.value_or(0)};
    }
    if (words.size() == 2 && words[0] == "delay") {
        return Fault{Fault::Kind::kDelay, numberIn(words[1], 0, 3'600'000), times.value_or(0)};
    }
    throw std::invalid_argument("no such fault");
}

}  // namespace

MainService::MainService(const Models& models, Switchboard& switchboard)
        : mModels(models), mSwitchboard(switchboard) {}

Return<void> MainService::a_hidl_registerCallbackHandler(
        const android::sp<IQelTvApiCallback>& callback) {
    if (callback != nullptr) {
        mModels.notifier.add(callback, android::hardware::IPCThreadState::self()->getCallingPid());
    }
    return Void();
}

Return<void> MainService::debug(const Handle& fd, const Vector<String>& options) {
    const native_handle_t* handle = fd.getNativeHandle();
    if (handle == nullptr || handle->numFds < 1) return Void();
    const std::vector<std::string> words(options.begin(), options.end());
    std::string answer;
    try {
        answer = command(words) + "ok\n";
    } catch (const std::exception& e) {
        answer = std::string("error: ") + e.what() + "\n";
    }
    if (!mWriter.write(handle->data[0], answer)) {
        ALOGW("the answer of a command cannot be written: %s", strerror(errno));
    }
    return Void();
}

std::string MainService::command(const std::vector<std::string>& words) {
    if (words.empty() || (words[0] == "dump" && words.size() == 1)) return dump();
    if (words[0] == "raise" && (words.size() == 3 || words.size() == 4)) {
        const auto raised = notification(words[1], nlohmann::json::parse(words[2]));
        const long long times = words.size() == 4 ? numberIn(words[3], 1, 1'000'000) : 1;
        for (long long i = 0; i < times; ++i)
            mModels.notifier.post(raised, Notifier::kEveryProcess, words[2].size());
        return "";
    }
    if (words[0] == "fault" && words.size() >= 3) {
        if (!mSwitchboard.setFault(words[1], faultIn({words.begin() + 2, words.end()}))) {
            throw std::invalid_argument("no method " + words[1]);
        }
        return "";
    }
    if (words[0] == "plug" && words.size() == 3 && (words[2] == "on" || words[2] == "off")) {
        const auto input = static_cast<int32_t>(numberIn(words[1], 0, INT32_MAX));
        if (mModels.inputs.plug(input, words[2] == "on") != kOk) {
            throw std::invalid_argument("no input " + words[1]);
        }
        return "";
    }
    if (words[0] == "reception" && (words.size() == 2 || words.size() == 3)) {
        const auto percent = static_cast<uint32_t>(numberIn(words[1], 0, 100));
        std::optional<uint32_t> kHz;
        if (words.size() == 3) kHz = static_cast<uint32_t>(numberIn(words[2], 1, UINT32_MAX));
        mModels.presentation.setReception(percent, kHz);
        return "";
    }
    if (words[0] == "die" && words.size() == 1) {
        ALOGW("ends, as asked");
        _exit(3);
    }
    throw std::invalid_argument("no such command");
}

std::string MainService::dump() const {
    nlohmann::ordered_json dump;
    dump["pid"] = getpid();
    dump["standby"] = mModels.power.standby();
    dump["clients"] = nlohmann::json::array();
    for (const auto& client : mModels.notifier.clients()) {
        dump["clients"].push_back({{"id", client.id},
                                   {"pid", client.pid},
                                   {"registrations", client.registrations},
                                   {"delivered", client.delivered},
                                   {"lost", client.lost},
                                   {"waiting", client.waiting}});
    }
    dump["methods"] = nlohmann::json::array();
    for (const auto& method : mSwitchboard.methods()) {
        nlohmann::ordered_json entry{{"interface", method.interface},
                                     {"method", method.method},
                                     {"calls", method.calls}};
        if (method.fault) {
            entry["fault"] = nameOf(method.fault->kind);
            entry["value"] = method.fault->value;
            entry["times"] = method.fault->times;
        }
        dump["methods"].push_back(entry);
    }
    return dump.dump(2) + "\n";
}

}  // namespace qeltvd
