#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include <hwbinder/IBinder.h>

#include "Codec.h"

namespace hidlhost {

class Node;

/** Sees binders from one node's end of a connection to `peer`, a name that stays elsewhere. */
class NodeMapper final : public BinderMapper {
  public:
    NodeMapper(Node& node, const std::string& peer) : mNode(node), mPeer(peer) {}

    android::status_t encode(const android::sp<android::hardware::IBinder>& binder,
                             ObjectRecord* record, std::string* name) override;
    android::status_t decode(const ObjectRecord& record, const std::string& name,
                             android::sp<android::hardware::IBinder>* binder) override;

    /** The message did not go out. */
    void takeBack();

    /** Proxies that must stay until the receiver has taken over what they stand for. */
    std::vector<android::sp<android::hardware::IBinder>>& proxies() { return mProxies; }

  private:
    Node& mNode;
    const std::string& mPeer;
    std::vector<uint64_t> mHeld;
    std::vector<android::sp<android::hardware::IBinder>> mProxies;
};

}  // namespace hidlhost
