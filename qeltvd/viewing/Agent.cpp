#define LOG_TAG "qeltvd"

#include "Agent.h"

#include <cstring>

#include "Stored.h"

namespace qeltvd {

namespace {

constexpr char kOperatorKey[] = "mds.operator";
constexpr char kFirstOperator[] = "broadcast";

/** Words of a request before its data: the command and its argument. */
constexpr size_t kHeadWords = 2;

/** An application that starts by itself, and one of HbbTV. */
constexpr uint8_t kAutostart = 1;
constexpr uint16_t kHbbTv = 0x0010;

}  // namespace

Agent::Agent(Settings& settings, Notifier& notifier, const ChannelDatabase& channels,
             Broadcast& broadcast, const Captions& captions)
        : mSettings(settings),
          mNotifier(notifier),
          mChannels(channels),
          mBroadcast(broadcast),
          mCaptions(captions) {
    broadcast.addListener([this](uint32_t changes) {
        // The time changes with what is received.
        constexpr uint32_t kConcern =
                stream::kApplicationsChanged | stream::kServicesChanged | stream::kTimeChanged;
        if ((changes & kConcern) != 0) follow();
    });
}

std::string Agent::applicationUrl() const {
    const auto current = mChannels.current();
    const auto found = current ? mChannels.pair(current->channelId) : std::nullopt;
    if (!found) return "";
    for (const auto& each : mBroadcast.of(found->second)->applications(found->first)) {
        if (each.type == kHbbTv && each.control == kAutostart && !each.url.empty()) {
            return each.url;
        }
    }
    return "";
}

void Agent::follow() {
    const std::string url = applicationUrl();
    if (url == mApplicationUrl) return;
    mApplicationUrl = url;
    const std::string text = "application.url=" + url;
    mNotifier.notify(&Notifier::Callback::a_hidl_qeltvapi_mds_msg_callback, uint64_t{0},
                     android::hardware::hidl_string(text), static_cast<uint32_t>(text.size()));
}

std::vector<int32_t> Agent::exchange(const std::vector<int32_t>& words) {
    if (words.empty()) return {kBadValue};
    switch (words[0]) {
        case QELTV_HTML_ECHO: {
            std::vector<int32_t> reply = words;
            reply[0] = kOk;
            return reply;
        }
        case QELTV_HTML_STORE: {
            if (words.size() < kHeadWords || words.size() > kHeadWords + kWordLimit) {
                return {kBadValue};
            }
            std::lock_guard<std::mutex> guard(mLock);
            if (mKept.size() >= kKeyLimit && mKept.count(words[1]) == 0) return {kRefused};
            mKept[words[1]].assign(words.begin() + kHeadWords, words.end());
            return {kOk};
        }
        case QELTV_HTML_LOAD: {
            if (words.size() < kHeadWords) return {kBadValue};
            std::lock_guard<std::mutex> guard(mLock);
            const auto found = mKept.find(words[1]);
            if (found == mKept.end()) return {kNotFound};
            std::vector<int32_t> reply{kOk, static_cast<int32_t>(found->second.size())};
            reply.insert(reply.end(), found->second.begin(), found->second.end());
            return reply;
        }
        case QELTV_HTML_POST: {
            if (words.size() < kHeadWords || words.size() > kHeadWords + kWordLimit) {
                return {kBadValue};
            }
            android::hardware::hidl_vec<uint8_t> data((words.size() - kHeadWords) *
                                                      sizeof(int32_t));
            if (data.size() != 0) memcpy(data.data(), words.data() + kHeadWords, data.size());
            mNotifier.notify(&Notifier::Callback::a_hidl_qeltvapi_html_agent_callback, words[1],
                             uint64_t{0}, data);
            return {kOk};
        }
        default:
            return {kBadValue};
    }
}

Code Agent::setOperator(const std::string& name) {
    if (name.empty() || name.size() > kOperatorLimit) return kBadValue;
    const Code code = stored([&] {
        mSettings.set(kOperatorKey, name);
        return kOk;
    });
    if (code != kOk) return code;
    const std::string text = "operator=" + name;
    mNotifier.notify(&Notifier::Callback::a_hidl_qeltvapi_mds_msg_callback, uint64_t{0},
                     android::hardware::hidl_string(text), static_cast<uint32_t>(text.size()));
    return kOk;
}

Code Agent::value(const std::string& key, std::string* text) const {
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
    } else if (key == "application.url") {
        *text = applicationUrl();
        if (text->empty()) return kNotFound;
    } else if (key == "captions.text") {
        return mCaptions.captionText(text);
    } else if (key == "subtitle.text") {
        return mCaptions.subtitleText(text);
    } else {
        return kNotFound;
    }
    return kOk;
}

}  // namespace qeltvd
