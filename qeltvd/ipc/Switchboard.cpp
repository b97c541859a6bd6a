#define LOG_TAG "qeltvd"

#include "Switchboard.h"

#include <hidl/HidlTransportSupport.h>
#include <hidl/Static.h>
#include <hwbinder/IPCThreadState.h>
#include <log/log.h>
#include <unistd.h>

#include <atomic>
#include <chrono>
#include <mutex>
#include <thread>

#include "CodedError.h"
#include "LogText.h"
#include "MonitoredCall.h"

namespace qeltvd {

using android::sp;
using android::status_t;
using android::hardware::BHwBinder;
using android::hardware::IBinder;
using android::hardware::Parcel;

/** Counts a call among those that run. */
class Switchboard::Running {
  public:
    explicit Running(Switchboard& board) : mBoard(board) { ++mBoard.mRunning; }
    ~Running() { --mBoard.mRunning; }
    Running(const Running&) = delete;
    Running& operator=(const Running&) = delete;

  private:
    Switchboard& mBoard;
};

/** One interface: between the wire and the generated stub of the service. */
class Switchboard::Line : public BHwBinder {
  public:
    Line(Switchboard& board, std::string interface, std::vector<std::string> methods,
         sp<BHwBinder> stub, std::function<sp<BHwBinder>(int32_t, bool)> withCode)
            : mBoard(board),
              mInterface(std::move(interface)),
              mMethods(std::move(methods)),
              mStub(std::move(stub)),
              mWithCode(std::move(withCode)),
              mCalls(mMethods.size()),
              mFaults(mMethods.size()) {}

    status_t onTransact(uint32_t code, const Parcel& data, Parcel* reply, uint32_t flags,
                        TransactCallback callback) override {
        const Running running(mBoard);
        if (mBoard.mClosed) return android::DEAD_OBJECT;
        if (!mBoard.mMonitor.active()) return dispatch(code, data, reply, flags, callback);

        MonitoredCall call(mBoard.mMonitor, mInterface, code,
                           android::hardware::IPCThreadState::self()->getCallingPid());
        call.take(data);
        bool answered = false;
        const status_t status = dispatch(code, data, reply, flags, [&](Parcel& results) {
            answered = true;
            call.answer(results);
            callback(results);
        });
        if (status != android::OK) {
            call.fail(status);
        } else if (!answered && reply != nullptr) {
            call.answer(*reply);
        }
        return status;
    }

    bool setFault(const std::string& method, const std::optional<Fault>& fault) {
        bool found = false;
        std::lock_guard<std::mutex> guard(mLock);
        for (size_t i = 0; i < mMethods.size(); ++i) {
            if (method != "*" && method != mMethods[i] && "a_hidl_" + method != mMethods[i]) {
                continue;
            }
            mFaults[i] = fault;
            found = true;
        }
        return found;
    }

    void list(std::vector<MethodInfo>* to) const {
        std::lock_guard<std::mutex> guard(mLock);
        for (size_t i = 0; i < mMethods.size(); ++i) {
            const uint64_t calls = mCalls[i].load(std::memory_order_relaxed);
            if (calls != 0 || mFaults[i]) {
                to->push_back({mInterface, mMethods[i], calls, mFaults[i]});
            }
        }
    }

  private:
    /** Does to a call what is asked for. */
    status_t dispatch(uint32_t code, const Parcel& data, Parcel* reply, uint32_t flags,
                      const TransactCallback& callback) {
        const size_t index = code - FIRST_CALL_TRANSACTION;
        if (index >= mMethods.size()) return serve(mStub, code, data, reply, flags, callback);

        if (mBoard.mLog == CallLog::kOn) {
            ALOGD("call %s %s", mInterface.c_str(), mMethods[index].c_str());
        }
        mCalls[index].fetch_add(1, std::memory_order_relaxed);
        const std::optional<Fault> fault = take(index);
        if (!fault) return serve(mStub, code, data, reply, flags, callback);
        switch (fault->kind) {
            case Fault::Kind::kDie:
                ALOGW("ends in a call of %s, as asked", mMethods[index].c_str());
                _exit(3);
            case Fault::Kind::kLose:
                // Served, and the answer goes nowhere.
                serve(mStub, code, data, reply, flags, [](Parcel&) {});
                return android::FAILED_TRANSACTION;
            case Fault::Kind::kCode:
                return serve(mWithCode(static_cast<int32_t>(fault->value), true), code, data, reply,
                             flags, callback);
            case Fault::Kind::kDelay:
                std::this_thread::sleep_for(std::chrono::milliseconds(fault->value));
                return serve(mStub, code, data, reply, flags, callback);
        }
        return android::UNKNOWN_ERROR;
    }

    /** What happens to this call. The last call that a fault is for takes it back. */
    std::optional<Fault> take(size_t index) {
        std::lock_guard<std::mutex> guard(mLock);
        const std::optional<Fault> fault = mFaults[index];
        if (fault && fault->times == 1) mFaults[index].reset();
        if (fault && fault->times > 1) --mFaults[index]->times;
        return fault;
    }

    status_t serve(const sp<BHwBinder>& stub, uint32_t code, const Parcel& data, Parcel* reply,
                   uint32_t flags, const TransactCallback& callback) {
        bool answered = false;
        const TransactCallback answer = [&](Parcel& results) {
            answered = true;
            callback(results);
        };
        int32_t failure = kRefused;
        try {
            return stub->onTransact(code, data, reply, flags, answer);
        } catch (const CodedError& e) {
            failure = e.code();
            ALOGE("%s: %s", nameOf(code), logText(e.what()).c_str());
        } catch (const std::exception& e) {
            ALOGE("%s: %s", nameOf(code), logText(e.what()).c_str());
        } catch (...) {
            ALOGE("%s: unknown exception", nameOf(code));
        }
        if (answered) return android::OK;
        return fail(failure, code, data, flags, callback);
    }

    /** Answers a call with a code in place of the service, which has not answered it. */
    status_t fail(int32_t failure, uint32_t code, const Parcel& data, uint32_t flags,
                  const TransactCallback& callback) {
        try {
            data.setDataPosition(0);
            // What the service has begun to write is not a part of the answer.
            Parcel results;
            bool answered = false;
            const status_t status =
                    mWithCode(failure, false)
                            ->onTransact(code, data, &results, flags, [&](Parcel& written) {
                                answered = true;
                                callback(written);
                            });
            // A method without results leaves its answer to the caller of the stub.
            if (status == android::OK && !answered) callback(results);
            return status;
        } catch (const std::exception& e) {
            ALOGE("%s cannot be answered: %s", nameOf(code), logText(e.what()).c_str());
            return android::FAILED_TRANSACTION;
        }
    }

    const char* nameOf(uint32_t code) const {
        const size_t index = code - FIRST_CALL_TRANSACTION;
        return index < mMethods.size() ? mMethods[index].c_str() : mInterface.c_str();
    }

    Switchboard& mBoard;
    const std::string mInterface;
    const std::vector<std::string> mMethods;
    const sp<BHwBinder> mStub;
    const std::function<sp<BHwBinder>(int32_t code, bool everywhere)> mWithCode;
    std::vector<std::atomic<uint64_t>> mCalls;
    mutable std::mutex mLock;
    // Guarded by mLock.
    std::vector<std::optional<Fault>> mFaults;
};

Switchboard::Switchboard(CallLog log, Monitor& monitor) : mLog(log), mMonitor(monitor) {}
Switchboard::~Switchboard() = default;

void Switchboard::intercept(const std::string& descriptor, const std::string& interface,
                            std::vector<std::string> methods, MakeObject withCode) {
    auto& constructors = android::hardware::details::getBnConstructorMap();
    const auto makeStub = constructors.get(descriptor, nullptr);
    // Called once for the service that is published.
    constructors.set(descriptor, [=](void* object) -> sp<IBinder> {
        const auto withCodeStub = [=](int32_t code, bool everywhere) {
            return sp<BHwBinder>(makeStub(withCode(code, everywhere))->localBinder());
        };
        const sp<Line> line =
                new Line(*this, interface, methods, makeStub(object)->localBinder(), withCodeStub);
        mLines.push_back(line);
        return line;
    });
}

bool Switchboard::close(std::chrono::milliseconds patience) {
    const auto deadline = std::chrono::steady_clock::now() + patience;
    mClosed = true;
    while (mRunning != 0) {
        if (std::chrono::steady_clock::now() > deadline) return false;
        std::this_thread::sleep_for(std::chrono::milliseconds(5));
    }
    return true;
}

bool Switchboard::setFault(const std::string& method, std::optional<Fault> fault) {
    bool found = false;
    for (const sp<Line>& line : mLines) found |= line->setFault(method, fault);
    return found;
}

std::vector<Switchboard::MethodInfo> Switchboard::methods() const {
    std::vector<MethodInfo> all;
    for (const sp<Line>& line : mLines) line->list(&all);
    return all;
}

}  // namespace qeltvd
