#pragma once

#include <sys/types.h>

#include <cstdint>
#include <deque>
#include <map>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

#include "Code.h"
#include "Notifier.h"
#include "Result.h"
#include "layouts/channel_records.h"

namespace qeltvd {

/**
 * The television's serial devices, "loop0" to "loop3": what is sent out of one comes back into it
 * at once, as the plug with joined pins does that service technicians use. Clients are notified of
 * incoming data, which waits to be read; data beyond the buffer is lost.
 */
class Uart {
  public:
    static constexpr size_t kRoom = 64 * 1024;

    explicit Uart(Notifier& notifier) : mNotifier(notifier) {}

    /** Each returns a code. A device is open once; that of a process that is gone closes.
     *
     * @param name  name of the device; "" is "loop0"
     * @param owner the process that opens it
     * @param tag   comes back in the notifications, followed by the handle
     */
    Result<uint32_t> open(const std::string& name, pid_t owner, uint64_t tag,
                          uart_setting_t setting);
    Code close(uint32_t handle);
    Code send(uint32_t handle, const uint8_t* data, size_t size);
    /** Takes up to `limit` received bytes. */
    Result<std::vector<uint8_t>> receive(uint32_t handle, size_t limit);
    Code flush(uint32_t handle);
    Result<uart_setting_t> setting(uint32_t handle) const;
    Code setSetting(uint32_t handle, uart_setting_t setting);
    Result<uart_state_t> state(uint32_t handle) const;

  private:
    struct Device {
        std::string name;
        pid_t owner;
        uint64_t tag;
        uart_setting_t setting;
        uart_state_t state{};
        std::deque<uint8_t> received;
    };

    Notifier& mNotifier;
    mutable std::mutex mLock;
    // Guarded by mLock.
    std::map<uint32_t, Device> mOpen;
    uint32_t mNextHandle = 1;
};

}  // namespace qeltvd
