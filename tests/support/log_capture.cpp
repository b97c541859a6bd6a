#include "log_capture.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <cstring>

#include "inbox.h"

namespace wire {
namespace {

// Never destroyed: threads of the library still log while the process ends.
Inbox<LogLine>& sLines = *new Inbox<LogLine>;

/** The tag of the service access core. */
constexpr char kCore[] = "hw_qeltvapi_common";

bool ofTheLibrary(const std::string& tag) {
    static const std::string& kClient = *new std::string("(client)");
    return tag == kCore || (tag.size() >= kClient.size() &&
                            tag.compare(tag.size() - kClient.size(), kClient.size(), kClient) == 0);
}

void logger(const __android_logger_data* data, const char* text) {
    const std::string tag = data->tag != nullptr ? data->tag : "";
    if (!ofTheLibrary(tag)) {
        fprintf(stderr, "%s: %s\n", tag.c_str(), text);
        return;
    }
    sLines.put({data->priority, tag, text});
}

bool startsWith(const char* text, const char* prefix) {
    return strncmp(text, prefix, strlen(prefix)) == 0;
}

bool matchesFrom(const char* pattern, const char* text) {
    for (;;) {
        if (*pattern == '\0') return *text == '\0';
        if (startsWith(pattern, "{n}")) {
            if (*text == '-') ++text;
            if (*text < '0' || *text > '9') return false;
            while (*text >= '0' && *text <= '9') ++text;
            pattern += 3;
            continue;
        }
        if (startsWith(pattern, "{*}")) {
            for (const char* rest = text;; ++rest) {
                if (matchesFrom(pattern + 3, rest)) return true;
                if (*rest == '\0') return false;
            }
        }
        if (*pattern != *text) return false;
        ++pattern;
        ++text;
    }
}

}  // namespace

void captureLog() {
    static const bool sOnce = [] {
        __android_log_set_minimum_priority(ANDROID_LOG_DEBUG);
        __android_log_set_logger(logger);
        return true;
    }();
    (void)sOnce;
}

std::vector<LogLine> takeLog() {
    return sLines.takeAll();
}

bool matches(const std::string& pattern, const std::string& text) {
    return matchesFrom(pattern.c_str(), text.c_str());
}

void expectLog(const std::string& tag, const std::vector<std::string>& patterns, int priority) {
    std::vector<LogLine> lines = takeLog();
    if (tag != kCore) {
        lines.erase(std::remove_if(lines.begin(), lines.end(),
                                   [](const LogLine& line) { return line.tag == kCore; }),
                    lines.end());
    }
    for (size_t i = 0; i < std::max(lines.size(), patterns.size()); ++i) {
        if (i >= patterns.size()) {
            ADD_FAILURE() << "unexpected line \"" << lines[i].text << "\"";
            continue;
        }
        const size_t bar = patterns[i].find(")|");
        const bool named = patterns[i][0] == '(' && bar != std::string::npos;
        const std::string pattern = named ? patterns[i].substr(bar + 2) : patterns[i];
        if (i >= lines.size()) {
            ADD_FAILURE() << "no line \"" << pattern << "\"";
            continue;
        }
        EXPECT_TRUE(matches(pattern, lines[i].text))
                << "line \"" << lines[i].text << "\" is not \"" << pattern << "\"";
        EXPECT_EQ(named ? patterns[i].substr(0, bar + 1) : tag, lines[i].tag) << lines[i].text;
        EXPECT_EQ(priority, lines[i].priority) << lines[i].text;
    }
}

bool waitForLog(const std::string& tag, const std::string& pattern,
                std::chrono::milliseconds deadline) {
    return sLines
            .find(
                    [&](const LogLine& line) {
                        return line.tag == tag && matches(pattern, line.text);
                    },
                    deadline)
            .has_value();
}

}  // namespace wire
