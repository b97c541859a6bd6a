#pragma once

#include <cstdint>

#include "layouts/codes.h"

namespace qeltvd {

/**
 * The result codes of layouts/codes.h as a type. A function that returns one can fail, so a caller
 * that drops it does not compile.
 */
enum [[nodiscard]] Code : int32_t{
        kOk = QELTV_OK,           kNotFound = QELTV_NOT_FOUND, kBadValue = QELTV_BAD_VALUE,
        kRefused = QELTV_REFUSED, kStorage = QELTV_STORAGE,    kUnsupported = QELTV_UNSUPPORTED,
};

}  // namespace qeltvd
