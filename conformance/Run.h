#pragma once

#include <atomic>
#include <deque>
#include <initializer_list>
#include <memory>
#include <mutex>
#include <set>
#include <string>
#include <vector>

#include "Arguments.h"
#include "Report.h"
#include "Service.h"

namespace conformance {

struct Options {
    std::vector<std::string> interfaces;
    std::vector<std::string> checks;
    uint32_t seed = 1;
    uint32_t seconds = 5;
    bool readOnly = false;
    bool layouts = false;
    bool list = false;
    std::string item = "picture.contrast";
    std::string junit;
};

/** One run: the service, the checks, and what is known so far. */
class Run {
  public:
    Run(Service& service, const Options& options);

    Service& service() { return mService; }
    const Options& options() const { return mOptions; }
    Plausible& plausible() { return mPlausible; }

    Check& check(const std::string& name);
    /** The checks that are to be reported, in order. */
    std::vector<const Check*> reported() const;
    /** Whether one of the checks is to be reported. */
    bool wants(std::initializer_list<const char*> names) const;
    /** Skips the checks that have not found a fault. */
    void skip(std::initializer_list<const char*> names, const std::string& reason);

    /** Whether calls are to be made to a method. */
    bool mayCall(const transactions::Method& method) const;
    /** Whether the service has ended during a check, or hangs in too many methods. */
    bool gone() const { return mGone; }
    /**
     * Examines the service after a call that may have failed in transport. A method that has not
     * answered in time is not called again.
     */
    void lookAfter(const Target& target, const transactions::Method* method,
                   android::status_t status);

  private:
    Service& mService;
    const Options& mOptions;
    Plausible mPlausible;
    std::deque<Check> mChecks;
    std::atomic<bool> mGone{false};
    mutable std::mutex mLock;
    std::set<const transactions::Method*> mHanging;
};

/** Whether a name of --check is that of a check or of its group. */
bool selects(const std::string& word, const CheckInfo& info);

// The groups in the order in which they run.
void checkInterfaces(Run& run);
/** Calls all methods, and examines all replies. */
class Methods {
  public:
    explicit Methods(Run& run);
    ~Methods();

    /** Calls the methods that only read. */
    void read();
    /** Calls the others, then again those that have refused everything so far. */
    void change();
    void finish();

  private:
    class Sweep;
    const std::unique_ptr<Sweep> mSweep;
};

void checkOrdinals(Run& run);
void checkMemory(Run& run);
void checkCallbacks(Run& run);
void checkHostile(Run& run);

}  // namespace conformance
