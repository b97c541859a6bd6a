#include "scripted_service.h"

#include <gtest/gtest.h>
#include <hidlhost/raw_service.h>

#include <deque>
#include <mutex>
#include <optional>
#include <thread>
#include <utility>

#include "private_runtime.h"

using android::status_t;
using android::hardware::IBinder;
using android::hardware::Parcel;
using hidlhost::RawCall;
using hidlhost::RawHost;

namespace wire {
namespace {

constexpr char kPackage[] = "vendor.qelnova.tv.qeltvapi@1.0::";
constexpr char kInstance[] = "default";
constexpr char kCallback[] = "vendor.qelnova.tv.qeltvapi@1.0::IQelTvApiCallback";

const bool sPrivate = usePrivateRuntime();

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
    std::unique_ptr<RawHost> host;
    std::deque<Script> scripts;
    std::function<void()> beforeAnswer;
    std::vector<Seen> seen;
    std::vector<std::string> differences;
    android::sp<IBinder> callback;
    int registrations = 0;
    int refusals = 0;
    const std::atomic<bool>* hold = nullptr;
    int held = 0;

    status_t handle(const std::string& interface, const RawCall& call, Parcel* reply) {
        const uint32_t ordinal = call.code - IBinder::FIRST_CALL_TRANSACTION;
        if (interface == "IQelTvApi" && ordinal == 0) return registered(call, reply);

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

    status_t registered(const RawCall& call, Parcel* reply) {
        android::sp<IBinder> binder;
        if (call.arguments.readNullableStrongBinder(&binder) != android::OK) {
            return android::BAD_VALUE;
        }
        std::unique_lock<std::mutex> guard(lock);
        if (hold != nullptr) {
            ++held;
            const std::atomic<bool>* release = hold;
            guard.unlock();
            while (!*release) std::this_thread::sleep_for(std::chrono::milliseconds(1));
            guard.lock();
            hold = nullptr;
        }
        if (refusals > 0) {
            --refusals;
            return android::FAILED_TRANSACTION;
        }
        callback = binder;
        ++registrations;
        hidlhost::writeOk(reply);
        return android::OK;
    }
};

ScriptedService& ScriptedService::instance() {
    // Never destroyed: that would be a death for the library to follow while the process ends.
    static ScriptedService& sInstance = *new ScriptedService;
    return sInstance;
}

ScriptedService::ScriptedService() : mState(std::make_unique<State>()) {
    testing::UnitTest::GetInstance()->listeners().Append(new Settling);
}
ScriptedService::~ScriptedService() = default;

void ScriptedService::start(const std::vector<std::string>& interfaces) {
    static const std::vector<std::string> kAll = {
            "IQelTvApiConfig",    "IQelTvApiScan",   "IQelTvApiBroadcast", "IQelTvApiRating",
            "IQelTvApiTimeshift", "IQelTvApiTime",   "IQelTvApiEvent",     "IQelTvApiPvrbrowser",
            "IQelTvApiInputSrc",  "IQelTvApiRecord", "IQelTvApiMultiview", "IQelTvApiChannelList",
            "IQelTvApiCI",        "IQelTvApiCec",    "IQelTvApi"};
    if (started()) return;
    auto host = std::make_unique<RawHost>();
    for (const std::string& interface : interfaces.empty() ? kAll : interfaces) {
        const status_t status = host->add(kPackage + interface, kInstance,
                                          [this, interface](const RawCall& call, Parcel* reply) {
                                              return mState->handle(interface, call, reply);
                                          });
        if (status != android::OK) abort();
    }
    std::lock_guard<std::mutex> guard(mState->lock);
    mState->host = std::move(host);
}

bool ScriptedService::started() const {
    std::lock_guard<std::mutex> guard(mState->lock);
    return mState->host != nullptr;
}

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

android::sp<IBinder> ScriptedService::callback() {
    std::lock_guard<std::mutex> guard(mState->lock);
    return mState->callback;
}

int ScriptedService::registrations() {
    std::lock_guard<std::mutex> guard(mState->lock);
    return mState->registrations;
}

void ScriptedService::holdRegistrations(const std::atomic<bool>* release) {
    std::lock_guard<std::mutex> guard(mState->lock);
    mState->hold = release;
}

int ScriptedService::registrationsHeld() {
    std::lock_guard<std::mutex> guard(mState->lock);
    return mState->held;
}

void ScriptedService::refuseRegistrations(int count) {
    std::lock_guard<std::mutex> guard(mState->lock);
    mState->refusals = count;
}

std::string ScriptedService::notify(uint32_t ordinal, const Values& arguments,
                                    const Values& answer) {
    const android::sp<IBinder> object = callback();
    if (object == nullptr) return "no callback object";
    Parcel reply;
    const status_t status = hidlhost::rawCall(
            object, kCallback, ordinal + IBinder::FIRST_CALL_TRANSACTION,
            [&](Parcel* parcel) {
                for (const Value& value : arguments) value.write(parcel);
            },
            &reply);
    if (status != android::OK) return "status " + std::to_string(status);
    int32_t exception = -1;
    if (reply.readInt32(&exception) != android::OK || exception != 0) return "no OK status";
    return compareAll(answer, reply);
}

void ScriptedService::die() {
    RawHost* host = nullptr;
    {
        std::lock_guard<std::mutex> guard(mState->lock);
        host = mState->host.get();
    }
    // First of all, so that who sees it gone sees it dead too.
    if (host != nullptr) host->kill();
    std::unique_ptr<RawHost> dead;
    std::lock_guard<std::mutex> guard(mState->lock);
    dead.swap(mState->host);
    mState->callback = nullptr;
}

}  // namespace wire
