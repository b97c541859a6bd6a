#include "faulty_service.h"

#include <cutils/native_handle.h>
#include <fcntl.h>
#include <hidl/HidlSupport.h>
#include <unistd.h>
#include <vendor/qelnova/tv/qeltvapi/1.0/IQelTvApi.h>

#include <algorithm>
#include <chrono>
#include <map>
#include <mutex>
#include <thread>
#include <vector>

#include "transactions.h"

namespace wire {

using android::OK;
using android::sp;
using android::status_t;
using android::hardware::IBinder;
using android::hardware::Parcel;
using hidlhost::RawCall;
using transactions::Json;
using transactions::Kind;

namespace {

constexpr uint32_t kDescriptor = 0x0f445343;
constexpr int32_t kRefused = -5;
/** Longer than the limit of a call that the tests set. */
constexpr std::chrono::seconds kHang{2};

std::string descriptorOf(const std::string& name) {
    const std::string main = vendor::qelnova::tv::qeltvapi::V1_0::IQelTvApi::descriptor;
    return main.substr(0, main.rfind(':') + 1) + name;
}

std::string zeros(size_t bytes) {
    return std::string(bytes * 2, '0');
}

/** Names another interface than its own. */
class Misnamed : public hidlhost::RawService {
  public:
    using RawService::RawService;
    status_t onTransact(uint32_t code, const Parcel& data, Parcel* reply, uint32_t flags,
                        TransactCallback callback) override {
        if (code != kDescriptor) {
            return RawService::onTransact(code, data, reply, flags, std::move(callback));
        }
        hidlhost::writeOk(reply);
        hidlhost::writeString(reply, "x.y@1.0::IOther");
        return OK;
    }
};

}  // namespace

struct FaultyService::State : std::enable_shared_from_this<State> {
    explicit State(std::string theFault) : fault(std::move(theFault)) {}

    bool has(const char* name) const { return fault == name; }

    sp<hidlhost::RawService> object(const transactions::Interface& interface) {
        const std::string name = descriptorOf(interface.name);
        const auto handler = [this, &interface](const RawCall& call, Parcel* reply) {
            return serve(interface, call, reply);
        };
        const bool first = interface.name == std::string("IQelTvApiTime");
        if (first && has("interfaces.descriptor")) {
            return new Misnamed(std::vector<std::string>{name}, handler);
        }
        const bool other = first && has("interfaces.chain");
        return new hidlhost::RawService({other ? "x.y@1.0::IOther" : name}, handler);
    }

    void start() {
        for (const auto& interface : transactions::interfaces()) {
            const std::string name = interface.name;
            if (name == "IQelTvApiCallback") continue;
            if (name == "IQelTvApiTime" && has("interfaces.registered")) continue;
            host.add(descriptorOf(name), "default", object(interface));
        }
    }

    status_t serve(const transactions::Interface& interface, const RawCall& call, Parcel* reply) {
        if (call.interface != descriptorOf(interface.name)) return android::BAD_TYPE;
        const size_t index = call.code - 1;
        if (index >= interface.methods.size()) {
            hidlhost::writeOk(reply);
            return has("methods.beyond") ? OK : android::UNKNOWN_TRANSACTION;
        }
        const transactions::Method& method = interface.methods[index];
        const std::string name = std::string(method.name).substr(strlen("a_hidl_"));
        if (name == "registerCallbackHandler") return registered(call, reply);
        Json arguments;
        try {
            arguments = transactions::read(method.parameters, call.arguments);
        } catch (const transactions::Malformed&) {
            if (has("hostile.malformed")) std::this_thread::sleep_for(kHang);
            if (has("hostile.identity")) {
                host.add(descriptorOf(interface.name), "default", object(interface));
            }
            return android::BAD_VALUE;
        }
        if (name == "qeltvapi_config_is_visible") {
            const uint32_t edge = arguments["selector"].get<uint32_t>();
            if (has("hostile.values") && edge == UINT32_MAX) return android::FAILED_TRANSACTION;
            if (has("death") && edge == UINT32_MAX) host.kill();
            if (has("methods.answer")) return android::FAILED_TRANSACTION;
        }
        Json results = transactions::zerosOf(method.results);
        refuse(method, &results);
        const status_t status = answer(name, call, arguments, &results);
        if (status != OK) return status;
        hidlhost::writeOk(reply);
        transactions::Files files;
        transactions::write(method.results, results, reply, &files);
        if (has("methods.shape") && name == "qeltvapi_config_is_visible") reply->writeInt32(1);
        return OK;
    }

    void refuse(const transactions::Method& method, Json* results) const {
        if (method.results.size() < 2) return;
        const auto& last = method.results.back();
        if (last.type->kind == Kind::kInt32 || last.type->kind == Kind::kInt16) {
            (*results)[last.name] = has("results.codes") ? -1 : kRefused;
        }
    }

    /** The methods that this service has. */
    status_t answer(const std::string& name, const RawCall& call, const Json& arguments,
                    Json* results) {
        Json& to = *results;
        if (arguments.contains("room") && to.contains("block")) {
            to["block"] =
                    zeros(static_cast<size_t>(std::max(0, arguments["room"].get<int>())) % 100'000);
        } else if (name == "qeltvapi_channellist_get_current_channel") {
            to["svl"] = zeros(has("results.records") ? 395 : 396);
            to["tsl"] = zeros(628);
            to["result"] = 0;
        } else if (name == "qeltvapi_get_current_audio_info") {
            to["data"] = zeros(has("results.layouts") ? 7 : 24);
            to["r"] = 0;
        } else if (name == "qeltvapi_screenmode_get_all_screen_mode") {
            const size_t most = has("results.capacity") ? 3 : arguments["capacity"].get<size_t>();
            to["modes"] = Json(std::min<size_t>(3, most), 7);
            to["count"] = to["modes"].size();
            to["r"] = 0;
        } else if (name == "qeltvapi_config_get_str_value") {
            to["value"] = has("results.texts") ? std::string("te\0t", 4) : "text";
            to["n"] = has("results.counts") ? 5 : 4;
            to["code"] = 0;
        } else if (name == "qeltvapi_config_get_value") {
            std::lock_guard<std::mutex> guard(lock);
            to["value"] = items[arguments["name"].dump()];
            to["code"] = 0;
        } else if (name == "qeltvapi_config_add_value_changed_callback") {
            to["code"] = 0;
        } else if (name == "qeltvapi_config_set_value") {
            change(arguments);
            to["code"] = 0;
        } else if (name == "qeltvapi_tvprovider_get_all_svlid") {
            return listIds(call, arguments, results);
        }
        return OK;
    }

    status_t listIds(const RawCall& call, const Json& arguments, Json* results) {
        // Read already, up to the handle that is read once more here.
        call.arguments.setDataPosition(0);
        call.arguments.readCString();
        const native_handle_t* handle = nullptr;
        size_t capacity = arguments["capacity"].get<size_t>();
        if (arguments["mem"].is_null()) {
            return has("memory.handles") ? android::FAILED_TRANSACTION : OK;
        }
        if (call.arguments.readNativeHandleNoDup(&handle) != OK || handle->numFds < 1) return OK;
        if (has("memory.released")) (void)fcntl(handle->data[0], F_DUPFD_CLOEXEC, 0);
        size_t count = std::min<size_t>(capacity, 3);
        const std::vector<uint16_t> ids(capacity + 1, 1);
        const size_t written = has("memory.bounds") ? capacity + 1 : count;
        const auto bytes = static_cast<ssize_t>(written * sizeof(uint16_t));
        if (pwrite(handle->data[0], ids.data(), static_cast<size_t>(bytes), 0) != bytes) return OK;
        if (has("memory.counts") && count != 0) --count;
        (*results)["count"] = count;
        (*results)["result"] = 0;
        return OK;
    }

    status_t registered(const RawCall& call, Parcel* reply) {
        sp<IBinder> object;
        if (call.arguments.readNullableStrongBinder(&object) != OK) return android::BAD_VALUE;
        std::lock_guard<std::mutex> guard(lock);
        const bool known = std::find(objects.begin(), objects.end(), object) != objects.end();
        const bool more = objects.empty() || !has("callbacks.processes");
        if (object != nullptr && more && (!known || has("callbacks.once"))) {
            objects.push_back(object);
        }
        hidlhost::writeOk(reply);
        return OK;
    }

    void change(const Json& arguments) {
        std::vector<sp<IBinder>> all;
        {
            std::lock_guard<std::mutex> guard(lock);
            int32_t& value = items[arguments["name"].dump()];
            if (value == arguments["value"].get<int32_t>()) return;
            value = arguments["value"].get<int32_t>();
            if (!has("callbacks.notified")) all = objects;
        }
        // The newest first.
        std::reverse(all.begin(), all.end());
        const std::string name = arguments["name"].is_string() ? arguments["name"] : Json("");
        for (const auto& object : all) {
            if (has("callbacks.hanging")) {
                notify(object, name);
            } else if (has("callbacks.death")) {
                if (!notify(object, name)) break;
            } else {
                std::thread([self = shared_from_this(), object, name] {
                    if (!self->notify(object, name)) self->forget(object);
                }).detach();
            }
        }
    }

    bool notify(const sp<IBinder>& object, const std::string& name) const {
        static const transactions::Interface& callback =
                *transactions::findInterface("IQelTvApiCallback");
        for (const auto& method : callback.methods) {
            if (method.name != std::string("a_hidl_config_update_nfy_fct")) continue;
            Json values = transactions::zerosOf(method.parameters);
            values["name"] = name;
            transactions::Files files;
            Parcel reply;
            const auto code = static_cast<uint32_t>(&method - callback.methods.data()) + 1;
            return hidlhost::rawCall(
                           object, descriptorOf(callback.name), code,
                           [&](Parcel* parcel) {
                               transactions::write(method.parameters, values, parcel, &files);
                               if (has("callbacks.shape")) parcel->writeInt32(7);
                           },
                           &reply) == OK;
        }
        return false;
    }

    void forget(const sp<IBinder>& object) {
        std::lock_guard<std::mutex> guard(lock);
        objects.erase(std::remove(objects.begin(), objects.end(), object), objects.end());
    }

    const std::string fault;
    std::mutex lock;
    std::vector<sp<IBinder>> objects;
    std::map<std::string, int32_t> items;
    hidlhost::RawHost host;
};

FaultyService::FaultyService(const std::string& fault) : mState(std::make_shared<State>(fault)) {
    mState->start();
}

FaultyService::~FaultyService() {
    mState->host.kill();
}

}  // namespace wire
