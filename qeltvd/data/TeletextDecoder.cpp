#include "TeletextDecoder.h"

#include <algorithm>

#include "Text.h"
#include "VbiDecoder.h"

namespace qeltvd::stream {

namespace {

constexpr size_t kLineSize = 42;
constexpr double kFrame = 0.04;
constexpr uint16_t kAnySubpage = 0x3f7f;
constexpr uint16_t kTopTable = 0x1f0;
constexpr size_t kTopRows = 20;

/** A nibble with its protection; none where more than one bit is wrong. */
std::optional<uint8_t> nibble(uint8_t byte) {
    const int value = static_cast<int8_t>(vbi_unham8(byte));
    if (value < 0) return std::nullopt;
    return static_cast<uint8_t>(value);
}

/** Two nibbles, the lower one first. */
std::optional<uint8_t> pairOf(const uint8_t* bytes) {
    const auto low = nibble(bytes[0]), high = nibble(bytes[1]);
    if (!low || !high) return std::nullopt;
    return static_cast<uint8_t>(*low | *high << 4);
}

/** Copies characters; one with a wrong parity leaves what was there. */
void copyCharacters(const uint8_t* from, size_t count, uint8_t* to) {
    for (size_t i = 0; i < count; ++i) {
        const int character = vbi_unpar8(from[i]);
        if (character >= 0) to[i] = static_cast<uint8_t>(character);
    }
}

}  // namespace

TeletextDecoder::TeletextDecoder() {
    forget();
}

TeletextDecoder::~TeletextDecoder() = default;

void TeletextDecoder::push(const uint8_t* payload, size_t size) {
    constexpr uint8_t kFirstIdentifier = 0x10, kLastIdentifier = 0x1f;
    constexpr uint8_t kTeletext = 0x02, kSubtitles = 0x03, kFraming = 0xe4;
    constexpr size_t kUnit = 2 + kLineSize;
    if (size < 1 || payload[0] < kFirstIdentifier || payload[0] > kLastIdentifier) return;
    std::vector<vbi_sliced> lines;
    for (size_t at = 1; at + 2 <= size;) {
        const uint8_t kind = payload[at], length = payload[at + 1];
        at += 2;
        if (length > size - at) break;
        const uint8_t* unit = payload + at;
        at += length;
        if ((kind != kTeletext && kind != kSubtitles) || length < kUnit || unit[1] != kFraming) {
            continue;
        }
        vbi_sliced sliced{};
        sliced.id = VBI_SLICED_TELETEXT_B;
        sliced.line = (unit[0] & 0x1fu) + ((unit[0] & 0x20) != 0 ? 0u : 313u);
        for (size_t i = 0; i < kLineSize; ++i) {
            sliced.data[i] = static_cast<uint8_t>(vbi_rev8(unit[2 + i]));
        }
        lines.push_back(sliced);
    }
    if (lines.empty()) return;
    for (const vbi_sliced& each : lines) line(each.data);
    mLibrary->decode(lines.data(), static_cast<int>(lines.size()));
}

void TeletextDecoder::interrupt() {
    for (Magazine& each : mMagazines) each.open = each.topTable = false;
    mLibrary->interrupt();
}

void TeletextDecoder::line(const uint8_t* bytes) {
    const auto address = pairOf(bytes);
    if (!address) return;
    const uint8_t number = *address & 7, row = *address >> 3;
    Magazine& magazine = mMagazines[number];
    if (row == 0) {
        header(&magazine, number, bytes);
    } else if (magazine.topTable && row <= kTopRows) {
        mTop.resize(kTopRows * TeletextPage::kColumns);
        for (size_t i = 0; i < TeletextPage::kColumns; ++i) {
            const auto code = nibble(bytes[2 + i]);
            if (code) mTop[(row - 1) * TeletextPage::kColumns + i] = *code;
        }
    } else if (magazine.open && row < TeletextPage::kRows) {
        copyCharacters(bytes + 2, TeletextPage::kColumns, magazine.page.rows[row].data());
    }
}

void TeletextDecoder::header(Magazine* magazine, uint8_t number, const uint8_t* bytes) {
    constexpr size_t kHeaderText = 8;
    const auto page = pairOf(bytes + 2), low = pairOf(bytes + 4), high = pairOf(bytes + 6);
    const auto control = pairOf(bytes + 8);
    close(magazine);
    magazine->topTable = false;
    if (!page || !low || !high || !control) return;
    const bool erase = (*low & 0x80) != 0, serial = (*control & 0x10) != 0;
    if (serial) {
        // A header ends the page of every magazine.
        for (Magazine& each : mMagazines) close(&each);
    }
    TeletextPage next;
    next.number = static_cast<uint16_t>((number == 0 ? 8 : number) << 8 | *page);
    next.subpage = static_cast<uint16_t>((*low & 0x7f) | (*high & 0x3f) << 8);
    next.newsflash = (*high & 0x40) != 0;
    next.subtitle = (*high & 0x80) != 0;
    next.national = static_cast<uint8_t>(*control >> 5 & 7);
    magazine->topTable = next.number == kTopTable;
    // Other pages that are no decimal number carry data for decoders.
    const bool shown = (*page & 0x0f) <= 9 && *page >> 4 <= 9 && next.subpage <= kAnySubpage;
    if (!shown) return;
    for (auto& row : next.rows) row.fill(' ');
    const auto known = mPages.find({next.number, next.subpage});
    if (!erase && known != mPages.end()) next.rows = known->second.rows;
    copyCharacters(bytes + 2 + kHeaderText, TeletextPage::kColumns - kHeaderText,
                   next.rows[0].data() + kHeaderText);
    magazine->page = next;
    magazine->open = true;
}

void TeletextDecoder::close(Magazine* magazine) {
    if (!magazine->open) return;
    magazine->open = false;
    ++mArrivals;
    const TeletextPage& page = magazine->page;
    if (mPages.size() >= kPageLimit && mPages.count({page.number, page.subpage}) == 0) forget();
    mPages[{page.number, page.subpage}] = page;
    mLatest[page.number] = page.subpage;
}

void TeletextDecoder::forget() {
    mPages.clear();
    mLatest.clear();
    mTop.clear();
    mLibrary = std::make_unique<VbiDecoder>(
            VBI_EVENT_TTX_PAGE, [](vbi_event*, void*) {}, nullptr, kFrame);
}

std::vector<uint16_t> TeletextDecoder::pages() const {
    std::vector<uint16_t> numbers;
    for (const auto& [number, subpage] : mLatest) numbers.push_back(number);
    return numbers;
}

std::vector<uint16_t> TeletextDecoder::subpages(uint16_t number) const {
    std::vector<uint16_t> subpages;
    for (auto it = mPages.lower_bound({number, 0}); it != mPages.end() && it->first.first == number;
         ++it) {
        subpages.push_back(it->first.second);
    }
    return subpages;
}

std::optional<TeletextPage> TeletextDecoder::page(uint16_t number,
                                                  std::optional<uint16_t> subpage) const {
    const auto latest = mLatest.find(number);
    if (latest == mLatest.end()) return std::nullopt;
    const auto found = mPages.find({number, subpage.value_or(latest->second)});
    if (found == mPages.end()) return std::nullopt;
    return found->second;
}

std::vector<std::string> TeletextDecoder::text(uint16_t number,
                                               std::optional<uint16_t> subpage) const {
    constexpr uint16_t kPrivateArea = 0xe000;
    const auto latest = mLatest.find(number);
    if (latest == mLatest.end()) return {};
    vbi_page page{};
    if (!vbi_fetch_vt_page(mLibrary->get(), &page, number, subpage.value_or(latest->second),
                           VBI_WST_LEVEL_1p5, TeletextPage::kRows, FALSE)) {
        return {};
    }
    std::vector<std::string> rows;
    for (int row = 0; row < page.rows; ++row) {
        std::string text;
        for (int column = 0; column < page.columns; ++column) {
            const auto c = static_cast<uint16_t>(page.text[row * page.columns + column].unicode);
            // Graphics stand in the private area.
            appendUtf8(&text, c < ' ' || c >= kPrivateArea ? ' ' : c);
        }
        rows.push_back(text);
    }
    vbi_unref_page(&page);
    return rows;
}

std::vector<TopPage> TeletextDecoder::top() const {
    std::vector<TopPage> pages;
    for (size_t i = 0; i < mTop.size(); ++i) {
        const uint8_t code = mTop[i];
        // 0 and 1 are no page and subtitles; 2 to 5 programmes and blocks, 6 and 7 groups.
        if (code < 2 || code > 11) continue;
        const size_t decimal = i + 100;
        TopPage page;
        page.number =
                static_cast<uint16_t>(decimal / 100 << 8 | decimal / 10 % 10 << 4 | decimal % 10);
        page.level = code <= 5 ? uint8_t{1} : code <= 7 ? uint8_t{2} : uint8_t{3};
        char title[64] = {};
        if (vbi_page_title(mLibrary->get(), page.number, VBI_ANY_SUBNO, title)) {
            // In ISO 8859-1.
            for (const char c : title) {
                if (c == 0) break;
                appendUtf8(&page.title, static_cast<uint8_t>(c));
            }
            page.title.erase(page.title.find_last_not_of(' ') + 1);
        }
        pages.push_back(page);
    }
    return pages;
}

}  // namespace qeltvd::stream
