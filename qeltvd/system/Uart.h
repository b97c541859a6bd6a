#pragma once

#include <sys/types.h>

#include <cstdint>
#include <deque>
#include <map>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

#include "Notifier.h"
#include "layouts/channel_records.h"

namespace qeltvd {

/**
 * The television's serial devices, "loop0" to "loop3": what is sent out of one comes back into it
 * at once, as the plug with joined pins does that service technicians use. What comes in is told to
 * clients in a notification and waits to be read; what finds no room is lost.
 */
class Uart {
  public:
    static constexpr size_t kRoom = 64 * 1024;

    explicit Uart(Notifier& notifier) : mNotifier(notifier) {}

    /** Each gives a code of Codes.h. A device is open once; that of a process that is gone closes.
     *
     * @param name  name of the device; "" is "loop0"
     * @param owner the process that opens it
     * @param tag   comes back in the notifications, followed by the handle
     */
    int32_t open(const std::string& name, pid_t owner, uint64_t tag, uart_setting_t setting,
                 uint32_t* handle);
    int32_t close(uint32_t handle);
    int32_t send(uint32_t handle, const uint8_t* data, size_t size);
    /** Takes up to `limit` received bytes. */
    int32_t receive(uint32_t handle, size_t limit, std::vector<uint8_t>* data);
    int32_t flush(uint32_t handle);
    int32_t setting(uint32_t handle, uart_setting_t* setting) const;
    int32_t setSetting(uint32_t handle, uart_setting_t setting);
    int32_t state(uint32_t handle, uart_state_t* state) const;

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
