#include "values.h"

#include <sys/mman.h>
#include <sys/stat.h>

#include <cstdio>
#include <cstring>

using android::OK;
using android::hardware::Parcel;

namespace qeltvapi::testing::wire {
namespace {

/** The head of a text or vector as it lies in memory on every ABI. */
struct Head {
    uint64_t pointer;
    uint32_t size;
    uint8_t owned;
    uint8_t pad[3];
};
static_assert(sizeof(Head) == 16, "hidl_string and hidl_vec are 16 bytes");

std::string hex(const Bytes& bytes) {
    std::string text = std::to_string(bytes.size()) + " bytes";
    constexpr size_t kShown = 48;
    for (size_t i = 0; i < bytes.size() && i < kShown; ++i) {
        char digits[4];
        snprintf(digits, sizeof(digits), " %02x", static_cast<unsigned char>(bytes[i]));
        text += digits;
    }
    return bytes.size() > kShown ? text + " ..." : text;
}

std::string differ(const char* what, const std::string& expected, const std::string& seen) {
    return std::string(what) + ": expected " + expected + ", seen " + seen;
}

Bytes headImage(size_t count) {
    Head head{};
    head.size = static_cast<uint32_t>(count);
    return bytesOf(head);
}

/** The children of a text or vector head. */
size_t childLength(const Value::Embedded& child) {
    return child.content.size() + (child.text ? 1 : 0);
}

std::string compareChild(const Value::Embedded& child, const Parcel& parcel, size_t parent,
                         size_t parentOffset) {
    size_t handle = 0;
    const void* data = nullptr;
    if (parcel.readNullableEmbeddedBuffer(childLength(child), &handle, parent, parentOffset,
                                          &data) != OK) {
        return "no buffer of " + std::to_string(childLength(child)) + " bytes at offset " +
               std::to_string(parentOffset);
    }
    const Bytes seen(static_cast<const char*>(data), childLength(child));
    const Bytes expected = child.text ? child.content + '\0' : child.content;
    if (seen != expected) {
        return differ(child.text ? "text" : "vector", hex(expected), hex(seen));
    }
    return "";
}

void writeChild(const Value::Embedded& child, Parcel* parcel, size_t parent, size_t parentOffset) {
    void* memory = parcel->allocate(childLength(child) + 1);
    memcpy(memory, child.content.c_str(), childLength(child));
    size_t handle = 0;
    parcel->writeEmbeddedBuffer(memory, childLength(child), &handle, parent, parentOffset);
}

/** The record's bytes with the heads of its texts and vectors set. */
Bytes image(const Value& value) {
    Bytes bytes = value.content;
    for (const Value::Embedded& child : value.embedded) {
        bytes.replace(child.offset, sizeof(Head),
                      headImage(child.content.size() / child.elementSize));
    }
    return bytes;
}

/** The bytes as received with what only the sender's process knows taken out. */
Bytes normalised(const void* data, const Value& value) {
    Bytes bytes(static_cast<const char*>(data), value.content.size());
    for (const Value::Embedded& child : value.embedded) {
        Head head{};
        memcpy(&head, bytes.data() + child.offset, sizeof(head));
        bytes.replace(child.offset, sizeof(Head), headImage(head.size));
    }
    for (const auto& [offset, size] : value.gaps) bytes.replace(offset, size, size, '\0');
    return bytes;
}

std::string compareRecord(const Value& value, const void* data, const Parcel& parcel, size_t handle,
                          size_t base) {
    const Bytes seen = normalised(data, value);
    if (seen != image(value)) return differ("record", hex(image(value)), hex(seen));
    for (const Value::Embedded& child : value.embedded) {
        std::string difference = compareChild(child, parcel, handle, base + child.offset);
        if (!difference.empty()) return difference;
    }
    return "";
}

std::string compareMemory(const Value& value, const Parcel& parcel) {
    const native_handle_t* handle = nullptr;
    if (parcel.readNullableNativeHandleNoDup(&handle) != OK || handle == nullptr) {
        return "no handle";
    }
    if (handle->numFds != 1) return differ("descriptors", "1", std::to_string(handle->numFds));
    struct stat status {};
    fstat(handle->data[0], &status);
    const size_t size = static_cast<size_t>(value.number);
    if (static_cast<size_t>(status.st_size) < size) {
        return differ("memory", std::to_string(size), std::to_string(status.st_size));
    }
    const size_t used = std::max(value.fill.size(), value.content.size());
    if (used == 0) return "";
    void* memory = mmap(nullptr, used, PROT_READ | PROT_WRITE, MAP_SHARED, handle->data[0], 0);
    if (memory == MAP_FAILED) return "the memory cannot be mapped";
    const Bytes seen(static_cast<const char*>(memory), value.content.size());
    memcpy(memory, value.fill.data(), value.fill.size());
    munmap(memory, used);
    return seen == value.content ? "" : differ("memory", hex(value.content), hex(seen));
}

Value scalar(uint64_t number, size_t width) {
    Value value;
    value.number = number;
    value.width = width;
    return value;
}

template <class T>
Value vecOf(std::initializer_list<T> values) {
    Value value;
    value.kind = Value::Kind::vec;
    value.elementSize = sizeof(T);
    value.content = bytesOf(values);
    return value;
}

}  // namespace

Bytes counted(size_t count, unsigned char first) {
    Bytes bytes;
    for (size_t i = 0; i < count; ++i) bytes += static_cast<char>((first + i) & 0xff);
    return bytes;
}

Value Value::text(size_t offset, Bytes text) const {
    Value value = *this;
    value.embedded.push_back({offset, true, 1, std::move(text)});
    return value;
}

Value Value::vec(size_t offset, Bytes vec, size_t size) const {
    Value value = *this;
    value.embedded.push_back({offset, false, size, std::move(vec)});
    return value;
}

Value Value::gap(size_t offset, size_t size) const {
    Value value = *this;
    value.gaps.emplace_back(offset, size);
    return value;
}

std::string Value::compare(const Parcel& parcel) const {
    size_t handle = 0;
    const void* data = nullptr;
    switch (kind) {
        case Kind::scalar: {
            uint64_t seen = 0;
            // Narrow integers travel padded to four bytes.
            if (parcel.read(&seen, width == 8 ? 8 : 4) != OK) return "no more scalars";
            return seen == number ? ""
                                  : differ("value", std::to_string(number), std::to_string(seen));
        }
        case Kind::text:
        case Kind::vec: {
            const bool isText = kind == Kind::text;
            if (parcel.readBuffer(sizeof(Head), &handle, &data) != OK) return "no text or vector";
            const uint32_t count = static_cast<const Head*>(data)->size;
            if (count != content.size() / elementSize) {
                return differ(isText ? "text length" : "vector length",
                              std::to_string(content.size() / elementSize), std::to_string(count));
            }
            return compareChild({0, isText, elementSize, content}, parcel, handle, 0);
        }
        case Kind::record:
            if (parcel.readBuffer(content.size(), &handle, &data) != OK) {
                size_t length = 0;
                parcel.peekBufferLength(&length);
                return differ("record size", std::to_string(content.size()),
                              std::to_string(length));
            }
            return compareRecord(*this, data, parcel, handle, 0);
        case Kind::records: {
            if (parcel.readBuffer(sizeof(Head), &handle, &data) != OK) return "no vector";
            const uint32_t count = static_cast<const Head*>(data)->size;
            if (count != elements.size()) {
                return differ("records", std::to_string(elements.size()), std::to_string(count));
            }
            size_t child = 0;
            const void* all = nullptr;
            const size_t size = elements.empty() ? 0 : elements[0].content.size();
            if (parcel.readNullableEmbeddedBuffer(size * count, &child, handle, 0, &all) != OK) {
                return "no buffer of " + std::to_string(size * count) + " bytes";
            }
            for (size_t i = 0; i < count; ++i) {
                std::string difference =
                        compareRecord(elements[i], static_cast<const char*>(all) + i * size, parcel,
                                      child, i * size);
                if (!difference.empty()) {
                    return "element " + std::to_string(i) + ": " + difference;
                }
            }
            return "";
        }
        case Kind::memory:
            return compareMemory(*this, parcel);
        case Kind::object: {
            android::sp<android::hardware::IBinder> binder;
            return parcel.readNullableStrongBinder(&binder) == OK && binder != nullptr
                           ? ""
                           : "no object";
        }
    }
    return "";
}

void Value::write(Parcel* parcel) const {
    size_t handle = 0;
    switch (kind) {
        case Kind::scalar:
            parcel->write(&number, width == 8 ? 8 : 4);
            return;
        case Kind::text:
        case Kind::vec: {
            void* head = parcel->allocate(sizeof(Head));
            memcpy(head, headImage(content.size() / elementSize).data(), sizeof(Head));
            parcel->writeBuffer(head, sizeof(Head), &handle);
            writeChild({0, kind == Kind::text, elementSize, content}, parcel, handle, 0);
            return;
        }
        case Kind::record: {
            void* memory = parcel->allocate(content.size());
            memcpy(memory, image(*this).data(), content.size());
            parcel->writeBuffer(memory, content.size(), &handle);
            for (const Embedded& child : embedded) writeChild(child, parcel, handle, child.offset);
            return;
        }
        case Kind::records:
        case Kind::memory:
        case Kind::object:
            fprintf(stderr, "this kind of value is never an answer\n");
            abort();
    }
}

Value u8(uint8_t value) {
    return scalar(value, 1);
}
Value u16(uint16_t value) {
    return scalar(value, 2);
}
Value u32(uint32_t value) {
    return scalar(value, 4);
}
Value u64(uint64_t value) {
    return scalar(value, 8);
}
Value i16(int16_t value) {
    // Signed ones travel extended.
    return scalar(static_cast<uint32_t>(int32_t{value}), 2);
}
Value i32(int32_t value) {
    return scalar(static_cast<uint32_t>(value), 4);
}
Value i64(int64_t value) {
    return scalar(static_cast<uint64_t>(value), 8);
}
Value boolean(bool value) {
    return scalar(value ? 1 : 0, 1);
}

Value str(Bytes content) {
    Value value;
    value.kind = Value::Kind::text;
    value.content = std::move(content);
    return value;
}

Value bytes(Bytes content) {
    Value value;
    value.kind = Value::Kind::vec;
    value.content = std::move(content);
    return value;
}

Value u16s(std::initializer_list<uint16_t> values) {
    return vecOf(values);
}
Value u32s(std::initializer_list<uint32_t> values) {
    return vecOf(values);
}
Value i32s(std::initializer_list<int32_t> values) {
    return vecOf(values);
}

Value record(Bytes content) {
    Value value;
    value.kind = Value::Kind::record;
    value.content = std::move(content);
    return value;
}

Value records(std::vector<Value> elements) {
    Value value;
    value.kind = Value::Kind::records;
    value.elements = std::move(elements);
    return value;
}

Value memory(size_t size, Bytes fill) {
    Value value;
    value.kind = Value::Kind::memory;
    value.number = size;
    value.fill = std::move(fill);
    return value;
}

Value memoryHolding(Bytes content) {
    Value value = memory(content.size());
    value.content = std::move(content);
    return value;
}

Value object() {
    Value value;
    value.kind = Value::Kind::object;
    return value;
}

std::string compareAll(const Values& expected, const Parcel& parcel) {
    for (size_t i = 0; i < expected.size(); ++i) {
        std::string difference = expected[i].compare(parcel);
        if (!difference.empty()) return "argument " + std::to_string(i) + ", " + difference;
    }
    size_t more = 0;
    if (parcel.dataAvail() != 0 || parcel.peekBufferLength(&more) == OK) {
        return "more arguments than expected";
    }
    return "";
}

}  // namespace qeltvapi::testing::wire
