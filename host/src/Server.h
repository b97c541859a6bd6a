#pragma once

#include <atomic>
#include <cstdint>
#include <memory>
#include <mutex>
#include <set>
#include <string>
#include <vector>

#include <sys/types.h>

#include <android-base/unique_fd.h>
#include <hwbinder/IBinder.h>

#include "Codec.h"
#include "Socket.h"
#include "TransactionSpace.h"
#include "Worker.h"

namespace hidlhost {

class Node;

/** Who sends calls over a connection. */
struct Caller {
    int socket = -1;
    pid_t pid = 0;
    uid_t uid = 0;
    std::string peer;  // empty until it has said
    /** Proxies sent in the last reply that the caller has not taken over yet. */
    std::vector<android::sp<android::hardware::IBinder>> handedOver;
};

/** An accepted connection. */
struct Connection : Caller {
    android::base::unique_fd owner;
    uint32_t role = 0;
    /** The chain of the call that is served at the moment. */
    std::atomic<uint64_t> chain{0};

    // Used on a connection for events only, by the watcher alone.
    Arrival arrival;
    BlockPtr arriving;
    uint64_t received = 0;
    size_t unaskedBytes = 0;
    size_t unaskedCalls = 0;
    std::shared_ptr<Worker> worker;

    /** Oneway calls that are to run where those of a process without a pool do. */
    std::atomic<size_t> leftToMain{0};
};

/** A call being served, as the thread that serves it sees it: a call back goes out over it. */
struct Conversation {
    const Node* node;
    Caller* caller;
    bool accepted;
    /** Whether the caller waits for an answer. */
    bool open;
    Conversation* outer;
};

/** The side of a node that accepts connections and serves what comes in over them. */
class Server {
  public:
    explicit Server(Node& node);

    /** Makes the node reachable. */
    android::status_t listen();

    /** Ends all connections without a word. */
    void cut();

    /** Serves a call that comes back to a waiting thread; false if that ends the connection. */
    bool serveWithin(Caller* caller, BlockPtr block);

    /** The memory of calls to this node and of replies to its own. */
    TransactionSpace& space() { return mSpace; }

  private:
    /** The way a call comes in: on a connection's own thread, on a waiting thread, as an event. */
    enum class Way { kConnection, kWithin, kEvent };
    struct Target {
        android::sp<android::hardware::BHwBinder> object;
        std::shared_ptr<std::mutex> onewayMutex;
    };

    void accept(int listener);
    bool greet(const std::shared_ptr<Connection>& connection);
    bool welcome(const std::shared_ptr<Connection>& connection, const std::string& peer,
                 uint32_t role);
    void serveCalls(const std::shared_ptr<Connection>& connection);
    bool handle(Connection* connection, BlockPtr block);
    bool readEvents(const std::shared_ptr<Connection>& connection);
    bool event(const std::shared_ptr<Connection>& connection, android::status_t received);
    void enqueue(const std::shared_ptr<Connection>& connection, const MessageHeader& header);
    bool call(Caller* caller, Connection* connection, Way way, const Target& target,
              BlockPtr block);
    bool execute(Caller* caller, Connection* connection, Way way, const Target& target,
                 uint64_t chain, const MessageHeader& header, android::hardware::Parcel* data);
    bool isUnderWay(const Connection* connection, uint64_t chain);
    void ended(const std::shared_ptr<Connection>& connection);
    void end(const std::shared_ptr<Connection>& connection);

    Node& mNode;  // which owns this, and which every thread of this keeps
    TransactionSpace& mSpace = TransactionSpace::make();
    /** The thread of all calls in a process that has not said how many threads it has. */
    const std::shared_ptr<Worker> mMain =
            std::make_shared<Worker>("hidl-main", Worker::Thread::kKept);

    std::mutex mMutex;
    android::base::unique_fd mListener;
    bool mListening = false;
    bool mCrowded = false;
    size_t mServed = 0;
    std::set<std::shared_ptr<Connection>> mConnections;
};

}  // namespace hidlhost
