#pragma once

#include <utils/Errors.h>
#include <utils/RefBase.h>

#include <atomic>
#include <chrono>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "Monitor.h"

namespace qeltvd {

/** What is to happen to calls of one method. */
struct Fault {
    enum class Kind {
        /** The process ends when the next call arrives. */
        kDie,
        /** A call is served, and its reply is lost. */
        kLose,
        /** A call is answered with a code, and not served. */
        kCode,
        /** A call is answered late. */
        kDelay,
    };
    Kind kind;
    /** The code of kCode, the milliseconds of kDelay. */
    int64_t value;
    /** How many calls it is for; 0 for all until it is taken back. */
    uint32_t times;
};

/**
 * The way of every call to its service: counts it, does to it what a test has asked for, and
 * answers for a service that throws, so that an exception ends a call and not the process.
 */
class Switchboard {
  public:
    enum class CallLog { kOff, kOn };
    /**
     * @param log     whether each call writes a debug line with its method
     * @param monitor is sent each call
     */
    Switchboard(CallLog log, Monitor& monitor);
    ~Switchboard();

    /**
     * Registers a service under its interface.
     *
     * @param interface name without package
     * @param instance  the name beside it
     * @param methods   its methods in declaration order
     * @param service   serves the calls
     * @param withCode  makes an object that answers every method that has a code with one, or
     *                  every method
     * @return whether it is registered
     */
    template <class I>
    bool publish(const std::string& interface, const std::string& instance,
                 std::vector<std::string> methods, const android::sp<I>& service,
                 I* (*withCode)(int32_t, bool)) {
        intercept(I::descriptor, interface, std::move(methods),
                  [withCode](int32_t code, bool everywhere) -> void* {
                      return withCode(code, everywhere);
                  });
        return service->registerAsService(instance) == android::OK;
    }

    /**
     * Answers the calls that arrive from here on as a process that is gone does.
     *
     * @return whether all calls that ran before have returned by the end of the patience
     */
    bool close(std::chrono::milliseconds patience);

    /**
     * Sets what happens to a method, in place of what was set before; nothing when empty.
     *
     * @param method name, "a_hidl_" may be left out; "*" for every method of every interface
     * @return whether there is such a method
     */
    bool setFault(const std::string& method, std::optional<Fault> fault);

    struct MethodInfo {
        std::string interface;
        std::string method;
        uint64_t calls;
        std::optional<Fault> fault;
    };
    /** The methods that have been called or have a fault set. */
    std::vector<MethodInfo> methods() const;

  private:
    class Line;
    class Running;
    using MakeObject = std::function<void*(int32_t code, bool everywhere)>;

    void intercept(const std::string& descriptor, const std::string& interface,
                   std::vector<std::string> methods, MakeObject withCode);

    const CallLog mLog;
    Monitor& mMonitor;
    std::atomic<bool> mClosed{false};
    std::atomic<size_t> mRunning{0};
    // Complete before the first call arrives that looks at it.
    std::vector<android::sp<Line>> mLines;
};

}  // namespace qeltvd
