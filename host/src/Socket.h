#pragma once

#include <chrono>
#include <cstdint>
#include <optional>
#include <string>

#include <sys/time.h>
#include <sys/types.h>

#include <android-base/unique_fd.h>

#include "Codec.h"
#include "Gate.h"

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

/** How long a client may keep silent at first, stop within a message, or leave an answer unread. */
constexpr uint32_t kClientMs = 10000;

/**
 * Bounds the time that a process takes to read one message, all of its packets together. The
 * thread that waits gives up its place in the pool; `outside` ends when it takes it again.
 */
class SendPatience final : public Patience {
  public:
    SendPatience(uint32_t milliseconds, std::optional<WithoutPlace>* outside)
            : mMilliseconds(milliseconds), mOutside(outside) {}
    /** Leaves the socket as it was found. */
    ~SendPatience();
    SendPatience(const SendPatience&) = delete;
    SendPatience& operator=(const SendPatience&) = delete;

    bool waitOn(int socket) override;

  private:
    const uint32_t mMilliseconds;
    std::optional<WithoutPlace>* const mOutside;
    int mSocket = -1;
    timeval mBefore = {};
    std::chrono::steady_clock::time_point mEnd;
};

/**
 * DEAD_OBJECT if the other end is gone, TIMED_OUT when patience ends. With kTryFirst patience
 * decides about every wait, else about those that follow a timeout.
 */
enum class Wait { kAtOnce, kTryFirst };
android::status_t sendMessage(int socket, const Encoded& message, Patience* patience,
                              Wait wait = Wait::kAtOnce);

/** A message of which some packets have come. */
class Arrival {
  public:
    Arrival() = default;
    ~Arrival() { reset(); }
    Arrival(const Arrival&) = delete;
    Arrival& operator=(const Arrival&) = delete;

    /**
     * Receives a packet. OK ends the message; NOT_ENOUGH_DATA means that more packets follow,
     * WOULD_BLOCK that none is there and errno says why, DEAD_OBJECT that the other end is gone,
     * BAD_VALUE that the packets do not make up a message. A whole message comes with -EMFILE
     * if this process could not take all of its descriptors, and with NO_MEMORY if there was
     * no memory for more than its first packet.
     */
    android::status_t receive(int socket, Block* block, int flags);
    /** Whether some packets of a message have come and others have not. */
    bool partial() const { return mReceived > 0; }

  private:
    bool grow(Block* block, size_t size);
    void reset();

    uint64_t mTotal = 0;
    uint64_t mReceived = 0;
    size_t mCharged = 0;
    bool mLacking = false;
    bool mRefused = false;
};

/** The results of Arrival::receive() for a whole message, and TIMED_OUT. */
android::status_t receiveMessage(int socket, Block* block, Patience* patience);
/** From a client with timeouts of kClientMs: the first packet may be long in coming, others not. */
android::status_t receiveFromClient(int socket, Block* block);

/** Says that the objects named in the last message have been taken over. */
bool sendReceived(int socket);
/** Answers without results, and without waiting: false if the other end leaves too much unread.
 */
bool sendStatus(int socket, android::status_t status, uint32_t flags);

}  // namespace hidlhost
