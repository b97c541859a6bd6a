#define LOG_TAG "hidlhost"

#include "Node.h"

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <cinttypes>
#include <cstring>
#include <deque>
#include <optional>

#include <fcntl.h>
#include <log/log.h>
#include <sys/random.h>
#include <sys/resource.h>
#include <sys/socket.h>
#include <unistd.h>

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
using android::hardware::BHwBinder;
using android::hardware::BpHwBinder;
using android::hardware::IBinder;
using android::hardware::Parcel;

namespace hidlhost {
namespace {

/** Each has a thread. Liveness connections have none, and refusing one would look like a death. */
constexpr size_t kMaxServed = 1000;
constexpr size_t kMaxConnections = 16000;
/** How long a client may keep silent at first, or leave an answer unread. */
constexpr uint32_t kClientMs = 10000;
/** Grace for the liveness connection of a client whose other connections have ended. */
constexpr uint32_t kGraceMs = 1000;
constexpr size_t kMaxOnewayBytes = 64 * 1024 * 1024;

uint64_t randomNumber() {
    uint64_t number = 0;
    ssize_t size;
    do {
        size = getrandom(&number, sizeof(number), 0);
    } while (size < 0 && errno == EINTR);
    LOG_ALWAYS_FATAL_IF(size != sizeof(number), "no random numbers: %s", strerror(errno));
    return number;
}

std::string randomName() {
    char text[48];
    snprintf(text, sizeof(text), "%d-%016" PRIx64, static_cast<int>(getpid()), randomNumber());
    return text;
}

uint64_t chainPrefix() {
    return randomNumber() & 0xffffffffff;
}

}  // namespace

// Gate

void Gate::configure(size_t threads, bool callerJoins) {
    std::lock_guard<std::mutex> lock(mMutex);
    mThreads = std::max<size_t>(threads, 1);
    mCallerJoins = callerJoins;
    changed();
}

void Gate::join() {
    std::lock_guard<std::mutex> lock(mMutex);
    mJoined = true;
    changed();
}

void Gate::changed() {
    mLimit = mThreads - (mCallerJoins && !mJoined ? 1 : 0);
    mLeft.notify_all();
}

size_t Gate::capacity() {
    std::lock_guard<std::mutex> lock(mMutex);
    return mThreads;
}

bool Gate::tryEnter() {
    size_t running = mRunning.load();
    while (running < mLimit.load(std::memory_order_relaxed)) {
        if (mRunning.compare_exchange_weak(running, running + 1)) return true;
    }
    return false;
}

void Gate::waitAndEnter() {
    std::unique_lock<std::mutex> lock(mMutex);
    ++mWaiting;  // before the next look at mRunning; leave() does both the other way round
    mLeft.wait(lock, [this] { return tryEnter(); });
    --mWaiting;
}

void Gate::leave() {
    --mRunning;
    if (mWaiting == 0) return;
    std::lock_guard<std::mutex> lock(mMutex);
    mLeft.notify_one();
}

// Names for objects

/** Sees binders from one node's end of a connection to `peer`, a name that stays elsewhere. */
class NodeMapper final : public BinderMapper {
  public:
    NodeMapper(Node& node, const std::string& peer) : mNode(node), mPeer(peer) {}

    status_t encode(const sp<IBinder>& binder, ObjectRecord* record, std::string* name) override {
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

    status_t decode(const ObjectRecord& record, const std::string& name,
                    sp<IBinder>* binder) override {
        if (record.kind == kSendersBinder) {
            std::shared_ptr<Peer> peer = mNode.peer(mPeer);
            if (peer == nullptr) return BAD_VALUE;
            *binder = peer->proxy(record.value, 1);
            return OK;
        }
        if (record.kind == kReceiversBinder || name == mNode.name()) {
            *binder = mNode.object(record.value);
            return *binder == nullptr ? BAD_VALUE : OK;
        }
        std::shared_ptr<Peer> peer = mNode.peer(name);
        if (peer == nullptr) return BAD_VALUE;
        bool acquired = peer->acquire(record.value, true) == OK;
        *binder = peer->proxy(record.value, acquired ? 1 : 0);
        return OK;
    }

    /** The message did not go out. */
    void takeBack() {
        for (uint64_t id : mHeld) mNode.release(id, mPeer, 1);
        mHeld.clear();
    }

    /** Proxies that must stay until the receiver has taken over what they stand for. */
    std::vector<sp<IBinder>>& proxies() { return mProxies; }

  private:
    Node& mNode;
    const std::string& mPeer;
    std::vector<uint64_t> mHeld;
    std::vector<sp<IBinder>> mProxies;
};

// Node

Node::Node(std::string name)
        : mName(std::move(name)), mChainPrefix(chainPrefix()), mGeneration(generation()) {}

Node& Node::process() {
    return *onePerProcess<std::shared_ptr<Node>>(
            [] { return new std::shared_ptr<Node>(create()); });
}

std::shared_ptr<Node> Node::create() {
    return std::shared_ptr<Node>(new Node(randomName()));
}

uint64_t Node::newChain() {
    return mChainPrefix << 24 | (mNextChain++ & 0xffffff);
}

std::shared_ptr<Peer> Node::peer(const std::string& name) {
    std::lock_guard<std::mutex> lock(mMutex);
    std::shared_ptr<Peer>& peer = mPeers[name];
    if (peer == nullptr) {
        if (!registry::isNodeName(name)) {
            mPeers.erase(name);
            return nullptr;
        }
        peer = std::make_shared<Peer>(shared_from_this(), name);
    }
    return peer;
}

void Node::forget(const std::string& peer) {
    std::shared_ptr<Peer> gone;
    std::lock_guard<std::mutex> lock(mMutex);
    auto found = mPeers.find(peer);
    if (found == mPeers.end()) return;
    gone = std::move(found->second);
    mPeers.erase(found);
}

namespace {

/** The names of a process that ends in good order go with it. */
void withdrawAtExit() {
    static const bool registered = [] {
        // In a child this is the child's own node, which has no names until it makes some.
        return atexit([] { registry::withdrawNode(Node::process().name()); }) == 0;
    }();
    (void)registered;
}

}  // namespace

status_t Node::listen() {
    std::lock_guard<std::mutex> lock(mMutex);
    if (mDead) return DEAD_OBJECT;
    if (mListening) return OK;
    if (registry::directory().empty()) return android::PERMISSION_DENIED;
    std::string path = registry::socketPath(mName);
    int listener = listenAt(path);
    if (listener < 0) {
        ALOGE("cannot listen at %s: %s", path.c_str(), strerror(-listener));
        return listener;
    }
    auto self = shared_from_this();
    if (!startThread("hidl-accept", [self, listener] { self->accept(listener); })) {
        ALOGE("cannot start a thread");
        unlink(path.c_str());
        close(listener);
        return android::NO_MEMORY;
    }
    mListener = listener;
    mListening = true;
    withdrawAtExit();
    return OK;
}

status_t Node::hold(const sp<BHwBinder>& object, const std::string& holder, uint64_t* id) {
    status_t status = listen();
    if (status != OK) return status;
    std::lock_guard<std::mutex> lock(mMutex);
    if (mDead) return DEAD_OBJECT;
    uint64_t& number = mNumbers[object.get()];
    if (number == 0) number = mNextObject++;
    Object& entry = mObjects[number];
    entry.binder = object;
    ++entry.holders[holder];
    *id = number;
    return OK;
}

bool Node::holdAgain(uint64_t id, const std::string& holder) {
    std::lock_guard<std::mutex> lock(mMutex);
    auto found = mObjects.find(id);
    if (found == mObjects.end()) return false;
    ++found->second.holders[holder];
    return true;
}

void Node::release(uint64_t id, const std::string& holder, uint32_t count) {
    sp<BHwBinder> last;
    {
        std::lock_guard<std::mutex> lock(mMutex);
        auto found = mObjects.find(id);
        if (found == mObjects.end()) return;
        auto& holders = found->second.holders;
        auto held = holders.find(holder);
        if (held == holders.end()) return;
        held->second -= count;
        if (held->second > 0) return;
        holders.erase(held);
        if (!holders.empty()) return;
        last = std::move(found->second.binder);
        mNumbers.erase(last.get());
        mObjects.erase(found);
    }
    Watcher::get().post([last = std::move(last)]() mutable { last.clear(); });
}

void Node::releaseAll(const std::string& holder) {
    std::vector<sp<BHwBinder>> released;
    {
        std::lock_guard<std::mutex> lock(mMutex);
        for (auto object = mObjects.begin(); object != mObjects.end();) {
            auto& holders = object->second.holders;
            if (holders.erase(holder) == 0 || !holders.empty()) {
                ++object;
                continue;
            }
            released.push_back(std::move(object->second.binder));
            mNumbers.erase(released.back().get());
            object = mObjects.erase(object);
        }
    }
    if (released.empty()) return;
    Watcher::get().post([released = std::move(released)]() mutable { released.clear(); });
}

sp<BHwBinder> Node::object(uint64_t id) {
    std::lock_guard<std::mutex> lock(mMutex);
    auto found = mObjects.find(id);
    return found == mObjects.end() ? nullptr : found->second.binder;
}

void Node::kill() {
    if (inherited()) return;
    std::unordered_map<uint64_t, Object> objects;
    std::unordered_map<std::string, std::shared_ptr<Peer>> peers;
    {
        std::lock_guard<std::mutex> lock(mMutex);
        mDead = true;
        if (mListener >= 0) shutdown(mListener, SHUT_RDWR);
        for (const auto& connection : mConnections) shutdown(connection->socket, SHUT_RDWR);
        objects.swap(mObjects);
        mNumbers.clear();
        peers.swap(mPeers);
    }
    for (const auto& peer : peers) peer.second->cut();
}

// Serving

namespace {

/** A quarter of the descriptors is left to files, handles and calls the other way. */
size_t mostConnections() {
    rlimit files;
    if (getrlimit(RLIMIT_NOFILE, &files) != 0) return kMaxConnections;
    return static_cast<size_t>(std::min<rlim_t>(kMaxConnections, files.rlim_cur / 4 * 3));
}

/** A descriptor that is given up to turn a client away when there are no others left. */
class Spare {
  public:
    Spare() { keep(); }
    ~Spare() {
        if (mFile >= 0) close(mFile);
    }
    Spare(const Spare&) = delete;
    Spare& operator=(const Spare&) = delete;

    /** Takes it back where somebody else has had it meanwhile. */
    void keep() {
        if (mFile < 0) mFile = open("/dev/null", O_RDONLY | O_CLOEXEC);
    }

    /** False where there is none, or somebody else was faster. */
    bool refuse(int listener) {
        if (mFile < 0) return false;
        close(mFile);
        int socket = accept4(listener, nullptr, nullptr, SOCK_CLOEXEC);
        if (socket >= 0) close(socket);
        mFile = -1;
        keep();
        return socket >= 0;
    }

  private:
    int mFile = -1;
};

}  // namespace

void Node::accept(int listener) {
    registry::sweep();
    Spare spare;
    // Clients that come and go at the limit do not fill the log.
    std::optional<std::chrono::steady_clock::time_point> complained;
    const auto complains = [&] {
        const auto now = std::chrono::steady_clock::now();
        if (complained && now - *complained < std::chrono::seconds(10)) return false;
        complained = now;
        return true;
    };
    for (;;) {
        // Before a client can have it: without it the next one would wait instead of being refused.
        spare.keep();
        int socket = accept4(listener, nullptr, nullptr, SOCK_CLOEXEC);
        if (socket < 0) {
            const int error = errno;
            if (mDead || error == EINVAL || error == EBADF) break;
            if (error == EINTR || error == ECONNABORTED) continue;
            if (complains()) ALOGE("refused a connection: %s", strerror(error));
            if (error != EMFILE || !spare.refuse(listener)) usleep(50000);
            continue;
        }
        auto connection = std::make_shared<Connection>();
        connection->socket = socket;
        if (!peerIsTrusted(socket, &connection->pid, &connection->uid)) {
            ALOGE("refused a connection of process %d, user %u", static_cast<int>(connection->pid),
                  connection->uid);
            close(socket);
            continue;
        }
        const size_t most = mostConnections();
        bool taken;
        {
            std::lock_guard<std::mutex> lock(mMutex);
            taken = !mDead && mConnections.size() < most;
            if (taken) mConnections.insert(connection);
        }
        if (!taken) {
            if (!mDead && complains()) {
                ALOGE("%zu connections are enough; refused one more", most);
            }
            close(socket);
            continue;
        }
        if (greet(connection)) continue;
        // Until the client says what it wants it costs no thread.
        auto self = shared_from_this();
        Watcher::get().once(socket, kClientMs, [self, connection](bool arrived) {
            if (!arrived || !self->greet(connection)) self->end(connection);
        });
    }
    close(listener);
}

/** Takes the connection out of the node's sight and closes it. */
void Node::drop(Connection* connection) {
    std::lock_guard<std::mutex> lock(mMutex);
    close(connection->socket);
    connection->socket = -1;
}

void Node::ended(const std::shared_ptr<Connection>& connection) {
    {
        std::lock_guard<std::mutex> lock(mMutex);
        mConnections.erase(connection);
        if (connection->peer.empty()) return;
        if (connection->role != kLiveness) --mServed;
        for (const auto& other : mConnections) {
            if (other->peer == connection->peer) return;
        }
    }
    // A client that has proxies has a liveness connection too, which may still be on its way.
    auto self = shared_from_this();
    Watcher::get().after(kGraceMs, [self, name = connection->peer] {
        {
            std::lock_guard<std::mutex> lock(self->mMutex);
            for (const auto& other : self->mConnections) {
                if (other->peer == name) return;
            }
            auto peer = self->mPeers.find(name);
            if (peer != self->mPeers.end() && !peer->second->dead()) return;
        }
        self->releaseAll(name);
    });
}

void Node::end(const std::shared_ptr<Connection>& connection) {
    connection->handedOver.clear();
    drop(connection.get());
    ended(connection);
}

/** Takes the hello and what follows from it; false where it has not come yet. Does not block. */
bool Node::greet(const std::shared_ptr<Connection>& connection) {
    constexpr size_t kLongest = 256;
    struct {
        MessageHeader header;
        char names[kLongest + 8];
    } hello = {};
    ssize_t size;
    do {
        size = recv(connection->socket, &hello, sizeof(hello), MSG_DONTWAIT | MSG_TRUNC);
    } while (size < 0 && errno == EINTR);
    if (size < 0 && (errno == EAGAIN || errno == EWOULDBLOCK)) return false;
    if (size <= 0) {
        end(connection);
        return true;
    }
    const MessageHeader& header = hello.header;
    const size_t length = header.dataSize;
    if (size < static_cast<ssize_t>(sizeof(header)) || header.magic != kMagic ||
        header.kind != kHello || length == 0 || length > kLongest ||
        hello.names[length - 1] != '\0' || header.recordCount != 0 || header.payloadSize != 0 ||
        header.descriptorCount != 0 || Codec::messageSize(header) != static_cast<uint64_t>(size)) {
        ALOGE("process %d does not speak this protocol; closed its connection",
              static_cast<int>(connection->pid));
        end(connection);
        return true;
    }
    const std::string peer = hello.names;
    const std::string wanted = peer.size() + 1 < length ? hello.names + peer.size() + 1 : "";
    if (wanted != mName || !registry::isNodeName(peer) || !welcome(connection, peer, header.code)) {
        end(connection);
    }
    return true;
}

/** Gives a connection its role; false where there is none or no room for it. */
bool Node::welcome(const std::shared_ptr<Connection>& connection, const std::string& peer,
                   uint32_t role) {
    if (role < kCalls || role > kLiveness) return false;
    {
        std::lock_guard<std::mutex> lock(mMutex);
        if (role != kLiveness) {
            if (mServed >= kMaxServed) {
                if (!mCrowded) {
                    ALOGE("%zu served connections are enough; refused one more", kMaxServed);
                }
                mCrowded = true;
                return false;
            }
            mCrowded = false;
            ++mServed;
        }
        connection->peer = peer;
        connection->role = role;
    }
    timeval limit = {};
    limit.tv_sec = kClientMs / 1000;
    setsockopt(connection->socket, SOL_SOCKET, SO_SNDTIMEO, &limit, sizeof(limit));
    auto self = shared_from_this();
    if (role == kLiveness) {
        Watcher::get().add(connection->socket, [self, connection](int socket) {
            return self->watchLiveness(connection, socket);
        });
        return true;
    }
    if (startThread("hidl-serve", [self, connection] { self->serve(connection); })) return true;
    ALOGE("no thread for one more client; refused it");
    return false;
}

void Node::serve(const std::shared_ptr<Connection>& connection) {
    if (connection->role == kOneway) {
        serveOneway(connection.get());
    } else {
        serveCalls(connection.get());
    }
    end(connection);
}

bool Node::watchLiveness(const std::shared_ptr<Connection>& connection, int socket) {
    for (;;) {
        MessageHeader header;
        ssize_t size = recv(socket, &header, sizeof(header), MSG_DONTWAIT | MSG_TRUNC);
        if (size < 0 && errno == EINTR) continue;
        if (size < 0 && errno == EAGAIN) return true;
        if (size == sizeof(header) && header.magic == kMagic && header.kind == kRelease &&
            Codec::messageSize(header) == sizeof(header)) {
            release(header.object, connection->peer, header.code);
            continue;
        }
        if (size > 0) {
            ALOGE("malformed message of process %d; closed its connection",
                  static_cast<int>(connection->pid));
        }
        {
            std::lock_guard<std::mutex> lock(mMutex);
            connection->socket = -1;  // the watcher closes it
            mConnections.erase(connection);
        }
        releaseAll(connection->peer);
        return false;
    }
}

namespace {

/** Whether a message that was not received well can be passed over. */
bool passOver(const Connection& connection, const Block& block, status_t status) {
    const int pid = static_cast<int>(connection.pid);
    if (status == BAD_VALUE) {
        ALOGE("malformed message of process %d; closed its connection", pid);
    }
    if (status != -EMFILE) return false;
    MessageHeader header;
    memcpy(&header, block.bytes, sizeof(header));
    ALOGE("no descriptors left for what call %u of process %d brings along", header.code, pid);
    if (connection.role == kOneway) return true;
    MessageHeader answer = {};
    answer.kind = kReply;
    answer.code = static_cast<uint32_t>(status);
    Encoded encoded;
    Codec::encodePlain(&answer, nullptr, 0, &encoded);
    return sendMessage(connection.socket, encoded, nullptr) == OK;
}

}  // namespace

void Node::serveCalls(Connection* connection) {
    for (;;) {
        BlockPtr block(Block::take());
        if (!block) return;
        status_t status = receiveMessage(connection->socket, block.get(), nullptr);
        if (status != OK && passOver(*connection, *block, status)) continue;
        if (status != OK || !handle(connection, std::move(block))) return;
    }
}

void Node::serveOneway(Connection* connection) {
    struct Queue {
        std::mutex mutex;
        std::condition_variable changed;
        std::deque<BlockPtr> blocks;
        size_t bytes = 0;
        bool closed = false;
        bool finished = false;
    };
    auto queue = std::make_shared<Queue>();
    auto self = shared_from_this();
    bool started = startThread("hidl-oneway", [self, queue, connection] {
        std::unique_lock<std::mutex> lock(queue->mutex);
        for (;;) {
            queue->changed.wait(lock, [&] { return queue->closed || !queue->blocks.empty(); });
            if (queue->blocks.empty()) break;
            BlockPtr block = std::move(queue->blocks.front());
            queue->blocks.pop_front();
            queue->bytes -= block->size;
            queue->changed.notify_all();
            lock.unlock();
            bool good = self->handle(connection, std::move(block));
            if (!good) shutdown(connection->socket, SHUT_RDWR);
            lock.lock();
        }
        queue->finished = true;
        queue->changed.notify_all();
    });
    if (!started) return;
    for (;;) {
        BlockPtr block(Block::take());
        if (!block) break;
        status_t status = receiveMessage(connection->socket, block.get(), nullptr);
        if (status != OK && passOver(*connection, *block, status)) continue;
        if (status != OK) break;
        // A queue of whole packets would be mostly air.
        BlockPtr kept(new Block);
        if (!kept->reserve(block->size)) break;
        memcpy(kept->bytes, block->bytes, block->size);
        kept->size = block->size;
        kept->descriptors.swap(block->descriptors);
        std::unique_lock<std::mutex> lock(queue->mutex);
        queue->changed.wait(lock, [&] { return queue->bytes < kMaxOnewayBytes; });
        queue->bytes += kept->size;
        queue->blocks.push_back(std::move(kept));
        queue->changed.notify_all();
    }
    std::unique_lock<std::mutex> lock(queue->mutex);
    queue->closed = true;
    queue->changed.notify_all();
    queue->changed.wait(lock, [&] { return queue->finished; });
}

bool Node::handle(Connection* connection, BlockPtr block) {
    MessageHeader header;
    memcpy(&header, block->bytes, sizeof(header));
    if (!connection->handedOver.empty()) connection->handedOver.clear();
    bool oneway = (header.flags & kFlagOneway) != 0;
    switch (header.kind) {
        case kCall:
            if (oneway == (connection->role == kOneway)) {
                return call(connection, header, std::move(block));
            }
            break;
        case kAcquire: {
            bool known = holdAgain(header.object, connection->peer);
            if ((header.flags & kFlagWantsAnswer) == 0) return true;
            MessageHeader answer = {};
            answer.kind = kReply;
            answer.code = static_cast<uint32_t>(known ? OK : DEAD_OBJECT);
            Encoded encoded;
            Codec::encodePlain(&answer, nullptr, 0, &encoded);
            return sendMessage(connection->socket, encoded, nullptr) == OK;
        }
        case kReceived:
            return true;
    }
    ALOGE("unexpected message of process %d; closed its connection",
          static_cast<int>(connection->pid));
    return false;
}

namespace {

bool sendReceived(int socket) {
    MessageHeader header = {};
    header.kind = kReceived;
    Encoded encoded;
    Codec::encodePlain(&header, nullptr, 0, &encoded);
    return sendMessage(socket, encoded, nullptr) == OK;
}

/** Sends the reply of one call, once. */
class Answer {
  public:
    Answer(Node& node, Connection* connection) : mNode(node), mConnection(connection) {}

    void send(const Parcel& reply, status_t status) {
        if (mSent) return;
        mSent = true;
        MessageHeader header = {};
        header.kind = kReply;
        Encoded encoded;
        NodeMapper mapper(mNode, mConnection->peer);
        if (status == OK) {
            status = Codec::encode(reply, &header, &mapper, &encoded);
            if (!mapper.proxies().empty()) header.flags |= kFlagWantsReceived;
        }
        if (status != OK) {
            mapper.takeBack();
            header = {};
            header.kind = kReply;
            header.code = static_cast<uint32_t>(status);
            encoded.several.clear();
            encoded.descriptors.clear();
            Codec::encodePlain(&header, nullptr, 0, &encoded);
        } else if (header.flags != 0) {
            Codec::setFlags(header.flags, &encoded);
        }
        // The caller's next call may arrive before this thread is through, and is not nested in
        // this.
        mConnection->chain.store(0, std::memory_order_relaxed);
        mGood = sendMessage(mConnection->socket, encoded, nullptr) == OK;
        if (!mGood) mapper.takeBack();
        mConnection->handedOver.swap(mapper.proxies());
    }

    bool sent() const { return mSent; }
    bool good() const { return mGood; }

  private:
    Node& mNode;
    Connection* mConnection;
    bool mSent = false;
    bool mGood = true;
};

}  // namespace

/** @return whether the call counts: not when it is nested in one that this node serves */
bool Node::waitAtGate(const Connection* connection, uint64_t chain) {
    {
        std::lock_guard<std::mutex> lock(mMutex);
        for (const auto& other : mConnections) {
            if (other.get() != connection && other->chain == chain) return false;
        }
    }
    mGate.waitAndEnter();
    return true;
}

bool Node::call(Connection* connection, const MessageHeader& header, BlockPtr block) {
    const bool oneway = connection->role == kOneway;
    sp<BHwBinder> target;
    std::shared_ptr<std::mutex> order;
    {
        std::lock_guard<std::mutex> lock(mMutex);
        auto found = mObjects.find(header.object);
        if (found != mObjects.end()) {
            target = found->second.binder;
            if (oneway) order = found->second.onewayMutex;
        }
    }

    Parcel data;
    NodeMapper mapper(*this, connection->peer);
    status_t status = Codec::parse(std::move(block), &mapper, &data);
    if (status != OK) {
        // A client that has just died holds none of this node's objects any more.
        if (status == BAD_VALUE && !hasHungUp(connection->socket)) {
            ALOGE("malformed message of process %d; closed its connection",
                  static_cast<int>(connection->pid));
        }
        return false;
    }

    if ((header.flags & kFlagWantsReceived) != 0 && !sendReceived(connection->socket)) return false;

    std::unique_lock<std::mutex> inOrder;
    if (order != nullptr) inOrder = std::unique_lock<std::mutex>(*order);

    const bool starts = oneway || header.chain == 0;
    const uint64_t chain = starts ? newChain() : header.chain;
    // A thread of this node waits for what a chain of its own does.
    bool counted = starts || !startedHere(chain);
    if (counted && !mGate.tryEnter()) counted = waitAtGate(connection, chain);
    connection->chain.store(chain, std::memory_order_relaxed);
    ThreadState& thread = threadState();
    const ThreadState before = thread;
    thread.chain = chain;
    thread.callerPid = connection->pid;
    thread.callerUid = connection->uid;
    thread.serving = true;
    thread.serverMethod = nullptr;

    Answer answer(*this, connection);
    Parcel reply;
    Trace trace(true, data, header.code, oneway);
    status = DEAD_OBJECT;
    if (target != nullptr) {
        IBinder::TransactCallback callback;
        if (!oneway) {
            callback = [&answer](Parcel& results) { answer.send(results, OK); };
        } else {
            callback = [](Parcel&) {};
        }
        status = target->onTransact(header.code, data, &reply, header.flags & kFlagOneway,
                                    std::move(callback));
    }
    if (!oneway) answer.send(reply, status);
    trace.finish(oneway ? nullptr : &reply, answer.sent() ? status : OK);

    thread = before;
    connection->chain.store(0, std::memory_order_relaxed);
    if (counted) mGate.leave();
    return answer.good();
}

// Peer

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
    for (int socket : mSockets) {
        if (socket != mLiveness) close(socket);  // which the watcher closes
    }
}

status_t Peer::connect(uint32_t role, int* socket) {
    if (mDead || mNode->dead() || mNode->inherited()) return DEAD_OBJECT;
    if (registry::directory().empty()) return android::PERMISSION_DENIED;
    int result = connectTo(registry::socketPath(mName), Settings::get().firstWaitMs);
    if (result < 0) {
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
    status_t status = sendMessage(result, hello, nullptr);
    if (status != OK) {
        close(result);
        return status;
    }
    std::lock_guard<std::mutex> lock(mMutex);
    if (mNode->dead()) {
        close(result);
        return DEAD_OBJECT;
    }
    mSockets.insert(result);
    *socket = result;
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
    close(socket);
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
    int watched = fcntl(socket, F_DUPFD_CLOEXEC, 0);
    if (watched < 0) return;
    Watcher::get().add(watched, [handedOver](int readable) {
        MessageHeader header;
        ssize_t size = recv(readable, &header, sizeof(header), MSG_DONTWAIT);
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
        trace.finish(nullptr, status);
        return status;
    }

    Use use;
    status = send(encoded, &watch, &use);
    if (status != OK) {
        mapper.takeBack();
        trace.finish(nullptr, status);
        return status;
    }
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
    if (mLiveness >= 0) return OK;
    int socket;
    status_t status = connect(kLiveness, &socket);
    if (status != OK) return status;
    mLiveness = socket;
    auto self = shared_from_this();
    Watcher::get().add(socket, [self](int watched) {
        char byte;
        ssize_t size = recv(watched, &byte, sizeof(byte), MSG_DONTWAIT);
        if (size > 0 || (size < 0 && (errno == EAGAIN || errno == EINTR))) return true;
        {
            std::lock_guard<std::mutex> ending(self->mLivenessMutex);
            std::lock_guard<std::mutex> all(self->mMutex);
            self->mLiveness = -1;
            self->mSockets.erase(watched);
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
            close(socket);
        }
        mIdle.clear();
        for (const auto& proxy : mProxies) weak.push_back(proxy.second);
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
    mNode->releaseAll(mName);
    mNode->forget(mName);
    Watcher::get().post([proxies = std::move(proxies)]() mutable {
        for (const auto& proxy : proxies) proxy->sendObituary();
        proxies.clear();
    });
}

void Peer::cut() {
    {
        std::lock_guard<std::mutex> lock(mMutex);
        for (int socket : mSockets) shutdown(socket, SHUT_RDWR);
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
    if (mLiveness < 0) return;
    mReleases.emplace_back(proxy->id(), count);
    while (!mReleases.empty()) {
        MessageHeader header = {};
        header.magic = kMagic;
        header.kind = kRelease;
        header.object = mReleases.back().first;
        header.code = mReleases.back().second;
        // What a busy peer does not take now goes with the next release.
        if (::send(mLiveness, &header, sizeof(header), MSG_NOSIGNAL | MSG_DONTWAIT) < 0) break;
        mReleases.pop_back();
    }
}

}  // namespace hidlhost
