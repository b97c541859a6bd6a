#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace qeltvd::stream {

class VbiDecoder;

/** One page of teletext, or one of its subpages. */
struct TeletextPage {
    static constexpr size_t kRows = 25;
    static constexpr size_t kColumns = 40;

    /** 0x100 to 0x8ff. */
    uint16_t number = 0;
    /** 0 for a page without subpages. */
    uint16_t subpage = 0;
    /** Seven-bit codes with control codes, blanks where no row came; row 0 is the header. */
    std::array<std::array<uint8_t, kColumns>, kRows> rows{};
    /** The national character set of the page: C12 of its header in the lowest bit, then C13, C14.
     */
    uint8_t national = 0;
    bool newsflash = false;
    bool subtitle = false;
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
 * Collects the pages of one teletext service. A page counts when the next one of its magazine has
 * begun. Memory is bounded: beyond kPageLimit pages all of them are forgotten.
 */
class TeletextDecoder {
  public:
    static constexpr size_t kPageLimit = 4000;

    TeletextDecoder();
    ~TeletextDecoder();
    TeletextDecoder(const TeletextDecoder&) = delete;
    TeletextDecoder& operator=(const TeletextDecoder&) = delete;

    /** Takes what a packet of the elementary stream carries (EN 300 472). */
    void push(const uint8_t* payload, size_t size);
    /** The next packet does not continue those before. */
    void interrupt();

    /** Numbers of the pages so far, in order. */
    std::vector<uint16_t> pages() const;
    std::vector<uint16_t> subpages(uint16_t number) const;
    /** A subpage, or the one that was received last; nothing for one that was not. */
    std::optional<TeletextPage> page(uint16_t number, std::optional<uint16_t> subpage = {}) const;
    /** The rows as UTF-8 in the character set of the page; graphics and control codes are blanks.
     */
    std::vector<std::string> text(uint16_t number, std::optional<uint16_t> subpage = {}) const;
    /** Pages of the TOP tables, in order; empty where none are sent. */
    std::vector<TopPage> top() const;
    /** Counts the pages that arrived, repetitions as well. */
    uint64_t arrivals() const { return mArrivals; }

  private:
    struct Magazine {
        bool open = false;
        bool topTable = false;
        TeletextPage page;
    };

    void line(const uint8_t* line);
    void header(Magazine* magazine, uint8_t number, const uint8_t* bytes);
    void close(Magazine* magazine);
    void forget();

    std::unique_ptr<VbiDecoder> mLibrary;
    std::array<Magazine, 8> mMagazines;
    /** By number and subpage. */
    std::map<std::pair<uint16_t, uint16_t>, TeletextPage> mPages;
    /** The subpage of each page that was received last. */
    std::map<uint16_t, uint16_t> mLatest;
    /** Codes of the TOP table for the pages from 100 to 899. */
    std::vector<uint8_t> mTop;
    uint64_t mArrivals = 0;
};

}  // namespace qeltvd::stream
