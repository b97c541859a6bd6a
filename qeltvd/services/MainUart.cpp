#include <hwbinder/IPCThreadState.h>

#include <algorithm>

#include "Blocks.h"
#include "Code.h"
#include "MainService.h"
#include "SharedBlock.h"
#include "Uart.h"

namespace qeltvd {

using android::hardware::IPCThreadState;

namespace {

constexpr uint32_t kUartType = 8;

/** Longest block that is read or written at once. */
constexpr uint64_t kBlockLimit = 1024 * 1024;

}  // namespace

/** `a` is ignored. */
Return<void> MainService::a_hidl_c_iom_open_uart(uint32_t type, uint32_t /*a*/, const String& name,
                                                 const Handle& setting, uint64_t tag,
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
    return replyWith(
            reply, mModels.uart.open(name, IPCThreadState::self()->getCallingPid(), tag, *wanted));
}

Return<int32_t> MainService::a_hidl_c_iom_close(uint32_t handle) {
    return mModels.uart.close(handle);
}

/** The client copies as many bytes as the answer says, so never more than its memory holds. */
Return<void> MainService::a_hidl_c_iom_get(uint32_t handle, uint16_t op, const Handle& memory,
                                           uint64_t size, a_hidl_c_iom_get_cb reply) {
    SharedBlock block(memory);
    if (!block.holds(size)) {
        reply(0, kBadValue);
        return Void();
    }
    using Data = std::vector<uint8_t>;
    const auto bytesFrom = [size](const auto& record) -> Result<Data> {
        if (!record) return record.code();
        if (size < sizeof(*record)) return kBadValue;
        return bytesAs<Data>(&*record, 1);
    };
    Result<Data> data = kBadValue;
    if (op == UART_OP_DATA) {
        data = mModels.uart.receive(handle, std::min(size, kBlockLimit));
    } else if (op == UART_OP_SETTING) {
        data = bytesFrom(mModels.uart.setting(handle));
    } else if (op == UART_OP_STATE) {
        data = bytesFrom(mModels.uart.state(handle));
    }
    if (data && !block.write(data->data(), data->size())) data = kBadValue;
    reply(data ? data->size() : 0, data.code());
    return Void();
}

Return<int32_t> MainService::a_hidl_c_iom_set(uint32_t handle, uint16_t op, const Handle& memory,
                                              uint64_t size) {
    const SharedBlock block(memory);
    if (!block.holds(size) || size > kBlockLimit) return kBadValue;
    std::vector<uint8_t> data(size);
    if (!block.read(data.data(), data.size())) return kBadValue;
    switch (op) {
        case UART_OP_DATA:
            return mModels.uart.send(handle, data.data(), data.size());
        case UART_OP_SETTING: {
            const auto setting = recordOf<uart_setting_t>(data.data(), data.size());
            return setting ? mModels.uart.setSetting(handle, *setting) : kBadValue;
        }
        case UART_OP_FLUSH:
            return mModels.uart.flush(handle);
        default:
            return kBadValue;
    }
}

Return<int32_t> MainService::a_hidl_c_iom_output(uint32_t handle, const Bytes& data) {
    return mModels.uart.send(handle, data.data(), data.size());
}

}  // namespace qeltvd
