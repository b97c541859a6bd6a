#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include <sys/types.h>

#include <utils/Errors.h>

namespace hidlhost {

/** Which objects can be found under which names: one small file each in the runtime directory. */
namespace registry {

struct Entry {
    std::string node;
    uint64_t object = 0;

    bool operator==(const Entry& other) const {
        return node == other.node && object == other.object;
    }
};

/** The runtime directory, made if missing; empty if it may not be used. */
const std::string& directory();
std::string socketPath(const std::string& node);
/** The path of the lock; empty where nothing has been looked for yet. */
std::string lockFile();
/** Whether the file's name is that of a socket. Allocates nothing. */
bool isSocket(const char* file);
/** Whether the text could name a node: no path, no surprise. */
bool isNodeName(const std::string& text);
/** Whether the process may speak for the node, whose name begins with its own process id. */
bool ownsName(pid_t pid, const std::string& node);

/**
 * Held while entries are replaced or removed, so that no removal hits a newer entry. Whoever else
 * holds it, perhaps stopped, keeps nobody for longer than the bound: a removal is left out then,
 * and a stale entry removed by whoever finds it. A replacement goes on, because it can only be lost
 * to a removal that holds the lock for all that time.
 */
class Lock {
  public:
    Lock();
    ~Lock();
    Lock(const Lock&) = delete;
    Lock& operator=(const Lock&) = delete;

    bool held() const { return mFile >= 0; }

  private:
    int mFile;
};

android::status_t publish(const std::string& interface, const std::string& instance,
                          const Entry& entry);
bool find(const std::string& interface, const std::string& instance, Entry* entry);
/** Only if it still says so. */
void withdraw(const std::string& interface, const std::string& instance, const Entry& entry);
/** Everything that the node has published, and its socket. */
void withdrawNode(const std::string& node);

using Name = std::pair<std::string, std::string>;  // interface and instance

/** The names of everything published, stale entries included. */
std::vector<Name> list();
/** The name whose file this is; false for a file of another kind. */
bool nameOfFile(const std::string& file, Name* name);
/** The process that a node's name names. */
int32_t processOf(const std::string& node);

/** Removes sockets whose processes are gone. */
void sweep();

}  // namespace registry
}  // namespace hidlhost
