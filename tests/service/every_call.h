/** A call of every method of every interface, with values at the edges of their types. */
#ifndef TESTS_SERVICE_EVERY_CALL_H
#define TESTS_SERVICE_EVERY_CALL_H

#include <hidl/HidlSupport.h>
#include <vendor/qelnova/tv/qeltvapi/1.0/IQelTvApiCallback.h>
#include <vendor/qelnova/tv/qeltvapi/1.0/types.h>

#include <cstring>
#include <functional>
#include <iterator>
#include <limits>
#include <random>
#include <string>
#include <type_traits>
#include <vector>

namespace wire {

/** Arguments, always the same ones for a seed. */
class Values {
  public:
    explicit Values(uint32_t seed) : mRandom(seed) {}

    template <class T>
    T next() {
        T value{};
        fill(&value);
        return value;
    }

  private:
    using hidl_string = android::hardware::hidl_string;
    template <class T>
    using hidl_vec = android::hardware::hidl_vec<T>;

    uint32_t below(size_t limit) { return static_cast<uint32_t>(mRandom() % limit); }
    template <class T, size_t N>
    const T& of(const T (&all)[N]) {
        return all[below(N)];
    }

    void fill(bool* value) { *value = below(2) == 1; }
    template <class T>
    std::enable_if_t<std::is_integral_v<T>> fill(T* value) {
        const T all[] = {0,
                         1,
                         2,
                         3,
                         static_cast<T>(mRandom() % 16),
                         static_cast<T>(mRandom() % 256),
                         static_cast<T>(mRandom()),
                         static_cast<T>(-1),
                         std::numeric_limits<T>::min(),
                         std::numeric_limits<T>::max(),
                         static_cast<T>(0x04000001)};
        *value = of(all);
    }
    /** Every byte of the records that are passed as bytes, truth values included. */
    template <class T>
    std::enable_if_t<std::is_class_v<T> && std::is_trivially_copyable_v<T>> fill(T* record) {
        const uint8_t all[] = {0, 0, 1, 1, 2, 0x7f, 0x80, 0xff};
        auto* bytes = reinterpret_cast<uint8_t*>(record);
        for (size_t i = 0; i < sizeof(T); ++i) bytes[i] = of(all);
    }
    void fill(hidl_string* text) {
        const std::string all[] = {"",
                                   "main",
                                   "sub",
                                   "picture.contrast",
                                   "channels.country",
                                   "1.1",
                                   "0000",
                                   "deu",
                                   "2026-03-29",
                                   "02:30",
                                   "/nonexistent/file",
                                   "https://x/f",
                                   "\xff\xfe\x80",
                                   std::string("a\0b", 3),
                                   std::string(5000, 'x')};
        *text = of(all);
    }
    template <class T>
    void fill(hidl_vec<T>* values) {
        // Sizes that records have, among others.
        const size_t all[] = {0, 1, 2, 3, 4, 5, 8, 12, 16, 32, 64, 260, 276, 304, 396, 628};
        hidl_vec<T> filled(of(all));
        for (T& value : filled) fill(&value);
        *values = filled;
    }
    void fill(android::hardware::hidl_handle*) {}
    template <class T>
    void fill(android::sp<T>*) {}

    void fill(vendor::qelnova::tv::qeltvapi::V1_0::HIDL_CI_MMI_ENQ_ANS_T* answer) {
        fill(&answer->ui4_first);
        fill(&answer->ui4_second);
        fill(&answer->w2s_txt);
    }
    void fill(vendor::qelnova::tv::qeltvapi::V1_0::HIDL_SVCTX_SELECT_T* request) {
        fill(&request->block);
        fill(&request->first);
        fill(&request->second);
        fill(&request->specific);
    }
    void fill(vendor::qelnova::tv::qeltvapi::V1_0::HIDL_EVCTX_ATSC_RATING_LIST_T* rating) {
        fill(&rating->id);
        fill(&rating->count);
        fill(&rating->name);
        fill(&rating->values);
    }

    std::minstd_rand mRandom;
};

/** Notified of each call: the method, and whether it was answered. */
using Called = std::function<void(const char* method, bool answered)>;

void callEverything(Values& values, const Called& called);

}  // namespace wire

#endif  // TESTS_SERVICE_EVERY_CALL_H
