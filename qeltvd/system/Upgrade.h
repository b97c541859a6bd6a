#pragma once

#include <array>
#include <cstdint>
#include <functional>
#include <mutex>
#include <string>

#include "Alarm.h"
#include "ChannelDatabase.h"
#include "Clock.h"
#include "Code.h"
#include "ConfigItems.h"
#include "Notifier.h"
#include "Result.h"
#include "Settings.h"
#include "layouts/upgrade.h"

namespace qeltvd {

/**
 * Software upgrade over the network. One item at a time goes through checking, download,
 * installation and reboot, step by step and with a notification of each; versions, what is
 * downloaded or installed, and results are kept.
 */
class Upgrade {
  public:
    /** @throws StoreError */
    Upgrade(Store& store, Timers& timers, Notifier& notifier);

    struct Item {
        std::string kind;
        std::string region;
        uint32_t sizeKib;
        std::string version;
        std::string date;
        std::string name;
        std::string checksum;
        QELTV_UPGRADE_STATE state;
        bool mandatory;
    };
    /** Each returns a code. */
    Result<Item> item(uint32_t item) const;
    std::string installed(uint32_t item) const;
    Result<int32_t> result(uint32_t item) const;

    Code check(uint32_t item);
    Code download(uint32_t item, const std::string& source, const std::string& target);
    Code cancel(uint32_t item);
    /** Installs what is downloaded. */
    Code trigger(uint32_t item);
    Code reboot(uint32_t item);
    /** All of it up to the installation, or the reboot. */
    Code start(uint32_t item, bool reboot);
    Code set(uint32_t a, uint32_t first, uint32_t b, uint32_t second);

    /**
     * Stores that another way of installing has brought a version, together with what `store`
     * stores: both or nothing. @throws StoreError
     */
    void installedElsewhere(uint32_t item, const std::string& version,
                            const std::function<void()>& store);

  private:
    /** What is kept of an item. */
    enum Kept : int64_t { kNothing = 0, kDownloaded = 1, kInstalled = 2 };

    Kept kept(uint32_t item) const;
    void keep(uint32_t item, Kept kept);
    bool newer(uint32_t item) const;
    Code begin(uint32_t item, QELTV_UPGRADE_STATE state);
    void enter(QELTV_UPGRADE_STATE state);
    void step();
    void advance();
    void finish(QELTV_UPGRADE_STATE state, int32_t value);
    void notify(int32_t type, int32_t value) const;

    Store& mStore;
    Settings mSettings;
    Notifier& mNotifier;

    mutable std::recursive_mutex mLock;
    // Guarded by mLock.
    uint32_t mItem = 0;
    QELTV_UPGRADE_STATE mState = QELTV_UPGRADE_IDLE;
    std::array<QELTV_UPGRADE_STATE, QELTV_UPGRADE_ITEMS> mLast{};
    int32_t mPercent = 0;
    bool mThrough = false;
    bool mReboot = false;
    Alarm mAlarm;
};

/** Software upgrade over the air: a download that a channel carries at scheduled times. */
class OverAirDownload {
  public:
    /** @param goTo see Television::goTo(); called in a lock of this. @throws StoreError */
    OverAirDownload(Store& store, Timers& timers, Notifier& notifier, const Clock& clock,
                    const ChannelDatabase& channels, Upgrade& upgrade,
                    std::function<Code(uint32_t channelId)> goTo);

    std::string schedule() const;
    Result<std::string> text(uint32_t which) const;

    /** Each returns a code. */
    Code jump();
    Code stopDetection();
    Code start();
    Code stop();
    Code flash();
    Code restart();
    Code remind();
    Code acceptSchedule();
    Code setAutomatic(bool on);
    Code setPackage(const std::string& path);
    Code clearVersion();
    int32_t powerOnStatus() const;

  private:
    int64_t nextTime() const;
    std::optional<uint32_t> carrier() const;
    bool isNew() const;
    void enter(QELTV_OAD_STATE state, std::chrono::milliseconds next);
    void rest(QELTV_OAD_STATE state);
    void step();
    void advance();
    void notify(int32_t type) const;

    Settings mSettings;
    Notifier& mNotifier;
    const Clock& mClock;
    const ChannelDatabase& mChannels;
    const std::function<Code(uint32_t)> mGoTo;
    Upgrade& mUpgrade;

    mutable std::recursive_mutex mLock;
    // Guarded by mLock.
    QELTV_OAD_STATE mState;
    bool mAutomatic;
    int32_t mPercent = 0;
    bool mReminds = false;
    /** Since the television came up. */
    bool mUpdated = false;
    Alarm mAlarm;
};

}  // namespace qeltvd
