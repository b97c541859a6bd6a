#include "hw_pcl.h"

#include "QelTvApiCallbackImpl.h"
#include "call.h"

using namespace qeltvapi;
using vendor::qelnova::tv::qeltvapi::V1_0::HIDL_PCL_WAKEUP_KEY_T;
using vendor::qelnova::tv::qeltvapi::V1_0::IQelTvApi;

namespace {

constexpr char kTag[] = "(hw_pcl)(client)";

constexpr Family<IQelTvApi> kPcl{kTag,    getQelTvApiService,   -1, -1, line::name,
                                 nullptr, line::mainServiceFail};

/**
 * ask() with an output that must be there. It is tested after the fetch and before the proxy: a
 * null one is what is reported when the service is missing as well.
 */
template <class... P, class Reply, class... A>
int askInto(const void* out, const Site& site, Return<void> (IQelTvApi::*method)(P...),
            const Reply& reply, A&&... args) {
    Call<IQelTvApi> call(out != nullptr ? kPcl : kPcl.withMissingTraced(nullptr), site);
    if (out == nullptr) {
        if (tracing()) {
            QELTVAPI_LOG_SITE(kTag, site, "<%s:%d> %s, invalid arg(null pointer) \n",
                              site.function);
        }
        return -1;
    }
    if (!call) return kPcl.missing;
    return call.ask(method, reply, std::forward<A>(args)...);
}

/** A reason and its data, the data not tested for room: the caller must have it. */
auto storeReason(uint32_t* reason, void* data) {
    return [=](uint32_t value, const hidl_vec<uint8_t>& bytes, int32_t code) {
        *reason = value;
        copyAll(data, bytes);
        return code;
    };
}

}  // namespace

int c_pcl_reg_nfy_fct(uint32_t /* a */, qeltvapi_pcl_cb_t fn) {
    QELTVAPI_TRACE_AT(kTag, 444, "%s", __func__);
    QelTvApiCallbackImpl::pf_pcl_cb.set(fn);
    return 0;
}

int c_pcl_dereg_nfy_fct(void) {
    QELTVAPI_TRACE_AT(kTag, 453, "%s", __func__);
    QelTvApiCallbackImpl::pf_pcl_cb.set(nullptr);
    return 0;
}

int c_pcl_get_wakeup_reason(uint32_t* reason, void* data) {
    return askInto(reason, HERE, &IQelTvApi::a_hidl_c_pcl_get_wakeup_reason,
                   [=](uint32_t value, const hidl_vec<uint8_t>& bytes, int32_t code) {
                       *reason = value;
                       // Only here may the caller leave the buffer out.
                       if (data != nullptr) copyAll(data, bytes);
                       return code;
                   });
}

int c_pcl_set_wakeup_reason(uint32_t reason, const uint32_t* data) {
    return direct(kPcl, HERE, &IQelTvApi::a_hidl_c_pcl_set_wakeup_reason, reason,
                  over(data, sizeof(*data)));
}

int c_pcl_get_power_down_reason(uint32_t* reason, void* data) {
    return askInto(reason, HERE, &IQelTvApi::a_hidl_c_pcl_get_power_down_reason,
                   storeReason(reason, data));
}

int c_pcl_set_power_down_reason(uint32_t reason, const uint32_t* data) {
    return direct(kPcl, HERE, &IQelTvApi::a_hidl_c_pcl_set_power_down_reason, reason,
                  over(data, sizeof(*data)));
}

int c_pcl_set_power_down(void) {
    return direct(kPcl, HERE, &IQelTvApi::a_hidl_c_pcl_set_power_down);
}

int c_pcl_set_request_suspend(void) {
    return direct(kPcl, HERE, &IQelTvApi::a_hidl_c_pcl_set_request_suspend);
}

// The name is misspelt on purpose: callers link against it.
int c_pcl_set_request_powerdown_envent(void) {
    return direct(kPcl, HERE, &IQelTvApi::a_hidl_c_pcl_set_request_powerdown_envent);
}

int c_pcl_get_gpio(uint32_t a, uint32_t b, uint32_t* value) {
    return askInto(value, HERE, &IQelTvApi::a_hidl_c_pcl_get_gpio, storeValue(value), a, b);
}

int c_pcl_set_gpio(uint32_t a, uint32_t b) {
    return direct(kPcl, HERE, &IQelTvApi::a_hidl_c_pcl_set_gpio, a, b);
}

// A null has a line of its own, written regardless of the debug switch.
int c_pcl_set_gpio_monitor_ctrl_ex(const qeltvapi_pcl_gpio_monitor_ctrl_t* ctrl) {
    Call<IQelTvApi> call(ctrl != nullptr ? kPcl : kPcl.withMissingTraced(nullptr), HERE);
    if (ctrl == nullptr) {
        QELTVAPI_LOG(kTag, "Invalid arg(null pointer).\n");
        return -1;
    }
    if (!call) return kPcl.missing;
    return call.direct(&IQelTvApi::a_hidl_c_pcl_set_gpio_monitor_ctrl_ex, ctrl->value,
                       ctrl->on != 0);
}

int c_pcl_get_wakeup_irkey(qeltvapi_pcl_wakeup_key_t* key) {
    return askInto(key, HERE, &IQelTvApi::a_hidl_c_pcl_get_wakeup_irkey,
                   [=](const HIDL_PCL_WAKEUP_KEY_T& value, int32_t code) {
                       key->first = value.first;
                       key->second = value.second;
                       return code;
                   });
}

int c_pcl_get_wakeup_setup(uint32_t* setup) {
    return askInto(setup, HERE, &IQelTvApi::a_hidl_c_pcl_get_wakeup_setup, storeValue(setup));
}

int c_pcl_set_wakeup_setup(uint32_t setup) {
    return direct(kPcl, HERE, &IQelTvApi::a_hidl_c_pcl_set_wakeup_setup, setup);
}

int a_qeltvapi_pcl_get_wakeup_reason(uint32_t* reason, void* data) {
    return askInto(reason, HERE, &IQelTvApi::a_hidl_qeltvapi_pcl_get_wakeup_reason,
                   storeReason(reason, data));
}

int a_qeltvapi_pcl_get_wakeup_setup(uint32_t* setup) {
    return askInto(setup, HERE, &IQelTvApi::a_hidl_qeltvapi_pcl_get_wakeup_setup,
                   storeValue(setup));
}

int a_qeltvapi_pcl_set_wakeup_setup(uint32_t setup) {
    return direct(kPcl, HERE, &IQelTvApi::a_hidl_qeltvapi_pcl_set_wakeup_setup, setup);
}
