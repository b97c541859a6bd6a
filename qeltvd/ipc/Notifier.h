#pragma once

#include <hidl/HidlSupport.h>
#include <vendor/qelnova/tv/qeltvapi/1.0/IQelTvApiCallback.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <list>
#include <memory>
#include <mutex>
#include <type_traits>
#include <utility>
#include <vector>

#include "Monitor.h"

namespace qeltvd {

/**
 * The clients' callback objects and the way to them. The objects of one client process share a
 * queue and a thread, so a process that is slow to take its notifications holds up no other one; a
 * queue that is full loses the newest notification. An object whose process dies is forgotten.
 */
class Notifier {
  public:
    using Callback = ::vendor::qelnova::tv::qeltvapi::V1_0::IQelTvApiCallback;
    /** Calls one method of a client's object; false when that failed in transport. */
    using Notification = std::function<bool(Callback&)>;

    /** What a process may leave waiting: notifications, and bytes of their texts and blocks. */
    static constexpr size_t kQueueLimit = 4096;
    static constexpr size_t kQueueBytes = size_t{16} << 20;
    /** Objects that one process can have registered. */
    static constexpr size_t kObjectLimit = 16;

    /** @param monitor is sent each notification */
    explicit Notifier(Monitor& monitor);
    /** Gives clients that take a notification a moment; threads that still wait then are left. */
    ~Notifier();
    Notifier(const Notifier&) = delete;
    Notifier& operator=(const Notifier&) = delete;

    /**
     * Registers an object of the client process that hosts it. The same object again is counted,
     * and is notified once. An object beyond the limit of its process, or for which there is no
     * thread, is refused.
     *
     * @param caller the process that has passed it on, as a rule the same
     */
    void add(const android::sp<Callback>& callback, int caller);

    static constexpr int kEveryProcess = 0;
    /**
     * Queues a notification for every client, or for those of one process.
     *
     * @param pid   the process, or the one that has passed the client's objects on
     * @param bytes the size of its texts and blocks
     */
    void post(Notification notification, int pid = kEveryProcess, size_t bytes = 0);

    /** Queues a call of one method, its arguments copied, for every client. */
    template <class... P, class... A>
    void notify(android::hardware::Return<void> (Callback::*method)(P...), A... arguments) {
        post([=](Callback& callback) { return (callback.*method)(arguments...).isOk(); },
             kEveryProcess, (size_t{0} + ... + sizeOf(arguments)));
    }

    /** A value of an event: any number, a signed one with its sign. */
    class Value {
      public:
        template <class T, class = std::enable_if_t<std::is_arithmetic_v<T> || std::is_enum_v<T>>>
        Value(T number) : mNumber(static_cast<uint64_t>(number)) {}
        operator uint64_t() const { return mNumber; }

      private:
        uint64_t mNumber;
    };

    /**
     * Queues a notification of the usual shape for every client: a type, the registration's word,
     * which is 0, and values, of which those that are left out are 0.
     */
    template <class Type, class... P, size_t N>
    void event(android::hardware::Return<void> (Callback::*method)(Type, uint64_t, P...),
               std::common_type_t<Type> type, const Value (&values)[N]) {
        static_assert(N <= sizeof...(P), "the notification has fewer values");
        static_assert((std::is_same_v<P, uint64_t> && ...), "call notify() for other values");
        uint64_t all[sizeof...(P)] = {};
        std::copy(values, values + N, all);
        raise(method, type, all, std::make_index_sequence<sizeof...(P)>());
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
    struct Process;
    class Death;
    class Shown;

    template <class T>
    static size_t sizeOf(const T&) {
        return 0;
    }
    template <class T>
    static size_t sizeOf(const android::hardware::hidl_vec<T>& values) {
        return values.size() * sizeof(T);
    }
    static size_t sizeOf(const android::hardware::hidl_string& text) { return text.size(); }

    template <class Method, class Type, size_t N, size_t... I>
    void raise(Method method, Type type, const uint64_t (&values)[N], std::index_sequence<I...>) {
        notify(method, type, uint64_t{0}, values[I]...);
    }

    void forget(uint64_t id);
    void join();

    Monitor& mMonitor;
    mutable std::mutex mLock;
    // Guarded by mLock.
    std::list<std::unique_ptr<Process>> mProcesses;
    /** Processes without objects, whose threads are to be joined. */
    std::list<std::unique_ptr<Process>> mLeft;
    uint64_t mNextId = 1;
};

}  // namespace qeltvd
