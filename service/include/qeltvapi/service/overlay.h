/** Serves some interfaces or methods in front of a television that serves the others. */
#ifndef QELTVAPI_SERVICE_OVERLAY_H
#define QELTVAPI_SERVICE_OVERLAY_H

#include <android/hidl/base/1.0/IBase.h>
#include <utils/StrongPointer.h>

#include <chrono>
#include <cstddef>
#include <stdexcept>
#include <string>

namespace qeltvapi::service {

/**
 * A service of all fifteen interfaces. Some are the caller's own objects; the calls of the others
 * go to a television in the same runtime directory, which is registered under another instance
 * name: `qeltvd --instance reference`.
 *
 * Clients take the overlay for the television. A call without an answer from the television is a
 * transport failure of the client's call. The death of the television is the death of all objects
 * of the overlay.
 *
 * The television sees one client, the overlay's process. Locks, snapshots and UARTs belong to that
 * process, whichever client has asked for them.
 *
 * All functions may be called by any thread.
 */
class __attribute__((visibility("default"))) Overlay {
  public:
    /** How many calls run at a time if nothing else is said. */
    static constexpr size_t kThreads = 16;

    /**
     * Finds the television, and waits for it if it is not there yet.
     *
     * @param television its instance name
     * @param patience   how long to wait
     * @param threads    how many calls run at a time, 1 or more
     * @throws std::runtime_error if it does not come up in time
     */
    explicit Overlay(const std::string& television = "reference",
                     std::chrono::milliseconds patience = std::chrono::seconds(10),
                     size_t threads = kThreads);
    /** Ends the service, as the death of its process does. */
    ~Overlay();
    Overlay(const Overlay&) = delete;
    Overlay& operator=(const Overlay&) = delete;

    /**
     * The television's own service of an interface, for a Forward.
     *
     * @throws std::runtime_error if the television does not serve it
     */
    template <class Interface>
    ::android::sp<Interface> television() const {
        ::android::sp<Interface> found = Interface::tryGetService(mTelevision);
        if (found == nullptr) throw std::runtime_error(missing(Interface::descriptor));
        return found;
    }

    /**
     * Serves an interface with an object of the caller's. Only before start().
     *
     * @param service implements the whole interface; null has the television serve it again
     * @throws std::invalid_argument if it is the proxy of another process' object
     */
    template <class Interface>
    void replace(const ::android::sp<Interface>& service) {
        put(Interface::descriptor, service);
    }

    /**
     * Registers all fifteen interfaces. Calls arrive from here on. Only once.
     *
     * @param instance the name under which clients look for the service
     * @throws std::runtime_error if the television has died or lacks an interface, or if the
     *         interfaces cannot be registered
     * @throws std::logic_error if it has been started before, or if the instance is the
     *         television's
     */
    void start(const std::string& instance = "default");

    /** Returns once the television has died. Clients have lost the service by then. */
    void wait() const;

  private:
    class Service;

    void put(const std::string& interface,
             const ::android::sp<::android::hidl::base::V1_0::IBase>& service);
    std::string missing(const std::string& interface) const;

    const std::string mTelevision;
    const ::android::sp<Service> mService;
};

}  // namespace qeltvapi::service

#endif  // QELTVAPI_SERVICE_OVERLAY_H
