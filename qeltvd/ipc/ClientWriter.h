#pragma once

#include <atomic>
#include <string>

namespace qeltvd {

/**
 * Writes to descriptors of clients, which nobody may read. A write waits for its reader two seconds
 * at most, and a few writes at a time, so that clients cannot take all threads that serve calls.
 */
class ClientWriter {
  public:
    /**
     * Writes to a regular file, a pipe or a socket; to nothing else, because a device can wait
     * without a limit.
     *
     * @return whether all of it was taken; if not, errno has the reason
     */
    bool write(int descriptor, const std::string& text);

  private:
    class Wait;
    std::atomic<int> mWaiting{0};
};

}  // namespace qeltvd
