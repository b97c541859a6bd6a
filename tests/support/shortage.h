/** What a program that a test starts runs short of, from one moment to the next. */
#ifndef TESTS_SUPPORT_SHORTAGE_H
#define TESTS_SUPPORT_SHORTAGE_H

#include <atomic>
#include <cstdint>

namespace wire {

/** Names the file in which the program finds a ShortageState. */
constexpr char kShortageVariable[] = "QELTV_TEST_SHORTAGE";

/** Calls of the database to the system. */
enum FileCall : uint32_t { kFileWrite = 1, kFileSync = 2, kFileCut = 4 };

/** Shared with the program, whose calls of the database and of pthread_create() fail by it. */
struct ShortageState {
    /** How many of a hundred statements fail with an I/O error. */
    std::atomic<uint32_t> storePercent;
    /** Statements that have failed. */
    std::atomic<uint32_t> failedStatements;
    /** The FileCall values that fail for the files of the database. A write leaves half of itself.
     */
    std::atomic<uint32_t> fileCalls;
    /** The errno of a failed file call. */
    std::atomic<int32_t> fileError;
    /** How many more of these calls succeed first. */
    std::atomic<uint32_t> fileGrace;
    /** File calls that have failed. */
    std::atomic<uint32_t> failedFileCalls;
    /** 1: no thread can be made. */
    std::atomic<uint32_t> noThreads;
    /** Threads that were not made. */
    std::atomic<uint32_t> failedThreads;
};
static_assert(std::atomic<uint32_t>::is_always_lock_free);

}  // namespace wire

#endif  // TESTS_SUPPORT_SHORTAGE_H
