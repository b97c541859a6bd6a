#pragma once

#include <android-base/unique_fd.h>
#include <sys/types.h>

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <list>
#include <memory>
#include <mutex>
#include <string>
#include <thread>

#include "transactions.h"

namespace qeltvd {

/**
 * Sends a line of JSON for every call and notification to programs of the same user that are
 * connected to a socket. A program that does not read loses whole lines, and is sent their number.
 * One thread serves all of them. While there is none a call costs the load of active().
 */
class Monitor {
  public:
    static constexpr char kSocket[] = "qeltvd-monitor";
    /** Programs at a time. */
    static constexpr size_t kClientLimit = 8;
    /** What waits for one of them. */
    static constexpr size_t kQueueLimit = 4096;
    static constexpr size_t kQueueBytes = size_t{8} << 20;

    /** @param directory of the socket; without one, or if it cannot be made, nobody connects */
    explicit Monitor(const std::string& directory);
    ~Monitor();
    Monitor(const Monitor&) = delete;
    Monitor& operator=(const Monitor&) = delete;

    /** Whether a program is connected. */
    bool active() const { return mActive.load(std::memory_order_relaxed); }

    /**
     * Removes the socket and ends the connections; sends what waits as far as the programs take it
     * at once. Lines that are sent afterwards go nowhere.
     */
    void close();

    /** Queues a line. */
    void send(const transactions::Json& line);

  private:
    struct Client;

    bool listen(const std::string& path);
    void run();
    void accept();
    /** Writes what the program takes; false if it is gone. */
    bool write(Client& client);
    void wake() const;

    std::atomic<bool> mActive{false};
    std::string mPath;
    dev_t mDevice = 0;
    ino_t mInode = 0;
    android::base::unique_fd mListener;
    android::base::unique_fd mWake;
    std::mutex mLock;
    // Guarded by mLock; only the thread adds and removes.
    std::list<Client> mClients;
    bool mEnding = false;
    std::thread mThread;
};

}  // namespace qeltvd
