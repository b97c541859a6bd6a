#pragma once

#include <sys/types.h>
#include <cstdint>

#include <utils/Errors.h>

namespace android {
namespace hardware {

/** The calling thread as the server of a transaction. */
class IPCThreadState {
  public:
    /** Null, with a warning in the log, after shutdown(). */
    static IPCThreadState* self();
    /** Null where self() was never called on this thread, and after shutdown(). */
    static IPCThreadState* selfOrNull();
    /** Ends the use of this class in the process. Transactions and served calls do not need it. */
    static void shutdown();

    /** The process whose call this thread serves; this process itself outside of a call. */
    pid_t getCallingPid() const;
    uid_t getCallingUid() const;
    /** Always null: a socket does not report it. */
    const char* getCallingSid() const { return nullptr; }

    bool isServingCall() const;
    bool isOnlyBinderThread() const;

    /** Gives the thread to incoming calls; does not return. */
    void joinThreadPool(bool isMain = true);

    void flushCommands() {}
};

}  // namespace hardware
}  // namespace android
