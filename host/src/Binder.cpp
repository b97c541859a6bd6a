#include <hwbinder/Binder.h>
#include <hwbinder/BpHwBinder.h>
#include <hwbinder/IInterface.h>
#include <hwbinder/Parcel.h>

#include <algorithm>
#include <utility>

#include "Codec.h"
#include "Fork.h"
#include "Node.h"
#include "Peer.h"
#include "Watcher.h"

namespace android {
namespace hardware {

IBinder::IBinder() = default;
IBinder::~IBinder() = default;

BHwBinder* IBinder::localBinder() {
    return nullptr;
}

BpHwBinder* IBinder::remoteBinder() {
    return nullptr;
}

BHwBinder::BHwBinder() : mSchedPolicy(SCHED_NORMAL), mSchedPriority(0), mRequestingSid(false) {}
BHwBinder::~BHwBinder() = default;

BHwBinder* BHwBinder::localBinder() {
    return this;
}

bool BHwBinder::isRequestingSid() const {
    return mRequestingSid;
}

void BHwBinder::setRequestingSid(bool requestSid) {
    mRequestingSid = requestSid;
}

status_t BHwBinder::transact(uint32_t code, const Parcel& data, Parcel* reply, uint32_t flags,
                             TransactCallback callback) {
    data.setDataPosition(0);
    // The results often refer to what onTransact() has on its stack, so they are taken in its
    // callback.
    status_t detached = OK;
    bool sent = false;
    Parcel results;
    TransactCallback detach = [&](Parcel& written) {
        sent = true;
        if (reply != nullptr) detached = hidlhost::Codec::detach(written, reply);
        if (callback != nullptr && reply != nullptr) callback(*reply);
    };
    status_t status = onTransact(code, data, &results, flags, detach);
    if (status != OK) return status;
    if (!sent) detach(results);
    return detached;
}

status_t BHwBinder::linkToDeath(const sp<DeathRecipient>&, void*, uint32_t) {
    return INVALID_OPERATION;
}

status_t BHwBinder::unlinkToDeath(const wp<DeathRecipient>&, void*, uint32_t, wp<DeathRecipient>*) {
    return INVALID_OPERATION;
}

status_t BHwBinder::onTransact(uint32_t, const Parcel&, Parcel*, uint32_t, TransactCallback) {
    return UNKNOWN_TRANSACTION;
}

BpHwBinder::BpHwBinder(std::shared_ptr<hidlhost::Peer> peer, uint64_t id)
        : mPeer(std::move(peer)), mGeneration(hidlhost::generation()), mId(id) {
    // A weak reference may outlive the last strong one: onLastStrongRef() ends the object's use.
}

BpHwBinder::~BpHwBinder() = default;

BpHwBinder* BpHwBinder::remoteBinder() {
    return this;
}

const std::shared_ptr<hidlhost::Peer>& BpHwBinder::peer() {
    if (mGeneration.load(std::memory_order_acquire) != hidlhost::generation()) adopt();
    return mPeer;
}

void BpHwBinder::adopt() {
    std::string name;
    std::shared_ptr<hidlhost::Peer> older;  // until after the lock
    {
        std::lock_guard<std::mutex> lock(hidlhost::processMutex(hidlhost::ProcessLock::kProxies));
        name = mPeer->name();
    }
    const std::shared_ptr<hidlhost::Peer> peer = hidlhost::Node::process().peer(name);
    const bool held = peer->watch() == OK && peer->acquire(mId, true) == OK;
    {
        std::lock_guard<std::mutex> lock(hidlhost::processMutex(hidlhost::ProcessLock::kProxies));
        if (mGeneration != hidlhost::generation()) {
            mReceived = 0;  // the parent's count
            older = std::exchange(mPeer, peer);
            mGeneration.store(hidlhost::generation(), std::memory_order_release);
        }
    }
    peer->adopted(this, held ? 1 : 0);
}

void BpHwBinder::setKnownAs(const std::string& interface) {
    if (isKnownAs(interface.c_str())) return;
    std::lock_guard<std::mutex> lock(hidlhost::processMutex(hidlhost::ProcessLock::kProxies));
    mKnownAs.push_back(interface);
}

bool BpHwBinder::isKnownAs(const char* interface) {
    std::lock_guard<std::mutex> lock(hidlhost::processMutex(hidlhost::ProcessLock::kProxies));
    return std::find(mKnownAs.begin(), mKnownAs.end(), interface) != mKnownAs.end();
}

void BpHwBinder::onLastStrongRef(const void*) {
    std::vector<Obituary> dropped;
    {
        std::lock_guard<std::mutex> lock(hidlhost::processMutex(hidlhost::ProcessLock::kProxies));
        dropped.swap(mObituaries);
    }
    if (mGeneration == hidlhost::generation()) mPeer->proxyGone(this);
}

status_t BpHwBinder::transact(uint32_t code, const Parcel& data, Parcel* reply, uint32_t flags,
                              TransactCallback callback) {
    status_t status = peer()->call(mId, code, data, reply, flags);
    if (status == OK && callback != nullptr && reply != nullptr) callback(*reply);
    return status;
}

status_t BpHwBinder::linkToDeath(const sp<DeathRecipient>& recipient, void* cookie, uint32_t) {
    if (recipient == nullptr) return BAD_VALUE;
    const hidlhost::UnderForeignLock locked;
    // Without the connection that ends with the process its death would go unnoticed.
    const status_t status = peer()->reach();
    if (status != OK) return status;
    hidlhost::Watcher::get().startDeferred();
    std::lock_guard<std::mutex> lock(hidlhost::processMutex(hidlhost::ProcessLock::kProxies));
    if (mObituariesSent) return DEAD_OBJECT;
    mObituaries.push_back({recipient, cookie});
    return OK;
}

status_t BpHwBinder::unlinkToDeath(const wp<DeathRecipient>& recipient, void* cookie, uint32_t,
                                   wp<DeathRecipient>* outRecipient) {
    const hidlhost::UnderForeignLock locked;
    sp<DeathRecipient> dropped;
    std::lock_guard<std::mutex> lock(hidlhost::processMutex(hidlhost::ProcessLock::kProxies));
    if (mObituariesSent) return DEAD_OBJECT;
    for (auto obituary = mObituaries.begin(); obituary != mObituaries.end(); ++obituary) {
        bool matches = recipient == nullptr ? obituary->cookie == cookie
                                            : recipient == obituary->recipient;
        if (!matches) continue;
        dropped = obituary->recipient;
        if (outRecipient != nullptr) *outRecipient = dropped;
        mObituaries.erase(obituary);
        return OK;
    }
    return NAME_NOT_FOUND;
}

void BpHwBinder::sendObituary() {
    std::vector<Obituary> obituaries;
    {
        std::lock_guard<std::mutex> lock(hidlhost::processMutex(hidlhost::ProcessLock::kProxies));
        if (mObituariesSent) return;
        mObituariesSent = true;
        obituaries.swap(mObituaries);
    }
    for (const Obituary& obituary : obituaries) obituary.recipient->binderDied(this);
}

BpHwRefBase::BpHwRefBase(const sp<IBinder>& remote) : mRemote(remote) {}
BpHwRefBase::~BpHwRefBase() = default;

IInterface::IInterface() = default;
IInterface::~IInterface() = default;

sp<IBinder> IInterface::asBinder(const IInterface* interface) {
    if (interface == nullptr) return nullptr;
    return const_cast<IInterface*>(interface)->onAsBinder();
}

sp<IBinder> IInterface::asBinder(const sp<IInterface>& interface) {
    return asBinder(interface.get());
}

}  // namespace hardware
}  // namespace android
