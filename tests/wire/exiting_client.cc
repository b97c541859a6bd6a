/**
 * Ends while its threads, or functions that it has registered, are inside the library.
 *
 * usage: exiting_client return|exit|thread|notification THREADS MILLISECONDS [notified] [traced]
 *
 * The process ends when main() returns or calls exit(), or when another thread or a notification's
 * function calls exit().
 */
#include <atomic>
#include <cstdlib>
#include <string>
#include <thread>

#include "eventually.h"
#include "hw_qeltvapi_apptv.h"
#include "hw_qeltvapi_common.h"
#include "hw_qeltvapi_config.h"
#include "hw_qeltvapi_volctrl.h"

namespace {

using namespace std::string_literals;

std::atomic<bool> sNotified{false};
std::atomic<bool> sExit{false};

void call() {
    int32_t value = 0;
    a_qeltvapi_config_get_value(0, "picture.contrast", &value);
    a_qeltvapi_volctrl_getMute();
}

int onApptv(int32_t, uintptr_t, uintptr_t, uintptr_t, uintptr_t, uintptr_t) {
    call();
    sNotified = true;
    if (sExit) exit(0);
    return 0;
}

}  // namespace

int main(int argc, char** argv) {
    if (argc < 4) return 2;
    const std::string end = argv[1];
    const int threads = atoi(argv[2]);
    const std::chrono::milliseconds delay(atoi(argv[3]));
    for (int i = 4; i < argc; ++i) {
        if (argv[i] == "traced"s) mTvApiDebug = 1;
        if (argv[i] != "notified"s) continue;
        a_qeltvapi_apptv_register_callback(onApptv);
        if (!eventually([] { return sNotified.load(); })) return 3;
    }
    for (int i = 0; i < threads; ++i) {
        std::thread([] {
            for (;;) call();
        }).detach();
    }
    if (end == "thread") {
        std::thread([delay] {
            std::this_thread::sleep_for(delay);
            exit(0);
        }).detach();
        for (;;) call();
    }
    std::this_thread::sleep_for(delay);
    if (end == "exit") exit(0);
    if (end == "notification") {
        sExit = true;
        for (;;) call();
    }
    return 0;
}
