#pragma once

#include <functional>
#include <nlohmann/json.hpp>
#include <vector>

namespace tool {

/** A kind of notifications that any process can register for. */
struct NotificationKind {
    const char* name; /**< its name in the description, as in "broadcast" */
    void (*listen)(); /**< registers this process; see listen() */
};

/** All kinds, in the order of their names. */
const std::vector<NotificationKind>& notificationKinds();

/**
 * Receives a notification on a thread of the HIDL runtime, several at a time.
 *
 * @param values array of the values in the order of the callback's parameters: numbers, texts, and
 *               "(data)" for blocks, which arrive without their size; null for null pointers
 */
using NotificationReceiver =
        std::function<void(const char* kind, const nlohmann::ordered_json& values)>;

/**
 * Registers for kinds of notifications, once in a process and while the television is there.
 *
 * @param receive never destroyed
 */
void listen(const std::vector<NotificationKind>& kinds, NotificationReceiver receive);

}  // namespace tool
