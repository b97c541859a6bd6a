#pragma once

#include <chrono>
#include <cstdint>
#include <mutex>
#include <string>

#include "Alarm.h"
#include "Code.h"
#include "Notifier.h"
#include "Settings.h"
#include "layouts/record.h"

namespace qeltvd {

/**
 * Timeshift: a buffer on a device in which the programme that is being watched goes on while the
 * viewer is somewhere else in it. Lengths and positions are milliseconds since the start of the
 * timeshift; everything follows from the time that has gone by, so positions move on their own.
 */
class Timeshift {
  public:
    /** Bytes per second that the buffer takes. */
    static constexpr int64_t kRate = 1 << 20;
    static constexpr int64_t kMinimumSize = kRate;
    static constexpr char kBufferFile[] = "timeshift.buffer";

    /** Goes on with the device that was registered last. @throws StoreError */
    Timeshift(Timers& timers, Settings& settings, Notifier& notifier);

    [[nodiscard]] Code registerDevice(const std::string& path, int64_t size);
    /** Percent. */
    int32_t progress() const;
    int32_t deviceStatus() const;
    int32_t errorId() const;

    [[nodiscard]] Code start();
    [[nodiscard]] Code stop(uint32_t how);
    [[nodiscard]] Code play();
    [[nodiscard]] Code pause();
    [[nodiscard]] Code seek(uint32_t position);
    /** @param speed percent as signed 32 bits: 100 as broadcast, -200 backward twice as fast */
    [[nodiscard]] Code trickplay(uint32_t speed);
    int32_t status() const;

    /** Length of what the buffer holds. */
    int64_t duration() const;
    /** Where the viewer is: from the oldest on, and from the start of the timeshift on. */
    int64_t position() const;
    int64_t currentPosition() const;
    int64_t startPosition() const;

    /** Standby ends it and drops its buffer; after it setAutoRecord() decides whether it starts. */
    void standBy(bool on);

    /** Start as soon as there is a device. */
    [[nodiscard]] Code setAutoRecord(bool on);
    /** Whether the viewer may leave the broadcast before the buffer is full. */
    [[nodiscard]] Code setPlayBeforeFull(bool on);

  private:
    using Clock = Alarm::Clock;

    int64_t elapsed(Clock::time_point since) const;
    int64_t capacity() const;
    int64_t live() const;
    int64_t oldest() const;
    int64_t viewed() const;
    bool full() const;
    [[nodiscard]] Code startLocked();
    void stopLocked(uint32_t how);
    /** Starts it, if that is wanted and possible. */
    void startByItself();
    /** Moves the viewer to a position, from which a speed counts. */
    void view(int64_t position, int32_t speed);
    /** Notifies of what has happened since the previous call, and sets the alarm for the next. */
    void update();
    void notify(int32_t type, int64_t first, int64_t second);

    Settings& mSettings;
    Notifier& mNotifier;
    mutable std::mutex mLock;
    // Guarded by mLock.
    std::string mPath;
    int64_t mSize = 0;
    int32_t mDevice = QELTV_DEVICE_NONE;
    Clock::time_point mRegistered;
    int32_t mError = QELTV_RECORDING_ERROR_NONE;
    int32_t mStatus = QELTV_TIMESHIFT_IDLE;
    Clock::time_point mStarted;
    /** Length that a stopped timeshift has come to. */
    int64_t mEnd = 0;
    /** The viewer: where, when, and how fast from there. */
    int64_t mViewed = 0;
    Clock::time_point mViewedAt;
    int32_t mSpeed = 100;
    bool mStandby = false;
    bool mAutoRecord;
    bool mPlayBeforeFull;
    Alarm mAlarm;
};

}  // namespace qeltvd
