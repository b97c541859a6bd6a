#pragma once

#include <memory>
#include <string>
#include <vector>

#include <sys/uio.h>

#include <hwbinder/Parcel.h>

#include "Block.h"
#include "Wire.h"

namespace hidlhost {

using BlockPtr = std::unique_ptr<Block, BlockDeleter>;

/** Turns binders into numbers and back, as seen from one end of a connection. */
class BinderMapper {
  public:
    /** Sets kind and value of the record, and the process' name if the kind needs one. */
    virtual android::status_t encode(const android::sp<android::hardware::IBinder>& binder,
                                     ObjectRecord* record, std::string* name) = 0;
    virtual android::status_t decode(const ObjectRecord& record, const std::string& name,
                                     android::sp<android::hardware::IBinder>* binder) = 0;

  protected:
    ~BinderMapper() = default;
};

/** A message ready to be sent. Refers to the parcel's large buffers. */
struct Encoded {
    static constexpr size_t kInline = 2048;

    const iovec* vectors = nullptr;
    size_t vectorCount = 0;
    size_t size = 0;
    std::vector<int> descriptors;

    iovec single;
    std::vector<iovec> several;
    std::unique_ptr<uint8_t[]> staged;
    alignas(8) uint8_t inlineBytes[kInline];
};

class Codec {
  public:
    /** Completes the header's sizes. */
    static android::status_t encode(const android::hardware::Parcel& parcel, MessageHeader* header,
                                    BinderMapper* mapper, Encoded* out);

    /** Some are only known once the binders are. */
    static void setFlags(uint32_t flags, Encoded* encoded);

    /** A message that carries no more than a stream. */
    static void encodePlain(MessageHeader* header, const void* stream, size_t size, Encoded* out);

    /** The size of the whole message by its header; 0 if it cannot be right. */
    static uint64_t messageSize(const MessageHeader& header);

    /**
     * Checks the message in the block against itself and makes `parcel` its owner.
     * @return BAD_VALUE for a message that no correct sender makes
     */
    static android::status_t parse(BlockPtr block, BinderMapper* mapper,
                                   android::hardware::Parcel* parcel);

    /** Copies what a local callee wrote, before its buffers go, into a parcel of its own. */
    static android::status_t detach(const android::hardware::Parcel& from,
                                    android::hardware::Parcel* to);

    /** The name in the interface token that a call's stream begins with; "?" without one. */
    static const char* interfaceOf(const android::hardware::Parcel& parcel);
};

}  // namespace hidlhost
