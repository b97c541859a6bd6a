// Values and parcels that no client of the library sends, from several threads.

#include <hidlhost/raw_service.h>

#include <chrono>
#include <functional>
#include <thread>

#include "Run.h"

namespace conformance {
namespace {

using android::OK;
using android::status_t;
using android::hardware::Parcel;
using std::chrono::steady_clock;

constexpr uint32_t kThreads = 8;

struct Callee {
    const Target* target;
    const transactions::Method* method;
};

std::vector<Callee> calleesOf(Run& run) {
    std::vector<Callee> callees;
    for (const Target& target : run.service().targets()) {
        if (target.object == nullptr) continue;
        for (const auto& method : target.interface->methods) {
            if (run.mayCall(method)) callees.push_back({&target, &method});
        }
    }
    return callees;
}

/** Calls with a method, from several threads: every method once, then any until the time is up. */
using OneCall = std::function<void(Hostile& values, const Callee& callee)>;

void fromThreads(Run& run, Check& check, const OneCall& call) {
    const std::vector<Callee> callees = calleesOf(run);
    if (callees.empty()) return;
    const auto end = steady_clock::now() + std::chrono::seconds(run.options().seconds) / 2.0;
    std::vector<std::thread> threads;
    for (uint32_t thread = 0; thread < kThreads; ++thread) {
        threads.emplace_back([&, thread] {
            Hostile values(run.options().seed * kThreads + thread + 1);
            for (size_t i = thread; !run.gone(); i += kThreads) {
                const bool first = i < callees.size();
                if (!first && steady_clock::now() >= end) break;
                const Callee& callee = first ? callees[i] : callees[values.below(callees.size())];
                if (!run.mayCall(*callee.method)) continue;
                call(values, callee);
                check.examine();
            }
        });
    }
    for (std::thread& thread : threads) thread.join();
}

void callWithEdges(Run& run, Hostile& values, const Callee& callee) {
    const Json arguments = values.next(callee.method->parameters);
    const Reply reply = run.service().call(*callee.target, *callee.method, arguments);
    Check& check = run.check("hostile.values");
    if (!reply.good()) {
        check.fail(subjectOf(*callee.target, *callee.method), callText(arguments),
                   "an answer in time",
                   reply.malformed.empty() ? reply.statusText() : reply.malformed);
        run.lookAfter(*callee.target, callee.method, reply.status);
    }
}

/** The arguments of a method, but something is wrong with them. */
void callWrongly(Run& run, Hostile& values, const Callee& callee) {
    const transactions::Method& method = *callee.method;
    const Target& target = *callee.target;
    transactions::Files files;
    std::string token = target.descriptor;
    const uint32_t kind = values.below(6);
    static constexpr const char* kKinds[] = {"some arguments left out",         "no arguments",
                                             "the arguments of another method", "another token",
                                             "more than its arguments",         "random bytes"};
    const auto& others = target.interface->methods;
    const auto& other = others[values.below(others.size())];
    if (kind == 3) token = values.below(2) == 0 ? "" : "x.y@1.0::IOther";
    const auto write = [&](Parcel* parcel) {
        const auto append = [&](const transactions::Method& of, size_t count) {
            std::vector<transactions::Value> first(
                    of.parameters.begin(),
                    of.parameters.begin() + static_cast<std::ptrdiff_t>(count));
            transactions::Method cut{of.name, first, {}};
            writeArguments(cut, values.next(first), parcel, &files);
        };
        switch (kind) {
            case 0:
                return append(method, values.below(method.parameters.size() + 1));
            case 1:
                return;
            case 2:
                return append(other, other.parameters.size());
            case 4:
                append(method, method.parameters.size());
                return append(other, other.parameters.size());
            case 5:
                for (uint32_t i = values.below(24); i > 0; --i) {
                    parcel->writeUint32(values.below(4) == 0 ? values.below(4)
                                                             : values.below(0x7fffffff));
                }
                return;
            default:
                return append(method, method.parameters.size());
        }
    };
    Parcel reply;
    const status_t status = run.service().transact(
            target, token, ordinalOf(*target.interface, method), write, &reply);
    if (status == android::TIMED_OUT || status == android::DEAD_OBJECT) {
        run.check("hostile.malformed")
                .fail(subjectOf(target, method), std::string("called with ") + kKinds[kind],
                      "a refusal or an answer in time", android::statusToString(status));
        run.lookAfter(target, &method, status);
    }
}

}  // namespace

void checkHostile(Run& run) {
    fromThreads(run, run.check("hostile.values"),
                [&](Hostile& values, const Callee& callee) { callWithEdges(run, values, callee); });
    fromThreads(run, run.check("hostile.malformed"),
                [&](Hostile& values, const Callee& callee) { callWrongly(run, values, callee); });
    Check& check = run.check("hostile.identity");
    for (const Target& target : run.service().targets()) {
        if (target.object == nullptr) continue;
        check.examine();
        if (!Service::alive(target)) {
            check.fail(target.interface->name, "", "the object of the beginning",
                       "a dead one: its process has ended");
        } else if (hidlhost::findRaw(target.descriptor, "default") != target.object) {
            check.fail(target.interface->name, "", "the object of the beginning", "another one");
        }
    }
}

}  // namespace conformance
