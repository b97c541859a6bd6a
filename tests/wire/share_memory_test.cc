#include <cutils/native_handle.h>
#include <dirent.h>
#include <dlfcn.h>
#include <unistd.h>

#include <chrono>
#include <cstring>
#include <fstream>
#include <thread>

#include "hidlhost/ion_faults.h"
#include "hw_qeltvapi_channellist.h"
#include "wire.h"

using hidlhost::IonFault;
using hidlhost::IonLegacy;
using hidlhost::IonStep;
using namespace wire;

namespace {

/** Whether native_handle_create() fails on this thread. */
thread_local bool handlesFail = false;

}  // namespace

/** Stands before the platform's, which has no other way to fail. */
extern "C" __attribute__((visibility("default"))) native_handle_t* native_handle_create(int fds,
                                                                                        int ints) {
    using Create = native_handle_t* (*)(int, int);
    static const Create create = reinterpret_cast<Create>(dlsym(RTLD_NEXT, "native_handle_create"));
    return handlesFail ? nullptr : create(fds, ints);
}

namespace {

/** What is open of the allocator in this process, which the scripted service shares. */
struct Held {
    uint64_t devices = 0;
    int buffers = 0;
    int mappings = 0;

    bool operator==(const Held& other) const {
        return devices == other.devices && buffers == other.buffers && mappings == other.mappings;
    }
};

Held held() {
    const hidlhost::IonCounts counts = hidlhost::ionCounts();
    Held now;
    now.devices = counts.opened - counts.closed;
    DIR* directory = opendir("/proc/self/fd");
    while (const dirent* entry = readdir(directory)) {
        char target[64] = {};
        const ssize_t length =
                readlinkat(dirfd(directory), entry->d_name, target, sizeof(target) - 1);
        if (length > 0 && strstr(target, "memfd:ion") != nullptr) {
            ++now.buffers;
        }
    }
    closedir(directory);
    std::ifstream maps("/proc/self/maps");
    for (std::string line; std::getline(maps, line);) {
        if (line.find("memfd:ion") != std::string::npos) {
            ++now.mappings;
        }
    }
    return now;
}

/** Buffers that nobody closes, see WithoutAHandleNobodyOwnsTheDescriptors. */
int lostBuffers = 0;

/** Waits for the service's side, which lets go of a call's memory a little after the answer. */
void expectNothingHeld() {
    const Held none{0, lostBuffers, 0};
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(20);
    Held now = held();
    while (!(now == none) && std::chrono::steady_clock::now() < deadline) {
        std::this_thread::yield();
        now = held();
    }
    EXPECT_EQ(none.devices, now.devices);
    EXPECT_EQ(none.buffers, now.buffers);
    EXPECT_EQ(none.mappings, now.mappings);
}

class ShareMemory : public testing::Test {
  protected:
    ShareMemory() {
        captureLog();
        mService.start();
        mService.take();
        takeLog();
    }

    void expect() {
        mService.expect({u32(1), u32(2), u32(3), u32(4), u32(5), u32(6), u32(7), u32(2), u32(9),
                         memory(2 * 396, counted(2 * 396)), memory(2 * 628, counted(2 * 628))},
                        {i32(6)});
    }

    /** A read of two pairs of records: two blocks, the service-list records' first. */
    int read() {
        mSvl.assign(2 * 396, '-');
        mTsl.assign(2 * 628, '-');
        return a_qeltvapi_channellist_get_svl_tsl_rec_by_index_ex(1, 2, 3, 4, 5, 6, 7, 2, 9,
                                                                  mSvl.data(), mTsl.data());
    }

    /** The library's lines must be these, whatever the debug switch. */
    void expectLines(const std::vector<std::string>& patterns, int priority = ANDROID_LOG_DEBUG) {
        const std::vector<LogLine> lines = takeLog();
        ASSERT_EQ(patterns.size(), lines.size());
        for (size_t i = 0; i < lines.size(); ++i) {
            EXPECT_TRUE(matches(patterns[i], lines[i].text)) << lines[i].text;
            EXPECT_EQ("(hw_iom)(client)", lines[i].tag);
            EXPECT_EQ(priority, lines[i].priority);
        }
    }

    void expectStored() {
        EXPECT_EQ(counted(2 * 396), mSvl);
        EXPECT_EQ(counted(2 * 628), mTsl);
    }

    void expectNothingAskedOrStored(int result) {
        EXPECT_EQ(0, result);
        EXPECT_TRUE(mService.take().empty());
        EXPECT_EQ(Bytes(2 * 396, '-'), mSvl);
        EXPECT_EQ(Bytes(2 * 628, '-'), mTsl);
    }

    ScriptedService& mService = ScriptedService::instance();
    Debug mDebug{false};
    Bytes mSvl;
    Bytes mTsl;
};

TEST_F(ShareMemory, IsGivenBackAfterEachCall) {
    for (int i = 0; i < 100; ++i) {
        expect();
        EXPECT_EQ(6, read());
        expectStored();
    }
    expectNothingHeld();
}

TEST_F(ShareMemory, ABlockThatCannotBeMadeStopsTheCall) {
    for (const unsigned block : {0u, 1u}) {
        {
            IonFault fault(IonStep::OPEN, -19, block);
            expectNothingAskedOrStored(read());
        }
        {
            IonFault fault(IonStep::ALLOC, -12, block);
            expectNothingAskedOrStored(read());
        }
        expectNothingHeld();
    }
    expectLines({"<QelTvApiShareMemory:28> ion_open failed:-19",
                 "<QelTvApiShareMemory:28> ion_open failed:-19",
                 "<QelTvApiShareMemory:39> ion_alloc failed:-12",
                 "<QelTvApiShareMemory:39> ion_alloc failed:-12",
                 "<QelTvApiShareMemory:28> ion_open failed:-19",
                 "<QelTvApiShareMemory:39> ion_alloc failed:-12"});
}

TEST_F(ShareMemory, WithoutAHandleNobodyOwnsTheDescriptors) {
    handlesFail = true;
    const int result = read();
    handlesFail = false;
    expectNothingAskedOrStored(result);
    expectLines({"<QelTvApiShareMemory:45> native_handle_create failed",
                 "<QelTvApiShareMemory:45> native_handle_create failed"});
    // Releasing leaves the descriptors to handles that do not exist: both blocks stay open.
    lostBuffers += 2;
    expectNothingHeld();
}

TEST_F(ShareMemory, ABlockThatCannotBeMappedIsNotCopied) {
    expect();
    IonFault fault(IonStep::MAP);
    EXPECT_EQ(6, read());
    EXPECT_EQ(Bytes(2 * 396, '-'), mSvl);
    EXPECT_EQ(Bytes(2 * 628, '-'), mTsl);
    expectLines({"mmap failed: Permission denied\n", "mmap failed: Permission denied\n"},
                ANDROID_LOG_ERROR);
    expectNothingHeld();
}

TEST_F(ShareMemory, AFailedCloseIsOnlyLogged) {
    expect();
    IonFault fault(IonStep::CLOSE, -5);
    EXPECT_EQ(6, read());
    expectStored();
    expectLines({"<commit:151> ion_close failed:{n} -5", "<commit:151> ion_close failed:{n} -5"});
    expectNothingHeld();
}

TEST_F(ShareMemory, ALegacyAllocatorIsAskedToFree) {
    IonLegacy legacy;
    const uint64_t freed = hidlhost::ionCounts().freed;
    expect();
    EXPECT_EQ(6, read());
    EXPECT_EQ(freed + 2, hidlhost::ionCounts().freed);
    expectLines({});

    // The words are those of a failed close.
    expect();
    IonFault fault(IonStep::FREE, -3);
    EXPECT_EQ(6, read());
    expectStored();
    expectLines({"<commit:134> ion_close failed:-3", "<commit:134> ion_close failed:-3"});
    expectNothingHeld();
}

TEST_F(ShareMemory, ALostReplyGivesEverythingBack) {
    mService.expectAndLose({u32(1), u32(2), u32(3), u32(4), u32(5), u32(6), u32(7), u32(2), u32(9),
                            memory(2 * 396), memory(2 * 628)});
    EXPECT_EQ(0, read());
    EXPECT_EQ(Bytes(2 * 396, '\0'), mSvl);
    expectLines({"<STATUS_CHECK:50> ."});
    expectNothingHeld();
}

}  // namespace
