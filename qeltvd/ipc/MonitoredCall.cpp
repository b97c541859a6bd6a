#define LOG_TAG "qeltvd"

#include "MonitoredCall.h"

#include <hidl/HidlBinderSupport.h>
#include <hwbinder/IBinder.h>

#include "Guarded.h"

namespace qeltvd {

using android::status_t;
using android::hardware::IBinder;
using android::hardware::Parcel;
using std::chrono::duration;
using std::chrono::steady_clock;
using std::chrono::system_clock;

namespace {

/** A failure to show a call must not fail the call. */
template <class Task>
void attempt(const Task& task) {
    guarded("the line of a monitored call", task);
}

}  // namespace

MonitoredCall::MonitoredCall(Monitor& monitor, const std::string& interface, uint32_t code,
                             pid_t peer)
        : mMonitor(monitor) {
    attempt([&] {
        const transactions::Interface* found = transactions::findInterface(interface);
        const size_t index = code - IBinder::FIRST_CALL_TRANSACTION;
        std::string name = transactions::baseMethod(code);
        if (found != nullptr && index < found->methods.size()) {
            mMethod = &found->methods[index];
            name = mMethod->name;
        }
        mLine["time"] = duration<double>(system_clock::now().time_since_epoch()).count();
        mLine["pid"] = peer;
        mLine["interface"] = interface;
        mLine["method"] = name.empty() ? "transaction " + std::to_string(code) : name;
    });
}

void MonitoredCall::take(const Parcel& arguments) {
    attempt([&] {
        arguments.readCString();
        if (mMethod != nullptr) decode(mMethod->parameters, "arguments", arguments);
    });
    arguments.setDataPosition(0);
    mStart = steady_clock::now();
}

void MonitoredCall::takeSent(const Parcel& arguments) {
    attempt([&] {
        Parcel copy;
        if (transactions::copySent(arguments, &copy)) take(copy);
    });
}

void MonitoredCall::answer(const Parcel& reply) {
    attempt([&] {
        const duration<double, std::micro> took = steady_clock::now() - mStart;
        Parcel copy;
        int32_t exception = 0;
        if (mMethod != nullptr && transactions::copySent(reply, &copy) &&
            copy.readInt32(&exception) == android::OK) {
            decode(mMethod->results, "results", copy);
        }
        mLine["microseconds"] = static_cast<int64_t>(took.count());
        send();
    });
}

void MonitoredCall::fail(status_t status) {
    if (mLine.is_null()) return;
    attempt([&] {
        mLine["status"] = android::statusToString(status);
        send();
    });
}

void MonitoredCall::notified(bool taken) {
    attempt([&] {
        mLine["taken"] = taken;
        send();
    });
}

void MonitoredCall::decode(const std::vector<transactions::Value>& values, const char* key,
                           const Parcel& parcel) {
    try {
        mLine[key] = transactions::read(values, parcel);
    } catch (const transactions::Malformed& e) {
        mLine["malformed"] = e.what();
    }
}

void MonitoredCall::send() {
    if (mLine.is_null()) return;
    const transactions::Json line = std::move(mLine);
    mLine = nullptr;
    mMonitor.send(line);
}

}  // namespace qeltvd
