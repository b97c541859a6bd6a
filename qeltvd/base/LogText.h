#pragma once

#include <string>
#include <string_view>

namespace qeltvd {

/** Bytes of a text that a log line shows. */
constexpr size_t kLogTextLimit = 500;

/**
 * A text that comes from outside, as a log line shows it: control characters, backslashes and bytes
 * that are not UTF-8 are escaped, and a longer text is cut and its size added.
 */
std::string logText(std::string_view text);

}  // namespace qeltvd
