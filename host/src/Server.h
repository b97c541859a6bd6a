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

namespace hidlhost {

class Node;

/** An accepted connection. */
struct Connection {
    android::base::unique_fd socket;
    pid_t pid = 0;
    uid_t uid = 0;
    std::string peer;  // empty until it has said
    uint32_t role = 0;
    /** Of the call that it serves at the moment. */
    std::atomic<uint64_t> chain{0};
    /** Proxies sent in the last reply that the client has not taken over yet. */
    std::vector<android::sp<android::hardware::IBinder>> handedOver;
};

/** The side of a node that accepts connections and serves what comes in over them. */
class Server {
  public:
    explicit Server(Node& node);

    /** Makes the node reachable. */
    android::status_t listen();

    /** Ends all connections without a word. */
    void cut();

  private:
    void accept(int listener);
    void serve(const std::shared_ptr<Connection>& connection);
    void serveCalls(Connection* connection);
    void serveOneway(Connection* connection);
    bool handle(Connection* connection, BlockPtr block);
    bool call(Connection* connection, const MessageHeader& header, BlockPtr block);
    bool watchLiveness(const std::shared_ptr<Connection>& connection);
    void ended(const std::shared_ptr<Connection>& connection);
    void end(const std::shared_ptr<Connection>& connection);
    bool waitAtGate(const Connection* connection, uint64_t chain);
    bool greet(const std::shared_ptr<Connection>& connection);
    bool welcome(const std::shared_ptr<Connection>& connection, const std::string& peer,
                 uint32_t role);

    Node& mNode;  // which owns this, and which every thread of this keeps

    std::mutex mMutex;
    android::base::unique_fd mListener;
    bool mListening = false;
    bool mCrowded = false;
    size_t mServed = 0;
    std::set<std::shared_ptr<Connection>> mConnections;
};

}  // namespace hidlhost
