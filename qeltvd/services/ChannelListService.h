#pragma once

#include <qeltvapi/service/IQelTvApiChannelList.h>
#include <functional>
#include <mutex>
#include <string>
#include <vector>

#include "Blocks.h"
#include "ChannelDatabase.h"
#include "ChannelRecords.h"
#include "ChannelSnapshots.h"
#include "ConfigItems.h"
#include "DatabaseLocks.h"
#include "Notifier.h"
#include "ServiceTypes.h"

namespace qeltvd {

/**
 * IQelTvApiChannelList over the channel database. What the values mean that the interface leaves
 * to the service stands at each method in the source files and, for clients, in README.md and
 * layouts/channel_records.h.
 */
class ChannelListService : public Default<IQelTvApiChannelList> {
  public:
    ChannelListService(ChannelDatabase& channels, const ConfigItems& config, Notifier& notifier);

    // Records and the current channel.
    Return<int32_t> a_hidl_qeltvapi_channellist_lock_database(uint32_t list,
                                                              uint32_t access) override;
    Return<int32_t> a_hidl_qeltvapi_channellist_unlock_database(uint32_t list,
                                                                uint32_t access) override;
    Return<void> a_hidl_qeltvapi_channellist_get_channel_by_id(
            uint32_t list, uint32_t channelId,
            a_hidl_qeltvapi_channellist_get_channel_by_id_cb reply) override;
    Return<uint32_t> a_hidl_qeltvapi_channellist_get_current_chan_id() override;
    Return<void> a_hidl_qeltvapi_channellist_get_svl_rec_by_channel_id(
            uint32_t list, uint32_t channelId,
            a_hidl_qeltvapi_channellist_get_svl_rec_by_channel_id_cb reply) override;
    Return<void> a_hidl_qeltvapi_channellist_get_current_channel(
            a_hidl_qeltvapi_channellist_get_current_channel_cb reply) override;
    Return<int32_t> a_hidl_qeltvapi_channellist_set_current_channel(uint32_t channelId) override;
    Return<int32_t> a_hidl_qeltvapi_channellist_delete_channel_without_lcn(
            uint32_t list, uint32_t broadcast) override;
    Return<int32_t> a_hidl_qeltvapi_channellist_slide_for_one_part_channel_id(
            uint32_t list, uint32_t number, uint32_t offset) override;
    Return<int32_t> a_hidl_qeltvapi_channellist_set_current_channel_by_svlId(
            uint32_t list, uint32_t channelId) override;
    Return<int32_t> a_hidl_qeltvapi_channellist_set_2nd_current_channel_by_svlId(
            uint32_t list, uint32_t channelId) override;
    Return<void> a_hidl_qeltvapi_channellist_get_current_channel_from_nav(
            uint32_t which,
            a_hidl_qeltvapi_channellist_get_current_channel_from_nav_cb reply) override;
    Return<uint32_t> a_hidl_qeltvapi_channellist_get_channel_number(uint32_t channelId) override;
    Return<void> a_hidl_qeltvapi_channellist_get_svl_handle_by_svl_id(
            uint32_t list, a_hidl_qeltvapi_channellist_get_svl_handle_by_svl_id_cb reply) override;
    Return<void> a_hidl_qeltvapi_channellist_get_tsl_handle_by_svl_id(
            uint32_t list, a_hidl_qeltvapi_channellist_get_tsl_handle_by_svl_id_cb reply) override;
    Return<void> a_hidl_qeltvapi_channellist_get_svl_tsl_rec_by_handle(
            uint32_t svlHandle, uint32_t tslHandle, uint32_t index,
            a_hidl_qeltvapi_channellist_get_svl_tsl_rec_by_handle_cb reply) override;
    Return<void> a_hidl_qeltvapi_channellist_get_svl_tsl_rec_by_handle_ex(
            uint32_t svlHandle, uint32_t tslHandle, uint32_t count, const Handle& svl,
            const Handle& tsl,
            a_hidl_qeltvapi_channellist_get_svl_tsl_rec_by_handle_ex_cb reply) override;
    Return<int32_t> a_hidl_qeltvapi_channellist_get_svl_tsl_rec_by_index_ex(
            uint32_t list, uint32_t first, uint32_t mask, uint32_t value, uint32_t filter,
            uint32_t broadcast, uint32_t favourite, uint32_t count, uint32_t /*reserved*/,
            const Handle& svl, const Handle& tsl) override;
    Return<int32_t> a_hidl_qeltvapi_channellist_set_svl_tsl_rec_info(
            uint32_t list, uint32_t tslList, uint32_t recordId, uint32_t fields, uint32_t mask,
            uint32_t value, const Bytes& svl, const Bytes& tsl) override;
    Return<int32_t> a_hidl_qeltvapi_channellist_get_channel_rf_info(uint32_t list,
                                                                    uint32_t channelId,
                                                                    uint32_t /*reserved*/) override;

    // Queries and whole lists.
    Return<void> a_hidl_qeltvapi_channellist_get_svl_info_by_brdcast_medium(
            uint32_t medium,
            a_hidl_qeltvapi_channellist_get_svl_info_by_brdcast_medium_cb reply) override;
    Return<int32_t> a_hidl_qeltvapi_channellist_swap_channels(uint32_t list, uint32_t one,
                                                              uint32_t other) override;

    // Favourites.
    Return<int32_t> a_hidl_qeltvapi_channellist_swap_favorites(uint32_t favouriteList,
                                                               uint32_t list, uint32_t one,
                                                               uint32_t other) override;
    Return<void> a_hidl_qeltvapi_channellist_set_favorites_by_id(
            uint32_t list, uint32_t channelId, uint32_t favouriteList, uint32_t, uint32_t, bool set,
            a_hidl_qeltvapi_channellist_set_favorites_by_id_cb reply) override;

    // Queries.
    Return<void> a_hidl_qeltvapi_channellist_get_svl_tsl_recs_by_brdcast_type(
            uint32_t list, uint32_t broadcast, uint32_t first, uint32_t count, uint32_t filter,
            const Handle& svl, const Handle& tsl,
            a_hidl_qeltvapi_channellist_get_svl_tsl_recs_by_brdcast_type_cb reply) override;
    Return<void> a_hidl_qeltvapi_channellist_get_svl_tsl_recs_by_filter(
            uint32_t list, uint32_t filter, uint32_t channelId, bool around, uint32_t broadcast,
            uint32_t before, uint32_t from, const Handle& svl, const Handle& tsl,
            a_hidl_qeltvapi_channellist_get_svl_tsl_recs_by_filter_cb reply) override;
    Return<uint32_t> a_hidl_qeltvapi_channellist_get_number_by_filter(uint32_t list,
                                                                      uint32_t filter) override;
    Return<void> a_hidl_qeltvapi_channellist_get_prev_channel_id_by_filter(
            uint32_t list, uint32_t filter, uint32_t channelId, uint32_t broadcast,
            a_hidl_qeltvapi_channellist_get_prev_channel_id_by_filter_cb reply) override;

    // Favourite lists.
    Return<void> a_hidl_qeltvapi_favoritelist_get_crnt_fav_lst_by_filter(
            a_hidl_qeltvapi_favoritelist_get_crnt_fav_lst_by_filter_cb reply) override;
    Return<int32_t> a_hidl_qeltvapi_favoritelist_add_favoritelist_channel() override;
    Return<int32_t> a_hidl_qeltvapi_favoritelist_add_favoritelist_channel_by_index(
            uint32_t index) override;
    Return<int32_t>
    a_hidl_qeltvapi_favoritelist_remove_favoritelist_channel_by_index_without_show_fav_icon(
            uint32_t index) override;
    Return<int32_t> a_hidl_qeltvapi_favoritelist_remove_favoritelist_channel(
            uint32_t channelId) override;
    Return<int32_t> a_hidl_qeltvapi_favoritelist_fs_store() override;
    Return<int32_t> a_hidl_qeltvapi_favoritelist_swap_favoritelist_by_index(
            uint32_t one, uint32_t other) override;

    // Writes and requests.
    Return<int32_t> a_hidl_qeltvapi_channellist_set_svl_tsl_rec_info_without_notify(
            uint32_t list, uint32_t tslList, uint32_t recordId, uint32_t fields, uint32_t mask,
            uint32_t value, const Bytes& svl, const Bytes& tsl) override;
    Return<int32_t> a_hidl_qeltvapi_channellist_interface(uint32_t request, const Bytes& block,
                                                          uint32_t, uint64_t, uint32_t) override;

    // Queries by query information and flags; deletion.
    Return<uint32_t> a_hidl_qeltvapi_channellist_get_channel_number_by_query_info(
            uint32_t list, uint32_t filter, uint32_t broadcast, const Bytes& info) override;
    Return<void> a_hidl_qeltvapi_channellist_get_channellist_by_query_info(
            uint32_t list, uint32_t filter, uint32_t broadcast, const Bytes& info, uint32_t index,
            uint64_t, a_hidl_qeltvapi_channellist_get_channellist_by_query_info_cb reply) override;
    Return<int32_t> a_hidl_qeltvapi_channellist_svl_tsl_lol_clean(uint32_t list, uint32_t broadcast,
                                                                  uint32_t) override;
    Return<int32_t> a_hidl_qeltvapi_channellist_and_ts_lol_del_by_brdcst(
            uint32_t list, uint32_t broadcast) override;
    Return<uint32_t> a_hidl_qeltvapi_channellist_get_number_by_mask(uint32_t list, uint32_t mask,
                                                                    uint32_t value) override;
    Return<void> a_hidl_qeltvapi_channellist_get_svl_rec_by_index(
            uint32_t list, uint32_t mask, uint32_t value, uint32_t index,
            a_hidl_qeltvapi_channellist_get_svl_rec_by_index_cb reply) override;
    Return<uint32_t> a_hidl_qeltvapi_channellist_get_number_by_name(uint32_t list, uint32_t mask,
                                                                    uint32_t value,
                                                                    const String& name) override;
    Return<void> a_hidl_qeltvapi_channellist_get_index_by_channel(
            uint32_t list, uint32_t mask, uint32_t value, uint32_t channelId,
            a_hidl_qeltvapi_channellist_get_index_by_channel_cb reply) override;
    Return<void> a_hidl_qeltvapi_channellist_get_svl_rec_by_index_and_name(
            uint32_t list, uint32_t mask, uint32_t value, const String& name, uint32_t index,
            a_hidl_qeltvapi_channellist_get_svl_rec_by_index_and_name_cb reply) override;
    Return<void> a_hidl_qeltvapi_channellist_get_svl_tsl_recs_by_mask(
            uint32_t list, uint32_t tslList, uint32_t mask, uint32_t value, uint32_t first,
            uint32_t count, uint32_t broadcast, uint32_t filter, uint32_t, uint32_t,
            a_hidl_qeltvapi_channellist_get_svl_tsl_recs_by_mask_cb reply) override;
    Return<int32_t> a_hidl_qeltvapi_channellist_delete_by_brdcst(uint32_t list,
                                                                 uint32_t broadcast) override;
    Return<int32_t> a_hidl_qeltvapi_channellist_clean_lol(uint32_t list) override;
    Return<int32_t> a_hidl_qeltvapi_channellist_and_ts_del_by_brdcst(uint32_t list,
                                                                     uint32_t broadcast) override;
    Return<uint8_t> a_hidl_qeltvapi_channellist_is_exist_by_channel_number(
            uint32_t list, uint32_t number) override;

    // Snapshots.
    Return<void> a_hidl_qeltvapi_channellist_create_snapshot(
            uint32_t list, a_hidl_qeltvapi_channellist_create_snapshot_cb reply) override;
    Return<int32_t> a_hidl_qeltvapi_channellist_restore_snapshot(uint32_t snapshot) override;
    Return<int32_t> a_hidl_qeltvapi_channellist_free_snapshot(uint32_t snapshot) override;

    // Records by record id, deletion, list ids.
    Return<void> a_hidl_qeltvapi_channellist_get_svl_tsl_rec_by_svl_rec_id(
            uint32_t list, uint32_t recordId,
            a_hidl_qeltvapi_channellist_get_svl_tsl_rec_by_svl_rec_id_cb reply) override;
    Return<int32_t> a_hidl_qeltvapi_channellist_del_tsl_svl_rec_by_tsl_rec_id(
            uint32_t list, uint32_t recordId) override;
    Return<int32_t> a_hidl_qeltvapi_channellist_del_tsl_svl_rec_by_satl_rec_id(
            uint32_t list, uint32_t satelliteList, uint32_t satellite) override;
    Return<void> a_hidl_qeltvapi_tvprovider_get_all_svlid(
            const Handle& memory, uint16_t capacity,
            a_hidl_qeltvapi_tvprovider_get_all_svlid_cb reply) override;
    Return<uint32_t> a_hidl_qeltvapi_tvprovider_get_all_svlid_count() override;

    // Indexed favourite lists.
    Return<void> a_hidl_qeltvapi_favorite_list_get_svl_handle_by_favorite_list_idx(
            uint32_t favouriteList, uint32_t list,
            a_hidl_qeltvapi_favorite_list_get_svl_handle_by_favorite_list_idx_cb reply) override;
    Return<int32_t> a_hidl_qeltvapi_favorite_list_add_tail(uint32_t favouriteList, uint32_t list,
                                                           uint32_t channelId) override;
    Return<int32_t> a_hidl_qeltvapi_favorite_list_add_all(uint32_t favouriteList, uint32_t list,
                                                          uint32_t mask, uint32_t value) override;
    Return<int32_t> a_hidl_qeltvapi_favorite_list_delete(uint32_t favouriteList, uint32_t list,
                                                         uint32_t channelId) override;
    Return<int32_t> a_hidl_qeltvapi_favorite_list_del_all(uint32_t favouriteList, uint32_t list,
                                                          uint32_t mask, uint32_t value) override;
    Return<int32_t> a_hidl_qeltvapi_favorite_list_swap_by_channel_id(uint32_t favouriteList,
                                                                     uint32_t list, uint32_t one,
                                                                     uint32_t other) override;
    Return<uint32_t> a_hidl_qeltvapi_favorite_list_number_by_mask(uint32_t favouriteList,
                                                                  uint32_t list, uint32_t mask,
                                                                  uint32_t value) override;
    Return<void> a_hidl_qeltvapi_favorite_list_get_svl_rec_by_index(
            uint32_t favouriteList, uint32_t list, uint32_t mask, uint32_t value, uint32_t index,
            a_hidl_qeltvapi_favorite_list_get_svl_rec_by_index_cb reply) override;
    Return<void> a_hidl_qeltvapi_favorite_list_get_svl_tsl_rec_by_index(
            uint32_t favouriteList, uint32_t list, uint32_t mask, uint32_t value, uint32_t index,
            a_hidl_qeltvapi_favorite_list_get_svl_tsl_rec_by_index_cb reply) override;
    Return<void> a_hidl_qeltvapi_favorite_list_get_index_by_channel(
            uint32_t favouriteList, uint32_t list, uint32_t mask, uint32_t value,
            uint32_t channelId,
            a_hidl_qeltvapi_favorite_list_get_index_by_channel_cb reply) override;
    Return<int32_t> a_hidl_qeltvapi_favorite_list_insert_move(uint32_t favouriteList, uint32_t list,
                                                              uint32_t mask, uint32_t value,
                                                              uint32_t from, uint32_t to) override;

    // Handles of other lists, more queries.
    Return<void> a_hidl_qeltvapi_channellist_get_satl_handle_by_satl_id(
            uint32_t list,
            a_hidl_qeltvapi_channellist_get_satl_handle_by_satl_id_cb reply) override;
    Return<void> a_hidl_qeltvapi_channellist_get_lol_handle_by_lol_id(
            uint32_t list, a_hidl_qeltvapi_channellist_get_lol_handle_by_lol_id_cb reply) override;
    Return<uint32_t> a_hidl_qeltvapi_channellist_get_num_by_mask_and_brdcst(
            uint32_t list, uint32_t mask, uint32_t value, uint32_t broadcast) override;
    Return<void> a_hidl_qeltvapi_channellist_get_svl_rec_by_mask_and_brdcst(
            uint32_t list, uint32_t mask, uint32_t value, uint32_t broadcast, uint32_t index,
            a_hidl_qeltvapi_channellist_get_svl_rec_by_mask_and_brdcst_cb reply) override;

    // List mode, versions, channel ids.
    Return<int32_t> a_hidl_qeltvapi_one_channellist_arrange_before(uint32_t channelId,
                                                                   uint32_t beforeId) override;
    Return<uint32_t> a_hidl_qeltvapi_channellist_getChannelListMode() override;
    Return<void> a_hidl_qeltvapi_channellist_getChannelPumpVer(
            uint32_t list, a_hidl_qeltvapi_channellist_getChannelPumpVer_cb reply) override;
    Return<int32_t> a_hidl_qeltvapi_channellist_setChannelPumpVer(uint32_t list,
                                                                  uint32_t version) override;
    Return<int32_t> a_hidl_qeltvapi_one_channellist_add_channel_to_max(uint32_t list,
                                                                       uint32_t channelId) override;
    Return<uint32_t> a_hidl_qeltvapi_channellist_gen_channel_id(uint32_t list, uint32_t major,
                                                                uint32_t minor) override;
    Return<uint32_t> a_hidl_qeltvapi_channellist_gen_one_part_channel_id(uint32_t list,
                                                                         uint32_t number) override;
    Return<uint32_t> a_hidl_qeltvapi_channellist_gen_non_psip_channel_id(uint32_t list,
                                                                         uint32_t rfChannel,
                                                                         uint32_t program) override;
    Return<bool> a_hidl_qeltvapi_is_one_part_channel_id(uint32_t channelId) override;
    Return<bool> a_hidl_qeltvapi_is_non_psip_channel_id(uint32_t channelId) override;
    Return<uint16_t> a_hidl_qeltvapi_channellist_get_major_channel_num(uint32_t channelId) override;
    Return<uint16_t> a_hidl_qeltvapi_channellist_get_minor_channel_num(uint32_t channelId) override;
    Return<uint32_t> a_hidl_qeltvapi_channellist_get_channel_index(uint32_t channelId) override;
    Return<uint32_t> a_hidl_qeltvapi_channellist_max_channel_index() override;
    Return<uint32_t> a_hidl_qeltvapi_channellist_get_ntsc_cable_last_channel() override;
    Return<uint32_t> a_hidl_qeltvapi_channellist_get_cqam_scan_last_channel() override;

    // Records under their older names.
    Return<void> a_hidl_c_svl_get_rec(uint32_t list, uint32_t recordId,
                                      a_hidl_c_svl_get_rec_cb reply) override;
    Return<void> a_hidl_c_tsl_get_rec(uint32_t list, uint32_t recordId,
                                      a_hidl_c_tsl_get_rec_cb reply) override;

    // Satellites.
    Return<int32_t> a_hidl_qeltvapi_satllist_lock_database(uint32_t list) override;
    Return<int32_t> a_hidl_qeltvapi_satllist_unlock_database(uint32_t list) override;
    Return<int32_t> a_hidl_qeltvapi_satllist_read_lock_database(uint32_t list) override;
    Return<int32_t> a_hidl_qeltvapi_satllist_read_unlock_database(uint32_t list) override;
    Return<int32_t> a_hidl_qeltvapi_satllist_clean(uint32_t list) override;
    Return<void> a_hidl_qeltvapi_satllist_get_rec(
            uint32_t list, uint32_t recordId, a_hidl_qeltvapi_satllist_get_rec_cb reply) override;
    Return<int32_t> a_hidl_qeltvapi_satllist_update_rec(uint32_t list, const Bytes& rec,
                                                        bool notified) override;
    Return<void> a_hidl_qeltvapi_satllist_get_num_recs(
            uint32_t list, a_hidl_qeltvapi_satllist_get_num_recs_cb reply) override;
    Return<void> a_hidl_qeltvapi_satllist_qry_rec_id(
            uint32_t list, uint32_t position,
            a_hidl_qeltvapi_satllist_qry_rec_id_cb reply) override;
    Return<int32_t> a_hidl_qeltvapi_satllist_del_rec(uint32_t list, uint32_t recordId) override;
    Return<void> a_hidl_qeltvapi_satllist_get_rec_by_rec_idx(
            uint32_t list, uint32_t index,
            a_hidl_qeltvapi_satllist_get_rec_by_rec_idx_cb reply) override;
    Return<void> a_hidl_qeltvapi_satllist_create_snapshot(
            uint32_t list, a_hidl_qeltvapi_satllist_create_snapshot_cb reply) override;
    Return<int32_t> a_hidl_qeltvapi_satllist_restore_snapshot(uint32_t snapshot) override;
    Return<int32_t> a_hidl_qeltvapi_satllist_free_snapshot(uint32_t snapshot) override;

    // BISS keys.
    Return<void> a_hidl_qeltvapi_bisskey_get_bsl_handle_by_bsl_id(
            uint32_t list, a_hidl_qeltvapi_bisskey_get_bsl_handle_by_bsl_id_cb reply) override;
    Return<int32_t> a_hidl_qeltvapi_bisskey_lock_database(uint32_t list) override;
    Return<int32_t> a_hidl_qeltvapi_bisskey_unlock_database(uint32_t list) override;
    Return<void> a_hidl_qeltvapi_bisskey_get_recs_number(
            uint32_t list, a_hidl_qeltvapi_bisskey_get_recs_number_cb reply) override;
    Return<void> a_hidl_qeltvapi_bisskey_get_bsl_rec_by_bsl_rec_id(
            uint32_t list, uint32_t recordId,
            a_hidl_qeltvapi_bisskey_get_bsl_rec_by_bsl_rec_id_cb reply) override;
    Return<void> a_hidl_qeltvapi_bisskey_get_bsl_rec_by_idx(
            uint32_t list, uint32_t index,
            a_hidl_qeltvapi_bisskey_get_bsl_rec_by_idx_cb reply) override;
    Return<void> a_hidl_qeltvapi_bisskey_get_recs_number_by_header(
            uint32_t list, const Bytes& header,
            a_hidl_qeltvapi_bisskey_get_recs_number_by_header_cb reply) override;
    Return<void> a_hidl_qeltvapi_bisskey_get_bsl_rec_by_header(
            uint32_t list, const Bytes& header, uint32_t index,
            a_hidl_qeltvapi_bisskey_get_bsl_rec_by_header_cb reply) override;
    Return<void> a_hidl_qeltvapi_bisskey_set_bsl_rec_info(
            uint32_t list, uint32_t operation, const Bytes& rec,
            a_hidl_qeltvapi_bisskey_set_bsl_rec_info_cb reply) override;
    Return<int32_t> a_hidl_qeltvapi_bisskey_clean(uint32_t list) override;
    Return<int32_t> a_hidl_qeltvapi_bisskey_is_same_record(const Bytes& rec1,
                                                           const Bytes& rec2) override;
    Return<void> a_hidl_qeltvapi_bisskey_get_default_record(
            a_hidl_qeltvapi_bisskey_get_default_record_cb reply) override;
    Return<int32_t> a_hidl_qeltvapi_bisskey_set_key_for_current_channel() override;

    // Transport streams.
    Return<int32_t> a_hidl_qeltvapi_tsl_clean(uint32_t list) override;
    Return<int32_t> a_hidl_qeltvapi_tsl_del_rec(uint32_t list, uint32_t recordId) override;
    Return<void> a_hidl_qeltvapi_tsl_qry_rec_id(uint32_t list, uint32_t frequency,
                                                a_hidl_qeltvapi_tsl_qry_rec_id_cb reply) override;
    Return<void> a_hidl_qeltvapi_tsl_get_tsl_recs_by_satl_rec_id(
            uint32_t list, uint32_t satellite, uint32_t first, uint32_t count, uint32_t,
            a_hidl_qeltvapi_tsl_get_tsl_recs_by_satl_rec_id_cb reply) override;
    Return<void> a_hidl_qeltvapi_tsl_get_tsl_num_rec_by_satl_rec_id(
            uint32_t list, uint32_t satellite,
            a_hidl_qeltvapi_tsl_get_tsl_num_rec_by_satl_rec_id_cb reply) override;
    Return<void> a_hidl_qeltvapi_tsl_get_rec(uint32_t list, uint32_t recordId,
                                             a_hidl_qeltvapi_tsl_get_rec_cb reply) override;
    Return<int32_t> a_hidl_qeltvapi_tsl_update_rec(uint32_t list, const Bytes& rec,
                                                   bool notified) override;
    Return<void> a_hidl_qeltvapi_tsl_get_num_recs(
            uint32_t list, a_hidl_qeltvapi_tsl_get_num_recs_cb reply) override;
    Return<void> a_hidl_qeltvapi_tsl_get_rec_by_rec_idx(
            uint32_t list, uint32_t index,
            a_hidl_qeltvapi_tsl_get_rec_by_rec_idx_cb reply) override;

    // Networks.
    Return<int32_t> a_hidl_qeltvapi_nwl_clean(uint32_t list) override;
    Return<int32_t> a_hidl_qeltvapi_nwl_del_rec(uint32_t list, uint32_t recordId) override;
    Return<void> a_hidl_qeltvapi_nwl_qry_rec_id(uint32_t list, uint32_t networkId,
                                                a_hidl_qeltvapi_nwl_qry_rec_id_cb reply) override;
    Return<void> a_hidl_qeltvapi_nwl_get_nwl_recs_by_satl_rec_id(
            uint32_t list, uint32_t satellite, uint32_t first, uint32_t count, uint32_t,
            a_hidl_qeltvapi_nwl_get_nwl_recs_by_satl_rec_id_cb reply) override;
    Return<void> a_hidl_qeltvapi_nwl_get_nwl_num_rec_by_satl_rec_id(
            uint32_t list, uint32_t satellite,
            a_hidl_qeltvapi_nwl_get_nwl_num_rec_by_satl_rec_id_cb reply) override;
    Return<void> a_hidl_qeltvapi_nwl_get_rec(uint32_t list, uint32_t recordId,
                                             a_hidl_qeltvapi_nwl_get_rec_cb reply) override;
    Return<int32_t> a_hidl_qeltvapi_nwl_update_rec(uint32_t list, const Bytes& rec,
                                                   bool notified) override;
    Return<void> a_hidl_qeltvapi_nwl_get_num_recs(
            uint32_t list, a_hidl_qeltvapi_nwl_get_num_recs_cb reply) override;
    Return<void> a_hidl_qeltvapi_nwl_get_rec_by_rec_idx(
            uint32_t list, uint32_t index,
            a_hidl_qeltvapi_nwl_get_rec_by_rec_idx_cb reply) override;

  private:
    void notify(const ChannelChange& change);
    /** Runs a change of a list that no other process has locked. */
    Code change(DatabaseLocks::Database database, uint32_t list,
                const std::function<Code()>& change);
    Code changeChannels(uint32_t list, const std::function<Code()>& edit) {
        return change(DatabaseLocks::Database::kChannels, list, edit);
    }

    Code write(uint32_t list, uint32_t tslList, uint32_t recordId, uint32_t fields, uint32_t mask,
               uint32_t value, const Bytes& svl, const Bytes& tsl, Audience audience);
    /** Fills both blocks with channels; returns the number of them. */
    Result<size_t> fill(const Handle& svl, const Handle& tsl, uint64_t count, uint16_t list,
                        const ChannelQuery& query, size_t first) const;
    Result<size_t> fill(const Handle& svl, const Handle& tsl, uint64_t count,
                        const std::vector<Channel>& channels) const;
    Code restore(uint32_t handle, ChannelSnapshot::Kind kind);

    Code changeFavourites(uint32_t favouriteList,
                          const std::function<Code(std::vector<Favourite>*)>& change);
    std::vector<Channel> favourites(uint32_t favouriteList, uint32_t list, uint32_t mask,
                                    uint32_t value) const;

    ChannelDatabase& mChannels;
    const ConfigItems& mConfig;
    Notifier& mNotifier;
    DatabaseLocks mLocks;
    ChannelSnapshots mSnapshots;
    // Held over a change of a favourite list.
    std::mutex mFavouriteLock;
};

}  // namespace qeltvd
