// Serves two functions of the configuration, and answers all others with "not supported".
#include <hidl/HidlTransportSupport.h>
#include <qeltvapi/service/interfaces.h>

#include <cstdio>
#include <map>
#include <mutex>
#include <string>

using namespace qeltvapi::service;
using android::sp;
using android::hardware::hidl_string;
using android::hardware::Return;
using android::hardware::Void;

namespace {

class Config : public Default<IQelTvApiConfig> {
  public:
    Return<void> a_hidl_qeltvapi_config_get_value(
            uint32_t, const hidl_string& name, a_hidl_qeltvapi_config_get_value_cb reply) override {
        const std::lock_guard<std::mutex> guard(mLock);
        const auto item = mItems.find(name);
        if (item == mItems.end()) {
            reply(0, QELTV_NOT_FOUND);
        } else {
            reply(item->second, QELTV_OK);
        }
        return Void();
    }

    Return<int32_t> a_hidl_qeltvapi_config_set_value(uint32_t, const hidl_string& name,
                                                     int32_t value, int32_t) override {
        if (value < 0 || value > 100) return QELTV_BAD_VALUE;
        const std::lock_guard<std::mutex> guard(mLock);
        const auto item = mItems.find(name);
        if (item == mItems.end()) return QELTV_NOT_FOUND;
        item->second = value;
        return QELTV_OK;
    }

  private:
    std::mutex mLock;
    // Guarded by mLock.
    std::map<std::string, int32_t> mItems{{"picture.contrast", 50}, {"picture.brightness", 50}};
};

template <class Interface>
bool serve(const sp<Interface>& service) {
    return service->registerAsService("default") == android::OK;
}

}  // namespace

int main() {
    android::hardware::configureRpcThreadpool(4, true);
    // The main interface comes last: clients take it for the sign that the service is there.
    if (!serve<IQelTvApiConfig>(new Config) || !serve<IQelTvApi>(new Default<IQelTvApi>)) {
        fprintf(stderr, "the service cannot be registered\n");
        return 1;
    }
    android::hardware::joinRpcThreadpool();
}
