#pragma once

#include <log/log.h>

#include <cstdint>

#include "Code.h"
#include "Store.h"

namespace qeltvd {

/** The code of a change of the store; a store that fails is a refusal. */
template <class F>
int32_t stored(const F& change) {
    try {
        return change();
    } catch (const StoreError& e) {
        ALOGE("%s", e.what());
        return kStorage;
    }
}

}  // namespace qeltvd
