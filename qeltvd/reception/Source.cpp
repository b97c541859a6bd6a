#include "Source.h"

#include <arpa/inet.h>
#include <errno.h>
#include <fcntl.h>
#include <ifaddrs.h>
#include <net/if.h>
#include <netinet/in.h>
#include <poll.h>
#include <signal.h>
#include <spawn.h>
#include <sys/eventfd.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cstring>
#include <optional>
#include <stdexcept>
#include <vector>

#include "Files.h"
#include "PacketAligner.h"

namespace qeltvd::stream {

namespace {

using Clock = std::chrono::steady_clock;
using std::chrono::milliseconds;

constexpr size_t kReadSize = 256 * kPacketSize;

/** The base of all sources: their packets, and how they are interrupted. */
class AnySource : public Source {
  public:
    explicit AnySource(std::string name)
            : mName(std::move(name)), mInterrupted(eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK)) {
        if (!mInterrupted) throw std::runtime_error(mName + ": " + strerror(errno));
    }

    void interrupt() override {
        const uint64_t one = 1;
        // The counter of the event cannot be full.
        if (write(mInterrupted.get(), &one, sizeof(one)) < 0) return;
    }
    std::string reason() const override { return mReason; }

  protected:
    /** Waits until a descriptor can be read; -1 waits for an interruption only. */
    enum class Wait { kReady, kTimeout, kInterrupted };
    Wait wait(int descriptor, Clock::time_point until) const {
        for (;;) {
            pollfd polled[2] = {{mInterrupted.get(), POLLIN, 0}, {descriptor, POLLIN, 0}};
            const auto left = std::chrono::ceil<milliseconds>(until - Clock::now());
            const int timeout = static_cast<int>(std::clamp<int64_t>(left.count(), 0, 60000));
            const int ready = poll(polled, descriptor < 0 ? 1 : 2, timeout);
            if (ready < 0 && errno == EINTR) continue;
            if (ready < 0) return Wait::kInterrupted;
            if (polled[0].revents != 0) return Wait::kInterrupted;
            if (descriptor >= 0 && polled[1].revents != 0) return Wait::kReady;
            if (Clock::now() >= until) return Wait::kTimeout;
        }
    }

    State fail(const std::string& reason) {
        mReason = mName + ": " + reason;
        mEnded = State::kError;
        return State::kError;
    }
    State end(const std::string& reason) {
        mReason = mName + ": " + reason;
        mEnded = State::kEnd;
        return State::kEnd;
    }

    const std::string mName;
    const Descriptor mInterrupted;
    PacketAligner mAligner;
    std::vector<uint8_t> mPackets;
    bool mDiscontinuity = false;
    std::optional<State> mEnded;

  private:
    std::string mReason;
};

class FileSource : public AnySource {
  public:
    FileSource(const std::string& name, const std::string& directory, const SourceOptions& options)
            : AnySource(name), mOptions(options) {
        const bool absolute = !name.empty() && name[0] == '/';
        const Descriptor base = openDirectory(absolute ? "/" : directory);
        if (!base) throw std::runtime_error(directory + ": " + strerror(errno));
        mFile = openFile(base.get(), absolute ? name.substr(1) : name, O_RDONLY);
        if (!mFile) {
            throw std::runtime_error(name + (errno == EINVAL
                                                     ? ": is no regular file"
                                                     : ": " + std::string(strerror(errno))));
        }
    }

    State read(Batch* batch, milliseconds timeout) override {
        if (mEnded) return *mEnded;
        const Clock::time_point until = Clock::now() + timeout;
        while (mReleased >= mPackets.size()) {
            if (wait(-1, Clock::now()) == Wait::kInterrupted) return end("interrupted");
            if (const auto state = fill()) return *state;
        }
        if (!mUpTo) chooseBatch();
        if (mOptions.paced && mDue) {
            switch (wait(-1, std::min(*mDue, until))) {
                case Wait::kInterrupted:
                    return end("interrupted");
                default:
                    if (Clock::now() < *mDue) return State::kSilence;
            }
        }
        batch->packets = mPackets.data() + mReleased;
        batch->count = (*mUpTo - mReleased) / kPacketSize;
        batch->discontinuity = mDiscontinuity;
        mDiscontinuity = false;
        mReleased = *mUpTo;
        mUpTo.reset();
        mDue.reset();
        return State::kPackets;
    }

  private:
    /** Reads the next packets; a state where there are none. */
    std::optional<State> fill() {
        mPackets.clear();
        mReleased = 0;
        uint8_t bytes[kReadSize];
        const ssize_t size = ::read(mFile.get(), bytes, sizeof(bytes));
        if (size < 0 && errno == EINTR) return std::nullopt;
        if (size < 0) return fail(strerror(errno));
        if (size > 0) {
            if (mAligner.push(bytes, static_cast<size_t>(size), &mPackets)) mDiscontinuity = true;
        } else {
            if (mAligner.finish(&mPackets)) mDiscontinuity = true;
            if (mPackets.empty() && !mAny) return fail("is no transport stream");
            mAtEnd = true;
        }
        if (!mPackets.empty()) {
            mAny = true;
            return std::nullopt;
        }
        mWithout += static_cast<size_t>(size);
        if (!mAny && mWithout > kLongestWithout) return fail("is no transport stream");
        if (!mAtEnd) return std::nullopt;
        if (!mOptions.loop) return end("is at its end");
        if (lseek(mFile.get(), 0, SEEK_SET) != 0) return fail(strerror(errno));
        mAligner.reset();
        mAtEnd = false;
        mAny = false;
        mWithout = 0;
        mDiscontinuity = true;
        mReference.reset();
        return std::nullopt;
    }

    /** The packets up to the next clock reference, and when they are due. */
    void chooseBatch() {
        mUpTo = mPackets.size();
        if (!mOptions.paced) return;
        for (size_t at = mReleased; at < mPackets.size(); at += kPacketSize) {
            const uint8_t* packet = mPackets.data() + at;
            const auto reference = clockReference(packet);
            if (!reference) continue;
            if (!mReference) mReference = pidOf(packet);
            if (*mReference != pidOf(packet)) continue;
            mUpTo = at + kPacketSize;
            const uint64_t before = mElapsed.elapsed();
            const bool continues = mElapsed.add(*reference);
            const Clock::time_point now = Clock::now();
            // A clock that was set, or a machine that was asleep: the pace begins anew.
            if (!continues || mPace + kLatest < now) {
                mPace = now;
            } else {
                mPace += std::chrono::nanoseconds((mElapsed.elapsed() - before) * 1000 / 27);
            }
            mDue = mPace;
            return;
        }
        if (mReference) return;
        // Without references, as fast as a multiplex of cable.
        const Clock::time_point now = Clock::now();
        mPace = std::max(mPace, now - kLatest) +
                std::chrono::microseconds((*mUpTo - mReleased) * 8 / kMegabitsWithoutClock);
        mDue = mPace;
    }

    static constexpr milliseconds kLatest{1000};
    static constexpr size_t kLongestWithout = 4 << 20;
    static constexpr int64_t kMegabitsWithoutClock = 38;

    const SourceOptions mOptions;
    Descriptor mFile;
    /** Whether there were packets since the begin, and how many bytes without. */
    bool mAny = false;
    size_t mWithout = 0;
    bool mAtEnd = false;
    /** Bytes of mPackets that were given, and those that are given next. */
    size_t mReleased = 0;
    std::optional<size_t> mUpTo;
    std::optional<Clock::time_point> mDue;
    /** The PID whose references pace. */
    std::optional<uint16_t> mReference;
    ElapsedClock mElapsed;
    Clock::time_point mPace{};
};

/** The parts of INTERFACE@ADDRESS:PORT. */
struct Endpoint {
    int family() const { return address.ss_family; }
    socklen_t size() const {
        return family() == AF_INET6 ? sizeof(sockaddr_in6) : sizeof(sockaddr_in);
    }

    sockaddr_storage address{};
    bool multicast = false;
    /** Of a multicast; 0 and zeros for any. */
    unsigned interface = 0;
    in_addr interfaceAddress{};
};

/** The number of the interface with an address; 0 for none. */
unsigned interfaceWith(const in6_addr& address) {
    ifaddrs* all = nullptr;
    if (getifaddrs(&all) != 0) return 0;
    unsigned found = 0;
    for (const ifaddrs* each = all; each != nullptr && found == 0; each = each->ifa_next) {
        if (each->ifa_addr == nullptr || each->ifa_addr->sa_family != AF_INET6) continue;
        const auto* own = reinterpret_cast<const sockaddr_in6*>(each->ifa_addr);
        if (memcmp(&own->sin6_addr, &address, sizeof(address)) == 0) {
            found = if_nametoindex(each->ifa_name);
        }
    }
    freeifaddrs(all);
    return found;
}

Endpoint endpointOf(const std::string& text, const std::string& part) {
    const auto refuse = [&](const char* why) {
        throw std::runtime_error(text + ": " + why +
                                 "; write udp://@239.1.1.1:1234 or udp://@[ff15::1]:1234");
    };
    const auto unbracketed = [](const std::string& address) {
        const bool inside = address.size() > 2 && address.front() == '[' && address.back() == ']';
        return inside ? address.substr(1, address.size() - 2) : std::string();
    };
    const size_t at = part.find('@'), colon = part.rfind(':');
    const size_t begin = at == std::string::npos ? 0 : at + 1;
    const size_t close = part.rfind(']');
    const bool closed = close == std::string::npos || colon > close;
    if (colon == std::string::npos || colon < begin || !closed) refuse("has no port");
    std::string interface = at == std::string::npos ? "" : part.substr(0, at);
    const std::string address = part.substr(begin, colon - begin), port = part.substr(colon + 1);
    const bool digits =
            !port.empty() && port.size() <= 5 &&
            std::all_of(port.begin(), port.end(), [](char c) { return c >= '0' && c <= '9'; });
    const int number = digits ? std::stoi(port) : 0;
    if (number < 1 || number > 0xffff) refuse("has no valid port");

    Endpoint endpoint;
    auto& four = reinterpret_cast<sockaddr_in&>(endpoint.address);
    auto& six = reinterpret_cast<sockaddr_in6&>(endpoint.address);
    std::string bare = unbracketed(address);
    if (bare.empty()) {
        four.sin_family = AF_INET;
        four.sin_port = htons(static_cast<uint16_t>(number));
        if (!address.empty() && inet_pton(AF_INET, address.c_str(), &four.sin_addr) != 1) {
            refuse("has no IPv4 address and no IPv6 address in brackets");
        }
        endpoint.multicast = IN_MULTICAST(ntohl(four.sin_addr.s_addr));
    } else {
        six.sin6_family = AF_INET6;
        six.sin6_port = htons(static_cast<uint16_t>(number));
        // A zone names the interface, as that before the address does.
        if (const size_t zone = bare.find('%'); zone != std::string::npos) {
            if (interface.empty()) interface = bare.substr(zone + 1);
            bare.resize(zone);
        }
        if (inet_pton(AF_INET6, bare.c_str(), &six.sin6_addr) != 1) {
            refuse("has no valid IPv6 address");
        }
        endpoint.multicast = IN6_IS_ADDR_MULTICAST(&six.sin6_addr);
    }
    if (interface.empty()) return endpoint;
    in6_addr sixInterface{};
    if (inet_pton(AF_INET6, unbracketed(interface).c_str(), &sixInterface) == 1) {
        endpoint.interface = interfaceWith(sixInterface);
    } else if (inet_pton(AF_INET, interface.c_str(), &endpoint.interfaceAddress) == 1) {
        if (endpoint.family() == AF_INET) return endpoint;
    } else {
        endpoint.interface = if_nametoindex(interface.c_str());
    }
    if (endpoint.interface == 0) {
        refuse("has an interface that is none of this machine");
    }
    if (endpoint.family() == AF_INET6) six.sin6_scope_id = endpoint.interface;
    return endpoint;
}

/** A source whose packets come when they come. */
class LiveSource : public AnySource {
  public:
    using AnySource::AnySource;

    State read(Batch* batch, milliseconds timeout) override {
        if (mEnded) return *mEnded;
        mPackets.clear();
        const Clock::time_point until = Clock::now() + timeout;
        while (mPackets.empty()) {
            switch (wait(mInput.get(), until)) {
                case Wait::kInterrupted:
                    return end("interrupted");
                case Wait::kTimeout:
                    return State::kSilence;
                case Wait::kReady:
                    break;
            }
            if (const auto state = receive()) return *state;
        }
        batch->packets = mPackets.data();
        batch->count = mPackets.size() / kPacketSize;
        batch->discontinuity = mDiscontinuity;
        mDiscontinuity = false;
        return State::kPackets;
    }

  protected:
    /** Takes what is there, which may be no whole packet; a state if nothing more comes. */
    virtual std::optional<State> receive() = 0;

    /** Does not block. */
    Descriptor mInput;
};

class SocketSource : public LiveSource {
  public:
    SocketSource(const std::string& text, const std::string& part, bool rtp)
            : LiveSource(text), mRtp(rtp) {
        const Endpoint endpoint = endpointOf(text, part);
        mInput =
                Descriptor(socket(endpoint.family(), SOCK_DGRAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0));
        if (!mInput) refuse();
        const int on = 1, buffer = 2 << 20;
        // Several televisions of a machine may receive the same multicast.
        if (endpoint.multicast) {
            setsockopt(mInput.get(), SOL_SOCKET, SO_REUSEADDR, &on, sizeof(on));
        }
        setsockopt(mInput.get(), SOL_SOCKET, SO_RCVBUF, &buffer, sizeof(buffer));
        if (bind(mInput.get(), reinterpret_cast<const sockaddr*>(&endpoint.address),
                 endpoint.size()) != 0) {
            refuse();
        }
        if (endpoint.multicast && !join(endpoint)) refuse();
    }

  private:
    [[noreturn]] void refuse() const { throw std::runtime_error(mName + ": " + strerror(errno)); }

    bool join(const Endpoint& endpoint) const {
        if (endpoint.family() == AF_INET6) {
            ipv6_mreq group{};
            group.ipv6mr_multiaddr =
                    reinterpret_cast<const sockaddr_in6&>(endpoint.address).sin6_addr;
            group.ipv6mr_interface = endpoint.interface;
            return setsockopt(mInput.get(), IPPROTO_IPV6, IPV6_JOIN_GROUP, &group, sizeof(group)) ==
                   0;
        }
        ip_mreqn group{};
        group.imr_multiaddr = reinterpret_cast<const sockaddr_in&>(endpoint.address).sin_addr;
        group.imr_address = endpoint.interfaceAddress;
        group.imr_ifindex = static_cast<int>(endpoint.interface);
        return setsockopt(mInput.get(), IPPROTO_IP, IP_ADD_MEMBERSHIP, &group, sizeof(group)) == 0;
    }

    std::optional<State> receive() override {
        // Some more come meanwhile, which costs less than to wake up for each.
        if (wait(-1, Clock::now() + kGather) == Wait::kInterrupted) return end("interrupted");
        uint8_t datagram[0x10000];
        while (mPackets.size() < kReadSize) {
            const ssize_t size = recv(mInput.get(), datagram, sizeof(datagram), 0);
            if (size < 0 && (errno == EAGAIN || errno == EINTR)) break;
            if (size < 0) return fail(strerror(errno));
            const uint8_t* payload = datagram;
            auto left = static_cast<size_t>(size);
            if (mRtp && !openRtp(&payload, &left)) continue;
            // Each datagram begins with a packet.
            if (mAligner.push(payload, left, &mPackets)) mDiscontinuity = true;
        }
        return std::nullopt;
    }

    /** Takes the header off; false for what is no packet of the stream. */
    bool openRtp(const uint8_t** payload, size_t* left) {
        constexpr size_t kHeader = 12;
        const uint8_t* bytes = *payload;
        if (*left < kHeader || bytes[0] >> 6 != 2) return false;
        size_t begin = kHeader + (bytes[0] & 0x0f) * size_t{4};
        if ((bytes[0] & 0x10) != 0) {
            if (*left < begin + 4) return false;
            begin += 4 + static_cast<size_t>(bytes[begin + 2] << 8 | bytes[begin + 3]) * 4;
        }
        size_t end = *left;
        if ((bytes[0] & 0x20) != 0) end -= std::min<size_t>(end, bytes[end - 1]);
        if (begin > end) return false;
        const auto sequence = static_cast<uint16_t>(bytes[2] << 8 | bytes[3]);
        if (mSequence) {
            const auto step = static_cast<uint16_t>(sequence - *mSequence);
            // A repeated or late one.
            if (step == 0 || step > 0xff00) return false;
            if (step != 1) mDiscontinuity = true;
        }
        mSequence = sequence;
        *payload = bytes + begin;
        *left = end - begin;
        return true;
    }

    static constexpr milliseconds kGather{5};

    const bool mRtp;
    std::optional<uint16_t> mSequence;
};

class PipeSource : public LiveSource {
  public:
    PipeSource(const std::string& text, const std::string& command) : LiveSource(text) {
        int ends[2];
        if (pipe2(ends, O_CLOEXEC) != 0) throw std::runtime_error(text + ": " + strerror(errno));
        mInput = Descriptor(ends[0]);
        const Descriptor writing(ends[1]);
        fcntl(mInput.get(), F_SETFL, O_NONBLOCK);

        posix_spawn_file_actions_t actions;
        posix_spawnattr_t attributes;
        posix_spawn_file_actions_init(&actions);
        posix_spawnattr_init(&attributes);
        posix_spawn_file_actions_addopen(&actions, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
        posix_spawn_file_actions_adddup2(&actions, writing.get(), STDOUT_FILENO);
        // A group of its own, so that all of a pipeline ends with it, and the signals of a shell.
        sigset_t defaults, none;
        sigfillset(&defaults);
        sigemptyset(&none);
        posix_spawnattr_setsigdefault(&attributes, &defaults);
        posix_spawnattr_setsigmask(&attributes, &none);
        posix_spawnattr_setpgroup(&attributes, 0);
        posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETPGROUP | POSIX_SPAWN_SETSIGDEF |
                                                      POSIX_SPAWN_SETSIGMASK);
        std::string shell = "sh", option = "-c", line = command;
        char* arguments[] = {shell.data(), option.data(), line.data(), nullptr};
        const int error =
                posix_spawn(&mChild, "/bin/sh", &actions, &attributes, arguments, environ);
        posix_spawn_file_actions_destroy(&actions);
        posix_spawnattr_destroy(&attributes);
        if (error != 0) throw std::runtime_error(text + ": " + strerror(error));
    }

    ~PipeSource() override { reap(false); }

  private:
    std::optional<State> receive() override {
        uint8_t bytes[kReadSize];
        const ssize_t size = ::read(mInput.get(), bytes, sizeof(bytes));
        if (size < 0 && (errno == EAGAIN || errno == EINTR)) return std::nullopt;
        if (size < 0) return fail(strerror(errno));
        if (size > 0) {
            if (mAligner.push(bytes, static_cast<size_t>(size), &mPackets)) mDiscontinuity = true;
            return std::nullopt;
        }
        if (mAligner.finish(&mPackets)) mDiscontinuity = true;
        if (mPackets.empty()) return end(reap(true));
        return std::nullopt;
    }

    /** Ends the command, after a moment for it to end by itself or at once; says how it ended. */
    std::string reap(bool patient) {
        if (mChild <= 0) return "has ended";
        const pid_t child = mChild;
        mChild = -1;
        // A command that closed its output is about to end by itself. It is reaped last, because
        // until then its number stands for its group and for no other.
        siginfo_t info{};
        for (int i = 0; patient && i < 10; ++i) {
            if (waitid(P_PID, static_cast<id_t>(child), &info, WEXITED | WNOHANG | WNOWAIT) != 0 ||
                info.si_pid == child) {
                break;
            }
            poll(nullptr, 0, 10);
        }
        kill(-child, SIGKILL);
        int status = 0;
        pid_t ended = -1;
        do {
            ended = waitpid(child, &status, 0);
        } while (ended < 0 && errno == EINTR);
        if (ended != child) return "has ended";
        if (WIFSIGNALED(status)) return "has ended by signal " + std::to_string(WTERMSIG(status));
        return "has ended with status " + std::to_string(WEXITSTATUS(status));
    }

    pid_t mChild = -1;
};

struct Scheme {
    const char* begin;
    SourceKind kind;
};
/** Any other text is the name of a file. */
constexpr Scheme kSchemes[] = {
        {"udp://", SourceKind::kUdp}, {"rtp://", SourceKind::kRtp}, {"pipe:", SourceKind::kPipe}};

Scheme schemeOf(const std::string& text) {
    for (const Scheme& each : kSchemes) {
        if (text.rfind(each.begin, 0) == 0) return each;
    }
    return {"", SourceKind::kFile};
}

}  // namespace

SourceKind sourceKindOf(const std::string& text) {
    return schemeOf(text).kind;
}

std::unique_ptr<Source> openSource(const std::string& text, const std::string& directory,
                                   const SourceOptions& options) {
    if (text.empty()) throw std::runtime_error("no stream is named");
    const Scheme scheme = schemeOf(text);
    const std::string part = text.substr(strlen(scheme.begin));
    switch (scheme.kind) {
        case SourceKind::kUdp:
        case SourceKind::kRtp:
            return std::make_unique<SocketSource>(text, part, scheme.kind == SourceKind::kRtp);
        case SourceKind::kPipe:
            return std::make_unique<PipeSource>(text, part);
        case SourceKind::kFile:
            break;
    }
    return std::make_unique<FileSource>(text, directory, options);
}

}  // namespace qeltvd::stream
