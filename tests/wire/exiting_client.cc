/**
 * Ends while its threads, or functions that it has registered, are inside the library.
 *
 * usage: exiting_client exit|return THREADS MILLISECONDS [notified] [traced]
 */
#include <cstdlib>
#include <cstring>
#include <string>
#include <thread>

#include "eventually.h"
#include "hw_qeltvapi_apptv.h"
#include "hw_qeltvapi_common.h"
#include "hw_qeltvapi_config.h"
#include "hw_qeltvapi_volctrl.h"

namespace {

std::atomic<bool> sNotified{false};

void call() {
    int32_t value = 0;
    a_qeltvapi_config_get_value(0, "picture.contrast", &value);
    a_qeltvapi_volctrl_getMute();
}

int onApptv(int32_t, uintptr_t, uintptr_t, uintptr_t, uintptr_t, uintptr_t) {
    call();
    sNotified = true;
    return 0;
}

}  // namespace

int main(int argc, char** argv) {
    if (argc < 4) return 2;
    const int threads = atoi(argv[2]);
    const std::chrono::milliseconds delay(atoi(argv[3]));
    bool notified = false;
    for (int i = 4; i < argc; ++i) {
        if (strcmp(argv[i], "notified") == 0) notified = true;
        if (strcmp(argv[i], "traced") == 0) mTvApiDebug = 1;
    }
    if (notified) {
        a_qeltvapi_apptv_register_callback(onApptv);
        if (!eventually([] { return sNotified.load(); })) return 3;
    }
    for (int i = 0; i < threads; ++i) {
        std::thread([] {
            for (;;) call();
        }).detach();
    }
    std::this_thread::sleep_for(delay);
    if (strcmp(argv[1], "exit") == 0) exit(0);
    return 0;
}
