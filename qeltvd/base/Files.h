#pragma once

#include <sys/types.h>

#include <string>

namespace qeltvd {

/** A file descriptor that is closed with the object; -1 for none. */
class Descriptor {
  public:
    explicit Descriptor(int descriptor = -1) : mDescriptor(descriptor) {}
    Descriptor(Descriptor&& other) noexcept : mDescriptor(other.release()) {}
    Descriptor& operator=(Descriptor&& other) noexcept;
    ~Descriptor();

    explicit operator bool() const { return mDescriptor >= 0; }
    int get() const { return mDescriptor; }
    int release() {
        const int descriptor = mDescriptor;
        mDescriptor = -1;
        return descriptor;
    }

  private:
    int mDescriptor;
};

/*
 * Paths that come from clients or from a disk that others write to. None of these functions waits
 * for the other end of a pipe, opens a device, follows a link at the end of the path or waits for
 * a lease. If one returns no descriptor, errno has the reason.
 */

/** Opens a directory, which an absolute path has to name. */
Descriptor openDirectory(const std::string& path);

/** Opens what has to be a regular file; flags as for open(), without O_CREAT and O_TRUNC. */
Descriptor openFile(int directory, const std::string& name, int flags);

/**
 * Opens a file for reading and writing, which is made if there is none. An existing file has to
 * belong to this user alone and to have one name; its content stays.
 */
Descriptor makeFile(int directory, const std::string& name);

/** The size of a regular file, -1 for anything else. */
off_t sizeOfFile(int directory, const std::string& name);

/** Writes whole; false leaves errno. */
bool writeAll(int file, const void* data, size_t size);

/** Whether a text can be the name of a recording: one component that does not begin with a dot. */
bool isFileName(const std::string& name);

/*
 * The television's own state, which no other user may read or write.
 */

/**
 * Makes a directory if there is none and takes the rights of others away from it.
 *
 * @throws std::runtime_error if it is another user's, a link or cannot be written
 */
Descriptor claimDirectory(const std::string& path);

/**
 * Takes the rights of others away from a file; one that is not there is fine.
 *
 * @throws std::runtime_error if it is another user's, no regular file, has another name as well
 *         or cannot be written
 */
void claimFile(const std::string& path);

}  // namespace qeltvd
