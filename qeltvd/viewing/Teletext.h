#pragma once

#include <cstdint>
#include <mutex>
#include <optional>
#include <vector>

#include "Broadcast.h"
#include "ChannelDatabase.h"
#include "Clock.h"
#include "Code.h"
#include "Notifier.h"
#include "TopNavigation.h"
#include "layouts/teletext.h"

namespace qeltvd {

/**
 * Teletext of the channel that is being watched, with TOP navigation. A received page that is
 * chosen is followed: clients are notified when it comes and when it changes.
 */
class Teletext {
  public:
    static constexpr uint32_t kFirstPage = 0x100;

    Teletext(Notifier& notifier, const ChannelDatabase& channels, const Clock& clock,
             Broadcast& broadcast);

    QELTV_TELETEXT_PAGE_T current() const;
    /** kNotFound for a simulated subpage that there is not; a received one may still come. */
    [[nodiscard]] Code setPage(uint32_t record);

    bool hasTop() const;
    std::vector<QELTV_TOP_ENTRY_T> blocks() const;
    /** The groups of the block that a page is in; nothing when there is no such page. */
    std::optional<std::vector<QELTV_TOP_ENTRY_T>> groups(uint16_t page) const;
    /** The pages of the group that a page is in; nothing when there is no such page. */
    std::optional<std::vector<QELTV_TOP_ENTRY_T>> pages(uint16_t page) const;

  private:
    struct Choice {
        uint16_t number;
        /** 0 for the one that is on air. */
        uint32_t subpage;
    };
    /** What clients know of the chosen page. */
    struct Known {
        uint32_t channelId;
        bool shown;
        uint32_t subpage;
        uint32_t subpages;
        uint64_t version;
    };

    Choice choice() const;
    /** The page on the current channel, with the id of that. */
    TeletextView view(const Choice& choice, uint32_t* channelId = nullptr) const;
    TeletextTopics topics() const;
    TopNavigation top() const;
    static Known known(const TeletextView& view, uint32_t channelId);
    /** Notifies of what has become of the chosen page. */
    void follow();

    Notifier& mNotifier;
    const ChannelDatabase& mChannels;
    const Clock& mClock;
    const Broadcast& mBroadcast;
    mutable std::mutex mLock;
    // Guarded by mLock.
    Choice mChoice{kFirstPage, 0};
    /** Nothing until a client uses teletext. */
    mutable std::optional<Known> mKnown;
};

}  // namespace qeltvd
