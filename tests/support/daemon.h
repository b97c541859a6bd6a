/** The reference television as a process of its own, which a test can kill. */
#ifndef TESTS_SUPPORT_DAEMON_H
#define TESTS_SUPPORT_DAEMON_H

#include <sys/types.h>
#include <vendor/qelnova/tv/qeltvapi/1.0/IQelTvApi.h>

#include <memory>
#include <string>
#include <vector>

#include "shortage.h"

namespace wire {

/** What a program printed and how it ended. */
struct Ended {
    int status;
    std::string out;
    std::string err;
};

/** Runs a program to its end, its arguments as given (the first is its path). */
Ended runProgram(const std::vector<std::string>& arguments);

/** As runProgram(), for a program of this build: the first word is its path in the build tree. */
Ended runBuilt(std::vector<std::string> arguments);

/** Runs qeltvctl of this build against the television in this process's runtime directory. */
Ended qeltvctl(std::vector<std::string> arguments);

/** Has the television carry out a control command (see MainService::debug()); its answer. */
std::string controlTelevision(const android::sp<vendor::qelnova::tv::qeltvapi::V1_0::IQelTvApi>& tv,
                              const std::vector<std::string>& words);

/** A directory that goes with the object. */
class TemporaryDirectory {
  public:
    TemporaryDirectory();
    ~TemporaryDirectory();
    const std::string& path() const { return mPath; }

  private:
    std::string mPath;
};

class Daemon {
  public:
    Daemon() = default;
    ~Daemon();

    /**
     * Starts it, with what it has kept from before, and waits until it serves.
     *
     * The television is killed when the calling thread ends.
     *
     * @param options further words of its command line
     */
    void start(const std::vector<std::string>& options = {});
    /** As start(), but does not wait. */
    void launch(const std::vector<std::string>& options = {});
    /** kill -9, and waits until it is gone. */
    void kill();
    /** Sends a signal and waits until it is gone. Returns its exit status, 128 + a signal's. */
    int end(int signal);
    /** Sends its stderr to a file from its next start on. */
    void logTo(const std::string& file) { mLog = file; }
    /** Has it run short of what the state says from its next start on; see shortage.h. */
    ShortageState& useShortage();
    /** Whether it still runs. */
    bool alive() const;
    pid_t pid() const { return mPid; }
    const std::string& statePath() const { return mState.path(); }

  private:
    TemporaryDirectory mState;
    std::unique_ptr<TemporaryDirectory> mControl;
    ShortageState* mShortage = nullptr;
    std::string mLog;
    pid_t mPid = -1;
};

}  // namespace wire

#endif  // TESTS_SUPPORT_DAEMON_H
