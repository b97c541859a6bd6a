/** The lines that the library writes to the Android log, kept for a look instead of printed. */
#ifndef TESTS_SUPPORT_LOG_CAPTURE_H
#define TESTS_SUPPORT_LOG_CAPTURE_H

#include <log/log.h>

#include <chrono>
#include <string>
#include <vector>

namespace wire {

struct LogLine {
    int priority;
    std::string tag;
    std::string text;
};

/** Begins capturing in this process; lines of the host runtime itself stay on stderr. */
void captureLog();

/** The lines since the last call, and forgets them. */
std::vector<LogLine> takeLog();

/**
 * Whether `text` is what `pattern` says: the same, but that "{n}" stands for a number, "{*}" for
 * anything.
 */
bool matches(const std::string& pattern, const std::string& text);

/**
 * The lines since the last call must be these and no others: their texts as matches() has it, their
 * priority, and their tag, which a pattern that begins "(tag)|" names itself. Lines of the core,
 * which its threads write at any time, are left out unless they are the ones looked for.
 */
void expectLog(const std::string& tag, const std::vector<std::string>& patterns,
               int priority = ANDROID_LOG_DEBUG);

/**
 * Waits until a captured line under `tag` matches `pattern`; false after the deadline. Keeps all
 * lines for takeLog().
 */
bool waitForLog(const std::string& tag, const std::string& pattern,
                std::chrono::milliseconds deadline = std::chrono::seconds(20));

}  // namespace wire

#endif  // TESTS_SUPPORT_LOG_CAPTURE_H
