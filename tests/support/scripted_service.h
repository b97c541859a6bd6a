/**
 * A service that stands at the wire under the real interface names: it sees interface,
 * transaction code and argument bytes, and answers with given values, loses the reply or dies.
 * Always reached over the socket, also from the process that it lives in.
 */
#ifndef TESTS_SUPPORT_SCRIPTED_SERVICE_H
#define TESTS_SUPPORT_SCRIPTED_SERVICE_H

#include <hwbinder/IBinder.h>
#include <hwbinder/Parcel.h>

#include <atomic>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "values.h"

namespace wire {

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

    /**
     * Registers all fifteen interfaces (or the named ones), instance "default", in this
     * process's own runtime directory. A second call does nothing.
     */
    void start(const std::vector<std::string>& interfaces = {});
    bool started() const;

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

    /** The client's callback object as registered last; null before. */
    android::sp<android::hardware::IBinder> callback();
    /** How often the callback object has been registered. */
    int registrations();
    /** Registrations are answered only once this is set; null for at once. */
    void holdRegistrations(const std::atomic<bool>* release);
    /** How many registrations have been held so far. */
    int registrationsHeld();
    /** The next registrations of the callback object fail in transport. */
    void refuseRegistrations(int count);

    /**
     * Calls a method of the callback object as the service does.
     *
     * @return "" when it answered OK and with these values, else what was different
     */
    std::string notify(uint32_t ordinal, const Values& arguments, const Values& answer = {});

    /** All interfaces at once: peers see the death of this service. It can be started again. */
    void die();

  private:
    struct State;

    ScriptedService();
    ~ScriptedService();

    const std::unique_ptr<State> mState;
};

}  // namespace wire

#endif  // TESTS_SUPPORT_SCRIPTED_SERVICE_H
