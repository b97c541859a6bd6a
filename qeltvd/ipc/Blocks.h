#pragma once

#include <hidl/HidlSupport.h>

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <initializer_list>
#include <string>
#include <type_traits>
#include <vector>

namespace qeltvd {

/** The bytes of a record of a layout. */
template <class T>
android::hardware::hidl_vec<uint8_t> recordBytes(const T& record) {
    static_assert(std::is_trivially_copyable_v<T>, "a record is its bytes");
    android::hardware::hidl_vec<uint8_t> bytes(sizeof(record));
    memcpy(bytes.data(), &record, sizeof(record));
    return bytes;
}

inline android::hardware::hidl_vec<uint8_t> wordBytes(std::initializer_list<uint32_t> words) {
    android::hardware::hidl_vec<uint8_t> bytes(words.size() * sizeof(uint32_t));
    memcpy(bytes.data(), words.begin(), bytes.size());
    return bytes;
}

inline android::hardware::hidl_vec<uint8_t> textBytes(const std::string& text) {
    return std::vector<uint8_t>(text.begin(), text.end());
}

/** The first of some values: no more than the client has room for, which takes what comes. */
inline android::hardware::hidl_vec<uint16_t> atMost(const std::vector<uint16_t>& values,
                                                    uint32_t room) {
    return std::vector<uint16_t>(
            values.begin(),
            values.begin() + static_cast<ptrdiff_t>(std::min<size_t>(room, values.size())));
}

}  // namespace qeltvd
