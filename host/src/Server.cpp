#define LOG_TAG "hidlhost"

#include "Server.h"

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <condition_variable>
#include <cstring>
#include <deque>
#include <optional>

#include <fcntl.h>
#include <log/log.h>
#include <sys/resource.h>
#include <sys/socket.h>
#include <unistd.h>

#include "Fork.h"
#include "Node.h"
#include "NodeMapper.h"
#include "Peer.h"
#include "Registry.h"
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
using android::hardware::BHwBinder;
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

    /** Takes it back where somebody else has had it meanwhile. */
    void keep() {
        if (!mFile.ok()) mFile.reset(open("/dev/null", O_RDONLY | O_CLOEXEC));
    }

    /** False where there is none, or somebody else was faster. */
    bool refuse(int listener) {
        if (!mFile.ok()) return false;
        mFile.reset();
        const bool taken = unique_fd(accept4(listener, nullptr, nullptr, SOCK_CLOEXEC)).ok();
        keep();
        return taken;
    }

  private:
    unique_fd mFile;
};

}  // namespace

Server::Server(Node& node) : mNode(node) {}

namespace {

/** Of the process that has names, and 1. */
std::atomic<uint64_t> gNamed{0};

/** The names of a process that ends in good order go with it. */
void withdrawAtExit() {
    if (gNamed.exchange(uint64_t{generation()} + 1) != 0) return;
    atexit([] {
        // A child has no names until it makes some.
        if (gNamed == uint64_t{generation()} + 1) {
            registry::withdrawNode(Node::process().name());
        }
    });
}

}  // namespace

status_t Server::listen() {
    std::lock_guard<std::mutex> lock(mMutex);
    if (mNode.dead()) return DEAD_OBJECT;
    if (mListening) return OK;
    if (registry::directory().empty()) return android::PERMISSION_DENIED;
    std::string path = registry::socketPath(mNode.name());
    unique_fd listener;
    const status_t status = listenAt(path, &listener);
    if (status != OK) {
        ALOGE("cannot listen at %s: %s", path.c_str(), strerror(-status));
        return status;
    }
    auto node = mNode.shared_from_this();
    if (!startThread("hidl-accept", [this, node, socket = listener.get()] { accept(socket); })) {
        ALOGE("cannot start a thread");
        unlink(path.c_str());
        return android::NO_MEMORY;
    }
    mListener = std::move(listener);
    mListening = true;
    withdrawAtExit();
    return OK;
}

void Server::cut() {
    std::lock_guard<std::mutex> lock(mMutex);
    if (mListener >= 0) shutdown(mListener, SHUT_RDWR);
    for (const auto& connection : mConnections) shutdown(connection->socket, SHUT_RDWR);
}

void Server::accept(int listener) {
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
        unique_fd socket(accept4(listener, nullptr, nullptr, SOCK_CLOEXEC));
        if (!socket.ok()) {
            const int error = errno;
            if (mNode.dead() || error == EINVAL || error == EBADF) break;
            if (error == EINTR || error == ECONNABORTED) continue;
            if (complains()) ALOGE("refused a connection: %s", strerror(error));
            if (error != EMFILE || !spare.refuse(listener)) usleep(50000);
            continue;
        }
        auto connection = std::make_shared<Connection>();
        connection->socket = std::move(socket);
        if (!peerIsTrusted(connection->socket, &connection->pid, &connection->uid)) {
            ALOGE("refused a connection of process %d, user %u", static_cast<int>(connection->pid),
                  connection->uid);
            continue;
        }
        const size_t most = mostConnections();
        bool taken;
        {
            std::lock_guard<std::mutex> lock(mMutex);
            taken = !mNode.dead() && mConnections.size() < most;
            if (taken) mConnections.insert(connection);
        }
        if (!taken) {
            if (!mNode.dead() && complains()) {
                ALOGE("%zu connections are enough; refused one more", most);
            }
            continue;
        }
        if (greet(connection)) continue;
        // Until the client says what it wants it costs no thread.
        auto node = mNode.shared_from_this();
        Watcher::get().once(connection->socket, kClientMs, [this, node, connection](bool arrived) {
            if (!arrived || !greet(connection)) end(connection);
        });
    }
    std::lock_guard<std::mutex> lock(mMutex);
    mListener.reset();
}

void Server::ended(const std::shared_ptr<Connection>& connection) {
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
    auto node = mNode.shared_from_this();
    Watcher::get().after(kGraceMs, [this, node, name = connection->peer] {
        {
            std::lock_guard<std::mutex> lock(mMutex);
            for (const auto& other : mConnections) {
                if (other->peer == name) return;
            }
        }
        if (!node->reaches(name)) node->objects().releaseAll(name);
    });
}

void Server::end(const std::shared_ptr<Connection>& connection) {
    connection->handedOver.clear();
    shutdown(connection->socket, SHUT_RDWR);
    ended(connection);
}

/** Takes the hello and what follows from it; false where it has not come yet. Does not block. */
bool Server::greet(const std::shared_ptr<Connection>& connection) {
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
    if (wanted != mNode.name() || !registry::isNodeName(peer) ||
        !welcome(connection, peer, header.code)) {
        end(connection);
    }
    return true;
}

/** Gives a connection its role; false where there is none or no room for it. */
bool Server::welcome(const std::shared_ptr<Connection>& connection, const std::string& peer,
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
    auto node = mNode.shared_from_this();
    if (role == kLiveness) {
        Watcher::get().add(connection->socket,
                           [this, node, connection] { return watchLiveness(connection); });
        return true;
    }
    if (startThread("hidl-serve", [this, node, connection] { serve(connection); })) return true;
    ALOGE("no thread for one more client; refused it");
    return false;
}

void Server::serve(const std::shared_ptr<Connection>& connection) {
    if (connection->role == kOneway) {
        serveOneway(connection.get());
    } else {
        serveCalls(connection.get());
    }
    end(connection);
}

bool Server::watchLiveness(const std::shared_ptr<Connection>& connection) {
    for (;;) {
        MessageHeader header;
        ssize_t size = recv(connection->socket, &header, sizeof(header), MSG_DONTWAIT | MSG_TRUNC);
        if (size < 0 && errno == EINTR) continue;
        if (size < 0 && errno == EAGAIN) return true;
        if (size == sizeof(header) && header.magic == kMagic && header.kind == kRelease &&
            Codec::messageSize(header) == sizeof(header)) {
            mNode.objects().release(header.object, connection->peer, header.code);
            continue;
        }
        if (size > 0) {
            ALOGE("malformed message of process %d; closed its connection",
                  static_cast<int>(connection->pid));
        }
        {
            std::lock_guard<std::mutex> lock(mMutex);
            mConnections.erase(connection);
        }
        mNode.objects().releaseAll(connection->peer);
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

void Server::serveCalls(Connection* connection) {
    for (;;) {
        BlockPtr block(Block::take());
        if (!block) return;
        status_t status = receiveMessage(connection->socket, block.get(), nullptr);
        if (status != OK && passOver(*connection, *block, status)) continue;
        if (status != OK || !handle(connection, std::move(block))) return;
    }
}

void Server::serveOneway(Connection* connection) {
    struct Queue {
        std::mutex mutex;
        std::condition_variable changed;
        std::deque<BlockPtr> blocks;
        size_t bytes = 0;
        bool closed = false;
        bool finished = false;
    };
    auto queue = std::make_shared<Queue>();
    auto node = mNode.shared_from_this();
    bool started = startThread("hidl-oneway", [this, node, queue, connection] {
        std::unique_lock<std::mutex> lock(queue->mutex);
        for (;;) {
            queue->changed.wait(lock, [&] { return queue->closed || !queue->blocks.empty(); });
            if (queue->blocks.empty()) break;
            BlockPtr block = std::move(queue->blocks.front());
            queue->blocks.pop_front();
            queue->bytes -= block->size;
            queue->changed.notify_all();
            lock.unlock();
            bool good = handle(connection, std::move(block));
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

bool Server::handle(Connection* connection, BlockPtr block) {
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
            bool known = mNode.objects().holdAgain(header.object, connection->peer);
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

/** Sends the reply of one call, once. */
class Answer {
  public:
    Answer(Node& node, Connection* connection) : mNode(node), mConnection(connection) {}

    void send(const Parcel& reply, status_t status) {
        if (mNode.inherited()) endStrayChild();
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
bool Server::waitAtGate(const Connection* connection, uint64_t chain) {
    {
        std::lock_guard<std::mutex> lock(mMutex);
        for (const auto& other : mConnections) {
            if (other.get() != connection && other->chain == chain) return false;
        }
    }
    mNode.gate().waitAndEnter();
    return true;
}

bool Server::call(Connection* connection, const MessageHeader& header, BlockPtr block) {
    const bool oneway = connection->role == kOneway;
    std::shared_ptr<std::mutex> order;
    sp<BHwBinder> target = mNode.objects().find(header.object, oneway ? &order : nullptr);

    Parcel data;
    NodeMapper mapper(mNode, connection->peer);
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
    const uint64_t chain = starts ? mNode.newChain() : header.chain;
    // A thread of this node waits for what a chain of its own does.
    bool counted = starts || !mNode.startedHere(chain);
    if (counted && !mNode.gate().tryEnter()) counted = waitAtGate(connection, chain);
    connection->chain.store(chain, std::memory_order_relaxed);
    ThreadState& thread = threadState();
    const ThreadState before = thread;
    thread.chain = chain;
    thread.callerPid = connection->pid;
    thread.callerUid = connection->uid;
    thread.serving = true;
    thread.serverMethod = nullptr;

    Answer answer(mNode, connection);
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
    if (mNode.inherited()) endStrayChild();
    if (!oneway) answer.send(reply, status);
    trace.finish(oneway ? nullptr : &reply, answer.sent() ? status : OK);

    thread = before;
    connection->chain.store(0, std::memory_order_relaxed);
    if (counted) mNode.gate().leave();
    return answer.good();
}

}  // namespace hidlhost
