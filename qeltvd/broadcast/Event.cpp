#include "Event.h"

#include <iterator>

namespace qeltvd {

std::string guidanceOf(const Event& event) {
    constexpr const char* kWords[] = {"suggestive dialogue", "strong language", "sexual scenes",
                                      "violence"};
    std::string text;
    for (unsigned bit = 0; bit < std::size(kWords); ++bit) {
        if ((event.rating.content >> bit & 1) == 0) continue;
        text += (text.empty() ? "Contains " : ", ") + std::string(kWords[bit]);
    }
    return text.empty() ? text : text + ".";
}

const char* nameOfGenre(uint8_t genre) {
    constexpr const char* kNames[] = {"",      "film", "news",    "show",    "sport",  "children",
                                      "music", "arts", "society", "science", "leisure"};
    return genre < std::size(kNames) ? kNames[genre] : "";
}

}  // namespace qeltvd
