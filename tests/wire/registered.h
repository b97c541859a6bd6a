/** For tests that raise notifications: the callback object must be there first. */
#ifndef TESTS_WIRE_REGISTERED_H
#define TESTS_WIRE_REGISTERED_H

#include "eventually.h"
#include "wire.h"

namespace wire {

/** Starts the scripted service and has the callback object registered; false if it does not come.
 */
inline bool registered() {
    ScriptedService& service = ScriptedService::instance();
    service.start();
    if (service.callback() == nullptr) registerCallbackHandler();
    return eventually([&] { return service.callback() != nullptr; });
}

}  // namespace wire

#endif  // TESTS_WIRE_REGISTERED_H
