#include "SimulatedTeletext.h"

#include <algorithm>
#include <cstdio>
#include <cstring>

#include "TopNavigation.h"
#include "layouts/teletext.h"

namespace qeltvd {

namespace {

// Control codes: colours of text and of mosaics, background, double height.
constexpr char kRed = 1, kGreen = 2, kYellow = 3, kBlue = 4, kCyan = 6, kWhite = 7;
constexpr char kMosaicBlue = 0x14, kMosaicCyan = 0x16, kDouble = 0x0d, kBackground = 0x1d;

// Levels of TOP.
constexpr uint8_t kBlock = 1, kGroup = 2, kPage = 3;

// Pages with a content of their own.
constexpr uint16_t kOverview = 0x100, kHeadlines = 0x102, kChannels = 0x201, kTable = 0x303,
                   kForecast = 0x401, kSubtitles = SimulatedTeletext::kSubtitlePage;
/** Rows of a subpage of the channels, its title included. */
constexpr size_t kChannelRows = 22;
constexpr size_t kSpokenRow = 19;

struct Entry {
    uint16_t page;
    uint8_t level;
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

const Entry* find(uint16_t page) {
    const auto* const found = std::find_if(std::begin(kPages), std::end(kPages),
                                           [&](const Entry& entry) { return entry.page == page; });
    return found != std::end(kPages) ? found : nullptr;
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

/** Rows 1 to 24 of each subpage; nothing for a page that is not broadcast. */
std::vector<std::vector<std::string>> content(uint16_t number, const TeletextTopics& topics) {
    const Entry* const entry = find(number);
    if (entry == nullptr) return {};
    std::vector<std::vector<std::string>> subpages{titled(entry->title)};
    auto& first = subpages[0];
    switch (number) {
        case kChannels: {
            // As many subpages as the channels of the list that is being watched take.
            for (const Channel& channel : topics.channels()) {
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
            const TopNavigation tree(SimulatedTeletext::top());
            const auto entries =
                    number == kOverview ? std::optional(tree.blocks()) : tree.under(number);
            for (const stream::TopPage& sub : entries.value_or(TopNavigation::Pages())) {
                first.push_back(line("\x07%03x\x06%s", sub.number, sub.title));
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

}  // namespace

TeletextView SimulatedTeletext::view(uint16_t number, uint32_t subpage,
                                     const TeletextTopics& topics) {
    const auto subpages = content(number, topics);
    const auto count = static_cast<uint32_t>(subpages.size());
    TeletextView view;
    view.subpages = count;
    view.page.number = number;
    view.page.ascii = true;
    const auto put = [&](size_t row, size_t column, const std::string& text) {
        memcpy(&view.page.rows[row][column], text.data(),
               std::min(text.size(), stream::TeletextPage::kColumns - column));
    };
    char header[64];
    snprintf(header, sizeof(header), "%c%03x QELTV%c%s", kGreen, number, kWhite,
             topics.stamp.c_str());
    put(0, stream::TeletextPage::kReserved, header);
    if (count == 0 || subpage > count) return view;
    view.state = TeletextView::State::kShown;
    view.subpage = subpage != 0 ? subpage : static_cast<uint32_t>(topics.now / kTurn % count) + 1;
    const auto& rows = subpages[view.subpage - 1];
    for (size_t row = 0; row < rows.size(); ++row) put(row + 1, 0, rows[row]);
    if (count > 1) {
        const std::string text = std::to_string(view.subpage) + "/" + std::to_string(count);
        put(2, stream::TeletextPage::kColumns - text.size(), text);
    }
    return view;
}

std::vector<stream::TopPage> SimulatedTeletext::top() {
    std::vector<stream::TopPage> pages;
    for (const Entry& entry : kPages) pages.push_back({entry.page, entry.level, entry.title});
    return pages;
}

}  // namespace qeltvd
