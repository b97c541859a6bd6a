#define LOG_TAG "qeltvd"

#include "Agent.h"

#include <cstring>

#include "Code.h"
#include "Stored.h"

namespace qeltvd {

namespace {

constexpr char kOperatorKey[] = "mds.operator";
constexpr char kFirstOperator[] = "broadcast";

}  // namespace

std::vector<int32_t> Agent::exchange(const std::vector<int32_t>& words) {
    if (words.empty()) return {kBadValue};
    switch (words[0]) {
        case QELTV_HTML_ECHO: {
            std::vector<int32_t> reply = words;
            reply[0] = kOk;
            return reply;
        }
        case QELTV_HTML_STORE: {
            if (words.size() < 2 || words.size() > 2 + kWordLimit) return {kBadValue};
            std::lock_guard<std::mutex> guard(mLock);
            if (mKept.size() >= kKeyLimit && mKept.count(words[1]) == 0) return {kRefused};
            mKept[words[1]].assign(words.begin() + 2, words.end());
            return {kOk};
        }
        case QELTV_HTML_LOAD: {
            if (words.size() < 2) return {kBadValue};
            std::lock_guard<std::mutex> guard(mLock);
            const auto found = mKept.find(words[1]);
            if (found == mKept.end()) return {kNotFound};
            std::vector<int32_t> reply{kOk, static_cast<int32_t>(found->second.size())};
            reply.insert(reply.end(), found->second.begin(), found->second.end());
            return reply;
        }
        case QELTV_HTML_POST: {
            if (words.size() < 2 || words.size() > 2 + kWordLimit) return {kBadValue};
            android::hardware::hidl_vec<uint8_t> data((words.size() - 2) * sizeof(int32_t));
            if (data.size() != 0) memcpy(data.data(), words.data() + 2, data.size());
            mNotifier.notify(&Notifier::Callback::a_hidl_qeltvapi_html_agent_callback, words[1],
                             uint64_t{0}, data);
            return {kOk};
        }
        default:
            return {kBadValue};
    }
}

int32_t Agent::setOperator(const std::string& name) {
    if (name.empty() || name.size() > kOperatorLimit) return kBadValue;
    const int32_t code = stored([&] {
        mSettings.set(kOperatorKey, name);
        return kOk;
    });
    if (code != kOk) return code;
    const std::string text = "operator=" + name;
    mNotifier.notify(&Notifier::Callback::a_hidl_qeltvapi_mds_msg_callback, uint64_t{0},
                     android::hardware::hidl_string(text), static_cast<uint32_t>(text.size()));
    return kOk;
}

int32_t Agent::value(const std::string& key, std::string* text) const {
    if (key == "operator") {
        return stored([&] {
            *text = mSettings.text(kOperatorKey);
            if (text->empty()) *text = kFirstOperator;
            return kOk;
        });
    }
    const auto channel = mChannels.current();
    if (!channel) return kNotFound;
    if (key == "channel.id") {
        *text = std::to_string(channel->channelId);
    } else if (key == "channel.name") {
        *text = channel->name;
    } else if (key == "channel.number") {
        *text = std::to_string(channel->number);
    } else {
        return kNotFound;
    }
    return kOk;
}

}  // namespace qeltvd
