#include <fcntl.h>
#include <sys/mount.h>
#include <sys/statvfs.h>
#include <unistd.h>

#include <string>
#include <vector>

#include "daemon.h"
#include "hw_qeltvapi_config.h"
#include "wire.h"

namespace {

constexpr char kNumber[] = "picture.contrast";
constexpr char kOther[] = "picture.brightness";
constexpr int kStorage = -6;

/** A television whose files lie on a disk of their own, small enough to be filled. */
class FullDisk : public testing::Test {
  protected:
    void SetUp() override {
        const char* path = television.statePath().c_str();
        if (mount("tmpfs", path, "tmpfs", 0, "size=2m") != 0) {
            GTEST_SKIP() << "only root can mount a disk: " << strerror(errno);
        }
        mMounted = true;
        television.start();
    }
    void TearDown() override {
        television.kill();
        if (mMounted) umount2(television.statePath().c_str(), MNT_DETACH);
    }

    size_t freeBytes() const {
        struct statvfs disk;
        return statvfs(television.statePath().c_str(), &disk) == 0 ? disk.f_bavail * disk.f_bsize
                                                                   : 0;
    }
    /** Leaves no more than `left` bytes. */
    void fill(size_t left) const {
        const int file = open((television.statePath() + "/ballast").c_str(),
                              O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC, 0600);
        ASSERT_GE(file, 0);
        const std::vector<char> block(4096);
        while (freeBytes() > left && write(file, block.data(), block.size()) > 0) {
        }
        close(file);
    }
    void makeRoom() const { unlink((television.statePath() + "/ballast").c_str()); }
    /** As a program that has just been started sees it. */
    static std::string value(const char* name) {
        return wire::qeltvctl({"config", "get", name}).out;
    }

    wire::Daemon television;

  private:
    bool mMounted = false;
};

TEST_F(FullDisk, WhatWasAcknowledgedSurvivesAndTheRestIsRefused) {
    ASSERT_EQ(0, a_qeltvapi_config_set_value(0, kOther, 33, 0));
    fill(48 * 1024);

    int32_t kept = -1;
    int refused = 0;
    for (int32_t next = 0; next < 4000 && refused < 20; ++next) {
        const int32_t wanted = next % 100;
        const int32_t code = a_qeltvapi_config_set_value(0, kNumber, wanted, 0);
        ASSERT_TRUE(code == 0 || code == kStorage) << code;
        if (code == 0) kept = wanted;
        if (code == kStorage) ++refused;
        int32_t read = -1000;
        ASSERT_EQ(0, a_qeltvapi_config_get_value(0, kNumber, &read));
        if (kept >= 0) ASSERT_EQ(kept, read) << "a refused change has not happened";
    }
    ASSERT_EQ(20, refused) << "the disk was not full";
    ASSERT_GE(kept, 0) << "the disk was full from the beginning";
    const std::string last = std::to_string(kept) + "\n";

    television.kill();
    makeRoom();
    television.start();
    EXPECT_EQ(last, value(kNumber));
    EXPECT_EQ("33\n", value(kOther));
    EXPECT_EQ(0, wire::qeltvctl({"config", "set", kNumber, "51"}).status);

    television.kill();
    television.start();
    EXPECT_EQ("51\n", value(kNumber));
    EXPECT_EQ("33\n", value(kOther));
}

}  // namespace
