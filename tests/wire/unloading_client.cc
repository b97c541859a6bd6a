/**
 * Loads a library and unloads it again.
 *
 * usage: unloading_client LIBRARY [FILE]
 *
 * Without FILE it checks that the library stays mapped. With FILE the library is the client
 * library: the process registers for a notification, unloads the library, creates FILE and waits
 * for a notification of type 2. At its end it calls the functions once more, after the library has
 * released what it keeps.
 */
#include <dlfcn.h>
#include <unistd.h>

#include <atomic>
#include <cstdio>
#include <cstdlib>

#include "eventually.h"
#include "hw_qeltvapi_callback_types.h"

/** Stands in for the platform's: the reconnect thread polls at once. */
extern "C" __attribute__((visibility("default"))) unsigned int sleep(unsigned int) {
    usleep(10000);
    return 0;
}

namespace {

std::atomic<int32_t> sType{0};

int onApptv(int32_t type, uintptr_t, uintptr_t, uintptr_t, uintptr_t, uintptr_t) {
    sType = type;
    return 0;
}

int (*sGetMute)(void);
int (*sGetValue)(uint32_t, const char*, int32_t*);
int (*sRegister)();

/** Runs after the library's own release: handlers run in the reverse order of their registration.
 */
void callAfterTheRelease() {
    int32_t value = 7;
    if (sGetMute() != 0) _exit(20);
    if (sGetValue(0, "picture.contrast", &value) != -1 || value != 7) _exit(21);
    if (sRegister() != -1) _exit(22);
}

template <class F>
bool find(void* library, const char* name, F* function) {
    *function = reinterpret_cast<F>(dlsym(library, name));
    return *function != nullptr;
}

}  // namespace

int main(int argc, char** argv) {
    if (argc == 2) {
        void* library = dlopen(argv[1], RTLD_NOW | RTLD_LOCAL);
        if (library == nullptr || dlclose(library) != 0) return 30;
        return dlopen(argv[1], RTLD_NOW | RTLD_NOLOAD) == nullptr ? 31 : 0;
    }
    if (argc != 3 || atexit(callAfterTheRelease) != 0) return 10;
    void* library = dlopen(argv[1], RTLD_NOW | RTLD_LOCAL);
    if (library == nullptr) {
        fprintf(stderr, "%s\n", dlerror());
        _exit(11);
    }
    int (*registerCallback)(qeltvapi_apptv_callback_cb_t);
    if (!find(library, "a_qeltvapi_apptv_register_callback", &registerCallback) ||
        !find(library, "a_qeltvapi_volctrl_getMute", &sGetMute) ||
        !find(library, "a_qeltvapi_config_get_value", &sGetValue) ||
        !find(library, "_Z23registerCallbackHandlerv", &sRegister)) {
        fprintf(stderr, "%s\n", dlerror());
        _exit(12);
    }
    // Also has the service watched.
    if (sGetMute() != 1) _exit(13);
    registerCallback(onApptv);
    if (!eventually([] { return sType == 1; })) _exit(14);

    dlclose(library);
    FILE* closed = fopen(argv[2], "w");
    if (closed == nullptr) _exit(15);
    fclose(closed);
    if (!eventually([] { return sType == 2; })) _exit(16);
    return 0;
}
