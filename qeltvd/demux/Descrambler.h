#pragma once

#include <array>
#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "Packets.h"

namespace qeltvd::stream {

using ControlWord = std::array<uint8_t, 8>;

/**
 * The control word of a BISS key: 12 hexadecimal digits without checksums, or 16 with them, which
 * are the sums of the three bytes before or zeros. Nothing for any other text.
 */
std::optional<ControlWord> controlWord(const std::string& key);
/** The same of the 6 or 8 bytes. */
std::optional<ControlWord> controlWord(std::vector<uint8_t> bytes);

/** Descrambles packets in place with fixed keys, where the build has the algorithm. */
class Descrambler {
  public:
    Descrambler();
    ~Descrambler();
    Descrambler(const Descrambler&) = delete;
    Descrambler& operator=(const Descrambler&) = delete;

    /** Whether this build can descramble: the CMake option QELTV_DVBCSA. */
    static bool available();

    /** Descrambles some PIDs with a key, in place of the key that they had. */
    void setKey(const std::set<uint16_t>& pids, const ControlWord& word);
    void clear();

    void push(const Batch& batch);

  private:
    struct Key;
    std::map<uint16_t, std::shared_ptr<Key>> mKeys;
};

}  // namespace qeltvd::stream
