#include <qeltvapi/testing/testing_c.h>

#include <qeltvapi/testing/testing.h>

#include <cstring>
#include <deque>
#include <exception>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

using qeltvapi::testing::Call;
using qeltvapi::testing::Rule;
using qeltvapi::testing::ScriptError;
using qeltvapi::testing::Television;
using qeltvapi::testing::Value;
using qeltvapi::testing::Values;

struct qeltv_testing_rule {
    Rule rule;
};

struct qeltv_testing {
    Television television;
    std::mutex lock;
    std::deque<qeltv_testing_rule> rules;
    /** Results that the caller holds pointers to. */
    std::deque<std::string> texts;
    std::deque<Value> arguments;
    std::deque<std::vector<qeltv_testing_value_t>> lists;
};

namespace {

thread_local std::string tError;

template <class F>
int guarded(const F& action) {
    try {
        action();
        return 0;
    } catch (const std::exception& error) {
        tError = error.what();
        return -1;
    }
}

Value valueOf(const qeltv_testing_value_t& value);

Values valuesOf(const qeltv_testing_value_t* values, size_t count) {
    Values all;
    for (size_t i = 0; i < count; ++i) all.push_back(valueOf(values[i]));
    return all;
}

Value valueOf(const qeltv_testing_value_t& value) {
    const auto content = [&] {
        return std::string(static_cast<const char*>(value.data), value.size);
    };
    switch (value.kind) {
        case QELTV_TESTING_ANY:
            return {};
        case QELTV_TESTING_NUMBER:
            return value.number;
        case QELTV_TESTING_TEXT:
            return content();
        case QELTV_TESTING_BYTES:
            return qeltvapi::testing::bytes(content());
        case QELTV_TESTING_LIST:
            return qeltvapi::testing::list(valuesOf(value.items, value.size));
        case QELTV_TESTING_OBJECT:
            break;
    }
    throw ScriptError("a value of kind " + std::to_string(value.kind) + " cannot be scripted");
}

/** Points into `value`, which stays in its place. */
qeltv_testing_value_t shown(qeltv_testing_t* tv, const Value& value) {
    qeltv_testing_value_t out{};
    out.kind = static_cast<qeltv_testing_kind_t>(value.kind());
    out.number = value.number();
    out.data = value.text().data();
    out.size = value.text().size();
    if (value.kind() == Value::Kind::list) {
        std::vector<qeltv_testing_value_t> items;
        for (const Value& item : value.items()) items.push_back(shown(tv, item));
        out.size = items.size();
        tv->lists.push_back(std::move(items));
        out.items = tv->lists.back().data();
    }
    return out;
}

static_assert(static_cast<int>(Value::Kind::object) == QELTV_TESTING_OBJECT &&
                      static_cast<int>(Value::Kind::list) == QELTV_TESTING_LIST,
              "both lists of kinds have the same order");

template <class F>
qeltv_testing_rule_t* added(qeltv_testing_t* tv, const F& make) {
    qeltv_testing_rule_t* rule = nullptr;
    guarded([&] {
        const Rule made = make();
        std::lock_guard<std::mutex> guard(tv->lock);
        rule = &tv->rules.emplace_back(qeltv_testing_rule{made});
    });
    return rule;
}

}  // namespace

extern "C" {

qeltv_testing_t* qeltv_testing_open(void) {
    qeltv_testing_t* tv = nullptr;
    guarded([&] { tv = new qeltv_testing; });
    return tv;
}

void qeltv_testing_close(qeltv_testing_t* tv) {
    delete tv;
}

const char* qeltv_testing_error(void) {
    return tError.c_str();
}

qeltv_testing_value_t qeltv_testing_number(int64_t number) {
    return {QELTV_TESTING_NUMBER, number, nullptr, 0, nullptr};
}

qeltv_testing_value_t qeltv_testing_text(const char* text) {
    return {QELTV_TESTING_TEXT, 0, text, strlen(text), nullptr};
}

qeltv_testing_rule_t* qeltv_testing_when(qeltv_testing_t* tv, const char* interface,
                                         const char* method) {
    return added(tv, [&] { return tv->television.when(interface, method); });
}

qeltv_testing_rule_t* qeltv_testing_otherwise(qeltv_testing_t* tv, const char* interface) {
    return added(tv, [&] { return tv->television.otherwise(interface); });
}

int qeltv_testing_with(qeltv_testing_rule_t* rule, const qeltv_testing_value_t* arguments,
                       size_t count) {
    return guarded([&] { rule->rule.withAll(valuesOf(arguments, count)); });
}

int qeltv_testing_answers(qeltv_testing_rule_t* rule, const qeltv_testing_value_t* results,
                          size_t count) {
    return guarded([&] { rule->rule.answersAll(valuesOf(results, count)); });
}

int qeltv_testing_refuses(qeltv_testing_rule_t* rule, int64_t code) {
    return guarded([&] { rule->rule.refuses(code); });
}

int qeltv_testing_loses_reply(qeltv_testing_rule_t* rule) {
    return guarded([&] { rule->rule.losesReply(); });
}

int qeltv_testing_dies(qeltv_testing_rule_t* rule) {
    return guarded([&] { rule->rule.dies(); });
}

int qeltv_testing_after(qeltv_testing_rule_t* rule, unsigned int milliseconds) {
    return guarded([&] { rule->rule.after(std::chrono::milliseconds(milliseconds)); });
}

int qeltv_testing_fills(qeltv_testing_rule_t* rule, const char* parameter, const void* data,
                        size_t size) {
    return guarded([&] {
        rule->rule.fills(parameter, qeltvapi::testing::bytes(
                                            std::string(static_cast<const char*>(data), size)));
    });
}

int qeltv_testing_notify(qeltv_testing_t* tv, const char* name, const qeltv_testing_value_t* values,
                         size_t count) {
    return guarded([&] { tv->television.notifyAll(name, valuesOf(values, count)); });
}

size_t qeltv_testing_call_count(qeltv_testing_t* tv) {
    return tv->television.calls().size();
}

const char* qeltv_testing_call_text(qeltv_testing_t* tv, size_t index) {
    const char* text = nullptr;
    guarded([&] {
        const Call call = tv->television.calls().at(index);
        std::lock_guard<std::mutex> guard(tv->lock);
        text = tv->texts.emplace_back(call.show()).c_str();
    });
    return text;
}

int qeltv_testing_call_argument(qeltv_testing_t* tv, size_t index, const char* name,
                                qeltv_testing_value_t* value) {
    return guarded([&] {
        const Call call = tv->television.calls().at(index);
        std::lock_guard<std::mutex> guard(tv->lock);
        *value = shown(tv, tv->arguments.emplace_back(call[name]));
    });
}

int qeltv_testing_die(qeltv_testing_t* tv) {
    return guarded([&] { tv->television.die(); });
}

int qeltv_testing_come_back(qeltv_testing_t* tv) {
    return guarded([&] { tv->television.comeBack(); });
}

}  // extern "C"
