#include "transactions.h"

#include <fcntl.h>
#include <hidl/HidlBinderSupport.h>
#include <hwbinder/Binder.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <limits>
#include <new>
#include <stdexcept>

namespace transactions {

using android::OK;
using android::sp;
using android::status_t;
using android::hardware::BHwBinder;
using android::hardware::hidl_string;
using android::hardware::hidl_vec;
using android::hardware::IBinder;
using android::hardware::Parcel;

namespace {

constexpr size_t kVectorBuffer = hidl_vec<uint8_t>::kOffsetOfBuffer;

std::string bytesOf(const Json& json) {
    if (!json.is_string()) throw Malformed("bytes are a text of hex digits");
    const auto& text = json.get_ref<const std::string&>();
    if (text.size() % 2 != 0 || text.find_first_not_of("0123456789abcdefABCDEF") != text.npos) {
        throw Malformed("\"" + text + "\" is no text of hex digits");
    }
    std::string bytes;
    for (size_t i = 0; i < text.size(); i += 2) {
        bytes += static_cast<char>(std::stoi(text.substr(i, 2), nullptr, 16));
    }
    return bytes;
}

Json textOf(const hidl_string& string) {
    Json text = std::string(string.c_str(), string.size());
    try {
        (void)text.dump();
        return text;
    } catch (const Json::exception&) {
        return {{"hex", hexOf(string.c_str(), string.size())}};
    }
}

std::string stringOf(const Json& json) {
    if (json.is_string()) return json.get<std::string>();
    if (json.is_object() && json.size() == 1 && json.contains("hex")) return bytesOf(json["hex"]);
    throw Malformed(json.dump() + " is no text");
}

/** Calls `use` with a value of a scalar type's C++ type. */
template <class Use>
void withScalar(Kind kind, const Use& use) {
    switch (kind) {
        case Kind::kBool:
            return use(bool{});
        case Kind::kInt8:
            return use(int8_t{});
        case Kind::kUint8:
            return use(uint8_t{});
        case Kind::kInt16:
            return use(int16_t{});
        case Kind::kUint16:
            return use(uint16_t{});
        case Kind::kInt32:
            return use(int32_t{});
        case Kind::kUint32:
            return use(uint32_t{});
        case Kind::kInt64:
            return use(int64_t{});
        case Kind::kUint64:
            return use(uint64_t{});
        default:
            throw std::logic_error("not a scalar");
    }
}

bool isScalar(Kind kind) {
    return kind <= Kind::kUint64;
}

template <class T>
T scalarOf(const Json& json) {
    if constexpr (std::is_same_v<T, bool>) {
        if (json.is_boolean()) return json.get<bool>();
    } else if (json.is_number_unsigned()) {
        const auto number = json.get<uint64_t>();
        if (number <= static_cast<uint64_t>(std::numeric_limits<T>::max())) {
            return static_cast<T>(number);
        }
    } else if (json.is_number_integer()) {
        const auto number = json.get<int64_t>();
        const auto lowest = static_cast<int64_t>(std::numeric_limits<T>::min());
        if (number < 0 && std::is_signed_v<T> && number >= lowest) return static_cast<T>(number);
        // Numbers of a program are signed; those of a parsed text are so only below 0.
        if (number >= 0) return scalarOf<T>(Json(static_cast<uint64_t>(number)));
    }
    throw Malformed(json.dump() + " is no number of " + std::to_string(sizeof(T) * 8) + " bits");
}

void need(status_t status) {
    if (status != OK) throw Malformed("the transaction has other values than its method");
}

status_t readScalar(const Parcel& parcel, bool* value) {
    return parcel.readBool(value);
}
status_t readScalar(const Parcel& parcel, int8_t* value) {
    return parcel.readInt8(value);
}
status_t readScalar(const Parcel& parcel, uint8_t* value) {
    return parcel.readUint8(value);
}
status_t readScalar(const Parcel& parcel, int16_t* value) {
    return parcel.readInt16(value);
}
status_t readScalar(const Parcel& parcel, uint16_t* value) {
    return parcel.readUint16(value);
}
status_t readScalar(const Parcel& parcel, int32_t* value) {
    return parcel.readInt32(value);
}
status_t readScalar(const Parcel& parcel, uint32_t* value) {
    return parcel.readUint32(value);
}
status_t readScalar(const Parcel& parcel, int64_t* value) {
    return parcel.readInt64(value);
}
status_t readScalar(const Parcel& parcel, uint64_t* value) {
    return parcel.readUint64(value);
}

status_t writeScalar(Parcel* parcel, bool value) {
    return parcel->writeBool(value);
}
status_t writeScalar(Parcel* parcel, int8_t value) {
    return parcel->writeInt8(value);
}
status_t writeScalar(Parcel* parcel, uint8_t value) {
    return parcel->writeUint8(value);
}
status_t writeScalar(Parcel* parcel, int16_t value) {
    return parcel->writeInt16(value);
}
status_t writeScalar(Parcel* parcel, uint16_t value) {
    return parcel->writeUint16(value);
}
status_t writeScalar(Parcel* parcel, int32_t value) {
    return parcel->writeInt32(value);
}
status_t writeScalar(Parcel* parcel, uint32_t value) {
    return parcel->writeUint32(value);
}
status_t writeScalar(Parcel* parcel, int64_t value) {
    return parcel->writeInt64(value);
}
status_t writeScalar(Parcel* parcel, uint64_t value) {
    return parcel->writeUint64(value);
}

/** The content of a buffer, with the buffers that are embedded in it. */
class Reader {
  public:
    explicit Reader(const Parcel& parcel) : mParcel(parcel) {}

    Json value(const Type& type) {
        if (isScalar(type.kind)) {
            Json json;
            withScalar(type.kind, [&](auto value) {
                need(readScalar(mParcel, &value));
                json = value;
            });
            return json;
        }
        if (type.kind == Kind::kHandle) {
            const native_handle_t* handle = nullptr;
            need(mParcel.readNullableNativeHandleNoDup(&handle));
            return handleJson(handle);
        }
        if (type.kind == Kind::kObject) {
            sp<IBinder> object;
            need(mParcel.readNullableStrongBinder(&object));
            return object != nullptr ? Json("object") : Json(nullptr);
        }
        const void* buffer = nullptr;
        size_t parent = 0;
        need(mParcel.readBuffer(type.size, &parent, &buffer));
        return inBuffer(type, static_cast<const uint8_t*>(buffer), parent, 0);
    }

  private:
    Json inBuffer(const Type& type, const uint8_t* buffer, size_t parent, size_t offset) {
        const uint8_t* at = buffer + offset;
        if (isScalar(type.kind)) {
            Json json;
            withScalar(type.kind, [&](auto value) {
                using Scalar = decltype(value);
                // Any byte may stand for a truth value here.
                std::conditional_t<std::is_same_v<Scalar, bool>, uint8_t, Scalar> read;
                memcpy(&read, at, sizeof(read));
                json = static_cast<Scalar>(read);
            });
            return json;
        }
        switch (type.kind) {
            case Kind::kString: {
                const auto& string = *reinterpret_cast<const hidl_string*>(at);
                need(android::hardware::readEmbeddedFromParcel(string, mParcel, parent, offset));
                return textOf(string);
            }
            case Kind::kVector: {
                const size_t count = reinterpret_cast<const hidl_vec<uint8_t>*>(at)->size();
                if (count > std::numeric_limits<uint32_t>::max() / type.element->size) {
                    throw Malformed("a vector is too long");
                }
                size_t child = 0;
                const void* elements = nullptr;
                need(mParcel.readNullableEmbeddedBuffer(count * type.element->size, &child, parent,
                                                        offset + kVectorBuffer, &elements));
                return array(*type.element, count, static_cast<const uint8_t*>(elements), child, 0);
            }
            case Kind::kStruct: {
                Json json = Json::object();
                for (const Type::Field& field : type.fields) {
                    const size_t place = offset + field.offset;
                    json[field.name] =
                            field.count != 0
                                    ? array(*field.type, field.count, buffer, parent, place)
                                    : inBuffer(*field.type, buffer, parent, place);
                }
                return json;
            }
            default:
                throw Malformed("a type that stands in no buffer");
        }
    }

    Json array(const Type& element, size_t count, const uint8_t* buffer, size_t parent,
               size_t offset) {
        if (element.kind == Kind::kUint8) {
            return count == 0 ? std::string() : hexOf(buffer + offset, count);
        }
        Json json = Json::array();
        for (size_t i = 0; i < count; ++i) {
            json.push_back(inBuffer(element, buffer, parent, offset + i * element.size));
        }
        return json;
    }

    static Json handleJson(const native_handle_t* handle) {
        if (handle == nullptr) return nullptr;
        Json json{{"fds", Json::array()}, {"ints", Json::array()}};
        for (int i = 0; i < handle->numFds; ++i) {
            struct stat file {};
            const bool known = fstat(handle->data[i], &file) == 0;
            json["fds"].push_back(known ? static_cast<int64_t>(file.st_size) : 0);
        }
        for (int i = 0; i < handle->numInts; ++i) {
            json["ints"].push_back(handle->data[handle->numFds + i]);
        }
        return json;
    }

    const Parcel& mParcel;
};

/** Fills buffers from JSON, and then refers to them in the order in which they are read. */
class Writer {
  public:
    Writer(Parcel* parcel, Files* files) : mParcel(parcel), mFiles(files) {}

    void value(const Type& type, const Json& json) {
        if (type.kind == Kind::kBool && json.is_number()) {
            need(mParcel->writeUint32(scalarOf<uint8_t>(json)));
            return;
        }
        if (isScalar(type.kind)) {
            withScalar(type.kind, [&](auto value) {
                need(writeScalar(mParcel, scalarOf<decltype(value)>(json)));
            });
            return;
        }
        if (type.kind == Kind::kHandle) {
            need(mParcel->writeNativeHandleNoDup(json.is_null() ? nullptr : mFiles->make(json)));
            return;
        }
        if (type.kind == Kind::kObject) throw Malformed("an object has no value");
        auto* buffer = static_cast<uint8_t*>(mParcel->allocate(type.size));
        fill(type, json, buffer);
        size_t parent = 0;
        need(mParcel->writeBuffer(buffer, type.size, &parent));
        refer(type, buffer, parent, 0);
    }

  private:
    void fill(const Type& type, const Json& json, uint8_t* at) {
        if (type.kind == Kind::kBool && json.is_number()) {
            *at = scalarOf<uint8_t>(json);
        } else if (isScalar(type.kind)) {
            withScalar(type.kind, [&](auto value) {
                value = scalarOf<decltype(value)>(json);
                memcpy(at, &value, sizeof(value));
            });
        } else if (type.kind == Kind::kString) {
            const std::string text = stringOf(json);
            auto* bytes = static_cast<char*>(mParcel->allocate(text.size() + 1));
            memcpy(bytes, text.c_str(), text.size() + 1);
            (new (at) hidl_string)->setToExternal(bytes, text.size());
        } else if (type.kind == Kind::kVector) {
            const size_t size = type.element->size;
            const size_t count =
                    type.element->kind == Kind::kUint8 ? bytesOf(json).size() : json.size();
            auto* elements = static_cast<uint8_t*>(mParcel->allocate(count * size));
            array(*type.element, json, count, elements);
            (new (at) hidl_vec<uint8_t>)->setToExternal(elements, count);
        } else if (type.kind == Kind::kStruct) {
            if (!json.is_object()) throw Malformed(json.dump() + " is no object");
            for (const Type::Field& field : type.fields) {
                if (!json.contains(field.name)) {
                    throw Malformed(std::string(field.name) + " is missing");
                }
                const Json& value = json[field.name];
                if (field.count != 0) {
                    array(*field.type, value, field.count, at + field.offset);
                } else {
                    fill(*field.type, value, at + field.offset);
                }
            }
        }
    }

    void array(const Type& element, const Json& json, size_t count, uint8_t* at) {
        if (element.kind == Kind::kUint8) {
            const std::string bytes = bytesOf(json);
            if (bytes.size() != count) throw Malformed("an array has another size");
            if (count != 0) memcpy(at, bytes.data(), count);
            return;
        }
        if (!json.is_array() || json.size() != count) {
            throw Malformed(json.dump() + " is no array of " + std::to_string(count));
        }
        for (size_t i = 0; i < count; ++i) fill(element, json[i], at + i * element.size);
    }

    void refer(const Type& type, uint8_t* buffer, size_t parent, size_t offset) {
        uint8_t* at = buffer + offset;
        if (type.kind == Kind::kString) {
            need(android::hardware::writeEmbeddedToParcel(*reinterpret_cast<hidl_string*>(at),
                                                          mParcel, parent, offset));
        } else if (type.kind == Kind::kVector) {
            auto& vector = *reinterpret_cast<hidl_vec<uint8_t>*>(at);
            size_t child = 0;
            need(mParcel->writeEmbeddedBuffer(vector.data(), vector.size() * type.element->size,
                                              &child, parent, offset + kVectorBuffer));
            for (size_t i = 0; i < vector.size(); ++i) {
                refer(*type.element, vector.data(), child, i * type.element->size);
            }
        } else if (type.kind == Kind::kStruct) {
            for (const Type::Field& field : type.fields) {
                const size_t count = field.count != 0 ? field.count : 1;
                for (size_t i = 0; i < count; ++i) {
                    refer(*field.type, buffer, parent,
                          offset + field.offset + i * field.type->size);
                }
            }
        }
    }

    Parcel* const mParcel;
    Files* const mFiles;
};

/** Answers with a given parcel, which its caller gets as a received one. */
class Answer : public BHwBinder {
  public:
    explicit Answer(const Parcel& sent) : mSent(sent) {}
    status_t onTransact(uint32_t, const Parcel&, Parcel*, uint32_t,
                        TransactCallback callback) override {
        // The callback only reads it.
        callback(const_cast<Parcel&>(mSent));
        return OK;
    }

  private:
    const Parcel& mSent;
};

constexpr uint32_t baseCode(const char (&letters)[4]) {
    return uint32_t{0x0f} << 24 | static_cast<uint32_t>(letters[0]) << 16 |
           static_cast<uint32_t>(letters[1]) << 8 | static_cast<uint32_t>(letters[2]);
}

}  // namespace

std::string hexOf(const void* bytes, size_t size) {
    constexpr char kDigits[] = "0123456789abcdef";
    std::string text;
    text.reserve(size * 2);
    const auto* at = static_cast<const uint8_t*>(bytes);
    for (size_t i = 0; i < size; ++i) {
        text += kDigits[at[i] >> 4];
        text += kDigits[at[i] & 15];
    }
    return text;
}

Json zeroOf(const Type& type) {
    switch (type.kind) {
        case Kind::kBool:
            return false;
        case Kind::kString:
            return "";
        case Kind::kVector:
            return type.element->kind == Kind::kUint8 ? Json("") : Json::array();
        case Kind::kStruct: {
            Json json = Json::object();
            for (const auto& field : type.fields) {
                if (field.count == 0) {
                    json[field.name] = zeroOf(*field.type);
                } else if (field.type->kind == Kind::kUint8) {
                    json[field.name] = std::string(field.count * 2, '0');
                } else {
                    json[field.name] = Json(field.count, zeroOf(*field.type));
                }
            }
            return json;
        }
        case Kind::kHandle:
        case Kind::kObject:
            return nullptr;
        default:
            return 0;
    }
}

Json zerosOf(const std::vector<Value>& values) {
    Json json = Json::object();
    for (const auto& value : values) json[value.name] = zeroOf(*value.type);
    return json;
}

const Interface* findInterface(const std::string& name) {
    for (const Interface& interface : interfaces()) {
        if (name == interface.name) return &interface;
    }
    return nullptr;
}

const char* baseMethod(uint32_t code) {
    switch (code) {
        case baseCode("PNG"):
            return "ping";
        case baseCode("CHN"):
            return "interfaceChain";
        case baseCode("DSC"):
            return "interfaceDescriptor";
        case baseCode("SYS"):
            return "notifySyspropsChanged";
        case baseCode("INT"):
            return "setHALInstrumentation";
        case baseCode("REF"):
            return "getDebugInfo";
        case baseCode("DBG"):
            return "debug";
        case baseCode("HSH"):
            return "getHashChain";
        default:
            return "";
    }
}

Json read(const std::vector<Value>& values, const Parcel& parcel) {
    Json json = Json::object();
    Reader reader(parcel);
    for (const Value& value : values) json[value.name] = reader.value(*value.type);
    return json;
}

bool copySent(const Parcel& sent, Parcel* copy) {
    const sp<Answer> answer = new Answer(sent);
    return answer->transact(IBinder::FIRST_CALL_TRANSACTION, Parcel(), copy) == OK;
}

void write(const std::vector<Value>& values, const Json& json, Parcel* parcel, Files* files) {
    if (!json.is_object()) throw Malformed("values are an object");
    Writer writer(parcel, files);
    for (const Value& value : values) {
        const auto found = json.find(value.name);
        if (found == json.end()) throw Malformed(std::string(value.name) + " is missing");
        writer.value(*value.type, *found);
    }
}

Files::~Files() {
    for (native_handle_t* handle : mHandles) {
        native_handle_close(handle);
        native_handle_delete(handle);
    }
}

const native_handle_t* Files::make(const Json& json) {
    if (!json.is_object() || !json.contains("fds") || !json["fds"].is_array() ||
        !json.contains("ints") || !json["ints"].is_array() || json["fds"].size() > 64 ||
        json["ints"].size() > 64) {
        throw Malformed(json.dump() + " is no handle");
    }
    std::vector<uint32_t> sizes;
    for (const Json& size : json["fds"]) sizes.push_back(scalarOf<uint32_t>(size));
    std::vector<int32_t> numbers;
    for (const Json& number : json["ints"]) numbers.push_back(scalarOf<int32_t>(number));

    native_handle_t* handle =
            native_handle_create(static_cast<int>(sizes.size()), static_cast<int>(numbers.size()));
    if (handle == nullptr) throw std::bad_alloc();
    std::fill_n(handle->data, sizes.size(), -1);
    std::copy(numbers.begin(), numbers.end(), handle->data + sizes.size());
    mHandles.push_back(handle);
    for (size_t i = 0; i < sizes.size(); ++i) {
        const int file = memfd_create("replayed", MFD_CLOEXEC | MFD_ALLOW_SEALING);
        handle->data[i] = file;
        // A service does not map a file that could shrink.
        if (file < 0 || ftruncate(file, static_cast<off_t>(sizes[i])) != 0 ||
            fcntl(file, F_ADD_SEALS, F_SEAL_SHRINK | F_SEAL_GROW) != 0) {
            throw Malformed("there is no memory for a handle: " + std::string(strerror(errno)));
        }
    }
    return handle;
}

}  // namespace transactions
