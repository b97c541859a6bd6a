/** The interfaces of the package with the types of their methods, as generate.py writes them. */
#ifndef QELTVAPI_TESTING_INTERFACES_H
#define QELTVAPI_TESTING_INTERFACES_H

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace qeltvapi::testing {

enum class Form {
    boolean,
    signedNumber,
    unsignedNumber,
    text,
    vector,
    array,
    record,
    memory,
    object,
};

/** A parameter, a result or a field of a record. */
struct Field {
    std::string name;
    int type;
    size_t offset;
};

struct Type {
    Form form;
    std::string name;
    /** Bytes in memory, the same on every ABI. */
    size_t size;
    /** The type of a vector's or array's elements, and the number of an array's. */
    int element;
    size_t count;
    std::vector<Field> fields;
};

struct Method {
    std::string name;
    std::vector<Field> parameters;
    std::vector<Field> results;
};

struct Interface {
    std::string name;
    /** By transaction number. */
    std::vector<Method> methods;
};

struct Notification {
    std::string name;
    std::vector<std::string> methods;
};

const std::vector<Type>& allTypes();
const std::vector<Interface>& allInterfaces();
const std::vector<Notification>& allNotifications();

inline const Type& typeOf(const Field& field) {
    return allTypes()[static_cast<size_t>(field.type)];
}
inline const Type& elementOf(const Type& type) {
    return allTypes()[static_cast<size_t>(type.element)];
}

/** @throws ScriptError if there is none of this name */
const Interface& findInterface(const std::string& name);

/**
 * The transaction number of a method, whose name may be shortened from the left at an underscore
 * as long as it is the only one: "get_value" of "a_hidl_qeltvapi_config_get_value".
 *
 * @throws ScriptError if there is none of this name, or more than one
 */
size_t findMethod(const Interface& interface, const std::string& name);

/** The method of the callback interface by the name of a notification, or by its own. */
size_t findNotification(const std::string& name);

}  // namespace qeltvapi::testing

#endif  // QELTVAPI_TESTING_INTERFACES_H
