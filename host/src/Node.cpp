#define LOG_TAG "hidlhost"

#include "Node.h"

#include <cerrno>
#include <cinttypes>
#include <cstring>

#include <log/log.h>
#include <sys/random.h>
#include <unistd.h>

#include "Peer.h"
#include "Registry.h"
#include "Threads.h"

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
        : mName(std::move(name)),
          mChainPrefix(chainPrefix()),
          mGeneration(generation()),
          mServer(*this) {}

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

bool Node::reaches(const std::string& peer) {
    std::lock_guard<std::mutex> lock(mMutex);
    auto found = mPeers.find(peer);
    return found != mPeers.end() && !found->second->dead();
}

status_t Node::hold(const sp<BHwBinder>& object, const std::string& holder, uint64_t* id) {
    status_t status = mServer.listen();
    return status == OK ? mObjects.hold(object, holder, id) : status;
}

void Node::kill() {
    if (inherited()) return;
    std::unordered_map<std::string, std::shared_ptr<Peer>> peers;
    {
        std::lock_guard<std::mutex> lock(mMutex);
        mDead = true;
        peers.swap(mPeers);
    }
    mServer.cut();
    mObjects.close();
    for (const auto& peer : peers) peer.second->cut();
}

}  // namespace hidlhost
