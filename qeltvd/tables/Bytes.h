#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

namespace qeltvd::stream {

/** Bytes that belong to somebody else. */
struct Bytes {
    const uint8_t* data = nullptr;
    size_t size = 0;
};

/** Reads big-endian numbers; beyond the end all of them are 0 and ok() is false from then on. */
class Reader {
  public:
    explicit Reader(Bytes bytes) : mBytes(bytes) {}

    uint8_t u8() { return static_cast<uint8_t>(number(1)); }
    uint16_t u16() { return static_cast<uint16_t>(number(2)); }
    uint32_t u24() { return number(3); }
    uint32_t u32() { return number(4); }
    Bytes take(size_t size) {
        if (size > left()) {
            fail();
            return {};
        }
        const Bytes taken{mBytes.data + mAt, size};
        mAt += size;
        return taken;
    }
    void skip(size_t size) { take(size); }
    Bytes rest() { return take(left()); }

    size_t left() const { return mBytes.size - mAt; }
    bool ok() const { return mOk; }

  private:
    uint32_t number(size_t size) {
        if (size > left()) {
            fail();
            return 0;
        }
        uint32_t value = 0;
        for (size_t i = 0; i < size; ++i) value = value << 8 | mBytes.data[mAt++];
        return value;
    }
    void fail() {
        mOk = false;
        mAt = mBytes.size;
    }

    Bytes mBytes;
    size_t mAt = 0;
    bool mOk = true;
};

}  // namespace qeltvd::stream
