#include <gtest/gtest.h>
#include <hidlhost/ion_faults.h>
#include <sys/mman.h>

#include <array>
#include <thread>

#include "QelTvApiCallbackImpl.h"
#include "QelTvApiShareMemory.h"
#include "TvApiDeathRecipient.h"
#include "eventually.h"
#include "hw_iom.h"
#include "hw_qeltvapi_ci.h"
#include "hw_qeltvapi_common.h"
#include "log_capture.h"
#include "platform_calls.h"
#include "private_runtime.h"

using namespace wire;
using hidlhost::IonFault;
using hidlhost::IonStep;
using qeltvapi::QelTvApiShareMemory;
using qeltvapi::testing::wire::usePrivateRuntime;

namespace {

// There is no service in this program.
const bool sPrivate = usePrivateRuntime();

size_t countLines(const std::vector<LogLine>& lines, const std::string& text) {
    size_t count = 0;
    for (const LogLine& line : lines) count += line.text == text;
    return count;
}

/** Returns 0 when a reconnect thread polls for the service as often as it may and then no more. */
int exhaustPolls() {
    captureLog();
    Sleeps::instance().letGo(10000);
    TvApiDeathRecipient::getInstance()->serviceDied(12345, nullptr);
    // From then on each pass fails at once, and each failed registration starts another thread,
    // which stays in its first sleep.
    std::vector<LogLine> lines;
    const bool failed = eventually([&] {
        for (LogLine& line : takeLog()) lines.push_back(std::move(line));
        return countLines(lines, "<registerCallbackHandler:101> pthread_create") >= 3;
    });
    if (!failed) return 1;
    if (countLines(lines, "<reconnectService:71> reconnectService, count=9999") != 1) return 2;
    if (countLines(lines, "<reconnectService:71> reconnectService, count=10000") != 1) return 3;
    return countLines(lines, "<reconnectService:71> reconnectService, count=1") == 1 ? 0 : 4;
}

// The first: its process is a fork of this one, which has no other threads yet.
TEST(ReconnectThread, CountsItsPollsOverAllItsPassesAndPollsNoMoreThan10000Times) {
    EXPECT_EXIT(_exit(exhaustPolls()), testing::ExitedWithCode(0), "");
}

/** Returns 0 when the first access to the service has switched the payload's traces on. */
int traceFirstCall() {
    captureLog();
    sDebugMarker = true;
    const uint16_t text[] = {'4', '2', 0};
    QELTVAPI_CI_MMI_ENQ_ANS_T answer{1, 2, text};
    if (a_qeltvapi_ci_set(QELTVAPI_CI_SET_TYPE_MMI_ENQ_ANS, 9, &answer) != -1) return 1;
    const char* const expected[] = {
            "<a_qeltvapi_ci_set:{n}> a_qeltvapi_ci_set  QELTVAPI_CI_SET_TYPE_MMI_ENQ_ANS",
            "<_getStrSize:{n}> _getStrSize, size:3",
            "<a_qeltvapi_ci_set:{n}> a_qeltvapi_ci_set  QELTVAPI_CI_SET_TYPE_MMI_ENQ_ANS, "
            "w2s_txt_len:3",
            "<a_qeltvapi_ci_set:{n}> a_qeltvapi_ci_set  QELTVAPI_CI_SET_TYPE_MMI_ENQ_ANS, "
            "vector w2s_text size:3",
            "<a_qeltvapi_ci_set:{n}> {a_qeltvapi_ci_set} Get ci service fail.\n",
    };
    const std::vector<LogLine> lines = takeLog();
    if (lines.size() != std::size(expected)) return 2;
    for (size_t i = 0; i < lines.size(); ++i) {
        if (!matches(expected[i], lines[i].text)) return 3 + static_cast<int>(i);
    }
    return 0;
}

// As the one above. The entry trace comes before the access that looks for the debug marker.
TEST(DebugMarker, IsSeenByTheFirstCallsOwnTracesBehindItsEntry) {
    EXPECT_EXIT(_exit(traceFirstCall()), testing::ExitedWithCode(0), "");
}

int ignore(uintptr_t, uintptr_t, const void*, uint32_t) {
    return 0;
}

TEST(NotificationSlot, IsFilledForAUartWhenTheServiceIsMissing) {
    const qeltvapi_iom_uart_setting_t setting{};
    uint32_t handle = 7;
    EXPECT_EQ(-1, c_iom_open_uart(8, 1, "uart", &setting, nullptr, ignore, &handle));
    EXPECT_EQ(ignore, QelTvApiCallbackImpl::iom_notify_cb.get());
    EXPECT_EQ(-1, c_iom_open_uart(7, 1, "uart", &setting, nullptr, nullptr, &handle));
    EXPECT_EQ(ignore, QelTvApiCallbackImpl::iom_notify_cb.get()) << "no type for a UART";
    EXPECT_EQ(7u, handle);
}

std::array<uintptr_t, 5> sSelected;

int onSelect(uint32_t svctx, uint32_t arg1, uint32_t arg2, uint32_t arg3, uintptr_t tag) {
    sSelected = {svctx, arg1, arg2, arg3, tag};
    return 0;
}

// Nothing that is exported fills it, yet it is read.
TEST(NotificationSlot, PassesTheServiceSelectionItsArgumentsInOrder) {
    const android::sp<QelTvApiCallbackImpl> callback = new QelTvApiCallbackImpl;
    EXPECT_TRUE(callback->a_hidl_x_svctx_select_nfy_fct(1, 2, 3, 4, 0x500000006).isOk());
    EXPECT_EQ((std::array<uintptr_t, 5>{}), sSelected) << "empty";
    QelTvApiCallbackImpl::pf_svctx_select_listener.set(onSelect);
    EXPECT_TRUE(callback->a_hidl_x_svctx_select_nfy_fct(1, 2, 3, 4, 0x500000006).isOk());
    EXPECT_EQ((std::array<uintptr_t, 5>{1, 2, 3, 4, static_cast<uintptr_t>(0x500000006)}),
              sSelected);
}

TEST(SharedMemory, IsMappedOnceAndReleasedByCommit) {
    QelTvApiShareMemory memory(5000);
    ASSERT_EQ(0, memory.m_status);
    ASSERT_NE(nullptr, memory.m_handle.getNativeHandle());
    EXPECT_EQ(memory.m_share_fd, memory.m_handle->data[0]);
    void* const address = memory.getPointer();
    ASSERT_NE(nullptr, address);
    EXPECT_EQ(address, memory.getPointer());
    for (int time = 0; time < 2; ++time) {
        memory.commit();
        EXPECT_EQ(nullptr, memory.m_address);
        EXPECT_EQ(-1, memory.m_share_fd);
        EXPECT_EQ(-1, memory.m_ion_fd);
        EXPECT_EQ(1, memory.m_handle->numFds) << "the handle lives as long as the object";
    }
}

TEST(SharedMemory, ReportsAFailedMappingOnce) {
    captureLog();
    IonFault fault(IonStep::MAP);
    QelTvApiShareMemory memory(5000);
    takeLog();
    EXPECT_EQ(nullptr, memory.getPointer());
    ASSERT_EQ(1u, takeLog().size());
    // What callers get that ask twice is kept on purpose, as is its way into munmap().
    EXPECT_EQ(MAP_FAILED, memory.getPointer());
    EXPECT_TRUE(takeLog().empty());
    memory.commit();
    EXPECT_EQ(nullptr, memory.m_address);
    EXPECT_EQ(-1, memory.m_ion_fd);
}

}  // namespace
