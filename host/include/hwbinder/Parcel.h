#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include <cutils/native_handle.h>
#include <hwbinder/IInterface.h>

namespace hidlhost {
class Codec;
struct Block;
struct ObjectRecord;
}  // namespace hidlhost

namespace android {
namespace hardware {

/**
 * The arguments or results of one transaction.
 *
 * Scalars are copied in. Buffers and handles are only referred to and must stay until the parcel is
 * sent. A received parcel owns its bytes and the descriptors that came with it; pointers that it
 * hands out end with it. Reading checks that what comes next is of the kind and size asked for.
 */
class Parcel {
  public:
    Parcel();
    ~Parcel();
    Parcel(const Parcel&) = delete;
    Parcel& operator=(const Parcel&) = delete;

    /** The scalars and references as a stream, little-endian, each padded to four bytes. */
    const uint8_t* data() const { return mData; }
    size_t dataSize() const { return mDataSize; }
    size_t dataAvail() const { return mDataSize - mPosition; }
    size_t dataPosition() const { return mPosition; }
    void setDataPosition(size_t position) const;

    /** Bytes of all buffers and handles beside the stream. */
    size_t payloadSize() const;

    /** Empties the parcel. */
    void freeData();
    status_t errorCheck() const { return mError; }
    void setError(status_t error) { mError = error; }

    status_t writeInterfaceToken(const char* interface);
    /** Whether the token that comes next names `interface`. */
    bool enforceInterface(const char* interface) const;

    status_t write(const void* data, size_t size);
    status_t writeInt8(int8_t value);
    status_t writeUint8(uint8_t value);
    status_t writeInt16(int16_t value);
    status_t writeUint16(uint16_t value);
    status_t writeInt32(int32_t value);
    status_t writeUint32(uint32_t value);
    status_t writeInt64(int64_t value);
    status_t writeUint64(uint64_t value);
    status_t writeFloat(float value);
    status_t writeDouble(double value);
    status_t writeBool(bool value);
    status_t writeCString(const char* text);
    status_t writeStrongBinder(const sp<IBinder>& binder);

    /** `handle` names the buffer as parent of others. */
    status_t writeBuffer(const void* buffer, size_t length, size_t* handle);
    /** A buffer that the pointer at `parentOffset` of another refers to. */
    status_t writeEmbeddedBuffer(const void* buffer, size_t length, size_t* handle,
                                 size_t parentHandle, size_t parentOffset);
    status_t writeNativeHandleNoDup(const native_handle_t* handle);
    status_t writeEmbeddedNativeHandle(const native_handle_t* handle, size_t parentHandle,
                                       size_t parentOffset);

    status_t read(void* data, size_t size) const;
    const void* readInplace(size_t size) const;
    status_t readInt8(int8_t* value) const;
    status_t readUint8(uint8_t* value) const;
    status_t readInt16(int16_t* value) const;
    status_t readUint16(uint16_t* value) const;
    status_t readInt32(int32_t* value) const;
    status_t readUint32(uint32_t* value) const;
    status_t readInt64(int64_t* value) const;
    status_t readUint64(uint64_t* value) const;
    status_t readFloat(float* value) const;
    status_t readDouble(double* value) const;
    status_t readBool(bool* value) const;
    int32_t readInt32() const;
    uint32_t readUint32() const;
    int64_t readInt64() const;
    uint64_t readUint64() const;
    bool readBool() const;
    /** Null if the bytes do not end in a NUL. */
    const char* readCString() const;

    status_t readStrongBinder(sp<IBinder>* binder) const;
    status_t readNullableStrongBinder(sp<IBinder>* binder) const;
    sp<IBinder> readStrongBinder() const;

    /** `length` must be the very size that was written. */
    status_t readBuffer(size_t length, size_t* handle, const void** buffer) const;
    status_t readNullableBuffer(size_t length, size_t* handle, const void** buffer) const;
    /** Also sets the pointer in the parent. */
    status_t readEmbeddedBuffer(size_t length, size_t* handle, size_t parentHandle,
                                size_t parentOffset, const void** buffer) const;
    status_t readNullableEmbeddedBuffer(size_t length, size_t* handle, size_t parentHandle,
                                        size_t parentOffset, const void** buffer) const;

    /** The descriptors stay the parcel's. */
    status_t readNativeHandleNoDup(const native_handle_t** handle) const;
    status_t readNullableNativeHandleNoDup(const native_handle_t** handle) const;
    status_t readEmbeddedNativeHandle(size_t parentHandle, size_t parentOffset,
                                      const native_handle_t** handle) const;
    status_t readNullableEmbeddedNativeHandle(size_t parentHandle, size_t parentOffset,
                                              const native_handle_t** handle) const;

    /** The length of the buffer that comes next, without passing it. NOT_ENOUGH_DATA if none. */
    status_t peekBufferLength(size_t* length) const;

    /** Memory that lives as long as the parcel, for buffers that have no other home. */
    void* allocate(size_t size);

  private:
    friend class ::hidlhost::Codec;
    using Record = ::hidlhost::ObjectRecord;

    static constexpr size_t kInlineData = 192;
    static constexpr size_t kInlineRecords = 6;
    static constexpr size_t kRecordSize = 24;

    uint8_t* grow(size_t size);
    status_t addRecord(uint32_t kind, uint32_t length, size_t parent, size_t parentOffset,
                       uint64_t value, size_t* handle);
    const Record* nextRecord() const;
    const void* advance(size_t size) const;
    template <typename T>
    status_t writeScalar(T value);
    template <typename T>
    status_t readScalar(T* value) const;
    status_t readBufferRecord(size_t length, size_t* handle, size_t parent, size_t parentOffset,
                              bool nullable, const void** buffer) const;
    status_t readHandleRecord(size_t parent, size_t parentOffset, bool nullable,
                              const native_handle_t** handle) const;
    const void* address(const Record& record) const;
    void release();

    uint8_t* mData;
    Record* mRecords;
    /** In a received parcel, the bytes behind the records, which records' values count from. */
    uint8_t* mPayload;
    hidlhost::Block* mBlock;
    uint32_t mDataSize;
    uint32_t mDataCapacity;
    uint32_t mRecordCount;
    uint32_t mRecordCapacity;
    mutable uint32_t mPosition;
    mutable uint32_t mNextRecord;
    status_t mError;
    std::vector<sp<IBinder>> mBinders;
    std::vector<std::unique_ptr<uint64_t[]>> mAllocations;
    alignas(8) uint8_t mInlineData[kInlineData];
    alignas(8) uint8_t mInlineRecords[kInlineRecords * kRecordSize];
};

}  // namespace hardware
}  // namespace android
