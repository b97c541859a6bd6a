#define LOG_TAG "hidlhost"

#include <hwbinder/Parcel.h>

#include <atomic>
#include <cstdlib>
#include <cstring>
#include <new>

#include <log/log.h>

#include "Block.h"
#include "Wire.h"

using hidlhost::kNoParent;
using hidlhost::padded;

namespace android {
namespace hardware {
namespace {

size_t handleLength(const native_handle_t* handle) {
    return sizeof(native_handle_t) +
           (static_cast<size_t>(handle->numFds) + static_cast<size_t>(handle->numInts)) *
                   sizeof(int);
}

size_t padded4(size_t size) {
    return (size + 3) & ~size_t{3};
}

}  // namespace

Parcel::Parcel()
        : mData(mInlineData),
          mRecords(reinterpret_cast<Record*>(mInlineRecords)),
          mPayload(nullptr),
          mBlock(nullptr),
          mDataSize(0),
          mDataCapacity(kInlineData),
          mRecordCount(0),
          mRecordCapacity(kInlineRecords),
          mPosition(0),
          mNextRecord(0),
          mError(OK) {
    static_assert(kRecordSize == sizeof(Record), "the header cannot include the wire format");
}

Parcel::~Parcel() {
    release();
}

void Parcel::release() {
    if (mBlock != nullptr) {
        hidlhost::Block::give(mBlock);
    } else {
        if (mData != mInlineData) free(mData);
        if (reinterpret_cast<uint8_t*>(mRecords) != mInlineRecords) free(mRecords);
    }
}

void Parcel::freeData() {
    release();
    mBinders.clear();
    mAllocations.clear();
    mData = mInlineData;
    mRecords = reinterpret_cast<Record*>(mInlineRecords);
    mPayload = nullptr;
    mBlock = nullptr;
    mDataSize = 0;
    mDataCapacity = kInlineData;
    mRecordCount = 0;
    mRecordCapacity = kInlineRecords;
    mPosition = 0;
    mNextRecord = 0;
    mError = OK;
}

void Parcel::setDataPosition(size_t position) const {
    if (position > mDataSize) position = mDataSize;
    // Records are read in order; going back starts them over.
    if (position < mPosition) mNextRecord = 0;
    mPosition = static_cast<uint32_t>(position);
}

size_t Parcel::payloadSize() const {
    size_t size = 0;
    for (uint32_t i = 0; i < mRecordCount; ++i) size += mRecords[i].length;
    return size;
}

void* Parcel::allocate(size_t size) {
    mAllocations.emplace_back(new uint64_t[size / sizeof(uint64_t) + 1]());
    return mAllocations.back().get();
}

// Writing

/** Zeroes the padding. Null, with the error kept, if there is no room. */
uint8_t* Parcel::grow(size_t size) {
    if (mBlock != nullptr) mError = INVALID_OPERATION;
    size_t length = padded4(size);
    if (length < size || length > hidlhost::kMaxMessage - mDataSize) mError = NO_MEMORY;
    if (mError != OK) return nullptr;
    size_t needed = mDataSize + length;
    if (needed > mDataCapacity) {
        size_t capacity = needed * 2;
        bool isInline = mData == mInlineData;
        void* grown = realloc(isInline ? nullptr : mData, capacity);
        if (grown == nullptr) {
            mError = NO_MEMORY;
            return nullptr;
        }
        if (isInline) memcpy(grown, mInlineData, mDataSize);
        mData = static_cast<uint8_t*>(grown);
        mDataCapacity = static_cast<uint32_t>(capacity);
    }
    uint8_t* at = mData + mDataSize;
    if (length != size) memset(at + length - 4, 0, 4);
    mDataSize += static_cast<uint32_t>(length);
    return at;
}

template <typename T>
status_t Parcel::writeScalar(T value) {
    uint8_t* at = grow(sizeof(T));
    if (at == nullptr) return mError;
    memcpy(at, &value, sizeof(T));
    return OK;
}

status_t Parcel::write(const void* data, size_t size) {
    uint8_t* at = grow(size);
    if (at == nullptr) return mError;
    if (size != 0) memcpy(at, data, size);
    return OK;
}

// Small integers take four bytes with the sign carried on, as on the device.
status_t Parcel::writeInt8(int8_t value) {
    return writeScalar(int32_t{value});
}
status_t Parcel::writeUint8(uint8_t value) {
    return writeScalar(uint32_t{value});
}
status_t Parcel::writeInt16(int16_t value) {
    return writeScalar(int32_t{value});
}
status_t Parcel::writeUint16(uint16_t value) {
    return writeScalar(uint32_t{value});
}
status_t Parcel::writeInt32(int32_t value) {
    return writeScalar(value);
}
status_t Parcel::writeUint32(uint32_t value) {
    return writeScalar(value);
}
status_t Parcel::writeInt64(int64_t value) {
    return writeScalar(value);
}
status_t Parcel::writeUint64(uint64_t value) {
    return writeScalar(value);
}
status_t Parcel::writeFloat(float value) {
    return writeScalar(value);
}
status_t Parcel::writeDouble(double value) {
    return writeScalar(value);
}
status_t Parcel::writeBool(bool value) {
    return writeScalar(uint32_t{value});
}

status_t Parcel::writeCString(const char* text) {
    return write(text, strlen(text) + 1);
}

status_t Parcel::writeInterfaceToken(const char* interface) {
    return writeCString(interface);
}

status_t Parcel::addRecord(uint32_t kind, uint32_t length, size_t parent, size_t parentOffset,
                           uint64_t value, size_t* handle) {
    if (mBlock != nullptr) mError = INVALID_OPERATION;
    if (mError != OK) return mError;
    if (parent != kNoParent &&
        (parent >= mRecordCount || mRecords[parent].kind != hidlhost::kBuffer ||
         parentOffset > mRecords[parent].length || mRecords[parent].length - parentOffset < 8)) {
        return mError = BAD_VALUE;
    }
    if (mRecordCount == mRecordCapacity) {
        size_t capacity = size_t{mRecordCapacity} * 2;
        bool isInline = reinterpret_cast<uint8_t*>(mRecords) == mInlineRecords;
        void* grown = realloc(isInline ? nullptr : mRecords, capacity * sizeof(Record));
        if (grown == nullptr) return mError = NO_MEMORY;
        if (isInline) memcpy(grown, mInlineRecords, sizeof(mInlineRecords));
        mRecords = static_cast<Record*>(grown);
        mRecordCapacity = static_cast<uint32_t>(capacity);
    }
    // The stream holds the record's index where the object belongs.
    status_t status = writeUint32(mRecordCount);
    if (status != OK) return status;
    mRecords[mRecordCount] = {kind, length, static_cast<uint32_t>(parent),
                              static_cast<uint32_t>(parentOffset), value};
    if (handle != nullptr) *handle = mRecordCount;
    ++mRecordCount;
    return OK;
}

status_t Parcel::writeStrongBinder(const sp<IBinder>& binder) {
    if (binder == nullptr) {
        return addRecord(hidlhost::kNullBinder, 0, kNoParent, 0, 0, nullptr);
    }
    status_t status =
            addRecord(hidlhost::kSendersBinder, 0, kNoParent, 0, mBinders.size(), nullptr);
    if (status == OK) mBinders.push_back(binder);
    return status;
}

status_t Parcel::writeBuffer(const void* buffer, size_t length, size_t* handle) {
    return writeEmbeddedBuffer(buffer, length, handle, kNoParent, 0);
}

status_t Parcel::writeEmbeddedBuffer(const void* buffer, size_t length, size_t* handle,
                                     size_t parentHandle, size_t parentOffset) {
    if (length > hidlhost::kMaxMessage) return mError = NO_MEMORY;
    if (buffer == nullptr) {
        if (length != 0) return mError = BAD_VALUE;
        return addRecord(hidlhost::kNullBuffer, 0, parentHandle, parentOffset, 0, handle);
    }
    return addRecord(hidlhost::kBuffer, static_cast<uint32_t>(length), parentHandle, parentOffset,
                     reinterpret_cast<uintptr_t>(buffer), handle);
}

status_t Parcel::writeNativeHandleNoDup(const native_handle_t* handle) {
    return writeEmbeddedNativeHandle(handle, kNoParent, 0);
}

status_t Parcel::writeEmbeddedNativeHandle(const native_handle_t* handle, size_t parentHandle,
                                           size_t parentOffset) {
    if (handle == nullptr) {
        return addRecord(hidlhost::kNullHandle, 0, parentHandle, parentOffset, 0, nullptr);
    }
    if (handle->version != static_cast<int>(sizeof(native_handle_t)) || handle->numFds < 0 ||
        handle->numFds > NATIVE_HANDLE_MAX_FDS || handle->numInts < 0 ||
        handle->numInts > NATIVE_HANDLE_MAX_INTS) {
        return mError = BAD_VALUE;
    }
    return addRecord(hidlhost::kHandle, static_cast<uint32_t>(handleLength(handle)), parentHandle,
                     parentOffset, reinterpret_cast<uintptr_t>(handle), nullptr);
}

// Reading

const void* Parcel::advance(size_t size) const {
    size_t length = padded4(size);
    if (length < size || length > dataAvail()) return nullptr;
    const void* at = mData + mPosition;
    mPosition += static_cast<uint32_t>(length);
    return at;
}

template <typename T>
status_t Parcel::readScalar(T* value) const {
    const void* at = advance(sizeof(T));
    if (at == nullptr) return NOT_ENOUGH_DATA;
    memcpy(value, at, sizeof(T));
    return OK;
}

status_t Parcel::read(void* data, size_t size) const {
    const void* at = advance(size);
    if (at == nullptr) return NOT_ENOUGH_DATA;
    if (size != 0) memcpy(data, at, size);
    return OK;
}

const void* Parcel::readInplace(size_t size) const {
    return advance(size);
}

status_t Parcel::readInt8(int8_t* value) const {
    int32_t wide;
    status_t status = readScalar(&wide);
    if (status == OK) *value = static_cast<int8_t>(wide);
    return status;
}
status_t Parcel::readUint8(uint8_t* value) const {
    uint32_t wide;
    status_t status = readScalar(&wide);
    if (status == OK) *value = static_cast<uint8_t>(wide);
    return status;
}
status_t Parcel::readInt16(int16_t* value) const {
    int32_t wide;
    status_t status = readScalar(&wide);
    if (status == OK) *value = static_cast<int16_t>(wide);
    return status;
}
status_t Parcel::readUint16(uint16_t* value) const {
    uint32_t wide;
    status_t status = readScalar(&wide);
    if (status == OK) *value = static_cast<uint16_t>(wide);
    return status;
}
status_t Parcel::readInt32(int32_t* value) const {
    return readScalar(value);
}
status_t Parcel::readUint32(uint32_t* value) const {
    return readScalar(value);
}
status_t Parcel::readInt64(int64_t* value) const {
    return readScalar(value);
}
status_t Parcel::readUint64(uint64_t* value) const {
    return readScalar(value);
}
status_t Parcel::readFloat(float* value) const {
    return readScalar(value);
}
status_t Parcel::readDouble(double* value) const {
    return readScalar(value);
}
status_t Parcel::readBool(bool* value) const {
    uint32_t wide;
    status_t status = readScalar(&wide);
    if (status == OK) *value = wide != 0;
    return status;
}

int32_t Parcel::readInt32() const {
    int32_t value = 0;
    readScalar(&value);
    return value;
}
uint32_t Parcel::readUint32() const {
    uint32_t value = 0;
    readScalar(&value);
    return value;
}
int64_t Parcel::readInt64() const {
    int64_t value = 0;
    readScalar(&value);
    return value;
}
uint64_t Parcel::readUint64() const {
    uint64_t value = 0;
    readScalar(&value);
    return value;
}
bool Parcel::readBool() const {
    bool value = false;
    readBool(&value);
    return value;
}

const char* Parcel::readCString() const {
    const uint8_t* begin = mData + mPosition;
    const void* end = memchr(begin, 0, dataAvail());
    if (end == nullptr) return nullptr;
    auto size = static_cast<size_t>(static_cast<const uint8_t*>(end) - begin) + 1;
    return static_cast<const char*>(advance(size));
}

bool Parcel::enforceInterface(const char* interface) const {
    const char* token = readCString();
    if (token != nullptr && strcmp(token, interface) == 0) return true;
    // A client that sends nothing else must not fill the log: the 1st, 2nd, 4th, 8th and so on.
    static std::atomic<uint32_t> sRefused{0};
    if (const uint32_t count = ++sRefused; (count & (count - 1)) == 0) {
        ALOGW("a call for '%s' has arrived at '%s', %u of another interface so far",
              token == nullptr ? "?" : token, interface, count);
    }
    return false;
}

const void* Parcel::address(const Record& record) const {
    if (mBlock != nullptr) return mPayload + record.value;
    return reinterpret_cast<const void*>(static_cast<uintptr_t>(record.value));
}

/**
 * The record that the stream names next. No record is given twice: two views of one buffer would
 * let a pointer set through the first be overwritten through the second.
 */
const Parcel::Record* Parcel::nextRecord() const {
    uint32_t index;
    if (readScalar(&index) != OK) return nullptr;
    if (index < mNextRecord || index >= mRecordCount) return nullptr;
    mNextRecord = index + 1;
    return &mRecords[index];
}

status_t Parcel::readNullableStrongBinder(sp<IBinder>* binder) const {
    const Record* record = nextRecord();
    if (record == nullptr) return BAD_TYPE;
    if (record->kind == hidlhost::kNullBinder) {
        binder->clear();
        return OK;
    }
    if (record->kind < hidlhost::kSendersBinder) return BAD_TYPE;
    *binder = mBinders[static_cast<size_t>(record->value)];
    return OK;
}

status_t Parcel::readStrongBinder(sp<IBinder>* binder) const {
    status_t status = readNullableStrongBinder(binder);
    return status == OK && *binder == nullptr ? UNEXPECTED_NULL : status;
}

sp<IBinder> Parcel::readStrongBinder() const {
    sp<IBinder> binder;
    readNullableStrongBinder(&binder);
    return binder;
}

/** Sets a pointer slot, all eight bytes of it; a parcel that was not received has its own. */
static void patch(uint8_t* slot, const void* pointer) {
    auto value = static_cast<uint64_t>(reinterpret_cast<uintptr_t>(pointer));
    memcpy(slot, &value, sizeof(value));
}

status_t Parcel::readBufferRecord(size_t length, size_t* handle, size_t parent, size_t parentOffset,
                                  bool nullable, const void** buffer) const {
    const Record* record = nextRecord();
    if (record == nullptr) return BAD_VALUE;
    if (record->kind != hidlhost::kBuffer && record->kind != hidlhost::kNullBuffer) return BAD_TYPE;
    if (record->length != length || record->parent != parent) return BAD_VALUE;
    if (parent != kNoParent && record->parentOffset != parentOffset) return BAD_VALUE;
    if (record->kind == hidlhost::kNullBuffer) {
        if (!nullable) return UNEXPECTED_NULL;
        *buffer = nullptr;
    } else {
        *buffer = address(*record);
    }
    if (handle != nullptr) *handle = static_cast<size_t>(record - mRecords);
    if (parent != kNoParent && mBlock != nullptr) {
        patch(mPayload + mRecords[parent].value + parentOffset, *buffer);
    }
    return OK;
}

status_t Parcel::readBuffer(size_t length, size_t* handle, const void** buffer) const {
    return readBufferRecord(length, handle, kNoParent, 0, false, buffer);
}

status_t Parcel::readNullableBuffer(size_t length, size_t* handle, const void** buffer) const {
    return readBufferRecord(length, handle, kNoParent, 0, true, buffer);
}

status_t Parcel::readEmbeddedBuffer(size_t length, size_t* handle, size_t parentHandle,
                                    size_t parentOffset, const void** buffer) const {
    return readBufferRecord(length, handle, parentHandle, parentOffset, false, buffer);
}

status_t Parcel::readNullableEmbeddedBuffer(size_t length, size_t* handle, size_t parentHandle,
                                            size_t parentOffset, const void** buffer) const {
    return readBufferRecord(length, handle, parentHandle, parentOffset, true, buffer);
}

status_t Parcel::readHandleRecord(size_t parent, size_t parentOffset, bool nullable,
                                  const native_handle_t** handle) const {
    const Record* record = nextRecord();
    if (record == nullptr) return BAD_VALUE;
    if (record->kind != hidlhost::kHandle && record->kind != hidlhost::kNullHandle) return BAD_TYPE;
    if (record->parent != parent) return BAD_VALUE;
    if (parent != kNoParent && record->parentOffset != parentOffset) return BAD_VALUE;
    if (record->kind == hidlhost::kNullHandle) {
        if (!nullable) return UNEXPECTED_NULL;
        *handle = nullptr;
    } else {
        *handle = static_cast<const native_handle_t*>(address(*record));
    }
    if (parent != kNoParent && mBlock != nullptr) {
        patch(mPayload + mRecords[parent].value + parentOffset, *handle);
    }
    return OK;
}

status_t Parcel::readNativeHandleNoDup(const native_handle_t** handle) const {
    return readHandleRecord(kNoParent, 0, false, handle);
}

status_t Parcel::readNullableNativeHandleNoDup(const native_handle_t** handle) const {
    return readHandleRecord(kNoParent, 0, true, handle);
}

status_t Parcel::readEmbeddedNativeHandle(size_t parentHandle, size_t parentOffset,
                                          const native_handle_t** handle) const {
    return readHandleRecord(parentHandle, parentOffset, false, handle);
}

status_t Parcel::readNullableEmbeddedNativeHandle(size_t parentHandle, size_t parentOffset,
                                                  const native_handle_t** handle) const {
    return readHandleRecord(parentHandle, parentOffset, true, handle);
}

status_t Parcel::peekBufferLength(size_t* length) const {
    if (dataAvail() < sizeof(uint32_t)) return NOT_ENOUGH_DATA;
    uint32_t index;
    memcpy(&index, mData + mPosition, sizeof(index));
    if (index < mNextRecord || index >= mRecordCount) return BAD_TYPE;
    *length = mRecords[index].length;
    return OK;
}

}  // namespace hardware
}  // namespace android
