#include <sys/stat.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstring>
#include <fstream>
#include <iterator>
#include <nlohmann/json.hpp>

#include "daemon.h"
#include "eventually.h"
#include "hw_qeltvapi_common.h"
#include "hw_qeltvapi_pvr_browser.h"
#include "hw_qeltvapi_record.h"
#include "hw_qeltvapi_timeshift.h"
#include "inbox.h"
#include "layouts/codes.h"
#include "layouts/record.h"
#include "packet_check.h"
#include "wire.h"

using namespace wire;
using namespace std::chrono_literals;
using vendor::qelnova::tv::qeltvapi::V1_0::IQelTvApi;

namespace {

constexpr int kPacket = 188;

struct Event {
    int32_t type;
    uint64_t first, second;
};

/** Notifications of one kind, as they come. */
class Events : public Inbox<Event> {
  public:
    /** Waits for one of a type (about something, unless that is 0), and drops those before it. */
    bool wait(int32_t type, uint64_t first, uint64_t* second = nullptr) {
        const auto found = takeUntil([&](const Event& event) {
            return event.type == type && (first == 0 || event.first == first);
        });
        if (found && second != nullptr) *second = found->second;
        return found.has_value();
    }
};

Events sRecordings;
Events sTimeshift;

int onRecording(int32_t type, uintptr_t, uintptr_t first, uintptr_t second) {
    sRecordings.put({type, first, second});
    return 0;
}

int onTimeshift(int32_t type, uintptr_t, uintptr_t first, uintptr_t second) {
    sTimeshift.put({type, first, second});
    return 0;
}

/** One television for all: a process of the library stays with the first one that it meets. */
class Recording : public testing::Test {
  protected:
    static void SetUpTestSuite() {
        television = new Daemon;
        television->start();
        a_qeltvapi_record_pvr_register_callback(onRecording);
        a_qeltvapi_timeshift_register_callback(onTimeshift);
        registerCallbackHandler();
        ASSERT_TRUE(eventually([] {
            const auto tv = IQelTvApi::getService("default", false);
            return tv != nullptr &&
                   controlTelevision(tv, {"dump"}).find("\"registrations\": ") != std::string::npos;
        }));
    }
    static void TearDownTestSuite() {
        // Not through a dead television: calls that are not checked would end the process.
        delete television;
    }

    static void SetUpDisk(uint32_t mib, uint32_t rateKib) {
        QELTV_DISK_RECORD_T disk{};
        disk.limitLow = mib << 20;
        disk.rate = rateKib * 1024;
        ASSERT_EQ(0, a_qeltvapi_record_pvr_set_disk(0, "", &disk));
    }

    static std::string nameOf(uint32_t handle) {
        char name[512] = "";
        EXPECT_EQ(0, a_qeltvapi_record_pvr_get_recording_file_name(handle, name, 511));
        return name;
    }
    static std::string pathOf(uint32_t handle) {
        return television->statePath() + "/recordings/" + nameOf(handle);
    }
    static void deleteAll() {
        uint32_t count = 0;
        a_qeltvapi_mmp_get_pvr_browser_recording_file_num(&count);
        while (count-- > 0) {
            EXPECT_EQ(0, a_qeltvapi_mmp_pvr_browser_delete_file_by_index(count));
        }
    }

    /** Ids of channels: two of one stream, and one of another. */
    struct Channels {
        uint32_t first = 0, same = 0, other = 0;
    };
    static Channels channels() {
        Channels found;
        QELTV_SOURCE_RECORD_T a{}, b{};
        for (uint32_t id = 0x04000001; id < 0x04000040 && found.other * found.same == 0; ++id) {
            const int handle = a_qeltvapi_record_pvr_open(id);
            if (handle == 0) continue;
            a_qeltvapi_record_pvr_close(static_cast<uint32_t>(handle));
            if (found.first == 0) {
                found.first = a.id = id;
                continue;
            }
            b.id = id;
            (a_qeltvapi_record_pvr_chk_src_conflict(&a, &b) == 1 ? found.other : found.same) = id;
        }
        return found;
    }

    static Daemon* television;
};

Daemon* Recording::television = nullptr;

TEST_F(Recording, WritesAStreamUntilItsLimitAndIsListedAfterwards) {
    SetUpDisk(64, 1024);
    const auto handle = static_cast<uint32_t>(a_qeltvapi_record_pvr_open(channels().first));
    ASSERT_GT(handle, 0u);
    ASSERT_EQ(0,
              a_qeltvapi_pvr_set_event_extra(QELTV_COMMAND_PROGRAMME_NAME, handle, 0, "Late film"));
    ASSERT_EQ(0, a_qeltvapi_pvr_set_event_extra(QELTV_COMMAND_RATING, handle, 12, ""));
    ASSERT_EQ(0, a_qeltvapi_record_pvr_set_mode(handle, QELTV_RECORDING_MODE_KIB, 512, 4096));
    ASSERT_EQ(0, a_qeltvapi_record_pvr_set_recording_file_name(handle, "film.ts"));
    EXPECT_EQ(QELTV_BAD_VALUE, a_qeltvapi_record_pvr_set_recording_file_name(handle, "../film.ts"));
    const auto before = time(nullptr);
    ASSERT_EQ(0, a_qeltvapi_record_pvr_start(handle));
    EXPECT_EQ(static_cast<int>(handle), a_qeltvapi_record_pvr_get_current_handle());
    uint64_t reason = 0;
    ASSERT_TRUE(sRecordings.wait(QELTV_RECORDING_STOPPED_EVENT, handle, &reason));
    EXPECT_EQ(uint64_t{QELTV_STOP_TIME}, reason);
    EXPECT_EQ(QELTV_RECORDING_STOPPED, a_qeltvapi_record_pvr_get_status(handle));
    EXPECT_EQ(0, a_qeltvapi_record_pvr_get_current_handle());
    constexpr int64_t kBytes = 512 * 1024 / kPacket * kPacket;
    EXPECT_EQ(kBytes, a_qeltvapi_record_pvr_get_recording_file_size(handle));

    std::ifstream file(pathOf(handle), std::ios::binary);
    const std::vector<char> data{std::istreambuf_iterator<char>(file), {}};
    ASSERT_EQ(static_cast<size_t>(kBytes), data.size());
    const composed::PacketCheck check(data);
    EXPECT_TRUE(check.synchronous);
    EXPECT_EQ(0u, check.breaks);
    EXPECT_EQ(1u, check.programmes.size());
    EXPECT_EQ(2u, check.components.size()) << "a picture and sound";

    const std::string path = pathOf(handle);
    char text[64];
    memset(text, '#', sizeof(text));
    ASSERT_EQ(0, a_qeltvapi_mmp_get_pvr_browser_programname_by_path(path.c_str(), text));
    EXPECT_EQ("Late film#", std::string(text, 10));
    uint32_t value = 0;
    ASSERT_EQ(0, a_qeltvapi_mmp_get_pvr_browser_first_rating_by_index(0, &value));
    EXPECT_EQ(12u, value);
    ASSERT_EQ(0, a_qeltvapi_mmp_get_pvr_browser_start_time_by_path(path.c_str(), &value));
    EXPECT_GE(value, before);
    QELTV_BROWSER_ITEM_T item{};
    ASSERT_EQ(0, a_qeltvapi_mmp_get_pvr_browser_item_by_index(0, &item));
    EXPECT_EQ(path, item.path);
    EXPECT_EQ(kBytes, item.bytes);
    EXPECT_EQ(channels().first, item.channel);
    EXPECT_EQ(QELTV_NOT_FOUND, a_qeltvapi_mmp_get_pvr_browser_item_by_index(1, &item));
    EXPECT_EQ(QELTV_NOT_FOUND,
              a_qeltvapi_mmp_get_pvr_browser_duration_by_path("/etc/passwd", &value));

    EXPECT_EQ(0, a_qeltvapi_record_pvr_close(handle));
    EXPECT_EQ(QELTV_NOT_FOUND, a_qeltvapi_record_pvr_get_status(handle));
    ASSERT_EQ(0, a_qeltvapi_mmp_pvr_browser_delete_file_by_index(0));
    EXPECT_FALSE(std::ifstream(path).good());
    uint16_t count = 77;
    ASSERT_EQ(0, a_qeltvapi_mmp_get_pvr_browser_item_count(&count));
    EXPECT_EQ(0, count);
}

TEST_F(Recording, AFullDiskReachesTheApplicationAndKeepsWhatWasWritten) {
    SetUpDisk(1, 16 * 1024);
    const uint32_t channel = channels().first;
    const auto handle = static_cast<uint32_t>(a_qeltvapi_record_pvr_open_ex(channel, 1));
    ASSERT_GT(handle, 0u);
    uint64_t error = 0;
    ASSERT_TRUE(sRecordings.wait(QELTV_RECORDING_FAILED_EVENT, handle, &error));
    EXPECT_EQ(uint64_t{QELTV_RECORDING_ERROR_DISK_FULL}, error);
    ASSERT_TRUE(sRecordings.wait(QELTV_RECORDING_STOPPED_EVENT, handle));
    EXPECT_EQ(QELTV_RECORDING_FAILED, a_qeltvapi_record_pvr_get_status(handle));
    EXPECT_EQ(QELTV_RECORDING_ERROR_DISK_FULL, a_qeltvapi_record_pvr_get_error_id(handle));
    const int64_t bytes = a_qeltvapi_record_pvr_get_recording_file_size(handle);
    EXPECT_GT(bytes, (1 << 20) - kPacket);
    EXPECT_LE(bytes, 1 << 20);
    EXPECT_EQ(int64_t{1} << 20, a_qeltvapi_record_pvr_get_disk_total_size(0));
    EXPECT_LT(a_qeltvapi_record_pvr_get_disk_free_size(0), kPacket);

    const auto second = static_cast<uint32_t>(a_qeltvapi_record_pvr_open(channel));
    EXPECT_EQ(QELTV_STORAGE, a_qeltvapi_record_pvr_start(second));
    EXPECT_EQ(QELTV_RECORDING_ERROR_DISK_FULL, a_qeltvapi_record_pvr_get_error_id(second));
    a_qeltvapi_record_pvr_close(second);
    const Ended ended = qeltvctl({"record", "start", std::to_string(channel)});
    EXPECT_EQ(1, ended.status);
    EXPECT_EQ("qeltvctl: the disk is full\n", ended.err);

    struct stat info {};
    ASSERT_EQ(0, stat(pathOf(handle).c_str(), &info));
    EXPECT_EQ(bytes, info.st_size);
    uint32_t reason = 0;
    ASSERT_EQ(0, a_qeltvapi_mmp_get_pvr_browser_stop_reason_by_index(0, &reason));
    EXPECT_EQ(QELTV_STOP_DISK_FULL, reason);
    a_qeltvapi_record_pvr_close(handle);
    deleteAll();
    EXPECT_GT(a_qeltvapi_record_pvr_get_disk_free_size(0), (1 << 20) - 4096);
}

TEST_F(Recording, OneTunerReceivesOneStreamAtATime) {
    SetUpDisk(64, 64);
    const Channels found = channels();
    ASSERT_NE(0u, found.same * found.other);
    const auto handle = static_cast<uint32_t>(a_qeltvapi_record_pvr_open_ex(found.first, 1));
    ASSERT_GT(handle, 0u);
    const auto other = static_cast<uint32_t>(a_qeltvapi_record_pvr_open(found.other));
    EXPECT_EQ(QELTV_REFUSED, a_qeltvapi_record_pvr_start(other));
    EXPECT_EQ(QELTV_RECORDING_ERROR_TUNER_BUSY, a_qeltvapi_record_pvr_get_error_id(other));
    const auto same = static_cast<uint32_t>(a_qeltvapi_record_pvr_open_ex(found.same, 1));
    EXPECT_GT(same, 0u);
    for (const uint32_t each : {handle, other, same}) a_qeltvapi_record_pvr_close(each);

    QELTV_SCHEDULE_RECORD_T booking{};
    booking.channel = found.first;
    booking.start = time(nullptr) + 48 * 3600;
    booking.seconds = 600;
    const int first = a_qeltvapi_set_schedule_record(&booking, 0);
    EXPECT_GT(first, 0);
    booking.channel = found.same;
    EXPECT_GT(a_qeltvapi_set_schedule_record(&booking, 0), 0);
    booking.channel = found.other;
    booking.start += 599;
    EXPECT_EQ(QELTV_REFUSED, a_qeltvapi_set_schedule_record(&booking, 0));
    // A day before there is room, but not for one that comes back the day after.
    booking.start -= 24 * 3600;
    booking.repeat = QELTV_BOOKING_DAILY;
    EXPECT_EQ(QELTV_REFUSED, a_qeltvapi_set_schedule_record(&booking, 0));
    EXPECT_GT(a_qeltvapi_set_schedule_record(&booking, QELTV_BOOK_IN_SPITE_OF_CONFLICT), 0);
    booking.repeat = QELTV_BOOKING_ONCE;
    EXPECT_EQ(3, a_qeltvapi_pvr_get_booking_count());
    booking.seconds = 0;
    EXPECT_EQ(QELTV_BAD_VALUE, a_qeltvapi_set_schedule_record(&booking, 0));
    booking.seconds = 60;
    booking.channel = 1;
    EXPECT_EQ(QELTV_NOT_FOUND, a_qeltvapi_set_schedule_record(&booking, 0));

    QELTV_SCHEDULE_RECORD_T read{};
    ASSERT_EQ(0, a_qeltvapi_get_schedule_record(&read, 1));
    EXPECT_EQ(static_cast<uint32_t>(first), read.booking) << "in the order of their times";
    EXPECT_STRNE("", read.channelName);
    EXPECT_EQ(QELTV_NOT_FOUND, a_qeltvapi_get_schedule_record(&read, 3));
    for (int i = 3; i-- > 0;) EXPECT_EQ(0, a_qeltvapi_del_schedule_record(0));
    EXPECT_EQ(QELTV_NOT_FOUND, a_qeltvapi_del_schedule_record(0));
    deleteAll();
}

TEST_F(Recording, ABookingStartsByItself) {
    SetUpDisk(64, 256);
    QELTV_SCHEDULE_RECORD_T booking{};
    booking.channel = channels().first;
    booking.start = time(nullptr) + 1;
    booking.seconds = 2;
    strcpy(booking.programme, "Early news");
    const int number = a_qeltvapi_set_schedule_record(&booking, 0);
    ASSERT_GT(number, 0);
    ASSERT_TRUE(sRecordings.wait(QELTV_BOOKING_STORED_EVENT, static_cast<uint64_t>(number)));
    uint64_t of = 0;
    ASSERT_TRUE(sRecordings.wait(QELTV_RECORDING_STARTED_EVENT, 0, &of));
    EXPECT_EQ(static_cast<uint64_t>(number), of);
    EXPECT_GE(time(nullptr), booking.start);
    const auto handle = static_cast<uint32_t>(a_qeltvapi_record_pvr_get_current_handle());
    ASSERT_GT(handle, 0u);
    ASSERT_TRUE(sRecordings.wait(QELTV_RECORDING_STOPPED_EVENT, handle));
    EXPECT_EQ(0, a_qeltvapi_pvr_get_booking_count());
    char name[32] = "";
    ASSERT_EQ(0, a_qeltvapi_mmp_get_pvr_browser_programname_by_index(0, name));
    EXPECT_STREQ("Early news", name);
    deleteAll();
}

TEST_F(Recording, DisksAreRegisteredByAFileOfTheTelevision) {
    const TemporaryDirectory directory;
    const char* const path = directory.path().c_str();
    QELTV_DISK_RECORD_T disk{};
    disk.disk = 1;
    EXPECT_EQ(QELTV_NOT_FOUND, a_qeltvapi_record_pvr_set_disk(0, path, &disk));
    EXPECT_EQ(QELTV_NOT_FOUND, a_qeltvapi_record_check_register_file(path, 0));
    ASSERT_EQ(0, a_qeltvapi_record_create_register_file(path));
    EXPECT_EQ(0, a_qeltvapi_record_check_register_file(path, 1));
    ASSERT_EQ(0, a_qeltvapi_record_pvr_set_disk(0, path, &disk));
    EXPECT_GT(a_qeltvapi_record_hdd_speed_test(path, 1), 0);
    std::ofstream(directory.path() + "/.qeltv-disk") << "another";
    EXPECT_EQ(0, a_qeltvapi_record_check_register_file(path, 0));
    EXPECT_EQ(QELTV_REFUSED, a_qeltvapi_record_check_register_file(path, 1));

    // A recording on a disk that is pulled out ends, and what it had is listed.
    const auto handle = static_cast<uint32_t>(a_qeltvapi_record_pvr_open(channels().first));
    ASSERT_EQ(0, a_qeltvapi_record_create_register_file(path));
    ASSERT_EQ(0, a_qeltvapi_record_pvr_set_disk(handle, path, &disk));
    ASSERT_EQ(0, a_qeltvapi_record_pvr_start(handle));
    ASSERT_TRUE(
            eventually([&] { return a_qeltvapi_record_pvr_get_recording_file_size(handle) > 0; }));
    ASSERT_EQ(0, a_qeltvapi_pvr_set_event(QELTV_COMMAND_DISK_REMOVED, 1));
    uint64_t error = 0;
    ASSERT_TRUE(sRecordings.wait(QELTV_RECORDING_FAILED_EVENT, handle, &error));
    EXPECT_EQ(uint64_t{QELTV_RECORDING_ERROR_DISK_GONE}, error);
    EXPECT_EQ(0, a_qeltvapi_record_pvr_get_disk_free_size(1));
    EXPECT_EQ(QELTV_NOT_FOUND, a_qeltvapi_record_pvr_get_disk_free_size(7));
    a_qeltvapi_record_pvr_close(handle);
    deleteAll();
}

TEST_F(Recording, TimeshiftPositionsMoveWithTime) {
    const TemporaryDirectory directory;
    EXPECT_EQ(QELTV_REFUSED, a_qeltvapi_timeshift_start());
    EXPECT_EQ(QELTV_BAD_VALUE, a_qeltvapi_timeshift_registerDevice("relative", 1 << 20));
    EXPECT_EQ(QELTV_STORAGE,
              a_qeltvapi_timeshift_registerDevice(directory.path().c_str(), INT64_C(1) << 60));
    EXPECT_EQ(QELTV_RECORDING_ERROR_DISK_FULL, a_qeltvapi_timeshift_get_error_id());
    ASSERT_EQ(0, a_qeltvapi_timeshift_registerDevice(directory.path().c_str(), 2 << 20));
    EXPECT_EQ(QELTV_DEVICE_REGISTERS, a_qeltvapi_timeshift_get_device_status());
    ASSERT_TRUE(sTimeshift.wait(QELTV_TIMESHIFT_DEVICE_EVENT, QELTV_DEVICE_READY));
    EXPECT_EQ(100, a_qeltvapi_timeshift_get_registerdevice_schedule());

    ASSERT_EQ(0, a_qeltvapi_timeshift_start());
    ASSERT_EQ(0, a_qeltvapi_timeshift_pause());
    const int64_t paused = a_qeltvapi_timeshift_get_current_position();
    ASSERT_TRUE(eventually([] { return a_qeltvapi_timeshift_get_duration() > 300; }));
    EXPECT_EQ(paused, a_qeltvapi_timeshift_get_current_position());
    // Faster, the viewer catches up with what is broadcast.
    ASSERT_EQ(0, a_qeltvapi_timeshift_trickplay(800));
    ASSERT_TRUE(sTimeshift.wait(QELTV_TIMESHIFT_LIVE_EVENT, 0));
    EXPECT_GE(a_qeltvapi_timeshift_get_current_position(), 300);
    EXPECT_EQ(QELTV_BAD_VALUE, a_qeltvapi_timeshift_seek(1000000));
    ASSERT_EQ(0, a_qeltvapi_timeshift_seek(100));
    ASSERT_EQ(0, a_qeltvapi_timeshift_pause());
    // The buffer fills, and then its begin comes to the viewer.
    ASSERT_TRUE(sTimeshift.wait(QELTV_TIMESHIFT_STATUS_EVENT, QELTV_TIMESHIFT_FULL));
    ASSERT_TRUE(sTimeshift.wait(QELTV_TIMESHIFT_BEGIN_EVENT, 0));
    EXPECT_GT(a_qeltvapi_timeshift_get_start_position(), 0);
    EXPECT_GE(a_qeltvapi_timeshift_get_current_position(), 100);
    EXPECT_NEAR(2000., static_cast<double>(a_qeltvapi_timeshift_get_duration()), 100);
    EXPECT_EQ(QELTV_TIMESHIFT_FULL, a_qeltvapi_timeshift_get_record_status());

    ASSERT_EQ(0, a_qeltvapi_timeshift_stop_ex(QELTV_TIMESHIFT_STOP_KEEP));
    const int64_t start = a_qeltvapi_timeshift_get_start_position();
    ASSERT_TRUE(sTimeshift.wait(QELTV_TIMESHIFT_LIVE_EVENT, 0))
            << "playing ends where the buffer does";
    EXPECT_EQ(start, a_qeltvapi_timeshift_get_start_position());
    ASSERT_EQ(0, a_qeltvapi_timeshift_stop());
    EXPECT_EQ(QELTV_REFUSED, a_qeltvapi_timeshift_play());
    EXPECT_EQ(0, a_qeltvapi_timeshift_get_duration());
}

/** A television that is killed: only the tool speaks to it, each time a process of its own. */
TEST(RecordingAfterACrash, WhatWasAcknowledgedIsThereAndBookingsStillStart) {
    Daemon television;
    television.start();
    constexpr char kChannel[] = "67108865";
    const auto json = [](std::vector<std::string> arguments) {
        arguments.push_back("--json");
        const Ended ended = qeltvctl(arguments);
        EXPECT_EQ(0, ended.status) << ended.err;
        return nlohmann::json::parse(ended.out);
    };
    ASSERT_EQ(0, qeltvctl({"record", "start", kChannel, "--programme", "Cut off"}).status);
    int64_t bytes = 0;
    ASSERT_TRUE(eventually([&] {
        bytes = json({"record", "status"})["recording"]["bytes"];
        return bytes > 0;
    }));
    ASSERT_EQ(0, qeltvctl({"record", "schedule", kChannel, "+2", "60", "--programme", "Later",
                           "--force"})
                         .status);
    television.kill();
    television.start();

    auto list = json({"record", "list"});
    ASSERT_EQ(1u, list.size());
    EXPECT_GE(list[0]["bytes"], bytes);
    EXPECT_EQ("power lost", list[0]["stop_reason"]);
    EXPECT_EQ("Cut off", list[0]["programme"]);
    struct stat info {};
    ASSERT_EQ(0, stat(list[0]["path"].get<std::string>().c_str(), &info));
    EXPECT_EQ(list[0]["bytes"], info.st_size);
    EXPECT_EQ(0, info.st_size % kPacket);

    ASSERT_TRUE(eventually([&] { return json({"record", "schedule"})[0]["state"] == "runs"; }));
    const Ended stopped = qeltvctl({"record", "stop"});
    EXPECT_EQ(0, stopped.status) << stopped.err;
    EXPECT_EQ(0u, json({"record", "schedule"}).size());
    EXPECT_EQ("Later", json({"record", "list"})[1]["programme"]);
    EXPECT_EQ(0, qeltvctl({"record", "delete", "0"}).status);
    EXPECT_EQ(1u, json({"record", "list"}).size());
    EXPECT_EQ(1, qeltvctl({"record", "stop"}).status);
}

TEST(RecordingAfterACrash, NamesAndDisksThatAreAwayLoseNoRecording) {
    Daemon television;
    television.start();
    const auto call = [](std::vector<std::string> words) {
        words.insert(words.begin(), "call");
        words[1] = "a_qeltvapi_" + words[1];
        words.push_back("--json");
        const Ended ended = qeltvctl(words);
        EXPECT_EQ(0, ended.status) << words[1] << ": " << ended.err;
        return std::to_string(nlohmann::json::parse(ended.out)["result"].get<int>());
    };
    const auto paths = [] {
        std::vector<std::string> all;
        for (const auto& each : nlohmann::json::parse(qeltvctl({"record", "list", "--json"}).out)) {
            all.push_back(each["path"]);
        }
        return all;
    };
    const std::string own = television.statePath() + "/recordings/";
    const TemporaryDirectory place;
    const std::string disk = place.path() + "/disk", away = place.path() + "/away";
    ASSERT_EQ(0, mkdir(disk.c_str(), 0700));
    const std::string kDiskOne = "0100000000000000000000000000000000000000";
    call({"record_create_register_file", disk});
    call({"record_pvr_set_disk", "0", disk, kDiskOne});

    // A name is only a name, also where it looks like a file that is being deleted.
    const std::vector<std::string> kNames = {"film.deleting", "film.ts.deleting", "film.ts"};
    for (const std::string& name : kNames) {
        const std::string handle = call({"record_pvr_open", "67108865"});
        call({"record_pvr_set_recording_file_name", handle, name});
        call({"record_pvr_set_mode", handle, "2", "16", "1024"});
        call({"record_pvr_start", handle});
        ASSERT_TRUE(eventually([&] { return call({"record_pvr_get_status", handle}) == "2"; }));
        call({"record_pvr_close", handle});
    }
    const std::string cut = call({"record_pvr_open", "67108865"});
    call({"record_pvr_set_disk", cut, disk, kDiskOne});
    call({"record_pvr_set_recording_file_name", cut, "cut.ts"});
    call({"record_pvr_start", cut});
    ASSERT_TRUE(eventually([&] {
        return call({"record_pvr_get_recording_file_size", cut}) != "0";
    }));
    television.kill();

    // Two deletions that a crash has interrupted, of which one had not been stored.
    ASSERT_EQ(0, rename((own + "film.ts").c_str(), (own + ".qeltv-deleting.film.ts").c_str()));
    std::ofstream(own + ".qeltv-deleting.gone.ts") << "x";
    // An empty directory stands in the place of the disk.
    ASSERT_EQ(0, rename(disk.c_str(), away.c_str()));
    ASSERT_EQ(0, mkdir(disk.c_str(), 0700));
    for (int start = 0; start < 2; ++start) {
        television.start();
        EXPECT_EQ((std::vector<std::string>{own + kNames[0], own + kNames[1], own + kNames[2]}),
                  paths());
        for (const std::string& name : kNames) {
            EXPECT_TRUE(std::ifstream(own + name).good()) << name;
        }
        EXPECT_FALSE(std::ifstream(own + ".qeltv-deleting.gone.ts").good());
        if (start == 0) television.kill();
    }
    // It comes back.
    ASSERT_EQ(0, rmdir(disk.c_str()));
    ASSERT_EQ(0, rename(away.c_str(), disk.c_str()));
    call({"pvr_set_event", std::to_string(QELTV_COMMAND_DISK_INSERTED), "1"});
    ASSERT_EQ(4u, paths().size());
    EXPECT_EQ(disk + "/cut.ts", paths()[3]);
    const Ended list = qeltvctl({"record", "list"});
    EXPECT_NE(std::string::npos, list.out.find("power lost")) << list.out;
}

}  // namespace
