#include "RecordingWriter.h"

#include <errno.h>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <stdlib.h>
#include <unistd.h>

#include <algorithm>
#include <fstream>
#include <iterator>

#include "SimulatedPackets.h"
#include "packet_check.h"

using namespace qeltvd;
using namespace std::chrono_literals;

namespace {

constexpr size_t kPacket = stream::kPacketSize;
constexpr uint16_t kService = 0x1234;

Channel service() {
    Channel channel;
    channel.serviceId = kService;
    channel.name = "One";
    return channel;
}

class RecordingWriterTest : public ::testing::Test {
  protected:
    RecordingWriterTest() : mFile(mkstemp(mPath)) {}
    ~RecordingWriterTest() override { unlink(mPath); }

    std::string content() const {
        std::ifstream file(mPath, std::ios::binary);
        return {std::istreambuf_iterator<char>(file), {}};
    }

    char mPath[64] = "/tmp/qeltvd-writer-XXXXXX";
    Descriptor mFile;
};

/** A source from which packets are lost after the first ones. */
class LossySource : public PacketSource {
  public:
    int64_t arrived(std::chrono::milliseconds elapsed) override {
        return elapsed.count() * int64_t{kPacket};
    }
    size_t read(uint8_t* buffer, size_t size) override {
        const size_t given = std::min(size, 2 * kPacket);
        std::fill(buffer, buffer + given, uint8_t{0x47});
        return given;
    }
};

TEST_F(RecordingWriterTest, WritesWholePacketsOfTheSetRateWithinTheLimit) {
    constexpr uint32_t kRate = 100 * kPacket;
    RecordingWriter writer(std::move(mFile), mPath,
                           std::make_unique<SimulatedPackets>(service(), kRate));
    EXPECT_EQ(0, writer.waiting(9ms, {}));
    EXPECT_EQ(int64_t{kPacket}, writer.waiting(19ms, {}));
    EXPECT_EQ(50 * int64_t{kPacket}, writer.waiting(2s, {500ms}));
    EXPECT_EQ(7 * int64_t{kPacket}, writer.waiting(2s, {500ms, 8 * kPacket - 1}));

    ASSERT_EQ(0, writer.write(3 * kPacket));
    ASSERT_EQ(0, writer.write(15 * kPacket));
    EXPECT_EQ(18 * int64_t{kPacket}, writer.written());
    EXPECT_EQ(2 * int64_t{kPacket}, writer.waiting(200ms, {}));
    writer.close();
    const std::string data = content();
    ASSERT_EQ(18 * kPacket, data.size());
    const composed::PacketCheck check(data);
    EXPECT_TRUE(check.synchronous);
    EXPECT_EQ(0u, check.breaks);
    EXPECT_EQ((std::map<uint16_t, uint16_t>{{kService, 0x100}}), check.programmes);
    EXPECT_EQ(2u, check.components.size()) << "a picture and sound";
}

TEST_F(RecordingWriterTest, SimulatedPacketsAreAStreamOfTheSetRateWithNullPackets) {
    // Much faster and much slower than the empty picture.
    for (const uint32_t rate : {4000 * uint32_t{kPacket}, 10 * uint32_t{kPacket}}) {
        SimulatedPackets source(service(), rate);
        EXPECT_EQ(2 * int64_t{rate}, source.arrived(2s));
        std::string data(2 * size_t{rate}, '\0');
        auto* const bytes = reinterpret_cast<uint8_t*>(data.data());
        ASSERT_EQ(kPacket, source.read(bytes, kPacket));
        ASSERT_EQ(data.size() - kPacket, source.read(bytes + kPacket, data.size() - kPacket));
        const composed::PacketCheck check(data);
        EXPECT_TRUE(check.synchronous);
        EXPECT_EQ(0u, check.breaks);
        EXPECT_EQ(2u, check.components.size());
        EXPECT_EQ(rate > 1000 * kPacket, check.packets.count(0x1fff) == 1) << "null packets";
    }
}

TEST_F(RecordingWriterTest, LostPacketsEndATurnAndNotTheRecording) {
    RecordingWriter writer(std::move(mFile), mPath, std::make_unique<LossySource>());
    ASSERT_EQ(0, writer.write(5 * kPacket));
    EXPECT_EQ(2 * int64_t{kPacket}, writer.written());
    ASSERT_EQ(0, writer.write(kPacket));
    EXPECT_EQ(3 * kPacket, content().size());
}

TEST_F(RecordingWriterTest, AFailureLeavesWhatWasWritten) {
    RecordingWriter writer(Descriptor(open("/dev/full", O_WRONLY | O_CLOEXEC)), "/dev/full",
                           std::make_unique<LossySource>());
    EXPECT_EQ(ENOSPC, writer.write(kPacket));
    EXPECT_EQ(0, writer.written());
}

}  // namespace
