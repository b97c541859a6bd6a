/**
 * Upgrade and over-air download of the reference television: values and items.
 *
 * Firmware information: model, version, build date, hardware, country, serial number, version of
 * the bootloader; the number of items.
 *
 * Item information: kind ("MAIN", "BOOT") and region ("EU"); size in KiB; version, date, name and
 * MD5 sum (32 digits) of the available download; QELTV_UPGRADE_STATE; 1 when the upgrade needs no
 * confirmation.
 */
#ifndef QELTV_LAYOUTS_UPGRADE_H
#define QELTV_LAYOUTS_UPGRADE_H

#include <stdint.h>

/** The items that can be upgraded: the plain number of most functions, and the index. */
enum QELTV_UPGRADE_ITEM {
    QELTV_UPGRADE_ITEM_FIRMWARE = 0,   /**< the firmware */
    QELTV_UPGRADE_ITEM_BOOTLOADER = 1, /**< the bootloader */
    QELTV_UPGRADE_ITEMS = 2,           /**< number of items */
};

/**
 * State of an item, and type of a notification.
 * @values item:QELTV_UPGRADE_ITEM, percent
 */
enum QELTV_UPGRADE_STATE {
    QELTV_UPGRADE_IDLE = 0,        /**< nothing is under way */
    QELTV_UPGRADE_CHECKING = 1,    /**< looks for a newer version */
    QELTV_UPGRADE_AVAILABLE = 2,   /**< a newer version is available */
    QELTV_UPGRADE_UP_TO_DATE = 3,  /**< there is no newer version */
    QELTV_UPGRADE_DOWNLOADING = 4, /**< downloads */
    QELTV_UPGRADE_DOWNLOADED = 5,  /**< the download is complete */
    QELTV_UPGRADE_INSTALLING = 6,  /**< installs */
    QELTV_UPGRADE_INSTALLED = 7,   /**< installed; takes effect with the next reboot */
    QELTV_UPGRADE_REBOOTING = 8,   /**< reboots */
    QELTV_UPGRADE_DONE = 9,        /**< the new version runs */
    QELTV_UPGRADE_CANCELLED = 10,  /**< cancelled by the application */
    QELTV_UPGRADE_FAILED = 11,     /**< failed @values item:QELTV_UPGRADE_ITEM, code:QELTV_CODE */
};

/** Answer of query_upgrade_result(). */
enum QELTV_UPGRADE_RESULT {
    QELTV_UPGRADE_RESULT_NONE = 0,      /**< no upgrade so far */
    QELTV_UPGRADE_RESULT_SUCCESS = 1,   /**< the last upgrade succeeded */
    QELTV_UPGRADE_RESULT_CANCELLED = 2, /**< the last upgrade was cancelled */
    QELTV_UPGRADE_RESULT_FAILED = 3,    /**< the last upgrade failed */
};

/** Settings of upgrade_set(), each a number with a 32-bit value. */
enum QELTV_UPGRADE_SETTING {
    QELTV_UPGRADE_SETTING_AUTO_CHECK = 1,    /**< 1 to check without a request, else 0 */
    QELTV_UPGRADE_SETTING_AUTO_DOWNLOAD = 2, /**< 1 to download without a request, else 0 */
    QELTV_UPGRADE_SETTING_BRANCH = 3,        /**< 0 released versions, 1 early ones */
};

/**
 * State of the over-air download, and type of its notification. The text is the version, the flag 1
 * for an automatic download.
 * @values percent, state:QELTV_OAD_STATE
 */
enum QELTV_OAD_STATE {
    QELTV_OAD_IDLE = 0,         /**< nothing is under way */
    QELTV_OAD_DETECTING = 1,    /**< looks for a download on the channel that it has changed to */
    QELTV_OAD_FOUND = 2,        /**< a download is broadcast */
    QELTV_OAD_SCHEDULED = 3,    /**< waits for the scheduled time */
    QELTV_OAD_DOWNLOADING = 4,  /**< downloads */
    QELTV_OAD_DOWNLOADED = 5,   /**< the download is complete */
    QELTV_OAD_FLASHING = 6,     /**< flashes the download */
    QELTV_OAD_FLASHED = 7,      /**< flashed; waits for the consent to a restart */
    QELTV_OAD_RESTARTING = 8,   /**< restarts */
    QELTV_OAD_STOPPED = 9,      /**< stopped by the application */
    QELTV_OAD_REMINDER = 10,    /**< repeats the offer that was postponed */
    QELTV_OAD_NOTHING_NEW = 11, /**< no newer version is broadcast */
};

/** Texts of oad_get_datainfo(). */
enum QELTV_OAD_TEXT {
    QELTV_OAD_TEXT_VERSION = 0,     /**< version */
    QELTV_OAD_TEXT_SIZE = 1,        /**< size in KiB */
    QELTV_OAD_TEXT_DESCRIPTION = 2, /**< description */
    QELTV_OAD_TEXT_PACKAGE = 3,     /**< path of the package file */
};

/** Answer of oad_get_power_on_status(). */
enum QELTV_OAD_POWER_ON {
    QELTV_OAD_POWER_ON_NORMAL = 0,  /**< nothing to report */
    QELTV_OAD_POWER_ON_UPDATED = 1, /**< the last restart has brought a new version */
    QELTV_OAD_POWER_ON_PENDING = 2, /**< a download waits for its flashing or restart */
};

#define QELTV_OAD_REMINDER_SECONDS (24 * 3600) /**< seconds from postponing to the reminder */

#endif /* QELTV_LAYOUTS_UPGRADE_H */
