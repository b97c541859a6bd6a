#define LOG_TAG "hidlhost"

#include "Peer.h"

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <cstring>
#include <optional>

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

/** Complains about a service that does not answer, and gives up if that is configured. */
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

/** The pause before a busy peer is tried again. */
constexpr uint32_t kBusyMs = 100;
constexpr size_t kMaxIdle = 15;  // and the one used last

}  // namespace

Peer::Peer(std::shared_ptr<Node> node, std::string name)
        : mNode(std::move(node)), mName(std::move(name)) {}

Peer::~Peer() {
    if (!mNode->inherited()) return;
    // Their numbers are those of other files in this process.
    for (auto& socket : mSockets) (void)socket.second.release();
    if (mEvents != nullptr) (void)mEvents->socket.release();
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

status_t Peer::connect(int* socket) {
    unique_fd connected;
    const status_t status = open(kCalls, &connected);
    if (status != OK) return status;
    std::lock_guard<std::mutex> lock(mMutex);
    if (mNode->dead()) return DEAD_OBJECT;
    *socket = connected.get();
    mSockets[*socket] = std::move(connected);
    return OK;
}

void Peer::prepare() {
    if (mPrepared.exchange(true)) return;
    int socket;
    // Whoever calls finds out why there is none.
    if (connect(&socket) == OK) give(socket);
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
    return connect(&use->socket);
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

status_t Peer::sendEvent(const Encoded& message, Patience* patience, Events* events) {
    const status_t status = sendMessage(events->socket, message, patience, Wait::kTryFirst);
    if (status != OK && status != DEAD_OBJECT && message.size > kPacketSize) {
        // Some of the packets may be on their way already, and nothing can follow them.
        shutdown(events->socket, SHUT_RDWR);
    }
    return status;
}

namespace {

uint32_t eventWaitMs() {
    const uint32_t limit = Settings::get().callTimeoutMs;
    return limit == 0 ? kClientMs : std::min(limit, kClientMs);
}

}  // namespace

/**
 * The peer accepts what it has space for. It is asked now and then only: as much as it is not asked
 * about is accepted anyway.
 */
status_t Peer::sendOneway(const MessageHeader& header, Encoded* message, NodeMapper* mapper) {
    status_t status = reach();
    // Its thread takes the answers.
    Watcher::get().startDeferred();
    bool sent = false;
    if (status == OK) {
        std::optional<WithoutPlace> outside;
        std::lock_guard<std::mutex> lock(mSending);
        const std::shared_ptr<Events> to = events();
        status = to == nullptr ? DEAD_OBJECT
                               : sendOnewayTo(to.get(), header, message, mapper, &outside, &sent);
    }
    if (!sent) mapper->takeBack();
    flushReleases();
    return status;
}

status_t Peer::sendOnewayTo(Events* to, const MessageHeader& header, Encoded* message,
                            NodeMapper* mapper, std::optional<WithoutPlace>* outside, bool* sent) {
    const size_t bytes = TransactionSpace::sizeOf(header);
    const bool asks = mUnaskedBytes + bytes > kMaxUnaskedBytes || mUnaskedCalls == kMaxUnaskedCalls;
    const bool handsOver = !mapper->proxies().empty();
    uint32_t flags = kFlagOneway;
    if (asks) flags |= kFlagWantsAnswer;
    if (handsOver) flags |= kFlagWantsReceived;
    if (flags != kFlagOneway) Codec::setFlags(flags, message);
    {
        std::lock_guard<std::mutex> lock(to->mutex);
        // A peer that has let this node wait in vain is not waited for again.
        if (to->asked) return android::FAILED_TRANSACTION;
        to->asked = asks;
        to->askedHandsOver = asks && handsOver;
        if (handsOver) to->handedOver.push_back(mapper->proxies());
    }
    // For the message and its answer together.
    std::chrono::steady_clock::time_point end;
    if (asks) end = std::chrono::steady_clock::now() + std::chrono::milliseconds(eventWaitMs());
    // `outside` ends after mSending is let go: who has the place may want to send as well.
    SendPatience patience(eventWaitMs(), outside);
    const status_t status = sendEvent(*message, &patience, to);
    std::unique_lock<std::mutex> lock(to->mutex);
    if (status != OK) {
        to->asked = false;
        if (handsOver && !to->handedOver.empty()) to->handedOver.pop_back();
        return status == android::TIMED_OUT ? android::FAILED_TRANSACTION : status;
    }
    *sent = true;
    mUnaskedBytes = asks ? 0 : mUnaskedBytes + bytes;
    mUnaskedCalls = asks ? 0 : mUnaskedCalls + 1;
    if (!asks) return OK;
    const auto answered = [to] { return !to->asked || to->ended; };
    if (!answered()) {
        lock.unlock();
        if (!*outside) outside->emplace();
        lock.lock();
        to->changed.wait_until(lock, end, answered);
    }
    if (to->asked) return to->ended ? DEAD_OBJECT : android::FAILED_TRANSACTION;
    *sent = to->answer == OK;
    return to->answer;
}

std::shared_ptr<Peer::Events> Peer::events() {
    std::lock_guard<std::mutex> lock(mMutex);
    return mEvents;
}

/** On the watching thread. */
bool Peer::readEvents(const std::shared_ptr<Events>& events) {
    for (;;) {
        MessageHeader header;
        const ssize_t size = recv(events->socket, &header, sizeof(header), MSG_DONTWAIT);
        if (size < 0 && errno == EINTR) continue;
        if (size < 0 && errno == EAGAIN) return true;
        const bool good = size == sizeof(header) && header.magic == kMagic;
        std::deque<std::vector<sp<IBinder>>> released;
        {
            std::lock_guard<std::mutex> lock(events->mutex);
            if (good && header.kind == kReceived) {
                if (!events->handedOver.empty()) {
                    released.push_back(std::move(events->handedOver.front()));
                    events->handedOver.pop_front();
                }
            } else if (good && header.kind == kReply) {
                events->answer = static_cast<status_t>(header.code);
                if (events->asked && events->askedHandsOver && events->answer != OK) {
                    released.push_back(std::move(events->handedOver.back()));
                    events->handedOver.pop_back();
                }
                events->asked = false;
            } else {
                events->ended = true;
                released.swap(events->handedOver);
            }
            events->changed.notify_all();
        }
        if (!released.empty()) {
            Watcher::get().post([released = std::move(released)]() mutable { released.clear(); });
        }
        if (!events->ended) continue;
        {
            std::lock_guard<std::mutex> lock(mMutex);
            if (mEvents == events) mEvents = nullptr;
        }
        died();
        return false;
    }
}

/** Sends what it can without waiting. Whoever sends something else meanwhile does so afterwards. */
void Peer::flushReleases() {
    for (;;) {
        std::unique_lock<std::mutex> sending(mSending, std::try_to_lock);
        if (!sending.owns_lock()) return;
        std::shared_ptr<Events> to;
        std::vector<std::pair<uint64_t, uint32_t>> releases;
        {
            std::lock_guard<std::mutex> lock(mMutex);
            if (mReleases.empty() || mEvents == nullptr) return;
            to = mEvents;
            releases.swap(mReleases);
        }
        while (!releases.empty()) {
            MessageHeader header = {};
            header.magic = kMagic;
            header.kind = kRelease;
            header.object = releases.back().first;
            header.code = releases.back().second;
            if (::send(to->socket, &header, sizeof(header), MSG_NOSIGNAL | MSG_DONTWAIT) < 0) {
                break;
            }
            releases.pop_back();
        }
        if (releases.empty()) continue;
        // A busy peer takes the rest later.
        {
            std::lock_guard<std::mutex> lock(mMutex);
            mReleases.insert(mReleases.end(), releases.begin(), releases.end());
        }
        Watcher::get().after(kBusyMs, [self = shared_from_this()] {
            if (!self->mDead) self->flushReleases();
        });
        return;
    }
}

/** A call back goes to the thread that waits for the answer to what this thread serves. */
status_t Peer::callWithin(const Conversation& conversation, const Encoded& message,
                          Patience* patience, BlockPtr* reply) {
    const int socket = conversation.caller->socket;
    if (conversation.accepted) setTimeouts(socket, Settings::get().firstWaitMs);
    status_t status = sendMessage(socket, message, patience);
    if (status == OK) status = awaitReply(socket, patience, reply);
    if (conversation.accepted) setTimeouts(socket, kClientMs);
    return status;
}

/** Serves what comes back to this thread until the reply comes. */
status_t Peer::awaitReply(int socket, Patience* patience, BlockPtr* reply) {
    std::optional<Caller> caller;
    for (;;) {
        reply->reset(Block::take());
        if (!*reply) return android::NO_MEMORY;
        const status_t status = receiveMessage(socket, reply->get(), patience);
        MessageHeader header = {};
        if ((*reply)->size >= sizeof(header)) memcpy(&header, (*reply)->bytes, sizeof(header));
        if (status != OK && status != -EMFILE && status != android::NO_MEMORY) return status;
        if (header.kind == kReply) {
            return status == android::NO_MEMORY ? android::FAILED_TRANSACTION : status;
        }
        if (header.kind == kReceived && caller) {
            caller->handedOver.clear();
            continue;
        }
        if (header.kind != kCall || (header.flags & kFlagOneway) != 0) return BAD_VALUE;
        if (status != OK) {
            if (!sendStatus(socket, status, kFlagRefused)) return DEAD_OBJECT;
            continue;
        }
        if (!caller) {
            caller.emplace();
            caller->socket = socket;
            caller->peer = mName;
            peerIsTrusted(socket, &caller->pid, &caller->uid);
        }
        if (!mNode->server().serveWithin(&*caller, std::move(*reply))) return DEAD_OBJECT;
    }
}

/** The status of the transport; `outcome` is that of the reply. */
status_t Peer::takeReply(int socket, BlockPtr block, NodeMapper* mapper, Parcel* result,
                         status_t* outcome) {
    MessageHeader answer;
    memcpy(&answer, block->bytes, sizeof(answer));
    const size_t bytes = TransactionSpace::sizeOf(answer);
    const bool fits = mNode->server().space().take(bytes, false, &block->share);
    const status_t status = Codec::parse(std::move(block), mapper, result);
    if (status != OK) return status;
    if ((answer.flags & kFlagWantsReceived) != 0 && !sendReceived(socket)) return DEAD_OBJECT;
    if ((answer.flags & kFlagRefused) != 0) mapper->takeBack();
    *outcome = static_cast<status_t>(answer.code);
    if (!fits) {
        ALOGW("a reply of %zu bytes fails: too much is on its way to this process", bytes);
        result->freeData();
        *outcome = android::FAILED_TRANSACTION;
    }
    return OK;
}

status_t Peer::call(uint64_t id, uint32_t code, const Parcel& data, Parcel* reply, uint32_t flags) {
    if (mDead || mNode->inherited()) return DEAD_OBJECT;
    const bool oneway = (flags & IBinder::FLAG_ONEWAY) != 0;
    Trace trace(false, data, code, oneway);
    ThreadState& thread = threadState();

    MessageHeader header = {};
    header.kind = kCall;
    header.object = id;
    header.code = code;
    if (oneway) {
        header.flags = kFlagOneway;
    } else {
        if (thread.chain == 0) thread.chain = mNode->newChain();
        header.chain = thread.chain;
    }

    Encoded encoded;
    NodeMapper mapper(*mNode, mName);
    HangWatch watch(&data, code);
    status_t status = Codec::encode(data, &header, &mapper, &encoded);
    if (status == OK && TransactionSpace::sizeOf(header) > TransactionSpace::limit(oneway)) {
        ALOGE("%s: call %u of %zu bytes is larger than a transaction may be",
              Codec::interfaceOf(data), code, TransactionSpace::sizeOf(header));
        status = android::FAILED_TRANSACTION;
    }
    if (status != OK) {
        mapper.takeBack();
        trace.finish(nullptr, status);
        return status;
    }
    if (oneway) {
        status = sendOneway(header, &encoded, &mapper);
        trace.finish(nullptr, status);
        return status;
    }

    Parcel unwanted;
    Parcel* result = reply == nullptr ? &unwanted : reply;
    BlockPtr block;
    Conversation* conversation = thread.conversation;
    while (conversation != nullptr && !(conversation->open && conversation->node == mNode.get() &&
                                        conversation->caller->peer == mName)) {
        conversation = conversation->outer;
    }
    Use use = {-1, false};
    if (conversation != nullptr) {
        use.socket = conversation->caller->socket;
        Watcher::get().startDeferred();
        status = callWithin(*conversation, encoded, &watch, &block);
    } else {
        status = send(encoded, &watch, &use);
        Watcher::get().startDeferred();
        if (status != OK) {
            mapper.takeBack();
            trace.finish(nullptr, status);
            if (status == DEAD_OBJECT && events() == nullptr) died();
            return status;
        }
        status = awaitReply(use.socket, &watch, &block);
    }
    status_t outcome = OK;
    if (status == OK) {
        status = takeReply(use.socket, std::move(block), &mapper, result, &outcome);
    }
    if (status == OK) {
        watch.done(use.socket);
        if (conversation == nullptr) give(use.socket);
        trace.finish(result, outcome);
        return outcome;
    }
    // A process that has just died holds none of this one's objects any more, sent back or not.
    if (status == BAD_VALUE && mDead) status = DEAD_OBJECT;
    if (status == BAD_VALUE) {
        ALOGE("malformed answer of %s; closed the connection", Codec::interfaceOf(data));
        status = android::FAILED_TRANSACTION;
    }
    if (conversation == nullptr) {
        discard(use.socket);
    } else {
        // The next message on the connection would be taken for this one's answer.
        conversation->open = false;
        shutdown(use.socket, SHUT_RDWR);
    }
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
    if (!confirmed) {
        status_t status = watch();
        if (status != OK) return status;
        {
            std::optional<WithoutPlace> outside;
            std::lock_guard<std::mutex> lock(mSending);
            const std::shared_ptr<Events> to = events();
            SendPatience patience(eventWaitMs(), &outside);
            status = to == nullptr ? DEAD_OBJECT : sendEvent(encoded, &patience, to.get());
        }
        flushReleases();
        return status;
    }
    HangWatch watch(nullptr, 0);
    Use use;
    status_t status = send(encoded, &watch, &use);
    if (status != OK) return status;
    BlockPtr block;
    status = awaitReply(use.socket, &watch, &block);
    if (status != OK) {
        discard(use.socket);
        return status;
    }
    MessageHeader answer;
    memcpy(&answer, block->bytes, sizeof(answer));
    watch.done(use.socket);
    give(use.socket);
    return static_cast<status_t>(answer.code);
}

status_t Peer::watch() {
    if (mDead) return DEAD_OBJECT;
    if (mWatched.load(std::memory_order_acquire)) return OK;
    std::lock_guard<std::mutex> opening(mOpening);
    if (mWatched.load(std::memory_order_relaxed)) return OK;
    auto opened = std::make_shared<Events>();
    const status_t status = open(kEvents, &opened->socket);
    if (status != OK) return status;
    {
        std::lock_guard<std::mutex> lock(mMutex);
        if (mDead || mNode->dead()) return DEAD_OBJECT;
        mEvents = opened;
    }
    auto self = shared_from_this();
    // The first call takes less time when the thread starts while the call is under way.
    Watcher::get().addDeferred(opened->socket, [self, opened] { return self->readEvents(opened); });
    // Not before: who finds the connection open relies on startDeferred() to start its watcher.
    mWatched.store(true, std::memory_order_release);
    return OK;
}

status_t Peer::reach() {
    const status_t status = watch();
    if (status == DEAD_OBJECT) died();
    return status;
}

void Peer::died() {
    std::vector<sp<BpHwBinder>> proxies;
    std::vector<android::wp<BpHwBinder>> weak;
    {
        std::lock_guard<std::mutex> lock(mMutex);
        if (mDead.exchange(true)) return;
        int last = mLast.exchange(-1);
        if (last >= 0) mIdle.push_back(last);
        for (int socket : mIdle) mSockets.erase(socket);
        mIdle.clear();
        for (const auto& proxy : mProxies) weak.push_back(proxy.second);
        weak.insert(weak.end(), mOlderProxies.begin(), mOlderProxies.end());
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
        if (mEvents != nullptr) shutdown(mEvents->socket, SHUT_RDWR);
    }
    died();
}

namespace {

/** The caller may hold any lock, and recipients take locks of their own. */
void sendObituaryLater(sp<BpHwBinder> proxy) {
    Watcher::get().post([dead = std::move(proxy)] { dead->sendObituary(); });
}

}  // namespace

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
        sendObituaryLater(proxy);
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
    sendObituaryLater(proxy);
}

void Peer::proxyGone(BpHwBinder* proxy) {
    android::wp<BpHwBinder> weak;
    {
        std::lock_guard<std::mutex> lock(mMutex);
        auto found = mProxies.find(proxy->id());
        if (found != mProxies.end() && found->second == proxy) {
            weak = found->second;
            mProxies.erase(found);
        }
        if (proxy->mReceived == 0 || mDead || mNode->inherited()) return;
        mReleases.emplace_back(proxy->id(), proxy->mReceived);
    }
    flushReleases();
}

}  // namespace hidlhost
