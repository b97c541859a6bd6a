/**
 * Stands in for the platform's sleep() and access() as the library calls them. Only in programs
 * that include this once: it defines the two functions for the whole process.
 */
#ifndef TESTS_SUPPORT_PLATFORM_CALLS_H
#define TESTS_SUPPORT_PLATFORM_CALLS_H

#include <sys/syscall.h>
#include <time.h>
#include <unistd.h>

#include <chrono>
#include <condition_variable>
#include <cstring>
#include <mutex>

#include <fcntl.h>

namespace wire {

/** The sleeps of the library: each waits until the test lets it go. */
class Sleeps {
  public:
    static Sleeps& instance() {
        // Never destroyed: a thread may sleep in it at the end of the process.
        static Sleeps& sInstance = *new Sleeps;
        return sInstance;
    }

    /** Sleeps end after 2 ms, from now on or not any more. */
    void letAllGo(bool all) {
        std::lock_guard<std::mutex> guard(mLock);
        mAll = all;
        mChanged.notify_all();
    }
    /** Lets so many sleeps end. */
    void letGo(unsigned int count) {
        std::lock_guard<std::mutex> guard(mLock);
        mAllowed += count;
        mChanged.notify_all();
    }
    /** Waits until so many have begun in all; false after 20 s. */
    bool waitBegun(unsigned int count) {
        std::unique_lock<std::mutex> guard(mLock);
        return mChanged.wait_for(guard, std::chrono::seconds(20), [&] { return mBegun >= count; });
    }
    unsigned int begun() {
        std::lock_guard<std::mutex> guard(mLock);
        return mBegun;
    }
    unsigned int lastSeconds() {
        std::lock_guard<std::mutex> guard(mLock);
        return mSeconds;
    }

    unsigned int sleep(unsigned int seconds) {
        std::unique_lock<std::mutex> guard(mLock);
        mSeconds = seconds;
        ++mBegun;
        mChanged.notify_all();
        mChanged.wait(guard, [&] { return mAll || mAllowed > 0; });
        if (!mAll) {
            --mAllowed;
            return 0;
        }
        guard.unlock();
        // Not at once: the library counts its polls, and at 10000 stops to sleep.
        const timespec pause{0, 2000000};
        nanosleep(&pause, nullptr);
        return 0;
    }

  private:
    std::mutex mLock;
    std::condition_variable mChanged;
    unsigned int mBegun = 0, mAllowed = 0, mSeconds = 0;
    bool mAll = false;
};

/** Whether the debug marker file is there, as the library sees it. */
inline bool sDebugMarker = false;

}  // namespace wire

#pragma GCC visibility push(default)
extern "C" {

unsigned int sleep(unsigned int seconds) {
    return wire::Sleeps::instance().sleep(seconds);
}

int access(const char* path, int mode) noexcept {
    if (strcmp(path, "/data/tvapi_a_hidl_client_debug") == 0 && mode == F_OK) {
        return wire::sDebugMarker ? 0 : -1;
    }
    return static_cast<int>(syscall(SYS_faccessat, AT_FDCWD, path, mode));
}

}  // extern "C"
#pragma GCC visibility pop

#endif  // TESTS_SUPPORT_PLATFORM_CALLS_H
