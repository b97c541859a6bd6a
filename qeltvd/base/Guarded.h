#pragma once

#include <log/log.h>

#include <exception>

#include "LogText.h"

namespace qeltvd {

/**
 * Runs a task of a thread that goes on after it, where no caller could take an exception.
 *
 * @param what names the task in the log
 * @return false when the task threw, which is logged
 */
template <class Task>
bool guarded(const char* what, const Task& task) noexcept {
    try {
        task();
        return true;
    } catch (const std::exception& e) {
        ALOGE("%s failed: %s", what, logText(e.what()).c_str());
    } catch (...) {
        ALOGE("%s failed with an unknown exception", what);
    }
    return false;
}

/** Notifies all of an object's listeners of a change that has happened, which none can refuse. */
template <class Listeners, class... Arguments>
void callAll(const char* what, const Listeners& listeners, const Arguments&... arguments) {
    for (const auto& listener : listeners) {
        guarded(what, [&] { listener(arguments...); });
    }
}

}  // namespace qeltvd
