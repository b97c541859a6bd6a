#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <nlohmann/json.hpp>

#include "channel_data.h"
#include "hw_qeltvapi_pvr_browser.h"
#include "hw_qeltvapi_record.h"
#include "hw_qeltvapi_timeshift.h"
#include "layouts/codes.h"
#include "layouts/record.h"
#include "local_time.h"
#include "tool.h"

namespace tool {
namespace {

using Json = nlohmann::ordered_json;

std::string localTime(int64_t utc) {
    return timeText(localFields(utc));
}

/**
 * "+90" is in 90 seconds, a plain number UTC seconds, else local time of the television as
 * localTime() prints it.
 */
int64_t parseTime(const std::string& text) {
    char* end = nullptr;
    errno = 0;
    const long long number = strtoll(text.c_str(), &end, 10);
    if (!text.empty() && *end == 0 && errno == 0) {
        return text[0] == '+' ? televisionTime() + number : number;
    }
    return localTimeIn(text);
}

const char* nameOfError(int error) {
    switch (error) {
        case QELTV_RECORDING_ERROR_NONE:
            return "";
        case QELTV_RECORDING_ERROR_DISK_FULL:
            return "the disk is full";
        case QELTV_RECORDING_ERROR_DISK_GONE:
            return "the disk is not there";
        case QELTV_RECORDING_ERROR_WRITE:
            return "the disk cannot be written";
        case QELTV_RECORDING_ERROR_NO_CHANNEL:
            return "there is no such channel";
        case QELTV_RECORDING_ERROR_TUNER_BUSY:
            return "the tuner is busy with another recording";
        default:
            return "unknown error";
    }
}

const char* nameOfStatus(int status) {
    constexpr const char* kNames[] = {"open", "runs", "stopped", "failed", "stopping"};
    return status >= 0 && status < 5 ? kNames[status] : "unknown";
}

const char* nameOfReason(uint32_t reason) {
    constexpr const char* kNames[] = {"",     "by user",    "time over", "disk full",
                                      "disk", "power lost", "standby"};
    return reason < 7 ? kNames[reason] : "unknown";
}

const char* nameOfState(uint32_t state) {
    constexpr const char* kNames[] = {"waits", "runs", "missed", "failed"};
    return state < 4 ? kNames[state] : "unknown";
}

const char* nameOfRepeat(uint32_t repeat) {
    constexpr const char* kNames[] = {"once", "daily", "weekly"};
    return repeat < 3 ? kNames[repeat] : "unknown";
}

std::string mib(int64_t bytes) {
    char text[32];
    snprintf(text, sizeof(text), "%.1f MiB", static_cast<double>(bytes) / (1 << 20));
    return text;
}

struct Options {
    uint32_t seconds = 0, rate = 0, handle = 0, index = 0, limit = 0;
    std::string channel, file, programme, start, repeat = "once";
    bool json = false, force = false;
};

void startRecording(const Options& options) {
    requireService();
    const uint32_t channel = options.channel.empty() ? 0 : channelIdOf(options.channel);
    const int opened = a_qeltvapi_record_pvr_open(channel);
    if (opened <= 0) {
        throw Failure(kRefused, channel == 0
                                        ? "no channel is being watched; name one to record"
                                        : "channel " + options.channel + " cannot be recorded");
    }
    const auto handle = static_cast<uint32_t>(opened);
    try {
        if (!options.file.empty()) {
            check(a_qeltvapi_record_pvr_set_recording_file_name(handle, options.file.c_str()),
                  options.file);
        }
        if (!options.programme.empty()) {
            check(a_qeltvapi_pvr_set_event_extra(QELTV_COMMAND_PROGRAMME_NAME, handle, 0,
                                                 options.programme.c_str()),
                  options.programme);
        }
        check(a_qeltvapi_record_pvr_set_mode(handle,
                                             options.seconds != 0 ? QELTV_RECORDING_MODE_SECONDS
                                                                  : QELTV_RECORDING_MODE_ENDLESS,
                                             static_cast<int32_t>(options.seconds), options.rate),
              "mode");
        if (a_qeltvapi_record_pvr_start(handle) < 0) {
            throw Failure(kRefused, nameOfError(a_qeltvapi_record_pvr_get_error_id(handle)));
        }
    } catch (...) {
        a_qeltvapi_record_pvr_close(handle);
        throw;
    }
    AnswerBuffer name(512);
    check(a_qeltvapi_record_pvr_get_recording_file_name(handle, name.text(), 511), "file name");
    if (options.json) {
        printJson(Json{{"recording", handle}, {"file", name.text()}});
    } else {
        printf("recording %u: %s\n", handle, printable(name.text()).c_str());
    }
}

uint32_t chosen(uint32_t handle) {
    if (handle != 0) return handle;
    handle = static_cast<uint32_t>(a_qeltvapi_record_pvr_get_current_handle());
    if (handle == 0) throw Failure(kRefused, "nothing is being recorded");
    return handle;
}

void stopRecording(const Options& options) {
    requireService();
    const uint32_t handle = chosen(options.handle);
    const std::string what = "recording " + std::to_string(handle);
    const int code = a_qeltvapi_record_pvr_stop(handle);
    if (code < 0) {
        const int error = a_qeltvapi_record_pvr_get_error_id(handle);
        if (error > 0) throw Failure(kRefused, what + ": " + nameOfError(error));
        check(code, what);
    }
    const int64_t bytes = a_qeltvapi_record_pvr_get_recording_file_size(handle);
    const int seconds = a_qeltvapi_get_recording_position(handle);
    check(a_qeltvapi_record_pvr_close(handle), what);
    printf("%s: %d s, %s\n", what.c_str(), seconds, mib(bytes).c_str());
}

void showStatus(const Options& options) {
    requireService();
    const uint32_t handle =
            options.handle != 0 ? options.handle
                                : static_cast<uint32_t>(a_qeltvapi_record_pvr_get_current_handle());
    Json json{{"disk",
               {{"total", a_qeltvapi_record_pvr_get_disk_total_size(0)},
                {"free", a_qeltvapi_record_pvr_get_disk_free_size(0)}}},
              {"bookings", check(a_qeltvapi_pvr_get_booking_count(), "bookings")}};
    if (handle != 0) {
        const auto status = check(a_qeltvapi_record_pvr_get_status(handle),
                                  "recording " + std::to_string(handle));
        AnswerBuffer name(512);
        a_qeltvapi_record_pvr_get_recording_file_name(handle, name.text(), 511);
        json["recording"] = {{"recording", handle},
                             {"status", nameOfStatus(static_cast<int>(status))},
                             {"error", nameOfError(a_qeltvapi_record_pvr_get_error_id(handle))},
                             {"seconds", a_qeltvapi_get_recording_position(handle)},
                             {"bytes", a_qeltvapi_record_pvr_get_recording_file_size(handle)},
                             {"file", name.text()}};
    }
    if (options.json) {
        printJson(json);
        return;
    }
    printf("disk       %s free of %s\n", mib(json["disk"]["free"]).c_str(),
           mib(json["disk"]["total"]).c_str());
    printf("bookings   %d\n", json["bookings"].get<int>());
    if (handle == 0) {
        printf("recording  none\n");
        return;
    }
    const Json& recording = json["recording"];
    const std::string error = recording["error"];
    printf("recording  %u %s%s%s, %d s, %s, %s\n", handle,
           recording["status"].get<std::string>().c_str(), error.empty() ? "" : ": ", error.c_str(),
           recording["seconds"].get<int>(), mib(recording["bytes"]).c_str(),
           printable(recording["file"].get<std::string>()).c_str());
}

std::vector<QELTV_SCHEDULE_RECORD_T> readBookings() {
    std::vector<QELTV_SCHEDULE_RECORD_T> bookings;
    const auto count = check(a_qeltvapi_pvr_get_booking_count(), "bookings");
    for (uint32_t i = 0; i < count; ++i) {
        QELTV_SCHEDULE_RECORD_T record{};
        if (a_qeltvapi_get_schedule_record(&record, i) < 0) break;
        bookings.push_back(record);
    }
    return bookings;
}

void schedule(const Options& options, bool add) {
    requireService();
    if (!add) {
        std::vector<std::vector<std::string>> rows{
                {"NUMBER", "START", "SECONDS", "REPEAT", "STATE", "CHANNEL", "PROGRAMME"}};
        Json json = Json::array();
        for (const QELTV_SCHEDULE_RECORD_T& b : readBookings()) {
            rows.push_back({std::to_string(b.booking), localTime(b.start),
                            std::to_string(b.seconds), nameOfRepeat(b.repeat), nameOfState(b.state),
                            b.channelName, b.programme});
            json.push_back({{"number", b.booking},
                            {"channel", b.channel},
                            {"channel_name", b.channelName},
                            {"start", b.start},
                            {"seconds", b.seconds},
                            {"repeat", nameOfRepeat(b.repeat)},
                            {"state", nameOfState(b.state)},
                            {"error", nameOfError(static_cast<int>(b.error))},
                            {"programme", b.programme}});
        }
        if (options.json) {
            printJson(json);
        } else {
            printTable(rows);
        }
        return;
    }
    QELTV_SCHEDULE_RECORD_T record{};
    record.channel = channelIdOf(options.channel);
    record.start = parseTime(options.start);
    record.seconds = options.seconds;
    record.repeat = options.repeat == "daily"    ? QELTV_BOOKING_DAILY
                    : options.repeat == "weekly" ? QELTV_BOOKING_WEEKLY
                                                 : QELTV_BOOKING_ONCE;
    record.rate = options.rate;
    snprintf(record.programme, sizeof(record.programme), "%s", options.programme.c_str());
    const int number = a_qeltvapi_set_schedule_record(
            &record, options.force ? QELTV_BOOK_IN_SPITE_OF_CONFLICT : 0);
    if (number == QELTV_REFUSED)
        throw Failure(kRefused, "another booking is in the way; --force books in spite of it");
    if (number == QELTV_NOT_FOUND) {
        throw Failure(kRefused, "there is no channel " + options.channel);
    }
    check(number, "booking");
    printf("booking %d\n", number);
}

void unschedule(uint32_t number) {
    requireService();
    const auto bookings = readBookings();
    for (uint32_t i = 0; i < bookings.size(); ++i) {
        if (bookings[i].booking != number) continue;
        check(a_qeltvapi_del_schedule_record(i), "booking " + std::to_string(number));
        return;
    }
    throw Failure(kRefused, "there is no booking " + std::to_string(number));
}

/** Whether a recording can be played, and if not, why. */
struct Playable {
    enum Answer { kYes, kNo, kUnknown } answer;
    const char* why;

    const char* text() const { return answer == kYes ? "yes" : answer == kNo ? "no" : "unknown"; }
    Json json() const { return answer == kUnknown ? Json(nullptr) : Json(answer == kYes); }
};

/**
 * Looks for a programme association table in the file. A player finds nothing in a transport stream
 * without one.
 */
Playable playable(const std::string& path) {
    constexpr size_t kPacket = 188, kPackets = 16384;
    // Never waits, as it would for the writer of a pipe.
    const int fd = open(path.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC);
    struct stat about {};
    if (fd < 0 || fstat(fd, &about) != 0 || !S_ISREG(about.st_mode)) {
        if (fd >= 0) close(fd);
        return {Playable::kUnknown, "the file cannot be read from here"};
    }
    const std::unique_ptr<FILE, int (*)(FILE*)> file(fdopen(fd, "rb"), fclose);
    unsigned char packet[kPacket];
    for (size_t i = 0; i < kPackets && fread(packet, kPacket, 1, file.get()) == 1; ++i) {
        if (packet[0] != 0x47) return {Playable::kNo, "the file is no transport stream"};
        if (((packet[1] & 0x1f) << 8 | packet[2]) == 0) return {Playable::kYes, ""};
    }
    return {Playable::kNo, "its stream is simulated: no programme, video or sound"};
}

struct Recorded {
    QELTV_BROWSER_ITEM_T item{};
    std::string path, channel, programme;
    Playable playable{Playable::kUnknown, ""};

    std::string file() const { return path.substr(path.rfind('/') + 1); }
    Json json(uint32_t index) const {
        return {{"index", index},
                {"path", path},
                {"channel", item.channel},
                {"channel_name", channel},
                {"programme", programme},
                {"start", item.start},
                {"seconds", item.seconds},
                {"bytes", item.bytes},
                {"stop_reason", nameOfReason(item.stopReason)},
                {"rating", item.rating},
                {"retention", item.retention},
                {"playable", playable.json()},
                {"not_playable_because", playable.why}};
    }
};

Recorded readRecording(uint32_t index) {
    // Longer answers are stored whole.
    AnswerBuffer buffer;
    check(a_qeltvapi_mmp_get_pvr_browser_item_by_index(index, buffer.data()),
          "recording " + std::to_string(index));
    Recorded recorded;
    memcpy(&recorded.item, buffer.data(), sizeof(recorded.item));
    recorded.path = textOf(recorded.item.path);
    recorded.channel = textOf(recorded.item.channelName);
    recorded.programme = textOf(recorded.item.programme);
    recorded.playable = playable(recorded.path);
    return recorded;
}

void listRecordings(bool asJson) {
    requireService();
    uint32_t count = 0;
    check(a_qeltvapi_mmp_get_pvr_browser_recording_file_num(&count), "recordings");
    std::vector<std::vector<std::string>> rows{{"INDEX", "START", "SECONDS", "SIZE", "PLAYABLE",
                                                "ENDED", "CHANNEL", "PROGRAMME", "FILE"}};
    Json json = Json::array();
    for (uint32_t i = 0; i < count; ++i) {
        const Recorded one = readRecording(i);
        rows.push_back({std::to_string(i), localTime(one.item.start),
                        std::to_string(one.item.seconds), mib(one.item.bytes), one.playable.text(),
                        nameOfReason(one.item.stopReason), one.channel, one.programme, one.file()});
        json.push_back(one.json(i));
    }
    if (asJson) {
        printJson(json);
    } else {
        printTable(rows);
    }
}

void showRecording(uint32_t index, bool asJson) {
    requireService();
    const Recorded one = readRecording(index);
    if (asJson) {
        printJson(one.json(index));
        return;
    }
    const std::string why = one.playable.why;
    printTable({{"programme", one.programme},
                {"channel", one.channel},
                {"start", localTime(one.item.start)},
                {"length", std::to_string(one.item.seconds) + " s, " + mib(one.item.bytes)},
                {"ended", nameOfReason(one.item.stopReason)},
                {"playable", one.playable.text() + (why.empty() ? "" : ": " + why)},
                {"file", one.path}});
}

void setDisk(const Options& options) {
    requireService();
    QELTV_DISK_RECORD_T record{};
    const uint64_t bytes = uint64_t{options.limit} << 20;
    record.limitLow = static_cast<uint32_t>(bytes);
    record.limitHigh = static_cast<uint32_t>(bytes >> 32);
    record.rate = options.rate * 1024;
    check(a_qeltvapi_record_pvr_set_disk(0, "", &record), "disk");
}

const char* nameOfTimeshift(int64_t status) {
    constexpr const char* kNames[] = {"idle", "records", "full", "kept"};
    return status >= 0 && status < 4 ? kNames[status] : "unknown";
}

const char* nameOfDevice(int64_t status) {
    constexpr const char* kNames[] = {"none", "registers", "ready", "failed"};
    return status >= 0 && status < 4 ? kNames[status] : "unknown";
}

void showTimeshift(bool asJson) {
    requireService();
    const Json json{{"device", nameOfDevice(a_qeltvapi_timeshift_get_device_status())},
                    {"progress", a_qeltvapi_timeshift_get_registerdevice_schedule()},
                    {"status", nameOfTimeshift(a_qeltvapi_timeshift_get_record_status())},
                    {"error", nameOfError(a_qeltvapi_timeshift_get_error_id())},
                    {"start_ms", a_qeltvapi_timeshift_get_start_position()},
                    {"position_ms", a_qeltvapi_timeshift_get_current_position()},
                    {"duration_ms", a_qeltvapi_timeshift_get_duration()}};
    if (asJson) {
        printJson(json);
        return;
    }
    const auto seconds = [&](const char* name) { return json[name].get<double>() / 1000; };
    printf("device    %s (%d %%)\n", json["device"].get<std::string>().c_str(),
           json["progress"].get<int>());
    printf("status    %s %s\n", json["status"].get<std::string>().c_str(),
           json["error"].get<std::string>().c_str());
    printf("buffer    %.1f s from %.1f s\n", seconds("duration_ms"), seconds("start_ms"));
    printf("position  %.1f s\n", seconds("position_ms"));
}

}  // namespace

void addRecord(Command& app) {
    Command* record = app.addCommand("record", "Recordings and bookings");
    record->requireCommand();
    auto options = std::make_shared<Options>();

    Command* command = record->addCommand("start", "Record a channel");
    command->addOption("channel", options->channel,
                       std::string(kChannelHelp) + "; the one that is watched by default");
    command->addOption("--seconds", options->seconds, "End after this time");
    command->addOption("--file", options->file, "Name of the file");
    command->addOption("--programme", options->programme, "Name of the programme");
    command->addOption("--rate", options->rate, "KiB per second");
    addJson(command, &options->json);
    command->callback([options] { startRecording(*options); });

    command = record->addCommand("stop", "End a recording");
    command->addOption("recording", options->handle, "Its number; the newest that runs by default");
    command->callback([options] { stopRecording(*options); });

    command = record->addCommand("status", "Disk, bookings and a recording");
    command->addOption("recording", options->handle, "Its number; the newest that runs by default");
    addJson(command, &options->json);
    command->callback([options] { showStatus(*options); });

    command = record->addCommand("schedule", "Book a recording, or list what is booked");
    Option* channel = command->addOption("channel", options->channel, kChannelHelp);
    Option* start = command->addOption("start", options->start,
                                       "\"2026-11-21 20:15\", UTC seconds, or +SECONDS from now");
    Option* seconds = command->addOption("seconds", options->seconds, "Length");
    channel->needs(start);
    start->needs(seconds);
    command->addOption("--repeat", options->repeat, "once, daily or weekly")
            ->among({"once", "daily", "weekly"});
    command->addOption("--programme", options->programme, "Name of the programme");
    command->addOption("--rate", options->rate, "KiB per second");
    command->addFlag("--force", options->force, "Even with another booking in the way");
    addJson(command, &options->json);
    command->callback([options, channel] { schedule(*options, channel->given()); });

    command = record->addCommand("unschedule", "Delete a booking");
    command->addOption("number", options->index, "Number of the booking")->required();
    command->callback([options] { unschedule(options->index); });

    command = record->addCommand("list", "List what has been recorded");
    addJson(command, &options->json);
    command->callback([options] { listRecordings(options->json); });

    command = record->addCommand("info", "Show a recording, and whether it can be played");
    command->addOption("index", options->index, "Place in the list")->required();
    addJson(command, &options->json);
    command->callback([options] { showRecording(options->index, options->json); });

    command = record->addCommand("delete", "Delete a recording");
    command->addOption("index", options->index, "Place in the list")->required();
    command->callback([options] {
        requireService();
        check(a_qeltvapi_mmp_pvr_browser_delete_file_by_index(options->index),
              "recording " + std::to_string(options->index));
    });

    command = record->addCommand("disk", "Set limits of the television's own disk");
    command->addOption("--limit", options->limit, "MiB that recordings may take, 0 for no limit")
            ->required();
    command->addOption("--rate", options->rate, "KiB per second of recordings");
    command->callback([options] { setDisk(*options); });
}

void addTimeshift(Command& app) {
    Command* timeshift = app.addCommand("timeshift", "Pause and rewind what is broadcast");
    timeshift->requireCommand();
    struct Shift {
        std::string path;
        int64_t mib = 0;
        double seconds = 0;
        int32_t percent = 100;
        bool json = false, keep = false, on = true;
    };
    auto options = std::make_shared<Shift>();

    Command* command = timeshift->addCommand("device", "Register the device of the buffer");
    command->addOption("path", options->path, "Directory, as the television sees it")->required();
    command->addOption("mib", options->mib,
                       "Size of the buffer; 1 MiB holds a second if it is simulated")
            ->required()
            ->between(int64_t{1}, int64_t{1} << 30);
    command->callback([options] {
        requireService();
        check(a_qeltvapi_timeshift_registerDevice(options->path.c_str(), options->mib << 20),
              options->path);
    });

    command = timeshift->addCommand("status", "Device, buffer and position");
    addJson(command, &options->json);
    command->callback([options] { showTimeshift(options->json); });

    const auto simple = [&](const char* name, const char* text, int (*function)()) {
        timeshift->addCommand(name, text)->callback([name, function] {
            requireService();
            check(function(), name);
        });
    };
    simple("start", "Start to fill the buffer", a_qeltvapi_timeshift_start);
    simple("play", "Go on as broadcast", a_qeltvapi_timeshift_play);
    simple("pause", "Stand still", a_qeltvapi_timeshift_pause);

    command = timeshift->addCommand("stop", "Stop, and go back to what is broadcast");
    command->addFlag("--keep", options->keep, "Keep what the buffer holds");
    command->callback([options] {
        requireService();
        check(options->keep ? a_qeltvapi_timeshift_stop_ex(QELTV_TIMESHIFT_STOP_KEEP)
                            : a_qeltvapi_timeshift_stop(),
              "stop");
    });

    command = timeshift->addCommand("seek", "Go to a position");
    command->addOption("seconds", options->seconds, "Since the start of the timeshift")
            ->required()
            ->between(0.0, 4.0e6);
    command->callback([options] {
        requireService();
        check(a_qeltvapi_timeshift_seek(static_cast<uint32_t>(options->seconds * 1000)), "seek");
    });

    command = timeshift->addCommand("speed", "Play faster, slower or backward");
    command->addOption("percent", options->percent, "200 twice as fast, -100 backward")->required();
    command->callback([options] {
        requireService();
        check(a_qeltvapi_timeshift_trickplay(static_cast<uint32_t>(options->percent)), "speed");
    });

    command = timeshift->addCommand("auto", "Start by itself once there is a device");
    command->addOption("on", options->on, "on or off")->required();
    command->callback([options] {
        requireService();
        check(a_qeltvapi_timeshift_set_auto_record(options->on), "auto");
    });
}

}  // namespace tool
