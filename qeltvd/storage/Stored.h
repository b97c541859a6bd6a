#pragma once

#include <log/log.h>

#include <type_traits>

#include "Code.h"
#include "Store.h"

namespace qeltvd {

/** Makes a change of the store. Returns what the change returns, kStorage if the store fails. */
template <class F>
auto stored(const F& change) -> std::invoke_result_t<const F&> {
    try {
        return change();
    } catch (const StoreError& e) {
        ALOGE("%s", e.what());
        return kStorage;
    }
}

}  // namespace qeltvd
