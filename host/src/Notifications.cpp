#define LOG_TAG "hidlhost"

#include <atomic>
#include <cerrno>
#include <chrono>
#include <cstring>
#include <mutex>
#include <thread>

#include <android-base/unique_fd.h>
#include <log/log.h>
#include <poll.h>
#include <sys/inotify.h>
#include <unistd.h>

#include <android/hidl/manager/1.0/IServiceNotification.h>

#include "Fork.h"
#include "Services.h"
#include "Watcher.h"

using android::sp;
using android::base::unique_fd;
using android::hidl::manager::V1_0::IServiceNotification;

namespace hidlhost {
namespace {

/** Equal events that follow each other become one; the two of every registration alternate. */
constexpr uint32_t kMoved = IN_MOVED_FROM | IN_MOVED_TO;

/** @return a descriptor that is readable when something has been registered; none on failure */
unique_fd watchDirectory() {
    if (registry::directory().empty()) return {};
    unique_fd inotify(inotify_init1(IN_CLOEXEC | IN_NONBLOCK));
    if (inotify.ok() && inotify_add_watch(inotify, registry::directory().c_str(), kMoved) >= 0) {
        return inotify;
    }
    ALOGE("%s cannot be watched: %s", registry::directory().c_str(), strerror(errno));
    return {};
}

/** Takes what has happened; `moved` gets the file that each event names. */
template <typename Moved>
void takeEvents(int inotify, Moved moved) {
    alignas(inotify_event) char events[4096];
    for (;;) {
        const ssize_t size = read(inotify, events, sizeof(events));
        if (size <= 0) return;
        for (ssize_t at = 0; at < size;) {
            inotify_event event;
            memcpy(&event, events + at, sizeof(event));
            moved(event, event.len == 0 ? "" : events + at + sizeof(event));
            at += static_cast<ssize_t>(sizeof(event) + event.len);
        }
    }
}

/** The listeners' descriptors, for the children to close. */
std::atomic<int> gInotify{-1};

[[maybe_unused]] const bool sCloses = [] {
    onFork([] {
        const int inherited = gInotify.exchange(-1);
        if (inherited >= 0) close(inherited);
    });
    return true;
}();

struct Listener {
    std::string interface;
    std::string instance;
    sp<IServiceNotification> notified;
};

/** Notifies of every file that is moved to its place in the directory, which is a registration. */
class Listeners {
  public:
    /** Those of a parent are notified in the parent. */
    static Listeners& get() {
        return onePerProcess<Listeners>([] { return new Listeners; });
    }

    bool add(Listener listener) {
        std::lock_guard<std::mutex> lock(processMutex(ProcessLock::kListeners));
        if (!mInotify.ok()) {
            mInotify = watchDirectory();
            if (!mInotify.ok()) return false;
            gInotify = mInotify.get();
            Watcher::get().add(mInotify, [this] {
                std::lock_guard<std::mutex> changing(processMutex(ProcessLock::kListeners));
                takeRegistrations();
                return true;
            });
        }
        // Between the two, no registration is missed or notified of twice.
        const registry::Lock still;
        takeRegistrations();
        for (const registry::Name& name : registry::list()) notify(listener, name, true);
        mAll.push_back(std::move(listener));
        return true;
    }

  private:
    void takeRegistrations() {
        takeEvents(mInotify, [this](const inotify_event& event, const char* file) {
            registry::Name name;
            if ((event.mask & IN_Q_OVERFLOW) != 0) {
                // Twice is better than not at all.
                for (const registry::Name& there : registry::list()) notifyAll(there);
            } else if ((event.mask & IN_MOVED_TO) != 0 && registry::nameOfFile(file, &name)) {
                notifyAll(name);
            }
        });
    }

    void notifyAll(const registry::Name& name) {
        for (const Listener& listener : mAll) notify(listener, name, false);
    }

    static void notify(const Listener& listener, const registry::Name& name, bool preexisting) {
        if (name.first != listener.interface) return;
        if (!listener.instance.empty() && name.second != listener.instance) return;
        Watcher::get().post([notified = listener.notified, name, preexisting] {
            auto sent = notified->onRegistration(name.first, name.second, preexisting);
            if (!sent.isOk()) ALOGW("onRegistration: %s", sent.description().c_str());
        });
    }

    std::vector<Listener> mAll;
    unique_fd mInotify;
};

}  // namespace

bool notifyOfRegistrations(const std::string& interface, const std::string& instance,
                           const sp<IServiceNotification>& listener) {
    return listener != nullptr && Listeners::get().add({interface, instance, listener});
}

void waitForRegistration(const std::string& what, const std::function<bool()>& found) {
    using Clock = std::chrono::steady_clock;
    using std::chrono::milliseconds;
    // Watched from before the first look, so that nothing comes between them.
    const unique_fd inotify = watchDirectory();
    const auto begin = Clock::now();
    for (auto nextLine = begin + std::chrono::seconds(1); !found();) {
        const auto rest =
                std::chrono::duration_cast<milliseconds>(nextLine - Clock::now()) + milliseconds(1);
        if (rest > milliseconds(0)) {
            if (inotify.ok()) {
                pollfd watched = {inotify.get(), POLLIN, 0};
                poll(&watched, 1, static_cast<int>(rest.count()));
                takeEvents(inotify, [](const inotify_event&, const char*) {});
            } else {
                std::this_thread::sleep_for(std::min(rest, milliseconds(100)));
            }
        }
        if (Clock::now() < nextLine) continue;
        const auto waited = std::chrono::duration_cast<std::chrono::seconds>(nextLine - begin);
        ALOGW("waiting for %s, %lld s so far", what.c_str(),
              static_cast<long long>(waited.count()));
        nextLine += std::chrono::seconds(1);
    }
}

}  // namespace hidlhost
