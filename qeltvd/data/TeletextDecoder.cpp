#include "TeletextDecoder.h"

#include <algorithm>
#include <cstring>

#include "Text.h"
#include "VbiDecoder.h"

namespace qeltvd::stream {

namespace {

constexpr size_t kLineSize = TeletextPage::kLineSize;
constexpr size_t kColumns = TeletextPage::kColumns;
constexpr size_t kReserved = TeletextPage::kReserved;
constexpr uint16_t kAnySubpage = 0x3f7f;

constexpr uint16_t kTopTable = 0x1f0;
constexpr uint8_t kTopRows = 20, kLastTopRow = 23;
constexpr uint16_t kFirstTopPage = 100;
constexpr uint8_t kNotSent = 0, kUnknown = 0xff;
/** Bytes of a page number in the tables of TOP. */
constexpr size_t kTopLink = 8;
constexpr size_t kTitleSize = 12;
constexpr size_t kMostTitlePages = 16;

constexpr uint8_t kAccents = 26, kSets = 28, kMagazineSets = 29;

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

/** The number of a page, three digits and its subpage, and what the page is; none where damaged. */
struct TopLink {
    uint16_t page;
    uint8_t kind;
};
std::optional<TopLink> topLink(const uint8_t* bytes) {
    uint8_t nibbles[kTopLink];
    for (size_t i = 0; i < kTopLink; ++i) {
        const auto value = nibble(bytes[i]);
        if (!value) return std::nullopt;
        nibbles[i] = *value;
    }
    return TopLink{static_cast<uint16_t>(nibbles[0] << 8 | nibbles[1] << 4 | nibbles[2]),
                   nibbles[7]};
}

/** A page that viewers can choose; the others carry data for decoders. */
bool isDecimal(uint16_t number) {
    return (number & 0x0f) <= 9 && (number >> 4 & 0x0f) <= 9;
}

uint8_t regionOf(const std::string& language) {
    constexpr uint8_t kWestern = 0, kPolish = 8, kTurkish = 16, kSouthEast = 24, kCyrillic = 32,
                      kGreek = 48, kArabic = 64, kHebrew = 80;
    constexpr struct {
        const char* language;
        uint8_t region;
    } kRegions[] = {
            {"pol", kPolish},    {"tur", kTurkish},   {"srp", kSouthEast}, {"scc", kSouthEast},
            {"hrv", kSouthEast}, {"scr", kSouthEast}, {"slv", kSouthEast}, {"ron", kSouthEast},
            {"rum", kSouthEast}, {"est", kCyrillic},  {"lav", kCyrillic},  {"lit", kCyrillic},
            {"rus", kCyrillic},  {"bul", kCyrillic},  {"ukr", kCyrillic},  {"bel", kCyrillic},
            {"mkd", kCyrillic},  {"mac", kCyrillic},  {"ell", kGreek},     {"gre", kGreek},
            {"ara", kArabic},    {"heb", kHebrew}};
    for (const auto& each : kRegions) {
        if (language == each.language) return each.region;
    }
    return kWestern;
}

/** Lines for the library, all of page 100. */
class Lines {
  public:
    /** A header that chooses a character set. */
    void header(uint8_t page, uint8_t national, const uint8_t* text) {
        uint8_t* to = add(0);
        const uint8_t nibbles[kReserved] = {static_cast<uint8_t>(page & 0x0f),
                                            static_cast<uint8_t>(page >> 4),
                                            0,
                                            kErase,
                                            0,
                                            0,
                                            0,
                                            static_cast<uint8_t>(national << 1)};
        for (size_t i = 0; i < kReserved; ++i) to[i] = static_cast<uint8_t>(vbi_ham8(nibbles[i]));
        characters(text, kColumns - kReserved, to + kReserved);
    }
    void row(uint8_t number, const uint8_t* text) { characters(text, kColumns, add(number)); }
    /** A packet that is passed on as it came. */
    void extension(uint8_t number, const TeletextPage::Line& line) {
        memcpy(add(number), line.data() + kAddress, kLineSize - kAddress);
    }
    vbi_sliced* data() { return mLines.data(); }
    int count() const { return static_cast<int>(mLines.size()); }

  private:
    static constexpr size_t kAddress = 2;
    static constexpr uint8_t kMagazine = 1, kErase = 8;

    /** @return where the bytes behind the address go */
    uint8_t* add(uint8_t number) {
        vbi_sliced sliced{};
        sliced.id = VBI_SLICED_TELETEXT_B;
        sliced.line = kFirstLine + static_cast<uint32_t>(mLines.size()) % kLines;
        sliced.data[0] = static_cast<uint8_t>(vbi_ham8(kMagazine | (number & 1u) << 3));
        sliced.data[1] = static_cast<uint8_t>(vbi_ham8(number >> 1));
        mLines.push_back(sliced);
        return mLines.back().data + kAddress;
    }
    static void characters(const uint8_t* text, size_t count, uint8_t* to) {
        for (size_t i = 0; i < count; ++i) to[i] = static_cast<uint8_t>(vbi_par8(text[i]));
    }

    static constexpr uint32_t kFirstLine = 7, kLines = 16;
    std::vector<vbi_sliced> mLines;
};

/** Codes and characters are the same but for mosaics. */
TeletextCharacters asciiCharacters(const TeletextPage& page) {
    constexpr uint8_t kFirstMosaic = 0x10, kLastMosaic = 0x17, kLastAlpha = 0x07, kBlock = 0x7f;
    constexpr uint16_t kSquare = 0x25a0;
    TeletextCharacters characters{};
    for (size_t row = 0; row < TeletextPage::kRows; ++row) {
        bool mosaics = false;
        for (size_t column = 0; column < kColumns; ++column) {
            const uint8_t code = page.rows[row][column];
            if (code <= kLastAlpha) mosaics = false;
            if (code >= kFirstMosaic && code <= kLastMosaic) mosaics = true;
            const bool cell = mosaics && (code < 0x40 || code >= 0x60);
            characters[row][column] = code < ' ' || cell ? ' ' : code == kBlock ? kSquare : code;
        }
    }
    return characters;
}

}  // namespace

TeletextCharacters charactersOf(const TeletextPage& page) {
    if (page.ascii) return asciiCharacters(page);
    constexpr double kFrame = 0.04;
    constexpr uint8_t kPage = 0x00, kNoPage = 0xff;
    constexpr uint16_t kPrivateArea = 0xe000;
    Lines lines;
    const auto addExtensions = [&](uint8_t packet) {
        for (const auto& [key, line] : page.extensions) {
            if (key.first == packet) lines.extension(packet, line);
        }
    };
    // Without its flags, by which a subtitle, for example, shows nothing but its boxes.
    lines.header(kPage, page.national, page.rows[0].data() + kReserved);
    addExtensions(kMagazineSets);
    addExtensions(kSets);
    for (uint8_t row = 1; row < TeletextPage::kRows; ++row) lines.row(row, page.rows[row].data());
    addExtensions(kAccents);
    lines.header(kNoPage, 0, page.rows[0].data() + kReserved);

    VbiDecoder decoder(
            VBI_EVENT_TTX_PAGE, [](vbi_event*, void*) {}, nullptr, kFrame);
    vbi_teletext_set_default_region(decoder.get(), page.region);
    decoder.decode(lines.data(), lines.count());
    TeletextCharacters characters{};
    for (auto& row : characters) row.fill(' ');
    for (size_t i = 0; i < kReserved; ++i) {
        characters[0][i] = std::max<uint16_t>(page.rows[0][i], ' ');
    }
    vbi_page shown{};
    if (!vbi_fetch_vt_page(decoder.get(), &shown, 0x100, 0, VBI_WST_LEVEL_1p5, TeletextPage::kRows,
                           FALSE)) {
        if (page.extensions.empty()) return characters;
        // They say that it is no page.
        TeletextPage plain = page;
        plain.extensions.clear();
        return charactersOf(plain);
    }
    for (size_t row = 0; row < TeletextPage::kRows && static_cast<int>(row) < shown.rows; ++row) {
        for (size_t column = row == 0 ? kReserved : 0; column < kColumns; ++column) {
            const vbi_char& c = shown.text[row * static_cast<size_t>(shown.columns) + column];
            // The lower halves of high characters repeat them; graphics stand in the private area.
            const bool part = c.size >= VBI_OVER_TOP;
            if (part || c.unicode < ' ' || c.unicode >= kPrivateArea) continue;
            characters[row][column] = static_cast<uint16_t>(c.unicode);
        }
    }
    vbi_unref_page(&shown);
    return characters;
}

TeletextDecoder::TeletextDecoder(const std::string& language) : mRegion(regionOf(language)) {}

void TeletextDecoder::push(const uint8_t* payload, size_t size) {
    constexpr uint8_t kFirstIdentifier = 0x10, kLastIdentifier = 0x1f;
    constexpr uint8_t kTeletext = 0x02, kSubtitles = 0x03, kFraming = 0xe4;
    constexpr size_t kUnit = 2 + kLineSize;
    if (size < 1 || payload[0] < kFirstIdentifier || payload[0] > kLastIdentifier) return;
    for (size_t at = 1; at + 2 <= size;) {
        const uint8_t kind = payload[at], length = payload[at + 1];
        at += 2;
        if (length > size - at) break;
        const uint8_t* unit = payload + at;
        at += length;
        if ((kind != kTeletext && kind != kSubtitles) || length < kUnit || unit[1] != kFraming) {
            continue;
        }
        uint8_t bytes[kLineSize];
        for (size_t i = 0; i < kLineSize; ++i) {
            bytes[i] = static_cast<uint8_t>(vbi_rev8(unit[2 + i]));
        }
        line(bytes);
    }
}

void TeletextDecoder::interrupt() {
    for (Magazine& each : mMagazines) each.open = each.topTable = each.topTitles = false;
}

void TeletextDecoder::line(const uint8_t* bytes) {
    const auto address = pairOf(bytes);
    if (!address) return;
    const uint8_t number = *address & 7, row = *address >> 3;
    Magazine& magazine = mMagazines[number];
    if (row == 0) {
        header(&magazine, number, bytes);
    } else if (magazine.topTable && row <= kLastTopRow) {
        topRow(row, bytes + 2);
    } else if (magazine.topTitles && row <= kLastTopRow) {
        titleRow(bytes + 2);
    } else if (magazine.open && row < TeletextPage::kRows) {
        copyCharacters(bytes + 2, kColumns, magazine.page.rows[row].data());
    } else if (row == kMagazineSets || (magazine.open && (row == kAccents || row == kSets))) {
        const auto designation = nibble(bytes[2]);
        if (!designation) return;
        TeletextPage::Line line;
        memcpy(line.data(), bytes, kLineSize);
        if (row == kMagazineSets) {
            magazine.extensions[*designation] = line;
        } else {
            magazine.page.extensions[{row, *designation}] = line;
        }
    }
}

void TeletextDecoder::header(Magazine* magazine, uint8_t number, const uint8_t* bytes) {
    constexpr uint8_t kSuppressed = 0x01, kInterrupted = 0x04, kInhibited = 0x08, kSerial = 0x10;
    const auto page = pairOf(bytes + 2), low = pairOf(bytes + 4), high = pairOf(bytes + 6);
    const auto control = pairOf(bytes + 8);
    close(magazine);
    magazine->topTable = magazine->topTitles = false;
    if (!page || !low || !high || !control) return;
    const bool erase = (*low & 0x80) != 0, serial = (*control & kSerial) != 0;
    if (serial) {
        // A header ends the page of every magazine.
        for (Magazine& each : mMagazines) close(&each);
    }
    TeletextPage next;
    next.number = static_cast<uint16_t>((number == 0 ? 8 : number) << 8 | *page);
    next.subpage = static_cast<uint16_t>((*low & 0x7f) | (*high & 0x3f) << 8);
    next.newsflash = (*high & 0x40) != 0;
    next.subtitle = (*high & 0x80) != 0;
    next.headless = (*control & kSuppressed) != 0;
    next.national = static_cast<uint8_t>(*control >> 5 & 7);
    next.region = mRegion;
    magazine->topTable = next.number == kTopTable;
    magazine->topTitles = !magazine->topTable && mTitlePages.count(next.number) != 0;
    if (magazine->topTitles) mTitleNational = next.national;
    if (!isDecimal(next.number) || next.subpage > kAnySubpage) return;
    const auto known = mPages.find({next.number, next.subpage});
    if (!erase && known != mPages.end()) {
        next.rows = known->second.page.rows;
        next.extensions = known->second.page.extensions;
    }
    copyCharacters(bytes + 2 + kReserved, kColumns - kReserved, next.rows[0].data() + kReserved);
    const bool shown = (*control & (kSuppressed | kInterrupted | kInhibited)) == 0;
    if (shown && !next.subtitle) mHeader = TeletextHeader{next.rows[0], next.national, mRegion};
    magazine->page = std::move(next);
    magazine->open = true;
}

void TeletextDecoder::topRow(uint8_t row, const uint8_t* bytes) {
    constexpr uint8_t kTitles = 2;
    if (row <= kTopRows) {
        mTop.resize(kTopRows * kColumns, kUnknown);
        for (size_t i = 0; i < kColumns; ++i) {
            const auto code = nibble(bytes[i]);
            if (code) mTop[(row - 1u) * kColumns + i] = *code;
        }
        return;
    }
    for (size_t at = 0; at + kTopLink <= kColumns; at += kTopLink) {
        const auto link = topLink(bytes + at);
        if (!link || link->kind != kTitles || isDecimal(link->page)) continue;
        if (mTitlePages.size() >= kMostTitlePages) mTitlePages.clear();
        mTitlePages.insert(link->page);
    }
}

void TeletextDecoder::titleRow(const uint8_t* bytes) {
    constexpr size_t kEntry = kTopLink + kTitleSize;
    for (size_t at = 0; at + kEntry <= kColumns; at += kEntry) {
        const auto link = topLink(bytes + at);
        if (!link || link->page < 0x100 || link->page > 0x8ff || !isDecimal(link->page)) continue;
        auto title = mTitles.find(link->page);
        if (title == mTitles.end()) {
            title = mTitles.emplace(link->page, std::array<uint8_t, kTitleSize>{}).first;
            title->second.fill(' ');
        }
        copyCharacters(bytes + at + kTopLink, kTitleSize, title->second.data());
    }
}

void TeletextDecoder::close(Magazine* magazine) {
    if (!magazine->open) return;
    magazine->open = false;
    TeletextPage& page = magazine->page;
    const Key key{page.number, page.subpage};
    const auto known = mPages.find(key);
    if (known == mPages.end()) {
        makeSpace();
        page.version = ++mVersions;
    } else {
        const TeletextPage& before = known->second.page;
        // Headers have a clock.
        const bool same =
                std::equal(page.rows.begin() + 1, page.rows.end(), before.rows.begin() + 1) &&
                page.national == before.national && page.extensions == before.extensions;
        page.version = same ? before.version : ++mVersions;
        mOrder.erase(known->second.arrival);
    }
    ++mArrivals;
    mLatest[page.number] = page.subpage;
    mOrder[mArrivals] = key;
    mPages[key] = {std::move(page), mArrivals};
}

void TeletextDecoder::makeSpace() {
    if (mPages.size() < kPageLimit) return;
    const auto oldest = mOrder.begin();
    const Key key = oldest->second;
    mOrder.erase(oldest);
    mPages.erase(key);
    const auto latest = mLatest.find(key.first);
    // Of a page's subpages the latest goes last.
    if (latest != mLatest.end() && latest->second == key.second) mLatest.erase(latest);
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

uint16_t TeletextDecoder::subpageNumber(uint16_t number, uint16_t code) const {
    // A page without subpages is its own first one.
    if (code == 0) return mPages.count({number, 1}) == 0 ? 1 : 0;
    uint16_t decimal = 0;
    for (const int shift : {12, 8, 4, 0}) {
        const uint16_t digit = code >> shift & 0x0f;
        if (digit > 9) return code | kNoDecimal;
        decimal = static_cast<uint16_t>(decimal * 10 + digit);
    }
    return decimal;
}

std::optional<TeletextPage> TeletextDecoder::page(uint16_t number,
                                                  std::optional<uint16_t> subpage) const {
    const auto latest = mLatest.find(number);
    if (latest == mLatest.end()) return std::nullopt;
    const auto found = mPages.find({number, subpage.value_or(latest->second)});
    if (found == mPages.end()) return std::nullopt;
    TeletextPage page = found->second.page;
    for (const auto& [designation, line] : mMagazines[number >> 8 & 7].extensions) {
        page.extensions[{kMagazineSets, designation}] = line;
    }
    return page;
}

std::vector<std::string> TeletextDecoder::text(uint16_t number,
                                               std::optional<uint16_t> subpage) const {
    const auto found = page(number, subpage);
    if (!found) return {};
    std::vector<std::string> rows;
    for (const auto& row : charactersOf(*found)) {
        std::string& text = rows.emplace_back();
        for (const uint16_t c : row) appendUtf8(&text, c);
    }
    return rows;
}

bool TeletextDecoder::isAbsent(uint16_t number) const {
    const auto index = static_cast<size_t>((number >> 8) * 100 + (number >> 4 & 0x0f) * 10 +
                                           (number & 0x0f) - kFirstTopPage);
    return index < mTop.size() && mTop[index] == kNotSent;
}

std::vector<TopPage> TeletextDecoder::top() const {
    // Titles share rows of a page of their own, which gives them their character set.
    constexpr size_t kInRow = kColumns / kTitleSize;
    TeletextPage scratch;
    scratch.national = mTitleNational;
    scratch.region = mRegion;
    std::vector<TopPage> pages;
    size_t first = 0;
    const auto convert = [&] {
        const TeletextCharacters characters = charactersOf(scratch);
        for (size_t i = first; i < pages.size(); ++i) {
            const size_t place = i - first;
            const uint16_t* from = &characters[1 + place / kInRow][place % kInRow * kTitleSize];
            for (size_t c = 0; c < kTitleSize; ++c) appendUtf8(&pages[i].title, from[c]);
            pages[i].title.erase(pages[i].title.find_last_not_of(' ') + 1);
        }
        first = pages.size();
        for (auto& row : scratch.rows) row.fill(' ');
    };
    for (size_t i = 0; i < mTop.size(); ++i) {
        const uint8_t code = mTop[i];
        // 0 and 1 are no page and subtitles; 2 to 5 programmes and blocks, 6 and 7 groups.
        if (code < 2 || code > 11) continue;
        const size_t decimal = i + kFirstTopPage;
        TopPage page;
        page.number =
                static_cast<uint16_t>(decimal / 100 << 8 | decimal / 10 % 10 << 4 | decimal % 10);
        page.level = code <= 5 ? uint8_t{1} : code <= 7 ? uint8_t{2} : uint8_t{3};
        const auto title = mTitles.find(page.number);
        if (title != mTitles.end()) {
            const size_t place = pages.size() - first;
            std::copy(title->second.begin(), title->second.end(),
                      &scratch.rows[1 + place / kInRow][place % kInRow * kTitleSize]);
        }
        pages.push_back(page);
        if (pages.size() - first == kInRow * (TeletextPage::kRows - 1)) convert();
    }
    if (first != pages.size()) convert();
    return pages;
}

}  // namespace qeltvd::stream
