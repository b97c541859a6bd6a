/** What transport-stream packets in a file or of a socket have to be. */
#ifndef TESTS_SUPPORT_PACKET_CHECK_H
#define TESTS_SUPPORT_PACKET_CHECK_H

#include <cstdint>
#include <map>
#include <set>
#include <string>
#include <vector>

namespace composed {

/** What is found in packets, read without the rooms of the television. */
struct PacketCheck {
    static constexpr size_t kPacket = 188;

    /** Whether they are whole and each begins with its sync byte. */
    bool synchronous = false;
    std::map<uint16_t, size_t> packets;
    /** Steps of a continuity counter that do not fit. */
    size_t breaks = 0;
    /** Packets that mark a discontinuity, after which the counter may be any. */
    size_t discontinuities = 0;
    /** Programme numbers and the PIDs of their maps, of the first association table. */
    std::map<uint16_t, uint16_t> programmes;
    /** PIDs of the first programme map. */
    std::set<uint16_t> components;

    template <class Bytes>
    explicit PacketCheck(const Bytes& bytes) {
        std::map<uint16_t, unsigned> counters;
        synchronous = bytes.size() % kPacket == 0;
        for (size_t at = 0; at + kPacket <= bytes.size() && synchronous; at += kPacket) {
            const auto* packet = reinterpret_cast<const uint8_t*>(bytes.data()) + at;
            synchronous = packet[0] == 0x47;
            const auto pid = static_cast<uint16_t>((packet[1] & 0x1f) << 8 | packet[2]);
            ++packets[pid];
            constexpr uint16_t kNull = 0x1fff;
            if (pid == kNull) continue;
            const unsigned counter = packet[3] & 0xf;
            if ((packet[3] & 0x20) != 0 && packet[4] > 0 && (packet[5] & 0x80) != 0) {
                ++discontinuities;
                counters[pid] = counter;
                continue;
            }
            if ((packet[3] & 0x10) == 0) continue;
            const auto before = counters.find(pid);
            if (before != counters.end() && counter != ((before->second + 1) & 0xf)) ++breaks;
            counters[pid] = counter;
            if ((packet[1] & 0x40) != 0 && (packet[3] & 0x20) == 0) readTable(pid, packet + 4);
        }
    }

  private:
    /** A table that begins a packet and ends in it. */
    void readTable(uint16_t pid, const uint8_t* payload) {
        constexpr size_t kChecksum = 4;
        const uint8_t* section = payload + 1 + payload[0];
        const size_t length = (section[1] & 0xfU) << 8 | section[2];
        const uint8_t* const end = section + 3 + length - kChecksum;
        const auto word = [](const uint8_t* from) {
            return static_cast<uint16_t>((from[0] & 0x1f) << 8 | from[1]);
        };
        if (pid == 0 && section[0] == 0 && programmes.empty()) {
            for (const uint8_t* entry = section + 8; entry + 4 <= end; entry += 4) {
                programmes[static_cast<uint16_t>(entry[0] << 8 | entry[1])] = word(entry + 2);
            }
        }
        const bool map = !programmes.empty() && pid == programmes.begin()->second;
        if (!map || section[0] != 2 || !components.empty()) return;
        for (const uint8_t* entry = section + 12 + (word(section + 10) & 0xfff); entry + 5 <= end;
             entry += 5 + (word(entry + 3) & 0xfff)) {
            components.insert(word(entry + 1));
        }
    }
};

}  // namespace composed

#endif  // TESTS_SUPPORT_PACKET_CHECK_H
