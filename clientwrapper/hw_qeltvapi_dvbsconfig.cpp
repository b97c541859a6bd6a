#include "hw_qeltvapi_dvbsconfig.h"

#include "QelTvApiCallbackImpl.h"
#include "call.h"
#include "channel_data.h"

using namespace qeltvapi;
using I = vendor::qelnova::tv::qeltvapi::V1_0::IQelTvApiChannelList;

namespace {

constexpr char kTag[] = "(hw_qeltvapi_dvbsconfig)(client)";
constexpr char kFile[] = __FILE__;

// They differ in the words for a missing service, and the last in its entry and exit lines.
constexpr Family<I> kA{kTag,
                       getQelTvApiChannelListService,
                       /*preset=*/-1,
                       /*missing=*/0,
                       line::enterIn<kFile>,
                       /*missingAlways=*/nullptr,
                       line::invalid,
                       line::exitIn<kFile>};
constexpr Family<I> kB = kA.withMissingTraced(line::invalidIn<kFile>);
constexpr Family<I> kC = kA.withMissingTraced(line::invalidTwoBlanks);
constexpr Family<I> kBySatellite = kC.withEntry(line::enter).withExit(line::exit);

}  // namespace

int a_qeltvapi_satllist_register_callback(qeltvapi_satllist_update_cb_t fn) {
    QELTVAPI_TRACE_AT(kTag, 317, "%s", __func__);
    QelTvApiCallbackImpl::pf_satllist_update_cb.set(fn);
    registerCallbackHandler();
    return 0;
}

int a_qeltvapi_satllist_lock_database(uint32_t satl_id) {
    return direct(kA, HERE, &I::a_hidl_qeltvapi_satllist_lock_database, satl_id);
}

int a_qeltvapi_satllist_unlock_database(uint32_t satl_id) {
    return direct(kA, HERE, &I::a_hidl_qeltvapi_satllist_unlock_database, satl_id);
}

int a_qeltvapi_satllist_read_lock_database(uint32_t satl_id) {
    return direct(kA, HERE, &I::a_hidl_qeltvapi_satllist_read_lock_database, satl_id);
}

int a_qeltvapi_satllist_read_unlock_database(uint32_t satl_id) {
    return direct(kA, HERE, &I::a_hidl_qeltvapi_satllist_read_unlock_database, satl_id);
}

int a_qeltvapi_satllist_clean(uint32_t satl_id) {
    return direct(kA, HERE, &I::a_hidl_qeltvapi_satllist_clean, satl_id);
}

int a_qeltvapi_satllist_get_rec(uint32_t satl_id, uint32_t rec_id, void* rec) {
    return ask(kB, HERE, &I::a_hidl_qeltvapi_satllist_get_rec, storeAll(rec), satl_id, rec_id);
}

int a_qeltvapi_satllist_update_rec(uint32_t satl_id, const void* rec, int flag) {
    return direct(kC, HERE, &I::a_hidl_qeltvapi_satllist_update_rec, satl_id,
                  over(rec, QELTVAPI_SATL_REC_SIZE), flag != 0);
}

int a_qeltvapi_satllist_get_num_recs(uint32_t satl_id, uint32_t* count) {
    return ask(kB, HERE, &I::a_hidl_qeltvapi_satllist_get_num_recs, storeValue(count), satl_id);
}

int a_qeltvapi_satllist_qry_rec_id(uint32_t satl_id, uint32_t arg2, uint32_t* rec_id) {
    return ask(kA, HERE, &I::a_hidl_qeltvapi_satllist_qry_rec_id, storeValue(rec_id), satl_id,
               arg2);
}

int a_qeltvapi_satllist_del_rec(uint32_t satl_id, uint32_t rec_id) {
    return direct(kA, HERE, &I::a_hidl_qeltvapi_satllist_del_rec, satl_id, rec_id);
}

int a_qeltvapi_satllist_get_rec_by_rec_idx(uint32_t satl_id, uint32_t index, void* rec) {
    return ask(kB, HERE, &I::a_hidl_qeltvapi_satllist_get_rec_by_rec_idx, storeAll(rec), satl_id,
               index);
}

int a_qeltvapi_satllist_create_snapshot(uint32_t satl_id, uint32_t* snapshot) {
    return ask(kB, HERE, &I::a_hidl_qeltvapi_satllist_create_snapshot, storeValue(snapshot),
               satl_id);
}

int a_qeltvapi_satllist_restore_snapshot(uint32_t snapshot) {
    return direct(kA, HERE, &I::a_hidl_qeltvapi_satllist_restore_snapshot, snapshot);
}

int a_qeltvapi_satllist_free_snapshot(uint32_t snapshot) {
    return direct(kA, HERE, &I::a_hidl_qeltvapi_satllist_free_snapshot, snapshot);
}

int a_qeltvapi_tsl_clean(uint32_t list_id) {
    return direct(kA, HERE, &I::a_hidl_qeltvapi_tsl_clean, list_id);
}

int a_qeltvapi_tsl_del_rec(uint32_t list_id, uint32_t rec_id) {
    return direct(kA, HERE, &I::a_hidl_qeltvapi_tsl_del_rec, list_id, rec_id);
}

int a_qeltvapi_tsl_qry_rec_id(uint32_t list_id, uint32_t arg2, uint32_t* rec_id) {
    return ask(kA, HERE, &I::a_hidl_qeltvapi_tsl_qry_rec_id, storeValue(rec_id), list_id, arg2);
}

int a_qeltvapi_tsl_get_tsl_recs_by_satl_rec_id(uint32_t list_id, uint32_t satl_rec_id,
                                               uint32_t arg3, uint32_t arg4, uint32_t arg5,
                                               void* recs) {
    return ask(kBySatellite, HERE, &I::a_hidl_qeltvapi_tsl_get_tsl_recs_by_satl_rec_id,
               storeAll(recs), list_id, satl_rec_id, arg3, arg4, arg5);
}

int a_qeltvapi_tsl_get_tsl_num_rec_by_satl_rec_id(uint32_t list_id, uint32_t satl_rec_id,
                                                  uint32_t* count) {
    return ask(kA, HERE, &I::a_hidl_qeltvapi_tsl_get_tsl_num_rec_by_satl_rec_id, storeValue(count),
               list_id, satl_rec_id);
}

int a_qeltvapi_tsl_get_rec(uint32_t list_id, uint32_t rec_id, void* rec) {
    return ask(kB, HERE, &I::a_hidl_qeltvapi_tsl_get_rec, storeAll(rec), list_id, rec_id);
}

int a_qeltvapi_tsl_update_rec(uint32_t list_id, const void* rec, int flag) {
    return direct(kC, HERE, &I::a_hidl_qeltvapi_tsl_update_rec, list_id,
                  over(rec, QELTVAPI_TSL_REC_SIZE), flag != 0);
}

int a_qeltvapi_tsl_get_num_recs(uint32_t list_id, uint32_t* count) {
    return ask(kB, HERE, &I::a_hidl_qeltvapi_tsl_get_num_recs, storeValue(count), list_id);
}

int a_qeltvapi_tsl_get_rec_by_rec_idx(uint32_t list_id, uint32_t index, void* rec) {
    return ask(kB, HERE, &I::a_hidl_qeltvapi_tsl_get_rec_by_rec_idx, storeAll(rec), list_id, index);
}

int a_qeltvapi_nwl_clean(uint32_t list_id) {
    return direct(kA, HERE, &I::a_hidl_qeltvapi_nwl_clean, list_id);
}

int a_qeltvapi_nwl_del_rec(uint32_t list_id, uint32_t rec_id) {
    return direct(kA, HERE, &I::a_hidl_qeltvapi_nwl_del_rec, list_id, rec_id);
}

int a_qeltvapi_nwl_qry_rec_id(uint32_t list_id, uint32_t arg2, uint32_t* rec_id) {
    return ask(kA, HERE, &I::a_hidl_qeltvapi_nwl_qry_rec_id, storeValue(rec_id), list_id, arg2);
}

int a_qeltvapi_nwl_get_nwl_recs_by_satl_rec_id(uint32_t list_id, uint32_t satl_rec_id,
                                               uint32_t arg3, uint32_t arg4, uint32_t arg5,
                                               void* recs) {
    return ask(kBySatellite, HERE, &I::a_hidl_qeltvapi_nwl_get_nwl_recs_by_satl_rec_id,
               storeAll(recs), list_id, satl_rec_id, arg3, arg4, arg5);
}

int a_qeltvapi_nwl_get_nwl_num_rec_by_satl_rec_id(uint32_t list_id, uint32_t satl_rec_id,
                                                  uint32_t* count) {
    return ask(kA, HERE, &I::a_hidl_qeltvapi_nwl_get_nwl_num_rec_by_satl_rec_id, storeValue(count),
               list_id, satl_rec_id);
}

int a_qeltvapi_nwl_get_rec(uint32_t list_id, uint32_t rec_id, void* rec) {
    return ask(kB, HERE, &I::a_hidl_qeltvapi_nwl_get_rec, storeAll(rec), list_id, rec_id);
}

int a_qeltvapi_nwl_update_rec(uint32_t list_id, const void* rec, int flag) {
    return direct(kC, HERE, &I::a_hidl_qeltvapi_nwl_update_rec, list_id,
                  over(rec, QELTVAPI_NWL_REC_SIZE), flag != 0);
}

int a_qeltvapi_nwl_get_num_recs(uint32_t list_id, uint32_t* count) {
    return ask(kB, HERE, &I::a_hidl_qeltvapi_nwl_get_num_recs, storeValue(count), list_id);
}

int a_qeltvapi_nwl_get_rec_by_rec_idx(uint32_t list_id, uint32_t index, void* rec) {
    return ask(kB, HERE, &I::a_hidl_qeltvapi_nwl_get_rec_by_rec_idx, storeAll(rec), list_id, index);
}
