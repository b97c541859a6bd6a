#include <gtest/gtest.h>

#include <cerrno>
#include <condition_variable>
#include <filesystem>
#include <mutex>
#include <vector>

#include "QelTvApiCallbackImpl.h"
#include "every_call.h"
#include "hw_qeltvapi_config.h"
#include "hw_qeltvapi_oad.h"
#include "hw_qeltvapi_scan.h"
#include "inbox.h"
#include "layouts/codes.h"
#include "layouts/scan.h"
#include "layouts/upgrade.h"
#include "with_television.h"

using namespace wire;
using vendor::qelnova::tv::qeltvapi::V1_0::IQelTvApi;

namespace {

constexpr char kItem[] = "picture.contrast";

Inbox<int32_t> sAir, sScan;

int onAir(int32_t type, uintptr_t, const char*, int32_t, bool, int32_t) {
    sAir.put(type);
    return 0;
}

int onScan(int32_t type, uintptr_t, uintptr_t, uintptr_t, uintptr_t, uintptr_t) {
    sScan.put(type);
    return 0;
}

bool comes(Inbox<int32_t>& inbox, int32_t type) {
    return inbox.takeUntil([type](int32_t other) { return other == type; }).has_value();
}

class Shortage : public WithTelevision {
  protected:
    void TearDown() override {
        shortage.storePercent = 0;
        shortage.fileCalls = 0;
        shortage.noThreads = 0;
        WithTelevision::TearDown();
    }

    /** The callback objects that the television knows; those of this process. */
    static nlohmann::json clients() {
        const auto tv = IQelTvApi::getService("default", false);
        if (tv == nullptr) return nlohmann::json::array();
        const std::string dump = controlTelevision(tv, {"dump"});
        return nlohmann::json::parse(dump.substr(0, dump.rfind('}') + 1)).at("clients");
    }
    static nlohmann::json objects() {
        nlohmann::json own = nlohmann::json::array();
        for (const auto& client : clients()) {
            if (client.at("pid") == getpid()) own.push_back(client);
        }
        return own;
    }
    size_t threads() const {
        const std::filesystem::directory_iterator tasks("/proc/" +
                                                        std::to_string(television.pid()) + "/task");
        return static_cast<size_t>(std::distance(begin(tasks), end(tasks)));
    }

    ShortageState& shortage = television.useShortage();
};

TEST_F(Shortage, EveryCallIsAnsweredWhileStatementsFailAndChangesAreKeptAfterwards) {
    for (const uint32_t percent : {10u, 60u, 100u}) {
        shortage.failedStatements = 0;
        shortage.storePercent = percent;
        for (uint32_t round = 0; round < 3; ++round) {
            Values values(percent + round);
            callEverything(values, [&](const char* method, bool answered) {
                if (HasFatalFailure()) return;
                ASSERT_TRUE(television.alive()) << "ended by " << method;
                ASSERT_TRUE(answered) << method;
            });
            ASSERT_FALSE(HasFatalFailure()) << percent << " %";
        }
        EXPECT_GT(shortage.failedStatements, percent) << "the store has not failed";
    }
    int32_t value = 0;
    EXPECT_EQ(QELTV_STORAGE, a_qeltvapi_config_get_value(0, kItem, &value));
    EXPECT_EQ(QELTV_STORAGE, a_qeltvapi_config_set_value(0, kItem, 41, 0));

    shortage.storePercent = 0;
    EXPECT_EQ(QELTV_OK, a_qeltvapi_config_set_value(0, kItem, 42, 0));
    restart();
    EXPECT_EQ(QELTV_OK, a_qeltvapi_config_get_value(0, kItem, &value));
    EXPECT_EQ(42, value);
}

TEST_F(Shortage, WhatIsRefusedForTheStoreHasNotHappenedAndWhatIsNotHasAtEveryRate) {
    int32_t factory = 0;
    ASSERT_EQ(QELTV_OK, a_qeltvapi_config_get_value(0, kItem, &factory));
    int32_t kept = factory;
    int refused = 0;
    for (int32_t i = 0; i < 300; ++i) {
        const int32_t wanted = i % 100;
        shortage.storePercent = 10 + static_cast<uint32_t>(i % 3) * 30;
        const int code = a_qeltvapi_config_set_value(0, kItem, wanted, 0);
        const int reset = i % 7 == 0 ? a_qeltvapi_config_reset_values(0) : QELTV_STORAGE;
        shortage.storePercent = 0;
        ASSERT_TRUE(code == QELTV_OK || code == QELTV_STORAGE) << code;
        if (code == QELTV_OK) kept = wanted;
        if (reset == QELTV_OK) kept = factory;
        refused += code == QELTV_STORAGE;
        int32_t value = 0;
        ASSERT_EQ(QELTV_OK, a_qeltvapi_config_get_value(0, kItem, &value));
        ASSERT_EQ(kept, value) << "after " << i << " changes";
    }
    EXPECT_GT(refused, 10);
    restart();
    int32_t value = 0;
    EXPECT_EQ(QELTV_OK, a_qeltvapi_config_get_value(0, kItem, &value));
    EXPECT_EQ(kept, value);
}

TEST_F(Shortage, AChangeThatTheDiskRefusesHasNotHappenedAndTheNextOneIsKept) {
    int32_t kept = 41;
    ASSERT_EQ(QELTV_OK, a_qeltvapi_config_set_value(0, kItem, kept, 0));
    const auto fail = [&](uint32_t calls, int error, uint32_t grace) {
        shortage.fileError = error;
        shortage.fileGrace = grace;
        shortage.fileCalls = calls;
    };
    int refused = 0;
    for (const int error : {ENOSPC, EIO}) {
        for (const uint32_t calls : {uint32_t{kFileWrite}, uint32_t{kFileSync}}) {
            for (const uint32_t grace : {0u, 0u, 1u, 2u, 3u, 3u}) {
                SCOPED_TRACE(std::to_string(error) + " after " + std::to_string(grace) +
                             " calls of kind " + std::to_string(calls));
                const int32_t wanted = (kept + 1) % 90;
                fail(calls, error, grace);
                const int code = a_qeltvapi_config_set_value(0, kItem, wanted, 0);
                if (code == QELTV_OK) {
                    kept = wanted;
                } else {
                    EXPECT_EQ(QELTV_STORAGE, code);
                    EXPECT_EQ(QELTV_STORAGE, a_qeltvapi_config_set_value(0, kItem, wanted, 0));
                }
                int32_t value = 0;
                EXPECT_EQ(QELTV_OK, a_qeltvapi_config_get_value(0, kItem, &value));
                EXPECT_EQ(kept, value);
                shortage.fileCalls = 0;
                if (code != QELTV_OK && ++refused % 2 == 0) {
                    // Ended before anything else is stored.
                    restart();
                    EXPECT_EQ(QELTV_OK, a_qeltvapi_config_get_value(0, kItem, &value));
                    EXPECT_EQ(kept, value) << "after a restart";
                }
                kept = (kept + 1) % 90;
                EXPECT_EQ(QELTV_OK, a_qeltvapi_config_set_value(0, kItem, kept, 0));
            }
        }
    }
    EXPECT_GT(refused, 4);

    fail(kFileWrite | kFileSync | kFileCut, ENOSPC, 0);
    Values values(7);
    callEverything(values, [&](const char* method, bool answered) {
        if (HasFatalFailure()) return;
        ASSERT_TRUE(television.alive()) << "ended by " << method;
        ASSERT_TRUE(answered) << method;
    });
    shortage.fileCalls = 0;
    ASSERT_FALSE(HasFatalFailure());
    kept = 90;
    EXPECT_EQ(QELTV_OK, a_qeltvapi_config_set_value(0, kItem, kept, 0));
    restart();
    int32_t value = 0;
    EXPECT_EQ(QELTV_OK, a_qeltvapi_config_get_value(0, kItem, &value));
    EXPECT_EQ(kept, value);

    // What others do to the log is no failure of the disk.
    EXPECT_EQ(QELTV_OK, a_qeltvapi_config_set_value(0, kItem, 42, 0));
    fail(kFileWrite, ENOSPC, 0);
    EXPECT_EQ(QELTV_STORAGE, a_qeltvapi_config_set_value(0, kItem, 43, 0));
    shortage.fileCalls = 0;
    std::filesystem::resize_file(television.statePath() + "/television.db-wal", 0);
    EXPECT_EQ(QELTV_STORAGE, a_qeltvapi_config_set_value(0, kItem, 43, 0));
}

TEST_F(Shortage, AnOverTheAirDownloadStopsWhereItCannotBeStoredAndGoesOnFromThere) {
    a_qeltvapi_oad_register_callback(onAir);
    sAir.clear();
    const auto failing = [&](const auto& step, int32_t begins) {
        ASSERT_EQ(QELTV_OK, step());
        ASSERT_TRUE(comes(sAir, begins));
        shortage.storePercent = 100;
        EXPECT_TRUE(comes(sAir, QELTV_OAD_STOPPED));
        shortage.storePercent = 0;
        ASSERT_TRUE(television.alive());
    };
    ASSERT_EQ(QELTV_OK, a_qeltvapi_oad_start_jump_channel());
    ASSERT_TRUE(comes(sAir, QELTV_OAD_FOUND));

    failing(a_qeltvapi_oad_start_download, QELTV_OAD_DOWNLOADING);
    ASSERT_EQ(QELTV_OK, a_qeltvapi_oad_start_download());
    ASSERT_TRUE(comes(sAir, QELTV_OAD_DOWNLOADED));

    failing(a_qeltvapi_oad_start_flash, QELTV_OAD_FLASHING);
    EXPECT_EQ(QELTV_OAD_POWER_ON_PENDING, a_qeltvapi_oad_get_power_on_status());
    ASSERT_EQ(QELTV_OK, a_qeltvapi_oad_start_flash());
    ASSERT_TRUE(comes(sAir, QELTV_OAD_FLASHED));

    failing(a_qeltvapi_oad_accept_restart, QELTV_OAD_RESTARTING);
    ASSERT_EQ(QELTV_OK, a_qeltvapi_oad_accept_restart());
    ASSERT_TRUE(comes(sAir, QELTV_OAD_IDLE));
    EXPECT_EQ(QELTV_OAD_POWER_ON_UPDATED, a_qeltvapi_oad_get_power_on_status());
}

TEST_F(Shortage, AScanThatCannotBeStoredFailsAndTheNextOneIsComplete) {
    // The scan finds a satellite that the television does not know.
    ASSERT_EQ(QELTV_OK, a_qeltvapi_config_set_str_value("channels.region", "dvb-t/de-Berlin"));
    restart();
    ASSERT_EQ(QELTV_OK, a_qeltvapi_config_set_str_value("channels.region", "dvb-s/Astra-1N-19.2E"));
    a_qeltvapi_scan_reg_callback(onScan);
    sScan.clear();
    ASSERT_EQ(QELTV_OK, a_qeltvapi_start_scan(QELTV_SCAN_SATELLITE, 0));
    ASSERT_TRUE(comes(sScan, QELTV_SCAN_STARTED));
    shortage.storePercent = 100;
    EXPECT_TRUE(comes(sScan, QELTV_SCAN_FAILED));
    shortage.storePercent = 0;
    ASSERT_EQ(QELTV_OK, a_qeltvapi_start_scan(QELTV_SCAN_SATELLITE, 0));
    EXPECT_TRUE(comes(sScan, QELTV_SCAN_COMPLETE));
}

std::mutex sGateLock;
std::condition_variable sGate;
bool sOpen = true;
size_t sPassed = 0;

int onHighlevel(int32_t, uintptr_t, uintptr_t, uintptr_t, uintptr_t, uintptr_t) {
    std::unique_lock<std::mutex> guard(sGateLock);
    sGate.wait(guard, [] { return sOpen; });
    ++sPassed;
    sGate.notify_all();
    return 0;
}

void setGate(bool open) {
    std::lock_guard<std::mutex> guard(sGateLock);
    sOpen = open;
    sPassed = 0;
    sGate.notify_all();
}

bool pass(size_t count) {
    std::unique_lock<std::mutex> guard(sGateLock);
    return sGate.wait_for(guard, kPatience, [&] { return sPassed >= count; });
}

TEST_F(Shortage, ALackOfThreadsRefusesNewClientsAndEndsNothing) {
    const auto tv = IQelTvApi::getService("default", false);
    ASSERT_NE(nullptr, tv);
    a_qeltvapi_scan_reg_callback(onScan);
    sScan.clear();
    shortage.noThreads = 1;
    for (int i = 0; i < 20; ++i) {
        const android::sp<QelTvApiCallbackImpl> object = new QelTvApiCallbackImpl;
        EXPECT_TRUE(tv->a_hidl_registerCallbackHandler(object).isOk());
    }
    EXPECT_EQ(QELTV_OK, a_qeltvapi_start_scan(QELTV_SCAN_AIR, 0));
    EXPECT_TRUE(comes(sScan, QELTV_SCAN_COMPLETE));
    EXPECT_TRUE(television.alive());
}

TEST_F(Shortage, TheObjectsOfAClientProcessAreBoundedAndShareAThread) {
    const auto tv = IQelTvApi::getService("default", false);
    ASSERT_NE(nullptr, tv);
    QelTvApiCallbackImpl::pf_highlevel_cb.set(onHighlevel);
    const size_t threadsBefore = threads();
    std::vector<android::sp<QelTvApiCallbackImpl>> held;
    for (int i = 0; i < 100; ++i) {
        held.push_back(new QelTvApiCallbackImpl);
        ASSERT_TRUE(tv->a_hidl_registerCallbackHandler(held.back()).isOk());
    }
    EXPECT_EQ(16u, objects().size());
    EXPECT_LT(threads(), threadsBefore + 8);
    setGate(true);
    controlTelevision(tv, {"raise", "a_hidl_qeltvapi_highlevel_callback_fct", "[5,0,0,0,0,0]"});
    EXPECT_TRUE(pass(15));
}

TEST_F(Shortage, AClientThatDoesNotTakeItsNotificationsIsBoundedAndTheOthersGetTheirs) {
    const auto tv = IQelTvApi::getService("default", false);
    ASSERT_NE(nullptr, tv);
    QelTvApiCallbackImpl::pf_highlevel_cb.set(onHighlevel);
    const android::sp<QelTvApiCallbackImpl> object = new QelTvApiCallbackImpl;
    ASSERT_TRUE(tv->a_hidl_registerCallbackHandler(object).isOk());
    setGate(false);
    const auto raise = [&](const std::string& method, const std::string& values, int times) {
        controlTelevision(tv, {"raise", method, values, std::to_string(times)});
    };
    raise("a_hidl_qeltvapi_highlevel_callback_fct", "[5,0,0,0,0,0]", 1);
    // Large ones: the bytes are bounded.
    raise("a_hidl_qeltvapi_html_agent_callback",
          "[1,0,\"" + std::string(size_t{512} * 1024, 'x') + "\"]", 100);
    const auto waiting = [] {
        size_t most = 0;
        for (const auto& each : objects()) most = std::max<size_t>(most, each.at("waiting"));
        return most;
    };
    // 32 of them, and small ones that the television raises by itself.
    EXPECT_LE(waiting(), 60u);
    EXPECT_GE(waiting(), 20u);
    // Small ones: their number is.
    setGate(true);
    ASSERT_TRUE(eventually([&] { return waiting() == 0; }));
    setGate(false);
    raise("a_hidl_qeltvapi_highlevel_callback_fct", "[5,0,0,0,0,0]", 10000);
    EXPECT_LE(waiting(), 4096u);
    EXPECT_GE(waiting(), 4000u);

    wire::Ended watched{};
    std::thread other([&] {
        watched = wire::qeltvctl({"watch", "--count", "1", "--seconds", "30"});
    });
    EXPECT_TRUE(eventually([&] {
        raise("a_hidl_qeltvapi_sleep_timer_callback_fct", "[1,0,7]", 1);
        return clients().size() > objects().size();
    }));
    raise("a_hidl_qeltvapi_sleep_timer_callback_fct", "[1,0,7]", 1);
    other.join();
    EXPECT_FALSE(watched.out.empty());
    setGate(true);
    EXPECT_TRUE(pass(4000));
}

}  // namespace
