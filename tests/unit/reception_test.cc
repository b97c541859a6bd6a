#include "Reception.h"

#include <arpa/inet.h>
#include <gmock/gmock.h>
#include <ifaddrs.h>
#include <net/if.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <mutex>
#include <numeric>

#include "Files.h"
#include "PacketAligner.h"
#include "eventually.h"
#include "stream_composer.h"

using namespace qeltvd::stream;
using composed::Octets;
using testing::HasSubstr;
using namespace std::chrono_literals;

namespace {

/** Packets that count in their last bytes. */
Octets numbered(size_t count) {
    composed::Packets packets;
    packets.addNull(count);
    for (size_t i = 0; i < count; ++i)
        packets.bytes()[(i + 1) * kPacketSize - 1] = static_cast<uint8_t>(i);
    return packets.bytes();
}

Octets spread(const Octets& packets, size_t before, size_t behind) {
    Octets all;
    for (size_t at = 0; at < packets.size(); at += kPacketSize) {
        all.insert(all.end(), before, 0x00);
        all.insert(all.end(), packets.begin() + static_cast<long>(at),
                   packets.begin() + static_cast<long>(at + kPacketSize));
        all.insert(all.end(), behind, 0xcc);
    }
    return all;
}

TEST(PacketAligner, PacketsOfAllSizesAreFoundInPiecesOfAnySize) {
    const Octets packets = numbered(50);
    for (const Octets& bytes : {packets, spread(packets, 4, 0), spread(packets, 0, 16)}) {
        for (const size_t piece : {1u, 7u, 188u, 1000u, 100000u}) {
            PacketAligner aligner;
            Octets found;
            bool dropped = false;
            // Some bytes before the first packet are no loss.
            Octets all{0x47, 0x00, 0x11};
            all.insert(all.end(), bytes.begin(), bytes.end());
            for (size_t at = 0; at < all.size(); at += piece) {
                dropped |= aligner.push(all.data() + at, std::min(piece, all.size() - at), &found);
            }
            dropped |= aligner.finish(&found);
            EXPECT_EQ(packets, found) << piece;
            EXPECT_FALSE(dropped) << piece;
        }
    }
}

TEST(PacketAligner, SynchronisesAnewBehindLostBytesAndDamage) {
    Octets bytes = numbered(60);
    const auto at = [](size_t packet) { return static_cast<long>(packet * kPacketSize); };
    // 100 bytes of a packet are missing, and another one has a damaged first byte.
    bytes[static_cast<size_t>(at(40))] = 0x00;
    bytes.erase(bytes.begin() + at(20), bytes.begin() + at(20) + 100);
    PacketAligner aligner;
    Octets found;
    EXPECT_TRUE(aligner.push(bytes.data(), bytes.size(), &found));
    aligner.finish(&found);
    std::vector<int> numbers;
    for (size_t i = 0; i < found.size(); i += kPacketSize)
        numbers.push_back(found[i + kPacketSize - 1]);
    std::vector<int> expected(60);
    std::iota(expected.begin(), expected.end(), 0);
    expected.erase(expected.begin() + 40);
    expected.erase(expected.begin() + 20);
    EXPECT_EQ(expected, numbers);
}

TEST(PacketAligner, NoiseGivesNothingAndIsNotKept) {
    PacketAligner aligner;
    Octets noise(100000), found;
    for (size_t i = 0; i < noise.size(); ++i) noise[i] = static_cast<uint8_t>(i * 7);
    for (int i = 0; i < 20; ++i) aligner.push(noise.data(), noise.size(), &found);
    EXPECT_TRUE(found.empty());
}

class SourceTest : public testing::Test {
  protected:
    SourceTest() {
        char path[] = "/tmp/reception-XXXXXX";
        if (mkdtemp(path) != nullptr) mDirectory = path;
    }
    ~SourceTest() override { std::filesystem::remove_all(mDirectory); }

    std::string write(const std::string& name, const Octets& bytes) {
        composed::writeFile(mDirectory + "/" + name, bytes);
        return name;
    }
    std::string refusal(const std::string& text) {
        try {
            openSource(text, mDirectory);
        } catch (const std::runtime_error& e) {
            return e.what();
        }
        return "";
    }

    std::string mDirectory;
};

TEST_F(SourceTest, AFileGivesAllItsPacketsAndBeginsAnewWithADiscontinuity) {
    const Octets packets = numbered(1000);
    write("a.ts", packets);
    SourceOptions options;
    options.paced = false;
    const auto source = openSource("a.ts", mDirectory, options);
    for (int turn = 0; turn < 3; ++turn) {
        Octets all;
        while (all.size() < packets.size()) {
            Batch batch;
            ASSERT_EQ(Source::State::kPackets, source->read(&batch, 1s));
            EXPECT_EQ(turn > 0 && all.empty(), batch.discontinuity);
            all.insert(all.end(), batch.packets, batch.packets + batch.count * kPacketSize);
        }
        EXPECT_EQ(packets, all);
    }
    source->interrupt();
    Batch batch;
    EXPECT_EQ(Source::State::kEnd, source->read(&batch, 1s));
}

TEST_F(SourceTest, AFileComesAsFastAsItsClock) {
    composed::Options options;
    options.seconds = 1;
    options.clock = (uint64_t{1} << 33) - 45000;
    write("a.ts", composed::dvb(options));
    SourceOptions once;
    once.loop = false;
    const auto source = openSource("a.ts", mDirectory, once);
    const auto begin = std::chrono::steady_clock::now();
    Batch batch;
    Source::State state = Source::State::kPackets;
    while (state == Source::State::kPackets || state == Source::State::kSilence) {
        state = source->read(&batch, 10ms);
    }
    EXPECT_EQ(Source::State::kEnd, state);
    EXPECT_GE(std::chrono::steady_clock::now() - begin, 900ms);
}

TEST_F(SourceTest, WhatIsNoStreamIsRefusedWithAReason) {
    write("noise.ts", Octets(300000, 0x12));
    write("empty.ts", {});
    for (const char* name : {"noise.ts", "empty.ts"}) {
        const auto source = openSource(name, mDirectory);
        Batch batch;
        EXPECT_EQ(Source::State::kError, source->read(&batch, 1s));
        EXPECT_THAT(source->reason(), HasSubstr("is no transport stream"));
    }
    std::filesystem::create_symlink(mDirectory + "/noise.ts", mDirectory + "/link.ts");
    EXPECT_THAT(refusal("link.ts"), HasSubstr("is no regular file"));
    EXPECT_THAT(refusal("/dev/zero"), HasSubstr("is no regular file"));
    EXPECT_THAT(refusal("missing.ts"), HasSubstr("No such file"));
    EXPECT_THAT(refusal("udp://@239.1.1.1"), HasSubstr("has no port"));
    EXPECT_THAT(refusal("udp://@239.1.1.1:0"), HasSubstr("no valid port"));
    EXPECT_THAT(refusal("udp://@ff15::1:1234"), HasSubstr("IPv6 address in brackets"));
    EXPECT_THAT(refusal("udp://@[ff15::1]"), HasSubstr("has no port"));
    EXPECT_THAT(refusal("rtp://@[ff15::g]:1234"), HasSubstr("no valid IPv6 address"));
    EXPECT_THAT(refusal("udp://no-interface@[ff15::1]:1234"), HasSubstr("none of this machine"));
    EXPECT_THAT(refusal("udp://192.0.2.7@239.1.1.1:1234"), HasSubstr("No such device"));
    EXPECT_THAT(refusal("rtp://@example:1234"), HasSubstr("no IPv4 address"));
    EXPECT_THAT(refusal(""), HasSubstr("no stream"));
}

TEST_F(SourceTest, ACommandIsReadAndEndsWithAllItStarted) {
    const Octets packets = numbered(20);
    write("a.ts", packets);
    const std::string marker = mDirectory + "/pid";
    {
        const auto source = openSource(
                "pipe:cat " + mDirectory + "/a.ts; sleep 1000 & echo $! > " + marker + "; wait",
                mDirectory);
        Octets all;
        while (all.size() < 10 * kPacketSize) {
            Batch batch;
            ASSERT_EQ(Source::State::kPackets, source->read(&batch, 10s));
            all.insert(all.end(), batch.packets, batch.packets + batch.count * kPacketSize);
        }
        Batch batch;
        EXPECT_EQ(Source::State::kSilence, source->read(&batch, 10ms));
        ASSERT_TRUE(eventually([&] {
            pid_t written = 0;
            return static_cast<bool>(std::ifstream(marker) >> written);
        }));
    }
    pid_t child = 0;
    std::ifstream(marker) >> child;
    ASSERT_GT(child, 0);
    EXPECT_TRUE(eventually([&] {
        return !std::filesystem::exists("/proc/" + std::to_string(child)) || kill(child, 0) != 0;
    }));
    EXPECT_EQ(-1, waitpid(-1, nullptr, WNOHANG)) << "no child is left";

    const auto failing = openSource("pipe:exit 3", mDirectory);
    Batch batch;
    EXPECT_EQ(Source::State::kEnd, failing->read(&batch, 10s));
    EXPECT_THAT(failing->reason(), HasSubstr("status 3"));
}

TEST_F(SourceTest, RtpIsOpenedAndALossIsADiscontinuity) {
    const auto source = openSource("rtp://@127.0.0.1:35791", mDirectory);
    const qeltvd::Descriptor sender(socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC, 0));
    sockaddr_in to{};
    to.sin_family = AF_INET;
    to.sin_port = htons(35791);
    to.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    const Octets packets = numbered(7);
    const auto send = [&](uint16_t sequence) {
        Octets datagram{0x80,
                        33,
                        static_cast<uint8_t>(sequence >> 8),
                        static_cast<uint8_t>(sequence),
                        0,
                        0,
                        0,
                        0,
                        0,
                        0,
                        0,
                        0};
        datagram.insert(datagram.end(), packets.begin(), packets.end());
        return sendto(sender.get(), datagram.data(), datagram.size(), 0,
                      reinterpret_cast<const sockaddr*>(&to), sizeof(to)) > 0;
    };
    const auto receive = [&](bool* discontinuity) {
        Batch batch;
        if (source->read(&batch, 5s) != Source::State::kPackets) return size_t{0};
        *discontinuity = batch.discontinuity;
        return batch.count;
    };
    bool discontinuity = true;
    ASSERT_TRUE(send(0xffff));
    EXPECT_EQ(7u, receive(&discontinuity));
    EXPECT_FALSE(discontinuity);
    ASSERT_TRUE(send(0));
    EXPECT_EQ(7u, receive(&discontinuity));
    EXPECT_FALSE(discontinuity) << "the sequence wraps";
    ASSERT_TRUE(send(2));
    EXPECT_EQ(7u, receive(&discontinuity));
    EXPECT_TRUE(discontinuity);
    ASSERT_TRUE(send(1));
    Batch batch;
    EXPECT_EQ(Source::State::kSilence, source->read(&batch, 50ms)) << "a late one";
}

/** Sends seven packets, to a multicast over an interface and no further than this machine. */
void sendTo(const sockaddr* to, socklen_t size, const std::string& interface = "lo") {
    const qeltvd::Descriptor sender(socket(to->sa_family, SOCK_DGRAM | SOCK_CLOEXEC, 0));
    const unsigned index = if_nametoindex(interface.c_str());
    const int none = 0;
    if (to->sa_family == AF_INET6) {
        setsockopt(sender.get(), IPPROTO_IPV6, IPV6_MULTICAST_IF, &index, sizeof(index));
        setsockopt(sender.get(), IPPROTO_IPV6, IPV6_MULTICAST_HOPS, &none, sizeof(none));
    } else {
        const ip_mreqn on{{}, {}, static_cast<int>(index)};
        setsockopt(sender.get(), IPPROTO_IP, IP_MULTICAST_IF, &on, sizeof(on));
        setsockopt(sender.get(), IPPROTO_IP, IP_MULTICAST_TTL, &none, sizeof(none));
    }
    const Octets packets = numbered(7);
    EXPECT_EQ(static_cast<ssize_t>(packets.size()),
              sendto(sender.get(), packets.data(), packets.size(), 0, to, size))
            << interface << ": " << strerror(errno);
}

void sendTo4(const char* address, uint16_t port) {
    sockaddr_in to{};
    to.sin_family = AF_INET;
    to.sin_port = htons(port);
    ASSERT_EQ(1, inet_pton(AF_INET, address, &to.sin_addr));
    sendTo(reinterpret_cast<const sockaddr*>(&to), sizeof(to));
}

void sendTo6(const char* address, uint16_t port, const std::string& interface = "lo") {
    sockaddr_in6 to{};
    to.sin6_family = AF_INET6;
    to.sin6_port = htons(port);
    ASSERT_EQ(1, inet_pton(AF_INET6, address, &to.sin6_addr));
    sendTo(reinterpret_cast<const sockaddr*>(&to), sizeof(to), interface);
}

bool receives(Source& source) {
    Batch batch;
    return source.read(&batch, 5s) == Source::State::kPackets && batch.count == 7;
}

TEST_F(SourceTest, DatagramsComeOverIpv4) {
    const auto byName = openSource("udp://lo@239.255.7.1:35792", mDirectory);
    sendTo4("239.255.7.1", 35792);
    EXPECT_TRUE(receives(*byName));
    const auto byAddress = openSource("udp://127.0.0.1@239.255.7.2:35793", mDirectory);
    sendTo4("239.255.7.2", 35793);
    EXPECT_TRUE(receives(*byAddress));
}

TEST_F(SourceTest, DatagramsComeOverIpv6) {
    const qeltvd::Descriptor probe(socket(AF_INET6, SOCK_DGRAM | SOCK_CLOEXEC, 0));
    sockaddr_in6 own{};
    own.sin6_family = AF_INET6;
    own.sin6_addr = in6addr_loopback;
    if (!probe || bind(probe.get(), reinterpret_cast<sockaddr*>(&own), sizeof(own)) != 0) {
        GTEST_SKIP() << "this machine has no IPv6";
    }
    const auto one = openSource("udp://@[::1]:35794", mDirectory);
    sendTo6("::1", 35794);
    EXPECT_TRUE(receives(*one));
    const auto any = openSource("udp://@[::]:35795", mDirectory);
    sendTo6("::1", 35795);
    EXPECT_TRUE(receives(*any));
    sendTo4("127.0.0.1", 35795);
    EXPECT_TRUE(receives(*any));
}

TEST_F(SourceTest, DatagramsComeFromAMulticastOfIpv6) {
    // The loopback has no multicast.
    std::string name, address;
    ifaddrs* all = nullptr;
    ASSERT_EQ(0, getifaddrs(&all));
    for (const ifaddrs* each = all; each != nullptr && name.empty(); each = each->ifa_next) {
        if (each->ifa_addr == nullptr || each->ifa_addr->sa_family != AF_INET6) continue;
        if ((each->ifa_flags & IFF_UP) == 0 || (each->ifa_flags & IFF_MULTICAST) == 0) continue;
        char text[INET6_ADDRSTRLEN];
        const auto* six = reinterpret_cast<const sockaddr_in6*>(each->ifa_addr);
        inet_ntop(AF_INET6, &six->sin6_addr, text, sizeof(text));
        name = each->ifa_name;
        address = text;
    }
    freeifaddrs(all);
    if (name.empty()) GTEST_SKIP() << "no interface has IPv6 and multicast";
    for (const std::string& text :
         {"udp://" + name + "@[ff15::7:1]:35796", "udp://[" + address + "]@[ff15::7:1]:35796",
          "udp://@[ff15::7:1%" + name + "]:35796"}) {
        const auto group = openSource(text, mDirectory);
        sendTo6("ff15::7:1", 35796, name);
        EXPECT_TRUE(receives(*group)) << text;
    }
}

TEST_F(SourceTest, AReceptionReportsSilenceAndEndsAtOnce) {
    std::atomic<size_t> packets{0};
    std::atomic<int> silent{0};
    Reception::Listener listener;
    listener.packets = [&](const Batch& batch) { packets += batch.count; };
    listener.silence = [&](bool now) { silent += now ? 1 : 0; };
    listener.ended = [](bool, const std::string&) {};
    write("a.ts", numbered(20));
    const auto begin = std::chrono::steady_clock::now();
    {
        Reception reception(openSource("pipe:cat " + mDirectory + "/a.ts; sleep 1000", mDirectory),
                            listener);
        EXPECT_TRUE(eventually([&] { return packets > 0 && silent == 1; }));
    }
    EXPECT_LT(std::chrono::steady_clock::now() - begin, 30s);
}

}  // namespace
