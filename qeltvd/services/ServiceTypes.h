#pragma once

#include <hidl/HidlSupport.h>
#include <hidl/Status.h>
#include <qeltvapi/service/service.h>
#include <vendor/qelnova/tv/qeltvapi/1.0/types.h>

#include "Result.h"

namespace qeltvd {

using namespace ::vendor::qelnova::tv::qeltvapi::V1_0;
using qeltvapi::service::Default;

// The platform's types that the methods of all services name.

template <class T>
using Return = android::hardware::Return<T>;
template <class T>
using Vector = android::hardware::hidl_vec<T>;
using Bytes = Vector<uint8_t>;
using String = android::hardware::hidl_string;
using Handle = android::hardware::hidl_handle;
using android::hardware::Void;

/** Answers a call with a value, or with an empty one and the code. */
template <class Reply, class T>
Return<void> replyWith(const Reply& reply, const Result<T>& result) {
    reply(result.valueOr(T{}), result.code());
    return Void();
}

}  // namespace qeltvd
