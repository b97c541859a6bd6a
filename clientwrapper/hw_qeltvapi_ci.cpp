#include "hw_qeltvapi_ci.h"

#include "QelTvApiCallbackImpl.h"
#include "call.h"

using namespace qeltvapi;
using vendor::qelnova::tv::qeltvapi::V1_0::HIDL_CI_CAM_PIN_CODE_T;
using vendor::qelnova::tv::qeltvapi::V1_0::HIDL_CI_MMI_ENQ_ANS_T;
using vendor::qelnova::tv::qeltvapi::V1_0::IQelTvApiCI;

namespace {

constexpr char kTag[] = "(hw_qeltvapi_ci)(client)";

void serviceMissing(const char* tag, const Site& site) {
    QELTVAPI_LOG_SITE(tag, site, "<%s:%d> {%s} Get ci service fail.\n", site.function);
}

void result(const char* tag, const Site& site, long long value) {
    QELTVAPI_LOG_SITE(tag, site, "<%s:%d> {%s} i4_ret:%d.\n", site.function,
                      static_cast<int>(value));
}

/** The functions that write their own traces. */
constexpr Family<IQelTvApiCI> kCi =
        Family<IQelTvApiCI>{kTag, getQelTvApiCIService}.withMissingAlways(serviceMissing);

constexpr Family<IQelTvApiCI> kKey = kCi.withEntry(line::name).withExit(result);

#if __SIZEOF_POINTER__ == 4
static_assert(sizeof(QELTVAPI_CI_MMI_ENQ_ANS_T) == 12);
static_assert(offsetof(QELTVAPI_CI_MMI_ENQ_ANS_T, w2s_txt) == 8);
static_assert(sizeof(QELTVAPI_CI_CAM_PIN_CODE_T) == 8);
static_assert(offsetof(QELTVAPI_CI_CAM_PIN_CODE_T, pw2s_pin_code) == 4);
#endif

/** The reply handler of most get types: as many bytes as the answer reports. */
auto storeBytes(void* data, uint32_t* pz_data_len) {
    return [=](const hidl_vec<uint8_t>& answer, uint32_t length, int32_t code) {
        *pz_data_len = length;
        if (length != 0 && data != nullptr) {
            copy(data, answer.data(), length);
        } else {
            const int line = __LINE__;
            QELTVAPI_TRACE_AT(kTag, line, "{%s %d}  data_len is 0.\n", __func__, line);
        }
        return code;
    };
}

/** The reply handler of the get type whose length counts 16-bit units. */
auto storeUnits(void* data, uint32_t* pz_data_len) {
    return [=](const hidl_vec<uint8_t>& answer, uint32_t length, int32_t code) {
        const int line = __LINE__;
        *pz_data_len = length;
        if (length != 0 && data != nullptr) {
            QELTVAPI_TRACE_AT(kTag, line, "{%s %d}  ui4_out_data_len is %d.\n", __func__, line,
                              length);
            copy(data, answer.data(), size_t{length} * sizeof(uint16_t));
        } else {
            QELTVAPI_TRACE_AT(kTag, line, "{%s %d}  data_len is 0.\n", __func__, line);
        }
        return code;
    };
}

/** The reply handler of the PIN code: validity and digits go where the record points. */
auto storePinCode(const QELTVAPI_CI_CAM_PIN_CODE_T* pt_cam_pin_code) {
    return [=](const HIDL_CI_CAM_PIN_CODE_T& pinCode, int32_t code) {
        const hidl_vec<uint16_t>& units = pinCode.w2s_pin_code;
        QELTVAPI_TRACE(kTag,
                       "{hw_qeltvapi_ci} t_out_cam_pin_code.ui1_valid:%d, "
                       "w2s_pin_code.size():%d!\n",
                       pinCode.ui1_valid, static_cast<int>(units.size()));
        QELTVAPI_TRACE(kTag,
                       "hw_qeltvapi_ci, a_qeltvapi_ci_get with "
                       "QELTVAPI_CI_GET_TYPE_CAM_PIN_CODE len:%d",
                       static_cast<int>(units.size()));
        for (size_t i = 0; tracing() && i < units.size() && units[i] != 0; ++i) {
            QELTVAPI_LOG(kTag,
                         "hw_qeltvapi_ci, with QELTVAPI_CI_GET_TYPE_CAM_PIN_CODE "
                         "t_out_cam_pin_code.w2s_pin_code[%d]:%d",
                         static_cast<int>(i), units[i]);
        }
        *pt_cam_pin_code->pui1_valid = pinCode.ui1_valid;
        if (pt_cam_pin_code->pw2s_pin_code != nullptr) {
            copyAll(pt_cam_pin_code->pw2s_pin_code, units);
        } else {
            QELTVAPI_LOG(kTag, "{hw_qeltvapi_ci} pt_cam_pin_code->pw2s_pin_code == NULL!\n");
        }
        return code;
    };
}

/** Length of a text in UTF-16 units with its terminator; the log shows this function's name. */
uint32_t _getStrSize(const uint16_t* text) {
    if (text == nullptr) {
        QELTVAPI_TRACE(kTag, "%s", __func__);
        return 0;
    }
    uint32_t size = 1;
    while (text[size - 1] != 0) ++size;
    QELTVAPI_TRACE(kTag, "%s, size:%d", __func__, size);
    return size;
}

/** The answer to an MMI enquiry, its text laid over the caller's. */
HIDL_CI_MMI_ENQ_ANS_T enquiryAnswer(const QELTVAPI_CI_MMI_ENQ_ANS_T& record, const Site& site) {
    if (tracing()) {
        QELTVAPI_LOG_SITE(kTag, site,
                          "<%s:%d> a_qeltvapi_ci_set  QELTVAPI_CI_SET_TYPE_MMI_ENQ_ANS");
    }
    const uint32_t size = _getStrSize(record.w2s_txt);
    HIDL_CI_MMI_ENQ_ANS_T answer{};
    answer.ui4_first = record.ui4_first;
    answer.ui4_second = record.ui4_second;
    answer.w2s_txt = over<uint16_t>(record.w2s_txt, size);
    if (tracing()) {
        QELTVAPI_LOG_SITE(kTag, site,
                          "<%s:%d> a_qeltvapi_ci_set  QELTVAPI_CI_SET_TYPE_MMI_ENQ_ANS, "
                          "w2s_txt_len:%d",
                          size);
        QELTVAPI_LOG_SITE(kTag, site,
                          "<%s:%d> a_qeltvapi_ci_set  QELTVAPI_CI_SET_TYPE_MMI_ENQ_ANS, "
                          "vector w2s_text size:%d",
                          static_cast<int>(answer.w2s_txt.size()));
    }
    return answer;
}

}  // namespace

int c_rpc_reg_qeltvapi_ci_cb_hndlrs(void) {
    QELTVAPI_TRACE_AT(kTag, 772, "%s", __func__);
    return 0;
}

int a_qeltvapi_ci_get(int e_get_type, uint32_t value, void* data, uint32_t* pz_data_len) {
    const uint32_t length = *pz_data_len;
    QELTVAPI_TRACE(kTag, "%s,e_get_type:%d, pz_data_len:%d", __func__, e_get_type, length);
    Call<IQelTvApiCI> call(kCi, HERE);
    if (!call) return kCi.missing;
    int i4_ret = -1;
    switch (e_get_type) {
        case 0:
        case 1:
        case 2:
        case 7:
        case 8:
        case 10:
        case 13:
        case 16:
        case 17:
        case 18:
        case 19:
        case 20:
        case 26:
        case 27:
        case 28:
        case 30:
        case 31:
        case 32:
            i4_ret = call.ask(&IQelTvApiCI::a_hidl_qeltvapi_ci_get, storeBytes(data, pz_data_len),
                              e_get_type, value, over(data, length), length);
            break;
        case 15:
            i4_ret = call.ask(&IQelTvApiCI::a_hidl_qeltvapi_ci_get, storeUnits(data, pz_data_len),
                              e_get_type, value, over(data, length), length);
            break;
        case QELTVAPI_CI_GET_TYPE_CAM_PIN_CODE:
            i4_ret = call.ask(&IQelTvApiCI::a_hidl_qeltvapi_ci_get_cam_pin_code,
                              storePinCode(static_cast<const QELTVAPI_CI_CAM_PIN_CODE_T*>(data)),
                              e_get_type, value);
            break;
        default:
            break;
    }
    QELTVAPI_TRACE(kTag, "{%s} i4_ret:%d.\n", __func__, i4_ret);
    return i4_ret;
}

int a_qeltvapi_ci_set(int e_set_type, uint32_t value, void* data) {
    QELTVAPI_TRACE(kTag, "%s with e_set_type:%d", __func__, e_set_type);
    const sp<IQelTvApiCI> service = getQelTvApiCIService();
    HIDL_CI_MMI_ENQ_ANS_T answer{};
    hidl_vec<uint8_t> bytes;
    // The argument itself, not what it points at, is the value of this type.
    const uint8_t low = static_cast<uint8_t>(reinterpret_cast<uintptr_t>(data));
    switch (e_set_type) {
        case QELTVAPI_CI_SET_TYPE_MMI_ENQ_ANS:
            answer = enquiryAnswer(*static_cast<const QELTVAPI_CI_MMI_ENQ_ANS_T*>(data), HERE);
            break;
        case 3:
            bytes = over(data, 8);
            break;
        case 34:
            bytes = over(data, data != nullptr ? strlen(static_cast<const char*>(data)) : 0);
            break;
        case 40:
            bytes = over(data, 4);
            break;
        case 80:
            bytes = over(&low, 1);
            break;
        default:
            break;
    }
    // The payload and its traces come also when the service is missing, and before that is logged.
    Call<IQelTvApiCI> call(kCi.withExit(result), HERE, service);
    if (!call) return kCi.missing;
    if (e_set_type == QELTVAPI_CI_SET_TYPE_MMI_ENQ_ANS) {
        return call.direct(&IQelTvApiCI::a_hidl_qeltvapi_ci_set_mmi_enq_ans, e_set_type, value,
                           answer);
    }
    return call.direct(&IQelTvApiCI::a_hidl_qeltvapi_ci_set, e_set_type, value, bytes);
}

int a_qeltvapi_ci_get_virtual_channel_info(uint32_t, uint32_t* info) {
    Call<IQelTvApiCI> call(kCi, HERE);
    if (!call) return kCi.missing;
    return call.ask(&IQelTvApiCI::a_hidl_qeltvapi_ci_get_virtual_channel_info, storeValue(info),
                    *info);
}

int a_qeltvapi_ci_key_erase(void) {
    return direct(kKey, HERE, &IQelTvApiCI::a_hidl_qeltvapi_ci_key_erase);
}

int a_qeltvapi_ci_key_get_host_id(uint8_t* buffer, uint8_t* length) {
    Call<IQelTvApiCI> call(kKey, HERE);
    if (!call) return kKey.missing;
    return call.ask(
            &IQelTvApiCI::a_hidl_qeltvapi_ci_key_get_host_id,
            [=](const hidl_vec<uint8_t>& id, uint8_t idLength, int32_t code) {
                copy(buffer, id.data(), idLength);
                *length = idLength;
                return code;
            },
            *length);
}

int a_qeltvapi_ci_key_query(uint16_t* text) {
    return ask(kKey, HERE, &IQelTvApiCI::a_hidl_qeltvapi_ci_key_query, storeAll<uint16_t>(text));
}

int a_qeltvapi_ci_key_query_exist(uint8_t* out) {
    return ask(kKey, HERE, &IQelTvApiCI::a_hidl_qeltvapi_ci_key_query_exist, storeValue(out));
}

int a_qeltvapi_ci_key_query_exist_ex(uint32_t value, uint8_t* out) {
    return ask(kKey, HERE, &IQelTvApiCI::a_hidl_qeltvapi_ci_key_query_exist_ex, storeValue(out),
               value);
}

int a_qeltvapi_ci_key_update(void) {
    return direct(kKey, HERE, &IQelTvApiCI::a_hidl_qeltvapi_ci_key_update);
}

int a_qeltvapi_ci_key_update_with_path(const char* path) {
    return direct(kKey, HERE, &IQelTvApiCI::a_hidl_qeltvapi_ci_key_update_with_path, text(path));
}

int a_qeltvapi_ci_key_update_with_path_ex(const char* path, uint32_t value) {
    return direct(kKey, HERE, &IQelTvApiCI::a_hidl_qeltvapi_ci_key_update_with_path_ex, text(path),
                  value);
}

int a_qeltvapi_ci_key_update_ex(uint32_t value) {
    return direct(kKey, HERE, &IQelTvApiCI::a_hidl_qeltvapi_ci_key_update_ex, value);
}

int a_qeltvapi_ci_key_write(const void* data, uint32_t length) {
    return direct(kKey, HERE, &IQelTvApiCI::a_hidl_qeltvapi_ci_key_write, over(data, length),
                  length);
}

int a_qeltvapi_ci_key_activate(void) {
    return direct(kKey, HERE, &IQelTvApiCI::a_hidl_qeltvapi_ci_key_activate);
}

int a_qeltvapi_ci_reg_cb(int32_t* handle, uint32_t a, uint32_t b, qeltvapi_ci_cb_t nfy) {
    QELTVAPI_TRACE_AT(kTag, 142, "%s, pv_nfy addr:%p", __func__, reinterpret_cast<void*>(nfy));
    QelTvApiCallbackImpl::pf_ci_cb.set(nfy);
    registerCallbackHandler();
    Call<IQelTvApiCI> call(kCi, HERE);
    if (!call) return kCi.missing;
    const int i4_ret =
            call.ask(&IQelTvApiCI::a_hidl_qeltvapi_ci_reg_callback, storeValue(handle), a, b);
    // Also when nothing was stored: the caller's variable must be readable while tracing.
    QELTVAPI_TRACE_AT(kTag, 176, "{%s} handle:%d, i4_ret:%d.\n", __func__, *handle, i4_ret);
    return i4_ret;
}

// Asks for the registration of the callback object too; kept on purpose.
int a_qeltvapi_ci_unreg_cb(int32_t handle) {
    QELTVAPI_TRACE_AT(kTag, 196, "%s", __func__);
    QelTvApiCallbackImpl::pf_ci_cb.set(nullptr);
    registerCallbackHandler();
    Call<IQelTvApiCI> call(kCi, HERE);
    if (!call) return kCi.missing;
    const int i4_ret = call.direct(&IQelTvApiCI::a_hidl_qeltvapi_ci_unreg_callback, handle);
    QELTVAPI_TRACE_AT(kTag, 211, "{%s} i4_ret:%d.\n", __func__, i4_ret);
    return i4_ret;
}
