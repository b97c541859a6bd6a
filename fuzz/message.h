/** Messages of the transport from and to plain bytes, for the fuzz targets and their corpus. */
#pragma once

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <cstring>
#include <memory>
#include <string>
#include <vector>

#include "Block.h"
#include "Codec.h"

namespace fuzz {

using android::sp;
using android::status_t;
using android::hardware::IBinder;
using android::hardware::Parcel;

/** An object that belongs to nobody and does nothing. */
class NoObject : public android::hardware::BHwBinder {
  public:
    status_t onTransact(uint32_t, const Parcel&, Parcel*, uint32_t, TransactCallback) override {
        return android::OK;
    }
};

/** Binders are numbers here; every one that arrives is an object of its own. */
class Mapper : public hidlhost::BinderMapper {
  public:
    status_t encode(const sp<IBinder>&, hidlhost::ObjectRecord* record, std::string*) override {
        record->kind = hidlhost::kSendersBinder;
        record->value = 1;
        return android::OK;
    }
    status_t decode(const hidlhost::ObjectRecord& record, const std::string&,
                    sp<IBinder>* binder) override {
        if (record.kind == hidlhost::kReceiversBinder) return android::BAD_VALUE;
        *binder = new NoObject;
        return android::OK;
    }
};

/**
 * Parses bytes as a message. The mark and the sizes, by which a message is known to be whole, are
 * put right first, so that what is fuzzed is what lies behind.
 */
inline bool parse(const uint8_t* data, size_t size, hidlhost::MessageHeader* header,
                  Parcel* parcel) {
    if (size < sizeof(*header)) return false;
    size -= (size - sizeof(*header)) % 8;
    memcpy(header, data, sizeof(*header));
    const size_t body = size - sizeof(*header);
    header->magic = hidlhost::kMagic;
    header->dataSize = static_cast<uint32_t>(std::min<size_t>(header->dataSize, body));
    const size_t behindStream = body - std::min<size_t>(body, hidlhost::padded(header->dataSize));
    header->recordCount = static_cast<uint32_t>(
            std::min<size_t>(header->recordCount, behindStream / sizeof(hidlhost::ObjectRecord)));
    header->payloadSize = static_cast<uint32_t>(
            behindStream - header->recordCount * sizeof(hidlhost::ObjectRecord));
    header->descriptorCount %= 4;

    // Made to measure, so that a look beyond its end is seen.
    hidlhost::BlockPtr block(new hidlhost::Block);
    if (!block->reserve(size)) return false;
    memcpy(block->bytes, data, size);
    memcpy(block->bytes, header, sizeof(*header));
    block->size = size;
    for (uint32_t i = 0; i < header->descriptorCount; ++i) {
        block->descriptors.push_back(open("/dev/null", O_RDWR | O_CLOEXEC));
    }
    Mapper mapper;
    return hidlhost::Codec::parse(std::move(block), &mapper, parcel) == android::OK;
}

/** The bytes of a message that carries the parcel. */
inline std::string bytesOf(const Parcel& parcel, uint32_t code) {
    hidlhost::MessageHeader header{};
    header.kind = hidlhost::kCall;
    header.code = code;
    Mapper mapper;
    hidlhost::Encoded encoded;
    if (hidlhost::Codec::encode(parcel, &header, &mapper, &encoded) != android::OK) return "";
    std::string bytes;
    for (size_t i = 0; i < encoded.vectorCount; ++i) {
        bytes.append(static_cast<const char*>(encoded.vectors[i].iov_base),
                     encoded.vectors[i].iov_len);
    }
    return bytes;
}

}  // namespace fuzz
