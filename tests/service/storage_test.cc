#include <fcntl.h>
#include <signal.h>
#include <sys/mount.h>
#include <sys/resource.h>
#include <sys/statvfs.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <filesystem>
#include <nlohmann/json.hpp>
#include <string>
#include <system_error>
#include <thread>
#include <vector>

#include "daemon.h"
#include "eventually.h"
#include "hw_qeltvapi_config.h"
#include "layouts/codes.h"
#include "wire.h"

namespace {

constexpr char kNumber[] = "picture.contrast";
constexpr char kOther[] = "picture.brightness";

/** How large a file of this process, and of those that it starts meanwhile, can become. */
class Limited {
  public:
    explicit Limited(rlim_t bytes) {
        getrlimit(RLIMIT_FSIZE, &mBefore);
        const rlimit files{std::min(bytes, mBefore.rlim_max), mBefore.rlim_max};
        setrlimit(RLIMIT_FSIZE, &files);
    }
    ~Limited() { setrlimit(RLIMIT_FSIZE, &mBefore); }
    Limited(const Limited&) = delete;
    Limited& operator=(const Limited&) = delete;

  private:
    rlimit mBefore = {};
};

/**
 * A television whose disk can be filled: a small one of its own where this process may mount one,
 * else files of the television's that cannot grow.
 */
class FullDisk : public testing::Test {
  protected:
    void SetUp() override {
        mMounted = mount("tmpfs", television.statePath().c_str(), "tmpfs", 0, "size=8m") == 0;
        // A file that cannot grow sends a signal too; the television inherits that it is ignored.
        if (!mMounted) signal(SIGXFSZ, SIG_IGN);
    }
    void TearDown() override {
        television.kill();
        makeRoom();
        if (mMounted) umount2(television.statePath().c_str(), MNT_DETACH);
    }

    /** Leaves no more than `left` bytes. */
    void fill(size_t left) {
        if (!mMounted) {
            limit(sizeOfLog() + left);
            return;
        }
        // To the last byte: files end within blocks.
        for (const size_t size : {size_t{4096}, size_t{64}}) {
            const int file = open((television.statePath() + "/ballast").c_str(),
                                  O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC, 0600);
            ASSERT_GE(file, 0);
            const std::vector<char> block(size);
            while (freeBytes() >= left + size && write(file, block.data(), size) > 0) {
            }
            close(file);
        }
    }
    void makeRoom() {
        if (mMounted) {
            unlink((television.statePath() + "/ballast").c_str());
        } else {
            limit(RLIM_INFINITY);
        }
    }
    /** As a program that has just been started sees it. */
    static std::string value(const char* name) {
        return wire::qeltvctl({"config", "get", name}).out;
    }
    bool hasRecorded() const {
        const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(20);
        while (std::chrono::steady_clock::now() < deadline) {
            for (const auto& file :
                 std::filesystem::directory_iterator(television.statePath() + "/recordings")) {
                if (file.file_size() > 0) return true;
            }
            std::this_thread::sleep_for(std::chrono::milliseconds(5));
        }
        return false;
    }
    /** Runs the television where it must not come up. */
    wire::Ended startInVain() const {
        const Limited inherited(mLimit);
        return wire::runProgram(
                {QELTV_HOST_BUILD_DIR "/qeltvd/qeltvd", "--state", television.statePath()});
    }
    void start() {
        const Limited inherited(mLimit);
        television.start();
    }

    wire::Daemon television;

  private:
    size_t freeBytes() const {
        struct statvfs disk;
        return statvfs(television.statePath().c_str(), &disk) == 0 ? disk.f_bavail * disk.f_bsize
                                                                   : 0;
    }
    /** The store's log, where changes go first. */
    size_t sizeOfLog() const {
        std::error_code none;
        const auto size =
                std::filesystem::file_size(television.statePath() + "/television.db-wal", none);
        return none ? 0 : static_cast<size_t>(size);
    }
    void limit(rlim_t bytes) {
        mLimit = bytes;
        rlimit files;
        getrlimit(RLIMIT_FSIZE, &files);
        files.rlim_cur = std::min(bytes, files.rlim_max);
        if (television.pid() > 0) prlimit(television.pid(), RLIMIT_FSIZE, &files, nullptr);
    }
    rlim_t mLimit = RLIM_INFINITY;
    bool mMounted = false;
};

TEST_F(FullDisk, ATimeshiftKeepsWhatItHolds) {
    start();
    const auto status = [](const char* name) {
        const auto all =
                nlohmann::json::parse(wire::qeltvctl({"timeshift", "status", "--json"}).out);
        return all.at(name).dump();
    };
    const auto ok = [](std::vector<std::string> words) {
        const wire::Ended ended = wire::qeltvctl(words);
        EXPECT_EQ(0, ended.status) << ended.err;
    };
    ok({"timeshift", "device", television.statePath(), "5"});
    ASSERT_TRUE(eventually([&] { return status("device") == "\"ready\""; }));
    ok({"timeshift", "start"});
    ASSERT_TRUE(eventually([&] { return std::stoi(status("duration_ms")) > 500; }));
    fill(0);
    ASSERT_TRUE(eventually([&] { return status("status") == "\"kept\""; }));
    EXPECT_EQ("\"the disk is full\"", status("error"));
    const std::string held = status("duration_ms");
    EXPECT_GT(std::stoi(held), 500);
    ok({"timeshift", "seek", "0.1"});
    ok({"timeshift", "pause"});
    EXPECT_LT(std::stoi(status("position_ms")), std::stoi(held));
    EXPECT_EQ(held, status("duration_ms"));
    makeRoom();
    ok({"timeshift", "start"});
    EXPECT_EQ("\"records\"", status("status"));
    EXPECT_EQ("\"\"", status("error"));
    ok({"timeshift", "stop"});
}

TEST_F(FullDisk, WhatWasAcknowledgedSurvivesAndTheRestIsRefused) {
    start();
    ASSERT_EQ(0, a_qeltvapi_config_set_value(0, kOther, 33, 0));
    fill(48 * 1024);

    int32_t kept = -1;
    int refused = 0;
    for (int32_t next = 0; next < 4000 && refused < 20; ++next) {
        const int32_t wanted = next % 100;
        const int32_t code = a_qeltvapi_config_set_value(0, kNumber, wanted, 0);
        ASSERT_TRUE(code == 0 || code == QELTV_STORAGE) << code;
        if (code == 0) kept = wanted;
        if (code == QELTV_STORAGE) ++refused;
        int32_t read = -1000;
        ASSERT_EQ(0, a_qeltvapi_config_get_value(0, kNumber, &read));
        if (kept >= 0) ASSERT_EQ(kept, read) << "a refused change has not happened";
    }
    ASSERT_EQ(20, refused) << "the disk was not full";
    ASSERT_GE(kept, 0) << "the disk was full from the beginning";
    const std::string last = std::to_string(kept) + "\n";

    television.kill();
    start();
    EXPECT_EQ(last, value(kNumber)) << "on a disk that is still full";
    EXPECT_EQ("33\n", value(kOther));

    television.kill();
    makeRoom();
    start();
    EXPECT_EQ(last, value(kNumber));
    EXPECT_EQ("33\n", value(kOther));
    EXPECT_EQ(0, wire::qeltvctl({"config", "set", kNumber, "51"}).status);

    television.kill();
    start();
    EXPECT_EQ("51\n", value(kNumber));
    EXPECT_EQ("33\n", value(kOther));
}

TEST_F(FullDisk, ATelevisionStartsFromWhatIsStoredAndTakesChangesOnceThereIsRoom) {
    start();
    ASSERT_EQ(0, wire::qeltvctl({"config", "set", kNumber, "42"}).status);
    ASSERT_EQ(0, wire::qeltvctl({"config", "set", "channels.region", "dvb-t/uk-*"}).status);
    const std::string channels = wire::qeltvctl({"channel", "list"}).out;
    ASSERT_EQ(0, wire::qeltvctl({"record", "start"}).status);
    ASSERT_TRUE(hasRecorded());
    television.kill();
    fill(0);

    // It has a recording to tidy up and channels of another region to read in, and no room for it.
    start();
    EXPECT_EQ("42\n", value(kNumber));
    EXPECT_TRUE(channels == wire::qeltvctl({"channel", "list"}).out);
    EXPECT_NE(0, wire::qeltvctl({"config", "set", kNumber, "7"}).status);
    EXPECT_EQ("42\n", value(kNumber));
    makeRoom();
    EXPECT_EQ(0, wire::qeltvctl({"config", "set", kNumber, "8"}).status);

    television.kill();
    start();
    EXPECT_EQ("8\n", value(kNumber));
    EXPECT_FALSE(channels == wire::qeltvctl({"channel", "list"}).out);
    EXPECT_NE(std::string::npos, wire::qeltvctl({"record", "list"}).out.find("power lost"));
}

TEST_F(FullDisk, AFirstStartSaysWhatIsMissingAndTheNextOneIsComplete) {
    const std::string database = television.statePath() + "/television.db";
    // No room at all; room for some of the tables; room for the tables, but not for all channels.
    for (const size_t left : {size_t{0}, size_t{16 * 1024}, size_t{100 * 1024}}) {
        fill(left);
        const wire::Ended ended = startInVain();
        EXPECT_EQ(1, ended.status) << left;
        EXPECT_EQ(0u, ended.err.find("qeltvd: " + database + ": ")) << left << ": " << ended.err;
        EXPECT_TRUE(ended.err.find("disk is full") != std::string::npos ||
                    ended.err.find("disk I/O error") != std::string::npos)
                << left << ": " << ended.err;
        makeRoom();
    }
    start();
    const std::string channels = wire::qeltvctl({"channel", "list"}).out;
    television.kill();

    wire::Daemon untroubled;
    untroubled.start();
    EXPECT_TRUE(channels == wire::qeltvctl({"channel", "list"}).out);
}

TEST_F(FullDisk, ASecondTelevisionLeavesTheStoreToTheFirst) {
    start();
    const wire::Ended ended = startInVain();
    EXPECT_EQ(1, ended.status);
    EXPECT_EQ(0u,
              ended.err.find("qeltvd: " + television.statePath() + ": another television uses it"))
            << ended.err;
    EXPECT_EQ(0, wire::qeltvctl({"config", "set", kNumber, "9"}).status);
    EXPECT_EQ("9\n", value(kNumber));
}

}  // namespace
