#pragma once

#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <thread>
#include <vector>

#include "Clock.h"
#include "Code.h"
#include "Disks.h"
#include "Notifier.h"
#include "PacketRequest.h"
#include "RecordedChannel.h"
#include "RecordingStore.h"
#include "Schedule.h"
#include "Settings.h"
#include "Store.h"
#include "layouts/record.h"

namespace qeltvd {

/**
 * The recorder: writes the packets of channels into files on its disks, starts what has been
 * booked, and keeps the list of what has been recorded.
 *
 * A recording is in the list from its first moment on; one that a crash has cut off is finished
 * with what its file holds when the television starts again. What file sizes and positions report
 * has been written through to the disk.
 */
class Recorder {
  public:
    static constexpr size_t kOpenLimit = 16;
    static constexpr size_t kBookingLimit = 256;

    /**
     * @param directory of the television's own disk, made when it is not there
     * @param clock     by which bookings go
     * @param packets   makes the source of each recording
     * @throws StoreError
     */
    Recorder(Store& store, Settings& settings, Notifier& notifier, const std::string& directory,
             ChannelLookup channels, const Clock& clock, PacketSourceFactory packets);
    ~Recorder();
    Recorder(const Recorder&) = delete;
    Recorder& operator=(const Recorder&) = delete;

    /** Re-evaluates the bookings, after the clock has been set. */
    void clockChanged();

    /** The recording's handle; 0 when none can be opened. */
    int32_t open(uint32_t channel, bool startNow);
    [[nodiscard]] Code close(uint32_t handle);
    [[nodiscard]] Code start(uint32_t handle);
    [[nodiscard]] Code stop(uint32_t handle);
    /** The one that runs and was started last; 0 for none. */
    int32_t current() const;

    /** Each gives its value or a code. */
    int32_t status(uint32_t handle) const;
    int32_t error(uint32_t handle) const;
    int32_t mode(uint32_t handle) const;
    int32_t sourceType(uint32_t handle) const;
    int32_t position(uint32_t handle) const;
    int64_t fileSize(uint32_t handle) const;
    [[nodiscard]] Code fileName(uint32_t handle, std::string* name) const;

    [[nodiscard]] Code setMode(uint32_t handle, uint32_t mode, int32_t value, uint32_t rate);
    [[nodiscard]] Code setFileName(uint32_t handle, const std::string& name);
    [[nodiscard]] Code setChannel(uint32_t handle, uint32_t channel);
    /** @param handle 0 for the disk itself */
    [[nodiscard]] Code setDisk(uint32_t handle, const std::string& path,
                               const QELTV_DISK_RECORD_T& record);
    [[nodiscard]] Code command(uint32_t command, uint32_t value);
    [[nodiscard]] Code command(uint32_t command, uint32_t value, int32_t extra,
                               const std::string& text);

    int64_t totalBytes(uint32_t disk) const;
    int64_t freeBytes(uint32_t disk) const;
    [[nodiscard]] Code registerDisk(const std::string& path);
    [[nodiscard]] Code checkDisk(const std::string& path, bool ours) const;
    /** KiB per second that writing MiBs reaches, or a code. */
    static int32_t measureDisk(const std::string& path, uint32_t mib) {
        return Disks::measure(path, mib);
    }

    int32_t bookings() const;
    /** The number of the booking, or a code. */
    int32_t book(const QELTV_SCHEDULE_RECORD_T& record, uint32_t flags);
    [[nodiscard]] Code booking(uint32_t index, QELTV_SCHEDULE_RECORD_T* record) const;
    [[nodiscard]] Code deleteBooking(uint32_t index);
    bool conflict(const QELTV_SOURCE_RECORD_T& first, const QELTV_SOURCE_RECORD_T& second) const;

    /** Finished recordings, the oldest first. @throws StoreError */
    std::vector<RecordedItem> items() const { return mStore.items(); }
    size_t itemCount() const { return mStore.itemCount(); }
    std::optional<RecordedItem> itemAt(uint32_t index) const { return mStore.itemAt(index); }
    std::optional<RecordedItem> itemOf(const std::string& path) const {
        return mStore.itemOf(path);
    }
    [[nodiscard]] Code deleteItem(uint32_t index);

  private:
    struct Recording;
    using Operation = std::unique_lock<std::mutex>;
    using Handles = std::map<uint32_t, std::shared_ptr<Recording>>;

    /** Finishes what the last run of the television has left unfinished on disks that are there. */
    void recover();
    void recoverRecording(const RecordingStore::Unfinished& cut);
    void run();
    void writeDue();
    void writeDue(Recording& recording);
    void startBookings();
    void startBooking(const Schedule::Booking& booking, int64_t now);
    /** A QELTV_RECORDING_ERROR. */
    int32_t startRecordingOf(const Schedule::Booking& booking, int64_t now);
    std::chrono::steady_clock::time_point nextWake() const;
    /** Has the thread look at recordings and bookings at once. With mOperation held. */
    void wakeUp();

    int32_t openLocked(uint32_t channel);
    void forget(uint32_t handle);
    [[nodiscard]] Code startLocked(Recording& recording);
    /**
     * Ends a recording, in the file and in the list. Its status stays QELTV_RECORDING_STOPPING
     * while the list cannot be written, which is tried again.
     */
    void finish(Recording& recording, uint32_t reason, int32_t error);
    void store(Recording& recording);
    [[nodiscard]] Code insertDisk(uint32_t number);
    [[nodiscard]] Code removeDisk(uint32_t number);
    /** Ends the recordings that were not booked. */
    [[nodiscard]] Code standBy();
    int64_t makeRoom(const Disk& disk, int64_t wanted);
    void endBooking(uint32_t booking, int32_t error, int64_t now);
    std::shared_ptr<Recording> find(uint32_t handle) const;
    /** What a function reads of a recording, or kNotFound. */
    template <class Read>
    auto valueOf(uint32_t handle, const Read& read) const;
    bool tunerBusy(uint32_t stream) const;
    void notify(QELTV_RECORDING_EVENT type, uint64_t first, uint64_t second);

    RecordingStore mStore;
    Disks mDisks;
    Notifier& mNotifier;
    const ChannelLookup mChannels;
    const Clock& mClock;
    const PacketSourceFactory mPackets;

    // Held for whole operations, writing included; readers need only the other one.
    std::mutex mOperation;
    std::condition_variable mWake;
    bool mEnds = false;
    bool mChanged = false;
    std::chrono::steady_clock::time_point mRetry{};

    // Guards the values below; taken after mOperation.
    mutable std::mutex mLock;
    Handles mOpen;
    uint32_t mNextHandle = 1;
    uint32_t mCurrent = 0;

    std::thread mThread;
};

}  // namespace qeltvd
