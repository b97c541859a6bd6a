/**
 * What crosses the wire in one call, as a test writes it: a list of values, in order, that are
 * compared with a received parcel or written into an answer.
 */
#ifndef QELTVAPI_TESTING_VALUES_H
#define QELTVAPI_TESTING_VALUES_H

#include <hwbinder/Parcel.h>

#include <cstdint>
#include <initializer_list>
#include <string>
#include <utility>
#include <vector>

namespace qeltvapi::testing::wire {

using Bytes = std::string;

/** The bytes of `count` consecutive values beginning with `first`: distinct, for buffers. */
Bytes counted(size_t count, unsigned char first = 1);

/** The bytes of a C value. */
template <class T>
Bytes bytesOf(const T& value) {
    return Bytes(reinterpret_cast<const char*>(&value), sizeof(value));
}

/** The bytes of some C values, one behind the other. */
template <class T>
Bytes bytesOf(std::initializer_list<T> values) {
    Bytes all;
    for (const T& value : values) all += bytesOf(value);
    return all;
}

class Value;
using Values = std::vector<Value>;

/** One argument or result. Made by the functions below. */
class Value {
  public:
    /** The place and the content of a text or vector that is embedded in a record. */
    struct Embedded {
        size_t offset;
        bool text;
        size_t elementSize;
        Bytes content;
    };

    /** A text inside a record, its 16-byte head at `offset`. */
    Value text(size_t offset, Bytes content) const;
    /** A vector inside a record, its 16-byte head at `offset`. */
    Value vec(size_t offset, Bytes content, size_t elementSize = 1) const;
    /** Padding inside a record, whose bytes mean nothing. */
    Value gap(size_t offset, size_t size) const;

    /** Compares with the next of `parcel`; "" when equal, else what differs. */
    std::string compare(const android::hardware::Parcel& parcel) const;

    /** Appends to `parcel`. */
    void write(android::hardware::Parcel* parcel) const;

    enum class Kind { scalar, text, vec, record, records, memory, object };

    Kind kind = Kind::scalar;
    size_t width = 4;
    uint64_t number = 0;
    size_t elementSize = 1;
    Bytes content;
    Bytes fill;
    std::vector<Embedded> embedded;
    std::vector<std::pair<size_t, size_t>> gaps;
    std::vector<Value> elements;
};

/** Integers by their width and sign on the wire. */
Value u8(uint8_t value);
Value u16(uint16_t value);
Value u32(uint32_t value);
Value u64(uint64_t value);
Value i16(int16_t value);
Value i32(int32_t value);
Value i64(int64_t value);
Value boolean(bool value);
/** A text. */
Value str(Bytes value);
/** A byte vector. */
Value bytes(Bytes value);
/** Vectors of integers. */
Value u16s(std::initializer_list<uint16_t> values);
Value u32s(std::initializer_list<uint32_t> values);
Value i32s(std::initializer_list<int32_t> values);
/** A typed record: all its bytes, the heads of texts and vectors in it as zeros. */
Value record(Bytes image);
/** A vector of typed records of equal size. */
Value records(std::vector<Value> elements);
/**
 * Shared memory of at least this many bytes. Comparing also writes `fill` into it, as a service
 * does that answers so.
 */
Value memory(size_t size, Bytes fill = {});
/** Shared memory that begins with these bytes. */
Value memoryHolding(Bytes content);
/** Any object reference that is not null. */
Value object();

/** Compares a whole parcel: the values, and that nothing follows. "" when equal. */
std::string compareAll(const Values& expected, const android::hardware::Parcel& parcel);

}  // namespace qeltvapi::testing::wire

#endif  // QELTVAPI_TESTING_VALUES_H
