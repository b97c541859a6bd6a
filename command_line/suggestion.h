#pragma once

#include <string>
#include <vector>

namespace tool {

/** ' (did you mean "X"?)' with the nearest of some names, or "" if none is near. */
std::string suggestion(const std::string& word, const std::vector<std::string>& names);

}  // namespace tool
