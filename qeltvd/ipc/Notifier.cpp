#define LOG_TAG "qeltvd"

#include "Notifier.h"

#include <hidl/HidlTransportSupport.h>
#include <log/log.h>

#include <algorithm>

namespace qeltvd {

using android::sp;
using android::wp;

struct Notifier::Client {
    uint64_t id = 0;
    int pid = -1;
    sp<Callback> callback;
    sp<Death> death;

    std::mutex lock;
    std::condition_variable arrived;
    std::deque<Notification> queue;
    bool gone = false;
    bool overflowing = false;
    size_t registrations = 1;
    size_t delivered = 0;
    size_t lost = 0;

    void leave() {
        std::lock_guard<std::mutex> guard(lock);
        gone = true;
        queue.clear();
        arrived.notify_one();
    }
};

class Notifier::Death : public android::hardware::hidl_death_recipient {
  public:
    explicit Death(Notifier* notifier) : mNotifier(notifier) {}

    void serviceDied(uint64_t cookie, const wp<android::hidl::base::V1_0::IBase>&) override {
        std::lock_guard<std::mutex> guard(mLock);
        if (mNotifier != nullptr) mNotifier->forget(cookie);
    }

    /** The notifier goes before its recipients do. */
    void detach() {
        std::lock_guard<std::mutex> guard(mLock);
        mNotifier = nullptr;
    }

  private:
    std::mutex mLock;
    Notifier* mNotifier;
};

Notifier::~Notifier() {
    std::lock_guard<std::mutex> guard(mLock);
    for (const auto& client : mClients) {
        client->death->detach();
        client->leave();
    }
}

void Notifier::add(const sp<Callback>& callback, int pid) {
    auto client = std::make_shared<Client>();
    {
        std::lock_guard<std::mutex> guard(mLock);
        for (const auto& known : mClients) {
            // Each arrival of an object has a proxy of its own.
            if (android::hardware::interfacesEqual(known->callback, callback)) {
                std::lock_guard<std::mutex> clientGuard(known->lock);
                ++known->registrations;
                return;
            }
        }
        client->id = mNextId++;
        client->pid = pid;
        client->callback = callback;
        client->death = new Death(this);
        mClients.push_back(client);
    }
    // Without the lock: a death may be told at once, from another thread.
    const auto linked = callback->linkToDeath(client->death, client->id);
    if (!linked.isOk() || !linked) {
        forget(client->id);
        return;
    }
    std::thread(deliver, client).detach();
}

void Notifier::forget(uint64_t id) {
    std::shared_ptr<Client> client;
    {
        std::lock_guard<std::mutex> guard(mLock);
        const auto found = std::find_if(mClients.begin(), mClients.end(),
                                        [&](const auto& known) { return known->id == id; });
        if (found == mClients.end()) return;
        client = *found;
        mClients.erase(found);
    }
    client->leave();
    ALOGI("client %llu (process %d) is gone", static_cast<unsigned long long>(id), client->pid);
}

void Notifier::post(const Notification& notification, int pid) {
    std::lock_guard<std::mutex> guard(mLock);
    for (const auto& client : mClients) {
        if (pid != kEveryProcess && client->pid != pid) continue;
        std::lock_guard<std::mutex> clientGuard(client->lock);
        if (client->queue.size() >= kQueueLimit) {
            ++client->lost;
            if (!client->overflowing) {
                client->overflowing = true;
                ALOGW("client %llu (process %d) does not take its notifications; the newest are "
                      "lost",
                      static_cast<unsigned long long>(client->id), client->pid);
            }
            continue;
        }
        client->queue.push_back(notification);
        client->arrived.notify_one();
    }
}

void Notifier::deliver(const std::shared_ptr<Client>& client) {
    std::unique_lock<std::mutex> guard(client->lock);
    for (;;) {
        client->arrived.wait(guard, [&] { return client->gone || !client->queue.empty(); });
        if (client->gone) return;
        const Notification notification = std::move(client->queue.front());
        client->queue.pop_front();
        if (client->queue.empty()) client->overflowing = false;
        guard.unlock();
        const bool taken = notification(*client->callback);
        guard.lock();
        if (taken) {
            ++client->delivered;
        } else {
            ++client->lost;
        }
    }
}

std::vector<Notifier::ClientInfo> Notifier::clients() const {
    std::lock_guard<std::mutex> guard(mLock);
    std::vector<ClientInfo> infos;
    for (const auto& client : mClients) {
        std::lock_guard<std::mutex> clientGuard(client->lock);
        infos.push_back({client->id, client->pid, client->registrations, client->delivered,
                         client->lost, client->queue.size()});
    }
    return infos;
}

}  // namespace qeltvd
