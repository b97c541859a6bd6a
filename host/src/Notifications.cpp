#define LOG_TAG "hidlhost"

#include <set>

#include <android-base/unique_fd.h>
#include <log/log.h>
#include <sys/inotify.h>
#include <unistd.h>

#include <android/hidl/manager/1.0/IServiceNotification.h>

#include "Services.h"
#include "Watcher.h"

using android::sp;
using android::hidl::manager::V1_0::IServiceNotification;

namespace hidlhost {
namespace {

struct Listener {
    std::string interface;
    std::string instance;
    sp<IServiceNotification> told;
};

/** Who wants to know; looks at the directory whenever a file in it changes. */
struct Listeners {
    std::mutex mutex;
    std::vector<Listener> all;
    std::map<std::string, registry::Entry> seen;
    int inotify = -1;

    static Listeners& get() {
        static Listeners& listeners = *new Listeners;
        return listeners;
    }

    std::map<std::string, registry::Entry> look() {
        std::map<std::string, registry::Entry> now;
        for (const auto& name : registry::list()) {
            registry::Entry entry;
            if (registry::find(name.first, name.second, &entry)) {
                now[name.first + "/" + name.second] = entry;
            }
        }
        return now;
    }

    void tell(const Listener& listener, const std::string& key, bool preexisting) {
        size_t slash = key.find('/');
        std::string interface = key.substr(0, slash);
        std::string instance = key.substr(slash + 1);
        if (interface != listener.interface) return;
        if (!listener.instance.empty() && instance != listener.instance) return;
        Watcher::get().post([told = listener.told, interface, instance, preexisting] {
            auto sent = told->onRegistration(interface, instance, preexisting);
            if (!sent.isOk()) ALOGW("onRegistration: %s", sent.description().c_str());
        });
    }

    void changed() {
        std::lock_guard<std::mutex> lock(mutex);
        auto now = look();
        for (const auto& entry : now) {
            auto before = seen.find(entry.first);
            if (before != seen.end() && before->second == entry.second) continue;
            for (const Listener& listener : all) tell(listener, entry.first, false);
        }
        seen.swap(now);
    }
};

}  // namespace

bool notifyOfRegistrations(const std::string& interface, const std::string& instance,
                           const sp<IServiceNotification>& listener) {
    if (listener == nullptr || registry::directory().empty()) return false;
    Listeners& listeners = Listeners::get();
    std::lock_guard<std::mutex> lock(listeners.mutex);
    if (listeners.inotify < 0) {
        auto inotify =
                std::make_shared<android::base::unique_fd>(inotify_init1(IN_CLOEXEC | IN_NONBLOCK));
        if (!inotify->ok() ||
            inotify_add_watch(*inotify, registry::directory().c_str(), IN_MOVED_TO) < 0) {
            ALOGE("cannot watch %s: %s", registry::directory().c_str(), strerror(errno));
            return false;
        }
        listeners.inotify = *inotify;
        listeners.seen = listeners.look();
        Watcher::get().add(*inotify, [inotify] {
            alignas(inotify_event) char events[4096];
            while (read(*inotify, events, sizeof(events)) > 0) {
            }
            Listeners::get().changed();
            return true;
        });
    }
    listeners.all.push_back({interface, instance, listener});
    for (const auto& entry : listeners.seen) {
        listeners.tell(listeners.all.back(), entry.first, true);
    }
    return true;
}

}  // namespace hidlhost
