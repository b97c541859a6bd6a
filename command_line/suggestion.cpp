#include "suggestion.h"

#include <algorithm>
#include <numeric>

namespace tool {
namespace {

/** Letters to insert, delete, replace or swap with their neighbour to get from one to the other. */
size_t distance(const std::string& from, const std::string& to) {
    std::vector<std::vector<size_t>> d(from.size() + 1, std::vector<size_t>(to.size() + 1));
    std::iota(d[0].begin(), d[0].end(), size_t{0});
    for (size_t i = 1; i <= from.size(); ++i) {
        d[i][0] = i;
        for (size_t j = 1; j <= to.size(); ++j) {
            d[i][j] = std::min({d[i - 1][j] + 1, d[i][j - 1] + 1,
                                d[i - 1][j - 1] + (from[i - 1] != to[j - 1])});
            if (i > 1 && j > 1 && from[i - 1] == to[j - 2] && from[i - 2] == to[j - 1]) {
                d[i][j] = std::min(d[i][j], d[i - 2][j - 2] + 1);
            }
        }
    }
    return d[from.size()][to.size()];
}

}  // namespace

std::string suggestion(const std::string& word, const std::vector<std::string>& names) {
    constexpr size_t kLongest = 128;
    if (word.empty() || word.size() > kLongest) return "";
    const std::string* nearest = nullptr;
    size_t best = std::max<size_t>(1, word.size() / 3) + 1;
    for (const std::string& name : names) {
        if (name.empty()) continue;
        const bool begins = word.size() > 2 && name.compare(0, word.size(), word) == 0;
        const size_t d = begins ? 1 : distance(word, name);
        if (d >= best) continue;
        best = d;
        nearest = &name;
    }
    return nearest != nullptr ? " (did you mean \"" + *nearest + "\"?)" : "";
}

}  // namespace tool
