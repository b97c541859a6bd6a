#pragma once

#include <atomic>
#include <condition_variable>
#include <cstdint>
#include <deque>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

#include <android-base/unique_fd.h>
#include <hwbinder/BpHwBinder.h>
#include <hwbinder/Parcel.h>

#include "Codec.h"
#include "Gate.h"

namespace hidlhost {

class Node;
class NodeMapper;
class Patience;
struct Conversation;

/** Another node as one node sees it. */
class Peer : public std::enable_shared_from_this<Peer> {
  public:
    Peer(std::shared_ptr<Node> node, std::string name);
    ~Peer();

    Node& node() const { return *mNode; }
    const std::string& name() const { return mName; }
    bool dead() const { return mDead; }

    /** The proxy of an object that has arrived `count` times more. */
    android::sp<android::hardware::BpHwBinder> proxy(uint64_t id, uint32_t count);
    void proxyGone(android::hardware::BpHwBinder* proxy);
    /** Takes over a proxy of the parent's, with the references that its adoption has taken. */
    void adopted(android::hardware::BpHwBinder* proxy, uint32_t count);

    /** Takes a reference; with `confirmed` only returns once the peer has counted it. */
    android::status_t acquire(uint64_t id, bool confirmed);

    /** Opens a connection for calls that the peer takes in while its first caller gets ready. */
    void prepare();
    android::status_t call(uint64_t id, uint32_t code, const android::hardware::Parcel& data,
                           android::hardware::Parcel* reply, uint32_t flags);

    /** Opens the connection that ends with the peer. */
    android::status_t watch();
    /** The same, and forgets a peer that is gone. */
    android::status_t reach();
    void died();
    /** Ends all connections without a word. */
    void cut();

  private:
    struct Use {
        int socket;
        bool fresh;
    };
    /** The connection for what has no reply, and for the notice of the peer's end. */
    struct Events {
        android::base::unique_fd socket;

        std::mutex mutex;
        std::condition_variable changed;
        bool ended = false;
        /** Whether a call is out that the peer has to accept or refuse, and what it said last. */
        bool asked = false;
        bool askedHandsOver = false;
        android::status_t answer = android::OK;
        /** Proxies in calls sent that the peer has not taken over yet. */
        std::deque<std::vector<android::sp<android::hardware::IBinder>>> handedOver;
    };

    android::status_t open(uint32_t role, android::base::unique_fd* socket);
    android::status_t connect(int* socket);
    android::status_t take(bool fresh, Use* use);
    void give(int socket);
    void discard(int socket);
    android::status_t send(const Encoded& message, Patience* patience, Use* use);

    /** With mSending held, as the next. */
    android::status_t sendEvent(const Encoded& message, Patience* patience, Events* events);
    android::status_t sendOnewayTo(Events* to, const MessageHeader& header, Encoded* message,
                                   NodeMapper* mapper, std::optional<WithoutPlace>* outside,
                                   bool* sent);

    android::status_t sendOneway(const MessageHeader& header, Encoded* message, NodeMapper* mapper);
    std::shared_ptr<Events> events();
    bool readEvents(const std::shared_ptr<Events>& events);
    void flushReleases();

    android::status_t callWithin(const Conversation& conversation, const Encoded& message,
                                 Patience* patience, BlockPtr* reply);
    android::status_t awaitReply(int socket, Patience* patience, BlockPtr* reply);
    android::status_t takeReply(int socket, BlockPtr block, NodeMapper* mapper,
                                android::hardware::Parcel* result, android::status_t* outcome);

    const std::shared_ptr<Node> mNode;
    const std::string mName;
    std::atomic<bool> mDead{false};
    std::atomic<bool> mPrepared{false};

    /** The connection used last, which is all that a single caller needs; -1 while in use. */
    std::atomic<int> mLast{-1};

    std::mutex mMutex;
    std::vector<int> mIdle;  // the last used one is last
    /** All connections for calls, in use or idle. */
    std::unordered_map<int, android::base::unique_fd> mSockets;
    std::shared_ptr<Events> mEvents;
    std::unordered_map<uint64_t, android::wp<android::hardware::BpHwBinder>> mProxies;
    /** The parent's of objects of which this process has found a proxy of its own before. */
    std::vector<android::wp<android::hardware::BpHwBinder>> mOlderProxies;
    std::vector<std::pair<uint64_t, uint32_t>> mReleases;  // still to be sent

    std::mutex mOpening;                // keeps two threads from opening mEvents
    std::atomic<bool> mWatched{false};  // mEvents has been opened and entered at the watcher
    std::mutex mSending;                // keeps events in order
    /** Since the last call that the peer was asked to accept. */
    size_t mUnaskedBytes = 0;
    size_t mUnaskedCalls = 0;
};

}  // namespace hidlhost
