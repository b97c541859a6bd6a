#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <utility>
#include <vector>

namespace qeltvd::stream {

/** One page of teletext, or one of its subpages. */
struct TeletextPage {
    static constexpr size_t kRows = 25;
    static constexpr size_t kColumns = 40;
    /** Characters that the broadcast leaves to the receiver, which shows the page number there. */
    static constexpr size_t kReserved = 8;
    /** What a packet carries behind the framing code. */
    static constexpr size_t kLineSize = 42;
    using Row = std::array<uint8_t, kColumns>;
    using Line = std::array<uint8_t, kLineSize>;

    TeletextPage() {
        for (Row& row : rows) row.fill(' ');
    }

    /** 0x100 to 0x8ff. */
    uint16_t number = 0;
    /** The code of the subpage, digits as in the number; 0 for a page without subpages. */
    uint16_t subpage = 0;
    /** Seven-bit codes with control codes, blanks where no row came; row 0 is the header. */
    std::array<Row, kRows> rows{};
    /** The national character set of the page: C12 of its header in the lowest bit, then C13, C14.
     */
    uint8_t national = 0;
    /** Which eight sets these are, bits 3 to 6 of EN 300 706, table 32; unless a packet says. */
    uint8_t region = 0;
    /** The codes are those of ASCII, which no broadcast has. */
    bool ascii = false;
    bool newsflash = false;
    bool subtitle = false;
    /** Whether the header is not to be shown. */
    bool headless = false;
    /** Packets that change characters or choose their sets, by number and designation. */
    std::map<std::pair<uint8_t, uint8_t>, Line> extensions = {};
    /** Another one for other contents. */
    uint64_t version = 0;
};

/** What stands in each place of a page, UTF-16; blanks for control codes and mosaics. */
using TeletextCharacters =
        std::array<std::array<uint16_t, TeletextPage::kColumns>, TeletextPage::kRows>;

/** Applies the character sets of a page and the accents that it adds (level 1.5). */
TeletextCharacters charactersOf(const TeletextPage& page);

/** The first row of the page that came last, whose end is the clock. */
struct TeletextHeader {
    TeletextPage::Row row;
    /** As of a page. */
    uint8_t national;
    uint8_t region;
};

/** A page that TOP navigation lists. */
struct TopPage {
    uint16_t number = 0;
    /** 1 block, 2 group, 3 page. */
    uint8_t level = 3;
    /** UTF-8; empty where the broadcast has none. */
    std::string title = {};
};

/**
 * Collects the pages of one elementary stream of teletext. A page counts when the next one of its
 * magazine has begun. Memory is bounded: beyond kPageLimit pages, those go that came longest ago.
 */
class TeletextDecoder {
  public:
    static constexpr size_t kPageLimit = 4000;
    static constexpr uint16_t kNoDecimal = 0x4000;

    /** @param language of the service, which chooses the region of its character sets */
    explicit TeletextDecoder(const std::string& language = {});
    TeletextDecoder(const TeletextDecoder&) = delete;
    TeletextDecoder& operator=(const TeletextDecoder&) = delete;

    /** Takes what a packet of the elementary stream carries (EN 300 472). */
    void push(const uint8_t* payload, size_t size);
    /** The next packet does not continue those before. */
    void interrupt();

    /** Numbers of the pages so far, in order. */
    std::vector<uint16_t> pages() const;
    /** Codes of the subpages so far. */
    std::vector<uint16_t> subpages(uint16_t number) const;
    /**
     * The number by which viewers know a subpage, from 1: the digits of its code as a decimal
     * number. A code with other digits has kNoDecimal added.
     */
    uint16_t subpageNumber(uint16_t number, uint16_t code) const;
    /** A subpage, or the one that was received last; nothing for one that was not. */
    std::optional<TeletextPage> page(uint16_t number, std::optional<uint16_t> subpage = {}) const;
    /** Nothing before the first one that is to be shown. */
    const std::optional<TeletextHeader>& header() const { return mHeader; }
    /** The rows as UTF-8; graphics and control codes are blanks. */
    std::vector<std::string> text(uint16_t number, std::optional<uint16_t> subpage = {}) const;
    /** Pages of the TOP tables, in order; empty where none are sent. */
    std::vector<TopPage> top() const;
    /** Whether the TOP tables say that a page is not sent. */
    bool isAbsent(uint16_t number) const;
    /** Counts the pages that arrived, repetitions as well. */
    uint64_t arrivals() const { return mArrivals; }

  private:
    using Key = std::pair<uint16_t, uint16_t>;
    struct Magazine {
        bool open = false;
        /** The tables of TOP that its page has. */
        bool topTable = false;
        bool topTitles = false;
        TeletextPage page;
        /** Packets 29, by designation. */
        std::map<uint8_t, TeletextPage::Line> extensions;
    };
    struct Stored {
        TeletextPage page;
        uint64_t arrival = 0;
    };

    void line(const uint8_t* line);
    void header(Magazine* magazine, uint8_t number, const uint8_t* bytes);
    void topRow(uint8_t row, const uint8_t* bytes);
    void titleRow(const uint8_t* bytes);
    void close(Magazine* magazine);
    void makeSpace();

    const uint8_t mRegion;
    std::array<Magazine, 8> mMagazines;
    /** By number and code of the subpage. */
    std::map<Key, Stored> mPages;
    /** The keys of the pages in the order in which they came last. */
    std::map<uint64_t, Key> mOrder;
    /** The subpage of each page that was received last. */
    std::map<uint16_t, uint16_t> mLatest;
    std::optional<TeletextHeader> mHeader;
    /** Codes of the TOP table for the pages from 100 to 899; empty before it comes. */
    std::vector<uint8_t> mTop;
    /** Pages of the titles of TOP, and the titles as they are sent. */
    std::set<uint16_t> mTitlePages;
    std::map<uint16_t, std::array<uint8_t, 12>> mTitles;
    uint8_t mTitleNational = 0;
    uint64_t mArrivals = 0;
    uint64_t mVersions = 0;
};

}  // namespace qeltvd::stream
