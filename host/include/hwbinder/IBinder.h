#pragma once

#include <functional>

#include <utils/Errors.h>
#include <utils/RefBase.h>

// Generated stubs name the platform's scheduling policy; the C library knows it as SCHED_OTHER.
#include <sched.h>
#ifndef SCHED_NORMAL
#define SCHED_NORMAL SCHED_OTHER
#endif

namespace android {
namespace hardware {

class BHwBinder;
class BpHwBinder;
class Parcel;

/** An object that takes transactions: BHwBinder in this process, BpHwBinder for one elsewhere. */
class IBinder : public virtual RefBase {
  public:
    enum {
        FIRST_CALL_TRANSACTION = 0x00000001,
        LAST_CALL_TRANSACTION = 0x0effffff,

        FLAG_ONEWAY = 0x00000001,
    };

    /** Sends the reply; the argument is valid while it runs. */
    using TransactCallback = std::function<void(Parcel&)>;

    /** Notified once that the process of an object is gone. */
    class DeathRecipient : public virtual RefBase {
      public:
        virtual void binderDied(const wp<IBinder>& who) = 0;
    };

    IBinder();

    virtual status_t transact(uint32_t code, const Parcel& data, Parcel* reply, uint32_t flags = 0,
                              TransactCallback callback = nullptr) = 0;

    /** DEAD_OBJECT when the death is already known, INVALID_OPERATION on a local object. */
    virtual status_t linkToDeath(const sp<DeathRecipient>& recipient, void* cookie = nullptr,
                                 uint32_t flags = 0) = 0;

    /** Takes back one linkToDeath(). With a null recipient the cookie alone selects which. */
    virtual status_t unlinkToDeath(const wp<DeathRecipient>& recipient, void* cookie = nullptr,
                                   uint32_t flags = 0,
                                   wp<DeathRecipient>* outRecipient = nullptr) = 0;

    virtual BHwBinder* localBinder();
    virtual BpHwBinder* remoteBinder();

  protected:
    ~IBinder() override;
};

}  // namespace hardware
}  // namespace android
