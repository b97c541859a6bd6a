#include "scripted_service.h"

#include <gtest/gtest.h>
#include <hidlhost/raw_service.h>

#include <deque>
#include <mutex>
#include <optional>
#include <utility>

using android::status_t;
using android::hardware::Parcel;
using hidlhost::RawCall;

namespace wire {
namespace {

/** What the next call meets. */
struct Script {
    std::function<std::string(const Parcel&)> look;
    std::optional<Values> answer;
};

/** Settles the expectations of every test when it ends. */
class Settling : public testing::EmptyTestEventListener {
    void OnTestEnd(const testing::TestInfo& /* test */) override {
        ScriptedService::instance().settle();
    }
};

}  // namespace

struct ScriptedService::State {
    std::mutex lock;
    std::deque<Script> scripts;
    std::function<void()> beforeAnswer;
    std::vector<Seen> seen;
    std::vector<std::string> differences;

    status_t handle(const std::string& interface, uint32_t ordinal, const RawCall& call,
                    Parcel* reply) {
        Script script;
        std::function<void()> action;
        {
            std::lock_guard<std::mutex> guard(lock);
            seen.push_back({interface, ordinal});
            if (scripts.empty()) {
                differences.push_back(name(interface, ordinal) + " is not expected");
                return android::FAILED_TRANSACTION;
            }
            script = std::move(scripts.front());
            scripts.pop_front();
            action.swap(beforeAnswer);
        }
        std::string difference = script.look(call.arguments);
        if (call.interface != kPackage + interface) difference = "token of " + call.interface;
        if (!difference.empty()) {
            std::lock_guard<std::mutex> guard(lock);
            differences.push_back(name(interface, ordinal) + ", " + difference);
        }
        if (action) action();
        if (!script.answer) return android::FAILED_TRANSACTION;
        hidlhost::writeOk(reply);
        for (const Value& value : *script.answer) value.write(reply);
        return android::OK;
    }

    static std::string name(const std::string& interface, uint32_t ordinal) {
        return "the call of " + interface + " " + std::to_string(ordinal);
    }
};

ScriptedService& ScriptedService::instance() {
    // Its calls outlive the end of main().
    static ScriptedService& sInstance = *new ScriptedService;
    return sInstance;
}

ScriptedService::ScriptedService() : mState(std::make_unique<State>()) {
    mEngine.setHandler(
            [this](const std::string& interface, uint32_t ordinal, const RawCall& call,
                   Parcel* reply) { return mState->handle(interface, ordinal, call, reply); });
    testing::UnitTest::GetInstance()->listeners().Append(new Settling);
}
ScriptedService::~ScriptedService() = default;

void ScriptedService::expect(Values arguments, Values answer) {
    inspect([arguments](const Parcel& parcel) { return compareAll(arguments, parcel); },
            std::move(answer));
}

void ScriptedService::expectAndLose(Values arguments) {
    std::lock_guard<std::mutex> guard(mState->lock);
    mState->scripts.push_back(
            {[arguments](const Parcel& parcel) { return compareAll(arguments, parcel); },
             std::nullopt});
}

void ScriptedService::inspect(std::function<std::string(const Parcel&)> look, Values answer) {
    std::lock_guard<std::mutex> guard(mState->lock);
    mState->scripts.push_back({std::move(look), std::move(answer)});
}

void ScriptedService::beforeAnswer(std::function<void()> action) {
    std::lock_guard<std::mutex> guard(mState->lock);
    mState->beforeAnswer = std::move(action);
}

std::vector<Seen> ScriptedService::take() {
    for (const std::string& difference : takeDifferences()) ADD_FAILURE() << difference;
    std::lock_guard<std::mutex> guard(mState->lock);
    return std::exchange(mState->seen, {});
}

void ScriptedService::settle() {
    take();
    std::lock_guard<std::mutex> guard(mState->lock);
    const size_t missed = std::exchange(mState->scripts, {}).size();
    EXPECT_EQ(0u, missed) << "expected calls have not come";
}

std::vector<std::string> ScriptedService::takeDifferences() {
    std::lock_guard<std::mutex> guard(mState->lock);
    return std::exchange(mState->differences, {});
}

std::string ScriptedService::notify(uint32_t ordinal, const Values& arguments,
                                    const Values& answer) {
    const android::sp<android::hardware::IBinder> object = callback();
    if (object == nullptr) return "no callback object";
    Parcel reply;
    const status_t status = mEngine.notify(
            object, ordinal,
            [&](Parcel* parcel) {
                for (const Value& value : arguments) value.write(parcel);
            },
            &reply);
    if (status != android::OK) return "status " + std::to_string(status);
    int32_t exception = -1;
    if (reply.readInt32(&exception) != android::OK || exception != 0) return "no OK status";
    return compareAll(answer, reply);
}

}  // namespace wire
