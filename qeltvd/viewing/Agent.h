#pragma once

#include <cstdint>
#include <map>
#include <mutex>
#include <string>
#include <vector>

#include "ChannelDatabase.h"
#include "Notifier.h"
#include "Settings.h"
#include "layouts/teletext.h"

namespace qeltvd {

/** What applications exchange with the television's HTML agent and ask its metadata service. */
class Agent {
  public:
    static constexpr size_t kKeyLimit = 64;
    static constexpr size_t kWordLimit = 256;
    static constexpr size_t kOperatorLimit = 64;

    Agent(Settings& settings, Notifier& notifier, const ChannelDatabase& channels)
            : mSettings(settings), mNotifier(notifier), mChannels(channels) {}

    /** Carries out a command; the reply has the code in its first word. */
    std::vector<int32_t> exchange(const std::vector<int32_t>& words);

    /** Chooses whose metadata is used. */
    int32_t setOperator(const std::string& name);
    /** "operator", "channel.id", "channel.name", "channel.number". */
    int32_t value(const std::string& key, std::string* text) const;

  private:
    Settings& mSettings;
    Notifier& mNotifier;
    const ChannelDatabase& mChannels;
    std::mutex mLock;
    // Guarded by mLock.
    std::map<int32_t, std::vector<int32_t>> mKept;
};

}  // namespace qeltvd
