/** Shared by the modules of the channel data: the lines of their frames and reply handlers. */
#ifndef CLIENTWRAPPER_CHANNEL_DATA_H
#define CLIENTWRAPPER_CHANNEL_DATA_H

#include "call.h"

namespace qeltvapi {

namespace line {

inline void enter(const char* tag, const Site& site) {
    QELTVAPI_LOG_SITE(tag, site, "<%s:%d> Enter ");
}

inline void exit(const char* tag, const Site& site, long long /*result*/) {
    QELTVAPI_LOG_SITE(tag, site, "<%s:%d> Exit ");
}

inline void invalid(const char* tag, const Site& site) {
    QELTVAPI_LOG_SITE(tag, site, "<%s:%d> Error --> service is invalid\n");
}

inline void invalidTwoBlanks(const char* tag, const Site& site) {
    QELTVAPI_LOG_SITE(tag, site, "<%s:%d>  Error --> service is invalid\n");
}

// The same with the path of the module's source and the function's name.

template <const char* kFile>
void enterIn(const char* tag, const Site& site) {
    QELTVAPI_LOG_SITE(tag, site, "<%s:%d> Enter [%s][%s]", kFile, site.function);
}

template <const char* kFile>
void exitIn(const char* tag, const Site& site, long long /*result*/) {
    QELTVAPI_LOG_SITE(tag, site, "<%s:%d> Exit [%s][%s]", kFile, site.function);
}

template <const char* kFile>
void invalidIn(const char* tag, const Site& site) {
    QELTVAPI_LOG_SITE(tag, site, "<%s:%d> [%s]:[%s] Error --> service is invalid\n", kFile,
                      site.function);
}

}  // namespace line

inline auto storeBytesAndValue(void* record, uint32_t* out) {
    return [=](const hidl_vec<uint8_t>& answer, uint32_t value, int32_t code) {
        copyAll(record, answer);
        *out = value;
        return code;
    };
}

}  // namespace qeltvapi

#endif  // CLIENTWRAPPER_CHANNEL_DATA_H
