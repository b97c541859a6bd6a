/**
 * The television for unit tests in C; testing.h describes what it does.
 *
 * Functions with an int result return 0, or -1 if the script cannot be: qeltv_testing_error() then
 * holds the reason. Texts and bytes that are given are copied.
 */
#ifndef QELTVAPI_TESTING_TESTING_C_H
#define QELTVAPI_TESTING_TESTING_C_H

#include <stddef.h>
#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

typedef struct qeltv_testing qeltv_testing_t;
typedef struct qeltv_testing_rule qeltv_testing_rule_t;

typedef enum qeltv_testing_kind {
    QELTV_TESTING_ANY,    /**< matches everything; not an answer */
    QELTV_TESTING_NUMBER, /**< integers, enumerators and bools */
    QELTV_TESTING_TEXT,   /**< data and size */
    QELTV_TESTING_BYTES,  /**< data and size: byte vectors, records, shared memory */
    QELTV_TESTING_LIST,   /**< items and size: other vectors, records by their fields */
    QELTV_TESTING_OBJECT  /**< an object reference */
} qeltv_testing_kind_t;

typedef struct qeltv_testing_value {
    qeltv_testing_kind_t kind;
    int64_t number;
    const void* data;
    size_t size; /**< bytes of data, or number of items */
    const struct qeltv_testing_value* items;
} qeltv_testing_value_t;

/** Starts the television. @return null on failure, as if there is one already */
qeltv_testing_t* qeltv_testing_open(void);
/** Ends the script; its rules and everything that was read from it go too. */
void qeltv_testing_close(qeltv_testing_t* tv);
/** Why the last call of this thread failed. */
const char* qeltv_testing_error(void);

/** Makes a value of a number or of a text that ends with a zero. */
qeltv_testing_value_t qeltv_testing_number(int64_t number);
qeltv_testing_value_t qeltv_testing_text(const char* text);

/** Adds a rule for a method. @return null on failure; owned by the television */
qeltv_testing_rule_t* qeltv_testing_when(qeltv_testing_t* tv, const char* interface,
                                         const char* method);
/** Sets the rule for the calls of an interface that no other matches. */
qeltv_testing_rule_t* qeltv_testing_otherwise(qeltv_testing_t* tv, const char* interface);

int qeltv_testing_with(qeltv_testing_rule_t* rule, const qeltv_testing_value_t* arguments,
                       size_t count);
int qeltv_testing_answers(qeltv_testing_rule_t* rule, const qeltv_testing_value_t* results,
                          size_t count);
int qeltv_testing_refuses(qeltv_testing_rule_t* rule, int64_t code);
int qeltv_testing_loses_reply(qeltv_testing_rule_t* rule);
int qeltv_testing_dies(qeltv_testing_rule_t* rule);
/** Delays the answer added last. */
int qeltv_testing_after(qeltv_testing_rule_t* rule, unsigned int milliseconds);
/** Has the answer added last write into the shared memory of a parameter. */
int qeltv_testing_fills(qeltv_testing_rule_t* rule, const char* parameter, const void* data,
                        size_t size);

/** Notifies the client; see Television::notify(). */
int qeltv_testing_notify(qeltv_testing_t* tv, const char* name, const qeltv_testing_value_t* values,
                         size_t count);

/** The number of calls so far. */
size_t qeltv_testing_call_count(qeltv_testing_t* tv);
/** A call as a line of text; null if there is none. Valid until the television is closed. */
const char* qeltv_testing_call_text(qeltv_testing_t* tv, size_t index);
/**
 * An argument of a call by its name.
 *
 * @param value [out] the argument; its data is valid until the television is closed
 */
int qeltv_testing_call_argument(qeltv_testing_t* tv, size_t index, const char* name,
                                qeltv_testing_value_t* value);

int qeltv_testing_die(qeltv_testing_t* tv);
int qeltv_testing_come_back(qeltv_testing_t* tv);

#ifdef __cplusplus
}
#endif

#endif /* QELTVAPI_TESTING_TESTING_C_H */
