#include "ClientWriter.h"

#include <errno.h>
#include <fcntl.h>
#include <poll.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <unistd.h>

#include <chrono>

#include "Files.h"

namespace qeltvd {

using namespace std::chrono_literals;
using Clock = std::chrono::steady_clock;

namespace {

constexpr int kWaitingAtATime = 4;
constexpr auto kPatience = 2s;

}  // namespace

/** The time that one write gives its reader. */
class ClientWriter::Wait {
  public:
    Wait(ClientWriter& writer, int descriptor) : mWriter(writer), mDescriptor(descriptor) {}
    ~Wait() {
        if (mCounted) --mWriter.mWaiting;
    }

    /** Until the descriptor takes more; false with errno if that is not worth waiting for. */
    bool more() {
        if (!mCounted && ++mWriter.mWaiting > kWaitingAtATime) {
            --mWriter.mWaiting;
            errno = EBUSY;
            return false;
        }
        mCounted = true;
        pollfd wait{mDescriptor, POLLOUT, 0};
        int ready = 0;
        do {
            const auto left =
                    std::chrono::duration_cast<std::chrono::milliseconds>(mEnd - Clock::now());
            if (left <= 0ms) break;
            ready = poll(&wait, 1, static_cast<int>(left.count()));
        } while (ready < 0 && errno == EINTR);
        if (ready == 0) errno = ETIMEDOUT;
        return ready > 0;
    }

  private:
    ClientWriter& mWriter;
    const int mDescriptor;
    const Clock::time_point mEnd = Clock::now() + kPatience;
    bool mCounted = false;
};

bool ClientWriter::write(int descriptor, const std::string& text) {
    struct stat info {};
    if (fstat(descriptor, &info) != 0) return false;
    if (S_ISREG(info.st_mode)) return writeAll(descriptor, text.data(), text.size());
    const bool socket = S_ISSOCK(info.st_mode);
    if (!socket && !S_ISFIFO(info.st_mode)) {
        errno = ENOTSUP;
        return false;
    }

    // The client controls whether a write to its pipe blocks; a splice that must not never does.
    int ends[2] = {-1, -1};
    if (!socket && pipe2(ends, O_CLOEXEC | O_NONBLOCK) != 0) return false;
    const Descriptor out(ends[0]), in(ends[1]);
    Wait wait(*this, descriptor);
    size_t buffered = 0, done = 0;
    while (done < text.size() || buffered > 0) {
        ssize_t taken = 0;
        if (socket) {
            taken = send(descriptor, text.data() + done, text.size() - done,
                         MSG_DONTWAIT | MSG_NOSIGNAL);
            if (taken > 0) done += static_cast<size_t>(taken);
        } else {
            if (buffered == 0) {
                taken = ::write(in.get(), text.data() + done, text.size() - done);
                if (taken < 0) return false;
                done += static_cast<size_t>(taken);
                buffered = static_cast<size_t>(taken);
            }
            taken = splice(out.get(), nullptr, descriptor, nullptr, buffered, SPLICE_F_NONBLOCK);
            if (taken > 0) buffered -= static_cast<size_t>(taken);
        }
        if (taken >= 0 || errno == EINTR) continue;
        if (errno != EAGAIN || !wait.more()) return false;
    }
    return true;
}

}  // namespace qeltvd
