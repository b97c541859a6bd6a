#include "Teletext.h"

#include <algorithm>
#include <cstdio>
#include <cstring>

namespace qeltvd {

namespace {

// Control codes: colours of text and of mosaics, background, double height.
constexpr char kRed = 1, kGreen = 2, kYellow = 3, kBlue = 4, kCyan = 6, kWhite = 7;
constexpr char kMosaicBlue = 0x14, kMosaicCyan = 0x16, kDouble = 0x0d, kBackground = 0x1d;

/** Levels of TOP; the higher contain the lower. */
enum class Level : uint16_t { kBlock = 1, kGroup = 2, kPage = 3 };

constexpr Level kBlock = Level::kBlock;
constexpr Level kGroup = Level::kGroup;
constexpr Level kPage = Level::kPage;

constexpr Level under(Level level) {
    return static_cast<Level>(static_cast<uint16_t>(level) + 1);
}

// Pages with a content of their own.
constexpr uint16_t kOverview = 0x100, kHeadlines = 0x102, kChannels = 0x201, kTable = 0x303,
                   kForecast = 0x401, kSubtitles = 0x888;
constexpr uint32_t kLastPage = 0x899;
/** Rows of a subpage of the channels, its title included. */
constexpr size_t kChannelRows = 22;
constexpr size_t kSpokenRow = 19;

struct Entry {
    uint16_t page;
    Level level;
    const char* title;
};

constexpr Entry kPages[] = {
        {kOverview, kBlock, "Overview"},  {0x101, kGroup, "News"},
        {kHeadlines, kPage, "Headlines"}, {0x103, kPage, "Business"},
        {0x150, kGroup, "Subtitles"},     {0x200, kBlock, "Television"},
        {kChannels, kGroup, "Channels"},  {0x300, kBlock, "Sport"},
        {0x301, kGroup, "Football"},      {0x302, kPage, "Results"},
        {kTable, kPage, "Table"},         {0x400, kBlock, "Weather"},
        {kForecast, kGroup, "Forecast"},  {kSubtitles, kBlock, "Subtitles for viewers"},
};

const Entry* find(uint32_t page) {
    const auto* const found = std::find_if(std::begin(kPages), std::end(kPages),
                                           [&](const Entry& entry) { return entry.page == page; });
    return found != std::end(kPages) ? found : nullptr;
}

QELTV_TOP_ENTRY_T entryOf(const Entry& from) {
    QELTV_TOP_ENTRY_T entry{from.page, static_cast<uint16_t>(from.level), {}};
    strncpy(entry.title, from.title, sizeof(entry.title) - 1);
    return entry;
}

/** The page's entries of a level, between the ones around it that are above that level. */
std::optional<std::vector<QELTV_TOP_ENTRY_T>> below(uint16_t page, Level above) {
    const Entry* begin = find(page);
    if (begin == nullptr) return std::nullopt;
    while (begin->level > above) --begin;
    std::vector<QELTV_TOP_ENTRY_T> entries;
    for (const Entry* entry = begin + 1; entry != std::end(kPages) && entry->level > above;
         ++entry) {
        if (entry->level == under(above)) entries.push_back(entryOf(*entry));
    }
    return entries;
}

/** Letters that teletext has; others of a name are left out. */
std::string plain(const std::string& text) {
    std::string ascii;
    for (const char c : text) {
        if (c >= ' ' && c < 0x7f) ascii += c;
    }
    return ascii;
}

std::string line(const char* format, unsigned int number, const std::string& text) {
    char buffer[QELTV_TELETEXT_COLUMNS + 1];
    snprintf(buffer, sizeof(buffer), format, number, text.c_str());
    return buffer;
}

std::vector<std::string> titled(const std::string& title) {
    return {std::string{kBlue, kBackground, kYellow, kDouble} + " " + title, "", ""};
}

/** Row of the links that the coloured keys have. */
std::string links() {
    return std::string{kRed} + "Overview " + kGreen + "Television " + kYellow + "Sport " + kCyan +
           "Weather";
}

}  // namespace

Teletext::Teletext(Notifier& notifier, const ChannelDatabase& channels, const Clock& clock)
        : mNotifier(notifier), mChannels(channels), mClock(clock) {}

std::vector<std::vector<std::string>> Teletext::content(uint32_t number) const {
    const Entry* const entry = find(number);
    if (entry == nullptr) return {};
    std::vector<std::vector<std::string>> subpages{titled(entry->title)};
    auto& first = subpages[0];
    switch (number) {
        case kChannels: {
            // As many subpages as the channels of the list that is being watched take.
            const auto current = mChannels.current();
            const auto lists = mChannels.lists();
            const uint16_t list = current ? current->list : lists.empty() ? 0 : lists[0];
            for (const Channel& channel : mChannels.find(list)) {
                if (subpages.back().size() == kChannelRows)
                    subpages.push_back(titled(entry->title));
                subpages.back().push_back(
                        line("\x03%5u\x07%s", channel.number, plain(channel.name)));
            }
            break;
        }
        case kHeadlines:
            subpages.assign(3, first);
            subpages[0].push_back(std::string{kWhite} + "Parliament votes on the new budget");
            subpages[1].push_back(std::string{kWhite} + "Trains run again after the storm");
            subpages[2].push_back(std::string{kWhite} + "Museum shows paintings found in attic");
            break;
        case kTable:
            for (unsigned int i = 1; i <= 8; ++i) {
                first.push_back(line("\x06%3u\x07%s", i, "Club " + std::to_string(i * 7 % 10)));
            }
            break;
        case kForecast:
            // A sun of mosaics.
            for (const char* row :
                 {"  !  0  !", "   xtx|", " ,,w\x7f\x7f\x7f,,", "   ~/o}", "  !  #  !"}) {
                first.push_back(std::string{kMosaicCyan} + row);
            }
            first.push_back(std::string{kWhite} + "Sunny, 21 degrees");
            break;
        case kSubtitles:
            // Nothing but what is being said, on an otherwise empty page.
            first.assign(kSpokenRow, "");
            first.push_back(std::string{kDouble, kWhite} + "      Good evening.");
            break;
        default: {
            const auto entries = number == kOverview ? std::optional(blocks())
                                                     : below(entry->page, entry->level);
            for (const QELTV_TOP_ENTRY_T& sub :
                 entries.value_or(std::vector<QELTV_TOP_ENTRY_T>())) {
                first.push_back(line("\x07%03x\x06%s", sub.page, sub.title));
            }
        }
    }
    for (auto& rows : subpages) {
        rows.resize(QELTV_TELETEXT_ROWS - 1);
        if (number == kSubtitles) continue;
        rows[QELTV_TELETEXT_ROWS - 3] = std::string{kMosaicBlue} + std::string(39, ',');
        rows[QELTV_TELETEXT_ROWS - 2] = links();
    }
    return subpages;
}

QELTV_TELETEXT_PAGE_T Teletext::current() const {
    uint32_t number, chosen;
    {
        std::lock_guard<std::mutex> guard(mLock);
        number = mNumber;
        chosen = mSubpage;
    }
    const int64_t now = mClock.now();
    const auto subpages = content(number);
    const auto count = static_cast<uint32_t>(subpages.size());
    const uint32_t subpage = count == 0    ? 0
                             : chosen != 0 ? std::min(chosen, count)
                                           : static_cast<uint32_t>(now / kTurn % count) + 1;
    QELTV_TELETEXT_PAGE_T page{number | subpage << QELTV_TELETEXT_SUBPAGE_SHIFT, count, {}};
    memset(page.rows, ' ', sizeof(page.rows));
    const auto put = [&](size_t row, const std::string& text) {
        memcpy(page.rows[row], text.data(), std::min<size_t>(text.size(), QELTV_TELETEXT_COLUMNS));
    };
    const QELTV_DTG_T local = mClock.localRecord(now).value_or(QELTV_DTG_T{});
    char stamp[32];
    snprintf(stamp, sizeof(stamp), "%s %02u %s\x03%02u:%02u:%02u", weekdayName(local), local.day,
             monthName(local), local.hour, local.minute, local.second);
    char header[64];
    snprintf(header, sizeof(header), " P%03x   %c%03x QELTV%c%s", number, kGreen, number, kWhite,
             stamp);
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
    const auto count = static_cast<uint32_t>(content(number).size());
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

std::vector<QELTV_TOP_ENTRY_T> Teletext::blocks() const {
    std::vector<QELTV_TOP_ENTRY_T> entries;
    for (const Entry& entry : kPages) {
        if (entry.level == kBlock) entries.push_back(entryOf(entry));
    }
    return entries;
}

std::optional<std::vector<QELTV_TOP_ENTRY_T>> Teletext::groups(uint16_t page) const {
    return below(page, kBlock);
}

std::optional<std::vector<QELTV_TOP_ENTRY_T>> Teletext::pages(uint16_t page) const {
    const Entry* const entry = find(page);
    if (entry == nullptr) return std::nullopt;
    // A block's own page stands in no group.
    if (entry->level == kBlock) return std::vector<QELTV_TOP_ENTRY_T>();
    return below(page, kGroup);
}

}  // namespace qeltvd
