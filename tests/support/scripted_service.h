/**
 * The strict script of a wire test: the calls in their order, each with the values that must arrive
 * and the values that are answered. The service itself is the engine of the test kit.
 */
#ifndef TESTS_SUPPORT_SCRIPTED_SERVICE_H
#define TESTS_SUPPORT_SCRIPTED_SERVICE_H

#include <hwbinder/IBinder.h>
#include <hwbinder/Parcel.h>

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "engine.h"
#include "values.h"

namespace wire {

using namespace qeltvapi::testing::wire;

/** What the service saw of one call. */
struct Seen {
    std::string interface;
    uint32_t ordinal;
};

/**
 * Expectations hold by themselves: a test fails on a call that brings other arguments than
 * expected, on one that is not expected, and on an expected one that has not come by the end of the
 * test.
 */
class ScriptedService {
  public:
    /** The one of this process. Not started yet. */
    static ScriptedService& instance();

    // As of the engine, see there.
    void start(const std::vector<std::string>& interfaces = {}) { mEngine.start(interfaces); }
    bool started() const { return mEngine.started(); }
    void die() { mEngine.die(); }
    android::sp<android::hardware::IBinder> callback() { return mEngine.callback(); }
    int registrations() { return mEngine.registrations(); }
    void holdRegistrations(const std::atomic<bool>* release) { mEngine.holdRegistrations(release); }
    int registrationsHeld() { return mEngine.registrationsHeld(); }
    void refuseRegistrations(int count) { mEngine.refuseRegistrations(count); }

    /** The next call must bring these arguments, and is answered with these values. */
    void expect(Values arguments, Values answer);
    /** The next call must bring these arguments; its reply is lost. */
    void expectAndLose(Values arguments);
    /** Runs on the service's thread when the next call has arrived, before it is answered. */
    void beforeAnswer(std::function<void()> action);
    /** Has the raw arguments of the next call examined; `look` returns "" or what is wrong. */
    void inspect(std::function<std::string(const android::hardware::Parcel&)> look, Values answer);

    /** The calls since the last look. Reports those whose arguments were not the expected ones. */
    std::vector<Seen> take();
    /** take(), and reports the expected calls that have not come. Every test ends with it. */
    void settle();
    /** What differed since the last look, for a process that cannot report it. */
    std::vector<std::string> takeDifferences();

    /**
     * Calls a method of the callback object as the service does.
     *
     * @return "" when it answered OK and with these values, else what was different
     */
    std::string notify(uint32_t ordinal, const Values& arguments, const Values& answer = {});

  private:
    struct State;

    ScriptedService();
    ~ScriptedService();

    Engine& mEngine = Engine::instance();
    const std::unique_ptr<State> mState;
};

}  // namespace wire

#endif  // TESTS_SUPPORT_SCRIPTED_SERVICE_H
