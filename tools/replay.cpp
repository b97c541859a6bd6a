#include <hidlhost/raw_service.h>

#include <cerrno>
#include <cstring>
#include <fstream>
#include <map>
#include <memory>
#include <optional>
#include <regex>

#include "hw_qeltvapi_common.h"
#include "tool.h"
#include "transaction_text.h"
#include "transactions.h"

namespace tool {
namespace {

using android::sp;
using android::status_t;
using android::hardware::IBinder;
using android::hardware::Parcel;
using transactions::Json;

/** The full name of an interface of the package. */
std::string descriptorOf(const std::string& interface) {
    const std::string main = vendor::qelnova::tv::qeltvapi::V1_0::IQelTvApi::descriptor;
    return main.substr(0, main.rfind(':') + 1) + interface;
}

/** Makes the recorded calls and compares their results. */
class Replay {
  public:
    void line(const std::string& place, const Json& line) {
        const std::string interface = line.value("interface", "");
        const std::string method = line.value("method", "");
        const transactions::Interface* found = transactions::findInterface(interface);
        uint32_t code = 0;
        if (found != nullptr && interface != "IQelTvApiCallback") {
            for (size_t i = 0; i < found->methods.size(); ++i) {
                if (method == found->methods[i].name) code = static_cast<uint32_t>(i) + 1;
            }
        }
        if (code == 0 || line.contains("malformed") || !line.contains("arguments")) {
            ++mLeftOut;
            return;
        }
        const transactions::Method& called = found->methods[code - 1];
        for (const transactions::Value& value : called.parameters) {
            if (value.type->kind == transactions::Kind::kObject) {
                ++mLeftOut;
                return;
            }
        }

        const sp<IBinder> service = find(interface);
        transactions::Files files;
        Parcel reply;
        status_t status = android::OK;
        try {
            status = hidlhost::rawCall(
                    service, descriptorOf(interface), code,
                    [&](Parcel* arguments) {
                        transactions::write(called.parameters, line["arguments"], arguments,
                                            &files);
                    },
                    &reply);
        } catch (const transactions::Malformed& e) {
            throw Failure(kUsage, place + ": " + methodText(line) + ": " + e.what());
        }
        ++mMade;
        // A service that is gone may be there again.
        if (status == android::DEAD_OBJECT) mServices.clear();
        compare(place, line, called, status, reply);
    }

    void leaveOut() { ++mLeftOut; }

    void finish() const {
        printf("%zu calls made, %zu with differences, %zu lines left out\n", mMade, mDifferent,
               mLeftOut);
        if (mDifferent != 0) throw Failure(kRefused, "");
    }

  private:
    sp<IBinder> find(const std::string& interface) {
        sp<IBinder>& service = mServices[interface];
        if (service == nullptr) service = hidlhost::findRaw(descriptorOf(interface), "default");
        if (service == nullptr) {
            throw Failure(kUnreachable, "no service has the interface " + interface);
        }
        return service;
    }

    void compare(const std::string& place, const Json& line, const transactions::Method& called,
                 status_t status, const Parcel& reply) {
        Json results = nullptr;
        std::string failure = status == android::OK ? "" : android::statusToString(status);
        int32_t exception = 0;
        if (failure.empty()) {
            try {
                if (reply.readInt32(&exception) != android::OK || exception != 0) {
                    failure = "exception " + std::to_string(exception);
                } else {
                    results = transactions::read(called.results, reply);
                }
            } catch (const transactions::Malformed& e) {
                failure = e.what();
            }
        }
        std::string differences;
        const auto differ = [&](const std::string& name, const std::string& before,
                                const std::string& now) {
            if (before != now) {
                differences += "    " + name + ": recorded " + printable(before) + ", replayed " +
                               printable(now) + "\n";
            }
        };
        const std::string recordedFailure = line.value("status", "");
        differ("status", recordedFailure.empty() ? "OK" : recordedFailure,
               failure.empty() ? "OK" : failure);
        if (failure.empty() && recordedFailure.empty()) {
            const Json recorded = line.value("results", Json::object());
            for (const auto& [name, value] : results.items()) {
                differ(name, recorded.contains(name) ? jsonText(recorded[name]) : "nothing",
                       jsonText(value));
            }
        }
        if (differences.empty()) return;
        ++mDifferent;
        printf("%s  %s%s\n%s", place.c_str(), methodText(line).c_str(),
               valuesText(line["arguments"]).c_str(), differences.c_str());
    }

    std::map<std::string, sp<IBinder>> mServices;
    size_t mMade = 0;
    size_t mDifferent = 0;
    size_t mLeftOut = 0;
};

void replay(const std::string& path, const std::string& match) {
    std::ifstream file(path);
    if (!file) throw Failure(kUsage, path + " cannot be read: " + strerror(errno));
    std::optional<std::regex> wanted;
    try {
        if (!match.empty()) wanted = std::regex(match, std::regex::extended);
    } catch (const std::regex_error&) {
        throw Failure(kUsage, "\"" + match + "\" is no regular expression");
    }
    Replay replay;
    size_t number = 0;
    for (std::string text; std::getline(file, text);) {
        const std::string place = path + ":" + std::to_string(++number);
        if (text.empty()) continue;
        const Json line = Json::parse(text, nullptr, false);
        if (!line.is_object()) {
            throw Failure(kUsage, place + ": no JSON object; monitor --record writes such files");
        }
        try {
            if (wanted && !std::regex_search(methodText(line), *wanted)) {
                replay.leaveOut();
            } else {
                replay.line(place, line);
            }
        } catch (const Json::exception& e) {
            throw Failure(kUsage, place + ": " + e.what());
        }
    }
    if (file.bad()) throw Failure(kUsage, path + " cannot be read: " + strerror(errno));
    replay.finish();
}

}  // namespace

void addReplay(Command& app) {
    struct Options {
        std::string file, match;
    };
    auto options = std::make_shared<Options>();
    Command* command = app.addCommand("replay",
                                      "Make the calls of a file of \"monitor --record\" and show "
                                      "which results differ; exit status 1 if any does");
    command->addOption("file", options->file, "The file")->required();
    command->addOption("--match", options->match,
                       "Only methods that this extended regular expression matches, as "
                       "IQelTvApiConfig.config_get");
    command->callback([options] { replay(options->file, options->match); });
}

}  // namespace tool
