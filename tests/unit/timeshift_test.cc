/** The timeshift's buffer, what a viewer of it receives, and the length of packets in a file. */
#include <gtest/gtest.h>
#include <stdlib.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <csignal>
#include <cstring>

#include "PacketLength.h"
#include "PacketRing.h"
#include "ShiftedPackets.h"
#include "SimulatedPackets.h"
#include "packet_check.h"
#include "stream_composer.h"

using namespace qeltvd;
using namespace std::chrono_literals;
using composed::Octets;

namespace {

constexpr size_t kPacket = stream::kPacketSize;
constexpr uint16_t kPid = 0x101;

/** A packet with a clock reference of 90 kHz, or a number as payload. */
Octets packet(uint16_t pid, uint8_t counter, bool begins, std::optional<uint64_t> reference) {
    Octets bytes(kPacket, 0xff);
    bytes[0] = 0x47;
    bytes[1] = static_cast<uint8_t>((begins ? 0x40 : 0) | pid >> 8);
    bytes[2] = static_cast<uint8_t>(pid);
    bytes[3] = static_cast<uint8_t>((reference ? 0x30 : 0x10) | (counter & 0xf));
    if (reference) {
        const uint64_t base = *reference % (uint64_t{1} << 33);
        bytes[4] = 7;
        bytes[5] = 0x10;
        for (int i = 0; i < 4; ++i)
            bytes[static_cast<size_t>(6 + i)] = static_cast<uint8_t>(base >> (25 - 8 * i));
        bytes[10] = static_cast<uint8_t>((base & 1) << 7 | 0x7e);
        bytes[11] = 0;
    }
    return bytes;
}

/** Ten packets per 100 ms: an association, one with a reference, and eight more. */
class Clocked {
  public:
    explicit Clocked(uint64_t start = 900000) : mClock(start) {}
    Octets next() {
        Octets all = packet(0, mTables++, true, std::nullopt);
        for (int i = 0; i < 9; ++i) {
            const Octets one =
                    packet(kPid, mCounter++, i == 0, i == 0 ? std::optional(mClock) : std::nullopt);
            all.insert(all.end(), one.begin(), one.end());
        }
        mClock += 9000;
        return all;
    }
    void jump(uint64_t ticks) { mClock += ticks; }

  private:
    uint64_t mClock;
    uint8_t mTables = 0, mCounter = 0;
};

class PacketRingTest : public ::testing::Test {
  protected:
    static constexpr int64_t kSize = 100 * int64_t{kPacket} + 17;

    PacketRingTest() : mFile(mkstemp(mPath)) { EXPECT_EQ(0, ftruncate(mFile.get(), kSize)); }
    ~PacketRingTest() override { unlink(mPath); }

    static void write(PacketRing* ring, Clocked* source, int times) {
        for (int i = 0; i < times; ++i) {
            const Octets bytes = source->next();
            ASSERT_EQ(0, ring->write(bytes.data(), bytes.size(), 0ms));
        }
    }
    int64_t blocks() const {
        struct stat info {};
        EXPECT_EQ(0, stat(mPath, &info));
        EXPECT_LE(info.st_size, kSize);
        return info.st_blocks;
    }

    char mPath[64] = "/tmp/qeltvd-ring-XXXXXX";
    Descriptor mFile;
};

TEST_F(PacketRingTest, HoldsTheNewestPacketsWithTheTimesOfTheirClock) {
    PacketRing ring(std::move(mFile), kSize);
    // The references wrap in the middle.
    Clocked source((uint64_t{1} << 33) - 27000);
    write(&ring, &source, 10);
    EXPECT_FALSE(ring.full());
    EXPECT_EQ(0ms, ring.oldest());
    EXPECT_EQ(900ms, ring.newest());
    EXPECT_EQ(100 * int64_t{kPacket}, ring.end());
    EXPECT_NEAR(50., static_cast<double>(ring.placeOf(500ms) / int64_t{kPacket}), 2);

    write(&ring, &source, 25);
    EXPECT_TRUE(ring.full());
    EXPECT_EQ(3400ms, ring.newest());
    EXPECT_NEAR(2500., static_cast<double>(ring.oldest().count()), 20);
    EXPECT_EQ(350 * int64_t{kPacket}, ring.end());
    uint8_t bytes[3 * kPacket];
    EXPECT_EQ(0u, ring.read(249 * int64_t{kPacket}, bytes, sizeof(bytes))) << "overwritten";
    EXPECT_EQ(0u, ring.read(ring.end(), bytes, sizeof(bytes))) << "not yet there";
    // Across the end of the file, and across the end of what is held.
    ASSERT_EQ(sizeof(bytes), ring.read(299 * int64_t{kPacket}, bytes, sizeof(bytes)));
    EXPECT_EQ(kPid, stream::pidOf(bytes));
    EXPECT_EQ(0u, stream::pidOf(bytes + kPacket));
    ASSERT_EQ(kPacket, ring.read(349 * int64_t{kPacket}, bytes, sizeof(bytes)));
    EXPECT_EQ(ring.end(), ring.placeOf(1h));
    EXPECT_EQ(250 * int64_t{kPacket}, ring.placeOf(0ms));

    // A clock that is set does not count, and neither does the time that it jumps over.
    source.jump(90000 * 3600);
    write(&ring, &source, 2);
    EXPECT_EQ(3500ms, ring.newest());

    EXPECT_GT(blocks(), 0);
    ring.clear();
    EXPECT_EQ(0, blocks());
    EXPECT_EQ(0ms, ring.newest());
    EXPECT_FALSE(ring.full());
    EXPECT_EQ(0u, ring.read(ring.end() - int64_t{kPacket}, bytes, kPacket));
    write(&ring, &source, 3);
    EXPECT_EQ(200ms, ring.newest());
    EXPECT_EQ(kPacket, ring.read(ring.placeOf(0ms), bytes, kPacket));
    EXPECT_EQ(0u, stream::pidOf(bytes));
}

TEST_F(PacketRingTest, PacketsWithoutAClockHaveTheTimesOfTheirArrival) {
    PacketRing ring(std::move(mFile), kSize);
    const Octets bytes = packet(kPid, 0, true, std::nullopt);
    for (int i = 0; i < 150; ++i) {
        ASSERT_EQ(0, ring.write(bytes.data(), bytes.size(), 5s + i * 10ms));
    }
    EXPECT_EQ(1490ms, ring.newest());
    EXPECT_NEAR(500., static_cast<double>(ring.oldest().count()), 30);
}

TEST_F(PacketRingTest, AFailureToWriteIsReported) {
    const rlimit before = [] {
        rlimit limit{};
        getrlimit(RLIMIT_FSIZE, &limit);
        return limit;
    }();
    signal(SIGXFSZ, SIG_IGN);
    PacketRing ring(std::move(mFile), kSize);
    Clocked source;
    write(&ring, &source, 5);
    const rlimit small{50 * kPacket, before.rlim_max};
    ASSERT_EQ(0, setrlimit(RLIMIT_FSIZE, &small));
    const Octets bytes = source.next();
    const int failure = ring.write(bytes.data(), bytes.size(), 0ms);
    setrlimit(RLIMIT_FSIZE, &before);
    EXPECT_EQ(EFBIG, failure);
    EXPECT_EQ(400ms, ring.newest());
    EXPECT_EQ(50 * int64_t{kPacket}, ring.end());
}

/** Packets that a test lets arrive. */
class Live : public PacketSource {
  public:
    explicit Live(Octets* packets) : mPackets(packets) {}
    int64_t arrived(std::chrono::milliseconds) override {
        return static_cast<int64_t>(mPackets->size());
    }
    size_t read(uint8_t* buffer, size_t size) override {
        memcpy(buffer, mPackets->data() + mRead, size);
        mRead += size;
        return size;
    }

  private:
    Octets* const mPackets;
    size_t mRead = 0;
};

TEST_F(PacketRingTest, AViewerReceivesWhatIsPlayedWithMarksWhereItJumps) {
    auto ring = std::make_shared<PacketRing>(std::move(mFile), kSize);
    Clocked source, other;
    write(ring.get(), &source, 10);
    Octets live = other.next();
    ShiftedPackets::Place place;
    ShiftedPackets viewer(std::make_unique<Live>(&live), [&] { return place; });
    std::string all;
    const auto take = [&] {
        const auto waiting = static_cast<size_t>(viewer.arrived(0ms)) - all.size();
        std::vector<uint8_t> bytes(waiting);
        EXPECT_EQ(waiting, viewer.read(bytes.data(), waiting));
        all.append(bytes.begin(), bytes.end());
        return waiting / kPacket;
    };
    EXPECT_EQ(10u, take());
    // Paused: what is broadcast meanwhile is left out.
    place = {ring, ring->placeOf(300ms), 1};
    const Octets more = other.next();
    live.insert(live.end(), more.begin(), more.end());
    EXPECT_EQ(0u, take());
    place.end = ring->placeOf(500ms);
    const size_t played = take();
    EXPECT_GE(played, 12u) << "with a mark for each PID";
    EXPECT_LE(played, 22u);
    place.end = ring->placeOf(700ms);
    EXPECT_NEAR(20, static_cast<double>(take()), 2) << "goes on without marks";
    // Overwritten before it was read: goes on from where the viewer is.
    write(ring.get(), &source, 30);
    place.end = ring->placeOf(3500ms);
    EXPECT_EQ(0u, take());
    place.end = ring->placeOf(3700ms);
    EXPECT_GE(take(), 11u);
    // Back to what is broadcast, with packets that arrive from then on.
    place = {nullptr, 0, 2};
    take();
    const Octets last = other.next();
    live.insert(live.end(), last.begin(), last.end());
    EXPECT_GE(take(), 10u);

    const composed::PacketCheck check(all);
    EXPECT_TRUE(check.synchronous);
    EXPECT_EQ(0u, check.breaks);
    EXPECT_EQ(6u, check.discontinuities) << "two PIDs, three times";
}

TEST_F(PacketRingTest, TheLengthOfAFileComesFromItsClock) {
    Octets bytes;
    // 28 hours in steps of 1.5 s, in which the clock wraps.
    Clocked source;
    constexpr int kSteps = 67200;
    for (int i = 0; i < kSteps; ++i) {
        const Octets one = source.next();
        bytes.insert(bytes.end(), one.begin(), one.begin() + 2 * kPacket);
        source.jump(90000 * 14 / 10);
    }
    ASSERT_TRUE(writeAll(mFile.get(), bytes.data(), bytes.size()));
    const auto size = static_cast<int64_t>(bytes.size());
    const auto length = packetLength(mFile.get(), size);
    ASSERT_TRUE(length);
    EXPECT_EQ(1500ms * (kSteps - 1), *length);
    EXPECT_EQ(1500ms * (kSteps / 2 - 1), packetLength(mFile.get(), size / 2).value_or(0ms));
    EXPECT_FALSE(packetLength(mFile.get(), 2 * kPacket)) << "one reference";
    EXPECT_FALSE(packetLength(mFile.get(), 0));
    EXPECT_FALSE(packetLength(-1, size));
}

}  // namespace
