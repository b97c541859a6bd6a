// Peers that do not keep to the protocol: what they send costs them their connection and nobody
// else anything.

#include <fcntl.h>
#include <poll.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstring>
#include <functional>
#include <random>
#include <string>
#include <thread>
#include <vector>

#include <gtest/gtest.h>
#include <hidl/HidlBinderSupport.h>
#include <hidlhost/raw_service.h>
#include <hidlhost/test/kit/1.0/BnHwEcho.h>
#include <hidlhost/test/kit/1.0/IEcho.h>
#include <hidlhost/test/kit/1.0/IServiceChild.h>
#include <hidlhost/test/kit/1.0/hwtypes.h>
#include <hwbinder/Parcel.h>

#include "Codec.h"
#include "Registry.h"
#include "Socket.h"
#include "Wire.h"
#include "kit_process.h"

namespace {

using ::android::sp;
using ::android::hardware::hidl_string;
using ::android::hardware::hidl_vec;
using ::android::hardware::IBinder;
using ::android::hardware::Parcel;
using ::android::hardware::Return;
using ::android::hidl::base::V1_0::IBase;
using namespace ::hidlhost;
using namespace ::hidlhost::test::kit::V1_0;

const std::string kStranger = std::to_string(getpid()) + "-feedfacecafebeef";

size_t paddedSize(size_t size) {
    return static_cast<size_t>(padded(size));
}

// A message taken apart, so that any piece of it can be made wrong.
struct Message {
    MessageHeader header = {};
    std::vector<uint8_t> stream;
    std::vector<ObjectRecord> records;
    std::vector<uint8_t> payload;
    std::vector<int> descriptors;

    std::vector<uint8_t> bytes() const {
        std::vector<uint8_t> all(sizeof(header));
        memcpy(all.data(), &header, sizeof(header));
        all.insert(all.end(), stream.begin(), stream.end());
        all.resize(paddedSize(all.size()));
        auto* record = reinterpret_cast<const uint8_t*>(records.data());
        all.insert(all.end(), record, record + records.size() * sizeof(ObjectRecord));
        all.insert(all.end(), payload.begin(), payload.end());
        return all;
    }
    void fitHeader() {
        header.magic = kMagic;
        header.dataSize = static_cast<uint32_t>(stream.size());
        header.recordCount = static_cast<uint32_t>(records.size());
        header.payloadSize = static_cast<uint32_t>(payload.size());
        header.descriptorCount = static_cast<uint32_t>(descriptors.size());
    }
};

uint8_t* at(Message& message, uint64_t offset) {
    return &message.payload[static_cast<size_t>(offset)];
}

class NoBinders final : public BinderMapper {
  public:
    android::status_t encode(const sp<IBinder>&, ObjectRecord*, std::string*) override {
        return android::BAD_TYPE;
    }
    android::status_t decode(const ObjectRecord&, const std::string&, sp<IBinder>*) override {
        return android::BAD_TYPE;
    }
};

Message messageOf(const Parcel& parcel, uint64_t object, uint32_t code) {
    Message message;
    message.header.kind = kCall;
    message.header.object = object;
    message.header.code = code;
    NoBinders mapper;
    Encoded encoded;
    EXPECT_EQ(Codec::encode(parcel, &message.header, &mapper, &encoded), android::OK);
    std::vector<uint8_t> all;
    for (size_t i = 0; i < encoded.vectorCount; ++i) {
        auto* part = static_cast<uint8_t*>(encoded.vectors[i].iov_base);
        all.insert(all.end(), part, part + encoded.vectors[i].iov_len);
    }
    memcpy(&message.header, all.data(), sizeof(MessageHeader));
    const uint8_t* at = all.data() + sizeof(MessageHeader);
    message.stream.assign(at, at + padded(message.header.dataSize));
    message.stream.resize(message.header.dataSize);
    at += padded(message.header.dataSize);
    message.records.resize(message.header.recordCount);
    memcpy(message.records.data(), at, message.records.size() * sizeof(ObjectRecord));
    at += message.records.size() * sizeof(ObjectRecord);
    message.payload.assign(at, at + message.header.payloadSize);
    message.descriptors = encoded.descriptors;
    return message;
}

class RawConnection {
  public:
    // Says nothing.
    explicit RawConnection(const std::string& node) {
        EXPECT_EQ(connectTo(registry::socketPath(node), 20000, &mSocket), android::OK);
    }
    RawConnection(const std::string& node, uint32_t role, const std::string& suffix = "")
            : RawConnection(node) {
        Message hello;
        hello.header.kind = kHello;
        hello.header.code = role;
        for (const std::string& name : {kStranger, node + suffix}) {
            hello.stream.insert(hello.stream.end(), name.c_str(), name.c_str() + name.size() + 1);
        }
        hello.fitHeader();
        send(hello.bytes());
    }

    bool send(const std::vector<uint8_t>& bytes, const std::vector<int>& descriptors = {}) {
        alignas(cmsghdr) char control[CMSG_SPACE(64 * sizeof(int))] = {};
        iovec part = {const_cast<uint8_t*>(bytes.data()), bytes.size()};
        msghdr message = {};
        message.msg_iov = &part;
        message.msg_iovlen = 1;
        if (!descriptors.empty()) {
            size_t size = descriptors.size() * sizeof(int);
            message.msg_control = control;
            message.msg_controllen = CMSG_SPACE(size);
            cmsghdr* rights = CMSG_FIRSTHDR(&message);
            rights->cmsg_level = SOL_SOCKET;
            rights->cmsg_type = SCM_RIGHTS;
            rights->cmsg_len = CMSG_LEN(size);
            memcpy(CMSG_DATA(rights), descriptors.data(), size);
        }
        return sendmsg(mSocket, &message, MSG_NOSIGNAL) >= 0;
    }
    bool send(const Message& message) { return send(message.bytes(), message.descriptors); }
    void endOfSending() { shutdown(mSocket, SHUT_WR); }

    // The other side has hung up, regardless of what it sent before.
    bool closed() {
        char packet[kPacketSize];
        for (;;) {
            ssize_t size = recv(mSocket, packet, sizeof(packet), 0);
            if (size == 0) return true;
            if (size < 0) return errno == ECONNRESET;
        }
    }
    // The status of the reply that comes; 1 without one.
    int32_t status() {
        std::vector<uint8_t> packet(kPacketSize);
        ssize_t size = recv(mSocket, packet.data(), packet.size(), 0);
        MessageHeader header;
        if (size < static_cast<ssize_t>(sizeof(header))) return 1;
        memcpy(&header, packet.data(), sizeof(header));
        return header.kind == kReply ? static_cast<int32_t>(header.code) : 1;
    }

  private:
    android::base::unique_fd mSocket;
};

size_t lines(const std::string& text) {
    return static_cast<size_t>(std::count(text.begin(), text.end(), '\n'));
}

class MalformedTest : public ::testing::Test {
  protected:
    void SetUp() override {
        ASSERT_TRUE(mProcess.ready()) << mProcess.errors();
        mEcho = IEcho::getService("kit");
        mService = IServiceChild::getService("kit");
        ASSERT_TRUE(mEcho != nullptr && mService != nullptr);
        ASSERT_TRUE(registry::find(IEcho::descriptor, "kit", &mEntry));
        // What the service opens once and for all is open before descriptors are counted.
        RawConnection first(mEntry.node, kEvents);
        first.endOfSending();
        ASSERT_TRUE(first.closed());
        mTree.named = {"root", {1, 2, 3}, 4};
        mTree.list = {{"leaf", {5}, 6}, {"other", {}, 7}};
        mTree.table = {{"a", "b"}, {}};
        native_handle_t* native = native_handle_create(1, 1);
        native->data[0] = open("/dev/null", O_RDONLY | O_CLOEXEC);
        native->data[1] = 8;
        mTree.one.setTo(native, true);
    }

    void expectServing() {
        ASSERT_TRUE(mProcess.running()) << mProcess.errors();
        EXPECT_EQ(mEcho->echoInt32(77).withDefault(0), 77);
        EXPECT_EQ(mService->pid().withDefault(0), mProcess.pid());
    }

    // The call that a proxy makes for echoTree(mTree).
    Message echoTree() {
        size_t parent;
        EXPECT_EQ(mParcel.writeInterfaceToken(IEcho::descriptor), android::OK);
        EXPECT_EQ(mParcel.writeBuffer(&mTree, sizeof(mTree), &parent), android::OK);
        EXPECT_EQ(writeEmbeddedToParcel(mTree, &mParcel, parent, 0), android::OK);
        Message message = messageOf(mParcel, mEntry.object, kEchoTree);
        mParcel.freeData();
        return message;
    }

    // Positions among the methods of IEcho.hal.
    static constexpr uint32_t kEchoTree = 28;
    static constexpr uint32_t kEchoListener = 35;

    kit::Process mProcess;
    sp<IEcho> mEcho;
    sp<IServiceChild> mService;
    registry::Entry mEntry;
    Tree mTree = {};
    Parcel mParcel;
};

TEST_F(MalformedTest, AWellFormedMessageMadeTheSameWayIsAnswered) {
    RawConnection connection(mEntry.node, kCalls);
    ASSERT_TRUE(connection.send(echoTree()));
    EXPECT_EQ(connection.status(), android::OK);
}

TEST_F(MalformedTest, AMessageAtOddsWithItselfClosesItsConnectionOnly) {
    struct Case {
        const char* what;
        std::function<void(Message&)> spoil;
    };
    const Case cases[] = {
            {"magic", [](Message& m) { ++m.header.magic; }},
            {"kind", [](Message& m) { m.header.kind = 99; }},
            {"reply on a connection for calls", [](Message& m) { m.header.kind = kReply; }},
            {"a second hello", [](Message& m) { m.header.kind = kHello; }},
            {"oneway on a connection for calls", [](Message& m) { m.header.flags = kFlagOneway; }},
            {"beyond the largest message", [](Message& m) { m.header.payloadSize = 0xfffffff8; }},
            {"records beyond the largest message",
             [](Message& m) { m.header.recordCount = 0xffffffff; }},
            {"payload not padded", [](Message& m) { m.header.payloadSize -= 3; }},
            {"more bytes than announced", [](Message& m) { m.header.payloadSize -= 8; }},
            {"descriptors missing", [](Message& m) { m.descriptors.clear(); }},
            {"descriptors not announced", [](Message& m) { m.header.descriptorCount = 0; }},
            {"descriptors of no handle",
             [](Message& m) {
                 m.descriptors.push_back(m.descriptors[0]);
                 ++m.header.descriptorCount;
             }},
            {"record kind 0", [](Message& m) { m.records[0].kind = 0; }},
            {"record kind 99", [](Message& m) { m.records[0].kind = 99; }},
            {"length beyond the payload", [](Message& m) { m.records[0].length = 0xfffffff0; }},
            {"longer than its neighbour allows", [](Message& m) { m.records[0].length += 8; }},
            {"elsewhere in the payload", [](Message& m) { m.records[1].value += 8; }},
            {"far outside the payload", [](Message& m) { m.records[1].value = ~uint64_t{7}; }},
            {"its own parent", [](Message& m) { m.records[1].parent = 1; }},
            {"parent to come", [](Message& m) { m.records[1].parent = 5; }},
            {"parent not there", [](Message& m) { m.records[1].parent = 0x7fffffff; }},
            {"pointer at an odd place", [](Message& m) { m.records[1].parentOffset += 4; }},
            {"pointer behind the parent",
             [](Message& m) { m.records[1].parentOffset = m.records[0].length; }},
            {"pointer offset overflow", [](Message& m) { m.records[1].parentOffset = ~7u; }},
            {"null buffer with bytes", [](Message& m) { m.records[1].kind = kNullBuffer; }},
            {"handle that is none", [](Message& m) { m.records[1].kind = kHandle; }},
            {"binder with a parent", [](Message& m) { m.records[1].kind = kNullBinder; }},
    };
    RawConnection bystander(mEntry.node, kCalls);
    for (const Case& wrong : cases) {
        SCOPED_TRACE(wrong.what);
        size_t before = lines(mProcess.errors());
        RawConnection connection(mEntry.node, kCalls);
        Message message = echoTree();
        wrong.spoil(message);
        ASSERT_TRUE(connection.send(message));
        EXPECT_TRUE(connection.closed());
        EXPECT_EQ(lines(mProcess.errors()), before + 1) << mProcess.errors();
        ASSERT_NO_FATAL_FAILURE(expectServing());
    }
    ASSERT_TRUE(bystander.send(echoTree()));
    EXPECT_EQ(bystander.status(), android::OK);
}

TEST_F(MalformedTest, HandlesAreCheckedAgainstTheirBytesAndDescriptors) {
    const auto handle = [](Message& m) {
        for (ObjectRecord& record : m.records) {
            if (record.kind == kHandle) return reinterpret_cast<int*>(at(m, record.value));
        }
        return static_cast<int*>(nullptr);
    };
    const std::function<void(int*)> cases[] = {
            [](int* h) { h[0] = 7; },            // version
            [](int* h) { h[1] = 2; },            // descriptors that did not come
            [](int* h) { h[1] = -1; },           //
            [](int* h) { h[1] = 1 << 30; },      //
            [](int* h) { h[2] = 2; },            // numbers that are not there
            [](int* h) { h[2] = -1; },           //
            [](int* h) { h[1] = 0, h[2] = 2; },  // a descriptor that nobody takes
    };
    for (const auto& spoil : cases) {
        RawConnection connection(mEntry.node, kCalls);
        Message message = echoTree();
        ASSERT_NE(handle(message), nullptr);
        spoil(handle(message));
        ASSERT_TRUE(connection.send(message));
        EXPECT_TRUE(connection.closed());
    }
    expectServing();
}

TEST_F(MalformedTest, ArgumentsOfAnotherShapeAreRefusedWithAnAnswer) {
    struct Case {
        const char* what;
        std::function<void(Message&)> spoil;
    };
    const auto word = [](Message& m, size_t record, size_t offset) {
        return reinterpret_cast<uint32_t*>(at(m, m.records[record].value + offset));
    };
    const Case cases[] = {
            {"token of another interface", [](Message& m) { m.stream[3] ^= 1; }},
            {"token without an end", [](Message& m) { m.stream.assign(16, 'x'); }},
            {"no stream", [](Message& m) { m.stream.clear(); }},
            {"no arguments",
             [](Message& m) {
                 m.records.clear();
                 m.payload.clear();
                 m.descriptors.clear();
             }},
            {"unknown method", [](Message& m) { m.header.code = 4000; }},
            {"unknown object", [](Message& m) { m.header.object = 0x123456789; }},
            {"structure of another size",
             [](Message& m) {
                 m.records.resize(1);
                 m.records[0].length = 8;
                 m.payload.resize(8);
                 m.descriptors.clear();
             }},
            {"string longer than its bytes",
             [&](Message& m) { *word(m, 0, offsetof(Tree, named) + 8) = 4000; }},
            {"string without a NUL", [](Message& m) { *at(m, m.records[1].value + 4) = 'x'; }},
            {"vector longer than its elements",
             [&](Message& m) { *word(m, 0, offsetof(Tree, list) + 8) = 0x10000000; }},
            {"vector whose size in bytes overflows",
             [&](Message& m) { *word(m, 0, offsetof(Tree, list) + 8) = 0xffffffff; }},
            {"child of another place",
             [](Message& m) { m.records[1].parentOffset = offsetof(Tree, pair); }},
            {"child of nobody", [](Message& m) { m.records[1].parent = kNoParent; }},
            {"string left out",
             [](Message& m) {
                 uint64_t size = padded(m.records[1].length);
                 auto first = m.payload.begin() + static_cast<ptrdiff_t>(m.records[1].value);
                 m.payload.erase(first, first + static_cast<ptrdiff_t>(size));
                 m.records[1] = {kNullBuffer, 0, 0, offsetof(Tree, named), 0};
                 for (size_t i = 2; i < m.records.size(); ++i) m.records[i].value -= size;
             }},
    };
    RawConnection connection(mEntry.node, kCalls);
    for (const Case& wrong : cases) {
        SCOPED_TRACE(wrong.what);
        Message message = echoTree();
        wrong.spoil(message);
        message.fitHeader();
        ASSERT_TRUE(connection.send(message));
        EXPECT_LT(connection.status(), android::OK);
    }
    ASSERT_TRUE(connection.send(echoTree()));
    EXPECT_EQ(connection.status(), android::OK);
    expectServing();
}

TEST_F(MalformedTest, ObjectsOfProcessesThatAreNotThereAreDead) {
    for (uint32_t kind : {kSendersBinder, kReceiversBinder, kOthersBinder}) {
        for (const std::string& name : {std::string(), std::string("1-0123456789abcdef"),
                                        std::string("../../etc"), std::string(5000, 'n')}) {
            Message message;
            message.header.kind = kCall;
            message.header.object = mEntry.object;
            message.header.code = kEchoListener;
            mParcel.writeInterfaceToken(IEcho::descriptor);
            message.stream.assign(mParcel.data(), mParcel.data() + mParcel.dataSize());
            mParcel.freeData();
            message.records.push_back(
                    {kind, static_cast<uint32_t>(name.size()), kNoParent, 0, 987654});
            message.payload.assign(name.begin(), name.end());
            message.payload.resize(paddedSize(name.size()));
            message.fitHeader();
            RawConnection connection(mEntry.node, kCalls);
            ASSERT_TRUE(connection.send(message));
            connection.endOfSending();
            EXPECT_TRUE(connection.closed());
        }
    }
    expectServing();
}

TEST_F(MalformedTest, StrangersAndHalfMessagesEnd) {
    int32_t before = mService->openDescriptors().withDefault(-1);
    {
        RawConnection silent(mEntry.node);
        RawConnection garbage(mEntry.node);
        ASSERT_TRUE(garbage.send(std::vector<uint8_t>(300, 0xaa)));
        EXPECT_TRUE(garbage.closed());
        RawConnection empty(mEntry.node, kCalls);
        ASSERT_TRUE(empty.send(std::vector<uint8_t>()));
        EXPECT_TRUE(empty.closed());
        RawConnection shortOne(mEntry.node, kCalls);
        ASSERT_TRUE(shortOne.send(std::vector<uint8_t>(47)));
        EXPECT_TRUE(shortOne.closed());
        RawConnection role(mEntry.node, 17);
        EXPECT_TRUE(role.closed());
        RawConnection forSomebodyElse(mEntry.node, kCalls, "x");
        EXPECT_TRUE(forSomebodyElse.closed());

        // Announced and begun, but never completed.
        RawConnection half(mEntry.node, kCalls);
        Message message = echoTree();
        message.payload.resize(200u << 10);
        message.fitHeader();
        std::vector<uint8_t> bytes = message.bytes();
        bytes.resize(kPacketSize);
        ASSERT_TRUE(half.send(bytes, message.descriptors));
        // References that were never given cannot be given back.
        RawConnection liveness(mEntry.node, kEvents);
        Message release;
        release.header.kind = kRelease;
        release.header.object = mEntry.object;
        release.header.code = 1000000;
        release.fitHeader();
        ASSERT_TRUE(liveness.send(release));
        ASSERT_TRUE(liveness.send(std::vector<uint8_t>(20)));
        EXPECT_TRUE(liveness.closed());
        expectServing();
    }
    EXPECT_TRUE(eventually([&] { return mService->openDescriptors().withDefault(-1) <= before; }))
            << mService->openDescriptors().withDefault(-1) << " descriptors, before " << before;
    EXPECT_NE(IEcho::getService("kit"), nullptr);
}

TEST_F(MalformedTest, RandomChangesNeverHarmTheService) {
    const Message message = echoTree();
    const std::vector<uint8_t> good = message.bytes();
    int32_t before = mService->openDescriptors().withDefault(-1);
    std::minstd_rand random(20);
    const int rounds = *QELTV_EMULATOR != '\0' ? 200 : 1500;
    for (int round = 0; round < rounds; ++round) {
        std::vector<uint8_t> bytes = good;
        for (uint32_t changes = 1 + random() % 4; changes > 0; --changes) {
            size_t at = random() % bytes.size();
            // Another object or method would be a valid call, possibly of one that ends the
            // process.
            if ((at >= 8 && at < 16) || (at >= 24 && at < 28)) continue;
            bytes[at] = static_cast<uint8_t>(random() % 3 == 0 ? random()
                                                               : bytes[at] ^ (1u << random() % 8));
        }
        if (random() % 10 == 0) bytes.resize(random() % bytes.size());
        RawConnection connection(mEntry.node, kCalls);
        connection.send(bytes, message.descriptors);
        connection.endOfSending();
        ASSERT_TRUE(connection.closed()) << "round " << round;
    }
    expectServing();
    EXPECT_TRUE(eventually([&] { return mService->openDescriptors().withDefault(-1) <= before; }))
            << mService->openDescriptors().withDefault(-1) << " descriptors, before " << before;
}

TEST_F(MalformedTest, AnotherUserIsTurnedAway) {
    if (geteuid() != 0) GTEST_SKIP() << "only root can become another user";
    // With the directory and the socket open to everybody the check on the connection remains.
    std::string path = registry::socketPath(mEntry.node);
    ASSERT_EQ(chmod(getenv("QELTV_RUNTIME_DIR"), 0711), 0);
    ASSERT_EQ(chmod(path.c_str(), 0666), 0);
    pid_t child = fork();
    if (child == 0) {
        if (setresuid(65534, 65534, 65534) != 0) _exit(2);
        RawConnection connection(mEntry.node, kCalls);
        _exit(connection.closed() ? 0 : 1);
    }
    int status = 0;
    ASSERT_EQ(waitpid(child, &status, 0), child);
    chmod(getenv("QELTV_RUNTIME_DIR"), 0700);
    ASSERT_TRUE(WIFEXITED(status));
    EXPECT_EQ(WEXITSTATUS(status), 0);
    expectServing();
}

// The other way: a process that publishes an IEcho and answers its calls with what the test
// says.
class RogueService {
  public:
    explicit RogueService(std::vector<uint8_t> answer)
            : mAnswer(std::move(answer)), mNode(kStranger + std::to_string(sCount++)) {
        EXPECT_EQ(listenAt(registry::socketPath(mNode), &mListener), android::OK);
        EXPECT_EQ(registry::publish(IEcho::descriptor, "rogue", {mNode, 1}), android::OK);
        mThread = std::thread([this] { accept(); });
    }
    ~RogueService() {
        shutdown(mListener, SHUT_RDWR);
        mThread.join();
        for (int socket : mSockets) shutdown(socket, SHUT_RDWR);
        for (std::thread& thread : mServing) thread.join();
        for (int socket : mSockets) close(socket);
        registry::withdrawNode(mNode);
    }
    RogueService(const RogueService&) = delete;
    RogueService& operator=(const RogueService&) = delete;

  private:
    static constexpr uint32_t kInterfaceChain = 256067662;

    void accept() {
        for (;;) {
            int socket = accept4(mListener, nullptr, nullptr, SOCK_CLOEXEC);
            if (socket < 0) return;
            mSockets.push_back(socket);
            mServing.emplace_back([this, socket] { serve(socket); });
        }
    }
    void serve(int socket) {
        std::vector<uint8_t> packet(kPacketSize);
        while (recv(socket, packet.data(), packet.size(), 0) > 0) {
            MessageHeader header;
            memcpy(&header, packet.data(), sizeof(header));
            if (header.kind == kAcquire && (header.flags & kFlagWantsAnswer) != 0) {
                Message reply;
                reply.fitHeader();
                answer(socket, reply);
            } else if (header.kind == kCall && header.code == kInterfaceChain) {
                answer(socket, chain());
            } else if (header.kind == kCall) {
                (void)!::send(socket, mAnswer.data(), mAnswer.size(), MSG_NOSIGNAL);
                shutdown(socket, SHUT_WR);
            }
        }
    }
    static void answer(int socket, Message message) {
        message.header.kind = kReply;
        message.header.code = android::OK;
        std::vector<uint8_t> bytes = message.bytes();
        (void)!::send(socket, bytes.data(), bytes.size(), MSG_NOSIGNAL);
    }
    static Message chain() {
        const hidl_vec<hidl_string> names{IEcho::descriptor, IBase::descriptor};
        Parcel parcel;
        size_t parent, child;
        writeOk(&parcel);
        parcel.writeBuffer(&names, sizeof(names), &parent);
        writeEmbeddedToParcel(names, &parcel, parent, 0, &child);
        for (size_t i = 0; i < names.size(); ++i) {
            writeEmbeddedToParcel(names[i], &parcel, child, i * sizeof(hidl_string));
        }
        return messageOf(parcel, 0, 0);
    }

    /** A process never has the name of another, whose end may not have been noticed yet. */
    static inline int sCount = 0;

    const std::vector<uint8_t> mAnswer;
    const std::string mNode;
    android::base::unique_fd mListener;
    std::thread mThread;
    std::vector<int> mSockets;
    std::vector<std::thread> mServing;
};

TEST_F(MalformedTest, AnAnswerOfGarbageIsAFailedCall) {
    Message reply = echoTree();
    reply.header.kind = kReply;
    reply.header.code = 0;
    reply.descriptors.clear();
    Message wrongParent = reply;
    wrongParent.records[1].parent = 7;
    Message callInstead = reply;
    callInstead.header.kind = kCall;
    Message endless = reply;
    endless.header.payloadSize = 200u << 20;
    const std::vector<std::vector<uint8_t>> answers = {
            {},
            std::vector<uint8_t>(10, 1),
            std::vector<uint8_t>(5000, 0x55),
            wrongParent.bytes(),
            callInstead.bytes(),
            endless.bytes(),
    };
    size_t before = 0;
    for (size_t i = 0; i < answers.size(); ++i) {
        SCOPED_TRACE(i);
        RogueService rogue(answers[i]);
        sp<IEcho> echo = IEcho::getService("rogue");
        ASSERT_NE(echo, nullptr);
        EXPECT_FALSE(echo->echoTree(mTree, [](const Tree&) { FAIL(); }).isOk());
        expectServing();
        echo.clear();
        if (i == 0) before = kit::openDescriptors();
    }
    EXPECT_TRUE(eventually([&] { return kit::openDescriptors() <= before + 1; }));
}

}  // namespace
