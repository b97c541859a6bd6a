#include "tool.h"

#include <unistd.h>

#include <new>

#include "hw_qeltvapi_common.h"
#include "layouts/codes.h"

namespace tool {
namespace {

/** The directory in which the host runtime finds the television; docs/host-runtime.md has it. */
std::string runtimeDirectory() {
    const char* set = getenv("QELTV_RUNTIME_DIR");
    if (set != nullptr && *set != '\0') return std::string(set) + " (QELTV_RUNTIME_DIR)";
    const char* run = getenv("XDG_RUNTIME_DIR");
    if (run != nullptr && *run != '\0') return std::string(run) + "/hidl";
    return "/tmp/hidl-" + std::to_string(geteuid());
}

const char* wordsOf(int64_t code) {
    switch (code) {
        case QELTV_NOT_FOUND:
            return "no such thing";
        case QELTV_BAD_VALUE:
            return "not a value that the television takes";
        case QELTV_REFUSED:
            return "not now or not allowed";
        case QELTV_STORAGE:
            return "the television cannot store it";
        case QELTV_UNSUPPORTED:
            return "not a function of this television";
        default:
            return "refused";
    }
}

}  // namespace

void require(bool there) {
    if (there) return;
    throw Failure(kUnreachable, "no television at " + runtimeDirectory() +
                                        "; start qeltvd, or set QELTV_RUNTIME_DIR to the directory "
                                        "of one that runs");
}

void requireService() {
    require(getQelTvApiService() != nullptr);
}

int64_t check(int64_t code, const std::string& what) {
    // The library's own codes: the service is not there or did not answer.
    if (code == -1 || code == -2) {
        throw Failure(kUnreachable, what + ": the television did not answer");
    }
    if (code < 0) {
        std::string message = what + ": " + wordsOf(code) + " (" + std::to_string(code) + ")";
        if (code == QELTV_REFUSED && inStandby()) {
            message += ": the television is in standby; wake it with qeltvctl power up";
        }
        throw Failure(kRefused, message);
    }
    return code;
}

AnswerBuffer::AnswerBuffer(size_t size) : mBytes(static_cast<char*>(calloc(size, 1)), free) {
    if (mBytes == nullptr) throw std::bad_alloc();
}

void addJson(Command* command, bool* json) {
    command->addFlag("--json", *json, "Print JSON, for scripts");
}

}  // namespace tool
