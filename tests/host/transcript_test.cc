// The transcript in docs/host-runtime.md against the wire, in both directions: what a client sends
// and what a service answers are the very bytes that stand there.

#include <sys/socket.h>
#include <unistd.h>

#include <cstdlib>
#include <cstring>
#include <fstream>
#include <string>
#include <thread>
#include <vector>

#include <gtest/gtest.h>
#include <hidl/HidlBinderSupport.h>
#include <hidlhost/raw_service.h>

#include "Registry.h"
#include "Socket.h"
#include "Wire.h"

namespace {

using ::android::OK;
using ::android::sp;
using ::android::hardware::hidl_string;
using ::android::hardware::IBinder;
using ::android::hardware::Parcel;
using namespace ::hidlhost;
using Bytes = std::vector<uint8_t>;

constexpr char kInterface[] = "demo.greet@1.0::IGreeter";
const std::string kStranger = std::to_string(getpid()) + "-feedfacecafebeef";
constexpr size_t kObjectAt = 8;
constexpr size_t kChainAt = 16;
constexpr size_t kChainSize = 8;
constexpr int kBytesEnd = 33;  // the column in the document

/** The hexadecimal dumps of the document, each of which begins with offset 000. */
std::vector<Bytes> dumps() {
    std::ifstream file(QELTV_SOURCE_DIR "/docs/host-runtime.md");
    std::vector<Bytes> all;
    for (std::string line; std::getline(file, line);) {
        // Four blanks, the offset, then two groups of four bytes in front of the remark.
        if (line.size() < size_t{kBytesEnd} || line.compare(0, 4, "    ") != 0) continue;
        char* end;
        const size_t offset = strtoul(line.c_str() + 4, &end, 16);
        if (end != line.c_str() + 7) continue;
        if (offset == 0 || all.empty()) all.emplace_back();
        EXPECT_EQ(all.back().size(), offset) << line;
        for (int i = 0; i < 8; ++i) {
            const unsigned long byte = strtoul(end, &end, 16);
            EXPECT_LT(byte, 256u) << line;
            all.back().push_back(static_cast<uint8_t>(byte));
        }
        EXPECT_EQ(end - line.c_str(), kBytesEnd) << line;
    }
    return all;
}

/** As the document prints it, so that a difference can be read. */
std::string shown(const Bytes& bytes) {
    std::string text;
    char part[16];
    for (size_t i = 0; i < bytes.size(); ++i) {
        if (i % 8 == 0) {
            snprintf(part, sizeof(part), "\n    %03zx ", i);
            text += part;
        }
        snprintf(part, sizeof(part), i % 4 == 0 ? "  %02x" : " %02x", bytes[i]);
        text += part;
    }
    return text;
}

Bytes receive(int socket) {
    Bytes packet(kPacketSize);
    const ssize_t size = recv(socket, packet.data(), packet.size(), 0);
    packet.resize(size < 0 ? 0 : static_cast<size_t>(size));
    return packet;
}

bool send(int socket, const Bytes& bytes) {
    return ::send(socket, bytes.data(), bytes.size(), MSG_NOSIGNAL) ==
           static_cast<ssize_t>(bytes.size());
}

Bytes hello(const std::string& from, const std::string& to) {
    MessageHeader header = {};
    header.magic = kMagic;
    header.kind = kHello;
    header.code = kCalls;
    const std::string names = from + '\0' + to + '\0';
    header.dataSize = static_cast<uint32_t>(names.size());
    Bytes bytes(sizeof(header) + static_cast<size_t>(padded(names.size())));
    memcpy(bytes.data(), &header, sizeof(header));
    memcpy(bytes.data() + sizeof(header), names.data(), names.size());
    return bytes;
}

class Transcript : public testing::Test {
  protected:
    void SetUp() override {
        const auto all = dumps();
        ASSERT_EQ(all.size(), 2u) << "a call and its answer";
        mCall = all[0];
        mReply = all[1];
    }

    Bytes mCall;
    Bytes mReply;
};

TEST_F(Transcript, AClientSendsTheseBytesAndReadsThatAnswer) {
    android::base::unique_fd listener;
    ASSERT_EQ(listenAt(registry::socketPath(kStranger), &listener), OK);
    // Object 1 of a service that is nothing but a socket.
    ASSERT_EQ(registry::publish(kInterface, "bytes", {kStranger, 1}), OK);
    Bytes sent;
    std::vector<int> sockets;
    std::vector<std::thread> serving;
    std::thread accepting([&] {
        for (int socket; (socket = accept4(listener, nullptr, nullptr, SOCK_CLOEXEC)) >= 0;) {
            sockets.push_back(socket);
            serving.emplace_back([&, socket] {
                for (Bytes got = receive(socket); !got.empty(); got = receive(socket)) {
                    MessageHeader header;
                    memcpy(&header, got.data(), sizeof(header));
                    if (header.kind == kAcquire && (header.flags & kFlagWantsAnswer) != 0) {
                        MessageHeader known = {};
                        known.magic = kMagic;
                        known.kind = kReply;
                        (void)!::send(socket, &known, sizeof(known), MSG_NOSIGNAL);
                    } else if (header.kind == kCall) {
                        sent = got;
                        send(socket, mReply);
                    }
                }
            });
        }
    });

    {
        const sp<IBinder> greeter = findRaw(kInterface, "bytes");
        const hidl_string text = "Hi!";
        ASSERT_NE(greeter, nullptr);
        Parcel reply;
        EXPECT_EQ(rawCall(
                          greeter, kInterface, 1,
                          [&](Parcel* arguments) {
                              size_t parent;
                              arguments->writeInt32(-2);
                              arguments->writeBuffer(&text, sizeof(text), &parent);
                              writeEmbeddedToParcel(text, arguments, parent, 0);
                          },
                          &reply),
                  OK);
        EXPECT_EQ(reply.readInt32(), 0);
        EXPECT_EQ(reply.readInt32(), 7);
    }
    // The chain is one of this process.
    ASSERT_EQ(sent.size(), mCall.size());
    memcpy(sent.data() + kChainAt, mCall.data() + kChainAt, kChainSize);
    EXPECT_EQ(sent, mCall) << shown(sent);

    registry::withdrawNode(kStranger);
    shutdown(listener, SHUT_RDWR);
    accepting.join();
    for (int socket : sockets) shutdown(socket, SHUT_RDWR);
    for (std::thread& thread : serving) thread.join();
    for (int socket : sockets) close(socket);
}

TEST_F(Transcript, AServiceReadsTheseBytesAndSendsThatAnswer) {
    int32_t number = 0;
    std::string text;
    RawHost host;
    ASSERT_EQ(host.add(kInterface, "bytes",
                       [&](const RawCall& call, Parcel* reply) {
                           number = call.arguments.readInt32();
                           if (call.code != 1 || !readString(call.arguments, &text)) {
                               return android::BAD_VALUE;
                           }
                           writeOk(reply);
                           reply->writeInt32(7);
                           return OK;
                       }),
              OK);
    registry::Entry entry;
    ASSERT_TRUE(registry::find(kInterface, "bytes", &entry));
    memcpy(mCall.data() + kObjectAt, &entry.object, sizeof(entry.object));

    android::base::unique_fd socket;
    ASSERT_EQ(connectTo(registry::socketPath(entry.node), 20000, &socket), OK);
    ASSERT_TRUE(send(socket, hello(kStranger, entry.node)));
    ASSERT_TRUE(send(socket, mCall));
    const Bytes answer = receive(socket);
    EXPECT_EQ(answer, mReply) << shown(answer);
    EXPECT_EQ(number, -2);
    EXPECT_EQ(text, "Hi!");
}

}  // namespace
