#include "DatabaseLocks.h"

#include <errno.h>
#include <signal.h>

#include <cstdio>
#include <string>

#include "Codes.h"

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

bool DatabaseLocks::othersHold(Holders& holders, pid_t process, bool onlyWriting) {
    for (auto holder = holders.begin(); holder != holders.end();) {
        const bool held =
                holder->second.writing != 0 || (!onlyWriting && holder->second.reading != 0);
        if (holder->first == process || !held) {
            ++holder;
        } else if (isAlive(holder->first)) {
            return true;
        } else {
            holder = holders.erase(holder);
        }
    }
    return false;
}

int32_t DatabaseLocks::lock(Database database, uint32_t list, pid_t process, bool write) {
    std::lock_guard<std::mutex> guard(mLock);
    Holders& holders = mHeld[{database, list}];
    if (othersHold(holders, process, !write)) return kRefused;
    Held& mine = holders[process];
    ++(write ? mine.writing : mine.reading);
    return kOk;
}

int32_t DatabaseLocks::unlock(Database database, uint32_t list, pid_t process, bool write) {
    std::lock_guard<std::mutex> guard(mLock);
    Holders& holders = mHeld[{database, list}];
    const auto mine = holders.find(process);
    if (mine == holders.end()) return kNotFound;
    uint32_t& count = write ? mine->second.writing : mine->second.reading;
    if (count == 0) return kNotFound;
    --count;
    if (mine->second.reading == 0 && mine->second.writing == 0) holders.erase(mine);
    return kOk;
}

bool DatabaseLocks::mayWrite(Database database, uint32_t list, pid_t process) {
    std::lock_guard<std::mutex> guard(mLock);
    const auto found = mHeld.find({database, list});
    return found == mHeld.end() || !othersHold(found->second, process, false);
}

}  // namespace qeltvd
