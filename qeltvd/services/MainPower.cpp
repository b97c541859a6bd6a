#include "Code.h"
#include "MainService.h"

namespace qeltvd {

using android::hardware::Void;

MainService::Return<void> MainService::a_hidl_c_pcl_get_wakeup_reason(
        a_hidl_c_pcl_get_wakeup_reason_cb reply) {
    const Power::Reason reason = mTv.power.wakeReason();
    reply(reason.reason, reason.data, kOk);
    return Void();
}

MainService::Return<int32_t> MainService::a_hidl_c_pcl_set_wakeup_reason(uint32_t reason,
                                                                         const Bytes& data) {
    return mTv.power.setWakeReason(reason, data);
}

MainService::Return<void> MainService::a_hidl_c_pcl_get_power_down_reason(
        a_hidl_c_pcl_get_power_down_reason_cb reply) {
    const Power::Reason reason = mTv.power.downReason();
    reply(reason.reason, reason.data, kOk);
    return Void();
}

MainService::Return<int32_t> MainService::a_hidl_c_pcl_set_power_down_reason(uint32_t reason,
                                                                             const Bytes& data) {
    return mTv.power.setDownReason(reason, data);
}

MainService::Return<int32_t> MainService::a_hidl_c_pcl_set_power_down() {
    return mTv.presentation.standBy(QELTV_POWER_DOWN);
}

MainService::Return<int32_t> MainService::a_hidl_c_pcl_set_request_suspend() {
    return mTv.presentation.standBy(QELTV_POWER_SUSPEND);
}

MainService::Return<int32_t> MainService::a_hidl_c_pcl_set_request_powerdown_envent() {
    return mTv.power.requestPowerDown();
}

MainService::Return<void> MainService::a_hidl_c_pcl_get_gpio(uint32_t a, uint32_t b,
                                                             a_hidl_c_pcl_get_gpio_cb reply) {
    uint32_t value = 0;
    const int32_t code = mTv.power.gpio(a, b, &value);
    reply(value, code);
    return Void();
}

MainService::Return<int32_t> MainService::a_hidl_c_pcl_set_gpio(uint32_t a, uint32_t b) {
    return mTv.power.setGpio(a, b);
}

MainService::Return<int32_t> MainService::a_hidl_c_pcl_set_gpio_monitor_ctrl_ex(uint32_t value,
                                                                                bool on) {
    return mTv.power.monitorGpio(value, on);
}

MainService::Return<void> MainService::a_hidl_c_pcl_get_wakeup_irkey(
        a_hidl_c_pcl_get_wakeup_irkey_cb reply) {
    const Power::IrKey key = mTv.power.wakeKey();
    reply({key.protocol, key.key}, kOk);
    return Void();
}

MainService::Return<void> MainService::a_hidl_c_pcl_get_wakeup_setup(
        a_hidl_c_pcl_get_wakeup_setup_cb reply) {
    reply(mTv.power.wakeSetup(), kOk);
    return Void();
}

MainService::Return<int32_t> MainService::a_hidl_c_pcl_set_wakeup_setup(uint32_t setup) {
    return mTv.power.setWakeSetup(setup);
}

MainService::Return<void> MainService::a_hidl_qeltvapi_pcl_get_wakeup_reason(
        a_hidl_qeltvapi_pcl_get_wakeup_reason_cb reply) {
    // The newer reasons have the same numbers here.
    const Power::Reason reason = mTv.power.wakeReason();
    reply(reason.reason, reason.data, kOk);
    return Void();
}

MainService::Return<void> MainService::a_hidl_qeltvapi_pcl_get_wakeup_setup(
        a_hidl_qeltvapi_pcl_get_wakeup_setup_cb reply) {
    reply(mTv.power.wakeSetup(), kOk);
    return Void();
}

MainService::Return<int32_t> MainService::a_hidl_qeltvapi_pcl_set_wakeup_setup(uint32_t setup) {
    return mTv.power.setWakeSetup(setup);
}

}  // namespace qeltvd
