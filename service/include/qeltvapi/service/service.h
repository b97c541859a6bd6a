/**
 * Classes from which the services of the package vendor.qelnova.tv.qeltvapi@1.0 derive. The header
 * qeltvapi/service/<Interface>.h defines both templates for one interface, as in
 * qeltvapi/service/IQelTvApiConfig.h; qeltvapi/service/interfaces.h includes them all.
 */
#ifndef QELTVAPI_SERVICE_SERVICE_H
#define QELTVAPI_SERVICE_SERVICE_H

#include <hidl/HidlSupport.h>
#include <hidl/Status.h>
#include <layouts/event.h>

#include <algorithm>
#include <cstdint>
#include <stdexcept>
#include <string>

namespace qeltvapi::service {

/**
 * Default<Interface> implements every method of an interface as "not supported". A class that
 * derives from it overrides the methods that it has.
 *
 * The last result of a method, if it is an int32_t, is the code QELTV_UNSUPPORTED of
 * layouts/codes.h. All other results are zeros, false, and empty texts, vectors and handles, but
 * for a block that a client copies as it has asked for it: that has as many zeros. The constructor
 *
 *     explicit Default(int32_t code = QELTV_UNSUPPORTED, bool everywhere = false)
 *
 * sets another code, mCode. With `everywhere` that code, converted, is also the answer of methods
 * whose only result has another type: true, or a number.
 */
template <class Interface>
class Default;

/**
 * Forward<Interface> passes every call to another implementation of the interface, as a rule the
 * proxy of a service, and returns its answer; IBase::debug() too. A class that derives from it
 * overrides methods, and may call those of Forward. `mNext` is the other implementation. The
 * constructor
 *
 *     explicit Forward(sp<Interface> next)
 *
 * takes it, not null. Callback objects, handles and shared memory are passed on as they are: the
 * service behind it calls the client directly, and sees the client's death. It takes all calls for
 * those of this process.
 *
 * Without an answer every method throws TransportFailure. An Overlay turns that into a transport
 * failure of the client's call. In a service that is registered without an Overlay it ends the
 * process.
 */
template <class Interface>
class Forward;

/**
 * A block for a client that copies as many bytes as it has asked for, of a refusal too.
 *
 * @param size 0 to QELTV_EVENT_BLOCK_MAXIMUM
 * @return so many zeros; an empty block for another size
 */
inline ::android::hardware::hidl_vec<uint8_t> zeros(int32_t size) {
    ::android::hardware::hidl_vec<uint8_t> block;
    if (size <= 0 || size > QELTV_EVENT_BLOCK_MAXIMUM) return block;
    block.resize(static_cast<size_t>(size));
    std::fill(block.begin(), block.end(), uint8_t{0});
    return block;
}

/** The service behind a Forward has not answered. */
class __attribute__((visibility("default"))) TransportFailure : public std::runtime_error {
  public:
    /**
     * @param dead        whether the process of the service has ended
     * @param description for a log
     */
    TransportFailure(bool dead, const std::string& description)
            : std::runtime_error(description), mDead(dead) {}

    /** Whether the process of the service has ended. Otherwise only this call has failed. */
    bool dead() const { return mDead; }

  private:
    bool mDead;
};

/**
 * Checks the reply of a service.
 *
 * @return the reply, which is ok
 * @throws TransportFailure if there is none
 */
template <class T>
::android::hardware::Return<T> answered(::android::hardware::Return<T> reply) {
    if (!reply.isOk()) throw TransportFailure(reply.isDeadObject(), reply.description());
    return reply;
}

}  // namespace qeltvapi::service

#endif  // QELTVAPI_SERVICE_SERVICE_H
