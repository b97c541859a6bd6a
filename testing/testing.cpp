#include <qeltvapi/testing/testing.h>

#include <algorithm>
#include <condition_variable>
#include <map>
#include <mutex>
#include <optional>
#include <thread>

#include "codec.h"
#include "engine.h"
#include "layouts/codes.h"

using android::status_t;
using android::hardware::Parcel;
using hidlhost::RawCall;
using qeltvapi::testing::wire::Engine;

namespace qeltvapi::testing {
namespace {

constexpr std::chrono::seconds kRegistration{10};

/** The answer to one call. */
struct Step {
    enum class Kind { answer, compute, refuse, lose, die };

    Kind kind = Kind::answer;
    Values results;
    Answer answer;
    int64_t code = 0;
    std::chrono::milliseconds delay{0};
    std::vector<std::pair<size_t, std::string>> fills;
};

Step refusal(int64_t code) {
    Step step;
    step.kind = Step::Kind::refuse;
    step.code = code;
    return step;
}

Values zeros(const Method& method) {
    Values values;
    for (const Field& result : method.results) values.push_back(zeroOf(typeOf(result)));
    return values;
}

/** Zeros with the code as the last result, if that can hold one. */
Values refused(const Method& method, int64_t code) {
    Values values = zeros(method);
    if (values.empty()) return values;
    const Type& last = typeOf(method.results.back());
    if (last.form == Form::signedNumber && last.size < 8) values.back() = code;
    return values;
}

/** Shared memory matches what it begins with. */
bool matches(const Method& method, const Values& expected, const Values& seen) {
    for (size_t i = 0; i < expected.size(); ++i) {
        if (typeOf(method.parameters[i]).form == Form::memory) {
            const std::string& start = expected[i].text();
            if (seen[i].text().compare(0, start.size(), start) != 0) return false;
        } else if (expected[i] != seen[i]) {
            return false;
        }
    }
    return true;
}

}  // namespace

struct Rule::State {
    std::shared_ptr<std::mutex> lock;
    const Interface* interface;
    /** Null for all methods of the interface. */
    const Method* method;
    std::optional<Values> arguments;
    std::vector<Step> steps;
    size_t next = 0;

    std::string name() const { return method == nullptr ? interface->name : method->name; }

    const Method& single(const char* what) const {
        if (method == nullptr) {
            throw ScriptError(std::string(what) + " needs a method; " + interface->name +
                              " is scripted as a whole here");
        }
        return *method;
    }

    void add(Step step) {
        std::lock_guard<std::mutex> guard(*lock);
        steps.push_back(std::move(step));
    }

    /** The step before a modifier. */
    Step& last(const char* what) {
        if (steps.empty()) {
            throw ScriptError(name() + ": " + what + "() follows what it changes, an answer");
        }
        return steps.back();
    }

    Step take() {
        if (steps.empty()) return {Step::Kind::answer, zeros(*method), {}, 0, {}, {}};
        const size_t at = std::min(next, steps.size() - 1);
        ++next;
        return steps[at];
    }
};

Rule& Rule::withAll(Values arguments) {
    const Method& method = mState->single("with()");
    expectFit(method.name, method.parameters, arguments, true);
    for (size_t i = 0; i < arguments.size(); ++i) {
        arguments[i] = canonical(typeOf(method.parameters[i]), arguments[i]);
    }
    std::lock_guard<std::mutex> guard(*mState->lock);
    mState->arguments = std::move(arguments);
    return *this;
}

Rule& Rule::answersAll(Values results) {
    const Method& method = mState->single("answers()");
    expectFit(method.name + " answers", method.results, results, false);
    Step step;
    step.results = std::move(results);
    mState->add(std::move(step));
    return *this;
}

Rule& Rule::answersWith(Answer answer) {
    mState->single("answersWith()");
    Step step;
    step.kind = Step::Kind::compute;
    step.answer = std::move(answer);
    mState->add(std::move(step));
    return *this;
}

Rule& Rule::refuses(int64_t code) {
    if (mState->method != nullptr) {
        const Method& method = *mState->method;
        expectFit(method.name + " refuses", method.results, refused(method, code), false);
        if (method.results.empty() || refused(method, code).back() != Value(code)) {
            throw ScriptError(method.name + " has no code as its last result; script its answer");
        }
    }
    mState->add(refusal(code));
    return *this;
}

Rule& Rule::losesReply() {
    Step step;
    step.kind = Step::Kind::lose;
    mState->add(std::move(step));
    return *this;
}

Rule& Rule::dies() {
    Step step;
    step.kind = Step::Kind::die;
    mState->add(std::move(step));
    return *this;
}

Rule& Rule::after(std::chrono::milliseconds delay) {
    std::lock_guard<std::mutex> guard(*mState->lock);
    mState->last("after").delay = delay;
    return *this;
}

Rule& Rule::fills(const std::string& parameter, const Value& content) {
    const Method& method = mState->single("fills()");
    std::lock_guard<std::mutex> guard(*mState->lock);
    for (size_t i = 0; i < method.parameters.size(); ++i) {
        if (method.parameters[i].name != parameter) continue;
        if (typeOf(method.parameters[i]).form != Form::memory) break;
        mState->last("fills").fills.emplace_back(i, content.text());
        return *this;
    }
    throw ScriptError(method.name + " has no shared memory " + parameter);
}

struct Television::State {
    std::shared_ptr<std::mutex> lock = std::make_shared<std::mutex>();
    std::condition_variable arrived;
    std::vector<std::shared_ptr<Rule::State>> rules;
    std::map<std::string, std::shared_ptr<Rule::State>> otherwise;
    std::vector<Call> calls;

    std::shared_ptr<Rule::State> rule(const Interface& interface, const Method* method) const {
        auto state = std::make_shared<Rule::State>();
        state->lock = lock;
        state->interface = &interface;
        state->method = method;
        return state;
    }

    /** Records the call and finds what it meets. */
    Step arrive(const Method& method, Call* call) {
        std::lock_guard<std::mutex> guard(*lock);
        const auto found = std::find_if(rules.rbegin(), rules.rend(), [&](const auto& rule) {
            return rule->method == &method &&
                   (!rule->arguments || matches(method, *rule->arguments, call->arguments));
        });
        call->scripted = found != rules.rend();
        calls.push_back(*call);
        arrived.notify_all();
        if (call->scripted) return (*found)->take();
        const auto whole = otherwise.find(call->interface);
        if (whole != otherwise.end() && !whole->second->steps.empty()) return whole->second->take();
        return refusal(QELTV_UNSUPPORTED);
    }

    status_t handle(const std::string& name, uint32_t ordinal, const RawCall& raw, Parcel* reply) {
        const Interface& interface = findInterface(name);
        if (ordinal >= interface.methods.size()) return android::UNKNOWN_TRANSACTION;
        const Method& method = interface.methods[ordinal];
        Call call{name, method.name, {}, false};
        const size_t position = raw.arguments.dataPosition();
        try {
            call.arguments = read(method.parameters, raw.arguments);
        } catch (const std::exception& error) {
            fprintf(stderr, "%s: %s\n", method.name.c_str(), error.what());
            return android::BAD_VALUE;
        }
        const Step step = arrive(method, &call);
        std::this_thread::sleep_for(step.delay);
        for (const auto& [index, content] : step.fills) {
            raw.arguments.setDataPosition(position);
            if (fill(method.parameters, raw.arguments, index, content)) continue;
            fprintf(stderr, "%s: %s holds less than the %zu bytes that the script fills in\n",
                    method.name.c_str(), method.parameters[index].name.c_str(), content.size());
            return android::BAD_VALUE;
        }
        if (step.kind == Step::Kind::die) Engine::instance().die();
        if (step.kind == Step::Kind::die || step.kind == Step::Kind::lose) {
            return android::FAILED_TRANSACTION;
        }
        Values results =
                step.kind == Step::Kind::refuse ? refused(method, step.code) : step.results;
        if (step.kind == Step::Kind::compute) {
            try {
                results = step.answer(call);
                expectFit(method.name + " answers", method.results, results, false);
            } catch (const std::exception& error) {
                fprintf(stderr, "%s\n", error.what());
                return android::FAILED_TRANSACTION;
            }
        }
        hidlhost::writeOk(reply);
        write(method.results, results, reply);
        return android::OK;
    }

    template <class F>
    std::vector<Call> select(const F& wanted) const {
        std::vector<Call> selected;
        std::copy_if(calls.begin(), calls.end(), std::back_inserter(selected), wanted);
        return selected;
    }

    std::vector<Call> of(const std::string& interface, const std::string& method) const {
        return select([&](const Call& call) {
            return call.interface == interface && call.method == method;
        });
    }
};

namespace {

std::mutex sTelevision;
bool sTelevisionExists = false;

/** The whole name of a method. */
std::string wholeName(const std::string& interface, const std::string& method) {
    const Interface& found = findInterface(interface);
    return found.methods[findMethod(found, method)].name;
}

}  // namespace

Television::Television() : mState(std::make_shared<State>()) {
    {
        std::lock_guard<std::mutex> guard(sTelevision);
        if (sTelevisionExists) {
            throw ScriptError("There is a Television already. Let it go out of scope first");
        }
        sTelevisionExists = true;
    }
    Engine::instance().setHandler([state = mState](const std::string& interface, uint32_t ordinal,
                                                   const RawCall& call, Parcel* reply) {
        return state->handle(interface, ordinal, call, reply);
    });
    Engine::instance().start();
}

Television::~Television() {
    // An empty script refuses everything.
    Engine::instance().setHandler(
            [state = std::make_shared<State>()](const std::string& interface, uint32_t ordinal,
                                                const RawCall& call, Parcel* reply) {
                return state->handle(interface, ordinal, call, reply);
            });
    std::lock_guard<std::mutex> guard(sTelevision);
    sTelevisionExists = false;
}

Rule Television::when(const std::string& interface, const std::string& method) {
    const Interface& found = findInterface(interface);
    auto rule = mState->rule(found, &found.methods[findMethod(found, method)]);
    std::lock_guard<std::mutex> guard(*mState->lock);
    mState->rules.push_back(rule);
    return Rule(rule);
}

Rule Television::otherwise(const std::string& interface) {
    auto rule = mState->rule(findInterface(interface), nullptr);
    std::lock_guard<std::mutex> guard(*mState->lock);
    mState->otherwise[interface] = rule;
    return Rule(rule);
}

Values Television::notifyAll(const std::string& name, const Values& values) {
    const size_t ordinal = findNotification(name);
    const Method& method = findInterface("IQelTvApiCallback").methods[ordinal];
    expectFit(name, method.parameters, values, false);
    const auto object = Engine::instance().awaitCallback(kRegistration);
    if (object == nullptr) {
        throw std::runtime_error(name +
                                 ": no client has registered its callback object. "
                                 "Register a function for the notification first");
    }
    Parcel reply;
    const status_t status = Engine::instance().notify(
            object, static_cast<uint32_t>(ordinal),
            [&](Parcel* parcel) { write(method.parameters, values, parcel); }, &reply);
    int32_t exception = -1;
    if (status != android::OK || reply.readInt32(&exception) != android::OK || exception != 0) {
        throw std::runtime_error(name + ": the client does not answer, status " +
                                 std::to_string(status));
    }
    return read(method.results, reply);
}

std::vector<Call> Television::calls() const {
    std::lock_guard<std::mutex> guard(*mState->lock);
    return mState->calls;
}

std::vector<Call> Television::calls(const std::string& interface, const std::string& method) const {
    return waitForCalls(interface, method, 0, std::chrono::milliseconds(0));
}

std::vector<Call> Television::waitForCalls(const std::string& interface, const std::string& method,
                                           size_t count, std::chrono::milliseconds limit) const {
    const std::string name = wholeName(interface, method);
    std::unique_lock<std::mutex> guard(*mState->lock);
    mState->arrived.wait_for(guard, limit,
                             [&] { return mState->of(interface, name).size() >= count; });
    return mState->of(interface, name);
}

std::vector<Call> Television::unscripted() const {
    std::lock_guard<std::mutex> guard(*mState->lock);
    return mState->select([](const Call& call) { return !call.scripted; });
}

void Television::clearCalls() {
    std::lock_guard<std::mutex> guard(*mState->lock);
    mState->calls.clear();
}

void Television::die() {
    Engine::instance().die();
}

void Television::comeBack() {
    Engine::instance().start();
}

}  // namespace qeltvapi::testing
