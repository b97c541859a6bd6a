#pragma once

#include <hidl/HidlSupport.h>
#include <vendor/qelnova/tv/qeltvapi/1.0/types.h>

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <initializer_list>
#include <optional>
#include <string>
#include <type_traits>
#include <vector>

#include "layouts/channel_records.h"

namespace qeltvd {

using Bytes = android::hardware::hidl_vec<uint8_t>;

/** Records as their bytes, one behind the other. */
template <class Container, class T>
Container bytesAs(const T* records, size_t count) {
    static_assert(std::is_trivially_copyable_v<T>, "a record is its bytes");
    Container bytes;
    bytes.resize(count * sizeof(T));
    if (count != 0) memcpy(bytes.data(), records, count * sizeof(T));
    return bytes;
}

template <class T>
Bytes bytesOf(const T& record) {
    return bytesAs<Bytes>(&record, 1);
}

template <class T>
Bytes bytesOf(const std::vector<T>& records) {
    return bytesAs<Bytes>(records.data(), records.size());
}

inline Bytes wordBytes(std::initializer_list<uint32_t> words) {
    return bytesAs<Bytes>(words.begin(), words.size());
}

inline Bytes textBytes(const std::string& text) {
    return bytesAs<Bytes>(text.data(), text.size());
}

/** The first of some values: no more than the capacity of the client, which copies all of them. */
inline android::hardware::hidl_vec<uint16_t> atMost(const std::vector<uint16_t>& values,
                                                    uint32_t room) {
    return std::vector<uint16_t>(
            values.begin(),
            values.begin() + static_cast<ptrdiff_t>(std::min<size_t>(room, values.size())));
}

// What arrives

/**
 * Whether truth values that a client has sent are 0 or 1. Anything else must not be read as a bool,
 * which the compiler takes for one of the two.
 */
template <class Truth>
bool areTruths(const Truth* values, size_t count) {
    static_assert(sizeof(Truth) == 1);
    for (size_t i = 0; i < count; ++i) {
        uint8_t byte;
        memcpy(&byte, values + i, 1);
        if (byte > 1) return false;
    }
    return true;
}

template <class... Truth>
bool areTruths(const Truth*... values) {
    return (areTruths(values, size_t{1}) && ...);
}

/** Whether all truth values of a record are 0 or 1; most records have none. */
template <class T>
bool isSound(const T&) {
    return true;
}
inline bool isSound(const satellite_record_t& record) {
    return areTruths(&record.enabled);
}
inline bool isSound(const biss_record_t& record) {
    return areTruths(&record.enabled);
}
inline bool isSound(const uart_setting_t& record) {
    return areTruths(&record.no_loopback);
}
inline bool isSound(
        const vendor::qelnova::tv::qeltvapi::V1_0::HIDL_QELTVAPI_EXTERNAL_UI_STATUS_T& record) {
    return areTruths(&record.on);
}
inline bool isSound(const vendor::qelnova::tv::qeltvapi::V1_0::HIDL_EVENT_FILTER_T& record) {
    return areTruths(&record.flag);
}
inline bool isSound(const vendor::qelnova::tv::qeltvapi::V1_0::HIDL_EVENT_QUERY_PARAM_T& record) {
    return areTruths(&record.a1, &record.a2, &record.b1, &record.b2);
}
inline bool isSound(
        const vendor::qelnova::tv::qeltvapi::V1_0::HIDL_RATING_US_TV_SETTING_T& record) {
    return areTruths(record.block.data(), record.block.size()) &&
           areTruths(&record.extra1, &record.extra2, &record.extra3, &record.extra4);
}

/** A record that has arrived; nothing when its size is another one or a truth value is none. */
template <class T>
std::optional<T> recordOf(const void* data, size_t size) {
    static_assert(std::is_trivially_copyable_v<T>, "a record is its bytes");
    if (size != sizeof(T)) return std::nullopt;
    T record;
    memcpy(&record, data, sizeof(record));
    if (!isSound(record)) return std::nullopt;
    return record;
}

template <class T>
std::optional<T> recordOf(const Bytes& bytes) {
    return recordOf<T>(bytes.data(), bytes.size());
}

}  // namespace qeltvd
