#include "Teletext.h"

#include <algorithm>
#include <cstdio>
#include <cstring>

#include "Text.h"

namespace qeltvd {

namespace {

constexpr uint32_t kLastPage = 0x899;

static_assert(QELTV_TELETEXT_ROWS == stream::TeletextPage::kRows);
static_assert(QELTV_TELETEXT_COLUMNS == stream::TeletextPage::kColumns);

QELTV_TELETEXT_STATE stateOf(TeletextView::State state) {
    switch (state) {
        case TeletextView::State::kAbsent:
            return QELTV_TELETEXT_ABSENT;
        case TeletextView::State::kAwaited:
            return QELTV_TELETEXT_AWAITED;
        default:
            return QELTV_TELETEXT_SHOWN;
    }
}

std::vector<QELTV_TOP_ENTRY_T> entriesOf(const TopNavigation::Pages& pages) {
    std::vector<QELTV_TOP_ENTRY_T> entries;
    for (const stream::TopPage& page : pages) {
        if (entries.size() == QELTV_TOP_ENTRIES) break;
        QELTV_TOP_ENTRY_T entry{page.number, page.level, {}};
        copyText(entry.title, cut(page.title, sizeof(entry.title) - 1));
        entries.push_back(entry);
    }
    return entries;
}

std::optional<std::vector<QELTV_TOP_ENTRY_T>> entriesOf(
        const std::optional<TopNavigation::Pages>& pages) {
    if (!pages) return std::nullopt;
    return entriesOf(*pages);
}

}  // namespace

Teletext::Teletext(Notifier& notifier, const ChannelDatabase& channels, const Clock& clock,
                   Broadcast& broadcast)
        : mNotifier(notifier), mChannels(channels), mClock(clock), mBroadcast(broadcast) {
    broadcast.addListener([this](uint32_t changes) {
        // The time changes with what is received.
        constexpr uint32_t kConcern =
                stream::kTeletextChanged | stream::kServicesChanged | stream::kTimeChanged;
        if ((changes & kConcern) != 0) follow();
    });
}

Teletext::Choice Teletext::choice() const {
    std::lock_guard<std::mutex> guard(mLock);
    return mChoice;
}

TeletextView Teletext::view(const Choice& choice, uint32_t* channelId) const {
    const auto pair = mChannels.currentPair();
    if (channelId != nullptr) *channelId = pair ? pair->first.channelId : 0;
    if (!pair) return {};
    return mBroadcast.of(pair->second)
            ->teletext(pair->first, choice.number, choice.subpage, topics());
}

QELTV_TELETEXT_PAGE_T Teletext::current() const {
    const Choice chosen = choice();
    uint32_t channelId = 0;
    TeletextView view = this->view(chosen, &channelId);
    if (!view.page.headless) {
        char number[stream::TeletextPage::kReserved + 1];
        snprintf(number, sizeof(number), " P%03x   ", chosen.number);
        memcpy(view.page.rows[0].data(), number, stream::TeletextPage::kReserved);
    }
    QELTV_TELETEXT_PAGE_T page{};
    page.page = chosen.number | view.subpage << QELTV_TELETEXT_SUBPAGE_SHIFT;
    page.subpages = view.subpages;
    page.state = stateOf(view.state);
    memcpy(page.rows, view.page.rows.data(), sizeof(page.rows));
    const stream::TeletextCharacters characters = stream::charactersOf(view.page);
    memcpy(page.characters, characters.data(), sizeof(page.characters));
    std::lock_guard<std::mutex> guard(mLock);
    if (!mKnown) mKnown = known(view, channelId);
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
    const Choice choice{static_cast<uint16_t>(number), subpage};
    uint32_t channelId = 0;
    const TeletextView view = this->view(choice, &channelId);
    if (!view.received && subpage > std::max(1U, view.subpages)) return kNotFound;
    // Under the lock, so that what becomes of the choice is notified of afterwards.
    std::lock_guard<std::mutex> guard(mLock);
    mChoice = choice;
    mKnown = known(view, channelId);
    mNotifier.event(&Notifier::Callback::a_hidl_qeltvapi_teletext_register_msg_callback,
                    QELTV_TELETEXT_PAGE_CHANGED, {record, view.subpages});
    return kOk;
}

Teletext::Known Teletext::known(const TeletextView& view, uint32_t channelId) {
    const bool shown = view.state == TeletextView::State::kShown;
    // A simulated page changes by itself without a notification.
    if (!view.received) return {channelId, shown, 0, view.subpages, 0};
    return {channelId, shown, view.subpage, view.subpages, view.page.version};
}

void Teletext::follow() {
    Choice chosen{};
    {
        std::lock_guard<std::mutex> guard(mLock);
        if (!mKnown) return;
        chosen = mChoice;
    }
    uint32_t channelId = 0;
    const TeletextView view = this->view(chosen, &channelId);
    const Known now = known(view, channelId);
    std::lock_guard<std::mutex> guard(mLock);
    // Another choice has been notified of meanwhile.
    if (mChoice.number != chosen.number || mChoice.subpage != chosen.subpage) return;
    const Known before = *mKnown;
    mKnown = now;
    const auto notify = [&](QELTV_TELETEXT_EVENT event, uint32_t subpage, uint32_t subpages) {
        const uint32_t record = chosen.number | subpage << QELTV_TELETEXT_SUBPAGE_SHIFT;
        mNotifier.event(&Notifier::Callback::a_hidl_qeltvapi_teletext_register_msg_callback, event,
                        {record, subpages});
    };
    if (now.shown != before.shown) {
        notify(QELTV_TELETEXT_PAGE_CHANGED, chosen.subpage, now.shown ? now.subpages : 0);
    } else if (view.received && now.shown &&
               (now.version != before.version || now.subpages != before.subpages ||
                now.subpage != before.subpage || now.channelId != before.channelId)) {
        notify(QELTV_TELETEXT_PAGE_UPDATED, now.subpage, now.subpages);
    }
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

TopNavigation Teletext::top() const {
    const auto pair = mChannels.currentPair();
    if (!pair) return TopNavigation({});
    return TopNavigation(mBroadcast.of(pair->second)->teletextTop(pair->first));
}

bool Teletext::hasTop() const {
    return !top().blocks().empty();
}

std::vector<QELTV_TOP_ENTRY_T> Teletext::blocks() const {
    return entriesOf(top().blocks());
}

std::optional<std::vector<QELTV_TOP_ENTRY_T>> Teletext::groups(uint16_t page) const {
    return entriesOf(top().groups(page));
}

std::optional<std::vector<QELTV_TOP_ENTRY_T>> Teletext::pages(uint16_t page) const {
    return entriesOf(top().pages(page));
}

}  // namespace qeltvd
