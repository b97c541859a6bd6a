#include "TopNavigation.h"

#include <algorithm>
#include <iterator>

namespace qeltvd {

namespace {

// Levels; the higher contain the lower.
constexpr uint8_t kBlock = 1, kGroup = 2;

}  // namespace

TopNavigation::Pages::const_iterator TopNavigation::find(uint16_t page) const {
    return std::find_if(mPages.begin(), mPages.end(),
                        [page](const stream::TopPage& each) { return each.number == page; });
}

TopNavigation::Pages TopNavigation::around(Pages::const_iterator page, uint8_t above) const {
    // A broadcast list need not begin with a block.
    while (page->level > above && page != mPages.begin()) --page;
    Pages found;
    for (auto each = page->level > above ? page : std::next(page);
         each != mPages.end() && each->level > above; ++each) {
        if (each->level == above + 1) found.push_back(*each);
    }
    return found;
}

TopNavigation::Pages TopNavigation::blocks() const {
    Pages found;
    std::copy_if(mPages.begin(), mPages.end(), std::back_inserter(found),
                 [](const stream::TopPage& each) { return each.level == kBlock; });
    return found;
}

std::optional<TopNavigation::Pages> TopNavigation::groups(uint16_t page) const {
    const auto found = find(page);
    if (found == mPages.end()) return std::nullopt;
    return around(found, kBlock);
}

std::optional<TopNavigation::Pages> TopNavigation::pages(uint16_t page) const {
    const auto found = find(page);
    if (found == mPages.end()) return std::nullopt;
    // A block's own page stands in no group.
    if (found->level == kBlock) return Pages();
    return around(found, kGroup);
}

std::optional<TopNavigation::Pages> TopNavigation::under(uint16_t page) const {
    const auto found = find(page);
    if (found == mPages.end()) return std::nullopt;
    return around(found, found->level);
}

}  // namespace qeltvd
