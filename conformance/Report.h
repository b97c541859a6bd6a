#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <mutex>
#include <set>
#include <string>
#include <vector>

namespace conformance {

/** A check as it is listed: "group.name", and what a service that passes does. */
struct CheckInfo {
    const char* name;
    const char* text;
};

/** All checks in the order in which they run. */
const std::vector<CheckInfo>& allChecks();

/** The findings of one check. Any thread may call any function. */
class Check {
  public:
    enum class Outcome { kPassed, kFailed, kSkipped };

    explicit Check(const CheckInfo& info) : mInfo(info) {}

    const CheckInfo& info() const { return mInfo; }
    std::string group() const;

    /** Counts something that has been examined. A check that has examined nothing is skipped. */
    void examine(size_t count = 1);
    /**
     * Reports a fault. Further faults with the same subject are counted only.
     *
     * @param subject  what differs, such as a method
     * @param detail   the call, or when it happened; may be empty
     * @param expected, received  what was expected, and what came instead
     */
    void fail(const std::string& subject, const std::string& detail, const std::string& expected,
              const std::string& received);
    /** Skips the check, unless it has failed. */
    void skip(const std::string& reason);
    /** Adds to what the line of a passed check says. */
    void note(const std::string& text);
    void took(std::chrono::microseconds time);

    Outcome outcome() const;
    /** The number of things examined, or the reason for skipping; one line. */
    std::string summary() const;
    /** The faults, a line each. */
    std::vector<std::string> faults() const;
    double seconds() const;

  private:
    const CheckInfo& mInfo;
    mutable std::mutex mLock;
    size_t mExamined = 0;
    size_t mFailures = 0;
    std::set<std::string> mSubjects;
    std::vector<std::string> mFaults;
    std::string mSkipped;
    std::string mNote;
    std::chrono::microseconds mTime{0};
};

/** The report as text for people. */
std::string lineOf(const Check& check);

/** The report as JUnit writes it: a suite for each group, a case for each check. */
std::string junitOf(const std::vector<const Check*>& checks);

}  // namespace conformance
