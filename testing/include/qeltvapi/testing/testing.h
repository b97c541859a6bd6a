/**
 * A television for unit tests: it lives in the process of the test, answers what the test's script
 * says, and records every call. Calls reach it over the socket as they reach any other service.
 *
 *     Television tv;
 *     tv.when("IQelTvApiConfig", "get_value").with(0u, "picture.contrast").answers(42, 0);
 *
 * The library gives the process a runtime directory of its own when it is loaded. Any thread may
 * call any function here.
 */
#ifndef QELTVAPI_TESTING_TESTING_H
#define QELTVAPI_TESTING_TESTING_H

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <ostream>
#include <stdexcept>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>
#include <vector>

namespace qeltvapi::testing {

/** A script that cannot be: a method that does not exist, values that do not fit its types. */
class ScriptError : public std::invalid_argument {
  public:
    using std::invalid_argument::invalid_argument;
};

/** An argument, a result or a field of a record. */
class Value {
  public:
    enum class Kind {
        any,    /**< matches everything; not an answer */
        number, /**< integers, enumerators and bools */
        text,
        bytes,  /**< vectors and arrays of bytes, whole records, shared memory */
        list,   /**< other vectors and arrays, and records, field by field */
        object, /**< an object reference */
    };

    /** Matches everything. */
    Value() = default;
    template <class T, class = std::enable_if_t<std::is_integral_v<T> || std::is_enum_v<T>>>
    Value(T number)  // NOLINT: a script is written in plain values
            : mKind(Kind::number),
              mNegative(static_cast<int64_t>(number) < 0 && !isWide<T>()),
              mNumber(static_cast<uint64_t>(number)) {}
    Value(const char* text) : Value(std::string(text)) {}                   // NOLINT
    Value(std::string_view text) : Value(std::string(text)) {}              // NOLINT
    Value(std::string text) : mKind(Kind::text), mText(std::move(text)) {}  // NOLINT

    Kind kind() const { return mKind; }
    /** The value of a number; an unsigned one above INT64_MAX comes as its bit pattern. */
    int64_t number() const { return static_cast<int64_t>(mNumber); }
    bool negative() const { return mNegative; }
    /** The content of a text or of bytes. */
    const std::string& text() const { return mText; }
    /** The elements of a list. */
    const std::vector<Value>& items() const { return mItems; }
    /** The interface's name of an argument, a result or a field; else "". */
    const std::string& name() const { return mName; }

    /** An item of a list by its place or its name. @throws std::out_of_range if there is none */
    const Value& operator[](size_t index) const { return mItems.at(index); }
    const Value& operator[](std::string_view name) const;

    /** As a script would write it; long bytes are cut. */
    std::string show() const;

    /** Names do not count; `any` equals everything. */
    friend bool operator==(const Value& one, const Value& other) { return one.equals(other); }
    friend bool operator!=(const Value& one, const Value& other) { return !one.equals(other); }
    friend std::ostream& operator<<(std::ostream& out, const Value& value) {
        return out << value.show();
    }

    friend Value bytes(std::string content);
    friend Value list(std::vector<Value> items);
    friend Value object();
    Value named(std::string name) const;

  private:
    template <class T>
    static constexpr bool isWide() {
        if constexpr (std::is_enum_v<T>) {
            return isWide<std::underlying_type_t<T>>();
        } else {
            return std::is_unsigned_v<T>;
        }
    }
    bool equals(const Value& other) const;

    Kind mKind = Kind::any;
    bool mNegative = false;
    uint64_t mNumber = 0;
    std::string mText;
    std::vector<Value> mItems;
    std::string mName;
};

using Values = std::vector<Value>;

/** Bytes, for a vector or an array of them, for a record without texts and vectors, for memory. */
Value bytes(std::string content);
/** The bytes of a C value, one of the layouts for example. */
template <class T>
Value bytesOf(const T& value) {
    static_assert(std::is_trivially_copyable_v<T>, "only plain records have bytes to send");
    return bytes(std::string(reinterpret_cast<const char*>(&value), sizeof(value)));
}
/** The elements of a vector or an array, or the fields of a record in their order. */
Value list(std::vector<Value> items);
/** Matches everything. */
inline const Value any;

/** One call as it has arrived. */
struct Call {
    std::string interface;
    /** Its whole name. */
    std::string method;
    /** With their names. Shared memory comes as its bytes before the answer. */
    Values arguments;
    /** Whether a when() matched; other calls get the default answer of the interface. */
    bool scripted = false;

    /** An argument by its name. @throws std::out_of_range if there is none */
    const Value& operator[](std::string_view name) const;
    /** "IQelTvApiConfig a_hidl_qeltvapi_config_get_value(selector 0, name "picture.contrast")" */
    std::string show() const;
    friend std::ostream& operator<<(std::ostream& out, const Call& call) {
        return out << call.show();
    }
};

/** The results of a method, made from the call. */
using Answer = std::function<Values(const Call&)>;

/**
 * What a method does when it is called: a sequence of steps, one for each call, of which the last
 * is repeated. A rule without steps answers zeros and empty values.
 */
class Rule {
  public:
    /** Narrows the rule to calls with these arguments, all of them. */
    template <class... T>
    Rule& with(T&&... arguments) {
        return withAll({Value(std::forward<T>(arguments))...});
    }
    Rule& withAll(Values arguments);

    /** Answers these results, all that the interface has, in its order. */
    template <class... T>
    Rule& answers(T&&... results) {
        return answersAll({Value(std::forward<T>(results))...});
    }
    Rule& answersAll(Values results);
    /** Answers what the function returns. A ScriptError in it loses the reply and is recorded. */
    Rule& answersWith(Answer answer);
    /** Answers a code as the last result, zeros and empty values before it. */
    Rule& refuses(int64_t code);
    /** The caller sees a transport failure. */
    Rule& losesReply();
    /** The television dies before it has answered, see Television::die(). */
    Rule& dies();

    /** The step before this answers after that time. */
    Rule& after(std::chrono::milliseconds delay);
    /** The step before this also writes the bytes into the shared memory of that argument. */
    Rule& fills(const std::string& parameter, const Value& content);

  private:
    friend class Television;
    struct State;
    explicit Rule(std::shared_ptr<State> state) : mState(std::move(state)) {}
    std::shared_ptr<State> mState;
};

/**
 * The script of one test. The service itself stays when the television goes out of scope, with
 * nothing but refusals to answer, because the library keeps proxies of it: the next one takes it
 * over. There is one at a time.
 */
class Television {
  public:
    /** Starts the service. @throws ScriptError if there is one already */
    Television();
    ~Television();
    Television(const Television&) = delete;
    Television& operator=(const Television&) = delete;

    /**
     * Adds a rule. The last that matches a call has it.
     *
     * @param interface "IQelTvApiConfig"
     * @param method    "a_hidl_qeltvapi_config_get_value" or an unambiguous end of it, "get_value"
     * @throws ScriptError if there is no such method; those of the rule if values do not fit
     */
    Rule when(const std::string& interface, const std::string& method);

    /**
     * The rule for all calls of an interface that no other matches; only refuses(), losesReply(),
     * dies() and after() make sense. Without one they are refused with QELTV_UNSUPPORTED.
     */
    Rule otherwise(const std::string& interface);

    /**
     * Notifies the client, and waits until its function has returned. Waits for up to ten seconds
     * for the client to register its callback object first.
     *
     * @param name   "scan", "config" (see the reference), or a method of IQelTvApiCallback
     * @param values its arguments, all of them
     * @return the results of the client's function; most have none
     * @throws ScriptError if there is no such notification or the values do not fit
     * @throws std::runtime_error if no client registers, or if it is gone
     */
    template <class... T>
    Values notify(const std::string& name, T&&... values) {
        return notifyAll(name, {Value(std::forward<T>(values))...});
    }
    Values notifyAll(const std::string& name, const Values& values);

    /** All calls so far, or those of one method. Registrations of the callback object are none. */
    std::vector<Call> calls() const;
    std::vector<Call> calls(const std::string& interface, const std::string& method) const;
    /** Waits for that many calls of a method; returns those that came within the limit. */
    std::vector<Call> waitForCalls(
            const std::string& interface, const std::string& method, size_t count,
            std::chrono::milliseconds limit = std::chrono::seconds(10)) const;
    /** The calls that no rule matched. */
    std::vector<Call> unscripted() const;
    /** Forgets the calls so far. */
    void clearCalls();

    /** As when its process is killed: calls under way fail, clients see the death. */
    void die();
    /** Starts it again, with the same script. */
    void comeBack();

  private:
    struct State;
    const std::shared_ptr<State> mState;
};

}  // namespace qeltvapi::testing

#endif  // QELTVAPI_TESTING_TESTING_H
