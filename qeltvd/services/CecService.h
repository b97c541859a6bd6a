#pragma once

#include "Code.h"
#include "Defaults.h"
#include "Stored.h"
#include "Television.h"

namespace qeltvd {

/** IQelTvApiCec: a sound system with eARC is connected, and is used when that is switched on. */
class CecService : public IQelTvApiCecDefault {
  public:
    explicit CecService(Television& tv)
            : IQelTvApiCecDefault(kUnsupported, false), mSettings(tv.settings) {}

    template <class T>
    using Return = android::hardware::Return<T>;

    Return<bool> a_hidl_qeltvapi_get_earc_caps() override { return true; }

    Return<int32_t> a_hidl_qeltvapi_set_earc_enable(bool on) override {
        return stored([&] {
            mSettings.set(kEnabled, int64_t{on});
            return kOk;
        });
    }

    Return<bool> a_hidl_qeltvapi_get_earc_status(uint32_t value) override {
        if (value > QELTV_EARC_CONNECTED) return false;
        bool on = false;
        stored([&] {
            on = mSettings.number(kEnabled, 0) != 0;
            return kOk;
        });
        return on;
    }

  private:
    static constexpr char kEnabled[] = "cec.earc";

    Settings& mSettings;
};

}  // namespace qeltvd
