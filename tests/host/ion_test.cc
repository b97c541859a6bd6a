#include <errno.h>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <ion/ion.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

#include "hidlhost/ion_faults.h"

using hidlhost::IonFault;
using hidlhost::IonStep;

namespace {

class Ion : public testing::Test {
  protected:
    Ion() : mDevice(ion_open()) {}
    ~Ion() override { ion_close(mDevice); }

    int allocate(size_t size) {
        int buffer = -1;
        EXPECT_EQ(0, ion_alloc_fd(mDevice, size, 0, 1, 0, &buffer));
        return buffer;
    }

    const int mDevice;
};

TEST_F(Ion, ABufferHasItsSizeForEver) {
    for (const size_t size : {size_t{0}, size_t{1}, size_t{5000}}) {
        const int buffer = allocate(size);
        struct stat status {};
        EXPECT_EQ(0, fstat(buffer, &status));
        EXPECT_EQ(static_cast<off_t>(size), status.st_size);
        EXPECT_EQ(FD_CLOEXEC, fcntl(buffer, F_GETFD));
        if (size > 0) {
            EXPECT_EQ(-1, ftruncate(buffer, 0));
        }
        EXPECT_EQ(-1, ftruncate(buffer, 10000));
        EXPECT_EQ(-1, fcntl(buffer, F_ADD_SEALS, F_SEAL_WRITE));
        close(buffer);
    }
}

TEST_F(Ion, ABufferIsZeroedAndSharedByAllDescriptors) {
    const int buffer = allocate(5000);
    const int other = dup(buffer);
    void* mapping = mmap(nullptr, 5000, PROT_READ | PROT_WRITE, MAP_SHARED, buffer, 0);
    ASSERT_NE(MAP_FAILED, mapping);
    auto* bytes = static_cast<unsigned char*>(mapping);
    for (int i = 0; i < 5000; ++i) {
        ASSERT_EQ(0, bytes[i]);
    }
    close(buffer);
    const char text[] = "text";
    EXPECT_EQ(4, pwrite(other, text, 4, 4996));
    EXPECT_EQ('t', bytes[4999]);
    munmap(mapping, 5000);
    close(other);
}

TEST_F(Ion, BadArgumentsAreRefused) {
    int buffer = -7;
    EXPECT_EQ(-ENODEV, ion_alloc_fd(mDevice, 10, 0, 0, 0, &buffer));
    EXPECT_EQ(-EBADF, ion_alloc_fd(-1, 10, 0, 1, 0, &buffer));
    EXPECT_EQ(-ENOMEM, ion_alloc_fd(mDevice, SIZE_MAX, 0, 1, 0, &buffer));
    EXPECT_EQ(-7, buffer);
    EXPECT_EQ(-EBADF, ion_close(-1));
    EXPECT_EQ(0, ion_is_legacy(mDevice));
    EXPECT_EQ(-ENOTTY, ion_free(mDevice, -1));
}

TEST_F(Ion, AFaultFailsItsStepWhileItLives) {
    int buffer = -7;
    {
        IonFault fault(IonStep::ALLOC, -12, 1);
        EXPECT_EQ(0, ion_alloc_fd(mDevice, 10, 0, 1, 0, &buffer));
        close(buffer);
        EXPECT_EQ(-12, ion_alloc_fd(mDevice, 10, 0, 1, 0, &buffer));
        EXPECT_EQ(-12, ion_alloc_fd(mDevice, 10, 0, 1, 0, &buffer));
    }
    close(allocate(10));

    IonFault fault(IonStep::MAP);
    buffer = allocate(10);
    EXPECT_EQ(MAP_FAILED, mmap(nullptr, 10, PROT_READ | PROT_WRITE, MAP_SHARED, buffer, 0));
    close(buffer);
}

}  // namespace
