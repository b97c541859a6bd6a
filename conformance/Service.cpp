#include "Service.h"

#include <android/hidl/manager/1.0/IServiceManager.h>
#include <dirent.h>
#include <hidl/ServiceManagement.h>
#include <hidlhost/raw_service.h>
#include <vendor/qelnova/tv/qeltvapi/1.0/IQelTvApi.h>

#include <chrono>
#include <memory>
#include <stdexcept>
#include <thread>

#include "printable.h"

namespace conformance {

using android::OK;
using android::status_t;
using android::hardware::Parcel;

namespace {

constexpr uint32_t kPing = 0x0f504e47;
/** Characters of a value in a report. */
constexpr size_t kLongest = 60;

pid_t processOf(const std::vector<Target>& targets) {
    pid_t process = 0;
    const auto manager = android::hardware::defaultServiceManager();
    if (manager == nullptr) return 0;
    (void)manager
            ->debugDump([&](const auto& services) {
                for (const auto& service : services) {
                    for (const Target& target : targets) {
                        if (target.object != nullptr &&
                            service.interfaceName == target.descriptor) {
                            process = service.pid;
                        }
                    }
                }
            })
            .isOk();
    return process > 0 ? process : 0;
}

}  // namespace

std::string descriptorOf(const std::string& interface) {
    const std::string main = vendor::qelnova::tv::qeltvapi::V1_0::IQelTvApi::descriptor;
    return main.substr(0, main.rfind(':') + 1) + interface;
}

std::string Reply::statusText() const {
    if (status != OK) return android::statusToString(status);
    return exception != 0 ? "exception " + std::to_string(exception) : "an answer";
}

Service::Service(const std::vector<std::string>& names) {
    for (const std::string& name : names) {
        const std::string descriptor = descriptorOf(name);
        mTargets.push_back({transactions::findInterface(name), descriptor,
                            hidlhost::findRaw(descriptor, "default")});
    }
    mProcess = processOf(mTargets);
}

const Target* Service::find(const std::string& interface) const {
    for (const Target& target : mTargets) {
        if (interface == target.interface->name && target.object != nullptr) return &target;
    }
    return nullptr;
}

std::optional<size_t> Service::descriptors() const {
    if (mProcess == 0) return std::nullopt;
    const std::string path = "/proc/" + std::to_string(mProcess) + "/fd";
    const std::unique_ptr<DIR, int (*)(DIR*)> directory(opendir(path.c_str()), closedir);
    if (directory == nullptr) return std::nullopt;
    size_t count = 0;
    while (const dirent* entry = readdir(directory.get())) {
        if (entry->d_name[0] != '.') ++count;
    }
    return count;
}

std::optional<size_t> Service::awaitDescriptors(size_t limit) const {
    std::optional<size_t> count = descriptors();
    for (int i = 0; i < 100 && count && *count > limit; ++i) {
        std::this_thread::sleep_for(std::chrono::milliseconds(50));
        count = descriptors();
    }
    return count;
}

bool Service::alive(const Target& target) {
    Parcel reply;
    return target.object != nullptr &&
           hidlhost::rawCall(target.object, "android.hidl.base@1.0::IBase", kPing, nullptr,
                             &reply) == OK;
}

status_t Service::transact(const Target& target, const std::string& token, uint32_t code,
                           const Writer& write, Parcel* reply) {
    ++mCalls;
    return hidlhost::rawCall(target.object, token, code, write, reply);
}

Reply Service::call(const Target& target, const transactions::Method& method, const Writer& write) {
    Reply reply;
    Parcel parcel;
    reply.status = transact(target, target.descriptor, ordinalOf(*target.interface, method), write,
                            &parcel);
    if (reply.status != OK) return reply;
    if (parcel.readInt32(&reply.exception) != OK) {
        reply.malformed = "nothing, not even a status";
        return reply;
    }
    if (reply.exception != 0) return reply;
    try {
        reply.results = transactions::read(method.results, parcel);
    } catch (const transactions::Malformed&) {
        reply.malformed = "other values";
        return reply;
    }
    if (size_t more = parcel.dataAvail(); more != 0) {
        reply.malformed = std::to_string(more) + " bytes behind the last result";
    }
    return reply;
}

Reply Service::call(const Target& target, const transactions::Method& method,
                    const Json& arguments) {
    transactions::Files files;
    return call(target, method,
                [&](Parcel* parcel) { writeArguments(method, arguments, parcel, &files); });
}

void writeArguments(const transactions::Method& method, const Json& arguments, Parcel* parcel,
                    transactions::Files* files) {
    for (const transactions::Value& value : method.parameters) {
        if (value.type->kind == transactions::Kind::kObject) {
            parcel->writeStrongBinder(nullptr);
        } else {
            transactions::write({value}, arguments, parcel, files);
        }
    }
}

uint32_t ordinalOf(const transactions::Interface& interface, const transactions::Method& method) {
    return static_cast<uint32_t>(&method - interface.methods.data()) + 1;
}

const transactions::Method& methodOf(const transactions::Interface& interface,
                                     const std::string& name) {
    for (const transactions::Method& method : interface.methods) {
        if (name == method.name) return method;
    }
    throw std::logic_error(std::string(interface.name) + " has no method " + name);
}

std::string subjectOf(const Target& target, const transactions::Method& method) {
    const std::string name = method.name;
    return std::string(target.interface->name) + "." +
           (name.compare(0, 7, "a_hidl_") == 0 ? name.substr(7) : name);
}

std::string callText(const Json& arguments) {
    std::string text;
    for (const auto& [name, value] : arguments.items()) {
        std::string shown = value.dump(-1, ' ', false, Json::error_handler_t::replace);
        if (shown.size() > kLongest) {
            shown = shown.substr(0, kLongest) + "... (" + std::to_string(shown.size()) +
                    " characters)";
        }
        text += (text.empty() ? "" : ", ") + name + "=" + shown;
    }
    return "called with (" + text + ")";
}

std::optional<int64_t> codeOf(const transactions::Method& method, const Json& results) {
    if (method.results.empty()) return std::nullopt;
    const transactions::Value& last = method.results.back();
    if (last.type->kind != transactions::Kind::kInt32 &&
        last.type->kind != transactions::Kind::kInt16) {
        return std::nullopt;
    }
    const auto found = results.find(last.name);
    if (found == results.end() || !found->is_number_integer()) return std::nullopt;
    return found->get<int64_t>();
}

bool succeeded(const transactions::Method& method, const Reply& reply) {
    if (!reply.good()) return false;
    const std::optional<int64_t> code = codeOf(method, reply.results);
    return !code || *code >= 0;
}

}  // namespace conformance
