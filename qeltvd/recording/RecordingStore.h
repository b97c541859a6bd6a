#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "RecordedChannel.h"
#include "Store.h"
#include "layouts/record.h"

namespace qeltvd {

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
 * What the recorder keeps: recordings from their first moment on, bookings, and where the disks
 * are. Every function throws StoreError.
 */
class RecordingStore {
  public:
    using Booking = QELTV_SCHEDULE_RECORD_T;

    explicit RecordingStore(Store& store);

    /** Makes one of several changes. */
    Store::Transaction transaction() { return Store::Transaction(mStore); }

    // Disks

    struct DiskPlace {
        uint32_t number;
        std::string path;
        /** Bytes of recordings that the disk takes; 0 for no limit. */
        int64_t limit;
        /** Bytes per second. */
        uint32_t rate;
    };
    /**
     * Moves a disk, and what is recorded on it, to a path. Limit and rate are those of a disk that
     * is not known yet.
     */
    void moveDisk(const DiskPlace& disk);
    void putDisk(const DiskPlace& disk);
    std::vector<DiskPlace> disks() const;

    // Recordings

    /** What an application says of a recording. */
    struct Labels {
        std::string programme;
        uint32_t rating = 0;
        /** Days. */
        uint32_t retention = 0;
    };
    struct Beginning {
        std::string path;
        uint32_t disk;
        RecordedChannel channel;
        Labels labels;
        /** UTC seconds. */
        int64_t start;
        /** Bytes per second. */
        uint32_t rate;
    };
    struct End {
        /** A QELTV_STOP_REASON. */
        uint32_t reason;
        int64_t bytes;
        int64_t seconds;
    };
    /** The id of a recording that begins. */
    int64_t begin(const Beginning& recording);
    void label(int64_t id, const Labels& labels);
    void end(int64_t id, const End& end);
    void remove(int64_t id);

    struct Unfinished {
        int64_t id;
        std::string path;
        /** Bytes per second. */
        int64_t rate;
    };
    std::vector<Unfinished> unfinished() const;
    /** Whether a path is that of a recording, finished or not. */
    bool has(const std::string& path) const;

    /** Finished recordings, the oldest first. */
    std::vector<RecordedItem> items() const;
    size_t itemCount() const;
    std::optional<RecordedItem> itemAt(uint32_t index) const;
    std::optional<RecordedItem> itemOf(const std::string& path) const;

    // Bookings; without the names of their channels

    std::vector<Booking> bookings() const;
    size_t bookingCount() const;
    /** By its place in the order of the starts. */
    std::optional<Booking> bookingAt(uint32_t index) const;
    std::optional<Booking> booking(uint32_t number) const;
    /** Stores a booking, which then waits; number 0 adds one. The number of the booking. */
    uint32_t book(const Booking& booking);
    /** Stores start, state and error. */
    void update(const Booking& booking);
    void removeBooking(uint32_t number);
    /** Bookings that run wait again. */
    void stopBookings();

  private:
    Store& mStore;
};

}  // namespace qeltvd
