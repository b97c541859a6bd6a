#include "codec.h"

#include <sys/mman.h>
#include <sys/stat.h>

#include <algorithm>
#include <cstring>

using android::OK;
using android::hardware::Parcel;

namespace qeltvapi::testing {
namespace {

/** The head of a text or vector as it lies in memory on every ABI. */
struct Head {
    uint64_t pointer;
    uint32_t size;
    uint8_t owned;
    uint8_t pad[3];
};
static_assert(sizeof(Head) == 16, "hidl_string and hidl_vec are 16 bytes");

bool isNumber(const Type& type) {
    return type.form == Form::boolean || type.form == Form::signedNumber ||
           type.form == Form::unsignedNumber;
}

bool isByte(const Type& type) {
    return type.form == Form::unsignedNumber && type.size == 1;
}

bool isPlain(const Type& type) {
    if (type.form == Form::record) {
        return std::all_of(type.fields.begin(), type.fields.end(),
                           [](const Field& field) { return isPlain(typeOf(field)); });
    }
    return isNumber(type) || type.form == Form::array;
}

/** The number of elements of a vector. */
size_t countOf(const Type& type, const Value& value) {
    return value.kind() == Value::Kind::list ? value.items().size()
                                             : value.text().size() / elementOf(type).size;
}

/** The reason why a value is not of a type; "" if it is. */
std::string misfit(const Type& type, const Value& value, bool anyAllowed) {
    const auto isNot = [&] { return value.show() + " is not of type " + type.name; };
    if (value.kind() == Value::Kind::any) return anyAllowed ? "" : "`any` is not an answer";
    const bool isBytes = value.kind() == Value::Kind::bytes;
    switch (type.form) {
        case Form::boolean:
        case Form::signedNumber:
        case Form::unsignedNumber: {
            if (value.kind() != Value::Kind::number) return isNot();
            const size_t bits = type.form == Form::boolean ? 1 : type.size * 8;
            const auto number = static_cast<uint64_t>(value.number());
            bool fits;
            if (type.form == Form::signedNumber) {
                const uint64_t limit = uint64_t{1} << (bits - 1);
                fits = value.negative() ? ~number < limit : number < limit;
            } else {
                fits = !value.negative() && (bits == 64 || number >> bits == 0);
            }
            return fits ? "" : value.show() + " does not fit a " + type.name;
        }
        case Form::text:
            return value.kind() == Value::Kind::text ? "" : isNot();
        case Form::memory:
            return isBytes ? "" : isNot();
        case Form::object:
            return value.kind() == Value::Kind::object ? "" : isNot();
        case Form::vector:
        case Form::array: {
            const bool asText = value.kind() == Value::Kind::text && isByte(elementOf(type));
            if (asText || (isBytes && isPlain(elementOf(type)))) {
                const size_t size = value.text().size();
                if (type.form == Form::array ? size != type.size
                                             : size % elementOf(type).size != 0) {
                    return std::to_string(size) + " bytes are not a " + type.name;
                }
                return "";
            }
            if (value.kind() != Value::Kind::list) return isNot();
            if (type.form == Form::array && value.items().size() != type.count) {
                return std::to_string(value.items().size()) + " elements are not a " + type.name;
            }
            for (const Value& item : value.items()) {
                std::string wrong = misfit(elementOf(type), item, anyAllowed);
                if (!wrong.empty()) return wrong;
            }
            return "";
        }
        case Form::record: {
            if (isBytes && isPlain(type)) {
                return value.text().size() == type.size
                               ? ""
                               : std::to_string(value.text().size()) + " bytes are not a " +
                                         type.name + " of " + std::to_string(type.size);
            }
            if (value.kind() != Value::Kind::list) return isNot();
            if (value.items().size() != type.fields.size()) {
                return std::to_string(value.items().size()) + " values are not the " +
                       std::to_string(type.fields.size()) + " fields of " + type.name;
            }
            for (size_t i = 0; i < type.fields.size(); ++i) {
                std::string wrong = misfit(typeOf(type.fields[i]), value.items()[i], anyAllowed);
                if (!wrong.empty()) return type.fields[i].name + ": " + wrong;
            }
            return "";
        }
    }
    return "";
}

/** The bytes of a value in memory, with the counts of its texts and vectors. */
void image(const Type& type, const Value& value, char* to) {
    if (isNumber(type)) {
        const auto number = static_cast<uint64_t>(value.number());
        memcpy(to, &number, type.size);
    } else if (type.form == Form::text || type.form == Form::vector) {
        Head head{};
        head.size = static_cast<uint32_t>(type.form == Form::text ? value.text().size()
                                                                  : countOf(type, value));
        memcpy(to, &head, sizeof(head));
    } else if (value.kind() != Value::Kind::list) {
        memcpy(to, value.text().data(), std::min(type.size, value.text().size()));
    } else if (type.form == Form::array) {
        const Type& element = elementOf(type);
        for (size_t i = 0; i < type.count; ++i) {
            image(element, value.items()[i], to + i * element.size);
        }
    } else {
        for (size_t i = 0; i < type.fields.size(); ++i) {
            image(typeOf(type.fields[i]), value.items()[i], to + type.fields[i].offset);
        }
    }
}

void writeChildren(const Type& type, const Value& value, Parcel* to, size_t parent, size_t offset) {
    size_t handle = 0;
    if (type.form == Form::text) {
        const size_t size = value.text().size() + 1;
        void* memory = to->allocate(size);
        memcpy(memory, value.text().c_str(), size);
        to->writeEmbeddedBuffer(memory, size, &handle, parent, offset);
    } else if (type.form == Form::vector) {
        const Type& element = elementOf(type);
        const size_t size = countOf(type, value) * element.size;
        char* memory = static_cast<char*>(to->allocate(size + 1));
        memset(memory, 0, size + 1);
        if (value.kind() != Value::Kind::list) {
            memcpy(memory, value.text().data(), size);
            to->writeEmbeddedBuffer(memory, size, &handle, parent, offset);
            return;
        }
        const std::vector<Value>& items = value.items();
        for (size_t i = 0; i < items.size(); ++i) {
            image(element, items[i], memory + i * element.size);
        }
        to->writeEmbeddedBuffer(memory, size, &handle, parent, offset);
        for (size_t i = 0; i < items.size(); ++i) {
            writeChildren(element, items[i], to, handle, i * element.size);
        }
    } else if (type.form == Form::record && value.kind() == Value::Kind::list) {
        for (size_t i = 0; i < type.fields.size(); ++i) {
            writeChildren(typeOf(type.fields[i]), value.items()[i], to, parent,
                          offset + type.fields[i].offset);
        }
    }
}

[[noreturn]] void malformed(const Type& type) {
    throw std::runtime_error("the message holds no " + type.name + " at this place");
}

Value readNumber(const Type& type, const char* data) {
    uint64_t number = 0;
    memcpy(&number, data, type.size);
    if (type.form != Form::signedNumber) return number;
    const size_t unused = 64 - type.size * 8;
    return static_cast<int64_t>(number << unused) >> unused;
}

Value readInPlace(const Type& type, const char* data, const Parcel& from, size_t parent,
                  size_t offset) {
    size_t handle = 0;
    const void* content = nullptr;
    if (isNumber(type)) return readNumber(type, data);
    if (type.form == Form::text || type.form == Form::vector) {
        Head head{};
        memcpy(&head, data, sizeof(head));
        const bool isText = type.form == Form::text;
        const size_t size = isText ? size_t{head.size} + 1 : head.size * elementOf(type).size;
        if (from.readNullableEmbeddedBuffer(size, &handle, parent, offset, &content) != OK ||
            (content == nullptr && size > 0)) {
            malformed(type);
        }
        const auto* elements = static_cast<const char*>(content);
        if (isText) return std::string(elements, head.size);
        if (isByte(elementOf(type))) return bytes(std::string(elements, size));
        std::vector<Value> items;
        for (size_t i = 0; i < head.size; ++i) {
            const size_t at = i * elementOf(type).size;
            items.push_back(readInPlace(elementOf(type), elements + at, from, handle, at));
        }
        return list(std::move(items));
    }
    std::vector<Value> items;
    if (type.form == Form::array) {
        const Type& element = elementOf(type);
        if (isByte(element)) return bytes(std::string(data, type.size));
        for (size_t i = 0; i < type.count; ++i) {
            items.push_back(readInPlace(element, data + i * element.size, from, parent, offset));
        }
        return list(std::move(items));
    }
    for (const Field& field : type.fields) {
        items.push_back(
                readInPlace(typeOf(field), data + field.offset, from, parent, offset + field.offset)
                        .named(field.name));
    }
    return list(std::move(items));
}

/** The shared memory of a handle, mapped. */
class Mapped {
  public:
    explicit Mapped(const native_handle_t* handle) {
        struct stat status {};
        if (handle == nullptr || handle->numFds != 1 || fstat(handle->data[0], &status) != 0 ||
            status.st_size <= 0) {
            return;
        }
        mSize = static_cast<size_t>(status.st_size);
        void* memory = mmap(nullptr, mSize, PROT_READ | PROT_WRITE, MAP_SHARED, handle->data[0], 0);
        if (memory == MAP_FAILED) {
            mSize = 0;
        } else {
            mData = static_cast<char*>(memory);
        }
    }
    ~Mapped() {
        if (mData != nullptr) munmap(mData, mSize);
    }
    Mapped(const Mapped&) = delete;
    Mapped& operator=(const Mapped&) = delete;

    char* data() const { return mData; }
    size_t size() const { return mSize; }

  private:
    char* mData = nullptr;
    size_t mSize = 0;
};

Value readOne(const Type& type, const Parcel& from, const std::string* fillWith, bool* filled) {
    size_t handle = 0;
    const void* data = nullptr;
    if (isNumber(type)) {
        // Narrow numbers travel padded to four bytes.
        uint64_t number = 0;
        if (from.read(&number, type.size == 8 ? 8 : 4) != OK) malformed(type);
        return readNumber(type, reinterpret_cast<const char*>(&number));
    }
    if (type.form == Form::memory) {
        const native_handle_t* memory = nullptr;
        if (from.readNullableNativeHandleNoDup(&memory) != OK) malformed(type);
        const Mapped mapped(memory);
        if (fillWith != nullptr && mapped.size() >= fillWith->size()) {
            if (!fillWith->empty()) memcpy(mapped.data(), fillWith->data(), fillWith->size());
            *filled = true;
        }
        return bytes(std::string(mapped.data() == nullptr ? "" : mapped.data(), mapped.size()));
    }
    if (type.form == Form::object) {
        android::sp<android::hardware::IBinder> binder;
        if (from.readNullableStrongBinder(&binder) != OK) malformed(type);
        return object();
    }
    if (from.readBuffer(type.size, &handle, &data) != OK) malformed(type);
    return readInPlace(type, static_cast<const char*>(data), from, handle, 0);
}

}  // namespace

void expectFit(const std::string& what, const std::vector<Field>& fields, const Values& values,
               bool anyAllowed) {
    std::string signature;
    for (const Field& field : fields) {
        signature += (signature.empty() ? "" : ", ") + typeOf(field).name + " " + field.name;
    }
    if (values.size() != fields.size()) {
        throw ScriptError(what + ": " + std::to_string(values.size()) + " of the " +
                          std::to_string(fields.size()) + " values (" + signature + ")");
    }
    for (size_t i = 0; i < fields.size(); ++i) {
        const std::string wrong = misfit(typeOf(fields[i]), values[i], anyAllowed);
        if (!wrong.empty()) throw ScriptError(what + ": " + fields[i].name + ": " + wrong);
    }
}

Value canonical(const Type& type, const Value& value) {
    const bool sequence = type.form == Form::vector || type.form == Form::array;
    if (!sequence && type.form != Form::record) return value;
    if (sequence && isByte(elementOf(type))) {
        if (value.kind() == Value::Kind::text) return bytes(value.text());
        if (value.kind() != Value::Kind::list) return value;
        std::string content;
        for (const Value& item : value.items()) content += static_cast<char>(item.number());
        return bytes(std::move(content));
    }
    std::vector<Value> items;
    if (value.kind() == Value::Kind::bytes) {
        const Parcel none;
        const char* data = value.text().data();
        if (!sequence) return readInPlace(type, data, none, 0, 0);
        const Type& element = elementOf(type);
        for (size_t at = 0; at < value.text().size(); at += element.size) {
            items.push_back(readInPlace(element, data + at, none, 0, 0));
        }
    } else {
        if (value.kind() != Value::Kind::list) return value;
        for (size_t i = 0; i < value.items().size(); ++i) {
            items.push_back(canonical(sequence ? elementOf(type) : typeOf(type.fields[i]),
                                      value.items()[i]));
        }
    }
    return list(std::move(items));
}

Value zeroOf(const Type& type) {
    switch (type.form) {
        case Form::text:
            return "";
        case Form::vector:
            return list({});
        case Form::array:
            return list(std::vector<Value>(type.count, zeroOf(elementOf(type))));
        case Form::record: {
            std::vector<Value> items;
            for (const Field& field : type.fields) items.push_back(zeroOf(typeOf(field)));
            return list(std::move(items));
        }
        default:
            return 0;
    }
}

void write(const std::vector<Field>& fields, const Values& values, Parcel* to) {
    for (size_t i = 0; i < fields.size(); ++i) {
        const Type& type = typeOf(fields[i]);
        if (isNumber(type)) {
            const int64_t number = values[i].number();
            to->write(&number, type.size == 8 ? 8 : 4);
            continue;
        }
        char* memory = static_cast<char*>(to->allocate(type.size));
        memset(memory, 0, type.size);
        image(type, values[i], memory);
        size_t handle = 0;
        to->writeBuffer(memory, type.size, &handle);
        writeChildren(type, values[i], to, handle, 0);
    }
}

Values read(const std::vector<Field>& fields, const Parcel& from) {
    Values values;
    for (const Field& field : fields) {
        values.push_back(readOne(typeOf(field), from, nullptr, nullptr).named(field.name));
    }
    return values;
}

bool fill(const std::vector<Field>& fields, const Parcel& call, size_t index,
          const std::string& content) {
    const size_t position = call.dataPosition();
    bool filled = false;
    for (size_t i = 0; i <= index; ++i) {
        readOne(typeOf(fields[i]), call, i == index ? &content : nullptr, &filled);
    }
    call.setDataPosition(position);
    return filled;
}

}  // namespace qeltvapi::testing
