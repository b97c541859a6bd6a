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

/** The runtime directory, made where missing; empty where it may not be used. */
const std::string& directory();
std::string socketPath(const std::string& node);
/** Whether the text could name a node: no path, no surprise. */
bool isNodeName(const std::string& text);
/** Whether the process may speak for the node, whose name begins with its own process id. */
bool ownsName(pid_t pid, const std::string& node);

android::status_t publish(const std::string& interface, const std::string& instance,
                          const Entry& entry);
bool find(const std::string& interface, const std::string& instance, Entry* entry);
/** Only where it still says so. */
void withdraw(const std::string& interface, const std::string& instance, const Entry& entry);
/** Everything that the node has published, and its socket. */
void withdrawNode(const std::string& node);

/** Interface and instance of everything published, stale entries included. */
std::vector<std::pair<std::string, std::string>> list();

/** Removes sockets whose processes are gone. */
void sweep();

}  // namespace registry
}  // namespace hidlhost
