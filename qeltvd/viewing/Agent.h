#pragma once

#include <cstdint>
#include <map>
#include <mutex>
#include <string>
#include <vector>

#include "Broadcast.h"
#include "Captions.h"
#include "ChannelDatabase.h"
#include "Code.h"
#include "Notifier.h"
#include "Settings.h"
#include "layouts/teletext.h"

namespace qeltvd {

/** What applications exchange with the HTML agent and read of the metadata service. */
class Agent {
  public:
    static constexpr size_t kKeyLimit = 64;
    static constexpr size_t kWordLimit = 256;
    static constexpr size_t kOperatorLimit = 64;

    Agent(Settings& settings, Notifier& notifier, const ChannelDatabase& channels,
          Broadcast& broadcast, const Captions& captions);

    /** Carries out a command. @return the reply, a code in its first word */
    std::vector<int32_t> exchange(const std::vector<int32_t>& words);

    /** Chooses whose metadata is used. */
    [[nodiscard]] Code setOperator(const std::string& name);
    /**
     * "operator", "channel.id", "channel.name", "channel.number"; "application.url", the first page
     * of the application that the current channel starts by itself; "captions.text" and
     * "subtitle.text", what captions and subtitles of the current channel say.
     */
    [[nodiscard]] Code value(const std::string& key, std::string* text) const;

  private:
    Settings& mSettings;
    Notifier& mNotifier;
    /** Notifies of another application. */
    void follow();
    std::string applicationUrl() const;

    const ChannelDatabase& mChannels;
    const Broadcast& mBroadcast;
    const Captions& mCaptions;
    /** The last one that clients were notified of; on the timers' thread. */
    std::string mApplicationUrl;
    std::mutex mLock;
    // Guarded by mLock.
    std::map<int32_t, std::vector<int32_t>> mKept;
};

}  // namespace qeltvd
