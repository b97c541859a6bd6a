#pragma once

#include <string_view>
#include <vector>

namespace screen {

/** A file of the page, as it was when the program was built. */
struct Asset {
    std::string_view path; /**< as in "/app.js" */
    std::string_view type; /**< media type */
    std::string_view content;
};

/** All of them; written by embed.py. */
const std::vector<Asset>& assets();

}  // namespace screen
