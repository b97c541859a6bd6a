#pragma once

#include <qeltvapi/service/IQelTvApiCec.h>

#include "Code.h"
#include "ServiceTypes.h"
#include "Settings.h"
#include "Stored.h"
#include "layouts/teletext.h"

namespace qeltvd {

/** IQelTvApiCec: a sound system with eARC is connected, and is used when that is switched on. */
class CecService : public Default<IQelTvApiCec> {
  public:
    explicit CecService(Settings& settings) : mSettings(settings) {}

    Return<bool> a_hidl_qeltvapi_get_earc_caps() override { return true; }

    Return<int32_t> a_hidl_qeltvapi_set_earc_enable(bool on) override {
        return stored([&] {
            mSettings.set(kEnabled, int64_t{on});
            return kOk;
        });
    }

    Return<bool> a_hidl_qeltvapi_get_earc_status(uint32_t value) override {
        if (value > QELTV_EARC_CONNECTED) return false;
        const auto on =
                stored([&]() -> Result<bool> { return mSettings.number(kEnabled, 0) != 0; });
        return on.valueOr(false);
    }

  private:
    static constexpr char kEnabled[] = "cec.earc";

    Settings& mSettings;
};

}  // namespace qeltvd
