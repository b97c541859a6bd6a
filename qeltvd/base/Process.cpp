#include "Process.h"

#include <errno.h>
#include <signal.h>

#include <cstdio>
#include <string>

namespace qeltvd {

bool isAlive(pid_t process) {
    if (kill(process, 0) != 0) return errno == EPERM;
    FILE* file = fopen(("/proc/" + std::to_string(process) + "/stat").c_str(), "re");
    if (file == nullptr) return errno != ENOENT;
    char line[512] = "";
    const size_t size = fread(line, 1, sizeof(line) - 1, file);
    fclose(file);
    // "PID (NAME) STATE ..."; the name may have parentheses itself.
    const std::string text(line, size);
    const size_t end = text.rfind(") ");
    return end == std::string::npos || end + 2 >= size ||
           (text[end + 2] != 'Z' && text[end + 2] != 'X');
}

}  // namespace qeltvd
