#include "hw_qeltvapi_channellist.h"

#include <utility>

#include "wire.h"

using namespace wire;

namespace {

Table channelList() {
    Table t;
    t.interface = "IQelTvApiChannelList";
    t.tag = "(hw_qeltvapi_channellist)(client)";
    t.missing = 0;
    t.missingTraced = {"<{f}:{n}>  Error --> service is invalid\n"};
    t.entry = {"<{f}:{n}> Enter "};
    t.exit = {"<{f}:{n}> Exit "};
    t.rows = {
            Row("a_qeltvapi_channellist_lock_database", 0)
                    .call([](Outputs&) {
                        return a_qeltvapi_channellist_lock_database(0x80000001, 2);
                    })
                    .sent({u32(0x80000001), u32(2)})
                    .answered({i32(3)})
                    .returns(3)
                    .direct<int32_t>(),
            Row("a_qeltvapi_channellist_unlock_database", 1)
                    .call([](Outputs&) {
                        return a_qeltvapi_channellist_unlock_database(0x80000011, 18);
                    })
                    .sent({u32(0x80000011), u32(18)})
                    .answered({i32(-4)})
                    .returns(-4)
                    .direct<int32_t>(),
            Row("a_qeltvapi_channellist_get_channel_by_id", 2)
                    .call([](Outputs& o) {
                        return a_qeltvapi_channellist_get_channel_by_id(
                                0x80000021, o.at<uint16_t>(0), o.at(1), o.at(2));
                    })
                    .given(0, bytesOf(uint16_t{0xf022}))
                    .sent({u32(0x80000021), u32(0xf022)})
                    .answered({bytes(counted(396, 4)), bytes(counted(628, 31)), i32(5)})
                    .returns(5)
                    .stores(1, counted(396, 4))
                    .stores(2, counted(628, 31)),
            Row("a_qeltvapi_channellist_get_current_chan_id", 3)
                    .call([](Outputs&) { return a_qeltvapi_channellist_get_current_chan_id(); })
                    .answered({u32(1179651)})
                    .returns(1179651)
                    .lost(0)
                    .direct<uint32_t>(),
            Row("a_qeltvapi_channellist_get_svl_rec_by_channel_id", 4)
                    .call([](Outputs& o) {
                        return a_qeltvapi_channellist_get_svl_rec_by_channel_id(0x80000041, 66,
                                                                                o.at(0));
                    })
                    .sent({u32(0x80000041), u32(66)})
                    .answered({bytes(counted(396, 6)), i32(7)})
                    .returns(7)
                    .stores(0, counted(396, 6)),
            Row("a_qeltvapi_channellist_set_current_channel", 6)
                    .call([](Outputs&) {
                        return a_qeltvapi_channellist_set_current_channel(0x80000061);
                    })
                    .sent({u32(0x80000061)})
                    .answered({i32(9)})
                    .returns(9)
                    .direct<int32_t>(),
            Row("a_qeltvapi_channellist_delete_channel_without_lcn", 7)
                    .call([](Outputs&) {
                        return a_qeltvapi_channellist_delete_channel_without_lcn(0x80000071, 114);
                    })
                    .sent({u32(0x80000071), u32(114)})
                    .answered({i32(-10)})
                    .returns(-10)
                    .direct<int32_t>(),
            Row("a_qeltvapi_channellist_slide_for_one_part_channel_id", 8)
                    .call([](Outputs&) {
                        return a_qeltvapi_channellist_slide_for_one_part_channel_id(0x80000081, 130,
                                                                                    131);
                    })
                    .sent({u32(0x80000081), u32(130), u32(131)})
                    .answered({i32(11)})
                    .returns(11)
                    .direct<int32_t>(),
            Row("a_qeltvapi_channellist_set_current_channel_by_svlId", 9)
                    .call([](Outputs&) {
                        return a_qeltvapi_channellist_set_current_channel_by_svlId(0x80000091, 146);
                    })
                    .sent({u32(0x80000091), u32(146)})
                    .answered({i32(-12)})
                    .returns(-12)
                    .direct<int32_t>(),
            Row("a_qeltvapi_channellist_set_2nd_current_channel_by_svlId", 10)
                    .call([](Outputs&) {
                        return a_qeltvapi_channellist_set_2nd_current_channel_by_svlId(0x800000a1,
                                                                                       162);
                    })
                    .sent({u32(0x800000a1), u32(162)})
                    .answered({i32(13)})
                    .returns(13)
                    .direct<int32_t>(),
            Row("a_qeltvapi_channellist_get_channel_number", 12)
                    .call([](Outputs&) {
                        return a_qeltvapi_channellist_get_channel_number(0x800000c1);
                    })
                    .sent({u32(0x800000c1)})
                    .answered({u32(1179660)})
                    .returns(1179660)
                    .lost(0)
                    .direct<uint32_t>(),
            Row("a_qeltvapi_channellist_get_svl_handle_by_svl_id", 13)
                    .call([](Outputs& o) {
                        return a_qeltvapi_channellist_get_svl_handle_by_svl_id(0x800000d1,
                                                                               o.at<uint32_t>(0));
                    })
                    .sent({u32(0x800000d1)})
                    .answered({u32(0xa000000d), i32(-16)})
                    .returns(-16)
                    .stores(0, uint32_t{0xa000000d}),
            Row("a_qeltvapi_channellist_get_tsl_handle_by_svl_id", 14)
                    .call([](Outputs& o) {
                        return a_qeltvapi_channellist_get_tsl_handle_by_svl_id(0x800000e1,
                                                                               o.at<uint32_t>(0));
                    })
                    .sent({u32(0x800000e1)})
                    .answered({u32(0xa000000e), i32(17)})
                    .returns(17)
                    .stores(0, uint32_t{0xa000000e}),
            Row("a_qeltvapi_channellist_get_svl_tsl_rec_by_handle", 15)
                    .call([](Outputs& o) {
                        return a_qeltvapi_channellist_get_svl_tsl_rec_by_handle(
                                0x800000f1, 242, 243, o.at<uint32_t>(0), o.at<uint32_t>(1), o.at(2),
                                o.at(3));
                    })
                    .sent({u32(0x800000f1), u32(242), u32(243)})
                    .answered({u32(0xb00000f0), u32(0xb00000f1), bytes(counted(396, 17)),
                               bytes(counted(628, 44)), i32(-18)})
                    .returns(-18)
                    .stores(0, uint32_t{0xb00000f0})
                    .stores(1, uint32_t{0xb00000f1})
                    .stores(2, counted(396, 17))
                    .stores(3, counted(628, 44)),
            Row("a_qeltvapi_channellist_set_svl_tsl_rec_info", 18)
                    .call([](Outputs& o) {
                        return a_qeltvapi_channellist_set_svl_tsl_rec_info(
                                0x80000121, 290, 291, 292, o.at<uint32_t>(0), o.at<uint32_t>(1),
                                counted(396, 46).data(), counted(628, 47).data());
                    })
                    .given(0, bytesOf(uint32_t{0x90000125}))
                    .given(1, bytesOf(uint32_t{0x90000126}))
                    .sent({u32(0x80000121), u32(290), u32(291), u32(292), u32(0x90000125),
                           u32(0x90000126), bytes(counted(396, 46)), bytes(counted(628, 47))})
                    .answered({i32(21)})
                    .returns(21)
                    .direct<int32_t>(),
            Row("a_qeltvapi_channellist_get_channel_rf_info", 19)
                    .call([](Outputs&) {
                        return a_qeltvapi_channellist_get_channel_rf_info(0x80000131, 306, 307);
                    })
                    .sent({u32(0x80000131), u32(306), u32(307)})
                    .answered({i32(-22)})
                    .returns(-22)
                    .direct<int32_t>(),
            Row("a_qeltvapi_channellist_get_svl_info_by_brdcast_medium", 20)
                    .call([](Outputs& o) {
                        return a_qeltvapi_channellist_get_svl_info_by_brdcast_medium(
                                0x80000141, o.at<uint16_t>(0), o.at<uint16_t>(1),
                                o.at<uint32_t>(2));
                    })
                    .sent({u32(0x80000141)})
                    .answered({u16(0xb140), u16(0xb141), u32(0xb0000142), i32(23)})
                    .returns(23)
                    .stores(0, uint16_t{0xb140})
                    .stores(1, uint16_t{0xb141})
                    .stores(2, uint32_t{0xb0000142}),
            Row("a_qeltvapi_channellist_swap_channels", 21)
                    .call([](Outputs&) {
                        return a_qeltvapi_channellist_swap_channels(0x80000151, 338, 339);
                    })
                    .sent({u32(0x80000151), u32(338), u32(339)})
                    .answered({i32(-24)})
                    .returns(-24)
                    .direct<int32_t>(),
            Row("a_qeltvapi_channellist_swap_favorites", 22)
                    .call([](Outputs&) {
                        return a_qeltvapi_channellist_swap_favorites(0x80000161, 354, 355, 356);
                    })
                    .sent({u32(0x80000161), u32(354), u32(355), u32(356)})
                    .answered({i32(25)})
                    .returns(25)
                    .direct<int32_t>(),
            Row("a_qeltvapi_channellist_set_favorites_by_id", 23)
                    .call([](Outputs& o) {
                        return a_qeltvapi_channellist_set_favorites_by_id(
                                0x80000171, 370, 371, 372, 373, 7, o.at<uint32_t>(0));
                    })
                    .sent({u32(0x80000171), u32(370), u32(371), u32(372), u32(373), boolean(true)})
                    .answered({u32(0xa0000017), i32(-26)})
                    .returns(-26)
                    .stores(0, uint32_t{0xa0000017}),
            Row("a_qeltvapi_channellist_get_number_by_filter", 26)
                    .call([](Outputs&) {
                        return a_qeltvapi_channellist_get_number_by_filter(0x800001a1, 418);
                    })
                    .sent({u32(0x800001a1), u32(418)})
                    .answered({u32(1179674)})
                    .returns(1179674)
                    .lost(0)
                    .direct<uint32_t>(),
            Row("a_qeltvapi_channellist_get_prev_channel_id_by_filter", 27)
                    .call([](Outputs& o) {
                        return a_qeltvapi_channellist_get_prev_channel_id_by_filter(
                                0x800001b1, 434, 435, 436, o.at<uint32_t>(0));
                    })
                    .sent({u32(0x800001b1), u32(434), u32(435), u32(436)})
                    .answered({u32(0xa000001b), i32(-30)})
                    .returns(-30)
                    .stores(0, uint32_t{0xa000001b}),
            Row("a_qeltvapi_favoritelist_get_crnt_fav_lst_by_filter", 28)
                    .call([](Outputs& o) {
                        return a_qeltvapi_favoritelist_get_crnt_fav_lst_by_filter(o.at(0));
                    })
                    .answered({bytes(counted(820, 30)), i32(31)})
                    .returns(31)
                    .stores(0, counted(820, 30)),
            Row("a_qeltvapi_favoritelist_add_favoritelist_channel", 29)
                    .call([](Outputs&) {
                        return a_qeltvapi_favoritelist_add_favoritelist_channel();
                    })
                    .answered({i32(-32)})
                    .returns(-32)
                    .direct<int32_t>(),
            Row("a_qeltvapi_favoritelist_add_favoritelist_channel_by_index", 30)
                    .call([](Outputs&) {
                        return a_qeltvapi_favoritelist_add_favoritelist_channel_by_index(
                                0x800001e1);
                    })
                    .sent({u32(0x800001e1)})
                    .answered({i32(33)})
                    .returns(33)
                    .direct<int32_t>(),
            Row("a_qeltvapi_favoritelist_remove_favoritelist_channel_by_index_without_show_fav_"
                "icon",
                31)
                    .call([](Outputs&) {
                        return a_qeltvapi_favoritelist_remove_favoritelist_channel_by_index_without_show_fav_icon(
                                0x800001f1);
                    })
                    .sent({u32(0x800001f1)})
                    .answered({i32(-34)})
                    .returns(-34)
                    .direct<int32_t>(),
            Row("a_qeltvapi_favoritelist_remove_favoritelist_channel", 32)
                    .call([](Outputs&) {
                        return a_qeltvapi_favoritelist_remove_favoritelist_channel(0x80000201);
                    })
                    .sent({u32(0x80000201)})
                    .answered({i32(35)})
                    .returns(35)
                    .direct<int32_t>(),
            Row("a_qeltvapi_favoritelist_fs_store", 33)
                    .call([](Outputs&) { return a_qeltvapi_favoritelist_fs_store(); })
                    .answered({i32(-36)})
                    .returns(-36)
                    .direct<int32_t>(),
            Row("a_qeltvapi_favoritelist_swap_favoritelist_by_index", 34)
                    .call([](Outputs&) {
                        return a_qeltvapi_favoritelist_swap_favoritelist_by_index(0x80000221, 546);
                    })
                    .sent({u32(0x80000221), u32(546)})
                    .answered({i32(37)})
                    .returns(37)
                    .direct<int32_t>(),
            Row("a_qeltvapi_channellist_set_svl_tsl_rec_info_without_notify", 35)
                    .call([](Outputs& o) {
                        return a_qeltvapi_channellist_set_svl_tsl_rec_info_without_notify(
                                0x80000231, 562, 563, 564, o.at<uint32_t>(0), o.at<uint32_t>(1),
                                counted(396, 68).data(), counted(628, 69).data());
                    })
                    .given(0, bytesOf(uint32_t{0x90000235}))
                    .given(1, bytesOf(uint32_t{0x90000236}))
                    .sent({u32(0x80000231), u32(562), u32(563), u32(564), u32(0x90000235),
                           u32(0x90000236), bytes(counted(396, 68)), bytes(counted(628, 69))})
                    .answered({i32(-38)})
                    .returns(-38)
                    .direct<int32_t>(),
            Row("a_qeltvapi_channellist_interface", 36)
                    .call([](Outputs& o) {
                        return a_qeltvapi_channellist_interface(0x80000241, counted(8, 79).data(),
                                                                579, 0x80000244, o.at<uint32_t>(0));
                    })
                    .given(0, bytesOf(uint32_t{0x90000245}))
                    .sent({u32(0x80000241), bytes(counted(8, 79)), u32(579), u64(0x80000244),
                           u32(0x90000245)})
                    .answered({i32(39)})
                    .returns(39)
                    .direct<int32_t>(),
            Row("a_qeltvapi_channellist_get_channel_number_by_query_info", 37)
                    .call([](Outputs&) {
                        return a_qeltvapi_channellist_get_channel_number_by_query_info(
                                0x80000251, 594, 595, counted(12, 97).data());
                    })
                    .sent({u32(0x80000251), u32(594), u32(595), bytes(counted(12, 97))})
                    .answered({u32(1179685)})
                    .returns(1179685)
                    .lost(0)
                    .direct<uint32_t>(),
            Row("a_qeltvapi_channellist_get_channellist_by_query_info", 38)
                    .call([](Outputs& o) {
                        return a_qeltvapi_channellist_get_channellist_by_query_info(
                                0x80000261, 610, 611, counted(12, 113).data(), o.at(0), o.at(1),
                                615, 0x80000268);
                    })
                    .sent({u32(0x80000261), u32(610), u32(611), bytes(counted(12, 113)), u32(615),
                           u64(0x80000268)})
                    .answered({bytes(counted(396, 40)), bytes(counted(628, 67)), i32(41)})
                    .returns(41)
                    .stores(0, counted(396, 40))
                    .stores(1, counted(628, 67)),
            Row("a_qeltvapi_channellist_svl_tsl_lol_clean", 39)
                    .call([](Outputs& o) {
                        return a_qeltvapi_channellist_svl_tsl_lol_clean(
                                0x80000271, o.at<uint32_t>(0), o.at<uint32_t>(1));
                    })
                    .given(0, bytesOf(uint32_t{0x90000272}))
                    .given(1, bytesOf(uint32_t{0x90000273}))
                    .sent({u32(0x80000271), u32(0x90000272), u32(0x90000273)})
                    .answered({i32(-42)})
                    .returns(-42)
                    .direct<int32_t>(),
            Row("a_qeltvapi_channellist_and_ts_lol_del_by_brdcst", 40)
                    .call([](Outputs&) {
                        return a_qeltvapi_channellist_and_ts_lol_del_by_brdcst(0x80000281, 642);
                    })
                    .sent({u32(0x80000281), u32(642)})
                    .answered({i32(43)})
                    .returns(43)
                    .direct<int32_t>(),
            Row("a_qeltvapi_channellist_get_number_by_mask", 41)
                    .call([](Outputs&) {
                        return a_qeltvapi_channellist_get_number_by_mask(0x80000291, 658, 659);
                    })
                    .sent({u32(0x80000291), u32(658), u32(659)})
                    .answered({u32(1179689)})
                    .returns(1179689)
                    .lost(0)
                    .direct<uint32_t>(),
            Row("a_qeltvapi_channellist_get_svl_rec_by_index", 42)
                    .call([](Outputs& o) {
                        return a_qeltvapi_channellist_get_svl_rec_by_index(0x800002a1, 674, 675,
                                                                           676, o.at(0));
                    })
                    .sent({u32(0x800002a1), u32(674), u32(675), u32(676)})
                    .answered({bytes(counted(396, 44)), i32(45)})
                    .returns(45)
                    .stores(0, counted(396, 44)),
            Row("a_qeltvapi_channellist_get_number_by_name", 43)
                    .call([](Outputs&) {
                        return a_qeltvapi_channellist_get_number_by_name(0x800002b1, 690, 691,
                                                                         "Kanal 43");
                    })
                    .sent({u32(0x800002b1), u32(690), u32(691), str("Kanal 43")})
                    .answered({u32(1179691)})
                    .returns(1179691)
                    .lost(0)
                    .direct<uint32_t>(),
            Row("a_qeltvapi_channellist_get_index_by_channel", 44)
                    .call([](Outputs& o) {
                        return a_qeltvapi_channellist_get_index_by_channel(0x800002c1, 706, 707,
                                                                           708, o.at<uint32_t>(0));
                    })
                    .sent({u32(0x800002c1), u32(706), u32(707), u32(708)})
                    .answered({u32(0xa000002c), i32(47)})
                    .returns(47)
                    .stores(0, uint32_t{0xa000002c}),
            Row("a_qeltvapi_channellist_get_svl_rec_by_index_and_name", 45)
                    .call([](Outputs& o) {
                        return a_qeltvapi_channellist_get_svl_rec_by_index_and_name(
                                0x800002d1, 722, 723, "Kanal 45", 725, o.at(0));
                    })
                    .sent({u32(0x800002d1), u32(722), u32(723), str("Kanal 45"), u32(725)})
                    .answered({bytes(counted(396, 47)), i32(-48)})
                    .returns(-48)
                    .stores(0, counted(396, 47)),
            // As many bytes as come: these records are not held against their sizes.
            Row("a_qeltvapi_channellist_get_svl_tsl_recs_by_mask", 46)
                    .call([](Outputs& o) {
                        return a_qeltvapi_channellist_get_svl_tsl_recs_by_mask(
                                0x800002e1, 738, 739, 740, 741, 742, 743, 744, 745, 746, o.at(0),
                                o.at(1));
                    })
                    .sent({u32(0x800002e1), u32(738), u32(739), u32(740), u32(741), u32(742),
                           u32(743), u32(744), u32(745), u32(746)})
                    .answered({bytes(counted(100, 48)), bytes(counted(100, 75)), i32(49)})
                    .returns(49)
                    .stores(0, counted(100, 48))
                    .stores(1, counted(100, 75)),
            Row("a_qeltvapi_channellist_delete_by_brdcst", 47)
                    .call([](Outputs&) {
                        return a_qeltvapi_channellist_delete_by_brdcst(0x800002f1, 754);
                    })
                    .sent({u32(0x800002f1), u32(754)})
                    .answered({i32(-50)})
                    .returns(-50)
                    .direct<int32_t>(),
            Row("a_qeltvapi_channellist_clean_lol", 48)
                    .call([](Outputs&) { return a_qeltvapi_channellist_clean_lol(0x80000301); })
                    .sent({u32(0x80000301)})
                    .answered({i32(51)})
                    .returns(51)
                    .direct<int32_t>(),
            Row("a_qeltvapi_channellist_and_ts_del_by_brdcst", 49)
                    .call([](Outputs&) {
                        return a_qeltvapi_channellist_and_ts_del_by_brdcst(0x80000311, 786);
                    })
                    .sent({u32(0x80000311), u32(786)})
                    .answered({i32(-52)})
                    .returns(-52)
                    .direct<int32_t>(),
            Row("a_qeltvapi_channellist_is_exist_by_channel_number", 50)
                    .call([](Outputs&) {
                        return a_qeltvapi_channellist_is_exist_by_channel_number(0x80000321, 802);
                    })
                    .sent({u32(0x80000321), u32(802)})
                    .answered({u8(226)})
                    .returns(226)
                    .lost(0)
                    .direct<uint8_t>(),
            Row("a_qeltvapi_channellist_create_snapshot", 51)
                    .call([](Outputs& o) {
                        return a_qeltvapi_channellist_create_snapshot(0x80000331,
                                                                      o.at<uint32_t>(0));
                    })
                    .sent({u32(0x80000331)})
                    .answered({u32(0xa0000033), i32(-54)})
                    .returns(-54)
                    .stores(0, uint32_t{0xa0000033}),
            Row("a_qeltvapi_channellist_restore_snapshot", 52)
                    .call([](Outputs&) {
                        return a_qeltvapi_channellist_restore_snapshot(0x80000341);
                    })
                    .sent({u32(0x80000341)})
                    .answered({i32(55)})
                    .returns(55)
                    .direct<int32_t>(),
            Row("a_qeltvapi_channellist_free_snapshot", 53)
                    .call([](Outputs&) { return a_qeltvapi_channellist_free_snapshot(0x80000351); })
                    .sent({u32(0x80000351)})
                    .answered({i32(-56)})
                    .returns(-56)
                    .direct<int32_t>(),
            Row("a_qeltvapi_channellist_get_svl_tsl_rec_by_svl_rec_id", 54)
                    .call([](Outputs& o) {
                        return a_qeltvapi_channellist_get_svl_tsl_rec_by_svl_rec_id(
                                0x80000361, 866, o.at(0), o.at(1));
                    })
                    .sent({u32(0x80000361), u32(866)})
                    .answered({bytes(counted(396, 56)), bytes(counted(628, 83)), i32(57)})
                    .returns(57)
                    .stores(0, counted(396, 56))
                    .stores(1, counted(628, 83)),
            Row("a_qeltvapi_channellist_del_tsl_svl_rec_by_tsl_rec_id", 55)
                    .call([](Outputs&) {
                        return a_qeltvapi_channellist_del_tsl_svl_rec_by_tsl_rec_id(0x80000371,
                                                                                    882);
                    })
                    .sent({u32(0x80000371), u32(882)})
                    .answered({i32(-58)})
                    .returns(-58)
                    .direct<int32_t>(),
            Row("a_qeltvapi_channellist_del_tsl_svl_rec_by_satl_rec_id", 56)
                    .call([](Outputs&) {
                        return a_qeltvapi_channellist_del_tsl_svl_rec_by_satl_rec_id(0x80000381,
                                                                                     898, 899);
                    })
                    .sent({u32(0x80000381), u32(898), u32(899)})
                    .answered({i32(59)})
                    .returns(59)
                    .direct<int32_t>(),
            Row("a_qeltvapi_tvprovider_get_all_svlid_count", 58)
                    .call([](Outputs&) { return a_qeltvapi_tvprovider_get_all_svlid_count(); })
                    .answered({u32(1179706)})
                    .returns(1179706)
                    .lost(0)
                    .direct<uint32_t>(),
            Row("a_qeltvapi_favorite_list_get_svl_handle_by_favorite_list_idx", 59)
                    .call([](Outputs& o) {
                        return a_qeltvapi_favorite_list_get_svl_handle_by_favorite_list_idx(
                                0x800003b1, 946, o.at<uint32_t>(0));
                    })
                    .sent({u32(0x800003b1), u32(946)})
                    .answered({u32(0xa000003b), i32(-62)})
                    .returns(-62)
                    .stores(0, uint32_t{0xa000003b}),
            Row("a_qeltvapi_favorite_list_add_tail", 60)
                    .call([](Outputs&) {
                        return a_qeltvapi_favorite_list_add_tail(0x800003c1, 962, 963);
                    })
                    .sent({u32(0x800003c1), u32(962), u32(963)})
                    .answered({i32(63)})
                    .returns(63)
                    .direct<int32_t>(),
            Row("a_qeltvapi_favorite_list_add_all", 61)
                    .call([](Outputs&) {
                        return a_qeltvapi_favorite_list_add_all(0x800003d1, 978, 979, 980);
                    })
                    .sent({u32(0x800003d1), u32(978), u32(979), u32(980)})
                    .answered({i32(-64)})
                    .returns(-64)
                    .direct<int32_t>(),
            Row("a_qeltvapi_favorite_list_delete", 62)
                    .call([](Outputs&) {
                        return a_qeltvapi_favorite_list_delete(0x800003e1, 994, 995);
                    })
                    .sent({u32(0x800003e1), u32(994), u32(995)})
                    .answered({i32(65)})
                    .returns(65)
                    .direct<int32_t>(),
            Row("a_qeltvapi_favorite_list_del_all", 63)
                    .call([](Outputs&) {
                        return a_qeltvapi_favorite_list_del_all(0x800003f1, 1010, 1011, 1012);
                    })
                    .sent({u32(0x800003f1), u32(1010), u32(1011), u32(1012)})
                    .answered({i32(-66)})
                    .returns(-66)
                    .direct<int32_t>(),
            // Asks for the deletion, too.
            Row("a_qeltvapi_favorite_list_swap_by_channel_id", 63)
                    .call([](Outputs&) {
                        return a_qeltvapi_favorite_list_swap_by_channel_id(0x800003f1, 1010, 1011,
                                                                           1012);
                    })
                    .sent({u32(0x800003f1), u32(1010), u32(1011), u32(1012)})
                    .answered({i32(-66)})
                    .returns(-66)
                    .direct<int32_t>(),
            Row("a_qeltvapi_favorite_list_number_by_mask", 65)
                    .call([](Outputs&) {
                        return a_qeltvapi_favorite_list_number_by_mask(0x80000411, 1042, 1043,
                                                                       1044);
                    })
                    .sent({u32(0x80000411), u32(1042), u32(1043), u32(1044)})
                    .answered({u32(1179713)})
                    .returns(1179713)
                    .lost(0)
                    .direct<uint32_t>(),
            Row("a_qeltvapi_favorite_list_get_svl_rec_by_index", 66)
                    .call([](Outputs& o) {
                        return a_qeltvapi_favorite_list_get_svl_rec_by_index(0x80000421, 1058, 1059,
                                                                             1060, 1061, o.at(0));
                    })
                    .sent({u32(0x80000421), u32(1058), u32(1059), u32(1060), u32(1061)})
                    .answered({bytes(counted(396, 68)), i32(69)})
                    .returns(69)
                    .stores(0, counted(396, 68)),
            Row("a_qeltvapi_favorite_list_get_svl_tsl_rec_by_index", 67)
                    .call([](Outputs& o) {
                        return a_qeltvapi_favorite_list_get_svl_tsl_rec_by_index(
                                0x80000431, 1074, 1075, 1076, 1077, o.at(0), o.at(1));
                    })
                    .sent({u32(0x80000431), u32(1074), u32(1075), u32(1076), u32(1077)})
                    .answered({bytes(counted(396, 69)), bytes(counted(628, 96)), i32(-70)})
                    .returns(-70)
                    .stores(0, counted(396, 69))
                    .stores(1, counted(628, 96)),
            Row("a_qeltvapi_favorite_list_get_index_by_channel", 68)
                    .call([](Outputs& o) {
                        return a_qeltvapi_favorite_list_get_index_by_channel(
                                0x80000441, 1090, 1091, 1092, 1093, o.at<uint32_t>(0));
                    })
                    .sent({u32(0x80000441), u32(1090), u32(1091), u32(1092), u32(1093)})
                    .answered({u32(0xa0000044), i32(71)})
                    .returns(71)
                    .stores(0, uint32_t{0xa0000044}),
            Row("a_qeltvapi_favorite_list_insert_move", 69)
                    .call([](Outputs&) {
                        return a_qeltvapi_favorite_list_insert_move(0x80000451, 1106, 1107, 1108,
                                                                    1109, 1110);
                    })
                    .sent({u32(0x80000451), u32(1106), u32(1107), u32(1108), u32(1109), u32(1110)})
                    .answered({i32(-72)})
                    .returns(-72)
                    .direct<int32_t>(),
            Row("a_qeltvapi_channellist_get_satl_handle_by_satl_id", 70)
                    .call([](Outputs& o) {
                        return a_qeltvapi_channellist_get_satl_handle_by_satl_id(0x80000461,
                                                                                 o.at<uint32_t>(0));
                    })
                    .sent({u32(0x80000461)})
                    .answered({u32(0xa0000046), i32(73)})
                    .returns(73)
                    .stores(0, uint32_t{0xa0000046}),
            Row("a_qeltvapi_channellist_get_lol_handle_by_lol_id", 71)
                    .call([](Outputs& o) {
                        return a_qeltvapi_channellist_get_lol_handle_by_lol_id(0x80000471,
                                                                               o.at<uint32_t>(0));
                    })
                    .sent({u32(0x80000471)})
                    .answered({u32(0xa0000047), i32(-74)})
                    .returns(-74)
                    .stores(0, uint32_t{0xa0000047}),
            Row("a_qeltvapi_channellist_get_num_by_mask_and_brdcst", 72)
                    .call([](Outputs&) {
                        return a_qeltvapi_channellist_get_num_by_mask_and_brdcst(0x80000481, 1154,
                                                                                 1155, 1156);
                    })
                    .sent({u32(0x80000481), u32(1154), u32(1155), u32(1156)})
                    .answered({u32(1179720)})
                    .returns(1179720)
                    .lost(0)
                    .direct<uint32_t>(),
            Row("a_qeltvapi_channellist_get_svl_rec_by_mask_and_brdcst", 73)
                    .call([](Outputs& o) {
                        return a_qeltvapi_channellist_get_svl_rec_by_mask_and_brdcst(
                                0x80000491, 1170, 1171, 1172, 1173, o.at(0));
                    })
                    .sent({u32(0x80000491), u32(1170), u32(1171), u32(1172), u32(1173)})
                    .answered({bytes(counted(396, 75)), i32(-76)})
                    .returns(-76)
                    .stores(0, counted(396, 75)),
            Row("a_qeltvapi_one_channellist_arrange_before", 74)
                    .call([](Outputs&) {
                        return a_qeltvapi_one_channellist_arrange_before(0x800004a1, 1186);
                    })
                    .sent({u32(0x800004a1), u32(1186)})
                    .answered({i32(77)})
                    .returns(77)
                    .direct<int32_t>(),
            Row("a_qeltvapi_channellist_getChannelListMode", 75)
                    .call([](Outputs&) { return a_qeltvapi_channellist_getChannelListMode(); })
                    .answered({u32(1179723)})
                    .returns(1179723)
                    .lost(0)
                    .direct<uint32_t>(),
            Row("a_qeltvapi_channellist_getChannelPumpVer", 76)
                    .call([](Outputs& o) {
                        return a_qeltvapi_channellist_getChannelPumpVer(0x800004c1,
                                                                        o.at<uint32_t>(0));
                    })
                    .sent({u32(0x800004c1)})
                    .answered({u32(0xa000004c), i32(79)})
                    .returns(79)
                    .stores(0, uint32_t{0xa000004c}),
            Row("a_qeltvapi_channellist_setChannelPumpVer", 77)
                    .call([](Outputs&) {
                        return a_qeltvapi_channellist_setChannelPumpVer(0x800004d1, 1234);
                    })
                    .sent({u32(0x800004d1), u32(1234)})
                    .answered({i32(-80)})
                    .returns(-80)
                    .direct<int32_t>(),
            Row("a_qeltvapi_one_channellist_add_channel_to_max", 78)
                    .call([](Outputs&) {
                        return a_qeltvapi_one_channellist_add_channel_to_max(0x800004e1, 1250);
                    })
                    .sent({u32(0x800004e1), u32(1250)})
                    .answered({i32(81)})
                    .returns(81)
                    .direct<int32_t>(),
            Row("a_qeltvapi_channellist_gen_channel_id", 79)
                    .call([](Outputs&) {
                        return a_qeltvapi_channellist_gen_channel_id(0x800004f1, 1266, 1267);
                    })
                    .sent({u32(0x800004f1), u32(1266), u32(1267)})
                    .answered({u32(1179727)})
                    .returns(1179727)
                    .lost(0)
                    .direct<uint32_t>(),
            Row("a_qeltvapi_channellist_gen_one_part_channel_id", 80)
                    .call([](Outputs&) {
                        return a_qeltvapi_channellist_gen_one_part_channel_id(0x80000501, 1282);
                    })
                    .sent({u32(0x80000501), u32(1282)})
                    .answered({u32(1179728)})
                    .returns(1179728)
                    .lost(0)
                    .direct<uint32_t>(),
            Row("a_qeltvapi_channellist_gen_non_psip_channel_id", 81)
                    .call([](Outputs&) {
                        return a_qeltvapi_channellist_gen_non_psip_channel_id(0x80000511, 1298,
                                                                              1299);
                    })
                    .sent({u32(0x80000511), u32(1298), u32(1299)})
                    .answered({u32(1179729)})
                    .returns(1179729)
                    .lost(0)
                    .direct<uint32_t>(),
            Row("a_qeltvapi_is_one_part_channel_id", 82)
                    .call([](Outputs&) { return a_qeltvapi_is_one_part_channel_id(0x80000521); })
                    .sent({u32(0x80000521)})
                    .answered({boolean(true)})
                    .returns(1)
                    .lost(0)
                    .direct<bool>(),
            Row("a_qeltvapi_is_non_psip_channel_id", 83)
                    .call([](Outputs&) { return a_qeltvapi_is_non_psip_channel_id(0x80000531); })
                    .sent({u32(0x80000531)})
                    .answered({boolean(true)})
                    .returns(1)
                    .lost(0)
                    .direct<bool>(),
            // Only the low 16 bits of an answer count.
            Row("a_qeltvapi_channellist_get_major_channel_num", 84)
                    .call([](Outputs&) {
                        return a_qeltvapi_channellist_get_major_channel_num(0x80000541);
                    })
                    .sent({u32(0x80000541)})
                    .answered({u32(0x8003ff54)})
                    .returns(65364)
                    .lost(0)
                    .direct<uint16_t>(),
            Row("a_qeltvapi_channellist_get_minor_channel_num", 85)
                    .call([](Outputs&) {
                        return a_qeltvapi_channellist_get_minor_channel_num(0x80000551);
                    })
                    .sent({u32(0x80000551)})
                    .answered({u32(0x8003ff55)})
                    .returns(65365)
                    .lost(0)
                    .direct<uint16_t>(),
            Row("a_qeltvapi_channellist_get_channel_index", 86)
                    .call([](Outputs&) {
                        return a_qeltvapi_channellist_get_channel_index(0x80000561);
                    })
                    .sent({u32(0x80000561)})
                    .answered({u32(1179734)})
                    .returns(1179734)
                    .lost(0)
                    .direct<uint32_t>(),
            Row("a_qeltvapi_channellist_max_channel_index", 87)
                    .call([](Outputs&) { return a_qeltvapi_channellist_max_channel_index(); })
                    .answered({u32(1179735)})
                    .returns(1179735)
                    .lost(0)
                    .direct<uint32_t>(),
            Row("a_qeltvapi_channellist_get_ntsc_cable_last_channel", 88)
                    .call([](Outputs&) {
                        return a_qeltvapi_channellist_get_ntsc_cable_last_channel();
                    })
                    .answered({u32(1179736)})
                    .returns(1179736)
                    .lost(0)
                    .direct<uint32_t>(),
            Row("a_qeltvapi_channellist_get_cqam_scan_last_channel", 89)
                    .call([](Outputs&) {
                        return a_qeltvapi_channellist_get_cqam_scan_last_channel();
                    })
                    .answered({u32(1179737)})
                    .returns(1179737)
                    .lost(0)
                    .direct<uint32_t>(),
    };
    return t;
}

const std::string invalid = "<{f}:{n}>  Error --> service is invalid\n";
const std::string enter = "<{f}:{n}> Enter ";
const std::string leave = "<{f}:{n}> Exit ";
const std::string noId = "<{f}:{n}> Get ui2_svl_id:0";
const std::string made =
        "(hw_iom)(client)|<QelTvApiShareMemory:51> 1, m_ion_fd:{n}, m_share_fd:{n}";
const std::string released = "(hw_iom)(client)|<commit:126> commit {n} {n}";
const std::string releasedBefore = "(hw_iom)(client)|<commit:126> commit -1 -1";
const std::string gone = "(hw_iom)(client)|<~QelTvApiShareMemory:91> ~";

/** The functions that write their lines in another order or store in any case. */
Table unlikeTheOthers() {
    const std::vector<std::string> currentExit{noId, leave};
    const std::vector<std::string> batchExit{released, released,       leave, releasedBefore,
                                             gone,     releasedBefore, gone};
    const std::vector<std::string> noLines;
    Table t;
    t.interface = "IQelTvApiChannelList";
    t.tag = "(hw_qeltvapi_channellist)(client)";
    t.missing = 0;
    t.missingTraced = {invalid};
    t.rows = {
            // A record of another size: the list id is 0 then, as without an answer.
            Row("a_qeltvapi_channellist_get_current_channel", 5)
                    .call([](Outputs& o) {
                        return a_qeltvapi_channellist_get_current_channel(o.at<uint16_t>(0),
                                                                          o.at(1), o.at(2));
                    })
                    .answered({u16(0xb050), bytes(counted(395)), bytes(counted(628)), i32(8)})
                    .returns(8)
                    .storesAlways(0, bytesOf(uint16_t{0}))
                    .entry({enter})
                    .reply({"<operator():{n}>  struct size not match(396:395 628:628)"})
                    .exit(currentExit)
                    .exitWhenMissing(currentExit),
            Row("a_qeltvapi_channellist_get_current_channel_from_nav", 11)
                    .call([](Outputs& o) {
                        return a_qeltvapi_channellist_get_current_channel_from_nav(
                                0x800000b1, o.at<uint16_t>(0), o.at(1), o.at(2));
                    })
                    .sent({u32(0x800000b1)})
                    .answered({u16(0xb0b0), bytes(counted(396)), bytes(counted(629)), i32(-9)})
                    .returns(-9)
                    .storesAlways(0, bytesOf(uint16_t{0}))
                    .entry({enter})
                    .reply({"<operator():{n}>  struct size not match(396:396 628:629)"})
                    .exit(currentExit)
                    .exitWhenMissing(currentExit),
            // The blocks are stored in any case, here as freshly made.
            Row("a_qeltvapi_channellist_get_svl_tsl_rec_by_handle_ex", 16)
                    .call([](Outputs& o) {
                        return a_qeltvapi_channellist_get_svl_tsl_rec_by_handle_ex(
                                0x80000101, 258, 3, o.at<uint32_t>(0), o.at<uint32_t>(1), o.at(2),
                                o.at(3));
                    })
                    .sent({u32(0x80000101), u32(258), u32(3), memory(3 * 396), memory(3 * 628)})
                    .answered({u32(0xb0000100), u32(0xb0000101), i32(19)})
                    .returns(19)
                    .lost(0)
                    .stores(0, uint32_t{0xb0000100})
                    .stores(1, uint32_t{0xb0000101})
                    .storesAlways(2, Bytes(3 * 396, '\0'))
                    .storesAlways(3, Bytes(3 * 628, '\0'))
                    .entry({made, made})
                    .missingLines({}, {})
                    .exit(batchExit)
                    .exitWhenMissing(batchExit),
            Row("a_qeltvapi_channellist_get_svl_tsl_rec_by_index_ex", 17)
                    .call([](Outputs& o) {
                        return a_qeltvapi_channellist_get_svl_tsl_rec_by_index_ex(
                                0x80000111, 274, 275, 276, 277, 278, 279, 2, 281, o.at(0), o.at(1));
                    })
                    .sent({u32(0x80000111), u32(274), u32(275), u32(276), u32(277), u32(278),
                           u32(279), u32(2), u32(281), memory(2 * 396), memory(2 * 628)})
                    .answered({i32(-20)})
                    .returns(-20)
                    .lost(0)
                    .direct<int32_t>()
                    .storesAlways(0, Bytes(2 * 396, '\0'))
                    .storesAlways(1, Bytes(2 * 628, '\0'))
                    .entry({made, made})
                    .missingLines({}, {})
                    .exit(batchExit)
                    .exitWhenMissing(batchExit),
            Row("a_qeltvapi_channellist_get_svl_tsl_recs_by_brdcast_type", 24)
                    .call([](Outputs& o) {
                        return a_qeltvapi_channellist_get_svl_tsl_recs_by_brdcast_type(
                                0x80000181, 386, 387, 4, 389, o.at(0), o.at(1), o.at<uint32_t>(2),
                                o.at<uint32_t>(3));
                    })
                    .sent({u32(0x80000181), u32(386), u32(387), u32(4), u32(389), memory(4 * 396),
                           memory(4 * 628)})
                    .answered({u32(0xb0000180), u32(0xb0000181), i32(27)})
                    .returns(27)
                    .lost(0)
                    .stores(2, uint32_t{0xb0000180})
                    .stores(3, uint32_t{0xb0000181})
                    .storesAlways(0, Bytes(4 * 396, '\0'))
                    .storesAlways(1, Bytes(4 * 628, '\0'))
                    .entry({enter, made, made})
                    .exit(batchExit)
                    .exitWhenMissing(batchExit),
            Row("a_qeltvapi_channellist_get_svl_tsl_recs_by_filter", 25)
                    .call([](Outputs& o) {
                        return a_qeltvapi_channellist_get_svl_tsl_recs_by_filter(
                                0x80000191, 402, 403, 7, 405, 3, 2, o.at(0), o.at(1),
                                o.at<uint32_t>(2), o.at<uint32_t>(3));
                    })
                    .sent({u32(0x80000191), u32(402), u32(403), boolean(true), u32(405), u32(3),
                           u32(2), memory(5 * 396), memory(5 * 628)})
                    .answered({u32(0xb0000190), u32(0xb0000191), i32(-28)})
                    .returns(-28)
                    .lost(0)
                    .stores(2, uint32_t{0xb0000190})
                    .stores(3, uint32_t{0xb0000191})
                    .storesAlways(0, Bytes(5 * 396, '\0'))
                    .storesAlways(1, Bytes(5 * 628, '\0'))
                    .entry({enter, made, made})
                    .exit(batchExit)
                    .exitWhenMissing(batchExit),
            // The code has 16 bits and a sign.
            Row("a_qeltvapi_tvprovider_get_all_svlid", 57)
                    .call([](Outputs& o) {
                        return a_qeltvapi_tvprovider_get_all_svlid(o.at<uint16_t>(0),
                                                                   o.at<uint16_t>(1));
                    })
                    .given(1, bytesOf(uint16_t{4}))
                    .sent({memory(4 * 2), u16(4)})
                    .answered({u16(3), i16(-2)})
                    .returns(-2)
                    .lost(0)
                    .stores(0, Bytes(3 * 2, '\0'))
                    .stores(1, uint16_t{3})
                    .entry({enter, made})
                    .exit({released, leave, releasedBefore, gone})
                    .exitWhenMissing({released, releasedBefore, gone}),
    };
    return t;
}

TEST(ChannelListWire, ReturnsZeroAndTouchesOnlyTheBlocksWhenTheServiceIsMissing) {
    runMissing(channelList());
    runMissing(unlikeTheOthers());
}

TEST(ChannelListWire, CallsItsMethodAndStoresTheAnswer) {
    runAnswered(channelList());
    runAnswered(unlikeTheOthers());
}

TEST(ChannelListWire, LeavesTheOutputsAloneWhenTheReplyIsLost) {
    runLost(channelList());
    runLost(unlikeTheOthers());
}

ScriptedService& service() {
    ScriptedService& service = ScriptedService::instance();
    service.start();
    return service;
}

/** Answers the next call regardless of its arguments. */
void answerAnything(Values answer) {
    service().inspect([](const android::hardware::Parcel&) { return std::string(); },
                      std::move(answer));
}

/**
 * Makes the call without and with debugging. Only the latter writes lines: the entry, the ones of
 * the reply handler and those before the exit, and the exit.
 */
template <class F>
void expectTraced(const std::string& function, const std::vector<std::string>& inside,
                  const F& call) {
    service();
    for (const bool debugging : {false, true}) {
        takeLog();
        Debug debug(debugging);
        call();
        std::vector<std::string> lines;
        if (debugging) {
            lines = inside;
            lines.insert(lines.begin(), "<" + function + ":{n}> Enter ");
            lines.push_back("<" + function + ":{n}> Exit ");
        }
        expectLog("(hw_qeltvapi_channellist)(client)", lines);
    }
}

TEST(ChannelListWire, ReadsTheCurrentChannelWithItsList) {
    captureLog();
    for (const bool navigator : {false, true}) {
        Bytes svl(396, '-');
        Bytes tsl(628, '-');
        uint16_t list = 1;
        const std::string name = std::string("a_qeltvapi_channellist_get_current_channel") +
                                 (navigator ? "_from_nav" : "");
        expectTraced(name, {"<" + name + ":{n}> Get ui2_svl_id:65244"}, [&] {
            answerAnything({u16(0xfedc), bytes(counted(396, 3)), bytes(counted(628, 5)), i32(6)});
            EXPECT_EQ(6, navigator ? a_qeltvapi_channellist_get_current_channel_from_nav(
                                             9, &list, svl.data(), tsl.data())
                                   : a_qeltvapi_channellist_get_current_channel(&list, svl.data(),
                                                                                tsl.data()));
        });
        EXPECT_EQ(0xfedc, list);
        EXPECT_EQ(counted(396, 3), svl);
        EXPECT_EQ(counted(628, 5), tsl);
    }
}

struct Record {
    const char* name;
    size_t size;
    int (*read)(void* record);
};

TEST(ChannelListWire, OnlyTracesARecordOfAnotherSize) {
    const Record records[] = {
            {"a_qeltvapi_channellist_get_svl_rec_by_channel_id", 396,
             [](void* p) { return a_qeltvapi_channellist_get_svl_rec_by_channel_id(1, 2, p); }},
            {"a_qeltvapi_channellist_get_svl_rec_by_index", 396,
             [](void* p) { return a_qeltvapi_channellist_get_svl_rec_by_index(1, 2, 3, 4, p); }},
            {"a_qeltvapi_channellist_get_svl_rec_by_index_and_name", 396,
             [](void* p) {
                 return a_qeltvapi_channellist_get_svl_rec_by_index_and_name(1, 2, 3, "n", 4, p);
             }},
            {"a_qeltvapi_channellist_get_svl_rec_by_mask_and_brdcst", 396,
             [](void* p) {
                 return a_qeltvapi_channellist_get_svl_rec_by_mask_and_brdcst(1, 2, 3, 4, 5, p);
             }},
            {"a_qeltvapi_favorite_list_get_svl_rec_by_index", 396,
             [](void* p) {
                 return a_qeltvapi_favorite_list_get_svl_rec_by_index(1, 2, 3, 4, 5, p);
             }},
            {"a_qeltvapi_favoritelist_get_crnt_fav_lst_by_filter", 820,
             a_qeltvapi_favoritelist_get_crnt_fav_lst_by_filter},
    };
    captureLog();
    for (const Record& record : records) {
        for (const size_t size : {size_t{0}, record.size - 1, record.size + 1}) {
            SCOPED_TRACE(std::string(record.name) + ", " + std::to_string(size) + " bytes");
            Bytes buffer(record.size + 8, '-');
            expectTraced(record.name,
                         {"<operator():{n}>  struct size not match(" + std::to_string(record.size) +
                          ":" + std::to_string(size) + ")"},
                         [&] {
                             answerAnything({bytes(counted(size)), i32(7)});
                             EXPECT_EQ(7, record.read(buffer.data()));
                         });
            EXPECT_EQ(Bytes(record.size + 8, '-'), buffer);
        }
    }
}

struct Pair {
    const char* name;
    /** How many words come before the records. */
    int words;
    /** Blanks before the text and between the pairs. */
    const char* before;
    const char* between;
    int (*read)(uint32_t* words, void* svl, void* tsl);
};

TEST(ChannelListWire, StoresAPairOnlyWhenBothSizesAreRight) {
    const Pair pairs[] = {
            {"a_qeltvapi_channellist_get_channel_by_id", 0, "", " ",
             [](uint32_t*, void* svl, void* tsl) {
                 const uint16_t id = 2;
                 return a_qeltvapi_channellist_get_channel_by_id(1, &id, svl, tsl);
             }},
            {"a_qeltvapi_channellist_get_svl_tsl_rec_by_handle", 2, " ", " ",
             [](uint32_t* words, void* svl, void* tsl) {
                 return a_qeltvapi_channellist_get_svl_tsl_rec_by_handle(1, 2, 3, &words[0],
                                                                         &words[1], svl, tsl);
             }},
            {"a_qeltvapi_channellist_get_channellist_by_query_info", 0, " ", "  ",
             [](uint32_t*, void* svl, void* tsl) {
                 return a_qeltvapi_channellist_get_channellist_by_query_info(
                         1, 2, 3, counted(12).data(), svl, tsl, 4, 5);
             }},
            {"a_qeltvapi_channellist_get_svl_tsl_rec_by_svl_rec_id", 0, " ", " ",
             [](uint32_t*, void* svl, void* tsl) {
                 return a_qeltvapi_channellist_get_svl_tsl_rec_by_svl_rec_id(1, 2, svl, tsl);
             }},
            {"a_qeltvapi_favorite_list_get_svl_tsl_rec_by_index", 0, " ", " ",
             [](uint32_t*, void* svl, void* tsl) {
                 return a_qeltvapi_favorite_list_get_svl_tsl_rec_by_index(1, 2, 3, 4, 5, svl, tsl);
             }},
    };
    const std::pair<size_t, size_t> sizes[] = {{395, 628}, {397, 628}, {396, 627}, {396, 629}};
    captureLog();
    for (const Pair& pair : pairs) {
        for (const auto& [svlSize, tslSize] : sizes) {
            SCOPED_TRACE(std::string(pair.name) + ", " + std::to_string(svlSize) + " and " +
                         std::to_string(tslSize) + " bytes");
            uint32_t words[] = {41, 42};
            Bytes svl(400, '-');
            Bytes tsl(632, '-');
            Values answer(static_cast<size_t>(pair.words), u32(77));
            answer.push_back(bytes(counted(svlSize)));
            answer.push_back(bytes(counted(tslSize)));
            answer.push_back(i32(-11));
            expectTraced(pair.name,
                         {"<operator():{n}> " + std::string(pair.before) +
                          "struct size not match(396:" + std::to_string(svlSize) + pair.between +
                          "628:" + std::to_string(tslSize) + ")"},
                         [&] {
                             answerAnything(answer);
                             EXPECT_EQ(-11, pair.read(words, svl.data(), tsl.data()));
                         });
            EXPECT_EQ(Bytes(400, '-'), svl);
            EXPECT_EQ(Bytes(632, '-'), tsl);
            EXPECT_EQ(41u, words[0]);
            EXPECT_EQ(42u, words[1]);
        }
    }
}

TEST(ChannelListWire, SendsFlagsAsTruthValues) {
    for (const int flag : {0, 1, 2, -1}) {
        uint32_t value = 0;
        service().expect({u32(1), u32(2), u32(3), u32(4), u32(5), boolean(flag != 0)},
                         {u32(6), i32(0)});
        EXPECT_EQ(0, a_qeltvapi_channellist_set_favorites_by_id(1, 2, 3, 4, 5, flag, &value));
        uint32_t value2 = 0;
        service().expect({u32(1), u32(2), u32(3), boolean(flag != 0), u32(5), u32(0), u32(0),
                          memory(0), memory(0)},
                         {u32(6), u32(7), i32(0)});
        EXPECT_EQ(0, a_qeltvapi_channellist_get_svl_tsl_recs_by_filter(
                             1, 2, 3, flag, 5, 0, 0, nullptr, nullptr, &value, &value2));
    }
}

TEST(ChannelListWire, SendsZeroForMissingWordsOfACleaning) {
    const uint32_t word = 9;
    service().expect({u32(1), u32(0), u32(9)}, {i32(3)});
    EXPECT_EQ(3, a_qeltvapi_channellist_svl_tsl_lol_clean(1, nullptr, &word));
}

TEST(ChannelListWire, StoresAllRecordsOfABatch) {
    for (const uint32_t count : {0u, 1u, 1000u}) {
        SCOPED_TRACE(count);
        const Bytes svlRecords = counted(count * 396, 3);
        const Bytes tslRecords = counted(count * 628, 5);
        // Blocks may be larger than asked for, but no byte more may be stored.
        const Bytes rest(16, '-');
        Bytes svl(svlRecords.size() + rest.size(), '-');
        Bytes tsl(tslRecords.size() + rest.size(), '-');
        uint32_t value1 = 0;
        uint32_t value2 = 0;
        const auto expect = [&](Values arguments, Values answer) {
            arguments.push_back(memory(svlRecords.size(), svlRecords));
            arguments.push_back(memory(tslRecords.size(), tslRecords));
            svl.assign(svl.size(), '-');
            tsl.assign(tsl.size(), '-');
            service().expect(std::move(arguments), std::move(answer));
        };
        const auto check = [&] {
            service().settle();
            EXPECT_TRUE(svlRecords + rest == svl);
            EXPECT_TRUE(tslRecords + rest == tsl);
        };

        expect({u32(1), u32(2), u32(count)}, {u32(3), u32(4), i32(5)});
        EXPECT_EQ(5, a_qeltvapi_channellist_get_svl_tsl_rec_by_handle_ex(
                             1, 2, count, &value1, &value2, svl.data(), tsl.data()));
        check();

        expect({u32(1), u32(2), u32(3), u32(4), u32(5), u32(6), u32(7), u32(count), u32(9)},
               {i32(6)});
        EXPECT_EQ(6, a_qeltvapi_channellist_get_svl_tsl_rec_by_index_ex(1, 2, 3, 4, 5, 6, 7, count,
                                                                        9, svl.data(), tsl.data()));
        check();

        expect({u32(1), u32(2), u32(3), u32(count), u32(5)}, {u32(8), u32(9), i32(7)});
        EXPECT_EQ(7, a_qeltvapi_channellist_get_svl_tsl_recs_by_brdcast_type(
                             1, 2, 3, count, 5, svl.data(), tsl.data(), &value1, &value2));
        check();
        EXPECT_EQ(8u, value1);
        EXPECT_EQ(9u, value2);
    }
}

TEST(ChannelListWire, StoresAsManyListIdsAsTheServiceCounts) {
    const uint16_t ids[] = {0x1001, 0x2002, 0x3003, 0x4004};
    const Bytes all(reinterpret_cast<const char*>(ids), sizeof(ids));
    for (const uint16_t number : {uint16_t{0}, uint16_t{2}, uint16_t{4}}) {
        uint16_t stored[5] = {9, 9, 9, 9, 9};
        uint16_t count = 3;
        // The fourth lies behind the room that was asked for.
        service().expect({memory(3 * 2, all.substr(0, 6)), u16(3)}, {u16(number), i16(5)});
        EXPECT_EQ(5, a_qeltvapi_tvprovider_get_all_svlid(stored, &count));
        EXPECT_EQ(number, count);
        for (size_t i = 0; i < 5; ++i) {
            EXPECT_EQ(i >= number ? 9 : i < 3 ? ids[i] : 0, stored[i]) << i;
        }
    }
    uint16_t none = 0;
    service().expect({memory(0), u16(0)}, {u16(2), i16(0)});
    EXPECT_EQ(0, a_qeltvapi_tvprovider_get_all_svlid(nullptr, &none));
    EXPECT_EQ(2, none);
}

}  // namespace
