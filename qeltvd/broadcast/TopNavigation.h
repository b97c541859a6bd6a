#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "TeletextDecoder.h"

namespace qeltvd {

/** The tree of TOP: blocks have groups, groups have pages. A list of pages in order describes it.
 */
class TopNavigation {
  public:
    using Pages = std::vector<stream::TopPage>;

    explicit TopNavigation(Pages pages) : mPages(std::move(pages)) {}

    Pages blocks() const;
    /** The groups of the block that a page is in; nothing if there is no such page. */
    std::optional<Pages> groups(uint16_t page) const;
    /** The pages of the group that a page is in; nothing if there is no such page. */
    std::optional<Pages> pages(uint16_t page) const;
    /** What stands under a page, one level down; nothing if there is no such page. */
    std::optional<Pages> under(uint16_t page) const;

  private:
    Pages::const_iterator find(uint16_t page) const;
    /** The entries next below a level, around a page. */
    Pages around(Pages::const_iterator page, uint8_t above) const;

    const Pages mPages;
};

}  // namespace qeltvd
