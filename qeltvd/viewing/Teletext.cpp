#include "Teletext.h"

#include <algorithm>
#include <cstdio>
#include <cstring>

#include "SimulatedTeletext.h"
#include "Text.h"
#include "TopNavigation.h"

namespace qeltvd {

namespace {

constexpr uint32_t kLastPage = 0x899;

std::vector<QELTV_TOP_ENTRY_T> entriesOf(const TopNavigation::Pages& pages) {
    std::vector<QELTV_TOP_ENTRY_T> entries;
    for (const stream::TopPage& page : pages) {
        QELTV_TOP_ENTRY_T entry{page.number, page.level, {}};
        copyText(entry.title, cut(page.title, sizeof(entry.title) - 1));
        entries.push_back(entry);
    }
    return entries;
}

}  // namespace

Teletext::Teletext(Notifier& notifier, const ChannelDatabase& channels, const Clock& clock)
        : mNotifier(notifier), mChannels(channels), mClock(clock) {}

QELTV_TELETEXT_PAGE_T Teletext::current() const {
    uint32_t number, chosen;
    {
        std::lock_guard<std::mutex> guard(mLock);
        number = mNumber;
        chosen = mSubpage;
    }
    const TeletextTopics topics = this->topics();
    const auto subpages = SimulatedTeletext::content(static_cast<uint16_t>(number), topics);
    const auto count = static_cast<uint32_t>(subpages.size());
    const uint32_t subpage = count == 0    ? 0
                             : chosen != 0 ? std::min(chosen, count)
                                           : static_cast<uint32_t>(topics.now / kTurn % count) + 1;
    QELTV_TELETEXT_PAGE_T page{number | subpage << QELTV_TELETEXT_SUBPAGE_SHIFT, count, {}};
    memset(page.rows, ' ', sizeof(page.rows));
    const auto put = [&](size_t row, const std::string& text) {
        memcpy(page.rows[row], text.data(), std::min<size_t>(text.size(), QELTV_TELETEXT_COLUMNS));
    };
    char header[64];
    snprintf(header, sizeof(header), " P%03x   %c%03x QELTV%c%s", number, 2, number, 7,
             topics.stamp.c_str());
    put(0, header);
    if (count == 0) return page;
    for (size_t row = 0; row < subpages[subpage - 1].size(); ++row) {
        put(row + 1, subpages[subpage - 1][row]);
    }
    if (count > 1) {
        const std::string text = std::to_string(subpage) + "/" + std::to_string(count);
        memcpy(&page.rows[2][QELTV_TELETEXT_COLUMNS - text.size()], text.data(), text.size());
    }
    return page;
}

Code Teletext::setPage(uint32_t record) {
    const uint32_t number = record & 0xffff;
    const uint32_t subpage = record >> 16;
    // Pages with hexadecimal digits cannot be dialled.
    if (number < kFirstPage || number > kLastPage || (number & 0xf) > 9 ||
        (number >> 4 & 0xf) > 9) {
        return kBadValue;
    }
    const auto count = static_cast<uint32_t>(
            SimulatedTeletext::content(static_cast<uint16_t>(number), topics()).size());
    if (subpage > std::max(1U, count)) return kNotFound;
    {
        std::lock_guard<std::mutex> guard(mLock);
        mNumber = number;
        mSubpage = subpage;
    }
    mNotifier.event(&Notifier::Callback::a_hidl_qeltvapi_teletext_register_msg_callback,
                    QELTV_TELETEXT_PAGE_CHANGED, {record, count});
    return kOk;
}

TeletextTopics Teletext::topics() const {
    TeletextTopics topics;
    topics.now = mClock.now();
    const QELTV_DTG_T local = mClock.localRecord(topics.now).value_or(QELTV_DTG_T{});
    char stamp[32];
    snprintf(stamp, sizeof(stamp), "%s %02u %s\x03%02u:%02u:%02u", weekdayName(local), local.day,
             monthName(local), local.hour, local.minute, local.second);
    topics.stamp = stamp;
    topics.channels = [this] {
        const auto current = mChannels.current();
        const auto lists = mChannels.lists();
        return mChannels.find(current ? current->list : lists.empty() ? uint16_t{0} : lists[0]);
    };
    return topics;
}

std::vector<QELTV_TOP_ENTRY_T> Teletext::blocks() const {
    return entriesOf(TopNavigation(SimulatedTeletext::top()).blocks());
}

std::optional<std::vector<QELTV_TOP_ENTRY_T>> Teletext::groups(uint16_t page) const {
    const auto found = TopNavigation(SimulatedTeletext::top()).groups(page);
    if (!found) return std::nullopt;
    return entriesOf(*found);
}

std::optional<std::vector<QELTV_TOP_ENTRY_T>> Teletext::pages(uint16_t page) const {
    const auto found = TopNavigation(SimulatedTeletext::top()).pages(page);
    if (!found) return std::nullopt;
    return entriesOf(*found);
}

}  // namespace qeltvd
