#pragma once

#include <hwbinder/Parcel.h>
#include <sys/types.h>
#include <utils/Errors.h>

#include <chrono>
#include <cstdint>
#include <string>

#include "Monitor.h"

namespace qeltvd {

/** A transaction on its way past the monitors. Its values are decoded on the calling thread. */
class MonitoredCall {
  public:
    /**
     * @param interface name without package
     * @param peer      process that calls or, for the callback interface, is notified
     */
    MonitoredCall(Monitor& monitor, const std::string& interface, uint32_t code, pid_t peer);

    /** The arguments of a received call, from the interface token on. Starts the clock. */
    void take(const android::hardware::Parcel& arguments);
    /** The arguments of a call that this process makes. */
    void takeSent(const android::hardware::Parcel& arguments);
    /** The reply before it is sent; the line is queued. */
    void answer(const android::hardware::Parcel& reply);
    /** The call ends without a reply; the line is queued unless it has been answered. */
    void fail(android::status_t status);
    /** Queues the line of a notification. */
    void notified(bool taken);

  private:
    void decode(const std::vector<transactions::Value>& values, const char* key,
                const android::hardware::Parcel& parcel);
    void send();

    Monitor& mMonitor;
    /** Null for a transaction of every interface, or of none. */
    const transactions::Method* mMethod = nullptr;
    transactions::Json mLine;
    std::chrono::steady_clock::time_point mStart;
};

}  // namespace qeltvd
