#include <errno.h>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <ion/ion.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <cstring>
#include <filesystem>
#include <memory>
#include <string>
#include <thread>
#include <vector>

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

/** A mapping of a buffer, which outlives the buffer's descriptors. */
class Mapping {
  public:
    Mapping(int buffer, size_t size)
            : mSize(size),
              mBytes(mmap(nullptr, size, PROT_READ | PROT_WRITE, MAP_SHARED, buffer, 0)) {}
    ~Mapping() { munmap(mBytes, mSize); }
    Mapping(const Mapping&) = delete;
    Mapping& operator=(const Mapping&) = delete;

    void fill(int byte) { memset(mBytes, byte, mSize); }
    bool all(int byte) const {
        const auto* bytes = static_cast<const unsigned char*>(mBytes);
        return std::all_of(bytes, bytes + mSize, [byte](unsigned char b) { return b == byte; });
    }

  private:
    const size_t mSize;
    void* const mBytes;
};

ino_t inode(int buffer) {
    struct stat status {};
    EXPECT_EQ(0, fstat(buffer, &status));
    return status.st_ino;
}

constexpr size_t kPooled = 100000;

TEST_F(Ion, ABufferIsUsedAgainZeroedAfterItsLastUser) {
    hidlhost::ionForgetBuffers();
    int buffer = allocate(kPooled);
    const ino_t first = inode(buffer);
    Mapping(buffer, kPooled).fill(7);
    close(buffer);

    buffer = allocate(kPooled);
    EXPECT_EQ(first, inode(buffer));
    EXPECT_TRUE(Mapping(buffer, kPooled).all(0));
    EXPECT_EQ(-1, ftruncate(buffer, 0));
    const int another = allocate(kPooled);
    const int longer = allocate(kPooled + 1);
    EXPECT_NE(first, inode(another));
    EXPECT_NE(first, inode(longer));
    close(buffer);
    close(another);
    close(longer);
}

TEST_F(Ion, ABufferIsNotUsedAgainWhileAnybodyHasIt) {
    const auto expectHeldBy = [this](const char* what, const auto& hold) {
        hidlhost::ionForgetBuffers();
        const int buffer = allocate(kPooled);
        const ino_t first = inode(buffer);
        {
            const auto holder = hold(buffer);
            close(buffer);
            const int other = allocate(kPooled);
            EXPECT_NE(first, inode(other)) << what;
            close(other);
        }
        const int one = allocate(kPooled), two = allocate(kPooled);
        EXPECT_TRUE(first == inode(one) || first == inode(two)) << what;
        close(one);
        close(two);
    };
    const auto closing = [](int descriptor) {
        EXPECT_GE(descriptor, 0);
        return std::shared_ptr<void>(nullptr, [descriptor](void*) { close(descriptor); });
    };
    expectHeldBy("a mapping",
                 [](int buffer) { return std::make_unique<Mapping>(buffer, kPooled); });
    expectHeldBy("a copy of the descriptor", [&](int buffer) { return closing(dup(buffer)); });
    expectHeldBy("a file opened for reading", [&](int buffer) {
        return closing(open(("/proc/self/fd/" + std::to_string(buffer)).c_str(), O_RDONLY));
    });
    expectHeldBy("another process", [](int buffer) {
        int ends[2];
        EXPECT_EQ(0, pipe2(ends, O_CLOEXEC));
        const pid_t child = fork();
        if (child == 0) {
            close(ends[1]);
            char byte;
            [[maybe_unused]] const ssize_t end = read(ends[0], &byte, 1);
            _exit(buffer >= 0 ? 0 : 1);
        }
        close(ends[0]);
        return std::shared_ptr<void>(nullptr, [end = ends[1], child](void*) {
            close(end);
            waitpid(child, nullptr, 0);
        });
    });
}

TEST_F(Ion, AForkSharesNoBufferWithItsParent) {
    hidlhost::ionForgetBuffers();
    close(allocate(kPooled));
    const pid_t child = fork();
    if (child == 0) {
        const int buffer = allocate(kPooled);
        Mapping(buffer, kPooled).fill(7);
        // Stays open, so that the parent would see what is in it.
        _exit(Mapping(buffer, kPooled).all(7) ? 0 : 1);
    }
    const int buffer = allocate(kPooled);
    const Mapping mapping(buffer, kPooled);
    int status = -1;
    ASSERT_EQ(child, waitpid(child, &status, 0));
    EXPECT_EQ(0, status);
    EXPECT_TRUE(mapping.all(0));
    close(buffer);
}

size_t descriptors() {
    const auto all = std::filesystem::directory_iterator("/proc/self/fd");
    return static_cast<size_t>(std::distance(begin(all), end(all)));
}

TEST_F(Ion, AChildKeepsABufferThatItsParentHasAndNoneOfThePool) {
    constexpr size_t kBuffers = 5;
    hidlhost::ionForgetBuffers();
    const size_t before = descriptors();
    const int buffer = allocate(kPooled);
    for (size_t i = 1; i < kBuffers; ++i) close(allocate(kPooled + i));
    ASSERT_EQ(before + kBuffers + 1, descriptors()) << "those of the pool and one handed out";
    const ino_t first = inode(buffer);
    const pid_t child = fork();
    if (child == 0) _exit(inode(buffer) != first ? 1 : descriptors() != before + 1 ? 2 : 0);
    int status = -1;
    ASSERT_EQ(child, waitpid(child, &status, 0));
    EXPECT_EQ(0, status);
    close(buffer);
    EXPECT_EQ(before + kBuffers, descriptors());
}

TEST_F(Ion, ThreadsNeverShareABuffer) {
    hidlhost::ionForgetBuffers();
    std::atomic<int> wrong{0};
    std::vector<std::thread> threads;
    for (int number = 1; number <= 4; ++number) {
        threads.emplace_back([this, number, &wrong] {
            for (int i = 0; i < 200; ++i) {
                const int buffer = allocate(kPooled);
                Mapping mapping(buffer, kPooled);
                close(buffer);
                if (!mapping.all(0)) ++wrong;
                mapping.fill(number);
                std::this_thread::yield();
                if (!mapping.all(number)) ++wrong;
            }
        });
    }
    for (std::thread& thread : threads) thread.join();
    EXPECT_EQ(0, wrong);
}

TEST_F(Ion, BuffersKeptForReuseAreBounded) {
    hidlhost::ionForgetBuffers();
    const size_t before = descriptors();
    for (size_t i = 0; i < 100; ++i) close(allocate(kPooled + i));
    EXPECT_LE(descriptors(), before + 16);
    hidlhost::ionForgetBuffers();
    EXPECT_EQ(before, descriptors());
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
