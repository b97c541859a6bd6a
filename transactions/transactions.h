#pragma once

#include <hwbinder/Parcel.h>

#include <cstddef>
#include <cstdint>
#include <nlohmann/json.hpp>
#include <stdexcept>
#include <string>
#include <vector>

/**
 * Transactions of the service package as JSON, without generated code: what each method takes and
 * returns, and the way between parcels and JSON.
 *
 * In JSON a value is a number, true or false, or a text. Bytes (vec<uint8_t>, uint8_t[N]) are a
 * text of hex digits, other vectors and arrays are arrays, and structs are objects. A text that is
 * not UTF-8 is {"hex": DIGITS}. A handle is {"fds": [SIZE...], "ints": [NUMBER...]} with the sizes
 * of the files, or null. A callback object is the text "object", or null. A truth value that is
 * written may also be a number up to 255, the byte that stands for it on the wire.
 */
namespace transactions {

using Json = nlohmann::ordered_json;

enum class Kind {
    kBool,
    kInt8,
    kUint8,
    kInt16,
    kUint16,
    kInt32,
    kUint32,
    kInt64,
    kUint64,
    kString,
    kVector,
    kStruct,
    kHandle,
    kObject,
};

struct Type {
    struct Field {
        const char* name;
        size_t offset;
        /** Elements of an array; 0 for a single value. */
        size_t count;
        const Type* type;
    };
    Kind kind;
    /** Bytes in a buffer; 0 for what is in none. */
    size_t size;
    /** The type of a vector's elements. */
    const Type* element = nullptr;
    /** The fields of a struct. */
    std::vector<Field> fields = {};
};

struct Value {
    const char* name;
    const Type* type;
};

struct Method {
    const char* name;
    std::vector<Value> parameters;
    std::vector<Value> results;
};

struct Interface {
    /** Without its package. */
    const char* name;
    /** By transaction number, from 1 on. */
    std::vector<Method> methods;
};

/** All interfaces of the package, the callback interface among them. */
const std::vector<Interface>& interfaces();

/** The methods of an interface, given without its package; null if there is no such interface. */
const Interface* findInterface(const std::string& name);

/** The name of a transaction that all interfaces have, "ping"; "" if it is none. */
const char* baseMethod(uint32_t code);

/** Bytes as JSON has them: two hex digits for each. */
std::string hexOf(const void* bytes, size_t size);

/** Zeros, empty texts and vectors; null for handles and objects. */
Json zeroOf(const Type& type);
/** zeroOf() for each value, under its name. */
Json zerosOf(const std::vector<Value>& values);

/** Values that a parcel does not have, or JSON that is no value of its type. */
class Malformed : public std::runtime_error {
  public:
    using std::runtime_error::runtime_error;
};

/**
 * Reads values from where a received parcel stands. Reading from the parcel's beginning once more
 * is possible afterwards.
 *
 * @throws Malformed
 */
Json read(const std::vector<Value>& values, const android::hardware::Parcel& parcel);

/**
 * A copy of a parcel that is still to be sent, which can be read as the receiver reads it. Its
 * files are duplicates.
 *
 * @return whether there is one
 */
bool copySent(const android::hardware::Parcel& sent, android::hardware::Parcel* copy);

/** Handles whose files are closed with the object. */
class Files {
  public:
    Files() = default;
    ~Files();
    Files(const Files&) = delete;
    Files& operator=(const Files&) = delete;

    const native_handle_t* make(const Json& json);
    /** The handles in the order in which they were made. */
    const std::vector<native_handle_t*>& handles() const { return mHandles; }

  private:
    std::vector<native_handle_t*> mHandles;
};

/**
 * Appends values to a parcel that is still to be sent. A handle gets new files of the given sizes,
 * which live as long as `files`.
 *
 * @throws Malformed, also for an object, which has no value
 */
void write(const std::vector<Value>& values, const Json& json, android::hardware::Parcel* parcel,
           Files* files);

}  // namespace transactions
