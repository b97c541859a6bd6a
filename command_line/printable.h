#pragma once

#include <string>

namespace tool {

/** A text for people: control bytes, and bytes that are not UTF-8, as "\xNN". */
std::string printable(const std::string& text);

}  // namespace tool
