#pragma once

#include <sys/types.h>

#include <cstdint>
#include <map>
#include <mutex>
#include <utility>

#include "Code.h"

namespace qeltvd {

/**
 * The locks that clients take on databases for a series of calls. A lock belongs to a process: it
 * is taken at once or refused, may be taken again by its holder, and is gone with its holder. The
 * service's own threads never wait for one.
 */
class DatabaseLocks {
  public:
    enum class Database { kChannels, kSatellites, kBissKeys };
    enum class Access { kRead, kWrite };

    /** kOk, or kRefused while another process holds what forbids it. */
    Code lock(Database database, uint32_t list, pid_t process, Access access);
    /** kOk, or kNotFound when the process does not hold such a lock. */
    Code unlock(Database database, uint32_t list, pid_t process, Access access);
    /** Whether no other process holds any lock. */
    bool mayWrite(Database database, uint32_t list, pid_t process);

  private:
    struct Held {
        uint32_t reading = 0;
        uint32_t writing = 0;
    };
    using Holders = std::map<pid_t, Held>;

    /** Whether another process holds a lock that forbids an access; drops those of ended ones. */
    static bool othersForbid(Holders& holders, pid_t process, Access access);

    std::mutex mLock;
    // Guarded by mLock.
    std::map<std::pair<Database, uint32_t>, Holders> mHeld;
};

}  // namespace qeltvd
