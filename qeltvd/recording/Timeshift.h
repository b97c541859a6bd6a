#pragma once

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <memory>
#include <mutex>
#include <string>
#include <thread>

#include "Code.h"
#include "Notifier.h"
#include "PacketRequest.h"
#include "PacketRing.h"
#include "PacketSource.h"
#include "RecordedChannel.h"
#include "Settings.h"
#include "ShiftedPackets.h"
#include "layouts/record.h"

namespace qeltvd {

/**
 * Timeshift: a buffer on a device that takes the packets of the channel that is being watched, and
 * where in it the viewer is. Lengths and positions are milliseconds since the start of the
 * timeshift, by the clock of the packets that are held. Another channel starts it anew.
 */
class Timeshift {
  public:
    /** Bytes per second of simulated packets. */
    static constexpr uint32_t kRate = 1 << 20;
    static constexpr int64_t kMinimumSize = kRate;
    static constexpr char kBufferFile[] = "timeshift.buffer";

    /**
     * Goes on with the device that was registered last.
     *
     * @param packets makes the source of what is buffered
     * @throws StoreError
     */
    Timeshift(Settings& settings, Notifier& notifier, ChannelLookup channels,
              PacketSourceFactory packets);
    ~Timeshift();
    Timeshift(const Timeshift&) = delete;
    Timeshift& operator=(const Timeshift&) = delete;

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
    /** Another channel may be the one that is watched. Returns at once. */
    void channelChanged() { mChannelChanged = true; }

    /** Start as soon as there is a device. */
    [[nodiscard]] Code setAutoRecord(bool on);
    /** Whether the viewer may leave the broadcast before the buffer is full. */
    [[nodiscard]] Code setPlayBeforeFull(bool on);

    /** The packets of a channel for one viewer. The timeshift has to outlive them. */
    std::unique_ptr<PacketSource> viewerPackets(uint32_t channel,
                                                std::unique_ptr<PacketSource> live) const;
    /** Whether viewers of a channel see what the buffer holds. */
    bool behind(uint32_t channel) const;

  private:
    using Clock = std::chrono::steady_clock;
    using Operation = std::unique_lock<std::mutex>;
    using Guard = std::lock_guard<std::mutex>;

    void run();
    void turn();
    Clock::duration nextTurn() const;
    /** Has the thread take its next turn at once. With mOperation held. */
    void wakeUp();

    // With mOperation held.
    [[nodiscard]] Code startLocked();
    void stopLocked(uint32_t how);
    /** Starts it, if that is wanted and possible. */
    void startByItself();
    void followRegistration();
    void followChannel();
    /** Writes what has arrived. */
    void record();
    /** Drops what is held and begins anew with packets of a channel. */
    void begin(const RecordedChannel& channel);
    RecordedChannel watched() const;

    // With mLock held.
    bool records() const;
    bool full() const;
    int64_t newest() const;
    int64_t oldest() const;
    int64_t viewed() const;
    /** Moves the viewer to a position, from which a speed counts. */
    void view(int64_t position, int32_t speed);
    /** Moves the viewer to what is broadcast. */
    void viewLive(int32_t speed);
    /** Notifies what the viewer has reached. */
    void follow();
    ShiftedPackets::Place placeOf(uint32_t channel) const;

    void notify(int32_t type, int64_t first, int64_t second);

    Settings& mSettings;
    Notifier& mNotifier;
    const ChannelLookup mChannels;
    const PacketSourceFactory mPackets;
    std::atomic<bool> mChannelChanged{false};

    // Held for whole operations, writing included; readers need only the other one.
    std::mutex mOperation;
    std::condition_variable mWake;
    bool mEnds = false;
    bool mChanged = false;
    /** What is buffered; null while nothing is. */
    std::unique_ptr<PacketSource> mSource;
    Clock::time_point mStarted;
    int64_t mRead = 0;

    // Guards the values below; taken after mOperation.
    mutable std::mutex mLock;
    std::string mPath;
    int64_t mSize = 0;
    int32_t mDevice = QELTV_DEVICE_NONE;
    Clock::time_point mRegistered;
    int32_t mError = QELTV_RECORDING_ERROR_NONE;
    int32_t mStatus = QELTV_TIMESHIFT_IDLE;
    /** Null while it is idle. */
    std::shared_ptr<PacketRing> mRing;
    uint32_t mChannel = 0;
    /** The viewer: at what is broadcast, or where, when, and how fast from there. */
    bool mLive = true;
    int64_t mViewed = 0;
    Clock::time_point mViewedAt;
    int32_t mSpeed = 100;
    /** Counts the moves of the viewer. */
    uint64_t mTurn = 0;
    bool mStandby = false;
    bool mAutoRecord;
    bool mPlayBeforeFull;

    std::thread mThread;
};

}  // namespace qeltvd
