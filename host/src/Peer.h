#pragma once

#include <atomic>
#include <cstdint>
#include <deque>
#include <memory>
#include <mutex>
#include <string>
#include <unordered_map>
#include <vector>

#include <android-base/unique_fd.h>
#include <hwbinder/BpHwBinder.h>
#include <hwbinder/Parcel.h>

#include "Codec.h"

namespace hidlhost {

class Node;
class Patience;

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

    android::status_t call(uint64_t id, uint32_t code, const android::hardware::Parcel& data,
                           android::hardware::Parcel* reply, uint32_t flags);

    /** Opens the connection whose end tells of the peer's end. */
    android::status_t watch();
    void died();
    /** Ends all connections without a word. */
    void cut();

  private:
    struct Use {
        int socket;
        bool fresh;
    };
    /** Of oneway calls on one connection: proxies that the peer has not taken over yet. */
    struct HandedOver {
        std::mutex mutex;
        std::deque<std::vector<android::sp<android::hardware::IBinder>>> proxies;
    };

    using Socket = std::shared_ptr<android::base::unique_fd>;

    android::status_t connect(uint32_t role, int* socket);
    android::status_t open(uint32_t role, android::base::unique_fd* socket);
    android::status_t take(bool fresh, Use* use);
    void give(int socket);
    void discard(int socket);
    android::status_t send(const Encoded& message, Patience* patience, Use* use);
    android::status_t sendOneway(
            const Encoded& message, Patience* patience,
            const std::vector<android::sp<android::hardware::IBinder>>& proxies);
    static void watchHandedOver(int socket, const std::shared_ptr<HandedOver>& handedOver);

    const std::shared_ptr<Node> mNode;
    const std::string mName;
    std::atomic<bool> mDead{false};

    /** The connection used last, which is all that a single caller needs; -1 while in use. */
    std::atomic<int> mLast{-1};

    std::mutex mMutex;
    std::vector<int> mIdle;  // the last used one is last
    /** Of calls and oneway calls, whether in use or not. */
    std::unordered_map<int, android::base::unique_fd> mSockets;
    std::unordered_map<uint64_t, android::wp<android::hardware::BpHwBinder>> mProxies;
    /** The parent's of objects of which this process has found a proxy of its own before. */
    std::vector<android::wp<android::hardware::BpHwBinder>> mOlderProxies;

    std::mutex mLivenessMutex;
    Socket mLiveness;
    std::vector<std::pair<uint64_t, uint32_t>> mReleases;  // still to be sent

    std::mutex mOnewayMutex;  // keeps oneway calls in order
    int mOneway = -1;
    std::shared_ptr<HandedOver> mHandedOver;
};

}  // namespace hidlhost
