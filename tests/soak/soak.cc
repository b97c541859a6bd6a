// Eight threads call functions of all interfaces while the television is killed at random and
// notifications flood in. Every answer must be the right one or what the function gives without a
// service; at the end notifications must still arrive, and neither memory, descriptors nor threads
// may have grown.
//
// One thing grows by contract: each notice of a death, and each registration that meets no service,
// starts a reconnect thread that is neither joined nor detached, so the C library keeps its stack
// and its table of thread-local variables when it has ended. These threads are counted, and what
// grows beyond them is a leak.
//
//   soak [SECONDS]     10 without; the last lines report what was done and what a thread costs
//
// QELTV_SOAK_SEED repeats a run's choices as far as the scheduler lets it.

#include <dirent.h>
#include <dlfcn.h>
#include <fcntl.h>
#include <log/log.h>
#include <malloc.h>
#include <pthread.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <functional>
#include <mutex>
#include <random>
#include <set>
#include <shared_mutex>
#include <string>
#include <thread>
#include <vector>

#include "daemon.h"
#include "hw_qeltvapi_common.h"
#include "platform_calls.h"
#include "qeltvapi.h"

namespace {

using namespace std::chrono_literals;
using Clock = std::chrono::steady_clock;
using vendor::qelnova::tv::qeltvapi::V1_0::IQelTvApi;

constexpr int kCallers = 8;
constexpr size_t kRoom = 4096;
constexpr uint8_t kUntouched = 0xa5;

[[noreturn]] void fail(const std::string& what) {
    fprintf(stderr, "soak: %s\n", what.c_str());
    _exit(1);
}

// Functions that only read

/** What a function gave: its result, and what it left in the memory that it was handed. */
struct Answer {
    int64_t code = 0;
    std::vector<uint8_t> out = std::vector<uint8_t>(kRoom, kUntouched);

    bool operator==(const Answer& other) const { return code == other.code && out == other.out; }
    template <class T>
    T* as() {
        return reinterpret_cast<T*>(out.data());
    }
    std::string text() const {
        std::string text = std::to_string(code) + " with";
        char byte[4];
        for (size_t i = 0; i < 24; ++i) {
            snprintf(byte, sizeof(byte), " %02x", out[i]);
            text += byte;
        }
        return text;
    }
};

struct Question {
    const char* name;
    std::function<int64_t(Answer&)> ask;
    /** The results without a service and after a lost reply, outputs untouched. */
    std::set<int64_t> failures;
    /** False for the channel list, whose proxy is kept when the television goes: it fails then. */
    bool recovers = true;
};

#define QUESTION(function, failures, ...)                                                      \
    {                                                                                          \
#function, [](Answer& a) -> int64_t { (void)a; return function(__VA_ARGS__); }, failures, true \
    }

const std::set<int64_t> kMinusOne{-1};
const std::set<int64_t> kMinusOneOrZero{-1, 0};
const std::set<int64_t> kMinusTwoOrZero{-2, 0};
const std::set<int64_t> kNoByte{255};

const QELTVAPI_DTG_T kDate = [] {
    QELTVAPI_DTG_T date;
    memset(&date, 0, sizeof(date));
    return date;
}();

/** Nothing in the run changes what these read, and none of them ends the process on a lost reply.
 */
const std::vector<Question>& questions() {
    static const std::vector<Question> sQuestions = {
            QUESTION(a_qeltvapi_config_get_value, kMinusOne, 0, "parental.age", a.as<int32_t>()),
            QUESTION(a_qeltvapi_config_get_minmaxvalue, kMinusOne, 0, "picture.hue",
                     a.as<uint32_t>()),
            QUESTION(a_qeltvapi_config_is_visible, kMinusOne, 0, "picture.hue"),
            {"a_qeltvapi_config_get_str_value",
             [](Answer& a) {
                 uint32_t room = 64;
                 const int code =
                         a_qeltvapi_config_get_str_value("channels.country", a.as<char>(), &room);
                 return int64_t{code};
             },
             kMinusOne},
            QUESTION(a_qeltvapi_utc_sec_to_dtg, kMinusTwoOrZero, 1700000000,
                     a.as<QELTVAPI_DTG_T>()),
            QUESTION(c_dt_mjd_to_dtg, kMinusTwoOrZero, 60000, a.as<QELTVAPI_DTG_T>()),
            QUESTION(c_dt_utc_sec_to_loc_dtg, kMinusTwoOrZero, 1700000000, a.as<QELTVAPI_DTG_T>()),
            QUESTION(c_dt_conv_utc_local, kMinusTwoOrZero, &kDate, a.as<QELTVAPI_DTG_T>()),
            QUESTION(a_qeltvapi_volctrl_getVolume, kMinusOne),
            QUESTION(a_qeltvapi_volctrl_getVolume_by_type, kMinusOne, 1),
            {"a_qeltvapi_channellist_get_number_by_filter",
             [](Answer&) { return int64_t{a_qeltvapi_channellist_get_number_by_filter(1, 0)}; },
             kMinusOneOrZero, false},
            QUESTION(a_qeltvapi_broadcast_is_support_4_digits_chan_no, kMinusOneOrZero,
                     a.as<uint8_t>()),
            QUESTION(a_qeltvapi_broadcast_get_max_possible_major_chan_no, kMinusOneOrZero, 0,
                     a.as<int32_t>()),
            QUESTION(a_qeltvapi_broadcast_get_max_possible_major_digits, kMinusOneOrZero, 0,
                     a.as<int32_t>()),
            QUESTION(a_qeltvapi_inputsource_get_sourcetotalnum, kNoByte),
            QUESTION(a_qeltvapi_inputsource_get_sourcerec_byidx, kMinusOne, 1,
                     a.as<QELTVAPI_INPUT_SOURCE_RECORD_T>()),
            QUESTION(a_qeltvapi_inputsource_get_sourcename_bysourceid, kMinusOne, 1, a.as<char>(),
                     32),
            QUESTION(a_qeltvapi_multiview_get_video_state, kMinusOneOrZero, "main"),
            QUESTION(a_qeltvapi_multiview_getAudioFocus, kMinusOneOrZero),
            QUESTION(a_qeltvapi_rating_get_enable, kMinusOneOrZero, a.as<uint8_t>()),
            QUESTION(a_qeltvapi_rating_get_dvb_age_setting_info, kMinusOneOrZero, a.as<uint8_t>()),
            QUESTION(a_qeltvapi_event_get_active_win_channel_num, kMinusOneOrZero,
                     a.as<uint16_t>()),
            QUESTION(a_qeltvapi_record_pvr_get_mode, kMinusOneOrZero, 1),
            QUESTION(a_qeltvapi_is_scan_active, kMinusOne),
            QUESTION(a_qeltvapi_get_market_region, kMinusOne),
            QUESTION(a_qeltvapi_ci_key_query_exist, kMinusOne, a.as<uint8_t>()),
            QUESTION(a_qeltvapi_mmp_get_pvr_browser_recording_file_num, kMinusOne,
                     a.as<uint32_t>()),
            QUESTION(a_qeltvapi_mmp_get_pvr_browser_item_count, kMinusOne, a.as<uint16_t>()),
            QUESTION(a_qeltvapi_screenmode_get_number_screen_mode, kMinusOne, a.as<uint32_t>()),
            QUESTION(a_qeltvapi_av_mode_get_number_picture_mode, kMinusOne, a.as<uint32_t>()),
            QUESTION(a_qeltvapi_av_mode_get_number_sound_effect, kMinusOne, a.as<uint32_t>()),
            QUESTION(a_qeltvapi_apptv_get_capability_ex, kMinusOne, 1, a.as<uint32_t>()),
    };
    return sQuestions;
}

Answer answerOf(const Question& question) {
    Answer answer;
    answer.code = question.ask(answer);
    return answer;
}

bool isFailure(const Question& question, const Answer& answer) {
    Answer untouched;
    untouched.code = answer.code;
    return question.failures.count(answer.code) != 0 && answer == untouched;
}

// Functions that change something: each caller has a setting of its own

struct Setting {
    const char* name;
    int32_t range;
};
constexpr Setting kSettings[kCallers] = {
        {"picture.backlight", 101},      {"picture.brightness", 101},
        {"picture.contrast", 101},       {"picture.saturation", 101},
        {"picture.sharpness", 21},       {"sound.audio_delay_ms", 251},
        {"system.standby_minutes", 481}, {"picture.noise_reduction", 5}};

// Counts

std::atomic<uint64_t> sRight{0};
std::atomic<uint64_t> sUnreached{0};
std::atomic<uint64_t> sArrived{0};
std::atomic<uint64_t> sDeaths{0};
std::atomic<bool> sEnd{false};
/** Held by callers for each call; alone by whoever wants it quiet. */
std::shared_mutex sQuiet;
std::atomic<bool> sWantQuiet{false};

constexpr char kRaised[] = "a_hidl_qeltvapi_highlevel_callback_fct";

int onHighlevel(int32_t type, uintptr_t, uintptr_t a, uintptr_t b, uintptr_t c, uintptr_t d) {
    // The second word is the application's own tag, which the service does not know.
    if (type != 1 || a != 3 || b != 4 || c != 5 || d != 6) fail("a notification came mangled");
    ++sArrived;
    return 0;
}

bool raise(int times) {
    const auto tv = IQelTvApi::getService("default", false);
    return tv != nullptr && wire::controlTelevision(tv, {"raise", kRaised, "[1,2,3,4,5,6]",
                                                         std::to_string(times)}) == "ok\n";
}

class Caller {
  public:
    Caller(int number, unsigned seed, const std::vector<Answer>& right)
            : mSetting(kSettings[number]), mRandom(seed), mRight(right) {}

    void run() {
        while (!sEnd) {
            while (sWantQuiet) std::this_thread::sleep_for(1ms);
            std::shared_lock<std::shared_mutex> lock(sQuiet);
            switch (mRandom() % 16) {
                case 0:
                    write();
                    break;
                case 1:
                    read();
                    break;
                default:
                    ask();
            }
        }
    }

  private:
    void ask() {
        const size_t which = mRandom() % questions().size();
        const Question& question = questions()[which];
        const Answer answer = answerOf(question);
        if (answer == mRight[which]) {
            ++sRight;
        } else if (isFailure(question, answer)) {
            ++sUnreached;
        } else {
            fail(std::string(question.name) + " gave " + answer.text() + " instead of " +
                 mRight[which].text());
        }
    }

    void write() {
        const auto value = static_cast<int32_t>(mRandom() % static_cast<unsigned>(mSetting.range));
        const int code = a_qeltvapi_config_set_value(0, mSetting.name, value, 0);
        if (code == 0) {
            mPossible = {value};
            ++sRight;
        } else if (code == -1) {
            // Done or not done before the television went.
            mPossible.insert(value);
            ++sUnreached;
        } else {
            fail(std::string(mSetting.name) + " was refused with " + std::to_string(code));
        }
    }

    void read() {
        int32_t value = -77;
        const int code = a_qeltvapi_config_get_value(0, mSetting.name, &value);
        if (code == -1 && value == -77) {
            ++sUnreached;
            return;
        }
        if (code != 0) fail(std::string(mSetting.name) + " gave " + std::to_string(code));
        // Before the first write, what the television had.
        if (!mPossible.empty() && mPossible.count(value) == 0) {
            fail(std::string(mSetting.name) + " is " + std::to_string(value) +
                 ", which nobody has written");
        }
        mPossible = {value};
        ++sRight;
    }

    const Setting mSetting;
    std::mt19937 mRandom;
    const std::vector<Answer>& mRight;
    std::set<int32_t> mPossible;
};

// What must not grow

/** Reconnect threads that the library says to start, by its log. */
std::atomic<size_t> sReconnects{0};

void countReconnects(const __android_logger_data*, const char* text) {
    if (strstr(text, "<serviceDied:46>") != nullptr ||
        strstr(text, "<registerCallbackHandler:101>") != nullptr) {
        ++sReconnects;
    }
}

/** Threads that nobody has joined or detached. */
std::atomic<size_t> sUnjoined{0};

struct Use {
    size_t residentKiB = 0;
    /** What is allocated in all arenas, in bytes. */
    size_t heap = 0;
    size_t descriptors = 0;
    size_t threads = 0;
    size_t unjoined = 0;
};

size_t entries(const char* directory) {
    DIR* open = opendir(directory);
    size_t count = 0;
    while (readdir(open) != nullptr) ++count;
    closedir(open);
    return count;
}

Use use() {
    Use use;
    long long total = 0;
    long long resident = 0;
    FILE* file = fopen("/proc/self/statm", "re");
    if (file == nullptr || fscanf(file, "%lld %lld", &total, &resident) != 2) fail("no /proc");
    fclose(file);
    use.residentKiB = static_cast<size_t>(resident * sysconf(_SC_PAGESIZE) / 1024);
    use.descriptors = entries("/proc/self/fd");
    use.threads = entries("/proc/self/task");
    use.unjoined = sUnjoined;
#ifndef QELTV_SANITIZED
    const struct mallinfo2 heap = mallinfo2();
    use.heap = heap.uordblks + heap.hblkhd;
#endif
    return use;
}

void print(const char* when, const Use& use) {
    printf("soak: %-9s %6zu KiB, %4zu KiB of it in the heap, %3zu descriptors, %3zu threads, "
           "%3zu unjoined\n",
           when, use.residentKiB, use.heap / 1024, use.descriptors, use.threads, use.unjoined);
}

/** Stops all callers, lets a notification through, waits until threads have settled, and looks. */
Use quietly() {
    sWantQuiet = true;
    std::unique_lock<std::shared_mutex> lock(sQuiet);
    const uint64_t before = sArrived;
    const auto deadline = Clock::now() + 120s;
    while (sArrived == before) {
        if (Clock::now() > deadline) fail("the registration is lost: no notification comes");
        // As an application does: has the television watched that is there now.
        getQelTvApiService();
        raise(1);
        std::this_thread::sleep_for(50ms);
    }
    Use last = use();
    for (int same = 0; same < 10; ++same) {
        std::this_thread::sleep_for(100ms);
        const Use now = use();
        if (now.threads != last.threads || now.descriptors != last.descriptors) same = 0;
        last = now;
        if (Clock::now() > deadline) break;
    }
    sWantQuiet = false;
    return last;
}

/** All that may grow is what the contract costs for each reconnect thread, and a little beside. */
[[maybe_unused]] void checkMemory(const Use& first, const Use& last) {
    // The stack pages that it has touched, and its table of thread-local variables.
    constexpr size_t kResidentKiBOfReconnect = 20;
    constexpr size_t kHeapOfReconnect = 512;
    // A thread that serves calls keeps a packet for the next one.
    constexpr size_t kHeapOfThread = 128 * 1024;
    constexpr size_t kHeapBeside = 256 * 1024;
    constexpr size_t kResidentKiBBeside = 1024;

    const auto grown = [](size_t from, size_t to) { return to - std::min(from, to); };
    const size_t unjoined = grown(first.unjoined, last.unjoined);
    const size_t heap = grown(first.heap, last.heap);
    const size_t resident = grown(first.residentKiB, last.residentKiB);
    printf("soak: grown by %zu KiB, %zu bytes of it in the heap, over %zu unjoined threads\n",
           resident, heap, unjoined);
    // The eight callers and the one that raises have been joined.
    if (sUnjoined != sReconnects) {
        fail(std::to_string(sUnjoined) + " threads are unjoined, but " +
             std::to_string(sReconnects) + " reconnections were begun");
    }
    // Several callers that miss the service at once all have it watched.
    if (sReconnects > (kCallers + 2) * sDeaths) fail("too many reconnections for the deaths");
    if (heap > kHeapBeside + kHeapOfReconnect * unjoined +
                       kHeapOfThread * grown(first.threads, last.threads)) {
        fail("the heap has leaked");
    }
    if (resident > kResidentKiBBeside + kResidentKiBOfReconnect * unjoined) {
        fail("memory has leaked");
    }
}

}  // namespace

#ifndef QELTV_SANITIZED
#pragma GCC visibility push(default)
extern "C" {

// Stand in for the C library's, to count. The sanitizers have their own.

int pthread_create(pthread_t* thread, const pthread_attr_t* attributes, void* (*body)(void*),
                   void* argument) {
    static const auto real =
            reinterpret_cast<decltype(&pthread_create)>(dlsym(RTLD_NEXT, "pthread_create"));
    int state = PTHREAD_CREATE_JOINABLE;
    if (attributes != nullptr) pthread_attr_getdetachstate(attributes, &state);
    const int error = real(thread, attributes, body, argument);
    if (error == 0 && state == PTHREAD_CREATE_JOINABLE) ++sUnjoined;
    return error;
}

int pthread_join(pthread_t thread, void** result) {
    static const auto real =
            reinterpret_cast<decltype(&pthread_join)>(dlsym(RTLD_NEXT, "pthread_join"));
    const int error = real(thread, result);
    if (error == 0) --sUnjoined;
    return error;
}

int pthread_detach(pthread_t thread) {
    static const auto real =
            reinterpret_cast<decltype(&pthread_detach)>(dlsym(RTLD_NEXT, "pthread_detach"));
    const int error = real(thread);
    if (error == 0) --sUnjoined;
    return error;
}

}  // extern "C"
#pragma GCC visibility pop
#endif

int main(int argc, char** argv) {
    const auto length = std::chrono::seconds(argc > 1 ? atoi(argv[1]) : 10);
    const char* given = getenv("QELTV_SOAK_SEED");
    const unsigned seed =
            given != nullptr ? static_cast<unsigned>(atoi(given)) : std::random_device()();
    printf("soak: seed %u\n", seed);

    wire::TemporaryDirectory runtime;
    setenv("QELTV_RUNTIME_DIR", runtime.path().c_str(), 1);
    // What the library logs of every missing service would drown everything else.
    __android_log_set_minimum_priority(ANDROID_LOG_DEBUG);
    __android_log_set_logger(countReconnects);
    // Ten seconds between two looks for the television would be most of the run.
    wire::Sleeps::instance().letAllGo(true);
    wire::Daemon television;
    television.start();
    a_qeltvapi_highlevel_register_callback(onHighlevel);

    std::vector<Answer> right;
    for (const Question& question : questions()) right.push_back(answerOf(question));
    television.kill();
    television.start();
    for (size_t i = 0; i < right.size(); ++i) {
        if (!questions()[i].recovers) continue;
        Answer again = answerOf(questions()[i]);
        // The main interface is there first.
        for (int tries = 0; !(again == right[i]) && tries < 100; ++tries) {
            std::this_thread::sleep_for(50ms);
            again = answerOf(questions()[i]);
        }
        const std::set<int64_t> notThere{-1, -2, 255};
        if (!(again == right[i]) || notThere.count(again.code) != 0) {
            fail(std::string(questions()[i].name) + " is no question for this: " + right[i].text() +
                 ", then " + again.text());
        }
    }

    std::mt19937 random(seed);
    std::vector<std::thread> threads;
    for (int i = 0; i < kCallers; ++i) {
        threads.emplace_back(
                [&right, i, seed] { Caller(i, seed + 1u + unsigned(i), right).run(); });
    }
    threads.emplace_back([] {
        while (!sEnd) {
            if (!sWantQuiet) raise(200);
            std::this_thread::sleep_for(20ms);
        }
    });
    auto killFor = [&](std::chrono::milliseconds time) {
        for (const auto end = Clock::now() + time; Clock::now() < end;) {
            std::this_thread::sleep_for(std::chrono::milliseconds(100 + random() % 1400));
            television.kill();
            ++sDeaths;
            std::this_thread::sleep_for(std::chrono::milliseconds(random() % 100));
            television.start();
        }
    };

    // Pools fill and stacks are touched for the first time before anything is counted.
    killFor(length / 5);
    const Use first = quietly();
    print("at first", first);
    fflush(stdout);
    Use last = first;
    for (int part = 1; part <= 4; ++part) {
        killFor(length / 5);
        last = quietly();
        print(part == 4 ? "at last" : "then", last);
        fflush(stdout);
    }
    sEnd = true;
    for (std::thread& thread : threads) thread.join();

    printf("soak: %llu right answers, %llu without a service, %llu notifications, %llu deaths\n",
           static_cast<unsigned long long>(sRight), static_cast<unsigned long long>(sUnreached),
           static_cast<unsigned long long>(sArrived), static_cast<unsigned long long>(sDeaths));
    if (sRight < 100 || sUnreached == 0) fail("too little has happened");
    // A caller that happens to be first in a crowd leaves a connection and its thread behind.
    if (last.descriptors > first.descriptors + 24) fail("descriptors have leaked");
    if (last.threads > first.threads + 16) fail("threads have leaked");
#ifndef QELTV_SANITIZED
    checkMemory(first, last);
#endif
    fflush(stdout);
    // A thread that looks for the television at the end of the process must do so asleep.
    wire::Sleeps::instance().letAllGo(false);
    television.kill();
    return 0;
}
