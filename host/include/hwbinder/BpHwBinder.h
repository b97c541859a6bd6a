#pragma once

#include <atomic>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include <hwbinder/IBinder.h>

namespace hidlhost {
class Peer;
}

namespace android {
namespace hardware {

/** An object of another process. There is one for each remote object, as long as it is in use. */
class BpHwBinder : public IBinder {
  public:
    /** Only the runtime makes these; `peer` is the process, `id` the object's number there. */
    BpHwBinder(std::shared_ptr<hidlhost::Peer> peer, uint64_t id);

    status_t transact(uint32_t code, const Parcel& data, Parcel* reply, uint32_t flags = 0,
                      TransactCallback callback = nullptr) override;

    status_t linkToDeath(const sp<DeathRecipient>& recipient, void* cookie = nullptr,
                         uint32_t flags = 0) override;
    status_t unlinkToDeath(const wp<DeathRecipient>& recipient, void* cookie = nullptr,
                           uint32_t flags = 0, wp<DeathRecipient>* outRecipient = nullptr) override;

    BpHwBinder* remoteBinder() override;

    /**
     * The process that hosts the object, as this one knows it. A child that has the proxy from its
     * parent takes a reference of its own to the object at its first use.
     */
    const std::shared_ptr<hidlhost::Peer>& peer();
    uint64_t id() const { return mId; }

    /** The service is registered as this interface, so that it need not be asked. */
    void setKnownAs(const std::string& interface);
    bool isKnownAs(const char* interface);

    /** Notifies the recipients, on the runtime's thread, that the process is gone. */
    void sendObituary();

  protected:
    ~BpHwBinder() override;
    void onLastStrongRef(const void* id) override;

  private:
    friend class hidlhost::Peer;

    struct Obituary {
        sp<DeathRecipient> recipient;
        void* cookie;
    };

    void adopt();

    std::shared_ptr<hidlhost::Peer> mPeer;
    /** The generation of the process that mPeer belongs to; written after it. */
    std::atomic<uint32_t> mGeneration;
    const uint64_t mId;
    /** How often the object has arrived, which is what its release gives back. Peer's lock. */
    uint32_t mReceived = 0;

    // With the process lock of all proxies, because it is free in every child.
    bool mObituariesSent = false;
    std::vector<Obituary> mObituaries;
    std::vector<std::string> mKnownAs;
};

}  // namespace hardware
}  // namespace android
