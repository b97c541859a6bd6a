#define LOG_TAG "qeltvd"

#include "Blocks.h"
#include "Code.h"
#include "MainService.h"

namespace qeltvd {

using android::hardware::hidl_string;
using android::hardware::hidl_vec;
using android::hardware::Void;

MainService::Return<void> MainService::a_hidl_qeltvapi_oad_get_scheduleinfo(
        a_hidl_qeltvapi_oad_get_scheduleinfo_cb reply) {
    const std::string text = mTv.overAir.schedule();
    reply(text, text.empty() ? kNotFound : kOk);
    return Void();
}

MainService::Return<void> MainService::a_hidl_qeltvapi_oad_get_datainfo(
        uint32_t value, a_hidl_qeltvapi_oad_get_datainfo_cb reply) {
    std::string text;
    const int32_t code = mTv.overAir.text(value, &text);
    reply(text, code);
    return Void();
}

MainService::Return<int32_t> MainService::a_hidl_qeltvapi_oad_stop_manual_detect() {
    return mTv.overAir.stopDetection();
}

MainService::Return<int32_t> MainService::a_hidl_qeltvapi_oad_start_download() {
    return mTv.overAir.start();
}

MainService::Return<int32_t> MainService::a_hidl_qeltvapi_oad_stop_download() {
    return mTv.overAir.stop();
}

MainService::Return<int32_t> MainService::a_hidl_qeltvapi_oad_set_auto_download(bool on) {
    return mTv.overAir.setAutomatic(on);
}

MainService::Return<int32_t> MainService::a_hidl_qeltvapi_oad_start_flash() {
    return mTv.overAir.flash();
}

MainService::Return<int32_t> MainService::a_hidl_qeltvapi_oad_accept_restart() {
    return mTv.overAir.restart();
}

MainService::Return<int32_t> MainService::a_hidl_qeltvapi_oad_remind_me_later() {
    return mTv.overAir.remind();
}

MainService::Return<int32_t> MainService::a_hidl_qeltvapi_oad_accept_schedule() {
    return mTv.overAir.acceptSchedule();
}

MainService::Return<int32_t> MainService::a_hidl_qeltvapi_oad_start_jump_channel() {
    return mTv.overAir.jump();
}

MainService::Return<int32_t> MainService::a_hidl_qeltvapi_oad_get_power_on_status() {
    return mTv.overAir.powerOnStatus();
}

MainService::Return<int32_t> MainService::a_hidl_qeltvapi_set_pkg_pathname(
        const hidl_string& path) {
    return mTv.overAir.setPackage(path);
}

MainService::Return<int32_t> MainService::a_hidl_qeltvapi_oad_clear_version() {
    return mTv.overAir.clearVersion();
}

MainService::Return<int32_t> MainService::a_hidl_qeltvapi_upgrade_start(uint32_t value, bool flag) {
    return mTv.upgrade.start(value, flag);
}

MainService::Return<int32_t> MainService::a_hidl_qeltvapi_upgrade_trigger(uint32_t value) {
    return mTv.upgrade.trigger(value);
}

MainService::Return<void> MainService::a_hidl_qeltvapi_upgrade_get_firmware_info(
        a_hidl_qeltvapi_upgrade_get_firmware_info_cb reply) {
    HIDL_QELTVAPI_UPGRADE_FW_INFO_T info;
    Upgrade::Item firmware;
    (void)mTv.upgrade.item(QELTV_UPGRADE_ITEM_FIRMWARE, &firmware);
    info.s_at_0 = mTv.config.text("system.model");
    info.s_at_32 = mTv.upgrade.installed(QELTV_UPGRADE_ITEM_FIRMWARE);
    info.s_at_64 = firmware.date;
    info.s_at_96 = "reference board 1";
    info.s_at_128 = mTv.config.text("channels.country");
    info.s_at_160 = mTv.config.text("system.serial");
    info.s_at_192 = mTv.upgrade.installed(QELTV_UPGRADE_ITEM_BOOTLOADER);
    info.ui4_at_224 = QELTV_UPGRADE_ITEMS;
    reply(info, kOk);
    return Void();
}

MainService::Return<void> MainService::a_hidl_qeltvapi_upgrade_get_item_info(
        uint32_t index, a_hidl_qeltvapi_upgrade_get_item_info_cb reply) {
    HIDL_QELTVAPI_UPGRADE_ITEM_T record{};
    Upgrade::Item item;
    const int32_t code = mTv.upgrade.item(index, &item);
    if (code == kOk) {
        record = {item.kind,     item.region, item.sizeKib,  item.version,
                  item.date,     item.name,   item.checksum, static_cast<uint32_t>(item.state),
                  item.mandatory};
    }
    reply(record, code);
    return Void();
}

MainService::Return<int32_t> MainService::a_hidl_qeltvapi_upgrade_start_download_firmware(
        uint32_t value, const hidl_string& first, const hidl_string& second) {
    return mTv.upgrade.download(value, first, second);
}

MainService::Return<int32_t> MainService::a_hidl_qeltvapi_upgrade_cancel_download_firmware(
        uint32_t value) {
    return mTv.upgrade.cancel(value);
}

MainService::Return<int32_t> MainService::a_hidl_qeltvapi_upgrade_start_reboot_upgrade(
        uint32_t value) {
    return mTv.upgrade.reboot(value);
}

MainService::Return<int32_t> MainService::a_hidl_qeltvapi_upgrade_query_upgrade_result(
        uint32_t value) {
    return mTv.upgrade.result(value);
}

MainService::Return<void> MainService::a_hidl_qeltvapi_upgrade_is_supported(
        uint32_t value, a_hidl_qeltvapi_upgrade_is_supported_cb reply) {
    reply(value < QELTV_UPGRADE_ITEMS, kOk);
    return Void();
}

MainService::Return<int32_t> MainService::a_hidl_qeltvapi_upgrade_check_update(uint32_t value) {
    return mTv.upgrade.check(value);
}

MainService::Return<int32_t> MainService::a_hidl_qeltvapi_upgrade_set(
        uint32_t a, const hidl_vec<uint8_t>& first, uint32_t b, const hidl_vec<uint8_t>& second) {
    const auto one = recordOf<uint32_t>(first);
    const auto other = recordOf<uint32_t>(second);
    return one && other ? mTv.upgrade.set(a, *one, b, *other) : kBadValue;
}

}  // namespace qeltvd
