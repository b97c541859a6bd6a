#include "NodeMapper.h"

#include <hwbinder/Binder.h>
#include <hwbinder/BpHwBinder.h>

#include "Node.h"
#include "Peer.h"

using android::BAD_VALUE;
using android::OK;
using android::sp;
using android::status_t;
using android::hardware::BHwBinder;
using android::hardware::BpHwBinder;
using android::hardware::IBinder;

namespace hidlhost {

status_t NodeMapper::encode(const sp<IBinder>& binder, ObjectRecord* record, std::string* name) {
    if (BHwBinder* local = binder->localBinder()) {
        status_t status = mNode.hold(local, mPeer, &record->value);
        if (status != OK) return status;
        record->kind = kSendersBinder;
        mHeld.push_back(record->value);
        return OK;
    }
    BpHwBinder* remote = binder->remoteBinder();
    if (remote == nullptr) return BAD_VALUE;
    record->value = remote->id();
    mProxies.push_back(binder);
    if (remote->peer()->name() == mPeer) {
        record->kind = kReceiversBinder;
    } else {
        record->kind = kOthersBinder;
        *name = remote->peer()->name();
    }
    return OK;
}

status_t NodeMapper::decode(const ObjectRecord& record, const std::string& name,
                            sp<IBinder>* binder) {
    if (record.kind == kSendersBinder) {
        std::shared_ptr<Peer> peer = mNode.peer(mPeer);
        if (peer == nullptr) return BAD_VALUE;
        *binder = peer->proxy(record.value, 1);
        return OK;
    }
    if (record.kind == kReceiversBinder || name == mNode.name()) {
        *binder = mNode.objects().find(record.value);
        return *binder == nullptr ? BAD_VALUE : OK;
    }
    std::shared_ptr<Peer> peer = mNode.peer(name);
    if (peer == nullptr) return BAD_VALUE;
    bool acquired = peer->acquire(record.value, true) == OK;
    *binder = peer->proxy(record.value, acquired ? 1 : 0);
    return OK;
}

void NodeMapper::takeBack() {
    for (uint64_t id : mHeld) mNode.objects().release(id, mPeer, 1);
    mHeld.clear();
}

}  // namespace hidlhost
