#include "StateLock.h"

#include <errno.h>
#include <sys/file.h>

#include <chrono>
#include <cstring>
#include <stdexcept>
#include <thread>

namespace qeltvd {

using namespace std::chrono_literals;

StateLock::StateLock(const std::string& directory) : mDirectory(claimDirectory(directory)) {
    const auto deadline = std::chrono::steady_clock::now() + 2s;
    while (flock(mDirectory.get(), LOCK_EX | LOCK_NB) != 0) {
        if (errno != EWOULDBLOCK) {
            throw std::runtime_error(directory + ": cannot be locked: " + strerror(errno));
        }
        if (std::chrono::steady_clock::now() > deadline) {
            throw std::runtime_error(directory +
                                     ": another television uses it; end that one or choose another"
                                     " directory with --state");
        }
        std::this_thread::sleep_for(20ms);
    }
}

}  // namespace qeltvd
