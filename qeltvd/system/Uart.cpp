#include "Uart.h"

#include <algorithm>

#include "Code.h"
#include "Process.h"

namespace qeltvd {
namespace {

constexpr const char* kDevices[] = {"loop0", "loop1", "loop2", "loop3"};

/** Fills in what is left at 0: 115200 8N1. Whether the rest makes sense. */
bool complete(uart_setting_t* setting) {
    if (setting->baud_rate == 0) setting->baud_rate = 115200;
    if (setting->data_bits == 0) setting->data_bits = 8;
    if (setting->stop_bits == 0) setting->stop_bits = 1;
    return setting->baud_rate >= 1200 && setting->baud_rate <= 921600 &&
           (setting->data_bits == 7 || setting->data_bits == 8) && setting->parity <= 2 &&
           setting->stop_bits <= 2 && setting->no_loopback <= 1;
}

}  // namespace

Result<uint32_t> Uart::open(const std::string& name, pid_t owner, uint64_t tag,
                            uart_setting_t setting) {
    const std::string device = name.empty() ? kDevices[0] : name;
    if (std::find(std::begin(kDevices), std::end(kDevices), device) == std::end(kDevices)) {
        return kNotFound;
    }
    if (!complete(&setting)) return kBadValue;
    std::lock_guard<std::mutex> guard(mLock);
    for (auto open = mOpen.begin(); open != mOpen.end(); ++open) {
        if (open->second.name != device) continue;
        if (isAlive(open->second.owner)) return kRefused;
        mOpen.erase(open);
        break;
    }
    const uint32_t handle = mNextHandle++;
    mOpen[handle] = {device, owner, tag, setting, {}, {}};
    return handle;
}

Code Uart::close(uint32_t handle) {
    std::lock_guard<std::mutex> guard(mLock);
    return mOpen.erase(handle) != 0 ? kOk : kNotFound;
}

Code Uart::send(uint32_t handle, const uint8_t* data, size_t size) {
    std::lock_guard<std::mutex> guard(mLock);
    const auto found = mOpen.find(handle);
    if (found == mOpen.end()) return kNotFound;
    Device& device = found->second;
    device.state.sent += size;
    if (size == 0 || device.setting.no_loopback != 0) return kOk;

    // The line carries seven bits of each byte when it is set so.
    const uint8_t bits = device.setting.data_bits == 7 ? 0x7f : 0xff;
    android::hardware::hidl_vec<uint8_t> back(std::min(size, kRoom - device.received.size()));
    for (size_t i = 0; i < back.size(); ++i) back[i] = data[i] & bits;
    device.received.insert(device.received.end(), back.begin(), back.end());
    device.state.received += back.size();
    device.state.lost += size - back.size();
    // Within the lock, so that notifications come in the order of the bytes; queued, not called.
    if (back.size() != 0) {
        mNotifier.notify(&Notifier::Callback::a_hidl_iom_uart_nfy_fct, device.tag, uint64_t{handle},
                         back);
    }
    return kOk;
}

Result<std::vector<uint8_t>> Uart::receive(uint32_t handle, size_t limit) {
    std::lock_guard<std::mutex> guard(mLock);
    const auto found = mOpen.find(handle);
    if (found == mOpen.end()) return kNotFound;
    auto& received = found->second.received;
    const auto end = received.begin() + static_cast<ptrdiff_t>(std::min(limit, received.size()));
    std::vector<uint8_t> data(received.begin(), end);
    received.erase(received.begin(), end);
    return data;
}

Code Uart::flush(uint32_t handle) {
    std::lock_guard<std::mutex> guard(mLock);
    const auto found = mOpen.find(handle);
    if (found == mOpen.end()) return kNotFound;
    found->second.received.clear();
    return kOk;
}

Result<uart_setting_t> Uart::setting(uint32_t handle) const {
    std::lock_guard<std::mutex> guard(mLock);
    const auto found = mOpen.find(handle);
    if (found == mOpen.end()) return kNotFound;
    return found->second.setting;
}

Code Uart::setSetting(uint32_t handle, uart_setting_t setting) {
    if (!complete(&setting)) return kBadValue;
    std::lock_guard<std::mutex> guard(mLock);
    const auto found = mOpen.find(handle);
    if (found == mOpen.end()) return kNotFound;
    found->second.setting = setting;
    return kOk;
}

Result<uart_state_t> Uart::state(uint32_t handle) const {
    std::lock_guard<std::mutex> guard(mLock);
    const auto found = mOpen.find(handle);
    if (found == mOpen.end()) return kNotFound;
    uart_state_t state = found->second.state;
    state.waiting = static_cast<uint32_t>(found->second.received.size());
    return state;
}

}  // namespace qeltvd
