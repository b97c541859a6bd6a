#define LOG_TAG "qeltvd"

#include "MainService.h"

#include <hwbinder/IPCThreadState.h>
#include <log/log.h>
#include <unistd.h>

#include <nlohmann/json.hpp>

#include "Code.h"
#include "Raise.h"

namespace qeltvd {

using android::hardware::hidl_handle;
using android::hardware::hidl_string;
using android::hardware::hidl_vec;
using android::hardware::Void;

namespace {

const char* nameOf(Fault::Kind kind) {
    switch (kind) {
        case Fault::kDie:
            return "die";
        case Fault::kLose:
            return "lose";
        case Fault::kCode:
            return "code";
        case Fault::kDelay:
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

}  // namespace

MainService::MainService(Television& tv, Switchboard& switchboard)
        : IQelTvApiDefault(kUnsupported, false), mTv(tv), mSwitchboard(switchboard) {}

MainService::Return<void> MainService::a_hidl_registerCallbackHandler(
        const android::sp<IQelTvApiCallback>& callback) {
    // The transaction has the pid; a call of the object could wait for the client without a limit.
    if (callback != nullptr) {
        mTv.notifier.add(callback, android::hardware::IPCThreadState::self()->getCallingPid());
    }
    return Void();
}

MainService::Return<void> MainService::debug(const hidl_handle& fd,
                                             const hidl_vec<hidl_string>& options) {
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
            mTv.notifier.post(raised, Notifier::kEveryProcess, words[2].size());
        return "";
    }
    if (words[0] == "fault" && (words.size() == 3 || words.size() == 4)) {
        std::optional<Fault> fault;
        if (words.size() == 3 && words[2] == "die") {
            fault = Fault{Fault::kDie, 0};
        } else if (words.size() == 3 && words[2] == "lose") {
            fault = Fault{Fault::kLose, 0};
        } else if (words.size() == 4 && words[2] == "code") {
            fault = Fault{Fault::kCode, numberIn(words[3], INT32_MIN, INT32_MAX)};
        } else if (words.size() == 4 && words[2] == "delay") {
            fault = Fault{Fault::kDelay, numberIn(words[3], 0, 3'600'000)};
        } else if (words.size() != 3 || words[2] != "none") {
            throw std::invalid_argument("no such fault");
        }
        if (!mSwitchboard.setFault(words[1], fault)) {
            throw std::invalid_argument("no method " + words[1]);
        }
        return "";
    }
    if (words[0] == "plug" && words.size() == 3 && (words[2] == "on" || words[2] == "off")) {
        const auto input = static_cast<int32_t>(numberIn(words[1], 0, INT32_MAX));
        if (mTv.inputs.plug(input, words[2] == "on") != kOk) {
            throw std::invalid_argument("no input " + words[1]);
        }
        return "";
    }
    if (words[0] == "reception" && (words.size() == 2 || words.size() == 3)) {
        const auto percent = static_cast<uint32_t>(numberIn(words[1], 0, 100));
        std::optional<uint32_t> kHz;
        if (words.size() == 3) kHz = static_cast<uint32_t>(numberIn(words[2], 1, UINT32_MAX));
        mTv.presentation.setReception(percent, kHz);
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
    dump["clients"] = nlohmann::json::array();
    for (const auto& client : mTv.notifier.clients()) {
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
        }
        dump["methods"].push_back(entry);
    }
    return dump.dump(2) + "\n";
}

}  // namespace qeltvd
