#include "hw_qeltvapi_inputsource.h"

#include "call.h"

using namespace qeltvapi;
using namespace vendor::qelnova::tv::qeltvapi::V1_0;

namespace {

constexpr char kTag[] = "(hw_qeltvapi_inputsource)(client)";

constexpr Family<IQelTvApiInputSrc> kInputSrc{kTag, getQelTvApiInputSrcService};
constexpr Family<IQelTvApiInputSrc> kNamed = kInputSrc.withEntry(line::name);

/** Asks for one byte. The trace shows what the caller's variable holds, stored or not. */
template <class Method, class... A>
int get(const Site& site, uint8_t* val, Method method, const A&... args) {
    Call<IQelTvApiInputSrc> call(kInputSrc, site);
    if (!call) return kInputSrc.missing;
    const int result = call.ask(method, storeValue(val), args...);
    if (tracing()) QELTVAPI_LOG_SITE(kTag, site, "<%s:%d> %d, %d", *val, result);
    return result;
}

static_assert(sizeof(QELTVAPI_INPUT_SHARE_PIN_RECORD_T) == 2);
static_assert(offsetof(QELTVAPI_INPUT_SOURCE_RECORD_T, name) == 3 &&
              offsetof(QELTVAPI_INPUT_SOURCE_RECORD_T, tail) == 40);
static_assert(offsetof(HIDL_QELTVAPI_INPUT_SOURCE_RECORD_T, tail) == 28);

}  // namespace

int a_qeltvapi_inputsource_isVideoSignalAvailable(const char* path, uint8_t* val) {
    return get(HERE, val, &IQelTvApiInputSrc::a_hidl_qeltvapi_inputsource_isVideoSignalAvailable,
               text(path));
}

int a_qeltvapi_inputsource_isAudioSignalAvailable(const char* path, uint8_t* val) {
    return get(HERE, val, &IQelTvApiInputSrc::a_hidl_qeltvapi_inputsource_isAudioSignalAvailable,
               text(path));
}

int a_qeltvapi_inputsource_get_gpioid_byidx(int32_t idx, int32_t* val) {
    return ask(kNamed, HERE, &IQelTvApiInputSrc::a_hidl_qeltvapi_inputsource_get_gpioid_byidx,
               storeValue(val), idx);
}

uint8_t a_qeltvapi_inputsource_get_hybrid_video_internal_id(void) {
    return direct(kInputSrc, HERE,
                  &IQelTvApiInputSrc::a_hidl_qeltvapi_inputsource_get_hybrid_video_internal_id);
}

uint8_t a_qeltvapi_inputsource_get_hybrid_comp_internal_id(void) {
    return direct(kInputSrc, HERE,
                  &IQelTvApiInputSrc::a_hidl_qeltvapi_inputsource_get_hybrid_comp_internal_id);
}

uint8_t a_qeltvapi_inputsource_get_sourcetotalnum(void) {
    return direct(kInputSrc, HERE,
                  &IQelTvApiInputSrc::a_hidl_qeltvapi_inputsource_get_sourcetotalnum);
}

int a_qeltvapi_inputsource_get_sharepinrec_byidx(int32_t idx,
                                                 QELTVAPI_INPUT_SHARE_PIN_RECORD_T* out) {
    return ask(
            kNamed, HERE, &IQelTvApiInputSrc::a_hidl_qeltvapi_inputsource_get_sharepinrec_byidx,
            [=](const HIDL_QELTVAPI_INPUT_SHARE_PIN_RECORD_T& record, int32_t status) {
                out->first = record.first;
                out->second = record.second;
                return status;
            },
            idx);
}

int a_qeltvapi_inputsource_get_sourcerec_byidx(int32_t idx, QELTVAPI_INPUT_SOURCE_RECORD_T* out) {
    return ask(
            kNamed, HERE, &IQelTvApiInputSrc::a_hidl_qeltvapi_inputsource_get_sourcerec_byidx,
            [=](const HIDL_QELTVAPI_INPUT_SOURCE_RECORD_T& record, int32_t status) {
                out->byte0 = record.byte0;
                out->byte1 = record.byte1;
                out->byte2 = record.byte2;
                copyField(out->name, record.name, sizeof(out->name));
                out->tail = record.tail;
                return status;
            },
            idx);
}

int a_qeltvapi_inputsource_get_currentsourcename(char* name, int32_t p2) {
    Call<IQelTvApiInputSrc> call(kInputSrc, HERE);
    if (!call) return kInputSrc.missing;
    const int result =
            call.ask(&IQelTvApiInputSrc::a_hidl_qeltvapi_inputsource_get_currentsourcename,
                     storeText(name), p2);
    QELTVAPI_TRACE(kTag, "%s,name:%s", __func__, name);
    return result;
}

int a_qeltvapi_inputsource_get_currentsourcename_bypath(char* name, int32_t p2, const char* path) {
    Call<IQelTvApiInputSrc> call(kInputSrc, HERE);
    if (!call) return kInputSrc.missing;
    const int result =
            call.ask(&IQelTvApiInputSrc::a_hidl_qeltvapi_inputsource_get_currentsourcename_bypath,
                     storeText(name), p2, text(path));
    QELTVAPI_TRACE(kTag, "%s,name:%s", __func__, name);
    return result;
}

int a_qeltvapi_inputsource_get_sourcename_bysourceid(int32_t id, char* name, int32_t p3) {
    return ask(kNamed, HERE,
               &IQelTvApiInputSrc::a_hidl_qeltvapi_inputsource_get_sourcename_bysourceid,
               storeText(name), id, p3);
}

int a_qeltvapi_inputsource_changesource_bysourceid(int32_t id) {
    return direct(kInputSrc, HERE,
                  &IQelTvApiInputSrc::a_hidl_qeltvapi_inputsource_changesource_bysourceid, id);
}

int a_qeltvapi_inputsource_is_source_available_bysourceidandpath(int32_t id, const char* path,
                                                                 uint8_t* val) {
    return get(
            HERE, val,
            &IQelTvApiInputSrc::a_hidl_qeltvapi_inputsource_is_source_available_bysourceidandpath,
            id, text(path));
}

int a_qeltvapi_inputsource_changesource_bysourceidandpath(int32_t id, const char* path) {
    return direct(kInputSrc, HERE,
                  &IQelTvApiInputSrc::a_hidl_qeltvapi_inputsource_changesource_bysourceidandpath,
                  id, text(path));
}

int a_qeltvapi_inputsource_cs_bysourceidandpathandpriority(int32_t id, const char* path,
                                                           int32_t prio) {
    return direct(kInputSrc, HERE,
                  &IQelTvApiInputSrc::a_hidl_qeltvapi_inputsource_cs_bysourceidandpathandpriority,
                  id, text(path), prio);
}

int a_qeltvapi_inputsource_is_block_bysourceid(int32_t id, uint8_t* val) {
    return get(HERE, val, &IQelTvApiInputSrc::a_hidl_qeltvapi_inputsource_is_block_bysourceid, id);
}

int a_qeltvapi_inputsource_is_source_block_bysourceid(int32_t id, uint8_t* val) {
    return get(HERE, val,
               &IQelTvApiInputSrc::a_hidl_qeltvapi_inputsource_is_source_block_bysourceid, id);
}

int a_qeltvapi_inputsource_is_source_autodetect_bysourceid(int32_t id, uint8_t* val) {
    return get(HERE, val,
               &IQelTvApiInputSrc::a_hidl_qeltvapi_inputsource_is_source_autodetect_bysourceid, id);
}

int a_qeltvapi_inputsource_set_source_blockstatus_bysourceid(int32_t id, int block) {
    return direct(kInputSrc, HERE,
                  &IQelTvApiInputSrc::a_hidl_qeltvapi_inputsource_set_source_blockstatus_bysourceid,
                  id, block != 0);
}

int a_qeltvapi_inputsource_set_source_autodetectstatus_bysourceid(int32_t id, int on) {
    return direct(
            kInputSrc, HERE,
            &IQelTvApiInputSrc::a_hidl_qeltvapi_inputsource_set_source_autodetectstatus_bysourceid,
            id, on != 0);
}

int a_qeltvapi_inputsource_get_source_inputlabelidx_bysourceid(int32_t id, uint8_t* val) {
    return get(HERE, val,
               &IQelTvApiInputSrc::a_hidl_qeltvapi_inputsource_get_source_inputlabelidx_bysourceid,
               id);
}

int a_qeltvapi_inputsource_set_source_inputlabelidx_bysourceid(int32_t id, int32_t label) {
    return direct(
            kInputSrc, HERE,
            &IQelTvApiInputSrc::a_hidl_qeltvapi_inputsource_set_source_inputlabelidx_bysourceid, id,
            label);
}

int a_qeltvapi_inputsource_get_userdefname_bysourceid(int32_t id, char* name, int32_t p3) {
    Call<IQelTvApiInputSrc> call(kInputSrc, HERE);
    if (!call) return kInputSrc.missing;
    const int result =
            call.ask(&IQelTvApiInputSrc::a_hidl_qeltvapi_inputsource_get_userdefname_bysourceid,
                     storeText(name), id, p3);
    QELTVAPI_TRACE(kTag, "%s,%s", __func__, name);
    return result;
}

int a_qeltvapi_inputsource_set_userdefname_bysourceid(int32_t id, const char* name) {
    return direct(kInputSrc, HERE,
                  &IQelTvApiInputSrc::a_hidl_qeltvapi_inputsource_set_userdefname_bysourceid, id,
                  text(name));
}

int a_qeltvapi_inputsource_get_external_device_has_signal(int32_t p1, int32_t p2, uint8_t* val) {
    return get(HERE, val,
               &IQelTvApiInputSrc::a_hidl_qeltvapi_inputsource_get_external_device_has_signal, p1,
               p2);
}

int a_qeltvapi_inputsource_sync_stop(const char* path, int p2) {
    return direct(kInputSrc, HERE, &IQelTvApiInputSrc::a_hidl_qeltvapi_inputsource_sync_stop,
                  text(path), p2 != 0);
}

int a_qeltvapi_inputsource_query_conflict(int32_t p1, int32_t p2, uint8_t* val) {
    return get(HERE, val, &IQelTvApiInputSrc::a_hidl_qeltvapi_inputsource_query_conflict, p1, p2);
}

int a_qeltvapi_inputsource_get_mhl_port_num(uint8_t* val) {
    return get(HERE, val, &IQelTvApiInputSrc::a_hidl_qeltvapi_inputsource_get_mhl_port_num);
}

int a_qeltvapi_inputsource_check_menu_tv_block(uint8_t* val) {
    return get(HERE, val, &IQelTvApiInputSrc::a_hidl_qeltvapi_inputsource_check_menu_tv_block);
}

int a_qeltvapi_inputsource_set_scart_auto_jump(int on) {
    return direct(kInputSrc, HERE,
                  &IQelTvApiInputSrc::a_hidl_qeltvapi_inputsource_set_scart_auto_jump, on != 0);
}
