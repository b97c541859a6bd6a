/** What crosses the upgrade and over-air download interfaces of this television. */
#pragma once

#include <cstdint>

namespace qeltvd::layouts {

/** The items that can be upgraded: the plain number of most functions, and the index. */
enum UpgradeItem : uint32_t { kItemFirmware = 0, kItemBootloader = 1, kUpgradeItems = 2 };

/** State of an item, and type of a notification: the item, and the percentage or a code. */
enum UpgradeState : int32_t {
    kUpgradeIdle = 0,
    kUpgradeChecking = 1,
    /** There is a newer version. */
    kUpgradeAvailable = 2,
    kUpgradeUpToDate = 3,
    kUpgradeDownloading = 4,
    kUpgradeDownloaded = 5,
    kUpgradeInstalling = 6,
    /** It takes effect with the next reboot. */
    kUpgradeInstalled = 7,
    kUpgradeRebooting = 8,
    kUpgradeDone = 9,
    kUpgradeCancelled = 10,
    kUpgradeFailed = 11,
};

/** Answer of query_upgrade_result(). */
enum UpgradeResult : int32_t {
    kResultNone = 0,
    kResultSuccess = 1,
    kResultCancelled = 2,
    kResultFailed = 3,
};

/*
 * Firmware information: model, version, build date, hardware, country, serial number, version of
 * the bootloader; the number of items.
 *
 * Item information: kind ("MAIN", "BOOT") and region ("EU"); size in KiB; version, date, name and
 * MD5 sum (32 digits) of what can be downloaded; UpgradeState; 1 where the user is not asked.
 */

/** Settings of upgrade_set(), each number with a 32-bit value. */
enum UpgradeSetting : uint32_t {
    /** 0 or 1. */
    kSettingAutoCheck = 1,
    kSettingAutoDownload = 2,
    /** 0 released versions, 1 early ones. */
    kSettingBranch = 3,
};

/** State of the over-air download, and type of its notification. The text is the version; the
 * first number the percentage, the flag whether it is automatic, the second number the state. */
enum OadState : int32_t {
    kOadIdle = 0,
    /** Looks for a download on the channel that it has jumped to. */
    kOadDetecting = 1,
    kOadFound = 2,
    /** Waits for its time in the schedule. */
    kOadScheduled = 3,
    kOadDownloading = 4,
    kOadDownloaded = 5,
    kOadFlashing = 6,
    /** Asks for a restart. */
    kOadFlashed = 7,
    kOadRestarting = 8,
    kOadStopped = 9,
    /** Asks again. */
    kOadReminder = 10,
    kOadNothingNew = 11,
};

/** Texts of oad_get_datainfo(). */
enum OadText : uint32_t {
    kOadTextVersion = 0,
    /** KiB. */
    kOadTextSize = 1,
    kOadTextDescription = 2,
    /** Path of the package file. */
    kOadTextPackage = 3,
};

/** Answer of oad_get_power_on_status(). */
enum OadPowerOn : int32_t {
    kPowerOnNormal = 0,
    /** The last restart has brought a new version. */
    kPowerOnUpdated = 1,
    /** A download waits for its flashing or restart. */
    kPowerOnPending = 2,
};

/** How long after "later" the reminder comes. */
constexpr int64_t kOadReminderSeconds = 24 * 3600;

}  // namespace qeltvd::layouts
