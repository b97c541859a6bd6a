#pragma once

#include <cstdint>
#include <string>

#include <sys/types.h>

#include <android-base/unique_fd.h>

#include "Codec.h"

namespace hidlhost {

/** Decides whether a wait on a socket that has run into its timeout goes on. */
class Patience {
  public:
    virtual bool waitOn(int socket) = 0;

  protected:
    ~Patience() = default;
};

/** Waits on a socket of this side end after so many milliseconds with EAGAIN; 0 never. */
void setTimeouts(int socket, uint32_t milliseconds);

/** @return OK, or the negative errno */
android::status_t connectTo(const std::string& path, uint32_t timeoutMs,
                            android::base::unique_fd* socket);
android::status_t listenAt(const std::string& path, android::base::unique_fd* socket);

/** Whether the other end belongs to this user or to root. */
bool peerIsTrusted(int socket, pid_t* pid, uid_t* uid);

/** Whether the other end is gone and everything that it has sent is read. */
bool hasHungUp(int socket);

/** DEAD_OBJECT where the other end is gone, TIMED_OUT where patience ends. */
android::status_t sendMessage(int socket, const Encoded& message, Patience* patience);

/**
 * Also BAD_VALUE for packets that do not make up a message, and -EMFILE for a whole message of
 * which this process could not take all descriptors.
 */
android::status_t receiveMessage(int socket, Block* block, Patience* patience);

/** Says that the objects named in the last message have been taken over. */
bool sendReceived(int socket);

}  // namespace hidlhost
