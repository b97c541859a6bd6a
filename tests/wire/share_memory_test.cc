#include <cutils/native_handle.h>
#include <dirent.h>
#include <dlfcn.h>
#include <ion/ion.h>
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

constexpr char kTag[] = "(hw_iom)(client)";

/** Whether native_handle_create() fails on this thread. */
thread_local bool handlesFail = false;

/** What the library has passed to the platform on this thread since the last look. */
thread_local std::vector<std::string> passed;
/** The device and the buffer of each allocation, in the form of the trace. */
thread_local std::vector<std::string> allocated;

template <class F>
F platforms(F, const char* name) {
    return reinterpret_cast<F>(dlsym(RTLD_NEXT, name));
}

}  // namespace

#pragma GCC visibility push(default)
extern "C" {

/** Stands before the platform's, which has no other way to fail. */
native_handle_t* native_handle_create(int fds, int ints) {
    static const auto create = platforms(native_handle_create, "native_handle_create");
    passed.push_back("handle " + std::to_string(fds) + " " + std::to_string(ints));
    return handlesFail ? nullptr : create(fds, ints);
}

int ion_alloc_fd(int fd, size_t len, size_t align, unsigned int heap_mask, unsigned int flags,
                 int* handle_fd) {
    static const auto alloc = platforms(ion_alloc_fd, "ion_alloc_fd");
    const int result = alloc(fd, len, align, heap_mask, flags, handle_fd);
    passed.push_back("buffer " + std::to_string(len) + " " + std::to_string(align) + " " +
                     std::to_string(heap_mask) + " " + std::to_string(flags));
    allocated.push_back(std::to_string(fd) + ", m_share_fd:" + std::to_string(*handle_fd));
    return result;
}

}  // extern "C"
#pragma GCC visibility pop

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

    void expect(bool mapped = true) {
        const auto block = [=](size_t size) {
            return mapped ? memory(size, counted(size)) : memory(size);
        };
        mService.expect({u32(1), u32(2), u32(3), u32(4), u32(5), u32(6), u32(7), u32(2), u32(9),
                         block(2 * 396), block(2 * 628)},
                        {i32(6)});
    }

    /** A read of two pairs of records: two blocks, the service-list records' first. */
    int read() {
        mSvl.assign(2 * 396, '-');
        mTsl.assign(2 * 628, '-');
        return a_qeltvapi_channellist_get_svl_tsl_rec_by_index_ex(1, 2, 3, 4, 5, 6, 7, 2, 9,
                                                                  mSvl.data(), mTsl.data());
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

TEST_F(ShareMemory, IsReleasedAfterEachCall) {
    for (int i = 0; i < 100; ++i) {
        expect();
        EXPECT_EQ(6, read());
        expectStored();
    }
    expectNothingHeld();
}

TEST_F(ShareMemory, IsAllocatedWithFixedArgumentsAndTracedWithItsDescriptors) {
    Debug debug(true);
    passed.clear();
    allocated.clear();
    uint16_t count = 3;
    uint16_t ids[3] = {};
    mService.expect({memory(6), u16(3)}, {u16(0), i16(0)});
    EXPECT_EQ(0, a_qeltvapi_tvprovider_get_all_svlid(ids, &count));
    EXPECT_EQ((std::vector<std::string>{"buffer 6 0 1 0", "handle 1 0"}), passed);
    ASSERT_EQ(1u, allocated.size());
    std::string commit = allocated[0];
    commit.replace(commit.find(", m_share_fd:"), strlen(", m_share_fd:"), " ");
    const std::string name =
            "(hw_qeltvapi_channellist)(client)|<a_qeltvapi_tvprovider_get_all_svlid";
    expectLog(kTag, {name + ":{n}> Enter ", "<QelTvApiShareMemory:51> 1, m_ion_fd:" + allocated[0],
                     "<commit:126> commit " + commit, name + ":{n}> Exit ",
                     "<commit:126> commit -1 -1", "<~QelTvApiShareMemory:91> ~"});
}

/** The readers through shared memory; the first four need two blocks. */
int readThrough(int reader, void* svl, void* tsl, uint32_t* words, uint16_t* count) {
    switch (reader) {
        case 0:
            return a_qeltvapi_channellist_get_svl_tsl_rec_by_handle_ex(1, 2, 2, &words[0],
                                                                       &words[1], svl, tsl);
        case 1:
            return a_qeltvapi_channellist_get_svl_tsl_rec_by_index_ex(1, 2, 3, 4, 5, 6, 7, 2, 9,
                                                                      svl, tsl);
        case 2:
            return a_qeltvapi_channellist_get_svl_tsl_recs_by_brdcast_type(1, 2, 3, 2, 5, svl, tsl,
                                                                           &words[0], &words[1]);
        case 3:
            return a_qeltvapi_channellist_get_svl_tsl_recs_by_filter(1, 2, 3, 4, 5, 1, 1, svl, tsl,
                                                                     &words[0], &words[1]);
        default:
            return a_qeltvapi_tvprovider_get_all_svlid(static_cast<uint16_t*>(svl), count);
    }
}

TEST_F(ShareMemory, StopsTheCallWhenItCannotBeAllocated) {
    for (int reader = 0; reader < 5; ++reader) {
        SCOPED_TRACE(reader);
        for (const unsigned block : {0u, 1u}) {
            if (reader == 4 && block == 1) continue;
            for (const bool opens : {false, true}) {
                uint32_t words[] = {41, 42};
                uint16_t count = 3;
                mSvl.assign(2 * 396, '-');
                mTsl.assign(2 * 628, '-');
                IonFault fault(opens ? IonStep::ALLOC : IonStep::OPEN, -12, block);
                expectNothingAskedOrStored(
                        readThrough(reader, mSvl.data(), mTsl.data(), words, &count));
                EXPECT_EQ(41u, words[0]);
                EXPECT_EQ(42u, words[1]);
                EXPECT_EQ(3u, count);
                const std::string line = opens ? "<QelTvApiShareMemory:39> ion_alloc failed:-12"
                                               : "<QelTvApiShareMemory:28> ion_open failed:-12";
                // The fault holds on, so that a failed first block is followed by a second one.
                expectLog(kTag, std::vector<std::string>(reader < 4 && block == 0 ? 2 : 1, line));
                expectNothingHeld();
            }
        }
    }
}

TEST_F(ShareMemory, LeavesTheDescriptorsOpenWithoutAHandle) {
    handlesFail = true;
    const int result = read();
    handlesFail = false;
    expectNothingAskedOrStored(result);
    expectLog(kTag, {"<QelTvApiShareMemory:45> native_handle_create failed",
                     "<QelTvApiShareMemory:45> native_handle_create failed"});
    // Releasing leaves the descriptors to handles that do not exist: both blocks stay open.
    lostBuffers += 2;
    expectNothingHeld();
}

TEST_F(ShareMemory, IsNotCopiedWhenItCannotBeMapped) {
    expect(false);
    IonFault fault(IonStep::MAP);
    EXPECT_EQ(6, read());
    EXPECT_EQ(Bytes(2 * 396, '-'), mSvl);
    EXPECT_EQ(Bytes(2 * 628, '-'), mTsl);
    expectLog(kTag, {"mmap failed: Permission denied\n", "mmap failed: Permission denied\n"},
              ANDROID_LOG_ERROR);
    expectNothingHeld();

    // Releasing treats it like a mapping: a legacy allocator has to free it.
    IonLegacy legacy;
    const uint64_t freed = hidlhost::ionCounts().freed;
    expect(false);
    EXPECT_EQ(6, read());
    EXPECT_EQ(freed + 2, hidlhost::ionCounts().freed);
    expectNothingHeld();
}

TEST_F(ShareMemory, OnlyLogsAFailedClose) {
    expect();
    IonFault fault(IonStep::CLOSE, -5);
    EXPECT_EQ(6, read());
    expectStored();
    expectLog(kTag,
              {"<commit:151> ion_close failed:{n} -5", "<commit:151> ion_close failed:{n} -5"});
    expectNothingHeld();
}

TEST_F(ShareMemory, IsFreedByALegacyAllocator) {
    IonLegacy legacy;
    const uint64_t freed = hidlhost::ionCounts().freed;
    expect();
    EXPECT_EQ(6, read());
    EXPECT_EQ(freed + 2, hidlhost::ionCounts().freed);
    expectLog(kTag, {});

    // The words are those of a failed close.
    expect();
    IonFault fault(IonStep::FREE, -3);
    EXPECT_EQ(6, read());
    expectStored();
    expectLog(kTag, {"<commit:134> ion_close failed:-3", "<commit:134> ion_close failed:-3"});
    expectNothingHeld();
}

TEST_F(ShareMemory, IsReleasedWhenTheReplyIsLost) {
    mService.expectAndLose({u32(1), u32(2), u32(3), u32(4), u32(5), u32(6), u32(7), u32(2), u32(9),
                            memory(2 * 396), memory(2 * 628)});
    EXPECT_EQ(0, read());
    EXPECT_EQ(Bytes(2 * 396, '\0'), mSvl);
    expectLog(kTag, {"<STATUS_CHECK:50> ."});
    expectNothingHeld();
}

}  // namespace
