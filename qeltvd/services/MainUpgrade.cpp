#define LOG_TAG "qeltvd"

#include "Blocks.h"
#include "Code.h"
#include "ConfigItems.h"
#include "MainService.h"
#include "Upgrade.h"

namespace qeltvd {

Return<void> MainService::a_hidl_qeltvapi_oad_get_scheduleinfo(
        a_hidl_qeltvapi_oad_get_scheduleinfo_cb reply) {
    const std::string text = mModels.overAir.schedule();
    reply(text, text.empty() ? kNotFound : kOk);
    return Void();
}

Return<void> MainService::a_hidl_qeltvapi_oad_get_datainfo(
        uint32_t value, a_hidl_qeltvapi_oad_get_datainfo_cb reply) {
    return replyWith(reply, mModels.overAir.text(value));
}

Return<int32_t> MainService::a_hidl_qeltvapi_oad_stop_manual_detect() {
    return mModels.overAir.stopDetection();
}

Return<int32_t> MainService::a_hidl_qeltvapi_oad_start_download() {
    return mModels.overAir.start();
}

Return<int32_t> MainService::a_hidl_qeltvapi_oad_stop_download() {
    return mModels.overAir.stop();
}

Return<int32_t> MainService::a_hidl_qeltvapi_oad_set_auto_download(bool on) {
    return mModels.overAir.setAutomatic(on);
}

Return<int32_t> MainService::a_hidl_qeltvapi_oad_start_flash() {
    return mModels.overAir.flash();
}

Return<int32_t> MainService::a_hidl_qeltvapi_oad_accept_restart() {
    return mModels.overAir.restart();
}

Return<int32_t> MainService::a_hidl_qeltvapi_oad_remind_me_later() {
    return mModels.overAir.remind();
}

Return<int32_t> MainService::a_hidl_qeltvapi_oad_accept_schedule() {
    return mModels.overAir.acceptSchedule();
}

Return<int32_t> MainService::a_hidl_qeltvapi_oad_start_jump_channel() {
    return mModels.overAir.jump();
}

Return<int32_t> MainService::a_hidl_qeltvapi_oad_get_power_on_status() {
    return mModels.overAir.powerOnStatus();
}

Return<int32_t> MainService::a_hidl_qeltvapi_set_pkg_pathname(const String& path) {
    return mModels.overAir.setPackage(path);
}

Return<int32_t> MainService::a_hidl_qeltvapi_oad_clear_version() {
    return mModels.overAir.clearVersion();
}

Return<int32_t> MainService::a_hidl_qeltvapi_upgrade_start(uint32_t value, bool flag) {
    return mModels.upgrade.start(value, flag);
}

Return<int32_t> MainService::a_hidl_qeltvapi_upgrade_trigger(uint32_t value) {
    return mModels.upgrade.trigger(value);
}

Return<void> MainService::a_hidl_qeltvapi_upgrade_get_firmware_info(
        a_hidl_qeltvapi_upgrade_get_firmware_info_cb reply) {
    HIDL_QELTVAPI_UPGRADE_FW_INFO_T info;
    const auto firmware = mModels.upgrade.item(QELTV_UPGRADE_ITEM_FIRMWARE);
    info.s_at_0 = mModels.config.text("system.model");
    info.s_at_32 = mModels.upgrade.installed(QELTV_UPGRADE_ITEM_FIRMWARE);
    info.s_at_64 = firmware ? firmware->date : "";
    info.s_at_96 = "reference board 1";
    info.s_at_128 = mModels.config.text("channels.country");
    info.s_at_160 = mModels.config.text("system.serial");
    info.s_at_192 = mModels.upgrade.installed(QELTV_UPGRADE_ITEM_BOOTLOADER);
    info.ui4_at_224 = QELTV_UPGRADE_ITEMS;
    reply(info, kOk);
    return Void();
}

Return<void> MainService::a_hidl_qeltvapi_upgrade_get_item_info(
        uint32_t index, a_hidl_qeltvapi_upgrade_get_item_info_cb reply) {
    HIDL_QELTVAPI_UPGRADE_ITEM_T record{};
    const Result<Upgrade::Item> item = mModels.upgrade.item(index);
    if (item) {
        record = {item->kind,     item->region, item->sizeKib,  item->version,
                  item->date,     item->name,   item->checksum, static_cast<uint32_t>(item->state),
                  item->mandatory};
    }
    reply(record, item.code());
    return Void();
}

Return<int32_t> MainService::a_hidl_qeltvapi_upgrade_start_download_firmware(uint32_t value,
                                                                             const String& first,
                                                                             const String& second) {
    return mModels.upgrade.download(value, first, second);
}

Return<int32_t> MainService::a_hidl_qeltvapi_upgrade_cancel_download_firmware(uint32_t value) {
    return mModels.upgrade.cancel(value);
}

Return<int32_t> MainService::a_hidl_qeltvapi_upgrade_start_reboot_upgrade(uint32_t value) {
    return mModels.upgrade.reboot(value);
}

Return<int32_t> MainService::a_hidl_qeltvapi_upgrade_query_upgrade_result(uint32_t value) {
    const Result<int32_t> result = mModels.upgrade.result(value);
    return result ? *result : result.code();
}

Return<void> MainService::a_hidl_qeltvapi_upgrade_is_supported(
        uint32_t value, a_hidl_qeltvapi_upgrade_is_supported_cb reply) {
    reply(value < QELTV_UPGRADE_ITEMS, kOk);
    return Void();
}

Return<int32_t> MainService::a_hidl_qeltvapi_upgrade_check_update(uint32_t value) {
    return mModels.upgrade.check(value);
}

Return<int32_t> MainService::a_hidl_qeltvapi_upgrade_set(uint32_t a, const Bytes& first, uint32_t b,
                                                         const Bytes& second) {
    const auto one = recordOf<uint32_t>(first);
    const auto other = recordOf<uint32_t>(second);
    return one && other ? mModels.upgrade.set(a, *one, b, *other) : kBadValue;
}

}  // namespace qeltvd
