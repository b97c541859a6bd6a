#pragma once

#include <nlohmann/json_fwd.hpp>
#include <string>
#include <vector>

#include "printable.h"

/** Everything that the commands print passes through here. */
namespace tool {

/** A text for people, see printable(), if stdout is a terminal; otherwise the text itself, for
 * scripts. */
std::string shownText(const std::string& text);

/** Prints rows in columns as wide as their longest cell; the first row is the head. */
void printTable(const std::vector<std::vector<std::string>>& rows);

/** JSON as text. Bytes that are not UTF-8 become U+FFFD. */
std::string jsonText(const nlohmann::ordered_json& json, int indent = -1);

/** Prints JSON and a line end; `indent` -1 for a single line. */
void printJson(const nlohmann::ordered_json& json, int indent = 2);

/** Opens descriptors 0 to 2 if they are closed, so that no socket takes their place. */
void openStandardFiles();

/**
 * Writes out what is still buffered.
 *
 * @return false, with a line on stderr, if any part of the output could not be written
 */
bool finishOutput();

}  // namespace tool
