#include "hw_qeltvapi_bisskey.h"

#include "QelTvApiCallbackImpl.h"
#include "call.h"
#include "channel_data.h"

using namespace qeltvapi;
using I = vendor::qelnova::tv::qeltvapi::V1_0::IQelTvApiChannelList;

namespace {

constexpr char kTag[] = "(hw_qeltvapi_bisskey)(client)";
constexpr char kFile[] = __FILE__;

// They differ in the words for a missing service.
constexpr Family<I> kA{kTag,
                       getQelTvApiChannelListService,
                       /*preset=*/-1,
                       /*missing=*/0,
                       line::enterIn<kFile>,
                       /*missingAlways=*/nullptr,
                       line::invalid,
                       line::exitIn<kFile>};
constexpr Family<I> kB = kA.withMissingTraced(line::invalidIn<kFile>);

auto storeCountAndValue(uint16_t* count, uint32_t* value) {
    return [=](uint16_t number, uint32_t word, int32_t code) {
        *count = number;
        *value = word;
        return code;
    };
}

}  // namespace

int a_qeltvapi_bisskey_register_callback(qeltvapi_bisskey_update_cb_t fn) {
    QELTVAPI_TRACE_AT(kTag, 91, "%s", __func__);
    QelTvApiCallbackImpl::pf_bisskey_update_cb.set(fn);
    registerCallbackHandler();
    return 0;
}

int a_qeltvapi_bisskey_get_bsl_handle_by_bsl_id(uint32_t bsl_id, uint32_t* handle) {
    return ask(kB, HERE, &I::a_hidl_qeltvapi_bisskey_get_bsl_handle_by_bsl_id, storeValue(handle),
               bsl_id);
}

int a_qeltvapi_bisskey_lock_database(uint32_t bsl_id) {
    return direct(kA, HERE, &I::a_hidl_qeltvapi_bisskey_lock_database, bsl_id);
}

int a_qeltvapi_bisskey_unlock_database(uint32_t bsl_id) {
    return direct(kA, HERE, &I::a_hidl_qeltvapi_bisskey_unlock_database, bsl_id);
}

int a_qeltvapi_bisskey_get_recs_number(uint32_t bsl_id, uint16_t* count, uint32_t* word) {
    return ask(kB, HERE, &I::a_hidl_qeltvapi_bisskey_get_recs_number,
               storeCountAndValue(count, word), bsl_id);
}

int a_qeltvapi_bisskey_get_bsl_rec_by_bsl_rec_id(uint32_t bsl_id, uint32_t rec_id, void* rec,
                                                 uint32_t* word) {
    return ask(kB, HERE, &I::a_hidl_qeltvapi_bisskey_get_bsl_rec_by_bsl_rec_id,
               storeBytesAndValue(rec, word), bsl_id, rec_id);
}

int a_qeltvapi_bisskey_get_bsl_rec_by_idx(uint32_t bsl_id, uint32_t index, void* rec,
                                          uint32_t* word) {
    return ask(kB, HERE, &I::a_hidl_qeltvapi_bisskey_get_bsl_rec_by_idx,
               storeBytesAndValue(rec, word), bsl_id, index);
}

int a_qeltvapi_bisskey_get_recs_number_by_header(uint32_t bsl_id, const void* header,
                                                 uint16_t* count, uint32_t* word) {
    return ask(kB, HERE, &I::a_hidl_qeltvapi_bisskey_get_recs_number_by_header,
               storeCountAndValue(count, word), bsl_id, over(header, QELTVAPI_BSL_HEADER_SIZE));
}

int a_qeltvapi_bisskey_get_bsl_rec_by_header(uint32_t bsl_id, const void* header, void* rec,
                                             uint32_t index, uint32_t* word) {
    return ask(kB, HERE, &I::a_hidl_qeltvapi_bisskey_get_bsl_rec_by_header,
               storeBytesAndValue(rec, word), bsl_id, over(header, QELTVAPI_BSL_HEADER_SIZE),
               index);
}

int a_qeltvapi_bisskey_set_bsl_rec_info(uint32_t bsl_id, uint32_t arg2, const void* rec,
                                        uint32_t* word) {
    return ask(kB, HERE, &I::a_hidl_qeltvapi_bisskey_set_bsl_rec_info, storeValue(word), bsl_id,
               arg2, over(rec, QELTVAPI_BSL_REC_SIZE));
}

int a_qeltvapi_bisskey_clean(uint32_t bsl_id) {
    return direct(kA, HERE, &I::a_hidl_qeltvapi_bisskey_clean, bsl_id);
}

int a_qeltvapi_bisskey_is_same_record(const void* rec1, const void* rec2) {
    return direct(kA, HERE, &I::a_hidl_qeltvapi_bisskey_is_same_record,
                  over(rec1, QELTVAPI_BSL_REC_SIZE), over(rec2, QELTVAPI_BSL_REC_SIZE));
}

int a_qeltvapi_bisskey_get_default_record(void* rec) {
    return ask(kB, HERE, &I::a_hidl_qeltvapi_bisskey_get_default_record, storeAll(rec));
}

int a_qeltvapi_bisskey_set_key_for_current_channel() {
    return direct(kA, HERE, &I::a_hidl_qeltvapi_bisskey_set_key_for_current_channel);
}
