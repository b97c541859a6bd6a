#pragma once

#include <atomic>
#include <cstdint>
#include <memory>
#include <mutex>
#include <string>
#include <unordered_map>

#include <hwbinder/Binder.h>

#include "Fork.h"
#include "Gate.h"
#include "ObjectTable.h"
#include "Server.h"

/**
 * The transport.
 *
 * A node is what others see as a process: a name, which is also its socket in the runtime
 * directory, and the objects that it has given out. A process has one node; raw services of tests
 * have nodes of their own, which is how they can be reached over a socket, and die, within the
 * process of their client. A peer is another node as one node sees it.
 *
 * Threads. A caller uses a pooled connection to the peer and waits on it for the reply; calls back
 * from what it called arrive on the same connection and run on the waiting thread. A node that has
 * given out an object runs a thread that accepts connections, and one for every connection that has
 * asked for calls, which serves call after call. What has no reply arrives on a connection for
 * events, which the Watcher's first thread reads; oneway calls then run on a thread that exists
 * while there are any. A process that has not configured a pool runs all calls on one thread. The
 * gate lets as many calls into a node as its thread pool is said to have threads; calls nested in
 * one that is under way pass. No place in the gate is kept while a client takes its time to read.
 *
 * References. Every time an object is sent to a peer its count for that peer goes up; a proxy
 * counts how often its object has arrived and gives all of that back when it goes. So a release
 * under way never undoes a later arrival. Acquires, oneway calls, releases and the end of the peer
 * arrive in the order in which they were sent. A oneway call keeps its object from its arrival on.
 * The holder of a registered object is the registration.
 *
 * Locks. Node::mMutex guards the peers that a node knows, ObjectTable::mMutex its objects,
 * Server::mMutex its connections; Peer::mMutex the sockets, proxies and releases of one peer;
 * Peer::mOpening and Peer::mSending the opening of the connection for events and the order of what
 * is sent on it; Events::mutex what the peer has answered there; a process lock (Fork.h) the
 * recipients of all proxies; Gate::mMutex who waits at the gate. Under Peer::mOpening and
 * Peer::mSending the other locks of a peer may be taken; besides that no lock is taken while
 * another is held. Peer::mSending is the only one held while a peer is waited for, which is
 * bounded, and nobody who must not wait takes it. None is held while foreign code runs, destructors
 * of objects and proxies included.
 */
namespace hidlhost {

class Peer;

class Node : public std::enable_shared_from_this<Node> {
  public:
    /** The node of this process. */
    static Node& process();
    static std::shared_ptr<Node> create();

    const std::string& name() const { return mName; }
    Gate& gate() { return mGate; }
    bool dead() const { return mDead; }
    /** Whether the node is a parent's, this process being a fork of it. */
    bool inherited() const { return mGeneration != generation(); }

    /** Null for a name that is none. */
    std::shared_ptr<Peer> peer(const std::string& name);
    void forget(const std::string& peer);

    /** Whether the peer is one that is not known to be dead. */
    bool reaches(const std::string& peer);

    /** Makes the node reachable, and `holder` an owner of the object. */
    android::status_t hold(const android::sp<android::hardware::BHwBinder>& object,
                           const std::string& holder, uint64_t* id);
    ObjectTable& objects() { return mObjects; }
    Server& server() { return mServer; }

    /** Ends everything at once, as the end of a process would. */
    void kill();

    /** A chain of calls that starts on this thread. */
    uint64_t newChain();
    bool startedHere(uint64_t chain) const { return chain >> 24 == mChainPrefix; }

  private:
    explicit Node(std::string name);

    const std::string mName;
    const uint64_t mChainPrefix;
    const uint32_t mGeneration;
    std::atomic<uint64_t> mNextChain{1};
    std::atomic<bool> mDead{false};
    Gate mGate;
    ObjectTable mObjects;
    Server mServer;

    std::mutex mMutex;
    std::unordered_map<std::string, std::shared_ptr<Peer>> mPeers;
};

}  // namespace hidlhost
