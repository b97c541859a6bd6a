#define LOG_TAG "qeltvd"

#include "Notifier.h"

#include <hidl/HidlBinderSupport.h>
#include <hidl/HidlTransportSupport.h>
#include <hidlhost/raw_service.h>
#include <log/log.h>
#include <vendor/qelnova/tv/qeltvapi/1.0/BpHwQelTvApiCallback.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <condition_variable>
#include <deque>
#include <system_error>
#include <thread>

#include "Guarded.h"
#include "MonitoredCall.h"

namespace qeltvd {

using android::sp;
using android::wp;

namespace {

/** How long clients may take for what is under way when the notifier ends. */
constexpr std::chrono::seconds kLastPatience{1};

}  // namespace

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

/** Stands for a client's object, and sends what it is called with to the monitors. */
class Notifier::Shown : public android::hardware::BHwBinder {
  public:
    Shown(Monitor& monitor, int pid, bool taken) : mMonitor(monitor), mPid(pid), mTaken(taken) {}

    android::status_t onTransact(uint32_t code, const android::hardware::Parcel& data,
                                 android::hardware::Parcel* reply, uint32_t,
                                 TransactCallback) override {
        MonitoredCall call(mMonitor, "IQelTvApiCallback", code, mPid);
        call.takeSent(data);
        call.notified(mTaken);
        hidlhost::writeOk(reply);
        return android::OK;
    }

  private:
    Monitor& mMonitor;
    const int mPid;
    const bool mTaken;
};

/** A client process: its objects, and what waits for them. */
struct Notifier::Process {
    struct Object {
        uint64_t id;
        sp<Callback> callback;
        sp<Death> death;
        size_t registrations = 1;
        size_t delivered = 0;
        size_t lost = 0;
        /** The first notification after its registration. */
        uint64_t first;
    };
    struct Entry {
        uint64_t number;
        std::shared_ptr<const Notification> notification;
        size_t bytes;
    };

    Process(int pid, int caller) : pid(pid), caller(caller) {}

    const int pid;
    /** The process that has passed its first object on: another one if an overlay is between. */
    const int caller;

    std::mutex lock;
    std::condition_variable arrived;
    // Guarded by lock.
    std::vector<std::shared_ptr<Object>> objects;
    std::deque<Entry> queue;
    size_t bytes = 0;
    uint64_t posted = 0;
    bool gone = false;
    bool overflowing = false;
    /** Nothing more is done on the thread. */
    bool ended = false;

    std::thread thread;

    void post(const std::shared_ptr<const Notification>& notification, size_t size) {
        std::lock_guard<std::mutex> guard(lock);
        const uint64_t number = posted++;
        if (queue.size() >= kQueueLimit || (bytes + size > kQueueBytes && !queue.empty())) {
            for (const auto& object : objects) ++object->lost;
            if (!overflowing) {
                overflowing = true;
                ALOGW("process %d does not take its notifications; the newest are lost", pid);
            }
            return;
        }
        queue.push_back({number, notification, size});
        bytes += size;
        arrived.notify_one();
    }

    void leave() {
        std::lock_guard<std::mutex> guard(lock);
        gone = true;
        objects.clear();
        queue.clear();
        bytes = 0;
        arrived.notify_one();
    }

    void deliver(Monitor& monitor) {
        std::unique_lock<std::mutex> guard(lock);
        for (;;) {
            arrived.wait(guard, [&] { return gone || !queue.empty(); });
            if (gone) break;
            const Entry entry = std::move(queue.front());
            queue.pop_front();
            bytes -= entry.bytes;
            if (queue.empty()) overflowing = false;
            std::array<std::shared_ptr<Object>, kObjectLimit> listeners;
            std::copy(objects.begin(), objects.end(), listeners.begin());
            for (const auto& object : listeners) {
                if (object == nullptr || object->first > entry.number) continue;
                guard.unlock();
                bool taken = false;
                guarded("a notification",
                        [&] { taken = (*entry.notification)(*object->callback); });
                if (monitor.active()) show(monitor, *entry.notification, taken);
                guard.lock();
                ++(taken ? object->delivered : object->lost);
            }
        }
        ended = true;
        arrived.notify_all();
    }

    /** Sends a notification of this process to the monitors. */
    void show(Monitor& monitor, const Notification& notification, bool taken) const {
        guarded("the line of a monitored notification", [&] {
            const sp<Callback> shown =
                    new vendor::qelnova::tv::qeltvapi::V1_0::BpHwQelTvApiCallback(
                            sp<android::hardware::IBinder>(new Shown(monitor, pid, taken)));
            notification(*shown);
        });
    }

    bool waitForEnd(std::chrono::steady_clock::time_point deadline) {
        std::unique_lock<std::mutex> guard(lock);
        return arrived.wait_until(guard, deadline, [&] { return ended; });
    }
};

Notifier::Notifier(Monitor& monitor) : mMonitor(monitor) {}

Notifier::~Notifier() {
    std::list<std::unique_ptr<Process>> processes;
    {
        std::lock_guard<std::mutex> guard(mLock);
        processes.splice(processes.end(), mProcesses);
        processes.splice(processes.end(), mLeft);
    }
    for (const auto& process : processes) {
        std::vector<std::shared_ptr<Process::Object>> objects;
        {
            std::lock_guard<std::mutex> guard(process->lock);
            objects = process->objects;
        }
        for (const auto& object : objects) object->death->detach();
        process->leave();
    }
    const auto deadline = std::chrono::steady_clock::now() + kLastPatience;
    for (auto& process : processes) {
        if (process->waitForEnd(deadline)) {
            process->thread.join();
            continue;
        }
        ALOGW("process %d has not taken a notification", process->pid);
        process->thread.detach();
        // The thread still uses it.
        (void)process.release();
    }
}

void Notifier::add(const sp<Callback>& callback, int caller) {
    join();
    // The object names its process; a call of it could wait for the client without a limit.
    const int pid = hidlhost::processOf(android::hardware::toBinder(callback));
    sp<Death> death = new Death(this);
    uint64_t id = 0;
    {
        std::lock_guard<std::mutex> guard(mLock);
        auto found = std::find_if(mProcesses.begin(), mProcesses.end(),
                                  [&](const auto& process) { return process->pid == pid; });
        if (found == mProcesses.end()) {
            found = mProcesses.insert(mProcesses.end(), std::make_unique<Process>(pid, caller));
            try {
                (*found)->thread =
                        std::thread([this, process = found->get()] { process->deliver(mMonitor); });
            } catch (const std::system_error& e) {
                ALOGE("process %d gets no notifications: no thread for them: %s", pid, e.what());
                mProcesses.erase(found);
                return;
            }
        }
        Process& process = **found;
        std::lock_guard<std::mutex> processGuard(process.lock);
        for (const auto& known : process.objects) {
            // Each arrival of an object has a proxy of its own.
            if (android::hardware::interfacesEqual(known->callback, callback)) {
                ++known->registrations;
                return;
            }
        }
        if (process.objects.size() >= kObjectLimit) {
            ALOGE("process %d has registered %zu callback objects; another one is refused", pid,
                  process.objects.size());
            return;
        }
        id = mNextId++;
        auto object = std::make_shared<Process::Object>();
        object->id = id;
        object->callback = callback;
        object->death = death;
        object->first = process.posted;
        process.objects.push_back(std::move(object));
    }
    // Without the lock: a death may be notified at once, from another thread.
    const auto linked = callback->linkToDeath(death, id);
    if (!linked.isOk() || !linked) forget(id);
}

void Notifier::forget(uint64_t id) {
    // Its proxy is released outside of the locks.
    std::shared_ptr<Process::Object> gone;
    std::lock_guard<std::mutex> guard(mLock);
    for (auto process = mProcesses.begin(); process != mProcesses.end(); ++process) {
        bool last = false;
        {
            std::lock_guard<std::mutex> processGuard((*process)->lock);
            auto& objects = (*process)->objects;
            const auto object = std::find_if(objects.begin(), objects.end(),
                                             [&](const auto& each) { return each->id == id; });
            if (object == objects.end()) continue;
            gone = *object;
            objects.erase(object);
            last = objects.empty();
        }
        ALOGI("client %llu (process %d) is gone", static_cast<unsigned long long>(id),
              (*process)->pid);
        if (last) {
            (*process)->leave();
            mLeft.splice(mLeft.end(), mProcesses, process);
        }
        return;
    }
}

/** Joins the threads of processes that have left, as far as they have ended. */
void Notifier::join() {
    std::lock_guard<std::mutex> guard(mLock);
    mLeft.remove_if([](const std::unique_ptr<Process>& process) {
        {
            std::lock_guard<std::mutex> processGuard(process->lock);
            if (!process->ended) return false;
        }
        process->thread.join();
        return true;
    });
}

void Notifier::post(Notification notification, int pid, size_t bytes) {
    const auto shared = std::make_shared<const Notification>(std::move(notification));
    std::lock_guard<std::mutex> guard(mLock);
    for (const auto& process : mProcesses) {
        if (pid == kEveryProcess || process->pid == pid || process->caller == pid) {
            process->post(shared, bytes);
        }
    }
}

std::vector<Notifier::ClientInfo> Notifier::clients() const {
    std::lock_guard<std::mutex> guard(mLock);
    std::vector<ClientInfo> infos;
    for (const auto& process : mProcesses) {
        std::lock_guard<std::mutex> processGuard(process->lock);
        for (const auto& object : process->objects) {
            infos.push_back({object->id, process->pid, object->registrations, object->delivered,
                             object->lost, process->queue.size()});
        }
    }
    return infos;
}

}  // namespace qeltvd
