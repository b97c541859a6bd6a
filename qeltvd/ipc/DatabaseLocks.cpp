#include "DatabaseLocks.h"

#include "Code.h"
#include "Process.h"

namespace qeltvd {

bool DatabaseLocks::othersForbid(Holders& holders, pid_t process, Access access) {
    for (auto holder = holders.begin(); holder != holders.end();) {
        const bool held = holder->second.writing != 0 ||
                          (access == Access::kWrite && holder->second.reading != 0);
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

Code DatabaseLocks::lock(Database database, uint32_t list, pid_t process, Access access) {
    std::lock_guard<std::mutex> guard(mLock);
    Holders& holders = mHeld[{database, list}];
    if (othersForbid(holders, process, access)) return kRefused;
    Held& mine = holders[process];
    ++(access == Access::kWrite ? mine.writing : mine.reading);
    return kOk;
}

Code DatabaseLocks::unlock(Database database, uint32_t list, pid_t process, Access access) {
    std::lock_guard<std::mutex> guard(mLock);
    Holders& holders = mHeld[{database, list}];
    const auto mine = holders.find(process);
    if (mine == holders.end()) return kNotFound;
    uint32_t& count = access == Access::kWrite ? mine->second.writing : mine->second.reading;
    if (count == 0) return kNotFound;
    --count;
    if (mine->second.reading == 0 && mine->second.writing == 0) holders.erase(mine);
    return kOk;
}

bool DatabaseLocks::mayWrite(Database database, uint32_t list, pid_t process) {
    std::lock_guard<std::mutex> guard(mLock);
    const auto found = mHeld.find({database, list});
    return found == mHeld.end() || !othersForbid(found->second, process, Access::kWrite);
}

}  // namespace qeltvd
