#define LOG_TAG "qeltvd"

#include "Monitor.h"

#include <log/log.h>
#include <poll.h>
#include <sys/eventfd.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <deque>
#include <system_error>
#include <vector>

#include "Guarded.h"

namespace qeltvd {

using android::base::unique_fd;
using transactions::Json;
using Line = std::shared_ptr<const std::string>;

struct Monitor::Client {
    explicit Client(unique_fd fd) : fd(std::move(fd)) {}

    unique_fd fd;
    std::deque<Line> queue;
    size_t bytes = 0;
    /** Bytes of the first line of the queue that are sent. */
    size_t written = 0;
    uint64_t lost = 0;

    void push(const Line& line) {
        if (queue.size() >= kQueueLimit || bytes + line->size() > kQueueBytes) {
            ++lost;
            return;
        }
        flushLost();
        queue.push_back(line);
        bytes += line->size();
    }

    /** Puts the number of lost lines where they are missing. */
    void flushLost() {
        if (lost == 0) return;
        queue.push_back(std::make_shared<const std::string>(Json{{"lost", lost}}.dump() + "\n"));
        bytes += queue.back()->size();
        lost = 0;
    }
};

Monitor::Monitor(const std::string& directory) {
    if (directory.empty() || !listen(directory + "/" + kSocket)) return;
    mWake.reset(eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK));
    if (!mWake.ok()) {
        ALOGW("calls cannot be monitored: %s", strerror(errno));
        return;
    }
    try {
        mThread = std::thread([this] { run(); });
    } catch (const std::system_error& e) {
        ALOGW("calls cannot be monitored: %s", e.what());
    }
}

Monitor::~Monitor() {
    close();
}

void Monitor::close() {
    {
        std::lock_guard<std::mutex> guard(mLock);
        mEnding = true;
    }
    mActive = false;
    if (mThread.joinable()) {
        wake();
        mThread.join();
    }
    // Another television may have put its own in the same place.
    struct stat file {};
    if (mListener.ok() && lstat(mPath.c_str(), &file) == 0 && file.st_dev == mDevice &&
        file.st_ino == mInode) {
        unlink(mPath.c_str());
    }
    mListener.reset();
    std::lock_guard<std::mutex> guard(mLock);
    for (Client& client : mClients) write(client);
    mClients.clear();
}

bool Monitor::listen(const std::string& path) {
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    if (path.size() >= sizeof(address.sun_path)) {
        ALOGW("calls cannot be monitored: %s is too long for a socket", path.c_str());
        return false;
    }
    memcpy(address.sun_path, path.c_str(), path.size() + 1);
    unique_fd fd(socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0));
    // A socket of a television that was killed, or that this one takes the place of.
    unlink(path.c_str());
    struct stat file {};
    if (!fd.ok() || bind(fd.get(), reinterpret_cast<sockaddr*>(&address), sizeof(address)) != 0 ||
        chmod(path.c_str(), 0600) != 0 || lstat(path.c_str(), &file) != 0 ||
        ::listen(fd.get(), kClientLimit) != 0) {
        ALOGW("calls cannot be monitored: %s: %s", path.c_str(), strerror(errno));
        return false;
    }
    mPath = path;
    mDevice = file.st_dev;
    mInode = file.st_ino;
    mListener = std::move(fd);
    return true;
}

void Monitor::wake() const {
    const uint64_t one = 1;
    (void)!::write(mWake.get(), &one, sizeof(one));
}

void Monitor::send(const Json& line) {
    const auto text = std::make_shared<const std::string>(
            line.dump(-1, ' ', false, Json::error_handler_t::replace) + "\n");
    std::lock_guard<std::mutex> guard(mLock);
    if (mClients.empty()) return;
    for (Client& client : mClients) client.push(text);
    wake();
}

void Monitor::run() {
    for (;;) {
        std::vector<pollfd> watched{{mWake.get(), POLLIN, 0}, {mListener.get(), POLLIN, 0}};
        {
            std::lock_guard<std::mutex> guard(mLock);
            if (mEnding) return;
            for (const Client& client : mClients) {
                const bool waits = !client.queue.empty() || client.lost != 0;
                watched.push_back({client.fd.get(),
                                   static_cast<short>(waits ? POLLIN | POLLOUT : POLLIN), 0});
            }
        }
        if (poll(watched.data(), watched.size(), -1) < 0) continue;
        uint64_t count = 0;
        (void)!read(mWake.get(), &count, sizeof(count));
        guarded("a monitor", [&] {
            std::lock_guard<std::mutex> guard(mLock);
            auto client = mClients.begin();
            for (size_t i = 2; i < watched.size(); ++i) {
                const bool gone = (watched[i].revents & (POLLERR | POLLHUP | POLLIN)) != 0;
                // It sends nothing, so what can be read is its end.
                if (gone || !write(*client)) {
                    client = mClients.erase(client);
                } else {
                    ++client;
                }
            }
            mActive = !mClients.empty() && !mEnding;
            if ((watched[1].revents & POLLIN) != 0) accept();
        });
    }
}

void Monitor::accept() {
    unique_fd fd(accept4(mListener.get(), nullptr, nullptr, SOCK_CLOEXEC | SOCK_NONBLOCK));
    if (!fd.ok()) {
        ALOGW("a monitor cannot connect: %s", strerror(errno));
        // Out of descriptors it would come again at once.
        usleep(10000);
        return;
    }
    ucred peer{};
    socklen_t size = sizeof(peer);
    if (getsockopt(fd.get(), SOL_SOCKET, SO_PEERCRED, &peer, &size) != 0 || peer.uid != geteuid()) {
        ALOGW("a monitor of another user is refused");
        return;
    }
    const bool full = mClients.size() >= kClientLimit;
    const Json greeting = full ? Json{{"error", std::to_string(kClientLimit) +
                                                        " monitors are connected; end one"}}
                               : Json{{"television", getpid()}};
    Client client(std::move(fd));
    client.push(std::make_shared<const std::string>(greeting.dump() + "\n"));
    if (!full) {
        mClients.push_back(std::move(client));
        // Calls that begin once the program has its greeting are seen.
        mActive = true;
        if (!write(mClients.back())) mClients.pop_back();
    } else {
        ALOGW("a monitor is refused, because %zu are connected", mClients.size());
        write(client);
    }
}

bool Monitor::write(Client& client) {
    for (;;) {
        if (client.queue.empty()) client.flushLost();
        if (client.queue.empty()) return true;
        const std::string& line = *client.queue.front();
        const ssize_t size = ::send(client.fd.get(), line.data() + client.written,
                                    line.size() - client.written, MSG_NOSIGNAL | MSG_DONTWAIT);
        if (size < 0) return errno == EAGAIN || errno == EINTR;
        client.written += static_cast<size_t>(size);
        if (client.written < line.size()) continue;
        client.bytes -= line.size();
        client.written = 0;
        client.queue.pop_front();
    }
}

}  // namespace qeltvd
