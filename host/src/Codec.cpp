#define LOG_TAG "hidlhost"

#include "Codec.h"

#include <algorithm>
#include <cstring>
#include <new>

#include <fcntl.h>

#include <log/log.h>

using android::BAD_VALUE;
using android::NO_MEMORY;
using android::OK;
using android::sp;
using android::status_t;
using android::hardware::IBinder;
using android::hardware::Parcel;

namespace hidlhost {
namespace {

/** Buffers up to this size are copied beside the header, larger ones are sent from where they are.
 */
constexpr size_t kGatherFrom = 1024;
constexpr size_t kHandleHeader = sizeof(native_handle_t);
/** So many buffers at the beginning of a message are looked at; the slots mean nothing anyway. */
constexpr size_t kWiped = 32;
constexpr uint8_t kZeros[8] = {};

bool isBinder(uint32_t kind) {
    return kind >= kNullBinder && kind <= kOthersBinder;
}

/** Collects the parts of a message: copies in one stretch of memory, references between them. */
class Gatherer {
  public:
    Gatherer(Encoded* out, uint8_t* stage) : mOut(out), mNext(stage), mFrom(stage) {}

    uint8_t* copy(const void* bytes, size_t size) {
        uint8_t* at = mNext;
        if (size != 0) memcpy(at, bytes, size);
        mNext += size;
        return at;
    }
    uint8_t* pad(size_t written) {
        return copy(kZeros, static_cast<size_t>(padded(written) - written));
    }

    void refer(const void* bytes, size_t size) {
        flush();
        mOut->several.push_back({const_cast<void*>(bytes), size});
    }
    void flush() {
        if (mNext != mFrom) {
            mOut->several.push_back({mFrom, static_cast<size_t>(mNext - mFrom)});
            mFrom = mNext;
        }
    }

  private:
    Encoded* mOut;
    uint8_t* mNext;
    uint8_t* mFrom;
};

void fillSizes(MessageHeader* header, size_t dataSize, size_t records, uint64_t payload,
               size_t descriptors) {
    header->magic = kMagic;
    header->dataSize = static_cast<uint32_t>(dataSize);
    header->recordCount = static_cast<uint32_t>(records);
    header->payloadSize = static_cast<uint32_t>(payload);
    header->descriptorCount = static_cast<uint32_t>(descriptors);
}

bool checkHandle(const uint8_t* bytes, size_t length, uint32_t* descriptors) {
    if (length < kHandleHeader) return false;
    native_handle_t handle;
    memcpy(&handle, bytes, sizeof(handle));
    if (handle.version != static_cast<int>(sizeof(native_handle_t))) return false;
    if (handle.numFds < 0 || handle.numFds > NATIVE_HANDLE_MAX_FDS) return false;
    if (handle.numInts < 0 || handle.numInts > NATIVE_HANDLE_MAX_INTS) return false;
    auto numbers = static_cast<size_t>(handle.numFds) + static_cast<size_t>(handle.numInts);
    if (length != kHandleHeader + numbers * sizeof(int)) return false;
    *descriptors = static_cast<uint32_t>(handle.numFds);
    return true;
}

}  // namespace

status_t Codec::encode(const Parcel& parcel, MessageHeader* header, BinderMapper* mapper,
                       Encoded* out) {
    if (parcel.mError != OK) return parcel.mError;

    const ObjectRecord* records = parcel.mRecords;
    const size_t count = parcel.mRecordCount;

    std::vector<ObjectRecord> binders;
    std::vector<std::string> names;
    uint64_t payload = 0;
    uint64_t copied = 0;
    for (size_t i = 0; i < count; ++i) {
        uint64_t length = padded(records[i].length);
        if (isBinder(records[i].kind)) {
            ObjectRecord record = records[i];
            std::string name;
            record.length = 0;
            if (record.kind != kNullBinder) {
                const sp<IBinder>& binder = parcel.mBinders[static_cast<size_t>(record.value)];
                status_t status = mapper->encode(binder, &record, &name);
                if (status != OK) return status;
                record.length = static_cast<uint32_t>(name.size());
            }
            length = padded(record.length);
            binders.push_back(record);
            names.push_back(std::move(name));
        } else if (records[i].kind == kHandle) {
            auto* handle = static_cast<const native_handle_t*>(parcel.address(records[i]));
            out->descriptors.insert(out->descriptors.end(), handle->data,
                                    handle->data + handle->numFds);
        }
        payload += length;
        if (isBinder(records[i].kind) || records[i].length <= kGatherFrom) {
            copied += length;
        } else {
            copied += 8;
        }
        if (payload > kMaxMessage) return NO_MEMORY;
    }
    if (out->descriptors.size() > kMaxDescriptors) {
        ALOGE("a message cannot carry more than %zu descriptors", kMaxDescriptors);
        return BAD_VALUE;
    }

    fillSizes(header, parcel.mDataSize, count, payload, out->descriptors.size());
    uint64_t total = messageSize(*header);
    if (total == 0) {
        ALOGE("a message cannot be larger than %llu bytes",
              static_cast<unsigned long long>(kMaxMessage));
        return NO_MEMORY;
    }

    uint64_t stageSize =
            sizeof(*header) + padded(parcel.mDataSize) + count * sizeof(ObjectRecord) + copied;
    uint8_t* stage = out->inlineBytes;
    if (stageSize > Encoded::kInline) {
        out->staged.reset(new (std::nothrow) uint8_t[static_cast<size_t>(stageSize)]);
        stage = out->staged.get();
        if (stage == nullptr) return NO_MEMORY;
    }

    Gatherer gather(out, stage);
    gather.copy(header, sizeof(*header));
    gather.copy(parcel.mData, parcel.mDataSize);
    gather.pad(parcel.mDataSize);
    auto* written = reinterpret_cast<ObjectRecord*>(gather.copy(records, count * sizeof(*records)));

    // The place of a copy, so that this process's pointers can be wiped from it.
    uint8_t* recent[kWiped];
    uint64_t offset = 0;
    size_t binder = 0;
    for (size_t i = 0; i < count; ++i) {
        ObjectRecord& record = written[i];
        if (record.parent < std::min(i, kWiped) && recent[record.parent] != nullptr) {
            memset(recent[record.parent] + record.parentOffset, 0, 8);
        }
        if (i < kWiped) recent[i] = nullptr;
        if (isBinder(record.kind)) {
            record = binders[binder];
            gather.copy(names[binder].data(), record.length);
            gather.pad(record.length);
            ++binder;
            offset += padded(record.length);
            continue;
        }
        const void* bytes = parcel.address(records[i]);
        record.value = offset;
        if (record.length <= kGatherFrom) {
            uint8_t* at = gather.copy(bytes, record.length);
            gather.pad(record.length);
            if (i < kWiped) recent[i] = at;
            if (record.kind == kHandle) {
                // Descriptor numbers of this process mean nothing in another.
                memset(at + kHandleHeader, 0,
                       static_cast<size_t>(static_cast<const native_handle_t*>(bytes)->numFds) *
                               sizeof(int));
            }
        } else {
            gather.refer(bytes, record.length);
            gather.pad(record.length);
        }
        offset += padded(record.length);
    }
    out->size = static_cast<size_t>(total);
    if (out->several.empty()) {
        out->single = {stage, out->size};
        out->vectors = &out->single;
        out->vectorCount = 1;
    } else {
        gather.flush();
        out->vectors = out->several.data();
        out->vectorCount = out->several.size();
    }
    return OK;
}

void Codec::setFlags(uint32_t flags, Encoded* encoded) {
    auto* header = static_cast<uint8_t*>(encoded->vectors[0].iov_base);
    memcpy(header + offsetof(MessageHeader, flags), &flags, sizeof(flags));
}

void Codec::encodePlain(MessageHeader* header, const void* stream, size_t size, Encoded* out) {
    fillSizes(header, size, 0, 0, 0);
    memcpy(out->inlineBytes, header, sizeof(*header));
    if (size != 0) memcpy(out->inlineBytes + sizeof(*header), stream, size);
    const auto room = static_cast<size_t>(padded(size));
    memset(out->inlineBytes + sizeof(*header) + size, 0, room - size);
    out->size = sizeof(*header) + room;
    out->single = {out->inlineBytes, out->size};
    out->vectors = &out->single;
    out->vectorCount = 1;
}

uint64_t Codec::messageSize(const MessageHeader& header) {
    if (header.payloadSize % 8 != 0) return 0;
    uint64_t total = sizeof(header) + padded(header.dataSize) +
                     uint64_t{header.recordCount} * sizeof(ObjectRecord) + header.payloadSize;
    return total > kMaxMessage ? 0 : total;
}

status_t Codec::parse(BlockPtr block, BinderMapper* mapper, Parcel* parcel) {
    parcel->freeData();
    MessageHeader header;
    if (block->size < sizeof(header)) return BAD_VALUE;
    memcpy(&header, block->bytes, sizeof(header));
    if (header.magic != kMagic || messageSize(header) != block->size) return BAD_VALUE;
    if (header.descriptorCount != block->descriptors.size()) return BAD_VALUE;

    uint8_t* stream = block->bytes + sizeof(header);
    auto* records = reinterpret_cast<ObjectRecord*>(stream + padded(header.dataSize));
    auto* payload = reinterpret_cast<uint8_t*>(records + header.recordCount);

    uint64_t offset = 0;
    uint32_t descriptor = 0;
    uint64_t binders = 0;
    for (uint32_t i = 0; i < header.recordCount; ++i) {
        const ObjectRecord& record = records[i];
        if (padded(record.length) > header.payloadSize - offset) return BAD_VALUE;
        if (record.parent != kNoParent) {
            if (record.kind > kNullHandle || record.parent >= i) return BAD_VALUE;
            const ObjectRecord& parent = records[record.parent];
            if (parent.kind != kBuffer || record.parentOffset % 8 != 0) return BAD_VALUE;
            if (uint64_t{record.parentOffset} + 8 > parent.length) return BAD_VALUE;
        }
        switch (record.kind) {
            case kHandle: {
                uint32_t numFds = 0;
                if (record.value != offset ||
                    !checkHandle(payload + offset, record.length, &numFds))
                    return BAD_VALUE;
                if (numFds > header.descriptorCount - descriptor) return BAD_VALUE;
                if (numFds != 0) {
                    memcpy(payload + offset + kHandleHeader, block->descriptors.data() + descriptor,
                           numFds * sizeof(int));
                }
                descriptor += numFds;
                break;
            }
            case kBuffer:
                if (record.value != offset) return BAD_VALUE;
                break;
            case kNullBuffer:
            case kNullHandle:
            case kNullBinder:
                if (record.length != 0) return BAD_VALUE;
                break;
            case kSendersBinder:
            case kReceiversBinder:
                if (record.length != 0) return BAD_VALUE;
                ++binders;
                break;
            case kOthersBinder:
                ++binders;
                break;
            default:
                return BAD_VALUE;
        }
        offset += padded(record.length);
    }
    if (offset != header.payloadSize || descriptor != header.descriptorCount) return BAD_VALUE;

    // References count from here on, so that nothing above may refuse the message any more.
    if (binders != 0) {
        offset = 0;
        for (uint32_t i = 0; i < header.recordCount; ++i) {
            ObjectRecord& record = records[i];
            if (isBinder(record.kind) && record.kind != kNullBinder) {
                std::string name(reinterpret_cast<char*>(payload + offset), record.length);
                sp<IBinder> binder;
                status_t status = mapper->decode(record, name, &binder);
                if (status != OK) {
                    parcel->freeData();
                    return status;
                }
                record.value = parcel->mBinders.size();
                parcel->mBinders.push_back(std::move(binder));
            }
            offset += padded(record.length);
        }
    }

    parcel->mData = stream;
    parcel->mDataSize = header.dataSize;
    parcel->mRecords = records;
    parcel->mRecordCount = header.recordCount;
    parcel->mPayload = payload;
    parcel->mBlock = block.release();
    return OK;
}

namespace {

/** Keeps binders as they are. */
class SameProcessMapper final : public BinderMapper {
  public:
    status_t encode(const sp<IBinder>& binder, ObjectRecord* record, std::string*) override {
        record->kind = kReceiversBinder;
        record->value = mBinders.size();
        mBinders.push_back(binder);
        return OK;
    }
    status_t decode(const ObjectRecord& record, const std::string&, sp<IBinder>* binder) override {
        if (record.value >= mBinders.size()) return BAD_VALUE;
        *binder = mBinders[static_cast<size_t>(record.value)];
        return OK;
    }

  private:
    std::vector<sp<IBinder>> mBinders;
};

}  // namespace

status_t Codec::detach(const Parcel& from, Parcel* to) {
    SameProcessMapper mapper;
    MessageHeader header = {};
    auto encoded = std::make_unique<Encoded>();
    status_t status = encode(from, &header, &mapper, encoded.get());
    if (status != OK) return status;
    BlockPtr block(Block::take());
    if (!block || !block->reserve(encoded->size)) return NO_MEMORY;
    for (size_t i = 0; i < encoded->vectorCount; ++i) {
        const iovec& part = encoded->vectors[i];
        memcpy(block->bytes + block->size, part.iov_base, part.iov_len);
        block->size += part.iov_len;
    }
    for (int descriptor : encoded->descriptors) {
        int copy = fcntl(descriptor, F_DUPFD_CLOEXEC, 0);
        if (copy < 0) return -errno;
        block->descriptors.push_back(copy);
    }
    return parse(std::move(block), &mapper, to);
}

const char* Codec::interfaceOf(const Parcel& parcel) {
    const void* end = memchr(parcel.mData, 0, parcel.mDataSize);
    return end == nullptr ? "?" : reinterpret_cast<const char*>(parcel.mData);
}

}  // namespace hidlhost
