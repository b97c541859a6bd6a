#include "hw_iom.h"

#include "QelTvApiCallbackImpl.h"
#include "QelTvApiShareMemory.h"
#include "call.h"

using namespace qeltvapi;
using vendor::qelnova::tv::qeltvapi::V1_0::IQelTvApi;

namespace {

constexpr char kTag[] = "(hw_iom)(client)";

constexpr Family<IQelTvApi> kIom{kTag, getQelTvApiService};

static_assert(sizeof(qeltvapi_iom_uart_setting_t) == QELTVAPI_IOM_UART_SETTING_SIZE);
#if __SIZEOF_POINTER__ == 4
static_assert(sizeof(qeltvapi_iom_buffer_t) == 8 && offsetof(qeltvapi_iom_buffer_t, data) == 4);
#endif

void fill(QelTvApiShareMemory& memory, const void* from, size_t size) {
    if (size == 0) return;
    if (void* to = memory.getPointer(); to != nullptr) memcpy(to, from, size);
}

}  // namespace

int c_iom_open_uart(uint32_t type, uint32_t a, const char* name,
                    const qeltvapi_iom_uart_setting_t* setting, void* tag,
                    qeltvapi_iom_notify_cb_t nfy, uint32_t* handle) {
    QELTVAPI_TRACE_AT(kTag, 97, "%s %s", kTag, __func__);
    if (type != QELTVAPI_IOM_UART) return -1;
    // Before anything can fail: the function stays registered when the opening does.
    QelTvApiCallbackImpl::iom_notify_cb.set(nfy);
    Call<IQelTvApi> call(kIom, HERE);
    QelTvApiShareMemory memory(sizeof(*setting));
    if (memory.m_status < 0) return -1;
    fill(memory, setting, sizeof(*setting));
    int result = kIom.missing;
    if (call) {
        result = call.ask(&IQelTvApi::a_hidl_c_iom_open_uart, storeValue(handle), type, a,
                          text(name), memory.m_handle,
                          static_cast<uint64_t>(reinterpret_cast<uintptr_t>(tag)));
    }
    memory.commit();
    return result;
}

int c_iom_close(uint32_t handle) {
    QELTVAPI_TRACE_AT(kTag, 133, "%s %s", kTag, __func__);
    return direct(kIom, HERE, &IQelTvApi::a_hidl_c_iom_close, handle);
}

int c_iom_get(uint32_t handle, uint32_t op, void* buf, uint64_t* len) {
    QELTVAPI_TRACE_AT(kTag, 153, "%s %s", kTag, __func__);
    Call<IQelTvApi> call(kIom, HERE);
    QelTvApiShareMemory memory(static_cast<uint32_t>(*len));
    if (memory.m_status < 0) return -1;
    int result = kIom.missing;
    if (call) {
        result = call.ask(&IQelTvApi::a_hidl_c_iom_get, storeValue(len), handle,
                          static_cast<uint16_t>(op), memory.m_handle, *len);
        // Bounded by the service's length alone, not by what was allocated; after a lost reply
        // the length is still the caller's.
        if (const auto size = static_cast<uint32_t>(*len); size != 0) {
            if (void* from = memory.getPointer(); from != nullptr) memcpy(buf, from, size);
        }
    }
    memory.commit();
    return result;
}

int c_iom_set(uint32_t handle, uint32_t op, const void* data, uint64_t len) {
    QELTVAPI_TRACE_AT(kTag, 185, "%s %s", kTag, __func__);
    Call<IQelTvApi> call(kIom, HERE);
    const auto size = static_cast<uint32_t>(len);
    QelTvApiShareMemory memory(size);
    if (memory.m_status < 0) return -1;
    fill(memory, data, size);
    int result = kIom.missing;
    if (call) {
        result = call.direct(&IQelTvApi::a_hidl_c_iom_set, handle, static_cast<uint16_t>(op),
                             memory.m_handle, len);
    }
    memory.commit();
    return result;
}

int c_iom_output(uint32_t handle, const qeltvapi_iom_buffer_t* b) {
    QELTVAPI_TRACE_AT(kTag, 210, "%s %s", kTag, __func__);
    Call<IQelTvApi> call(kIom, HERE);
    if (!call) return kIom.missing;
    return call.direct(&IQelTvApi::a_hidl_c_iom_output, handle, over(b->data, b->len));
}
