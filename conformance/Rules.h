#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "Service.h"

namespace conformance {

/** A demand on the size of a result: a constant, from the request, or from another result. */
struct Rule {
    enum class Kind {
        /** `size` bytes, unless the call is refused. */
        kRecord,
        /** The same, by the layouts of the reference television; several one behind the other. */
        kLayout,
        /** As many elements as the parameter `other` says, unless the call is refused. */
        kAsRequested,
        /** The same, also of a refused call: the library copies so many in every case. */
        kAlwaysAsRequested,
        /** At most as many elements, of `size` bytes each, as the parameter `other` says. */
        kAtMost,
        /** The number of elements is the result `other`. */
        kCounted,
        /** The same in bytes, and in 16-bit units if the parameter "type" is 15. */
        kCountedByType,
    };

    const char* interface;
    /** Without "a_hidl_". */
    const char* method;
    const char* result;
    Kind kind;
    size_t size;
    const char* other;
};

/** The rules of a method. */
std::vector<const Rule*> rulesOf(const Target& target, const transactions::Method& method);

/** Whether a parameter bounds a result of the method. */
bool bounds(const std::vector<const Rule*>& rules, const std::string& parameter);

/** Elements of a vector, or bytes of a text. */
size_t elementsOf(const transactions::Type& type, const Json& value);

/** The judgement of a rule on a good reply. */
struct Verdict {
    /** Whether the rule applies to this reply. */
    bool applies = false;
    /** Both "" if the reply keeps to the rule. */
    std::string expected, received;
};
Verdict judge(const Rule& rule, const transactions::Method& method, const Json& arguments,
              const Reply& reply);

/** @throws std::logic_error if a rule names what is not there */
void verifyRules();

}  // namespace conformance
