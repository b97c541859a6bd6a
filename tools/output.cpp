#include "output.h"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <iostream>
#include <nlohmann/json.hpp>

namespace tool {
namespace {

/** Characters of a UTF-8 text, which is its width but for rare scripts. */
size_t width(const std::string& text) {
    return static_cast<size_t>(
            std::count_if(text.begin(), text.end(), [](char c) { return (c & 0xc0) != 0x80; }));
}

}  // namespace

std::string shownText(const std::string& text) {
    return isatty(STDOUT_FILENO) != 0 ? printable(text) : text;
}

void printTable(const std::vector<std::vector<std::string>>& rows) {
    std::vector<std::vector<std::string>> cells;
    std::vector<size_t> widths;
    for (const auto& row : rows) {
        cells.emplace_back();
        widths.resize(std::max(widths.size(), row.size()));
        for (size_t i = 0; i < row.size(); ++i) {
            cells.back().push_back(printable(row[i]));
            widths[i] = std::max(widths[i], width(cells.back()[i]));
        }
    }
    for (const auto& row : cells) {
        std::string line;
        for (size_t i = 0; i < row.size(); ++i) {
            line += row[i];
            if (i + 1 < row.size()) line += std::string(widths[i] - width(row[i]) + 2, ' ');
        }
        printf("%s\n", line.c_str());
    }
}

std::string jsonText(const nlohmann::ordered_json& json, int indent) {
    return json.dump(indent, ' ', false, nlohmann::ordered_json::error_handler_t::replace);
}

void printJson(const nlohmann::ordered_json& json, int indent) {
    printf("%s\n", jsonText(json, indent).c_str());
}

void openStandardFiles() {
    for (const int fd : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
        if (fcntl(fd, F_GETFD) != -1 || errno != EBADF) continue;
        // The lowest free descriptor is this one. Output fails there, as it does without the file.
        (void)open("/dev/null", fd == STDIN_FILENO ? O_WRONLY : O_RDONLY);
    }
}

bool finishOutput() {
    errno = 0;
    const bool flushed = fflush(stdout) == 0;
    // The help of the command line goes through a stream.
    std::cout.flush();
    if (flushed && ferror(stdout) == 0 && std::cout) return true;
    fprintf(stderr, "qeltvctl: the output cannot be written: %s\n",
            errno != 0 ? strerror(errno) : "a write has failed");
    return false;
}

}  // namespace tool
