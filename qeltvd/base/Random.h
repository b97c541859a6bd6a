#pragma once

#include <cstddef>
#include <cstdint>

namespace qeltvd {

/** splitmix64: the same numbers from the same seed on every machine. */
class Random {
  public:
    explicit Random(uint64_t seed) : mState(seed) {}

    uint64_t next() {
        uint64_t z = mState += UINT64_C(0x9e3779b97f4a7c15);
        z = (z ^ z >> 30) * UINT64_C(0xbf58476d1ce4e5b9);
        z = (z ^ z >> 27) * UINT64_C(0x94d049bb133111eb);
        return z ^ z >> 31;
    }
    /** A number from 0 to `limit` - 1. */
    uint32_t below(uint32_t limit) { return static_cast<uint32_t>(next() % limit); }
    uint32_t between(uint32_t low, uint32_t high) { return low + below(high - low + 1); }
    bool oneIn(uint32_t n) { return below(n) == 0; }

    template <size_t N>
    const char* of(const char* const (&words)[N]) {
        return words[below(static_cast<uint32_t>(N))];
    }

  private:
    uint64_t mState;
};

}  // namespace qeltvd
