#include <gtest/gtest.h>

#include <cstring>

#include "hw_qeltvapi_oad.h"
#include "hw_qeltvapi_upgrade.h"
#include "inbox.h"
#include "layouts/codes.h"
#include "layouts/upgrade.h"
#include "with_television.h"

using namespace wire;

namespace {

/** A notification of either family: type and percentage. */
struct Step {
    int32_t type;
    int32_t percent;
};
Inbox<Step> sUpgrade, sAir;

int onUpgrade(int32_t type, int32_t item, int32_t value, uintptr_t) {
    if (item == QELTV_UPGRADE_ITEM_FIRMWARE) sUpgrade.put({type, value});
    return 0;
}

int onAir(int32_t type, uintptr_t, const char* version, int32_t percent, bool, int32_t) {
    if (strcmp(version, "1.2.0") == 0) sAir.put({type, percent});
    return 0;
}

class Software : public WithTelevision {
  protected:
    void SetUp() override {
        WithTelevision::SetUp();
        a_qeltvapi_upgrade_register_callback(onUpgrade);
        a_qeltvapi_oad_register_callback(onAir);
        sUpgrade.clear();
        sAir.clear();
    }

    static bool comes(Inbox<Step>& inbox, int32_t type) {
        return inbox.takeUntil([type](const Step& step) { return step.type == type; }).has_value();
    }

    static std::string version() {
        QELTVAPI_UPGRADE_FW_INFO_T info{};
        EXPECT_EQ(0, a_qeltvapi_upgrade_get_firmware_info(&info));
        return info.s_at_32;
    }

    static uint32_t state() {
        QELTVAPI_UPGRADE_ITEM_T item{};
        EXPECT_EQ(0, a_qeltvapi_upgrade_get_item_info(&item, QELTV_UPGRADE_ITEM_FIRMWARE));
        return item.ui4_at_204;
    }
};

TEST_F(Software, AnUpgradeGoesThroughItsStepsAndOutlivesARestartBetweenThem) {
    EXPECT_EQ("1.0.0", version());
    EXPECT_EQ(QELTV_REFUSED, a_qeltvapi_upgrade_trigger(QELTV_UPGRADE_ITEM_FIRMWARE))
            << "nothing is downloaded";
    EXPECT_EQ(0, a_qeltvapi_upgrade_check_update(QELTV_UPGRADE_ITEM_FIRMWARE));
    ASSERT_TRUE(comes(sUpgrade, QELTV_UPGRADE_AVAILABLE));
    EXPECT_EQ(QELTV_BAD_VALUE, a_qeltvapi_upgrade_start_download_firmware(
                                       QELTV_UPGRADE_ITEM_FIRMWARE, "nonsense", "/f"));
    ASSERT_EQ(0, a_qeltvapi_upgrade_start_download_firmware(QELTV_UPGRADE_ITEM_FIRMWARE,
                                                            "https://x/f", "/f"));
    EXPECT_EQ(QELTV_REFUSED, a_qeltvapi_upgrade_check_update(QELTV_UPGRADE_ITEM_FIRMWARE))
            << "one thing at a time";
    int32_t percent = -1;
    for (;;) {
        const auto step = sUpgrade.take();
        ASSERT_TRUE(step);
        ASSERT_GT(step->percent, percent);
        percent = step->percent;
        if (step->type == QELTV_UPGRADE_DOWNLOADED) break;
        ASSERT_EQ(QELTV_UPGRADE_DOWNLOADING, step->type);
    }
    EXPECT_EQ(100, percent);

    restart();
    EXPECT_EQ(static_cast<uint32_t>(QELTV_UPGRADE_DOWNLOADED), state());
    ASSERT_EQ(0, a_qeltvapi_upgrade_trigger(QELTV_UPGRADE_ITEM_FIRMWARE));
    ASSERT_TRUE(comes(sUpgrade, QELTV_UPGRADE_INSTALLED));
    EXPECT_EQ("1.0.0", version()) << "not before the reboot";
    EXPECT_EQ(QELTV_UPGRADE_RESULT_NONE,
              a_qeltvapi_upgrade_query_upgrade_result(QELTV_UPGRADE_ITEM_FIRMWARE));
    ASSERT_EQ(0, a_qeltvapi_upgrade_start_reboot_upgrade(QELTV_UPGRADE_ITEM_FIRMWARE));
    ASSERT_TRUE(comes(sUpgrade, QELTV_UPGRADE_DONE));
    EXPECT_EQ("1.1.0", version());
    EXPECT_EQ(QELTV_UPGRADE_RESULT_SUCCESS,
              a_qeltvapi_upgrade_query_upgrade_result(QELTV_UPGRADE_ITEM_FIRMWARE));
    EXPECT_EQ(0, a_qeltvapi_upgrade_check_update(QELTV_UPGRADE_ITEM_FIRMWARE));
    EXPECT_TRUE(comes(sUpgrade, QELTV_UPGRADE_UP_TO_DATE));
}

TEST_F(Software, ADownloadIsCancelled) {
    ASSERT_EQ(0, a_qeltvapi_upgrade_start(QELTV_UPGRADE_ITEM_FIRMWARE, 1));
    EXPECT_EQ(QELTV_REFUSED,
              a_qeltvapi_upgrade_cancel_download_firmware(QELTV_UPGRADE_ITEM_BOOTLOADER));
    ASSERT_TRUE(sUpgrade.takeUntil(
            [](const Step& s) { return s.type == QELTV_UPGRADE_DOWNLOADING && s.percent > 0; }));
    ASSERT_EQ(0, a_qeltvapi_upgrade_cancel_download_firmware(QELTV_UPGRADE_ITEM_FIRMWARE));
    ASSERT_TRUE(comes(sUpgrade, QELTV_UPGRADE_CANCELLED));
    EXPECT_EQ(static_cast<uint32_t>(QELTV_UPGRADE_CANCELLED), state());
    EXPECT_EQ(QELTV_UPGRADE_RESULT_CANCELLED,
              a_qeltvapi_upgrade_query_upgrade_result(QELTV_UPGRADE_ITEM_FIRMWARE));
    EXPECT_EQ("1.0.0", version());

    bool supported = true;
    EXPECT_EQ(0, a_qeltvapi_upgrade_is_supported(QELTV_UPGRADE_ITEMS, &supported));
    EXPECT_FALSE(supported);
    EXPECT_EQ(QELTV_NOT_FOUND, a_qeltvapi_upgrade_start(QELTV_UPGRADE_ITEMS, 0));
    const uint32_t on = 1, much = 2;
    EXPECT_EQ(0, a_qeltvapi_upgrade_set(QELTV_UPGRADE_SETTING_AUTO_CHECK, &on,
                                        QELTV_UPGRADE_SETTING_BRANCH, &on));
    EXPECT_EQ(QELTV_BAD_VALUE, a_qeltvapi_upgrade_set(QELTV_UPGRADE_SETTING_AUTO_CHECK, &on,
                                                      QELTV_UPGRADE_SETTING_BRANCH, &much));
    EXPECT_EQ(QELTV_NOT_FOUND, a_qeltvapi_upgrade_set(0, &on, QELTV_UPGRADE_SETTING_BRANCH, &on));
}

TEST_F(Software, ADownloadOverTheAirIsFoundStoppedAndInstalled) {
    EXPECT_EQ(QELTV_REFUSED, a_qeltvapi_oad_start_download());
    EXPECT_EQ(0, a_qeltvapi_oad_get_power_on_status());
    char text[64] = "";
    EXPECT_EQ(0, a_qeltvapi_oad_get_datainfo(QELTV_OAD_TEXT_VERSION, text, 4));
    EXPECT_STREQ("1.2.", text) << "cut by the library";
    EXPECT_EQ(0, a_qeltvapi_oad_get_scheduleinfo(text, 63));
    EXPECT_NE(nullptr, strstr(text, " 03:00, channel "));
    ASSERT_EQ(0, a_qeltvapi_oad_start_jump_channel());
    ASSERT_EQ(0, a_qeltvapi_oad_stop_manual_detect());
    ASSERT_TRUE(comes(sAir, QELTV_OAD_STOPPED));
    ASSERT_EQ(0, a_qeltvapi_oad_start_jump_channel());
    ASSERT_TRUE(comes(sAir, QELTV_OAD_FOUND));
    EXPECT_EQ(0, a_qeltvapi_oad_remind_me_later());
    EXPECT_EQ(0, a_qeltvapi_oad_accept_schedule());
    ASSERT_TRUE(comes(sAir, QELTV_OAD_SCHEDULED));
    ASSERT_EQ(0, a_qeltvapi_oad_start_download());
    ASSERT_TRUE(sAir.takeUntil(
            [](const Step& s) { return s.type == QELTV_OAD_DOWNLOADING && s.percent > 0; }));
    ASSERT_EQ(0, a_qeltvapi_oad_stop_download());
    ASSERT_TRUE(comes(sAir, QELTV_OAD_STOPPED));
    ASSERT_EQ(0, a_qeltvapi_oad_start_download());
    ASSERT_TRUE(comes(sAir, QELTV_OAD_DOWNLOADED));
    EXPECT_EQ(QELTV_OAD_POWER_ON_PENDING, a_qeltvapi_oad_get_power_on_status());
    EXPECT_EQ(QELTV_REFUSED, a_qeltvapi_oad_accept_restart()) << "not flashed yet";
    EXPECT_EQ(QELTV_BAD_VALUE, a_qeltvapi_set_pkg_pathname("relative"));
    EXPECT_EQ(0, a_qeltvapi_set_pkg_pathname("/data/package"));
    ASSERT_EQ(0, a_qeltvapi_oad_start_flash());
    ASSERT_TRUE(comes(sAir, QELTV_OAD_FLASHED));
    ASSERT_EQ(0, a_qeltvapi_oad_accept_restart());
    ASSERT_TRUE(comes(sAir, QELTV_OAD_IDLE));
    EXPECT_EQ("1.2.0", version());
    EXPECT_EQ(QELTV_OAD_POWER_ON_UPDATED, a_qeltvapi_oad_get_power_on_status());

    EXPECT_EQ(0, a_qeltvapi_oad_set_auto_download(1));
    ASSERT_EQ(0, a_qeltvapi_oad_start_jump_channel());
    EXPECT_TRUE(comes(sAir, QELTV_OAD_NOTHING_NEW));
}

TEST_F(Software, TheToolFollowsAnUpgrade) {
    const Ended ended = qeltvctl({"upgrade", "run", "--reboot"});
    EXPECT_EQ(0, ended.status) << ended.err;
    EXPECT_EQ(
            "checking\navailable\ndownloading\ndownloaded\ninstalling\ninstalled\nrebooting\n"
            "done\n",
            ended.out);
    const auto info = nlohmann::json::parse(qeltvctl({"upgrade", "info", "--json"}).out);
    EXPECT_EQ("1.1.0", info.at("version"));
    EXPECT_EQ("up to date\n", qeltvctl({"upgrade", "check"}).out.substr(9));
    EXPECT_EQ(1, qeltvctl({"upgrade", "cancel"}).status);
}

}  // namespace
