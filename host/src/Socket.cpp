#include "Socket.h"

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <chrono>
#include <cstring>

#include <fcntl.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/time.h>
#include <sys/un.h>
#include <unistd.h>

#include "Fork.h"

using android::BAD_VALUE;
using android::DEAD_OBJECT;
using android::NO_MEMORY;
using android::OK;
using android::status_t;
using android::TIMED_OUT;
using android::base::unique_fd;

namespace hidlhost {
namespace {

constexpr size_t kMaxVectors = 256;
constexpr int kBacklog = 4096;

/** A socket's address holds 107 characters; longer paths go through a descriptor of the directory.
 */
class Address {
  public:
    explicit Address(const std::string& path) {
        mAddress.sun_family = AF_UNIX;
        std::string shown = path;
        if (shown.size() >= sizeof(mAddress.sun_path)) {
            size_t slash = path.rfind('/');
            mDirectory.reset(open(path.substr(0, slash).c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC));
            shown = "/proc/self/fd/" + std::to_string(mDirectory.get()) + path.substr(slash);
        }
        strncpy(mAddress.sun_path, shown.c_str(), sizeof(mAddress.sun_path) - 1);
    }

    const sockaddr* get() const { return reinterpret_cast<const sockaddr*>(&mAddress); }
    socklen_t size() const { return sizeof(mAddress); }

  private:
    sockaddr_un mAddress = {};
    unique_fd mDirectory;
};

unique_fd newSocket() {
    return unique_fd(socket(AF_UNIX, SOCK_SEQPACKET | SOCK_CLOEXEC, 0));
}

// The C library's functions are points of cancellation, which costs as much as all of ours, and
// nobody cancels these threads. The race detector must see its own, though.
#if defined(__has_feature)
#if __has_feature(thread_sanitizer)
#define HIDLHOST_PLAIN_CALLS 1
#endif
#endif
#if defined(__SANITIZE_THREAD__) || !defined(__GLIBC__)
#define HIDLHOST_PLAIN_CALLS 1
#endif
#ifdef HIDLHOST_PLAIN_CALLS
ssize_t sendPacket(int socket, const msghdr* message, int flags) {
    return sendmsg(socket, message, MSG_NOSIGNAL | flags);
}
ssize_t sendPacket(int socket, const iovec& part, int flags) {
    return send(socket, part.iov_base, part.iov_len, MSG_NOSIGNAL | flags);
}
ssize_t receivePacket(int socket, msghdr* message, int flags) {
    return recvmsg(socket, message, MSG_CMSG_CLOEXEC | flags);
}
#else
ssize_t sendPacket(int socket, const msghdr* message, int flags) {
    return syscall(SYS_sendmsg, socket, message, MSG_NOSIGNAL | flags);
}
ssize_t sendPacket(int socket, const iovec& part, int flags) {
    return syscall(SYS_sendto, socket, part.iov_base, part.iov_len, MSG_NOSIGNAL | flags, nullptr,
                   0);
}
ssize_t receivePacket(int socket, msghdr* message, int flags) {
    return syscall(SYS_recvmsg, socket, message, MSG_CMSG_CLOEXEC | flags);
}
#endif

/** After a failed send or receive: OK to try again. */
status_t afterFailure(int socket, Patience* patience) {
    if (errno == EINTR) return OK;
    if (errno == EAGAIN) {
        return patience != nullptr && patience->waitOn(socket) ? OK : TIMED_OUT;
    }
    if (errno == ENOMEM || errno == ENOBUFS) return NO_MEMORY;
    if (errno == EBADF || errno == EMSGSIZE) return -errno;
    // EPIPE, ECONNRESET, ENOTCONN
    return errno == ETOOMANYREFS ? -errno : DEAD_OBJECT;
}

void collectDescriptors(msghdr* message, Block* block) {
    for (cmsghdr* part = CMSG_FIRSTHDR(message); part != nullptr;
         part = CMSG_NXTHDR(message, part)) {
        if (part->cmsg_level != SOL_SOCKET || part->cmsg_type != SCM_RIGHTS) continue;
        size_t count = (part->cmsg_len - CMSG_LEN(0)) / sizeof(int);
        size_t before = block->descriptors.size();
        block->descriptors.resize(before + count);
        memcpy(block->descriptors.data() + before, CMSG_DATA(part), count * sizeof(int));
    }
}

}  // namespace

void setTimeouts(int socket, uint32_t milliseconds) {
    timeval time = {};
    time.tv_sec = static_cast<time_t>(milliseconds / 1000);
    time.tv_usec = static_cast<suseconds_t>(milliseconds % 1000 * 1000);
    setsockopt(socket, SOL_SOCKET, SO_RCVTIMEO, &time, sizeof(time));
    setsockopt(socket, SOL_SOCKET, SO_SNDTIMEO, &time, sizeof(time));
}

status_t connectTo(const std::string& path, uint32_t timeoutMs, unique_fd* socket) {
    *socket = newSocket();
    if (!socket->ok()) return -errno;
    setTimeouts(socket->get(), timeoutMs);
    Address address(path);
    int result;
    do {
        result = connect(socket->get(), address.get(), address.size());
    } while (result < 0 && errno == EINTR);
    return result < 0 ? -errno : OK;
}

status_t listenAt(const std::string& path, unique_fd* socket) {
    *socket = newSocket();
    if (!socket->ok()) return -errno;
    Address address(path);
    if (bind(socket->get(), address.get(), address.size()) < 0 || chmod(path.c_str(), 0600) < 0 ||
        listen(socket->get(), kBacklog) < 0) {
        return -errno;
    }
    return OK;
}

bool peerIsTrusted(int socket, pid_t* pid, uid_t* uid) {
    ucred credentials = {};
    socklen_t size = sizeof(credentials);
    if (getsockopt(socket, SOL_SOCKET, SO_PEERCRED, &credentials, &size) < 0) return false;
    *pid = credentials.pid;
    *uid = credentials.uid;
    return credentials.uid == geteuid() || credentials.uid == 0;
}

bool hasHungUp(int socket) {
    char byte;
    ssize_t size = recv(socket, &byte, sizeof(byte), MSG_PEEK | MSG_DONTWAIT);
    return size == 0 || (size < 0 && errno != EAGAIN && errno != EINTR);
}

SendPatience::~SendPatience() {
    if (mSocket >= 0) setsockopt(mSocket, SOL_SOCKET, SO_SNDTIMEO, &mBefore, sizeof(mBefore));
}

bool SendPatience::waitOn(int socket) {
    using std::chrono::microseconds;
    const auto now = std::chrono::steady_clock::now();
    if (mSocket < 0) {
        mSocket = socket;
        socklen_t size = sizeof(mBefore);
        getsockopt(socket, SOL_SOCKET, SO_SNDTIMEO, &mBefore, &size);
        mEnd = now + std::chrono::milliseconds(mMilliseconds);
        if (!*mOutside) mOutside->emplace();
    }
    const auto left = std::chrono::duration_cast<microseconds>(mEnd - now).count();
    if (left <= 0) return false;
    timeval time = {};
    time.tv_sec = static_cast<time_t>(left / 1000000);
    time.tv_usec = static_cast<suseconds_t>(left % 1000000);
    setsockopt(socket, SOL_SOCKET, SO_SNDTIMEO, &time, sizeof(time));
    return true;
}

status_t sendMessage(int socket, const Encoded& encoded, Patience* patience, Wait wait) {
    const int atFirst = wait == Wait::kTryFirst ? MSG_DONTWAIT : 0;
    int flags = atFirst;
    if (encoded.vectorCount == 1 && encoded.size <= kPacketSize && encoded.descriptors.empty()) {
        while (sendPacket(socket, encoded.vectors[0], flags) < 0) {
            status_t status = afterFailure(socket, patience);
            if (status != OK) return status;
            flags = 0;
        }
        return OK;
    }
    alignas(cmsghdr) char control[CMSG_SPACE(kMaxDescriptors * sizeof(int))];
    iovec part[kMaxVectors];
    size_t vector = 0;
    size_t offset = 0;
    size_t left = encoded.size;
    bool first = true;
    while (left > 0) {
        msghdr message = {};
        size_t room = std::min(left, kPacketSize);
        size_t used = 0;
        while (room > 0 && used < kMaxVectors) {
            const iovec& source = encoded.vectors[vector];
            size_t size = std::min(source.iov_len - offset, room);
            part[used++] = {static_cast<char*>(source.iov_base) + offset, size};
            room -= size;
            left -= size;
            offset += size;
            if (offset == source.iov_len) {
                ++vector;
                offset = 0;
            }
        }
        message.msg_iov = part;
        message.msg_iovlen = used;
        if (first && !encoded.descriptors.empty()) {
            size_t bytes = encoded.descriptors.size() * sizeof(int);
            message.msg_control = control;
            message.msg_controllen = CMSG_SPACE(bytes);
            cmsghdr* rights = CMSG_FIRSTHDR(&message);
            rights->cmsg_level = SOL_SOCKET;
            rights->cmsg_type = SCM_RIGHTS;
            rights->cmsg_len = CMSG_LEN(bytes);
            memcpy(CMSG_DATA(rights), encoded.descriptors.data(), bytes);
        }
        first = false;
        flags = atFirst;
        while (sendPacket(socket, &message, flags) < 0) {
            status_t status = afterFailure(socket, patience);
            if (status != OK) return status;
            flags = 0;
        }
    }
    return OK;
}

namespace {

/**
 * What messages of which not all packets have come may hold in this process beside a packet each.
 * Each may have as much as it leaves to others, so that many cannot keep out one more.
 */
constexpr size_t kMaxPartial = 64 * 1024 * 1024;
std::atomic<size_t> gPartial{0};
[[maybe_unused]] const bool sForgets = [] {
    onFork([] { gPartial = 0; });  // the parent's threads receive on in the parent
    return true;
}();

}  // namespace

bool Arrival::grow(Block* block, size_t size) {
    if (block->size + size <= block->capacity) return true;
    // Memory grows with what has come, not with what was announced.
    const auto wanted = static_cast<size_t>(std::min<uint64_t>(
            mTotal, std::max<uint64_t>(block->size + size, uint64_t{block->capacity} * 4)));
    const size_t more = wanted - kPacketSize - mCharged;
    const size_t partial = gPartial.fetch_add(more) + more;
    mCharged += more;
    if (partial + mCharged <= kMaxPartial && block->reserve(wanted)) return true;
    block->shrink();
    gPartial -= mCharged;
    mCharged = 0;
    return false;
}

void Arrival::reset() {
    gPartial -= mCharged;
    mTotal = mReceived = 0;
    mCharged = 0;
    mLacking = mRefused = false;
}

status_t Arrival::receive(int socket, Block* block, int flags) {
    alignas(cmsghdr) char control[CMSG_SPACE(kMaxDescriptors * sizeof(int))];
    const bool first = mReceived == 0;
    if (first) block->size = 0;
    size_t room = first ? kPacketSize
                        : static_cast<size_t>(std::min<uint64_t>(kPacketSize, mTotal - mReceived));
    if (!first && !mRefused && !grow(block, room)) mRefused = true;
    uint8_t ignored;
    iovec part = {block->bytes + block->size, room};
    if (mRefused) part = {&ignored, sizeof(ignored)};
    msghdr message = {};
    message.msg_iov = &part;
    message.msg_iovlen = 1;
    message.msg_control = control;
    message.msg_controllen = sizeof(control);
    ssize_t received;
    do {
        received = receivePacket(socket, &message, mRefused ? flags | MSG_TRUNC : flags);
        // What the other end has sent before its end is still there.
    } while (received < 0 && (errno == EINTR || errno == ECONNRESET));
    if (received < 0) {
        if (errno == EAGAIN) return android::WOULD_BLOCK;
        return afterFailure(socket, nullptr);
    }
    if (message.msg_controllen != 0) collectDescriptors(&message, block);
    if (received == 0) return DEAD_OBJECT;
    const auto size = static_cast<size_t>(received);
    if (size > room || (!mRefused && (message.msg_flags & MSG_TRUNC) != 0)) return BAD_VALUE;
    // There is space for as many as the kernel lets through: this process can have no more.
    if ((message.msg_flags & MSG_CTRUNC) != 0) mLacking = true;
    if (first) {
        MessageHeader header;
        if (size < sizeof(header)) return BAD_VALUE;
        memcpy(&header, block->bytes, sizeof(header));
        mTotal = Codec::messageSize(header);
        if (header.magic != kMagic || mTotal == 0 || size > mTotal) return BAD_VALUE;
        if (!mLacking && header.descriptorCount != block->descriptors.size()) return BAD_VALUE;
    } else if (message.msg_controllen != 0) {
        return BAD_VALUE;
    }
    mReceived += size;
    if (!mRefused) block->size += size;
    if (mReceived < mTotal) return android::NOT_ENOUGH_DATA;
    const status_t status = mLacking ? -EMFILE : mRefused ? NO_MEMORY : OK;
    reset();
    return status;
}

status_t receiveMessage(int socket, Block* block, Patience* patience) {
    Arrival arrival;
    for (;;) {
        const status_t status = arrival.receive(socket, block, 0);
        if (status == android::NOT_ENOUGH_DATA) continue;
        if (status != android::WOULD_BLOCK) return status;
        if (patience == nullptr || !patience->waitOn(socket)) return TIMED_OUT;
    }
}

status_t receiveFromClient(int socket, Block* block) {
    using Clock = std::chrono::steady_clock;
    Arrival arrival;
    Clock::time_point end;
    for (;;) {
        const bool partial = arrival.partial();
        if (partial && Clock::now() > end) return TIMED_OUT;
        const status_t status = arrival.receive(socket, block, 0);
        if (status == android::WOULD_BLOCK) {
            if (partial) return TIMED_OUT;
        } else if (status != android::NOT_ENOUGH_DATA) {
            return status;
        } else if (!partial) {
            end = Clock::now() + std::chrono::milliseconds(kClientMs);
        }
    }
}

bool sendReceived(int socket) {
    MessageHeader header = {};
    header.kind = kReceived;
    Encoded encoded;
    Codec::encodePlain(&header, nullptr, 0, &encoded);
    return sendMessage(socket, encoded, nullptr) == OK;
}

bool sendStatus(int socket, status_t status, uint32_t flags) {
    MessageHeader header = {};
    header.kind = kReply;
    header.code = static_cast<uint32_t>(status);
    header.flags = flags;
    Encoded encoded;
    Codec::encodePlain(&header, nullptr, 0, &encoded);
    return sendMessage(socket, encoded, nullptr, Wait::kTryFirst) == OK;
}

}  // namespace hidlhost
