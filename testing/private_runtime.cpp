#include "private_runtime.h"

#include <stdio.h>
#include <stdlib.h>
#include <unistd.h>

#include <filesystem>
#include <string>

namespace qeltvapi::testing::wire {
namespace {

class PrivateRuntime {
  public:
    PrivateRuntime() : mOwner(getpid()) {
        char path[] = "/tmp/qeltv-testing-XXXXXX";
        if (mkdtemp(path) == nullptr) {
            perror("a runtime directory for the test cannot be made in /tmp");
            abort();
        }
        mPath = path;
        setenv("QELTV_RUNTIME_DIR", path, 1);
    }
    ~PrivateRuntime() {
        // A child of fork() leaves the directory to its parent.
        if (getpid() != mOwner) return;
        std::error_code ignored;
        std::filesystem::remove_all(mPath, ignored);
    }

  private:
    const pid_t mOwner;
    std::string mPath;
};

}  // namespace

bool usePrivateRuntime() {
    static PrivateRuntime sRuntime;
    return true;
}

}  // namespace qeltvapi::testing::wire
