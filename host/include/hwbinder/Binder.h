#pragma once

#include <atomic>
#include <cstdint>

#include <hwbinder/IBinder.h>

namespace android {
namespace hardware {

/** An object of this process. */
class BHwBinder : public IBinder {
  public:
    BHwBinder();

    /** Runs onTransact() on the calling thread, with the reply ready to be read at the end. */
    status_t transact(uint32_t code, const Parcel& data, Parcel* reply, uint32_t flags = 0,
                      TransactCallback callback = nullptr) override;

    status_t linkToDeath(const sp<DeathRecipient>& recipient, void* cookie = nullptr,
                         uint32_t flags = 0) override;
    status_t unlinkToDeath(const wp<DeathRecipient>& recipient, void* cookie = nullptr,
                           uint32_t flags = 0, wp<DeathRecipient>* outRecipient = nullptr) override;

    BHwBinder* localBinder() override;

    /** Kept for the platform's interface; the caller's security context is not available here. */
    bool isRequestingSid() const;
    void setRequestingSid(bool requestSid);

    int getMinSchedulingPolicy() const { return mSchedPolicy; }
    int getMinSchedulingPriority() const { return mSchedPriority; }

    /**
     * Serves one transaction.
     *
     * @param data   the arguments, at their beginning
     * @param reply  takes the results; what it refers to must live until the reply is sent
     * @param callback sends the reply at once, and must be used where results are only valid
     *               inside onTransact(); without it the reply is sent after the return
     * @return OK, or the error that the caller's transact() returns if no reply was sent
     */
    virtual status_t onTransact(uint32_t code, const Parcel& data, Parcel* reply,
                                uint32_t flags = 0, TransactCallback callback = nullptr);

  protected:
    ~BHwBinder() override;

    int mSchedPolicy;
    int mSchedPriority;

  private:
    BHwBinder(const BHwBinder&) = delete;
    BHwBinder& operator=(const BHwBinder&) = delete;

    std::atomic<bool> mRequestingSid;
};

/** Holds the binder of a proxy. */
class BpHwRefBase : public virtual RefBase {
  protected:
    explicit BpHwRefBase(const sp<IBinder>& remote);
    ~BpHwRefBase() override;

  public:
    IBinder* remote() { return mRemote.get(); }
    IBinder* remote() const { return mRemote.get(); }

  private:
    BpHwRefBase(const BpHwRefBase&) = delete;
    BpHwRefBase& operator=(const BpHwRefBase&) = delete;

    const sp<IBinder> mRemote;
};

}  // namespace hardware
}  // namespace android
