// Bytes that arrive at a client: any bytes as the reply to a call.

#include "calls.h"
#include "message.h"

namespace {

/** Answers every call with the fuzzer's bytes. */
class Answering : public android::hardware::IBinder {
  public:
    Answering(const uint8_t* data, size_t size) : mData(data), mSize(size) {}

    android::status_t transact(uint32_t, const android::hardware::Parcel&,
                               android::hardware::Parcel* reply, uint32_t,
                               TransactCallback) override {
        hidlhost::MessageHeader header;
        return fuzz::parse(mData, mSize, &header, reply) ? android::OK : android::BAD_VALUE;
    }
    android::status_t linkToDeath(const android::sp<DeathRecipient>&, void*, uint32_t) override {
        return android::INVALID_OPERATION;
    }
    android::status_t unlinkToDeath(const android::wp<DeathRecipient>&, void*, uint32_t,
                                    android::wp<DeathRecipient>*) override {
        return android::INVALID_OPERATION;
    }

  private:
    const uint8_t* const mData;
    const size_t mSize;
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    // The last byte selects the call that it answers.
    if (size == 0) return 0;
    const auto& calls = fuzz::calls();
    calls[data[size - 1] % calls.size()].call(new Answering(data, size - 1));
    return 0;
}
