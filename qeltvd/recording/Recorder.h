#pragma once

#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <thread>
#include <vector>

#include "Clock.h"
#include "Files.h"
#include "Notifier.h"
#include "Settings.h"
#include "Store.h"
#include "layouts/record.h"

namespace qeltvd {

/** What the recorder needs to know of a channel. */
struct RecordedChannel {
    uint32_t id;
    std::string name;
    uint32_t major;
    uint32_t minor;
    /** Channels of one stream can be received together. */
    uint32_t stream;
    /** Kind of broadcast. */
    uint32_t medium;
};

/** The channel with an id; 0 stands for the one that is being watched. */
using ChannelLookup = std::function<std::optional<RecordedChannel>(uint32_t id)>;

/** A finished recording. */
struct RecordedItem {
    int64_t id;
    uint32_t channel;
    uint32_t major;
    uint32_t minor;
    std::string channelName;
    std::string programme;
    int64_t start;
    uint32_t seconds;
    uint32_t stopReason;
    uint32_t rating;
    uint32_t retention;
    int64_t bytes;
    std::string path;
};

/**
 * The recorder: writes a transport stream at a set rate into files on its disks, starts what has
 * been booked, and keeps the list of what has been recorded.
 *
 * A recording is in the list from its first moment on; one that a crash has cut off is finished
 * with what its file holds when the television starts again. What file sizes and positions tell
 * has been written through to the disk.
 */
class Recorder {
  public:
    static constexpr uint32_t kDisks = 8;
    static constexpr size_t kOpenLimit = 16;
    static constexpr size_t kBookingLimit = 256;

    /**
     * @param directory of disk 0, made when it is not there
     * @param clock     by which bookings go
     * @throws StoreError
     */
    Recorder(Store& store, Settings& settings, Notifier& notifier, const std::string& directory,
             ChannelLookup channels, const Clock& clock);
    ~Recorder();
    Recorder(const Recorder&) = delete;
    Recorder& operator=(const Recorder&) = delete;

    /** Has bookings looked at anew, after the clock has been set. */
    void clockChanged();

    /** The recording's handle; 0 when none can be opened. */
    int32_t open(uint32_t channel, bool startNow);
    int32_t close(uint32_t handle);
    int32_t start(uint32_t handle);
    int32_t stop(uint32_t handle);
    /** The one that runs and was started last; 0 for none. */
    int32_t current() const;

    /** Each gives its value or a code. */
    int32_t status(uint32_t handle) const;
    int32_t error(uint32_t handle) const;
    int32_t mode(uint32_t handle) const;
    int32_t sourceType(uint32_t handle) const;
    int32_t position(uint32_t handle) const;
    int64_t fileSize(uint32_t handle) const;
    int32_t fileName(uint32_t handle, std::string* name) const;

    int32_t setMode(uint32_t handle, uint32_t mode, int32_t value, uint32_t rate);
    int32_t setFileName(uint32_t handle, const std::string& name);
    int32_t setChannel(uint32_t handle, uint32_t channel);
    /** @param handle 0 for the disk itself */
    int32_t setDisk(uint32_t handle, const std::string& path, const QELTV_DISK_RECORD_T& record);
    int32_t command(uint32_t command, uint32_t value);
    int32_t command(uint32_t command, uint32_t value, int32_t extra, const std::string& text);

    int64_t totalBytes(uint32_t disk) const;
    int64_t freeBytes(uint32_t disk) const;
    int32_t registerDisk(const std::string& path);
    int32_t checkDisk(const std::string& path, bool ours) const;
    /** KiB per second that writing MiBs reaches, or a code. */
    static int32_t measureDisk(const std::string& path, uint32_t mib);

    int32_t bookings() const;
    /** The number of the booking, or a code. */
    int32_t book(const QELTV_SCHEDULE_RECORD_T& record, uint32_t flags);
    int32_t booking(uint32_t index, QELTV_SCHEDULE_RECORD_T* record) const;
    int32_t deleteBooking(uint32_t index);
    bool conflict(const QELTV_SOURCE_RECORD_T& first, const QELTV_SOURCE_RECORD_T& second) const;

    /** Finished recordings, the oldest first. @throws StoreError */
    std::vector<RecordedItem> items() const;
    size_t itemCount() const;
    std::optional<RecordedItem> itemAt(uint32_t index) const;
    std::optional<RecordedItem> itemOf(const std::string& path) const;
    int32_t deleteItem(uint32_t index);

  private:
    struct Disk;
    struct Place;
    struct Recording;
    using Lock = std::unique_lock<std::mutex>;
    using Handles = std::map<uint32_t, std::shared_ptr<Recording>>;

    /** Finishes what the last run of the television has left unfinished on disks that are there. */
    void recover();
    void recoverRecordings();
    void recoverDeletions(const Disk& disk);
    void run();
    void writeDue();
    void startBookings();
    std::chrono::steady_clock::time_point nextWake() const;

    int32_t openLocked(uint32_t channel);
    int32_t startLocked(Recording& recording);
    /** Ends it, in the file and in the list. */
    int32_t finish(Recording& recording, uint32_t reason, int32_t error);
    int32_t store(Recording& recording);
    bool writeOut(Recording& recording, int64_t bytes);
    int64_t makeRoom(const Disk& disk, int64_t wanted);
    void endBooking(int64_t booking, int32_t error, int64_t now);
    std::shared_ptr<Recording> find(uint32_t handle) const;
    bool tunerBusy(uint32_t stream) const;
    std::optional<QELTV_SCHEDULE_RECORD_T> bookingAt(uint32_t index) const;
    bool conflictsWithBookings(const QELTV_SCHEDULE_RECORD_T& record, uint32_t stream) const;
    /** The directory of a disk, where it is there and is one of this television's. */
    Descriptor openDisk(const std::string& path) const;
    int32_t registered(int directory, bool ours) const;
    /** Where a recording's file is; nothing where that is on no disk of this television's. */
    std::optional<Place> placeOf(const std::string& path) const;
    void notify(int32_t type, uint64_t first, uint64_t second);
    static int64_t usedBytes(const Disk& disk);
    static int64_t freeBytes(const Disk& disk);
    static int64_t totalBytes(const Disk& disk);

    Store& mStore;
    Settings& mSettings;
    Notifier& mNotifier;
    const ChannelLookup mChannels;
    const Clock& mClock;
    /** The directory of disk 0, which needs no register file. */
    const std::string mOwnDisk;

    // Held for whole operations, writing included; readers need only the other one.
    std::mutex mOperation;
    std::condition_variable mWake;
    bool mEnds = false;
    bool mChanged = false;
    std::chrono::steady_clock::time_point mRetry{};

    // Guards the values below; taken after mOperation.
    mutable std::mutex mLock;
    Disk* disk(uint32_t number) const;
    std::vector<std::unique_ptr<Disk>> mDisks;
    Handles mOpen;
    uint32_t mNextHandle = 1;
    uint32_t mCurrent = 0;

    std::thread mThread;
};

}  // namespace qeltvd
