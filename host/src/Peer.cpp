#define LOG_TAG "hidlhost"

#include "Peer.h"

#include <algorithm>
#include <cerrno>
#include <cstring>

#include <fcntl.h>
#include <log/log.h>
#include <sys/socket.h>
#include <unistd.h>

#include "Node.h"
#include "NodeMapper.h"
#include "Registry.h"
#include "Settings.h"
#include "Socket.h"
#include "Threads.h"
#include "Trace.h"
#include "Watcher.h"

using android::BAD_VALUE;
using android::DEAD_OBJECT;
using android::OK;
using android::sp;
using android::status_t;
using android::base::unique_fd;
using android::hardware::BpHwBinder;
using android::hardware::IBinder;
using android::hardware::Parcel;

namespace hidlhost {
namespace {

/** Complains about a service that does not answer, and gives up where that is configured. */
class HangWatch final : public Patience {
  public:
    HangWatch(const Parcel* data, uint32_t code) : mData(data), mCode(code) {}

    bool waitOn(int socket) override {
        const Settings& settings = Settings::get();
        mWaited += mStep == 0 ? settings.firstWaitMs : mStep;
        if (mWaited >= mNextLine) {
            mInterval *= 2;
            mNextLine += mInterval;
            ALOGW("%s has not answered call %u for %u ms",
                  mData == nullptr ? "a process" : Codec::interfaceOf(*mData), mCode, mWaited);
        }
        uint32_t next = mNextLine - mWaited;
        if (settings.callTimeoutMs != 0) {
            if (mWaited >= settings.callTimeoutMs) return false;
            next = std::min(next, settings.callTimeoutMs - mWaited);
        }
        mStep = next;
        setTimeouts(socket, mStep);
        return true;
    }

    /** Leaves the socket as it was found. */
    void done(int socket) const {
        if (mStep != 0) setTimeouts(socket, Settings::get().firstWaitMs);
    }

  private:
    const Parcel* mData;
    const uint32_t mCode;
    uint32_t mWaited = 0;
    uint32_t mStep = 0;
    uint32_t mInterval = 1000;
    uint32_t mNextLine = 1000;
};

constexpr size_t kMaxIdle = 15;  // and the one used last

}  // namespace

Peer::Peer(std::shared_ptr<Node> node, std::string name)
        : mNode(std::move(node)), mName(std::move(name)) {}

Peer::~Peer() {
    if (!mNode->inherited()) return;
    // Their numbers are those of other files in this process.
    for (auto& socket : mSockets) (void)socket.second.release();
    if (mLiveness != nullptr) (void)mLiveness->release();
}

status_t Peer::open(uint32_t role, unique_fd* socket) {
    if (mDead || mNode->dead() || mNode->inherited()) return DEAD_OBJECT;
    if (registry::directory().empty()) return android::PERMISSION_DENIED;
    status_t result = connectTo(registry::socketPath(mName), Settings::get().firstWaitMs, socket);
    if (result != OK) {
        if (result == -ECONNREFUSED || result == -ENOENT) return DEAD_OBJECT;
        ALOGE("cannot connect to %s: %s", mName.c_str(), strerror(-result));
        return result == -EAGAIN ? android::TIMED_OUT : result;
    }
    std::string names = mNode->name();
    names += '\0';
    names += mName;
    names += '\0';
    MessageHeader header = {};
    header.kind = kHello;
    header.code = role;
    Encoded hello;
    Codec::encodePlain(&header, names.data(), names.size(), &hello);
    return sendMessage(*socket, hello, nullptr);
}

status_t Peer::connect(uint32_t role, int* socket) {
    unique_fd connected;
    const status_t status = open(role, &connected);
    if (status != OK) return status;
    std::lock_guard<std::mutex> lock(mMutex);
    if (mNode->dead()) return DEAD_OBJECT;
    *socket = connected.get();
    mSockets[*socket] = std::move(connected);
    return OK;
}

status_t Peer::take(bool fresh, Use* use) {
    if (mDead || mNode->inherited()) return DEAD_OBJECT;
    if (!fresh) {
        use->fresh = false;
        use->socket = mLast.exchange(-1);
        if (use->socket >= 0) return OK;
        std::lock_guard<std::mutex> lock(mMutex);
        if (!mIdle.empty()) {
            use->socket = mIdle.back();
            mIdle.pop_back();
            return OK;
        }
    }
    use->fresh = true;
    return connect(kCalls, &use->socket);
}

void Peer::give(int socket) {
    int older = mLast.exchange(socket);
    if (mDead) {
        // died() has either seen the socket or left it to this.
        socket = mLast.exchange(-1);
        if (socket >= 0) discard(socket);
    }
    if (older < 0) return;
    {
        std::lock_guard<std::mutex> lock(mMutex);
        if (!mDead && mIdle.size() < kMaxIdle) {
            mIdle.push_back(older);
            return;
        }
    }
    discard(older);
}

void Peer::discard(int socket) {
    std::lock_guard<std::mutex> lock(mMutex);
    mSockets.erase(socket);
}

/** Nothing has reached the peer when a first packet fails, so an old connection's end is no harm.
 */
status_t Peer::send(const Encoded& message, Patience* patience, Use* use) {
    for (bool fresh = false;; fresh = true) {
        status_t status = take(fresh, use);
        if (status != OK) return status;
        status = sendMessage(use->socket, message, patience);
        if (status == OK) return OK;
        discard(use->socket);
        if (status != DEAD_OBJECT || use->fresh) return status;
    }
}

status_t Peer::sendOneway(const Encoded& message, Patience* patience,
                          const std::vector<sp<IBinder>>& proxies) {
    std::lock_guard<std::mutex> lock(mOnewayMutex);
    for (;;) {
        bool fresh = mOneway < 0;
        if (fresh) {
            status_t status = connect(kOneway, &mOneway);
            if (status != OK) return status;
            mHandedOver = std::make_shared<HandedOver>();
            watchHandedOver(mOneway, mHandedOver);
        }
        if (!proxies.empty()) {
            std::lock_guard<std::mutex> handing(mHandedOver->mutex);
            mHandedOver->proxies.push_back(proxies);
        }
        status_t status = sendMessage(mOneway, message, patience);
        if (status == OK) return OK;
        discard(mOneway);
        mOneway = -1;
        if (status != DEAD_OBJECT || fresh) return status;
    }
}

/** Lets the proxies of a oneway call go when the peer says that it has taken them over. */
void Peer::watchHandedOver(int socket, const std::shared_ptr<HandedOver>& handedOver) {
    auto watched = std::make_shared<unique_fd>(fcntl(socket, F_DUPFD_CLOEXEC, 0));
    if (!watched->ok()) return;
    Watcher::get().add(*watched, [handedOver, watched] {
        MessageHeader header;
        ssize_t size = recv(*watched, &header, sizeof(header), MSG_DONTWAIT);
        if (size < 0 && (errno == EAGAIN || errno == EINTR)) return true;
        bool good = size == sizeof(header) && header.magic == kMagic && header.kind == kReceived;
        std::deque<std::vector<sp<IBinder>>> released;
        {
            std::lock_guard<std::mutex> lock(handedOver->mutex);
            if (!good) {
                released.swap(handedOver->proxies);
            } else if (!handedOver->proxies.empty()) {
                released.push_back(std::move(handedOver->proxies.front()));
                handedOver->proxies.pop_front();
            }
        }
        Watcher::get().post([released = std::move(released)]() mutable { released.clear(); });
        return good;
    });
}

status_t Peer::call(uint64_t id, uint32_t code, const Parcel& data, Parcel* reply, uint32_t flags) {
    if (mDead || mNode->inherited()) return DEAD_OBJECT;
    const bool oneway = (flags & IBinder::FLAG_ONEWAY) != 0;
    Trace trace(false, data, code, oneway);

    MessageHeader header = {};
    header.kind = kCall;
    header.object = id;
    header.code = code;
    if (oneway) {
        header.flags = kFlagOneway;
    } else {
        ThreadState& thread = threadState();
        if (thread.chain == 0) thread.chain = mNode->newChain();
        header.chain = thread.chain;
    }

    Encoded encoded;
    NodeMapper mapper(*mNode, mName);
    HangWatch watch(&data, code);
    status_t status = Codec::encode(data, &header, &mapper, &encoded);
    if (status != OK) {
        mapper.takeBack();
        trace.finish(nullptr, status);
        return status;
    }
    if (oneway) {
        if (!mapper.proxies().empty()) Codec::setFlags(kFlagOneway | kFlagWantsReceived, &encoded);
        status = sendOneway(encoded, &watch, mapper.proxies());
        if (status != OK) mapper.takeBack();
        Watcher::get().startDeferred();
        trace.finish(nullptr, status);
        return status;
    }

    Use use;
    status = send(encoded, &watch, &use);
    if (status != OK) {
        Watcher::get().startDeferred();
        mapper.takeBack();
        trace.finish(nullptr, status);
        return status;
    }
    Watcher::get().startDeferred();
    Parcel unwanted;
    Parcel* result = reply == nullptr ? &unwanted : reply;
    BlockPtr block(Block::take());
    status = block ? receiveMessage(use.socket, block.get(), &watch) : android::NO_MEMORY;
    if (status == OK) {
        MessageHeader answer;
        memcpy(&answer, block->bytes, sizeof(answer));
        status =
                answer.kind == kReply ? Codec::parse(std::move(block), &mapper, result) : BAD_VALUE;
        if (status == OK && (answer.flags & kFlagWantsReceived) != 0) {
            if (!sendReceived(use.socket)) status = DEAD_OBJECT;
        }
        if (status == OK) {
            watch.done(use.socket);
            give(use.socket);
            status = static_cast<status_t>(answer.code);
            trace.finish(result, status);
            return status;
        }
    }
    // A process that has just died holds none of this one's objects any more, sent back or not.
    if (status == BAD_VALUE && mDead) status = DEAD_OBJECT;
    if (status == BAD_VALUE) {
        ALOGE("malformed answer of %s; closed the connection", Codec::interfaceOf(data));
        status = android::FAILED_TRANSACTION;
    }
    discard(use.socket);
    trace.finish(nullptr, status);
    return status;
}

status_t Peer::acquire(uint64_t id, bool confirmed) {
    MessageHeader header = {};
    header.kind = kAcquire;
    header.object = id;
    if (confirmed) header.flags = kFlagWantsAnswer;
    Encoded encoded;
    Codec::encodePlain(&header, nullptr, 0, &encoded);
    HangWatch watch(nullptr, 0);
    Use use;
    status_t status = send(encoded, &watch, &use);
    if (status != OK) return status;
    if (confirmed) {
        BlockPtr block(Block::take());
        status = block ? receiveMessage(use.socket, block.get(), &watch) : android::NO_MEMORY;
        MessageHeader answer = {};
        if (status == OK) memcpy(&answer, block->bytes, sizeof(answer));
        if (status == OK && answer.kind != kReply) status = BAD_VALUE;
        if (status != OK) {
            discard(use.socket);
            return status;
        }
        status = static_cast<status_t>(answer.code);
        watch.done(use.socket);
    }
    give(use.socket);
    return status;
}

status_t Peer::watch() {
    std::lock_guard<std::mutex> lock(mLivenessMutex);
    if (mDead) return DEAD_OBJECT;
    if (mLiveness != nullptr) return OK;
    auto socket = std::make_shared<unique_fd>();
    status_t status = open(kLiveness, socket.get());
    if (status != OK) return status;
    mLiveness = socket;
    auto self = shared_from_this();
    // The first call takes less time when the thread starts while the call is under way.
    Watcher::get().addDeferred(*socket, [self, socket] {
        char byte;
        ssize_t size = recv(*socket, &byte, sizeof(byte), MSG_DONTWAIT);
        if (size > 0 || (size < 0 && (errno == EAGAIN || errno == EINTR))) return true;
        {
            std::lock_guard<std::mutex> ending(self->mLivenessMutex);
            self->mLiveness = nullptr;
        }
        self->died();
        return false;
    });
    return OK;
}

void Peer::died() {
    std::vector<sp<BpHwBinder>> proxies;
    std::vector<android::wp<BpHwBinder>> weak;
    {
        std::lock_guard<std::mutex> lock(mMutex);
        if (mDead.exchange(true)) return;
        int last = mLast.exchange(-1);
        if (last >= 0) mIdle.push_back(last);
        for (int socket : mIdle) {
            mSockets.erase(socket);
        }
        mIdle.clear();
        for (const auto& proxy : mProxies) weak.push_back(proxy.second);
        weak.insert(weak.end(), mOlderProxies.begin(), mOlderProxies.end());
    }
    {
        std::lock_guard<std::mutex> lock(mOnewayMutex);
        if (mOneway >= 0) discard(mOneway);
        mOneway = -1;
    }
    for (const auto& proxy : weak) {
        sp<BpHwBinder> strong = proxy.promote();
        if (strong != nullptr) proxies.push_back(std::move(strong));
    }
    weak.clear();
    mNode->objects().releaseAll(mName);
    mNode->forget(mName);
    Watcher::get().post([proxies = std::move(proxies)]() mutable {
        for (const auto& proxy : proxies) proxy->sendObituary();
        proxies.clear();
    });
}

void Peer::cut() {
    {
        std::lock_guard<std::mutex> lock(mMutex);
        for (const auto& socket : mSockets) shutdown(socket.first, SHUT_RDWR);
    }
    {
        std::lock_guard<std::mutex> lock(mLivenessMutex);
        if (mLiveness != nullptr) shutdown(*mLiveness, SHUT_RDWR);
    }
    died();
}

sp<BpHwBinder> Peer::proxy(uint64_t id, uint32_t count) {
    bool reachable = watch() != DEAD_OBJECT;
    sp<BpHwBinder> proxy;
    {
        std::lock_guard<std::mutex> lock(mMutex);
        auto found = mProxies.find(id);
        if (found != mProxies.end()) proxy = found->second.promote();
        if (proxy == nullptr) {
            proxy = new BpHwBinder(shared_from_this(), id);
            mProxies[id] = proxy;
        }
        proxy->mReceived += count;
    }
    if (!reachable) {
        died();
        proxy->sendObituary();
    }
    return proxy;
}

void Peer::adopted(BpHwBinder* proxy, uint32_t count) {
    {
        std::lock_guard<std::mutex> lock(mMutex);
        const auto found = mProxies.find(proxy->id());
        if (found == mProxies.end()) {
            mProxies[proxy->id()] = proxy;
        } else if (found->second != proxy) {
            mOlderProxies.emplace_back(proxy);
        }
        proxy->mReceived += count;
    }
    if (count != 0) return;
    // As the proxy may be in use under any lock, its recipients are called elsewhere.
    Watcher::get().post([dead = sp<BpHwBinder>(proxy)] { dead->sendObituary(); });
}

void Peer::proxyGone(BpHwBinder* proxy) {
    uint32_t count;
    android::wp<BpHwBinder> weak;
    {
        std::lock_guard<std::mutex> lock(mMutex);
        count = proxy->mReceived;
        auto found = mProxies.find(proxy->id());
        if (found != mProxies.end() && found->second == proxy) {
            weak = found->second;
            mProxies.erase(found);
        }
    }
    if (count == 0 || mDead || mNode->inherited()) return;
    std::lock_guard<std::mutex> lock(mLivenessMutex);
    if (mLiveness == nullptr) return;
    mReleases.emplace_back(proxy->id(), count);
    while (!mReleases.empty()) {
        MessageHeader header = {};
        header.magic = kMagic;
        header.kind = kRelease;
        header.object = mReleases.back().first;
        header.code = mReleases.back().second;
        // What a busy peer does not take now goes with the next release.
        if (::send(*mLiveness, &header, sizeof(header), MSG_NOSIGNAL | MSG_DONTWAIT) < 0) break;
        mReleases.pop_back();
    }
}

}  // namespace hidlhost
