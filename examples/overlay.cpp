// Serves one function of a television itself, and has a television behind it serve all others.
#include <qeltvapi/service/IQelTvApiConfig.h>
#include <qeltvapi/service/overlay.h>

#include <cstdio>

using namespace qeltvapi::service;
using android::hardware::hidl_string;
using android::hardware::Return;

namespace {

/** Lets nobody set the contrast to more than 60. */
class Config : public Forward<IQelTvApiConfig> {
  public:
    using Forward::Forward;

    Return<int32_t> a_hidl_qeltvapi_config_set_value(uint32_t selector, const hidl_string& name,
                                                     int32_t value, int32_t flags) override {
        if (name == "picture.contrast" && value > 60) return QELTV_BAD_VALUE;
        return Forward::a_hidl_qeltvapi_config_set_value(selector, name, value, flags);
    }
};

}  // namespace

int main() {
    try {
        Overlay overlay("reference");
        overlay.replace<IQelTvApiConfig>(new Config(overlay.television<IQelTvApiConfig>()));
        overlay.start();
        overlay.wait();
        fprintf(stderr, "the television behind the overlay has ended\n");
    } catch (const std::exception& e) {
        fprintf(stderr, "overlay: %s\n", e.what());
    }
    return 1;
}
