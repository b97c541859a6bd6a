#include "Report.h"

#include <cstdio>
#include <cstring>
#include <map>

#include "printable.h"

namespace conformance {

namespace {

/** How many faults of a check are shown. */
constexpr size_t kShown = 8;

std::string xml(const std::string& text) {
    std::string escaped;
    for (const char c : tool::printable(text)) {
        switch (c) {
            case '&':
                escaped += "&amp;";
                break;
            case '<':
                escaped += "&lt;";
                break;
            case '>':
                escaped += "&gt;";
                break;
            case '"':
                escaped += "&quot;";
                break;
            default:
                escaped += c;
        }
    }
    return escaped;
}

std::string secondsText(double seconds) {
    char text[32];
    snprintf(text, sizeof(text), "%.3f", seconds);
    return text;
}

}  // namespace

const std::vector<CheckInfo>& allChecks() {
    static const std::vector<CheckInfo> kChecks = {
            {"interfaces.registered", "every interface is registered as \"default\""},
            {"interfaces.chain", "interfaceChain() has the interface and ends with IBase"},
            {"interfaces.descriptor", "interfaceDescriptor() is the first name of the chain"},
            {"methods.answer", "every method answers a call of its ordinal in time"},
            {"methods.shape", "a reply has the results of its method and nothing else"},
            {"methods.beyond", "an ordinal behind the last one is refused"},
            {"results.records", "records and blocks have the size that the interface gives them"},
            {"results.layouts", "the other records have the size of layouts/ (with --layouts)"},
            {"results.counts", "counts and lengths agree with the vectors and texts beside them"},
            {"results.capacity", "nothing is larger than the request allows"},
            {"results.texts", "texts have no NUL"},
            {"results.codes", "no refusal has the codes -1 and -2, which are the library's"},
            {"memory.bounds", "nothing is written into shared memory behind the requested records"},
            {"memory.counts", "as many records are written as are counted, and none beyond"},
            {"memory.handles", "a handle without memory, or with too little, is answered"},
            {"memory.released", "the descriptors of requests are closed after the call"},
            {"callbacks.notified", "a registered object is notified of a change"},
            {"callbacks.shape", "a notification has the values of its method and nothing else"},
            {"callbacks.once", "an object that is registered twice is notified once"},
            {"callbacks.processes", "the objects of two processes are both notified"},
            {"callbacks.hanging", "a client that does not take a notification holds up no other"},
            {"callbacks.death", "a dead client's object is let go, and the others are notified"},
            {"hostile.values", "8 threads with values at the edges of their types are answered"},
            {"hostile.malformed", "calls that are cut short, or of other types, end in time"},
            {"hostile.identity", "afterwards the same service process serves all interfaces"},
    };
    return kChecks;
}

std::string Check::group() const {
    return std::string(mInfo.name, strchr(mInfo.name, '.'));
}

void Check::examine(size_t count) {
    std::lock_guard<std::mutex> guard(mLock);
    mExamined += count;
}

void Check::fail(const std::string& subject, const std::string& detail, const std::string& expected,
                 const std::string& received) {
    std::lock_guard<std::mutex> guard(mLock);
    ++mFailures;
    if (!mSubjects.insert(subject).second || mFaults.size() == kShown) return;
    mFaults.push_back(subject + ": expected " + expected + ", received " + received +
                      (detail.empty() ? "" : "; " + detail));
}

void Check::skip(const std::string& reason) {
    std::lock_guard<std::mutex> guard(mLock);
    mSkipped = reason;
}

void Check::note(const std::string& text) {
    std::lock_guard<std::mutex> guard(mLock);
    mNote += (mNote.empty() ? "" : ", ") + text;
}

void Check::took(std::chrono::microseconds time) {
    std::lock_guard<std::mutex> guard(mLock);
    mTime += time;
}

Check::Outcome Check::outcome() const {
    std::lock_guard<std::mutex> guard(mLock);
    if (mFailures != 0) return Outcome::kFailed;
    return !mSkipped.empty() || mExamined == 0 ? Outcome::kSkipped : Outcome::kPassed;
}

std::string Check::summary() const {
    const Outcome result = outcome();
    std::lock_guard<std::mutex> guard(mLock);
    switch (result) {
        case Outcome::kSkipped:
            return mSkipped.empty() ? "nothing to examine" : mSkipped;
        case Outcome::kFailed:
            return std::to_string(mFailures) + (mFailures == 1 ? " fault, " : " faults, ") +
                   std::to_string(mSubjects.size()) + " different";
        case Outcome::kPassed:
            break;
    }
    return std::to_string(mExamined) + " examined" + (mNote.empty() ? "" : ", " + mNote);
}

std::vector<std::string> Check::faults() const {
    std::lock_guard<std::mutex> guard(mLock);
    std::vector<std::string> lines = mFaults;
    if (mSubjects.size() > mFaults.size()) {
        lines.push_back("and " + std::to_string(mSubjects.size() - mFaults.size()) + " more");
    }
    return lines;
}

double Check::seconds() const {
    std::lock_guard<std::mutex> guard(mLock);
    return std::chrono::duration<double>(mTime).count();
}

std::string lineOf(const Check& check) {
    static constexpr const char* kWords[] = {"passed", "FAILED", "skipped"};
    std::string text(kWords[static_cast<int>(check.outcome())]);
    text.resize(9, ' ');
    text += check.info().name;
    text.resize(32, ' ');
    text += check.summary() + "\n";
    for (const std::string& fault : check.faults()) {
        text += "         " + tool::printable(fault) + "\n";
    }
    return text;
}

std::string junitOf(const std::vector<const Check*>& checks) {
    struct Suite {
        std::string cases;
        size_t tests = 0, failures = 0, skipped = 0;
        double seconds = 0;
    };
    std::vector<std::string> order;
    std::map<std::string, Suite> suites;
    for (const Check* check : checks) {
        const std::string group = check->group();
        if (suites.count(group) == 0) order.push_back(group);
        Suite& suite = suites[group];
        ++suite.tests;
        suite.seconds += check->seconds();
        const std::string name = std::string(check->info().name).substr(group.size() + 1);
        suite.cases += "    <testcase classname=\"" + xml(group) + "\" name=\"" + xml(name) +
                       "\" time=\"" + secondsText(check->seconds()) + "\"";
        switch (check->outcome()) {
            case Check::Outcome::kPassed:
                suite.cases += "/>\n";
                break;
            case Check::Outcome::kSkipped:
                ++suite.skipped;
                suite.cases += "><skipped message=\"" + xml(check->summary()) + "\"/></testcase>\n";
                break;
            case Check::Outcome::kFailed: {
                ++suite.failures;
                std::string lines;
                for (const std::string& fault : check->faults()) lines += xml(fault) + "\n";
                suite.cases += "><failure message=\"" + xml(check->info().text) + ": " +
                               xml(check->summary()) + "\">" + lines + "</failure></testcase>\n";
                break;
            }
        }
    }
    std::string text = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<testsuites>\n";
    for (const std::string& name : order) {
        const Suite& suite = suites[name];
        text += "  <testsuite name=\"qeltv-conformance." + xml(name) + "\" tests=\"" +
                std::to_string(suite.tests) + "\" failures=\"" + std::to_string(suite.failures) +
                "\" errors=\"0\" skipped=\"" + std::to_string(suite.skipped) + "\" time=\"" +
                secondsText(suite.seconds) + "\">\n" + suite.cases + "  </testsuite>\n";
    }
    return text + "</testsuites>\n";
}

}  // namespace conformance
