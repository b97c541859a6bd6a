#include "tool.h"

#include <algorithm>
#include <cstdio>

#include "hw_qeltvapi_common.h"

namespace tool {

void requireService() {
    if (getQelTvApiService() == nullptr) {
        throw Failure(kUnreachable, "the television is not running");
    }
}

int64_t check(int64_t code, const std::string& what) {
    // The library's own codes for a service that is not there or did not answer.
    if (code == -1 || code == -2) {
        throw Failure(kUnreachable, what + ": the television did not answer");
    }
    if (code < 0) throw Failure(kRefused, what + ": refused with code " + std::to_string(code));
    return code;
}

/** Characters of a UTF-8 text, which is how wide it is but for rare scripts. */
static size_t width(const std::string& text) {
    return static_cast<size_t>(
            std::count_if(text.begin(), text.end(), [](char c) { return (c & 0xc0) != 0x80; }));
}

void printTable(const std::vector<std::vector<std::string>>& rows) {
    std::vector<size_t> widths;
    for (const auto& row : rows) {
        widths.resize(std::max(widths.size(), row.size()));
        for (size_t i = 0; i < row.size(); ++i) widths[i] = std::max(widths[i], width(row[i]));
    }
    for (const auto& row : rows) {
        std::string line;
        for (size_t i = 0; i < row.size(); ++i) {
            line += row[i];
            if (i + 1 < row.size()) line += std::string(widths[i] - width(row[i]) + 2, ' ');
        }
        printf("%s\n", line.c_str());
    }
}

void addJson(Command* command, bool* json) {
    command->addFlag("--json", *json, "Print JSON, for scripts");
}

}  // namespace tool
