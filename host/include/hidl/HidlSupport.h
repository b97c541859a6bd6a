#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <functional>
#include <initializer_list>
#include <iterator>
#include <map>
#include <memory>
#include <ostream>
#include <sstream>
#include <string>
#include <tuple>
#include <type_traits>
#include <utility>
#include <vector>

#include <cutils/native_handle.h>
#include <hidl/HidlInternal.h>
#include <utils/Errors.h>
#include <utils/RefBase.h>
#include <utils/StrongPointer.h>

namespace android {

namespace hidl {
namespace base {
namespace V1_0 {
struct IBase;
}  // namespace V1_0
}  // namespace base
}  // namespace hidl

namespace hardware {

class Parcel;

/**
 * The types below are what a message carries: their object representation is copied to the wire
 * and the pointer slots are set anew on the other side. Sizes, offsets and alignments are therefore
 * fixed, and equal in 32-bit and 64-bit processes.
 */

struct hidl_death_recipient : public virtual RefBase {
    virtual void serviceDied(uint64_t cookie,
                             const ::android::wp<::android::hidl::base::V1_0::IBase>& who) = 0;
};

/** A native handle; owns the handle and its descriptors only if it says so. */
struct hidl_handle {
    hidl_handle();
    ~hidl_handle();

    /** Refers to the handle without owning it. */
    hidl_handle(const native_handle_t* handle);
    /** Duplicates the descriptors. */
    hidl_handle(const hidl_handle& other);
    hidl_handle(hidl_handle&& other) noexcept;

    hidl_handle& operator=(const hidl_handle& other);
    hidl_handle& operator=(const native_handle_t* handle);
    hidl_handle& operator=(hidl_handle&& other) noexcept;

    void setTo(native_handle_t* handle, bool shouldOwn = false);

    const native_handle_t* operator->() const { return mHandle; }
    operator const native_handle_t*() const { return mHandle; }
    const native_handle_t* getNativeHandle() const { return mHandle; }

    static constexpr size_t kOffsetOfNativeHandle = 0;

  private:
    void freeHandle();

    details::hidl_pointer<const native_handle_t> mHandle;
    bool mOwnsHandle;
    [[maybe_unused]] uint8_t mPad[7];
};

/** Bytes with a NUL behind the last; may contain NULs. Owns them only if it says so. */
struct hidl_string {
    hidl_string();
    ~hidl_string();

    hidl_string(const hidl_string& other);
    /** A null pointer gives an empty string. */
    hidl_string(const char* text);
    hidl_string(const char* bytes, size_t length);
    hidl_string(const std::string& other);
    hidl_string(hidl_string&& other) noexcept;

    hidl_string& operator=(const hidl_string& other);
    hidl_string& operator=(const char* text);
    hidl_string& operator=(const std::string& other);
    hidl_string& operator=(hidl_string&& other) noexcept;

    operator std::string() const { return std::string(c_str(), size()); }

    const char* c_str() const { return mBuffer; }
    size_t size() const { return mSize; }
    bool empty() const { return mSize == 0; }
    void clear();

    /** Refers to bytes that stay the caller's; data[size] must be NUL. */
    void setToExternal(const char* data, size_t size);

    static constexpr size_t kOffsetOfBuffer = 0;

  private:
    void copyFrom(const char* bytes, size_t length);
    void moveFrom(hidl_string&& other);

    details::hidl_pointer<const char> mBuffer;
    uint32_t mSize;
    bool mOwnsBuffer;
    [[maybe_unused]] uint8_t mPad[3];
};

namespace details {
int compareStrings(const char* a, size_t aSize, const char* b, size_t bSize);
}  // namespace details

#define HIDL_STRING_OPERATOR(OP)                                                                   \
    inline bool operator OP(const hidl_string& a, const hidl_string& b) {                          \
        return details::compareStrings(a.c_str(), a.size(), b.c_str(), b.size()) OP 0;             \
    }                                                                                              \
    inline bool operator OP(const hidl_string& a, const char* b) {                                 \
        return details::compareStrings(a.c_str(), a.size(), b, b == nullptr ? 0 : strlen(b)) OP 0; \
    }                                                                                              \
    inline bool operator OP(const char* a, const hidl_string& b) {                                 \
        return details::compareStrings(a, a == nullptr ? 0 : strlen(a), b.c_str(), b.size()) OP 0; \
    }                                                                                              \
    inline bool operator OP(const hidl_string& a, const std::string& b) {                          \
        return details::compareStrings(a.c_str(), a.size(), b.c_str(), b.size()) OP 0;             \
    }                                                                                              \
    inline bool operator OP(const std::string& a, const hidl_string& b) {                          \
        return details::compareStrings(a.c_str(), a.size(), b.c_str(), b.size()) OP 0;             \
    }

HIDL_STRING_OPERATOR(==)
HIDL_STRING_OPERATOR(!=)
HIDL_STRING_OPERATOR(<)
HIDL_STRING_OPERATOR(<=)
HIDL_STRING_OPERATOR(>)
HIDL_STRING_OPERATOR(>=)
#undef HIDL_STRING_OPERATOR

std::ostream& operator<<(std::ostream& os, const hidl_string& text);

/** A named piece of shared memory; mapping it is not this runtime's business. */
struct hidl_memory {
    hidl_memory();
    hidl_memory(const hidl_string& name, const hidl_handle& handle, size_t size);
    hidl_memory(const hidl_string& name, hidl_handle&& handle, size_t size);

    const native_handle_t* handle() const { return mHandle; }
    const hidl_string& name() const { return mName; }
    uint64_t size() const { return mSize; }
    bool valid() const { return handle() != nullptr; }

    static constexpr size_t kOffsetOfHandle = 0;
    static constexpr size_t kOffsetOfName = 24;

  private:
    hidl_handle mHandle;
    alignas(8) uint64_t mSize;
    hidl_string mName;
};

/** Elements in one block. Owns them only if it says so. */
template <typename T>
struct hidl_vec {
    using value_type = T;
    using iterator = T*;
    using const_iterator = const T*;

    hidl_vec() : mBuffer(nullptr), mSize(0), mOwnsBuffer(true), mPad{} {
        static_assert(sizeof(hidl_vec) == 16, "the vector's header is sixteen bytes everywhere");
        static_assert(offsetof(hidl_vec, mBuffer) == kOffsetOfBuffer, "wrong offset");
        static_assert(offsetof(hidl_vec, mSize) == 8, "wrong offset");
        static_assert(offsetof(hidl_vec, mOwnsBuffer) == 12, "wrong offset");
    }

    explicit hidl_vec(size_t size) : hidl_vec() { resize(size); }
    hidl_vec(const hidl_vec& other) : hidl_vec() { copyFrom(other.begin(), other.size()); }
    hidl_vec(hidl_vec&& other) noexcept : hidl_vec() { takeFrom(other); }
    hidl_vec(std::initializer_list<T> list) : hidl_vec() { copyFrom(list.begin(), list.size()); }
    hidl_vec(const std::vector<T>& other) : hidl_vec() { copyFrom(other.begin(), other.size()); }

    template <typename InputIterator,
              typename = typename std::enable_if<std::is_convertible<
                      typename std::iterator_traits<InputIterator>::iterator_category,
                      std::input_iterator_tag>::value>::type>
    hidl_vec(InputIterator first, InputIterator last) : hidl_vec() {
        auto count = std::distance(first, last);
        if (count < 0) details::logAlwaysFatal("hidl_vec: the end stands before the beginning");
        resize(static_cast<size_t>(count));
        for (T& element : *this) {
            element = static_cast<T>(*first);
            ++first;
        }
    }

    ~hidl_vec() { release(); }

    hidl_vec& operator=(const hidl_vec& other) {
        if (this != &other) assign(other.begin(), other.size());
        return *this;
    }
    hidl_vec& operator=(hidl_vec&& other) noexcept {
        if (this != &other) {
            release();
            takeFrom(other);
        }
        return *this;
    }
    hidl_vec& operator=(std::initializer_list<T> list) {
        assign(list.begin(), list.size());
        return *this;
    }
    hidl_vec& operator=(const std::vector<T>& other) {
        assign(other.begin(), other.size());
        return *this;
    }

    operator std::vector<T>() const { return std::vector<T>(begin(), end()); }

    /** Refers to `data`; frees it with delete[] at the end where `shouldOwn`. */
    void setToExternal(T* data, size_t size, bool shouldOwn = false) {
        checkSize(size);
        release();
        mBuffer = data;
        mSize = static_cast<uint32_t>(size);
        mOwnsBuffer = shouldOwn;
    }

    T* data() { return mBuffer; }
    const T* data() const { return mBuffer; }

    /** Leaves the elements to the caller, to be freed with delete[]; copies them if not owned. */
    T* releaseData() {
        if (!mOwnsBuffer && mBuffer.get() != nullptr) resize(mSize);
        T* elements = mBuffer;
        mBuffer = nullptr;
        mSize = 0;
        mOwnsBuffer = true;
        return elements;
    }

    size_t size() const { return mSize; }
    bool empty() const { return mSize == 0; }

    T& operator[](size_t index) { return mBuffer.get()[index]; }
    const T& operator[](size_t index) const { return mBuffer.get()[index]; }

    /** Keeps what fits; new elements have their type's initial value. data() is not null after. */
    void resize(size_t size) {
        checkSize(size);
        T* fresh = new T[size]();
        T* old = mBuffer;
        size_t kept = std::min(size, static_cast<size_t>(mSize));
        for (size_t i = 0; i < kept; ++i) {
            if (mOwnsBuffer) {
                fresh[i] = std::move(old[i]);
            } else {
                fresh[i] = old[i];
            }
        }
        release();
        mBuffer = fresh;
        mSize = static_cast<uint32_t>(size);
        mOwnsBuffer = true;
    }

    iterator begin() { return data(); }
    iterator end() { return data() + mSize; }
    const_iterator begin() const { return data(); }
    const_iterator end() const { return data() + mSize; }
    const_iterator cbegin() const { return begin(); }
    const_iterator cend() const { return end(); }

    iterator find(const T& value) { return std::find(begin(), end(), value); }
    const_iterator find(const T& value) const { return std::find(begin(), end(), value); }
    bool contains(const T& value) const { return find(value) != end(); }

    bool operator==(const hidl_vec& other) const {
        return std::equal(begin(), end(), other.begin(), other.end());
    }
    bool operator!=(const hidl_vec& other) const { return !(*this == other); }
    bool operator<(const hidl_vec& other) const {
        return std::lexicographical_compare(begin(), end(), other.begin(), other.end());
    }
    bool operator>(const hidl_vec& other) const { return other < *this; }
    bool operator<=(const hidl_vec& other) const { return !(other < *this); }
    bool operator>=(const hidl_vec& other) const { return !(*this < other); }

    static constexpr size_t kOffsetOfBuffer = 0;

  private:
    static void checkSize(size_t size) {
        if (static_cast<uint64_t>(size) > UINT32_MAX) {
            details::logAlwaysFatal("hidl_vec cannot hold 2^32 elements or more");
        }
    }

    /** Forgets the elements, without a state that the destructor could take for valid. */
    void release() {
        if (mOwnsBuffer) delete[] mBuffer.get();
        mBuffer = nullptr;
        mSize = 0;
        mOwnsBuffer = true;
    }

    /** Copies into an object without elements. */
    template <typename Iterator>
    void copyFrom(Iterator first, size_t size) {
        if (size != 0) resize(size);
        for (size_t i = 0; i < size; ++i, ++first) mBuffer.get()[i] = *first;
    }

    /** Copies before it frees, as the source may be part of this vector. */
    template <typename Iterator>
    void assign(Iterator first, size_t size) {
        hidl_vec fresh;
        fresh.copyFrom(first, size);
        release();
        takeFrom(fresh);
    }

    void takeFrom(hidl_vec& other) {
        mBuffer = other.mBuffer.get();
        mSize = other.mSize;
        mOwnsBuffer = other.mOwnsBuffer;
        other.mBuffer = nullptr;
        other.mSize = 0;
        other.mOwnsBuffer = true;
    }

    details::hidl_pointer<T> mBuffer;
    uint32_t mSize;
    bool mOwnsBuffer;
    [[maybe_unused]] uint8_t mPad[3];
};

namespace details {

template <size_t... SIZES>
struct product;

template <size_t SIZE>
struct product<SIZE> {
    static constexpr size_t value = SIZE;
};

template <size_t SIZE, size_t... SIZES>
struct product<SIZE, SIZES...> {
    static constexpr size_t value = SIZE * product<SIZES...>::value;
};

template <typename T, size_t SIZE, size_t... SIZES>
struct std_array {
    using type = std::array<typename std_array<T, SIZES...>::type, SIZE>;
};

template <typename T, size_t SIZE>
struct std_array<T, SIZE> {
    using type = std::array<T, SIZE>;
};

/** One row, plane, ... of a larger array; T is const if the array is. */
template <typename T, size_t SIZE, size_t... SIZES>
struct accessor {
    using std_type = typename std_array<std::remove_const_t<T>, SIZE, SIZES...>::type;

    explicit accessor(T* base) : mBase(base) {}

    decltype(auto) operator[](size_t index) const {
        if constexpr (sizeof...(SIZES) == 0) {
            return (mBase[index]);
        } else {
            return accessor<T, SIZES...>(mBase + index * product<SIZES...>::value);
        }
    }

    accessor& operator=(const std_type& other) {
        for (size_t i = 0; i < SIZE; ++i) {
            if constexpr (sizeof...(SIZES) == 0) {
                mBase[i] = other[i];
            } else {
                (*this)[i] = other[i];
            }
        }
        return *this;
    }

    operator std_type() const {
        std_type copy;
        for (size_t i = 0; i < SIZE; ++i) copy[i] = (*this)[i];
        return copy;
    }

  private:
    T* mBase;
};

}  // namespace details

/** An array of one or more dimensions, the last one contiguous. */
template <typename T, size_t SIZE1, size_t... SIZES>
struct hidl_array {
    using std_type = typename details::std_array<T, SIZE1, SIZES...>::type;

    hidl_array() = default;

    /** Copies elementCount() elements. */
    hidl_array(const T* source) {
        for (size_t i = 0; i < elementCount(); ++i) mBuffer[i] = source[i];
    }
    hidl_array(const std_type& source) { whole() = source; }

    T* data() { return mBuffer; }
    const T* data() const { return mBuffer; }

    decltype(auto) operator[](size_t index) { return whole()[index]; }
    decltype(auto) operator[](size_t index) const { return whole()[index]; }

    bool operator==(const hidl_array& other) const {
        return std::equal(data(), data() + elementCount(), other.data());
    }
    bool operator!=(const hidl_array& other) const { return !(*this == other); }

    /** The only dimension as a number, several ones as a tuple. */
    static constexpr auto size() {
        if constexpr (sizeof...(SIZES) == 0) {
            return SIZE1;
        } else {
            return std::make_tuple(SIZE1, SIZES...);
        }
    }

    static constexpr size_t elementCount() { return details::product<SIZE1, SIZES...>::value; }

    operator std_type() const { return whole(); }

  private:
    details::accessor<T, SIZE1, SIZES...> whole() {
        return details::accessor<T, SIZE1, SIZES...>(mBuffer);
    }
    details::accessor<const T, SIZE1, SIZES...> whole() const {
        return details::accessor<const T, SIZE1, SIZES...>(mBuffer);
    }

    T mBuffer[elementCount()];
};

struct hidl_version {
    constexpr hidl_version(uint16_t major, uint16_t minor) : mMajor(major), mMinor(minor) {}

    bool operator==(const hidl_version& other) const { return key() == other.key(); }
    bool operator!=(const hidl_version& other) const { return key() != other.key(); }
    bool operator<(const hidl_version& other) const { return key() < other.key(); }
    bool operator>(const hidl_version& other) const { return key() > other.key(); }
    bool operator<=(const hidl_version& other) const { return key() <= other.key(); }
    bool operator>=(const hidl_version& other) const { return key() >= other.key(); }

    constexpr uint16_t get_major() const { return mMajor; }
    constexpr uint16_t get_minor() const { return mMinor; }

  private:
    constexpr uint32_t key() const { return static_cast<uint32_t>(mMajor) << 16 | mMinor; }

    uint16_t mMajor;
    uint16_t mMinor;
};

inline hidl_version make_hidl_version(uint16_t major, uint16_t minor) {
    return hidl_version(major, minor);
}

/** The integer that holds any combination of an enumeration's values. */
template <typename Enum>
using hidl_bitfield = typename std::underlying_type<Enum>::type;

namespace details {

struct hidl_enum_without_values {};

// Generated headers specialise this with an array of the values in the order of declaration,
// without saying inline. clang gives such a specialisation external linkage, so that every object
// file would define it, unless the template has internal linkage through an unnamed namespace,
// which g++ refuses.
#ifdef __clang__
namespace {
#endif
template <typename Enum>
constexpr hidl_enum_without_values hidl_enum_values = {};
#ifdef __clang__
}  // namespace
#endif

}  // namespace details

/** Goes through the values of a generated enumeration: for (Colour c : hidl_enum_range<Colour>())
 */
template <typename Enum, typename = std::enable_if_t<std::is_enum<Enum>::value>>
struct hidl_enum_range {
    constexpr auto begin() const { return values().begin(); }
    constexpr auto end() const { return values().end(); }
    constexpr auto cbegin() const { return values().cbegin(); }
    constexpr auto cend() const { return values().cend(); }
    constexpr auto rbegin() const { return values().rbegin(); }
    constexpr auto rend() const { return values().rend(); }
    constexpr auto crbegin() const { return values().crbegin(); }
    constexpr auto crend() const { return values().crend(); }

  private:
    static constexpr const auto& values() { return details::hidl_enum_values<Enum>; }
};

namespace details {

/** Ends the life of one member of a safe_union, arrays element by element. */
template <typename T>
void destructElement(T* element) {
    element->~T();
}

template <typename T, size_t SIZE>
void destructElement(T (*elements)[SIZE]) {
    for (T& element : *elements) destructElement(&element);
}

/**
 * As a stream with std::hex writes it: zero has no prefix, and a negative number has the digits of
 * its width. Numbers of 8 bits are widened to 32 first, so that int8_t(-1) is 0xffffffff.
 */
template <typename T>
std::string toHexString(T value, bool prefix = true) {
    std::ostringstream text;
    if (prefix) text << std::showbase;
    text << std::hex;
    if constexpr (sizeof(T) == 1) {
        text << static_cast<int32_t>(value);
    } else {
        text << value;
    }
    return text.str();
}

}  // namespace details

/**
 * A readable form of every type that travels. Declared before any is defined, because containers
 * of containers refer to each other.
 */
template <typename T>
typename std::enable_if<std::is_arithmetic<T>::value, std::string>::type toString(T value);
std::string toString(const void* pointer);
std::string toString(const hidl_handle& handle);
std::string toString(const hidl_memory& memory);
std::string toString(const hidl_string& text);
std::string toString(const sp<hidl_death_recipient>& recipient);
template <typename T>
std::string toString(const hidl_vec<T>& elements);
template <typename T, size_t SIZE1, size_t... SIZES>
std::string toString(const hidl_array<T, SIZE1, SIZES...>& elements);

template <typename T>
typename std::enable_if<std::is_arithmetic<T>::value, std::string>::type toString(T value) {
    return std::to_string(value);
}

namespace details {

/** Elements of generated types find the toString() of their own namespace. */
template <typename T>
std::string elementsToString(const T* elements, size_t count) {
    using ::android::hardware::toString;
    std::string text = "{";
    for (size_t i = 0; i < count; ++i) {
        if (i != 0) text += ", ";
        text += toString(elements[i]);
    }
    return text + "}";
}

template <typename T, size_t SIZE, size_t... SIZES>
std::string arrayToString(const T* elements) {
    if constexpr (sizeof...(SIZES) == 0) {
        return elementsToString(elements, SIZE);
    } else {
        std::string text = "{";
        for (size_t i = 0; i < SIZE; ++i) {
            if (i != 0) text += ", ";
            text += arrayToString<T, SIZES...>(elements + i * product<SIZES...>::value);
        }
        return text + "}";
    }
}

inline std::string dimensions() {
    return "";
}
template <typename... Rest>
std::string dimensions(size_t first, Rest... rest) {
    return "[" + std::to_string(first) + "]" + dimensions(rest...);
}

}  // namespace details

template <typename T>
std::string toString(const hidl_vec<T>& elements) {
    return details::dimensions(elements.size()) +
           details::elementsToString(elements.data(), elements.size());
}

template <typename T, size_t SIZE1, size_t... SIZES>
std::string toString(const hidl_array<T, SIZE1, SIZES...>& elements) {
    return details::dimensions(SIZE1, SIZES...) +
           details::arrayToString<T, SIZE1, SIZES...>(elements.data());
}

}  // namespace hardware
}  // namespace android
