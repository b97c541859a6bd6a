#include <hwbinder/IPCThreadState.h>

#include <algorithm>

#include "Blocks.h"
#include "Code.h"
#include "MainService.h"
#include "SharedBlock.h"
#include "Uart.h"

namespace qeltvd {

using android::hardware::hidl_handle;
using android::hardware::hidl_string;
using android::hardware::hidl_vec;
using android::hardware::IPCThreadState;
using android::hardware::Void;

namespace {

constexpr uint32_t kUartType = 8;

/** Longest block that is read or written at once. */
constexpr uint64_t kBlockLimit = 1024 * 1024;

}  // namespace

/** `a` is not looked at. */
MainService::Return<void> MainService::a_hidl_c_iom_open_uart(uint32_t type, uint32_t /*a*/,
                                                              const hidl_string& name,
                                                              const hidl_handle& setting,
                                                              uint64_t tag,
                                                              a_hidl_c_iom_open_uart_cb reply) {
    const SharedBlock block(setting);
    Bytes bytes(sizeof(uart_setting_t));
    const bool arrived = type == kUartType && block.holds(bytes.size()) &&
                         block.read(bytes.data(), bytes.size());
    const auto wanted = arrived ? recordOf<uart_setting_t>(bytes) : std::nullopt;
    if (!wanted) {
        reply(0, kBadValue);
        return Void();
    }
    uint32_t handle = 0;
    const int32_t code =
            mTv.uart.open(name, IPCThreadState::self()->getCallingPid(), tag, *wanted, &handle);
    reply(handle, code);
    return Void();
}

MainService::Return<int32_t> MainService::a_hidl_c_iom_close(uint32_t handle) {
    return mTv.uart.close(handle);
}

/** The client copies as many bytes as are told, so never more than its memory holds. */
MainService::Return<void> MainService::a_hidl_c_iom_get(uint32_t handle, uint16_t op,
                                                        const hidl_handle& memory, uint64_t size,
                                                        a_hidl_c_iom_get_cb reply) {
    SharedBlock block(memory);
    if (!block.holds(size)) {
        reply(0, kBadValue);
        return Void();
    }
    std::vector<uint8_t> answer;
    int32_t code = kBadValue;
    const auto take = [&](const auto& record) {
        if (code == kOk && size < sizeof(record)) code = kBadValue;
        if (code == kOk) answer = bytesAs<std::vector<uint8_t>>(&record, 1);
    };
    if (op == UART_OP_DATA) {
        code = mTv.uart.receive(handle, std::min(size, kBlockLimit), &answer);
    } else if (op == UART_OP_SETTING) {
        uart_setting_t setting{};
        code = mTv.uart.setting(handle, &setting);
        take(setting);
    } else if (op == UART_OP_STATE) {
        uart_state_t state{};
        code = mTv.uart.state(handle, &state);
        take(state);
    }
    if (!block.write(answer.data(), answer.size())) code = kBadValue;
    reply(code == kOk ? answer.size() : 0, code);
    return Void();
}

MainService::Return<int32_t> MainService::a_hidl_c_iom_set(uint32_t handle, uint16_t op,
                                                           const hidl_handle& memory,
                                                           uint64_t size) {
    const SharedBlock block(memory);
    if (!block.holds(size) || size > kBlockLimit) return kBadValue;
    std::vector<uint8_t> data(size);
    if (!block.read(data.data(), data.size())) return kBadValue;
    switch (op) {
        case UART_OP_DATA:
            return mTv.uart.send(handle, data.data(), data.size());
        case UART_OP_SETTING: {
            const auto setting = recordOf<uart_setting_t>(data.data(), data.size());
            return setting ? mTv.uart.setSetting(handle, *setting) : kBadValue;
        }
        case UART_OP_FLUSH:
            return mTv.uart.flush(handle);
        default:
            return kBadValue;
    }
}

MainService::Return<int32_t> MainService::a_hidl_c_iom_output(uint32_t handle,
                                                              const hidl_vec<uint8_t>& data) {
    return mTv.uart.send(handle, data.data(), data.size());
}

}  // namespace qeltvd
