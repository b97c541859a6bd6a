#define LOG_TAG "hidlhost"

#include "Node.h"

#include <cerrno>
#include <cinttypes>
#include <cstring>

#include <log/log.h>
#include <sys/random.h>
#include <sys/socket.h>
#include <unistd.h>

#include "Peer.h"
#include "Registry.h"
#include "Socket.h"
#include "Threads.h"
#include "Watcher.h"

using android::DEAD_OBJECT;
using android::OK;
using android::sp;
using android::status_t;
using android::hardware::BHwBinder;

namespace hidlhost {
namespace {

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

}  // namespace hidlhost
