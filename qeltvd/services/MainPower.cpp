#include "Code.h"
#include "MainService.h"
#include "Power.h"
#include "Presentation.h"

namespace qeltvd {

Return<void> MainService::a_hidl_c_pcl_get_wakeup_reason(a_hidl_c_pcl_get_wakeup_reason_cb reply) {
    const Power::Reason reason = mModels.power.wakeReason();
    reply(reason.reason, reason.data, kOk);
    return Void();
}

Return<int32_t> MainService::a_hidl_c_pcl_set_wakeup_reason(uint32_t reason, const Bytes& data) {
    return mModels.power.setWakeReason(reason, data);
}

Return<void> MainService::a_hidl_c_pcl_get_power_down_reason(
        a_hidl_c_pcl_get_power_down_reason_cb reply) {
    const Power::Reason reason = mModels.power.downReason();
    reply(reason.reason, reason.data, kOk);
    return Void();
}

Return<int32_t> MainService::a_hidl_c_pcl_set_power_down_reason(uint32_t reason,
                                                                const Bytes& data) {
    return mModels.power.setDownReason(reason, data);
}

Return<int32_t> MainService::a_hidl_c_pcl_set_power_down() {
    return mModels.presentation.standBy(QELTV_POWER_DOWN);
}

Return<int32_t> MainService::a_hidl_c_pcl_set_request_suspend() {
    return mModels.presentation.standBy(QELTV_POWER_SUSPEND);
}

Return<int32_t> MainService::a_hidl_c_pcl_set_request_powerdown_envent() {
    return mModels.power.requestPowerDown();
}

Return<void> MainService::a_hidl_c_pcl_get_gpio(uint32_t line, uint32_t what,
                                                a_hidl_c_pcl_get_gpio_cb reply) {
    return replyWith(reply, mModels.power.gpio(line, what));
}

Return<int32_t> MainService::a_hidl_c_pcl_set_gpio(uint32_t line, uint32_t level) {
    return mModels.power.setGpio(line, level);
}

Return<int32_t> MainService::a_hidl_c_pcl_set_gpio_monitor_ctrl_ex(uint32_t value, bool on) {
    return mModels.power.monitorGpio(value, on);
}

Return<void> MainService::a_hidl_c_pcl_get_wakeup_irkey(a_hidl_c_pcl_get_wakeup_irkey_cb reply) {
    const Power::IrKey key = mModels.power.wakeKey();
    reply({key.protocol, key.key}, kOk);
    return Void();
}

Return<void> MainService::a_hidl_c_pcl_get_wakeup_setup(a_hidl_c_pcl_get_wakeup_setup_cb reply) {
    reply(mModels.power.wakeSetup(), kOk);
    return Void();
}

Return<int32_t> MainService::a_hidl_c_pcl_set_wakeup_setup(uint32_t setup) {
    return mModels.power.setWakeSetup(setup);
}

Return<void> MainService::a_hidl_qeltvapi_pcl_get_wakeup_reason(
        a_hidl_qeltvapi_pcl_get_wakeup_reason_cb reply) {
    // The newer reasons have the same numbers here.
    const Power::Reason reason = mModels.power.wakeReason();
    reply(reason.reason, reason.data, kOk);
    return Void();
}

Return<void> MainService::a_hidl_qeltvapi_pcl_get_wakeup_setup(
        a_hidl_qeltvapi_pcl_get_wakeup_setup_cb reply) {
    reply(mModels.power.wakeSetup(), kOk);
    return Void();
}

Return<int32_t> MainService::a_hidl_qeltvapi_pcl_set_wakeup_setup(uint32_t setup) {
    return mModels.power.setWakeSetup(setup);
}

}  // namespace qeltvd
