#include "hw_qeltvapi_channellist.h"

#include "QelTvApiCallbackImpl.h"
#include "QelTvApiShareMemory.h"
#include "call.h"
#include "channel_data.h"

using namespace qeltvapi;
using I = vendor::qelnova::tv::qeltvapi::V1_0::IQelTvApiChannelList;

namespace {

constexpr char kTag[] = "(hw_qeltvapi_channellist)(client)";

/** Functions that return the service's code. */
constexpr Family<I> kFamily{kTag,
                            getQelTvApiChannelListService,
                            /*preset=*/-1,
                            /*missing=*/0,
                            line::enter,
                            /*missingAlways=*/nullptr,
                            line::invalidTwoBlanks,
                            line::exit};

/** Functions that return a count, an id, a number or a truth value. */
constexpr Family<I> kNumber = kFamily.withPreset(0);

/** The current-channel reads write their exit line themselves, behind one of their own. */
constexpr Family<I> kCurrent = kFamily.withExit(nullptr);

/**
 * Functions that use shared memory, which write entry and exit lines themselves. Two of them
 * have no line for a missing service.
 */
constexpr Family<I> kTracedBatch = kNumber.withEntry(nullptr).withExit(nullptr);
constexpr Family<I> kBatch = kTracedBatch.withMissingTraced(nullptr);

constexpr uint32_t kSvlSize = QELTVAPI_SVL_REC_SIZE;
constexpr uint32_t kTslSize = QELTVAPI_TSL_REC_SIZE;
constexpr uint32_t kFavouriteListSize = QELTVAPI_FAVORITE_LIST_REC_SIZE;

/** Size of an answer, as the lines print it. */
int size(const hidl_vec<uint8_t>& record) {
    return static_cast<int>(record.size());
}

bool fits(const hidl_vec<uint8_t>& svlRec, const hidl_vec<uint8_t>& tslRec) {
    return svlRec.size() == kSvlSize && tslRec.size() == kTslSize;
}

/** Stores a record of one size; any other is only traced. */
auto storeRecord(void* record, uint32_t expected) {
    return [=](const hidl_vec<uint8_t>& answer, int32_t code) {
        if (answer.size() == expected) {
            copyAll(record, answer);
        } else {
            QELTVAPI_TRACE(kTag, " struct size not match(%d:%d)", expected, size(answer));
        }
        return code;
    };
}

auto storeSvl(void* svl) {
    return storeRecord(svl, kSvlSize);
}

auto storeFavouriteList(void* list) {
    return storeRecord(list, kFavouriteListSize);
}

/** Stores a pair of records when both have their size; any other pair is only traced. */
auto storePair(void* svl, void* tsl) {
    return [=](const hidl_vec<uint8_t>& svlRec, const hidl_vec<uint8_t>& tslRec, int32_t code) {
        if (fits(svlRec, tslRec)) {
            copyAll(svl, svlRec);
            copyAll(tsl, tslRec);
        } else {
            QELTVAPI_TRACE(kTag, " struct size not match(%d:%d %d:%d)", kSvlSize, size(svlRec),
                           kTslSize, size(tslRec));
        }
        return code;
    };
}

auto storeTwoValues(uint32_t* value1, uint32_t* value2) {
    return [=](uint32_t first, uint32_t second, int32_t code) {
        *value1 = first;
        *value2 = second;
        return code;
    };
}

/** A method with one direct result that is no status. */
template <class R, class... P, class... A>
int numberOf(const Site& site, Return<R> (I::*method)(P...), A&&... args) {
    return static_cast<int>(direct(kNumber, site, method, std::forward<A>(args)...));
}

void traceEnter(const Site& site) {
    if (tracing()) {
        line::enter(kTag, site);
    }
}

void traceExit(const Site& site) {
    if (tracing()) {
        line::exit(kTag, site, 0);
    }
}

/**
 * Reads the records of a current channel. The list id is written on every return, 0 when the
 * records were not stored, and traced; so is the exit.
 */
template <class... P, class... A>
int currentChannel(const Site& site, uint16_t* svl_id, void* svl, void* tsl,
                   Return<void> (I::*method)(P...), A... args) {
    uint16_t id = 0;
    uint16_t* out = &id;
    const int result = ask(
            kCurrent, site, method,
            [=](uint16_t listId, const hidl_vec<uint8_t>& svlRec, const hidl_vec<uint8_t>& tslRec,
                int32_t code) {
                if (fits(svlRec, tslRec)) {
                    *out = listId;
                }
                return storePair(svl, tsl)(svlRec, tslRec, code);
            },
            args...);
    *svl_id = id;
    if (tracing()) {
        QELTVAPI_LOG_SITE(kTag, site, "<%s:%d> Get ui2_svl_id:%d", id);
        line::exit(kTag, site, result);
    }
    return result;
}

/** Copies the first bytes out of a block. An empty block cannot be mapped and has none. */
void copyBlock(void* to, QelTvApiShareMemory& block, size_t bytes) {
    if (bytes == 0 || block.m_length == 0) {
        return;
    }
    if (const void* from = block.getPointer()) {
        copy(to, from, bytes);
    }
}

/**
 * Reads `count` records of each kind through shared memory. `fill` makes the call and returns the
 * result. Without both blocks nothing is called or stored; without the service the blocks are
 * stored as they were made, on purpose.
 */
template <class Fill>
int batch(const Family<I>& family, const Site& site, uint32_t count, void* svl, void* tsl,
          const Fill& fill) {
    QelTvApiShareMemory svlBlock(count * kSvlSize);
    QelTvApiShareMemory tslBlock(count * kTslSize);
    Call<I> call(family, site);
    int result = 0;
    if (svlBlock.m_status >= 0 && tslBlock.m_status >= 0) {
        if (call) {
            result = fill(call, svlBlock.m_handle, tslBlock.m_handle);
        }
        copyBlock(svl, svlBlock, svlBlock.m_length);
        copyBlock(tsl, tslBlock, tslBlock.m_length);
        svlBlock.commit();
        tslBlock.commit();
        traceExit(site);
    }
    return result;
}

}  // namespace

int a_qeltvapi_channellist_register_callback(qeltvapi_channellist_update_cb_t fn) {
    QelTvApiCallbackImpl::pf_channellist_update_cb.set(fn);
    registerCallbackHandler();
    return 0;
}

int a_qeltvapi_tvprovider_channellist_register_callback(qeltvapi_tvprovider_cb_t fn) {
    QelTvApiCallbackImpl::pf_tvprovider_cb.set(fn);
    registerCallbackHandler();
    return 0;
}

int a_qeltvapi_concerncolumn_channellist_register_callback(qeltvapi_concern_column_cb_t fn) {
    QelTvApiCallbackImpl::pf_concern_column_cb.set(fn);
    registerCallbackHandler();
    return 0;
}

int a_qeltvapi_svlid_update_register_callback(qeltvapi_svlid_update_cb_t fn) {
    QelTvApiCallbackImpl::pf_svlid_update_cb.set(fn);
    registerCallbackHandler();
    return 0;
}

int a_qeltvapi_tslid_update_register_callback(qeltvapi_tslid_update_cb_t fn) {
    QelTvApiCallbackImpl::pf_tslid_update_cb.set(fn);
    registerCallbackHandler();
    return 0;
}

int a_qeltvapi_listMode_update_register_callback(qeltvapi_listmode_update_cb_t fn) {
    QelTvApiCallbackImpl::pf_listmode_update_cb.set(fn);
    registerCallbackHandler();
    return 0;
}

int a_qeltvapi_ocl_scanInfo_register_callback(qeltvapi_ocl_scaninfo_cb_t fn) {
    QelTvApiCallbackImpl::pf_ocl_scaninfo_cb.set(fn);
    registerCallbackHandler();
    return 0;
}

int a_qeltvapi_channellist_lock_database(uint32_t arg1, uint32_t arg2) {
    return direct(kFamily, HERE, &I::a_hidl_qeltvapi_channellist_lock_database, arg1, arg2);
}

int a_qeltvapi_channellist_unlock_database(uint32_t arg1, uint32_t arg2) {
    return direct(kFamily, HERE, &I::a_hidl_qeltvapi_channellist_unlock_database, arg1, arg2);
}

int a_qeltvapi_channellist_get_channel_by_id(uint32_t svl_id, const uint16_t* channel_id, void* svl,
                                             void* tsl) {
    Call<I> call(kFamily, HERE);
    if (!call) {
        return kFamily.missing;
    }
    return call.ask(
            &I::a_hidl_qeltvapi_channellist_get_channel_by_id,
            [=](const hidl_vec<uint8_t>& svlRec, const hidl_vec<uint8_t>& tslRec, int32_t code) {
                if (!fits(svlRec, tslRec)) {
                    // One blank, where all others have two.
                    QELTVAPI_TRACE(kTag, "struct size not match(%d:%d %d:%d)", kSvlSize,
                                   size(svlRec), kTslSize, size(tslRec));
                    return code;
                }
                copyAll(svl, svlRec);
                copyAll(tsl, tslRec);
                return code;
            },
            svl_id, uint32_t{*channel_id});
}

int a_qeltvapi_channellist_get_current_chan_id() {
    return numberOf(HERE, &I::a_hidl_qeltvapi_channellist_get_current_chan_id);
}

int a_qeltvapi_channellist_get_svl_rec_by_channel_id(uint32_t svl_id, uint32_t channel_id,
                                                     void* svl) {
    return ask(kFamily, HERE, &I::a_hidl_qeltvapi_channellist_get_svl_rec_by_channel_id,
               storeSvl(svl), svl_id, channel_id);
}

int a_qeltvapi_channellist_get_current_channel(uint16_t* svl_id, void* svl, void* tsl) {
    return currentChannel(HERE, svl_id, svl, tsl,
                          &I::a_hidl_qeltvapi_channellist_get_current_channel);
}

int a_qeltvapi_channellist_set_current_channel(uint32_t channel_id) {
    return direct(kFamily, HERE, &I::a_hidl_qeltvapi_channellist_set_current_channel, channel_id);
}

int a_qeltvapi_channellist_delete_channel_without_lcn(uint32_t arg1, uint32_t arg2) {
    return direct(kFamily, HERE, &I::a_hidl_qeltvapi_channellist_delete_channel_without_lcn, arg1,
                  arg2);
}

int a_qeltvapi_channellist_slide_for_one_part_channel_id(uint32_t arg1, uint32_t arg2,
                                                         uint32_t arg3) {
    return direct(kFamily, HERE, &I::a_hidl_qeltvapi_channellist_slide_for_one_part_channel_id,
                  arg1, arg2, arg3);
}

int a_qeltvapi_channellist_set_current_channel_by_svlId(uint32_t svl_id, uint32_t arg2) {
    return direct(kFamily, HERE, &I::a_hidl_qeltvapi_channellist_set_current_channel_by_svlId,
                  svl_id, arg2);
}

int a_qeltvapi_channellist_set_2nd_current_channel_by_svlId(uint32_t svl_id, uint32_t arg2) {
    return direct(kFamily, HERE, &I::a_hidl_qeltvapi_channellist_set_2nd_current_channel_by_svlId,
                  svl_id, arg2);
}

int a_qeltvapi_channellist_get_current_channel_from_nav(uint32_t arg1, uint16_t* svl_id, void* svl,
                                                        void* tsl) {
    return currentChannel(HERE, svl_id, svl, tsl,
                          &I::a_hidl_qeltvapi_channellist_get_current_channel_from_nav, arg1);
}

int a_qeltvapi_channellist_get_channel_number(uint32_t arg1) {
    return numberOf(HERE, &I::a_hidl_qeltvapi_channellist_get_channel_number, arg1);
}

int a_qeltvapi_channellist_get_svl_handle_by_svl_id(uint32_t svl_id, uint32_t* handle) {
    return ask(kFamily, HERE, &I::a_hidl_qeltvapi_channellist_get_svl_handle_by_svl_id,
               storeValue(handle), svl_id);
}

int a_qeltvapi_channellist_get_tsl_handle_by_svl_id(uint32_t svl_id, uint32_t* handle) {
    return ask(kFamily, HERE, &I::a_hidl_qeltvapi_channellist_get_tsl_handle_by_svl_id,
               storeValue(handle), svl_id);
}

int a_qeltvapi_channellist_get_svl_tsl_rec_by_handle(uint32_t arg1, uint32_t arg2, uint32_t arg3,
                                                     uint32_t* value1, uint32_t* value2, void* svl,
                                                     void* tsl) {
    return ask(
            kFamily, HERE, &I::a_hidl_qeltvapi_channellist_get_svl_tsl_rec_by_handle,
            [=](uint32_t first, uint32_t second, const hidl_vec<uint8_t>& svlRec,
                const hidl_vec<uint8_t>& tslRec, int32_t code) {
                if (fits(svlRec, tslRec)) {
                    *value1 = first;
                    *value2 = second;
                }
                return storePair(svl, tsl)(svlRec, tslRec, code);
            },
            arg1, arg2, arg3);
}

int a_qeltvapi_channellist_get_svl_tsl_rec_by_handle_ex(uint32_t svl_handle, uint32_t tsl_handle,
                                                        uint32_t count, uint32_t* value1,
                                                        uint32_t* value2, void* svl, void* tsl) {
    return batch(kBatch, HERE, count, svl, tsl,
                 [=](Call<I>& call, const hidl_handle& svlBlock, const hidl_handle& tslBlock) {
                     return call.ask(&I::a_hidl_qeltvapi_channellist_get_svl_tsl_rec_by_handle_ex,
                                     storeTwoValues(value1, value2), svl_handle, tsl_handle, count,
                                     svlBlock, tslBlock);
                 });
}

int a_qeltvapi_channellist_get_svl_tsl_rec_by_index_ex(uint32_t arg1, uint32_t arg2, uint32_t arg3,
                                                       uint32_t arg4, uint32_t arg5, uint32_t arg6,
                                                       uint32_t arg7, uint32_t count, uint32_t arg9,
                                                       void* svl, void* tsl) {
    return batch(kBatch, HERE, count, svl, tsl,
                 [=](Call<I>& call, const hidl_handle& svlBlock, const hidl_handle& tslBlock) {
                     return call.direct(&I::a_hidl_qeltvapi_channellist_get_svl_tsl_rec_by_index_ex,
                                        arg1, arg2, arg3, arg4, arg5, arg6, arg7, count, arg9,
                                        svlBlock, tslBlock);
                 });
}

int a_qeltvapi_channellist_set_svl_tsl_rec_info(uint32_t arg1, uint32_t arg2, uint32_t arg3,
                                                uint32_t arg4, const uint32_t* mask,
                                                const uint32_t* value, const void* svl,
                                                const void* tsl) {
    Call<I> call(kFamily, HERE);
    if (!call) {
        return kFamily.missing;
    }
    return call.direct(&I::a_hidl_qeltvapi_channellist_set_svl_tsl_rec_info, arg1, arg2, arg3, arg4,
                       *mask, *value, over(svl, kSvlSize), over(tsl, kTslSize));
}

int a_qeltvapi_channellist_get_channel_rf_info(uint32_t arg1, uint32_t arg2, uint32_t arg3) {
    return direct(kFamily, HERE, &I::a_hidl_qeltvapi_channellist_get_channel_rf_info, arg1, arg2,
                  arg3);
}

int a_qeltvapi_channellist_get_svl_info_by_brdcast_medium(uint32_t medium, uint16_t* value1,
                                                          uint16_t* value2, uint32_t* value3) {
    return ask(
            kFamily, HERE, &I::a_hidl_qeltvapi_channellist_get_svl_info_by_brdcast_medium,
            [=](uint16_t first, uint16_t second, uint32_t third, int32_t code) {
                *value1 = first;
                *value2 = second;
                *value3 = third;
                return code;
            },
            medium);
}

int a_qeltvapi_channellist_swap_channels(uint32_t arg1, uint32_t arg2, uint32_t arg3) {
    return direct(kFamily, HERE, &I::a_hidl_qeltvapi_channellist_swap_channels, arg1, arg2, arg3);
}

int a_qeltvapi_channellist_swap_favorites(uint32_t arg1, uint32_t arg2, uint32_t arg3,
                                          uint32_t arg4) {
    return direct(kFamily, HERE, &I::a_hidl_qeltvapi_channellist_swap_favorites, arg1, arg2, arg3,
                  arg4);
}

int a_qeltvapi_channellist_set_favorites_by_id(uint32_t arg1, uint32_t arg2, uint32_t arg3,
                                               uint32_t arg4, uint32_t arg5, int flag,
                                               uint32_t* value) {
    return ask(kFamily, HERE, &I::a_hidl_qeltvapi_channellist_set_favorites_by_id,
               storeValue(value), arg1, arg2, arg3, arg4, arg5, flag != 0);
}

int a_qeltvapi_channellist_get_svl_tsl_recs_by_brdcast_type(uint32_t arg1, uint32_t arg2,
                                                            uint32_t arg3, uint32_t count,
                                                            uint32_t arg5, void* svl, void* tsl,
                                                            uint32_t* value1, uint32_t* value2) {
    traceEnter(HERE);
    return batch(kTracedBatch, HERE, count, svl, tsl,
                 [=](Call<I>& call, const hidl_handle& svlBlock, const hidl_handle& tslBlock) {
                     return call.ask(
                             &I::a_hidl_qeltvapi_channellist_get_svl_tsl_recs_by_brdcast_type,
                             storeTwoValues(value1, value2), arg1, arg2, arg3, count, arg5,
                             svlBlock, tslBlock);
                 });
}

int a_qeltvapi_channellist_get_svl_tsl_recs_by_filter(uint32_t arg1, uint32_t arg2, uint32_t arg3,
                                                      int flag, uint32_t arg5, uint32_t count1,
                                                      uint32_t count2, void* svl, void* tsl,
                                                      uint32_t* value1, uint32_t* value2) {
    traceEnter(HERE);
    return batch(kTracedBatch, HERE, count1 + count2, svl, tsl,
                 [=](Call<I>& call, const hidl_handle& svlBlock, const hidl_handle& tslBlock) {
                     return call.ask(&I::a_hidl_qeltvapi_channellist_get_svl_tsl_recs_by_filter,
                                     storeTwoValues(value1, value2), arg1, arg2, arg3, flag != 0,
                                     arg5, count1, count2, svlBlock, tslBlock);
                 });
}

int a_qeltvapi_channellist_get_number_by_filter(uint32_t svl_id, uint32_t filter) {
    return numberOf(HERE, &I::a_hidl_qeltvapi_channellist_get_number_by_filter, svl_id, filter);
}

int a_qeltvapi_channellist_get_prev_channel_id_by_filter(uint32_t arg1, uint32_t arg2,
                                                         uint32_t arg3, uint32_t arg4,
                                                         uint32_t* channel_id) {
    return ask(kFamily, HERE, &I::a_hidl_qeltvapi_channellist_get_prev_channel_id_by_filter,
               storeValue(channel_id), arg1, arg2, arg3, arg4);
}

int a_qeltvapi_favoritelist_get_crnt_fav_lst_by_filter(void* list) {
    return ask(kFamily, HERE, &I::a_hidl_qeltvapi_favoritelist_get_crnt_fav_lst_by_filter,
               storeFavouriteList(list));
}

int a_qeltvapi_favoritelist_add_favoritelist_channel() {
    return direct(kFamily, HERE, &I::a_hidl_qeltvapi_favoritelist_add_favoritelist_channel);
}

int a_qeltvapi_favoritelist_add_favoritelist_channel_by_index(uint32_t index) {
    return direct(kFamily, HERE, &I::a_hidl_qeltvapi_favoritelist_add_favoritelist_channel_by_index,
                  index);
}

int a_qeltvapi_favoritelist_remove_favoritelist_channel_by_index_without_show_fav_icon(
        uint32_t index) {
    return direct(
            kFamily, HERE,
            &I::a_hidl_qeltvapi_favoritelist_remove_favoritelist_channel_by_index_without_show_fav_icon,
            index);
}

int a_qeltvapi_favoritelist_remove_favoritelist_channel(uint32_t arg1) {
    return direct(kFamily, HERE, &I::a_hidl_qeltvapi_favoritelist_remove_favoritelist_channel,
                  arg1);
}

int a_qeltvapi_favoritelist_fs_store() {
    return direct(kFamily, HERE, &I::a_hidl_qeltvapi_favoritelist_fs_store);
}

int a_qeltvapi_favoritelist_swap_favoritelist_by_index(uint32_t index1, uint32_t index2) {
    return direct(kFamily, HERE, &I::a_hidl_qeltvapi_favoritelist_swap_favoritelist_by_index,
                  index1, index2);
}

int a_qeltvapi_channellist_set_svl_tsl_rec_info_without_notify(uint32_t arg1, uint32_t arg2,
                                                               uint32_t arg3, uint32_t arg4,
                                                               const uint32_t* mask,
                                                               const uint32_t* value,
                                                               const void* svl, const void* tsl) {
    Call<I> call(kFamily, HERE);
    if (!call) {
        return kFamily.missing;
    }
    return call.direct(&I::a_hidl_qeltvapi_channellist_set_svl_tsl_rec_info_without_notify, arg1,
                       arg2, arg3, arg4, *mask, *value, over(svl, kSvlSize), over(tsl, kTslSize));
}

int a_qeltvapi_channellist_interface(uint32_t arg1, const void* block, uint32_t arg3, uint32_t arg4,
                                     const uint32_t* arg5) {
    Call<I> call(kFamily, HERE);
    if (!call) {
        return kFamily.missing;
    }
    return call.direct(&I::a_hidl_qeltvapi_channellist_interface, arg1,
                       over(block, QELTVAPI_INTERFACE_BLOCK_SIZE), arg3, uint64_t{arg4}, *arg5);
}

int a_qeltvapi_channellist_get_channel_number_by_query_info(uint32_t svl_id, uint32_t arg2,
                                                            uint32_t arg3, const void* info) {
    return numberOf(HERE, &I::a_hidl_qeltvapi_channellist_get_channel_number_by_query_info, svl_id,
                    arg2, arg3, over(info, QELTVAPI_QUERY_INFO_SIZE));
}

int a_qeltvapi_channellist_get_channellist_by_query_info(uint32_t arg1, uint32_t arg2,
                                                         uint32_t arg3, const void* info, void* svl,
                                                         void* tsl, uint32_t arg5, uint32_t arg6) {
    return ask(
            kFamily, HERE, &I::a_hidl_qeltvapi_channellist_get_channellist_by_query_info,
            [=](const hidl_vec<uint8_t>& svlRec, const hidl_vec<uint8_t>& tslRec, int32_t code) {
                if (!fits(svlRec, tslRec)) {
                    // Two blanks between the pairs, where all others have one.
                    QELTVAPI_TRACE(kTag, " struct size not match(%d:%d  %d:%d)", kSvlSize,
                                   size(svlRec), kTslSize, size(tslRec));
                    return code;
                }
                copyAll(svl, svlRec);
                copyAll(tsl, tslRec);
                return code;
            },
            arg1, arg2, arg3, over(info, QELTVAPI_QUERY_INFO_SIZE), arg5, uint64_t{arg6});
}

int a_qeltvapi_channellist_svl_tsl_lol_clean(uint32_t svl_id, const uint32_t* arg2,
                                             const uint32_t* arg3) {
    Call<I> call(kFamily, HERE);
    if (!call) {
        return kFamily.missing;
    }
    return call.direct(&I::a_hidl_qeltvapi_channellist_svl_tsl_lol_clean, svl_id,
                       arg2 != nullptr ? *arg2 : 0, arg3 != nullptr ? *arg3 : 0);
}

int a_qeltvapi_channellist_and_ts_lol_del_by_brdcst(uint32_t svl_id, uint32_t brdcst_type) {
    return direct(kFamily, HERE, &I::a_hidl_qeltvapi_channellist_and_ts_lol_del_by_brdcst, svl_id,
                  brdcst_type);
}

int a_qeltvapi_channellist_get_number_by_mask(uint32_t svl_id, uint32_t mask, uint32_t value) {
    return numberOf(HERE, &I::a_hidl_qeltvapi_channellist_get_number_by_mask, svl_id, mask, value);
}

int a_qeltvapi_channellist_get_svl_rec_by_index(uint32_t arg1, uint32_t arg2, uint32_t arg3,
                                                uint32_t arg4, void* svl) {
    return ask(kFamily, HERE, &I::a_hidl_qeltvapi_channellist_get_svl_rec_by_index, storeSvl(svl),
               arg1, arg2, arg3, arg4);
}

int a_qeltvapi_channellist_get_number_by_name(uint32_t svl_id, uint32_t arg2, uint32_t arg3,
                                              const char* name) {
    return numberOf(HERE, &I::a_hidl_qeltvapi_channellist_get_number_by_name, svl_id, arg2, arg3,
                    text(name));
}

int a_qeltvapi_channellist_get_index_by_channel(uint32_t arg1, uint32_t arg2, uint32_t arg3,
                                                uint32_t arg4, uint32_t* index) {
    return ask(kFamily, HERE, &I::a_hidl_qeltvapi_channellist_get_index_by_channel,
               storeValue(index), arg1, arg2, arg3, arg4);
}

int a_qeltvapi_channellist_get_svl_rec_by_index_and_name(uint32_t arg1, uint32_t arg2,
                                                         uint32_t arg3, const char* name,
                                                         uint32_t arg5, void* svl) {
    return ask(kFamily, HERE, &I::a_hidl_qeltvapi_channellist_get_svl_rec_by_index_and_name,
               storeSvl(svl), arg1, arg2, arg3, text(name), arg5);
}

int a_qeltvapi_channellist_get_svl_tsl_recs_by_mask(uint32_t arg1, uint32_t arg2, uint32_t arg3,
                                                    uint32_t arg4, uint32_t arg5, uint32_t arg6,
                                                    uint32_t arg7, uint32_t arg8, uint32_t arg9,
                                                    uint32_t arg10, void* svl, void* tsl) {
    return ask(
            kFamily, HERE, &I::a_hidl_qeltvapi_channellist_get_svl_tsl_recs_by_mask,
            [=](const hidl_vec<uint8_t>& svlRecs, const hidl_vec<uint8_t>& tslRecs, int32_t code) {
                // Not bound to the records' sizes, unlike all other queries.
                copyAll(svl, svlRecs);
                copyAll(tsl, tslRecs);
                return code;
            },
            arg1, arg2, arg3, arg4, arg5, arg6, arg7, arg8, arg9, arg10);
}

int a_qeltvapi_channellist_delete_by_brdcst(uint32_t svl_id, uint32_t brdcst_type) {
    return direct(kFamily, HERE, &I::a_hidl_qeltvapi_channellist_delete_by_brdcst, svl_id,
                  brdcst_type);
}

int a_qeltvapi_channellist_clean_lol(uint32_t lol_id) {
    return direct(kFamily, HERE, &I::a_hidl_qeltvapi_channellist_clean_lol, lol_id);
}

int a_qeltvapi_channellist_and_ts_del_by_brdcst(uint32_t svl_id, uint32_t brdcst_type) {
    return direct(kFamily, HERE, &I::a_hidl_qeltvapi_channellist_and_ts_del_by_brdcst, svl_id,
                  brdcst_type);
}

int a_qeltvapi_channellist_is_exist_by_channel_number(uint32_t svl_id, uint32_t number) {
    return numberOf(HERE, &I::a_hidl_qeltvapi_channellist_is_exist_by_channel_number, svl_id,
                    number);
}

int a_qeltvapi_channellist_create_snapshot(uint32_t svl_id, uint32_t* snapshot) {
    return ask(kFamily, HERE, &I::a_hidl_qeltvapi_channellist_create_snapshot, storeValue(snapshot),
               svl_id);
}

int a_qeltvapi_channellist_restore_snapshot(uint32_t snapshot) {
    return direct(kFamily, HERE, &I::a_hidl_qeltvapi_channellist_restore_snapshot, snapshot);
}

int a_qeltvapi_channellist_free_snapshot(uint32_t snapshot) {
    return direct(kFamily, HERE, &I::a_hidl_qeltvapi_channellist_free_snapshot, snapshot);
}

int a_qeltvapi_channellist_get_svl_tsl_rec_by_svl_rec_id(uint32_t svl_id, uint32_t rec_id,
                                                         void* svl, void* tsl) {
    return ask(kFamily, HERE, &I::a_hidl_qeltvapi_channellist_get_svl_tsl_rec_by_svl_rec_id,
               storePair(svl, tsl), svl_id, rec_id);
}

int a_qeltvapi_channellist_del_tsl_svl_rec_by_tsl_rec_id(uint32_t svl_id, uint32_t rec_id) {
    return direct(kFamily, HERE, &I::a_hidl_qeltvapi_channellist_del_tsl_svl_rec_by_tsl_rec_id,
                  svl_id, rec_id);
}

int a_qeltvapi_channellist_del_tsl_svl_rec_by_satl_rec_id(uint32_t arg1, uint32_t arg2,
                                                          uint32_t arg3) {
    return direct(kFamily, HERE, &I::a_hidl_qeltvapi_channellist_del_tsl_svl_rec_by_satl_rec_id,
                  arg1, arg2, arg3);
}

int a_qeltvapi_tvprovider_get_all_svlid(uint16_t* svl_ids, uint16_t* count) {
    traceEnter(HERE);
    const uint16_t room = *count;
    QelTvApiShareMemory block(room * uint32_t{sizeof(uint16_t)});
    Call<I> call(kTracedBatch, HERE);
    int result = 0;
    if (block.m_status >= 0) {
        if (call) {
            QelTvApiShareMemory* memory = &block;
            result = call.ask(
                    &I::a_hidl_qeltvapi_tvprovider_get_all_svlid,
                    [=](uint16_t number, int16_t code) {
                        // The service's number counts, not the room.
                        copyBlock(svl_ids, *memory, number * sizeof(uint16_t));
                        *count = number;
                        return int{code};
                    },
                    block.m_handle, room);
        }
        block.commit();
        if (call) {
            traceExit(HERE);
        }
    }
    return result;
}

int a_qeltvapi_tvprovider_get_all_svlid_count() {
    return numberOf(HERE, &I::a_hidl_qeltvapi_tvprovider_get_all_svlid_count);
}

int a_qeltvapi_favorite_list_get_svl_handle_by_favorite_list_idx(uint32_t arg1, uint32_t arg2,
                                                                 uint32_t* handle) {
    return ask(kFamily, HERE, &I::a_hidl_qeltvapi_favorite_list_get_svl_handle_by_favorite_list_idx,
               storeValue(handle), arg1, arg2);
}

int a_qeltvapi_favorite_list_add_tail(uint32_t arg1, uint32_t arg2, uint32_t arg3) {
    return direct(kFamily, HERE, &I::a_hidl_qeltvapi_favorite_list_add_tail, arg1, arg2, arg3);
}

int a_qeltvapi_favorite_list_add_all(uint32_t arg1, uint32_t arg2, uint32_t arg3, uint32_t arg4) {
    return direct(kFamily, HERE, &I::a_hidl_qeltvapi_favorite_list_add_all, arg1, arg2, arg3, arg4);
}

int a_qeltvapi_favorite_list_delete(uint32_t arg1, uint32_t arg2, uint32_t arg3) {
    return direct(kFamily, HERE, &I::a_hidl_qeltvapi_favorite_list_delete, arg1, arg2, arg3);
}

int a_qeltvapi_favorite_list_del_all(uint32_t arg1, uint32_t arg2, uint32_t arg3, uint32_t arg4) {
    return direct(kFamily, HERE, &I::a_hidl_qeltvapi_favorite_list_del_all, arg1, arg2, arg3, arg4);
}

int a_qeltvapi_favorite_list_swap_by_channel_id(uint32_t arg1, uint32_t arg2, uint32_t arg3,
                                                uint32_t arg4) {
    // The name notwithstanding: callers have come to rely on it.
    return direct(kFamily, HERE, &I::a_hidl_qeltvapi_favorite_list_del_all, arg1, arg2, arg3, arg4);
}

int a_qeltvapi_favorite_list_number_by_mask(uint32_t arg1, uint32_t arg2, uint32_t arg3,
                                            uint32_t arg4) {
    return numberOf(HERE, &I::a_hidl_qeltvapi_favorite_list_number_by_mask, arg1, arg2, arg3, arg4);
}

int a_qeltvapi_favorite_list_get_svl_rec_by_index(uint32_t arg1, uint32_t arg2, uint32_t arg3,
                                                  uint32_t arg4, uint32_t arg5, void* svl) {
    return ask(kFamily, HERE, &I::a_hidl_qeltvapi_favorite_list_get_svl_rec_by_index, storeSvl(svl),
               arg1, arg2, arg3, arg4, arg5);
}

int a_qeltvapi_favorite_list_get_svl_tsl_rec_by_index(uint32_t arg1, uint32_t arg2, uint32_t arg3,
                                                      uint32_t arg4, uint32_t arg5, void* svl,
                                                      void* tsl) {
    return ask(kFamily, HERE, &I::a_hidl_qeltvapi_favorite_list_get_svl_tsl_rec_by_index,
               storePair(svl, tsl), arg1, arg2, arg3, arg4, arg5);
}

int a_qeltvapi_favorite_list_get_index_by_channel(uint32_t arg1, uint32_t arg2, uint32_t arg3,
                                                  uint32_t arg4, uint32_t arg5, uint32_t* index) {
    return ask(kFamily, HERE, &I::a_hidl_qeltvapi_favorite_list_get_index_by_channel,
               storeValue(index), arg1, arg2, arg3, arg4, arg5);
}

int a_qeltvapi_favorite_list_insert_move(uint32_t arg1, uint32_t arg2, uint32_t arg3, uint32_t arg4,
                                         uint32_t arg5, uint32_t arg6) {
    return direct(kFamily, HERE, &I::a_hidl_qeltvapi_favorite_list_insert_move, arg1, arg2, arg3,
                  arg4, arg5, arg6);
}

int a_qeltvapi_channellist_get_satl_handle_by_satl_id(uint32_t satl_id, uint32_t* handle) {
    return ask(kFamily, HERE, &I::a_hidl_qeltvapi_channellist_get_satl_handle_by_satl_id,
               storeValue(handle), satl_id);
}

int a_qeltvapi_channellist_get_lol_handle_by_lol_id(uint32_t lol_id, uint32_t* handle) {
    return ask(kFamily, HERE, &I::a_hidl_qeltvapi_channellist_get_lol_handle_by_lol_id,
               storeValue(handle), lol_id);
}

int a_qeltvapi_channellist_get_num_by_mask_and_brdcst(uint32_t svl_id, uint32_t mask,
                                                      uint32_t value, uint32_t brdcst_type) {
    return numberOf(HERE, &I::a_hidl_qeltvapi_channellist_get_num_by_mask_and_brdcst, svl_id, mask,
                    value, brdcst_type);
}

int a_qeltvapi_channellist_get_svl_rec_by_mask_and_brdcst(uint32_t arg1, uint32_t arg2,
                                                          uint32_t arg3, uint32_t arg4,
                                                          uint32_t arg5, void* svl) {
    return ask(kFamily, HERE, &I::a_hidl_qeltvapi_channellist_get_svl_rec_by_mask_and_brdcst,
               storeSvl(svl), arg1, arg2, arg3, arg4, arg5);
}

int a_qeltvapi_one_channellist_arrange_before(uint32_t channel_id, uint32_t before_id) {
    return direct(kFamily, HERE, &I::a_hidl_qeltvapi_one_channellist_arrange_before, channel_id,
                  before_id);
}

int a_qeltvapi_channellist_getChannelListMode() {
    return numberOf(HERE, &I::a_hidl_qeltvapi_channellist_getChannelListMode);
}

int a_qeltvapi_channellist_getChannelPumpVer(uint32_t svl_id, uint32_t* version) {
    return ask(kFamily, HERE, &I::a_hidl_qeltvapi_channellist_getChannelPumpVer,
               storeValue(version), svl_id);
}

int a_qeltvapi_channellist_setChannelPumpVer(uint32_t svl_id, uint32_t version) {
    return direct(kFamily, HERE, &I::a_hidl_qeltvapi_channellist_setChannelPumpVer, svl_id,
                  version);
}

int a_qeltvapi_one_channellist_add_channel_to_max(uint32_t svl_id, uint32_t channel_id) {
    return direct(kFamily, HERE, &I::a_hidl_qeltvapi_one_channellist_add_channel_to_max, svl_id,
                  channel_id);
}

int a_qeltvapi_channellist_gen_channel_id(uint32_t arg1, uint32_t arg2, uint32_t arg3) {
    return numberOf(HERE, &I::a_hidl_qeltvapi_channellist_gen_channel_id, arg1, arg2, arg3);
}

int a_qeltvapi_channellist_gen_one_part_channel_id(uint32_t arg1, uint32_t arg2) {
    return numberOf(HERE, &I::a_hidl_qeltvapi_channellist_gen_one_part_channel_id, arg1, arg2);
}

int a_qeltvapi_channellist_gen_non_psip_channel_id(uint32_t arg1, uint32_t arg2, uint32_t arg3) {
    return numberOf(HERE, &I::a_hidl_qeltvapi_channellist_gen_non_psip_channel_id, arg1, arg2,
                    arg3);
}

int a_qeltvapi_is_one_part_channel_id(uint32_t channel_id) {
    return numberOf(HERE, &I::a_hidl_qeltvapi_is_one_part_channel_id, channel_id);
}

int a_qeltvapi_is_non_psip_channel_id(uint32_t channel_id) {
    return numberOf(HERE, &I::a_hidl_qeltvapi_is_non_psip_channel_id, channel_id);
}

int a_qeltvapi_channellist_get_major_channel_num(uint32_t channel_id) {
    return numberOf(HERE, &I::a_hidl_qeltvapi_channellist_get_major_channel_num, channel_id);
}

int a_qeltvapi_channellist_get_minor_channel_num(uint32_t channel_id) {
    return numberOf(HERE, &I::a_hidl_qeltvapi_channellist_get_minor_channel_num, channel_id);
}

int a_qeltvapi_channellist_get_channel_index(uint32_t channel_id) {
    return numberOf(HERE, &I::a_hidl_qeltvapi_channellist_get_channel_index, channel_id);
}

int a_qeltvapi_channellist_max_channel_index() {
    return numberOf(HERE, &I::a_hidl_qeltvapi_channellist_max_channel_index);
}

int a_qeltvapi_channellist_get_ntsc_cable_last_channel() {
    return numberOf(HERE, &I::a_hidl_qeltvapi_channellist_get_ntsc_cable_last_channel);
}

int a_qeltvapi_channellist_get_cqam_scan_last_channel() {
    return numberOf(HERE, &I::a_hidl_qeltvapi_channellist_get_cqam_scan_last_channel);
}
