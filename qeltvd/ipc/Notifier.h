#pragma once

#include <vendor/qelnova/tv/qeltvapi/1.0/IQelTvApiCallback.h>

#include <condition_variable>
#include <cstdint>
#include <deque>
#include <functional>
#include <memory>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

namespace qeltvd {

/**
 * The clients' callback objects and the way to them. Each client has a queue and a thread of its
 * own, so one that is slow to take its notifications holds up nobody else; a queue that is full
 * loses the newest notification. A client whose process dies is forgotten.
 */
class Notifier {
  public:
    using Callback = ::vendor::qelnova::tv::qeltvapi::V1_0::IQelTvApiCallback;
    /** Calls one method of a client's object; false when that failed in transport. */
    using Notification = std::function<bool(Callback&)>;

    static constexpr size_t kQueueLimit = 4096;

    Notifier() = default;
    ~Notifier();

    /** Takes a client's object; the same object again is still one client. */
    void add(const android::sp<Callback>& callback, int pid);

    static constexpr int kEveryProcess = 0;
    /** Queues a notification for every client, or for those of one process. */
    void post(const Notification& notification, int pid = kEveryProcess);

    /** Queues a call of one method, its arguments copied, for every client. */
    template <class... P, class... A>
    void notify(android::hardware::Return<void> (Callback::*method)(P...), A... arguments) {
        post([=](Callback& callback) { return (callback.*method)(arguments...).isOk(); });
    }

    struct ClientInfo {
        uint64_t id;
        int pid;
        size_t registrations;
        size_t delivered;
        size_t lost;
        size_t waiting;
    };
    std::vector<ClientInfo> clients() const;

  private:
    struct Client;
    class Death;

    void forget(uint64_t id);
    static void deliver(const std::shared_ptr<Client>& client);

    mutable std::mutex mLock;
    std::vector<std::shared_ptr<Client>> mClients;
    uint64_t mNextId = 1;
};

}  // namespace qeltvd
