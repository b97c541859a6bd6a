#include "private_runtime.h"

#include <stdlib.h>

#include <filesystem>
#include <string>

namespace wire {
namespace {

class PrivateRuntime {
  public:
    PrivateRuntime() {
        char path[] = "/tmp/wire-XXXXXX";
        if (mkdtemp(path) == nullptr) abort();
        mPath = path;
        setenv("QELTV_RUNTIME_DIR", path, 1);
    }
    ~PrivateRuntime() {
        std::error_code ignored;
        std::filesystem::remove_all(mPath, ignored);
    }

  private:
    std::string mPath;
};

}  // namespace

bool usePrivateRuntime() {
    static PrivateRuntime sRuntime;
    return true;
}

}  // namespace wire
