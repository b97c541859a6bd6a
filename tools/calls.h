#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

/** The library's functions and the service's methods, from the description at build time. */
namespace tool {

/** How an argument is given and what is shown of it after the call. */
enum class Kind {
    kNumber,
    /** Pointer-wide value that the service hands back. */
    kToken,
    kText,
    /** Numbers that a pointer leads to. */
    kValuesIn,
    kDataIn,
    kRecordIn,
    kValueOut,
    kValueInOut,
    kTextOut,
    kTextInOut,
    kDataOut,
    kDataInOut,
    kRecordOut,
    kRecordInOut,
    /** Nothing that a command line could give. */
    kOther,
};

struct Parameter {
    const char* name;
    const char* type;
    const char* comment;
    Kind kind;
    /** Size of what it is or points to. */
    size_t size;
    bool isSigned;
};

/** An argument on its way into a call. */
struct Slot {
    int64_t number;
    void* pointer;
};

struct Function {
    const char* name;
    const char* header;
    const char* prototype;
    const char* comment;
    const char* about;
    const char* result;
    const char* resultComment;
    std::vector<Parameter> parameters;
    /** Calls it; null when a command line cannot give all of its arguments. */
    int64_t (*call)(const Slot* slots);
    const char* why;
    /** Methods of the service that it may call. */
    std::vector<const char*> methods;
    /** Whether the interface of its methods is there; null if it is not one interface. */
    bool (*reachable)();
};

/** All functions, by name. */
const std::vector<Function>& functions();

/** A method of the service or, of IQelTvApiCallback, of the object that is notified. */
struct Method {
    const char* interface;
    const char* name;
};

/** All methods, by interface in the order of their transaction numbers. */
const std::vector<Method>& methods();

}  // namespace tool
