#pragma once

#include <cstdint>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "Code.h"
#include "Files.h"
#include "Settings.h"

namespace qeltvd {

/** A directory that takes recordings. */
struct Disk {
    uint32_t number;
    std::string path;
    /** Bytes that its files may take; 0 for the whole file system. */
    int64_t limit;
    /** Bytes per second of recordings that have no rate of their own. */
    uint32_t rate;
    bool present;
};

/** Where the file of a recording is. Its directory stays open, so nobody can put another there. */
class RecordingPlace {
  public:
    RecordingPlace(std::shared_ptr<const Descriptor> directory, std::string name)
            : mDirectory(std::move(directory)), mName(std::move(name)) {}

    const std::string& name() const { return mName; }

    /** Size in bytes; -1 without a file. */
    off_t size() const { return sizeOfFile(mDirectory->get(), mName); }
    /** The file, to read; without one errno has the reason. */
    Descriptor open() const;
    /** Shortens the file. */
    void cut(off_t size) const;
    void remove() const;

    /** Renames the file, so that it can come back while its removal is not stored. */
    [[nodiscard]] bool setAside() const;
    void bringBack() const;
    void removeAside() const;

  private:
    std::shared_ptr<const Descriptor> mDirectory;
    std::string mName;
};

/**
 * The disks of the recorder: which ones are this television's, what is free on them, and the
 * guarded way to the files on them. All functions may be called on any thread.
 */
class Disks {
  public:
    /** Disk numbers are below this. */
    static constexpr uint32_t kCount = 8;
    /** The television's own disk, which needs no register file. */
    static constexpr uint32_t kOwn = 0;

    /** @param own directory of the television's own disk */
    Disks(Settings& settings, std::string own);

    const std::string& ownPath() const { return mOwn; }
    std::vector<Disk> all() const;
    std::optional<Disk> find(uint32_t number) const;
    /** Adds a disk or replaces the one of that number. */
    void put(const Disk& disk);

    /** The directory of a disk, if it is there and is one of this television's. */
    Descriptor open(const std::string& path) const;
    /** Where a recording's file is; nothing if that is on no disk of this television's. */
    std::optional<RecordingPlace> placeOf(const std::string& path) const;
    /** Where the files were that are set aside on a disk. */
    std::vector<RecordingPlace> setAside(const Disk& disk) const;

    enum class Owner { kAny, kThisTelevision };
    /** Makes the register file of a directory. */
    [[nodiscard]] Code registerDisk(const std::string& path);
    /** kNotFound without a register file, kRefused with that of another television. */
    [[nodiscard]] Code check(const std::string& path, Owner owner) const;

    static int64_t totalBytes(const Disk& disk);
    static int64_t freeBytes(const Disk& disk);
    /** KiB per second that writing MiBs reaches, or a code. */
    static int32_t measure(const std::string& path, uint32_t mib);

  private:
    [[nodiscard]] Code checkRegistered(int directory, Owner owner) const;

    Settings& mSettings;
    const std::string mOwn;
    mutable std::mutex mLock;
    // Guarded by mLock.
    std::vector<Disk> mDisks;
};

}  // namespace qeltvd
