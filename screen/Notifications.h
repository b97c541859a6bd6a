#pragma once

#include <cstdint>
#include <functional>
#include <nlohmann/json.hpp>
#include <string>

namespace screen {

/** A notification as it came. */
struct Notification {
    std::string kind;              /**< as in "broadcast" */
    int64_t type = 0;              /**< its first value; 0 if that is no number */
    std::string event;             /**< name of the type, as in "plays"; empty if it has none */
    nlohmann::ordered_json values; /**< object of the other values by name, as texts */
};

/**
 * Registers for all kinds of notifications, once in a process and while the television is there.
 *
 * @param receive called on threads of the HIDL runtime, several at a time; never destroyed
 */
void listen(std::function<void(const Notification&)> receive);

}  // namespace screen
