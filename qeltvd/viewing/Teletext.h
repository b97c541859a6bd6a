#pragma once

#include <cstdint>
#include <mutex>
#include <optional>
#include <vector>

#include "ChannelDatabase.h"
#include "Clock.h"
#include "Code.h"
#include "Notifier.h"
#include "SimulatedTeletext.h"
#include "layouts/teletext.h"

namespace qeltvd {

/** Teletext of the channel that is being watched, with TOP navigation. */
class Teletext {
  public:
    /** For how many seconds each subpage is on air. */
    static constexpr int64_t kTurn = 5;
    static constexpr uint32_t kFirstPage = 0x100;

    Teletext(Notifier& notifier, const ChannelDatabase& channels, const Clock& clock);

    QELTV_TELETEXT_PAGE_T current() const;
    [[nodiscard]] Code setPage(uint32_t record);

    std::vector<QELTV_TOP_ENTRY_T> blocks() const;
    /** The groups of the block that a page is in; nothing when there is no such page. */
    std::optional<std::vector<QELTV_TOP_ENTRY_T>> groups(uint16_t page) const;
    /** The pages of the group that a page is in; nothing when there is no such page. */
    std::optional<std::vector<QELTV_TOP_ENTRY_T>> pages(uint16_t page) const;

  private:
    TeletextTopics topics() const;

    Notifier& mNotifier;
    const ChannelDatabase& mChannels;
    const Clock& mClock;
    mutable std::mutex mLock;
    // Guarded by mLock.
    uint32_t mNumber = kFirstPage;
    uint32_t mSubpage = 0;
};

}  // namespace qeltvd
