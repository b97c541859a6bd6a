#define LOG_TAG "qeltvd"

#include "PacketSockets.h"

#include <errno.h>
#include <log/log.h>
#include <poll.h>
#include <sys/eventfd.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstring>
#include <utility>

#include "Guarded.h"
#include "LogText.h"

namespace qeltvd {

namespace {

constexpr const char* kNames[] = {"/qeltvd-main.ts", "/qeltvd-sub.ts"};
/** How often packets go on. */
constexpr int kTurnMs = 20;
/** How long no connection is accepted when the process has no descriptor for it. */
constexpr int kPauseMs = 200;
constexpr int kBacklog = 8;
constexpr int64_t kBlock = 512 * int64_t{stream::kPacketSize};

bool isSocket(const std::string& path) {
    struct stat info {};
    return lstat(path.c_str(), &info) == 0 && S_ISSOCK(info.st_mode);
}

}  // namespace

PacketSockets::PacketSockets(const std::string& directory)
        : mWake(eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK)) {
    if (directory.empty() || !mWake) return;
    for (size_t path = 0; path < mListeners.size(); ++path) {
        listen(directory + kNames[path], &mListeners[path]);
    }
    mThread = std::thread([this] { run(); });
}

PacketSockets::~PacketSockets() {
    if (!mThread.joinable()) return;
    {
        std::lock_guard<std::mutex> guard(mLock);
        mEnds = true;
    }
    wake();
    mThread.join();
    for (const Listener& listener : mListeners) {
        struct stat info {};
        const bool ours = listener.socket && lstat(listener.path.c_str(), &info) == 0 &&
                          info.st_dev == listener.device && info.st_ino == listener.file;
        if (ours) unlink(listener.path.c_str());
    }
}

void PacketSockets::listen(const std::string& path, Listener* listener) {
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    if (path.size() >= sizeof(address.sun_path)) {
        ALOGW("no packets at %s: the path is too long for a socket; use a shorter runtime "
              "directory",
              logText(path).c_str());
        return;
    }
    memcpy(address.sun_path, path.c_str(), path.size());
    // A television that was killed leaves its socket.
    if (isSocket(path)) unlink(path.c_str());
    Descriptor socket(::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0));
    struct stat info {};
    // Nobody can connect before listen().
    if (!socket ||
        bind(socket.get(), reinterpret_cast<sockaddr*>(&address), sizeof(address)) != 0 ||
        chmod(path.c_str(), 0600) != 0 || lstat(path.c_str(), &info) != 0 ||
        ::listen(socket.get(), kBacklog) != 0) {
        ALOGW("no packets at %s: %s", logText(path).c_str(), strerror(errno));
        return;
    }
    *listener = {path, std::move(socket), info.st_dev, info.st_ino};
}

void PacketSockets::show(uint32_t path, Service service) {
    {
        std::lock_guard<std::mutex> guard(mLock);
        if (!service && !mShown[path].service) return;
        mShown[path].service = std::move(service);
        ++mShown[path].turn;
    }
    wake();
}

void PacketSockets::wake() {
    const uint64_t one = 1;
    // A counter that is full wakes as well.
    if (write(mWake.get(), &one, sizeof(one)) < 0) return;
}

void PacketSockets::run() {
    for (;;) {
        guarded("the packet sockets", [&] { wait(); });
        std::array<uint64_t, QELTV_PATHS> turns{};
        {
            std::lock_guard<std::mutex> guard(mLock);
            if (mEnds) break;
            for (size_t path = 0; path < turns.size(); ++path) turns[path] = mShown[path].turn;
        }
        for (Client& client : mClients) {
            client.gone |= client.turn != turns[client.path];
            if (!client.gone) guarded("a packet socket", [&] { client.send(); });
        }
        mClients.remove_if([](const Client& client) { return client.gone; });
    }
    mClients.clear();
}

void PacketSockets::wait() {
    std::vector<pollfd> polled{{mWake.get(), POLLIN, 0}};
    for (const Listener& listener : mListeners) {
        // poll() ignores a negative descriptor.
        polled.push_back({mExhausted ? -1 : listener.socket.get(), POLLIN, 0});
    }
    for (const Client& client : mClients) {
        const int events = (client.mute ? 0 : POLLIN) | (client.waits() ? POLLOUT : 0);
        polled.push_back({client.socket.get(), static_cast<short>(events), 0});
    }
    const int timeout = mExhausted ? kPauseMs : mClients.empty() ? -1 : kTurnMs;
    mExhausted = false;
    if (poll(polled.data(), polled.size(), timeout) <= 0) return;
    uint64_t count = 0;
    if (polled[0].revents != 0 && read(mWake.get(), &count, sizeof(count)) < 0 && errno != EAGAIN) {
        ALOGW("the packet sockets: %s", strerror(errno));
    }
    size_t next = 1 + mListeners.size();
    for (Client& client : mClients) {
        const short events = polled[next++].revents;
        if ((events & POLLIN) != 0) client.receive();
        if ((events & (POLLHUP | POLLERR)) != 0) client.gone = true;
    }
    for (uint32_t path = 0; path < mListeners.size(); ++path) {
        if ((polled[1 + path].revents & POLLIN) != 0) accept(path);
    }
}

void PacketSockets::accept(uint32_t path) {
    Descriptor socket(::accept4(mListeners[path].socket.get(), nullptr, nullptr,
                                SOCK_CLOEXEC | SOCK_NONBLOCK));
    if (!socket) {
        mExhausted = errno == EMFILE || errno == ENFILE || errno == ENOBUFS || errno == ENOMEM;
        return;
    }
    const auto clients = std::count_if(mClients.begin(), mClients.end(), [&](const Client& client) {
        return client.path == path && !client.gone;
    });
    if (static_cast<size_t>(clients) >= kClientLimit) return;
    Shown shown;
    {
        std::lock_guard<std::mutex> guard(mLock);
        shown = mShown[path];
    }
    auto packets = shown.service ? shown.service() : nullptr;
    if (!packets) return;
    Client& client = mClients.emplace_back();
    client.path = path;
    client.turn = shown.turn;
    client.socket = std::move(socket);
    client.packets = std::move(packets);
}

/** What a client sends is ignored. */
void PacketSockets::Client::receive() {
    char ignored[4096];
    const ssize_t size = recv(socket.get(), ignored, sizeof(ignored), 0);
    if (size == 0) mute = true;
    if (size < 0 && errno != EAGAIN && errno != EINTR) gone = true;
}

void PacketSockets::Client::send() {
    for (;;) {
        if (!waits()) {
            const int64_t arrived = packets->arrived(std::chrono::milliseconds(0));
            pending.resize(static_cast<size_t>(std::min(arrived - read, kBlock)));
            pending.resize(packets->read(pending.data(), pending.size()));
            read += static_cast<int64_t>(pending.size());
            sent = 0;
            if (pending.empty()) return;
        }
        const ssize_t size = ::send(socket.get(), pending.data() + sent, pending.size() - sent,
                                    MSG_NOSIGNAL | MSG_DONTWAIT);
        if (size < 0) {
            gone = errno != EAGAIN && errno != EINTR;
            return;
        }
        sent += static_cast<size_t>(size);
    }
}

}  // namespace qeltvd
