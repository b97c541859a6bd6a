#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

/** What qeltvctl knows of the library's functions; written from their headers at build time. */
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
};

/** All functions, by name. */
const std::vector<Function>& functions();

}  // namespace tool
