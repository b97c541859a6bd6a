/** The reply of the methods that read a rating as display texts. */
#ifndef CLIENTWRAPPER_RATING_MAP_H
#define CLIENTWRAPPER_RATING_MAP_H

#include "call.h"
#include "hw_qeltvapi_rating_map.h"

namespace qeltvapi {

static_assert(offsetof(QELTVAPI_RATING_MAP_T, second) == 65);
static_assert(offsetof(QELTVAPI_RATING_MAP_T, third) == 98);

inline auto storeRatingMap(QELTVAPI_RATING_MAP_T* out) {
    return [=](const vendor::qelnova::tv::qeltvapi::V1_0::HIDL_T_RATING_MAP_TO_G& rating,
               int32_t code) {
        copyField(out->first, rating.first, 64);
        copyField(out->second, rating.second, 32);
        copyField(out->third, rating.third, 255);
        return code;
    };
}

}  // namespace qeltvapi

#endif  // CLIENTWRAPPER_RATING_MAP_H
