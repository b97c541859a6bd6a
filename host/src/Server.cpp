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
using android::hardware::BHwBinder;
using android::hardware::IBinder;
using android::hardware::Parcel;

namespace hidlhost {
namespace {

/** Each has a thread. Those for events have none, and refusing one would look like a death. */
constexpr size_t kMaxServed = 1000;
constexpr size_t kMaxConnections = 16000;
/** Grace for the liveness connection of a client whose other connections have ended. */
constexpr uint32_t kGraceMs = 1000;
/** Nested deeper than this is a loop, which would end in the stack's overflow. */
constexpr int kMaxDepth = 16;

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

    /** False if there is none, or somebody else was faster. */
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

/** The generation of the process that has names, and 1; 0 for none. */
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
        connection->owner = std::move(socket);
        connection->socket = connection->owner.get();
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
        if (connection->role == kCalls) --mServed;
        for (const auto& other : mConnections) {
            if (other->peer == connection->peer) return;
        }
    }
    // A client that has proxies has a connection for events too, which may be on its way.
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

/** Takes the hello and what follows from it; false if it has not come yet. Does not block. */
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
    if (wanted != mNode.name() || !registry::isNodeName(peer)) {
        end(connection);
    } else if (!registry::ownsName(connection->pid, peer)) {
        ALOGE("process %d speaks for process %d; closed its connection",
              static_cast<int>(connection->pid), atoi(peer.c_str()));
        end(connection);
    } else if (!welcome(connection, peer, header.code)) {
        end(connection);
    }
    return true;
}

/** Gives a connection its role; false if there is none or the limit is reached. */
bool Server::welcome(const std::shared_ptr<Connection>& connection, const std::string& peer,
                     uint32_t role) {
    if (role != kCalls && role != kEvents) return false;
    {
        std::lock_guard<std::mutex> lock(mMutex);
        if (role == kCalls) {
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
    setTimeouts(connection->socket, kClientMs);
    auto node = mNode.shared_from_this();
    if (role == kEvents) {
        Watcher::get().add(connection->socket,
                           [this, node, connection] { return readEvents(connection); });
        return true;
    }
    if (startThread("hidl-serve", [this, node, connection] { serveCalls(connection); })) {
        return true;
    }
    ALOGE("no thread for one more client; refused it");
    return false;
}

namespace {

/** Whether a message that could not be taken can be passed over. */
bool passOver(const Caller& caller, const MessageHeader& header, status_t status) {
    const int pid = static_cast<int>(caller.pid);
    switch (status) {
        case BAD_VALUE:
            ALOGE("malformed message of process %d; closed its connection", pid);
            return false;
        case android::TIMED_OUT:
            ALOGE("process %d has stopped within a message; closed its connection", pid);
            return false;
        case -EMFILE:
            ALOGE("no descriptors left for what call %u of process %d brings along", header.code,
                  pid);
            break;
        case android::NO_MEMORY:
            ALOGE("no memory left for call %u of process %d", header.code, pid);
            status = android::FAILED_TRANSACTION;
            break;
        case android::FAILED_TRANSACTION:
            break;
        default:
            return false;
    }
    if ((header.flags & kFlagOneway) != 0 && (header.flags & kFlagWantsAnswer) == 0) return true;
    return sendStatus(caller.socket, status, kFlagRefused);
}

MessageHeader headerOf(const Block& block) {
    MessageHeader header = {};
    if (block.size >= sizeof(header)) memcpy(&header, block.bytes, sizeof(header));
    return header;
}

}  // namespace

void Server::serveCalls(const std::shared_ptr<Connection>& connection) {
    for (;;) {
        BlockPtr block(Block::take());
        if (!block) break;
        const status_t status = receiveFromClient(connection->socket, block.get());
        if (status != OK) {
            if (passOver(*connection, headerOf(*block), status)) continue;
            break;
        }
        if (!handle(connection.get(), std::move(block))) break;
    }
    end(connection);
}

bool Server::handle(Connection* connection, BlockPtr block) {
    const MessageHeader header = headerOf(*block);
    if (!connection->handedOver.empty()) connection->handedOver.clear();
    switch (header.kind) {
        case kCall:
            if ((header.flags & kFlagOneway) != 0) break;
            return call(connection, connection, Way::kConnection,
                        {mNode.objects().find(header.object), nullptr}, std::move(block));
        case kAcquire: {
            const bool known = mNode.objects().holdAgain(header.object, connection->peer);
            if ((header.flags & kFlagWantsAnswer) == 0) return true;
            return sendStatus(connection->socket, known ? OK : DEAD_OBJECT, 0);
        }
        case kReceived:
            return true;
    }
    ALOGE("unexpected message of process %d; closed its connection",
          static_cast<int>(connection->pid));
    return false;
}

bool Server::serveWithin(Caller* caller, BlockPtr block) {
    const MessageHeader header = headerOf(*block);
    caller->handedOver.clear();
    int depth = 0;
    for (const Conversation* outer = threadState().conversation; outer != nullptr;
         outer = outer->outer) {
        ++depth;
    }
    if (depth >= kMaxDepth) {
        ALOGE("call %u of process %d is the %dth within others", header.code,
              static_cast<int>(caller->pid), depth);
        return sendStatus(caller->socket, android::FAILED_TRANSACTION, kFlagRefused);
    }
    return call(caller, nullptr, Way::kWithin, {mNode.objects().find(header.object), nullptr},
                std::move(block));
}

// Events: what has no answer, in the order in which it was sent

/** Reads what there is, on the watching thread; false at the connection's end. */
bool Server::readEvents(const std::shared_ptr<Connection>& connection) {
    // Others have their turn after so many packets.
    for (int i = 0; i < 64; ++i) {
        if (!connection->arriving) connection->arriving.reset(Block::take());
        const bool partial = connection->arrival.partial();
        status_t status = android::NO_MEMORY;
        if (connection->arriving) {
            status = connection->arrival.receive(connection->socket, connection->arriving.get(),
                                                 MSG_DONTWAIT);
        }
        if (status == android::WOULD_BLOCK) {
            if (!partial) connection->arriving.reset();
            return true;
        }
        if (status == android::NOT_ENOUGH_DATA) {
            if (!partial) {
                auto node = mNode.shared_from_this();
                Watcher::get().after(kClientMs, [node, connection, number = connection->received] {
                    if (!connection->arrival.partial()) return;
                    if (connection->received != number) return;
                    passOver(*connection, headerOf(*connection->arriving), android::TIMED_OUT);
                    shutdown(connection->socket, SHUT_RDWR);
                });
            }
            continue;
        }
        ++connection->received;
        if (event(connection, status)) continue;
        connection->arriving.reset();
        {
            std::lock_guard<std::mutex> lock(mMutex);
            mConnections.erase(connection);
        }
        // Calls that are still to run keep their objects themselves.
        mNode.objects().releaseAll(connection->peer);
        return false;
    }
    return true;
}

/** Takes what has arrived; false if that ends the connection. */
bool Server::event(const std::shared_ptr<Connection>& connection, status_t received) {
    if (!connection->arriving) return false;
    const MessageHeader header = headerOf(*connection->arriving);
    if (received != OK) return passOver(*connection, header, received);
    switch (header.kind) {
        case kCall:
            if ((header.flags & kFlagOneway) == 0) break;
            enqueue(connection, header);
            return true;
        case kAcquire:
            mNode.objects().holdAgain(header.object, connection->peer);
            return true;
        case kRelease:
            mNode.objects().release(header.object, connection->peer, header.code);
            return true;
    }
    return passOver(*connection, header, BAD_VALUE);
}

void Server::enqueue(const std::shared_ptr<Connection>& connection, const MessageHeader& header) {
    const bool answers = (header.flags & kFlagWantsAnswer) != 0;
    const size_t bytes = TransactionSpace::sizeOf(header);
    connection->unaskedBytes = answers ? 0 : connection->unaskedBytes + bytes;
    connection->unaskedCalls = answers ? 0 : connection->unaskedCalls + 1;
    const bool refusable = answers || connection->unaskedBytes > kMaxUnaskedBytes ||
                           connection->unaskedCalls > kMaxUnaskedCalls;
    // A queue of whole packets would be mostly air.
    const Block& arrived = *connection->arriving;
    BlockPtr kept(new Block);
    status_t status = OK;
    if (!refusable) {
        mSpace.takeAnyway(bytes, true, &kept->share);
    } else if (!mSpace.take(bytes, true, &kept->share)) {
        status = android::FAILED_TRANSACTION;
    }
    if (status == OK && !kept->reserve(arrived.size)) status = android::NO_MEMORY;
    if (status == OK) {
        memcpy(kept->bytes, arrived.bytes, arrived.size);
        kept->size = arrived.size;
        kept->descriptors.swap(connection->arriving->descriptors);
        // The target lives until the call has run, regardless of what the caller gives back.
        Target target;
        target.object = mNode.objects().find(header.object, &target.onewayMutex);
        std::shared_ptr<Worker> worker = mMain;
        // Calls that came before the pool was configured run before this one.
        if (mNode.gate().configured() && connection->leftToMain == 0) {
            if (connection->worker == nullptr) {
                connection->worker =
                        std::make_shared<Worker>("hidl-oneway", Worker::Thread::kBorrowed);
            }
            worker = connection->worker;
        }
        const size_t counted = worker == mMain ? 1 : 0;
        connection->leftToMain += counted;
        auto node = mNode.shared_from_this();
        const bool posted =
                worker->post([this, node, connection, counted, target = std::move(target),
                              kept = std::move(kept)]() mutable {
                    if (!mNode.dead() &&
                        !call(connection.get(), nullptr, Way::kEvent, target, std::move(kept))) {
                        shutdown(connection->socket, SHUT_RDWR);
                    }
                    connection->leftToMain -= counted;
                });
        if (!posted) {
            connection->leftToMain -= counted;
            ALOGE("no thread for a oneway call of process %d", static_cast<int>(connection->pid));
            status = android::NO_MEMORY;
        }
    }
    connection->arriving->closeDescriptors();
    if (!answers) return;
    MessageHeader answer = {};
    answer.magic = kMagic;
    answer.kind = kReply;
    answer.code = static_cast<uint32_t>(status);
    if (status != OK) answer.flags = kFlagRefused;
    // A client that does not read answers of a few bytes is not waited for.
    if (send(connection->socket, &answer, sizeof(answer), MSG_NOSIGNAL | MSG_DONTWAIT) < 0) {
        shutdown(connection->socket, SHUT_RDWR);
    }
}

namespace {

/** Sends the reply of one call, once. */
class Answer {
  public:
    Answer(Node& node, Connection* connection, Conversation* conversation)
            : mNode(node), mConnection(connection), mConversation(conversation) {}

    void send(const Parcel& reply, status_t status) {
        if (mNode.inherited()) endStrayChild();
        if (mSent) return;
        mSent = true;
        Caller& caller = *mConversation->caller;
        MessageHeader header = {};
        header.kind = kReply;
        Encoded encoded;
        NodeMapper mapper(mNode, caller.peer);
        if (status == OK) {
            status = Codec::encode(reply, &header, &mapper, &encoded);
            if (status == OK && TransactionSpace::sizeOf(header) > TransactionSpace::limit(false)) {
                ALOGE("a reply of %zu bytes is larger than a transaction may be",
                      TransactionSpace::sizeOf(header));
                status = android::FAILED_TRANSACTION;
            }
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
        if (mConnection != nullptr) mConnection->chain.store(0, std::memory_order_relaxed);
        mGood = mConversation->open;
        mConversation->open = false;
        std::optional<WithoutPlace> outside;
        SendPatience patience(kClientMs, &outside);
        mGood = mGood && sendMessage(caller.socket, encoded, &patience, Wait::kTryFirst) == OK;
        if (!mGood) mapper.takeBack();
        caller.handedOver.swap(mapper.proxies());
    }

    bool sent() const { return mSent; }
    bool good() const { return mGood; }

  private:
    Node& mNode;
    Connection* const mConnection;
    Conversation* const mConversation;
    bool mSent = false;
    bool mGood = true;
};

}  // namespace

/** Whether a thread of this node serves a call of the chain and waits for what it led to. */
bool Server::isUnderWay(const Connection* connection, uint64_t chain) {
    std::lock_guard<std::mutex> lock(mMutex);
    return std::any_of(mConnections.begin(), mConnections.end(), [&](const auto& other) {
        return other.get() != connection && other->chain == chain;
    });
}

bool Server::call(Caller* caller, Connection* connection, Way way, const Target& target,
                  BlockPtr block) {
    const MessageHeader header = headerOf(*block);
    if (way != Way::kEvent &&
        !mSpace.take(TransactionSpace::sizeOf(header), false, &block->share)) {
        ALOGW("call %u of process %d fails: too much is on its way to this process", header.code,
              static_cast<int>(caller->pid));
        return passOver(*caller, header, android::FAILED_TRANSACTION);
    }
    Parcel data;
    NodeMapper mapper(mNode, caller->peer);
    const status_t status = Codec::parse(std::move(block), &mapper, &data);
    if (status != OK) {
        // A client that has just died holds none of this node's objects any more.
        if (status == BAD_VALUE && !hasHungUp(caller->socket)) {
            ALOGE("malformed message of process %d; closed its connection",
                  static_cast<int>(caller->pid));
        }
        return false;
    }
    // The caller of an event may be gone by now, and the call runs all the same.
    if ((header.flags & kFlagWantsReceived) != 0 && !sendReceived(caller->socket) &&
        way != Way::kEvent) {
        return false;
    }

    std::unique_lock<std::mutex> inOrder;
    if (target.onewayMutex != nullptr) {
        inOrder = std::unique_lock<std::mutex>(*target.onewayMutex);
    }
    if (way == Way::kWithin) {
        return execute(caller, connection, way, target, header.chain, header, &data);
    }
    const bool starts = way == Way::kEvent || header.chain == 0;
    const uint64_t chain = starts ? mNode.newChain() : header.chain;
    // A thread of this node waits for what a chain of its own does.
    bool counted = starts || !mNode.startedHere(chain);
    const bool onMain = counted && way == Way::kConnection && !mNode.gate().configured() &&
                        !Settings::get().anyThread;
    if (onMain) {
        counted = !isUnderWay(connection, chain);
    } else if (counted && !mNode.gate().tryEnter()) {
        counted = !isUnderWay(connection, chain);
        if (counted) mNode.gate().waitAndEnter();
    }
    bool good = false;
    if (onMain && counted) {
        if (!mMain->run([&] {
                mNode.gate().waitAndEnter();
                threadState().gate = &mNode.gate();
                good = execute(caller, connection, way, target, chain, header, &data);
                threadState().gate = nullptr;
                mNode.gate().leave();
            })) {
            return passOver(*caller, header, android::NO_MEMORY);
        }
        return good;
    }
    if (counted) threadState().gate = &mNode.gate();
    good = execute(caller, connection, way, target, chain, header, &data);
    if (counted) {
        threadState().gate = nullptr;
        mNode.gate().leave();
    }
    return good;
}

bool Server::execute(Caller* caller, Connection* connection, Way way, const Target& target,
                     uint64_t chain, const MessageHeader& header, Parcel* data) {
    const bool oneway = way == Way::kEvent;
    if (connection != nullptr) connection->chain.store(chain, std::memory_order_relaxed);
    ThreadState& thread = threadState();
    const ThreadState before = thread;
    Conversation conversation = {&mNode, caller, way == Way::kConnection, !oneway,
                                 before.conversation};
    thread.chain = chain;
    thread.callerPid = caller->pid;
    thread.callerUid = caller->uid;
    thread.serving = true;
    thread.serverMethod = nullptr;
    thread.conversation = &conversation;

    Answer answer(mNode, connection, &conversation);
    Parcel reply;
    Trace trace(true, *data, header.code, oneway);
    status_t status = DEAD_OBJECT;
    if (target.object != nullptr) {
        IBinder::TransactCallback callback;
        if (!oneway) {
            callback = [&answer](Parcel& results) { answer.send(results, OK); };
        } else {
            callback = [](Parcel&) {};
        }
        status = target.object->onTransact(header.code, *data, &reply, header.flags & kFlagOneway,
                                           std::move(callback));
    }
    if (mNode.inherited()) endStrayChild();
    if (!oneway) answer.send(reply, status);
    trace.finish(oneway ? nullptr : &reply, answer.sent() ? status : OK);

    thread = before;
    if (connection != nullptr) connection->chain.store(0, std::memory_order_relaxed);
    return answer.good();
}

}  // namespace hidlhost
