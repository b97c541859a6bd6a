#include "Descrambler.h"

#ifdef QELTV_DVBCSA
#include <dvbcsa/dvbcsa.h>
#endif

#include <utility>
#include <vector>

namespace qeltvd::stream {

namespace {

std::optional<uint8_t> digit(char c) {
    if (c >= '0' && c <= '9') return static_cast<uint8_t>(c - '0');
    if (c >= 'a' && c <= 'f') return static_cast<uint8_t>(c - 'a' + 10);
    if (c >= 'A' && c <= 'F') return static_cast<uint8_t>(c - 'A' + 10);
    return std::nullopt;
}

}  // namespace

std::optional<ControlWord> controlWord(const std::string& key) {
    std::vector<uint8_t> bytes;
    if (key.size() != 12 && key.size() != 16) return std::nullopt;
    for (size_t i = 0; i < key.size(); i += 2) {
        const auto high = digit(key[i]), low = digit(key[i + 1]);
        if (!high || !low) return std::nullopt;
        bytes.push_back(static_cast<uint8_t>(*high << 4 | *low));
    }
    return controlWord(std::move(bytes));
}

std::optional<ControlWord> controlWord(std::vector<uint8_t> bytes) {
    if (bytes.size() != 6 && bytes.size() != 8) return std::nullopt;
    if (bytes.size() == 6) {
        bytes.insert(bytes.begin() + 3, 0);
        bytes.push_back(0);
    }
    ControlWord word{};
    for (size_t i = 0; i < word.size(); i += 4) {
        const auto sum = static_cast<uint8_t>(bytes[i] + bytes[i + 1] + bytes[i + 2]);
        if (bytes[i + 3] != 0 && bytes[i + 3] != sum) return std::nullopt;
        word[i] = bytes[i];
        word[i + 1] = bytes[i + 1];
        word[i + 2] = bytes[i + 2];
        word[i + 3] = sum;
    }
    return word;
}

#ifdef QELTV_DVBCSA

struct Descrambler::Key {
    Key() : key(dvbcsa_key_alloc()) {}
    ~Key() { dvbcsa_key_free(key); }
    Key(const Key&) = delete;
    Key& operator=(const Key&) = delete;
    dvbcsa_key_t* const key;
};

bool Descrambler::available() {
    return true;
}

void Descrambler::setKey(const std::set<uint16_t>& pids, const ControlWord& word) {
    const auto key = std::make_shared<Key>();
    if (key->key == nullptr) throw std::bad_alloc();
    dvbcsa_key_set(word.data(), key->key);
    for (const uint16_t pid : pids) mKeys[pid] = key;
}

void Descrambler::push(const Batch& batch) {
    if (mKeys.empty()) return;
    for (size_t i = 0; i < batch.count; ++i) {
        uint8_t* packet = batch.packets + i * kPacketSize;
        if ((packet[3] & 0x80) == 0 || (packet[3] & 0x10) == 0) continue;
        const auto found = mKeys.find(pidOf(packet));
        if (found == mKeys.end()) continue;
        const size_t header = 4 + ((packet[3] & 0x20) != 0 ? size_t{1} + packet[4] : 0);
        if (header > kPacketSize) continue;
        dvbcsa_decrypt(found->second->key, packet + header,
                       static_cast<unsigned>(kPacketSize - header));
        packet[3] = static_cast<uint8_t>(packet[3] & 0x3f);
    }
}

#else

struct Descrambler::Key {};

bool Descrambler::available() {
    return false;
}

void Descrambler::setKey(const std::set<uint16_t>&, const ControlWord&) {}

void Descrambler::push(const Batch&) {}

#endif

Descrambler::Descrambler() = default;

Descrambler::~Descrambler() = default;

void Descrambler::clear() {
    mKeys.clear();
}

}  // namespace qeltvd::stream
