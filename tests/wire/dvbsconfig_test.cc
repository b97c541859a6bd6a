#include "hw_qeltvapi_dvbsconfig.h"

#include "wire.h"

using namespace wire;

namespace {

const std::string withPath =
        "<{f}:{n}> [clientwrapper/hw_qeltvapi_dvbsconfig.cpp]:[{f}] Error --> service is invalid\n";
const std::string twoBlanks = "<{f}:{n}>  Error --> service is invalid\n";

Table lists() {
    Table t;
    t.interface = "IQelTvApiChannelList";
    t.tag = "(hw_qeltvapi_dvbsconfig)(client)";
    t.missing = 0;
    t.missingTraced = {"<{f}:{n}> Error --> service is invalid\n"};
    t.entry = {"<{f}:{n}> Enter [clientwrapper/hw_qeltvapi_dvbsconfig.cpp][{f}]"};
    t.exit = {"<{f}:{n}> Exit [clientwrapper/hw_qeltvapi_dvbsconfig.cpp][{f}]"};
    t.rows = {
            Row("a_qeltvapi_satllist_lock_database", 92)
                    .call([](Outputs&) { return a_qeltvapi_satllist_lock_database(0x800005c1); })
                    .sent({u32(0x800005c1)})
                    .answered({i32(95)})
                    .returns(95)
                    .direct<int32_t>(),
            Row("a_qeltvapi_satllist_unlock_database", 93)
                    .call([](Outputs&) { return a_qeltvapi_satllist_unlock_database(0x800005d1); })
                    .sent({u32(0x800005d1)})
                    .answered({i32(-96)})
                    .returns(-96)
                    .direct<int32_t>(),
            Row("a_qeltvapi_satllist_read_lock_database", 94)
                    .call([](Outputs&) {
                        return a_qeltvapi_satllist_read_lock_database(0x800005e1);
                    })
                    .sent({u32(0x800005e1)})
                    .answered({i32(97)})
                    .returns(97)
                    .direct<int32_t>(),
            Row("a_qeltvapi_satllist_read_unlock_database", 95)
                    .call([](Outputs&) {
                        return a_qeltvapi_satllist_read_unlock_database(0x800005f1);
                    })
                    .sent({u32(0x800005f1)})
                    .answered({i32(-98)})
                    .returns(-98)
                    .direct<int32_t>(),
            Row("a_qeltvapi_satllist_clean", 96)
                    .call([](Outputs&) { return a_qeltvapi_satllist_clean(0x80000601); })
                    .sent({u32(0x80000601)})
                    .answered({i32(99)})
                    .returns(99)
                    .direct<int32_t>(),
            Row("a_qeltvapi_satllist_get_rec", 97)
                    .call([](Outputs& o) {
                        return a_qeltvapi_satllist_get_rec(0x80000611, 1554, o.at(0));
                    })
                    .sent({u32(0x80000611), u32(1554)})
                    .answered({bytes(counted(600, 99)), i32(-100)})
                    .returns(-100)
                    .stores(0, counted(600, 99))
                    .missingLines({}, {withPath}),
            Row("a_qeltvapi_satllist_update_rec", 98)
                    .call([](Outputs&) {
                        return a_qeltvapi_satllist_update_rec(0x80000621, counted(276, 71).data(),
                                                              7);
                    })
                    .sent({u32(0x80000621), bytes(counted(276, 71)), boolean(true)})
                    .answered({i32(101)})
                    .returns(101)
                    .direct<int32_t>()
                    .missingLines({}, {twoBlanks}),
            Row("a_qeltvapi_satllist_get_num_recs", 99)
                    .call([](Outputs& o) {
                        return a_qeltvapi_satllist_get_num_recs(0x80000631, o.at<uint32_t>(0));
                    })
                    .sent({u32(0x80000631)})
                    .answered({u32(0xa0000063), i32(-102)})
                    .returns(-102)
                    .stores(0, uint32_t{0xa0000063})
                    .missingLines({}, {withPath}),
            Row("a_qeltvapi_satllist_qry_rec_id", 100)
                    .call([](Outputs& o) {
                        return a_qeltvapi_satllist_qry_rec_id(0x80000641, 1602, o.at<uint32_t>(0));
                    })
                    .sent({u32(0x80000641), u32(1602)})
                    .answered({u32(0xa0000064), i32(103)})
                    .returns(103)
                    .stores(0, uint32_t{0xa0000064}),
            Row("a_qeltvapi_satllist_del_rec", 101)
                    .call([](Outputs&) { return a_qeltvapi_satllist_del_rec(0x80000651, 1618); })
                    .sent({u32(0x80000651), u32(1618)})
                    .answered({i32(-104)})
                    .returns(-104)
                    .direct<int32_t>(),
            Row("a_qeltvapi_satllist_get_rec_by_rec_idx", 102)
                    .call([](Outputs& o) {
                        return a_qeltvapi_satllist_get_rec_by_rec_idx(0x80000661, 1634, o.at(0));
                    })
                    .sent({u32(0x80000661), u32(1634)})
                    .answered({bytes(counted(379, 104)), i32(105)})
                    .returns(105)
                    .stores(0, counted(379, 104))
                    .missingLines({}, {withPath}),
            Row("a_qeltvapi_satllist_create_snapshot", 103)
                    .call([](Outputs& o) {
                        return a_qeltvapi_satllist_create_snapshot(0x80000671, o.at<uint32_t>(0));
                    })
                    .sent({u32(0x80000671)})
                    .answered({u32(0xa0000067), i32(-106)})
                    .returns(-106)
                    .stores(0, uint32_t{0xa0000067})
                    .missingLines({}, {withPath}),
            Row("a_qeltvapi_satllist_restore_snapshot", 104)
                    .call([](Outputs&) { return a_qeltvapi_satllist_restore_snapshot(0x80000681); })
                    .sent({u32(0x80000681)})
                    .answered({i32(107)})
                    .returns(107)
                    .direct<int32_t>(),
            Row("a_qeltvapi_satllist_free_snapshot", 105)
                    .call([](Outputs&) { return a_qeltvapi_satllist_free_snapshot(0x80000691); })
                    .sent({u32(0x80000691)})
                    .answered({i32(-108)})
                    .returns(-108)
                    .direct<int32_t>(),
            Row("a_qeltvapi_tsl_clean", 119)
                    .call([](Outputs&) { return a_qeltvapi_tsl_clean(0x80000771); })
                    .sent({u32(0x80000771)})
                    .answered({i32(-122)})
                    .returns(-122)
                    .direct<int32_t>(),
            Row("a_qeltvapi_tsl_del_rec", 120)
                    .call([](Outputs&) { return a_qeltvapi_tsl_del_rec(0x80000781, 1922); })
                    .sent({u32(0x80000781), u32(1922)})
                    .answered({i32(123)})
                    .returns(123)
                    .direct<int32_t>(),
            Row("a_qeltvapi_tsl_qry_rec_id", 121)
                    .call([](Outputs& o) {
                        return a_qeltvapi_tsl_qry_rec_id(0x80000791, 1938, o.at<uint32_t>(0));
                    })
                    .sent({u32(0x80000791), u32(1938)})
                    .answered({u32(0xa0000079), i32(-124)})
                    .returns(-124)
                    .stores(0, uint32_t{0xa0000079}),
            Row("a_qeltvapi_tsl_get_tsl_num_rec_by_satl_rec_id", 123)
                    .call([](Outputs& o) {
                        return a_qeltvapi_tsl_get_tsl_num_rec_by_satl_rec_id(0x800007b1, 1970,
                                                                             o.at<uint32_t>(0));
                    })
                    .sent({u32(0x800007b1), u32(1970)})
                    .answered({u32(0xa000007b), i32(-126)})
                    .returns(-126)
                    .stores(0, uint32_t{0xa000007b}),
            Row("a_qeltvapi_tsl_get_rec", 124)
                    .call([](Outputs& o) {
                        return a_qeltvapi_tsl_get_rec(0x800007c1, 1986, o.at(0));
                    })
                    .sent({u32(0x800007c1), u32(1986)})
                    .answered({bytes(counted(600, 126)), i32(127)})
                    .returns(127)
                    .stores(0, counted(600, 126))
                    .missingLines({}, {withPath}),
            Row("a_qeltvapi_tsl_update_rec", 125)
                    .call([](Outputs&) {
                        return a_qeltvapi_tsl_update_rec(0x800007d1, counted(628, 3).data(), 7);
                    })
                    .sent({u32(0x800007d1), bytes(counted(628, 3)), boolean(true)})
                    .answered({i32(-128)})
                    .returns(-128)
                    .direct<int32_t>()
                    .missingLines({}, {twoBlanks}),
            Row("a_qeltvapi_tsl_get_num_recs", 126)
                    .call([](Outputs& o) {
                        return a_qeltvapi_tsl_get_num_recs(0x800007e1, o.at<uint32_t>(0));
                    })
                    .sent({u32(0x800007e1)})
                    .answered({u32(0xa000007e), i32(129)})
                    .returns(129)
                    .stores(0, uint32_t{0xa000007e})
                    .missingLines({}, {withPath}),
            Row("a_qeltvapi_tsl_get_rec_by_rec_idx", 127)
                    .call([](Outputs& o) {
                        return a_qeltvapi_tsl_get_rec_by_rec_idx(0x800007f1, 2034, o.at(0));
                    })
                    .sent({u32(0x800007f1), u32(2034)})
                    .answered({bytes(counted(404, 129)), i32(-130)})
                    .returns(-130)
                    .stores(0, counted(404, 129))
                    .missingLines({}, {withPath}),
            Row("a_qeltvapi_nwl_clean", 128)
                    .call([](Outputs&) { return a_qeltvapi_nwl_clean(0x80000801); })
                    .sent({u32(0x80000801)})
                    .answered({i32(131)})
                    .returns(131)
                    .direct<int32_t>(),
            Row("a_qeltvapi_nwl_del_rec", 129)
                    .call([](Outputs&) { return a_qeltvapi_nwl_del_rec(0x80000811, 2066); })
                    .sent({u32(0x80000811), u32(2066)})
                    .answered({i32(-132)})
                    .returns(-132)
                    .direct<int32_t>(),
            Row("a_qeltvapi_nwl_qry_rec_id", 130)
                    .call([](Outputs& o) {
                        return a_qeltvapi_nwl_qry_rec_id(0x80000821, 2082, o.at<uint32_t>(0));
                    })
                    .sent({u32(0x80000821), u32(2082)})
                    .answered({u32(0xa0000082), i32(133)})
                    .returns(133)
                    .stores(0, uint32_t{0xa0000082}),
            Row("a_qeltvapi_nwl_get_nwl_num_rec_by_satl_rec_id", 132)
                    .call([](Outputs& o) {
                        return a_qeltvapi_nwl_get_nwl_num_rec_by_satl_rec_id(0x80000841, 2114,
                                                                             o.at<uint32_t>(0));
                    })
                    .sent({u32(0x80000841), u32(2114)})
                    .answered({u32(0xa0000084), i32(135)})
                    .returns(135)
                    .stores(0, uint32_t{0xa0000084}),
            Row("a_qeltvapi_nwl_get_rec", 133)
                    .call([](Outputs& o) {
                        return a_qeltvapi_nwl_get_rec(0x80000851, 2130, o.at(0));
                    })
                    .sent({u32(0x80000851), u32(2130)})
                    .answered({bytes(counted(600, 135)), i32(-136)})
                    .returns(-136)
                    .stores(0, counted(600, 135))
                    .missingLines({}, {withPath}),
            Row("a_qeltvapi_nwl_update_rec", 134)
                    .call([](Outputs&) {
                        return a_qeltvapi_nwl_update_rec(0x80000861, counted(304, 147).data(), 7);
                    })
                    .sent({u32(0x80000861), bytes(counted(304, 147)), boolean(true)})
                    .answered({i32(137)})
                    .returns(137)
                    .direct<int32_t>()
                    .missingLines({}, {twoBlanks}),
            Row("a_qeltvapi_nwl_get_num_recs", 135)
                    .call([](Outputs& o) {
                        return a_qeltvapi_nwl_get_num_recs(0x80000871, o.at<uint32_t>(0));
                    })
                    .sent({u32(0x80000871)})
                    .answered({u32(0xa0000087), i32(-138)})
                    .returns(-138)
                    .stores(0, uint32_t{0xa0000087})
                    .missingLines({}, {withPath}),
            Row("a_qeltvapi_nwl_get_rec_by_rec_idx", 136)
                    .call([](Outputs& o) {
                        return a_qeltvapi_nwl_get_rec_by_rec_idx(0x80000881, 2178, o.at(0));
                    })
                    .sent({u32(0x80000881), u32(2178)})
                    .answered({bytes(counted(413, 138)), i32(139)})
                    .returns(139)
                    .stores(0, counted(413, 138))
                    .missingLines({}, {withPath}),
    };
    return t;
}

/** The queries that name the records of one satellite have plainer lines. */
Table bySatellite() {
    Table t;
    t.interface = "IQelTvApiChannelList";
    t.tag = "(hw_qeltvapi_dvbsconfig)(client)";
    t.missing = 0;
    t.missingTraced = {twoBlanks};
    t.entry = {"<{f}:{n}> Enter "};
    t.exit = {"<{f}:{n}> Exit "};
    t.rows = {
            Row("a_qeltvapi_tsl_get_tsl_recs_by_satl_rec_id", 122)
                    .call([](Outputs& o) {
                        return a_qeltvapi_tsl_get_tsl_recs_by_satl_rec_id(0x800007a1, 1954, 1955,
                                                                          1956, 1957, o.at(0));
                    })
                    .sent({u32(0x800007a1), u32(1954), u32(1955), u32(1956), u32(1957)})
                    .answered({bytes(counted(399, 124)), i32(125)})
                    .returns(125)
                    .stores(0, counted(399, 124)),
            Row("a_qeltvapi_nwl_get_nwl_recs_by_satl_rec_id", 131)
                    .call([](Outputs& o) {
                        return a_qeltvapi_nwl_get_nwl_recs_by_satl_rec_id(0x80000831, 2098, 2099,
                                                                          2100, 2101, o.at(0));
                    })
                    .sent({u32(0x80000831), u32(2098), u32(2099), u32(2100), u32(2101)})
                    .answered({bytes(counted(408, 133)), i32(-134)})
                    .returns(-134)
                    .stores(0, counted(408, 133)),
    };
    return t;
}

TEST(DvbsConfigWire, ReturnsZeroAndTouchesNothingWhenTheServiceIsMissing) {
    runMissing(lists());
    runMissing(bySatellite());
}

TEST(DvbsConfigWire, CallsItsMethodAndStoresTheAnswer) {
    runAnswered(lists());
    runAnswered(bySatellite());
}

TEST(DvbsConfigWire, LeavesTheOutputsAloneWhenTheReplyIsLost) {
    runLost(lists());
    runLost(bySatellite());
}

TEST(DvbsConfigWire, SendsFlagsAsTruthValues) {
    ScriptedService& service = ScriptedService::instance();
    service.start();
    const Bytes record = counted(628);
    for (const int flag : {0, 1, 2, -1}) {
        service.expect({u32(1), bytes(record.substr(0, 276)), boolean(flag != 0)}, {i32(4)});
        EXPECT_EQ(4, a_qeltvapi_satllist_update_rec(1, record.data(), flag));
        service.expect({u32(2), bytes(record), boolean(flag != 0)}, {i32(5)});
        EXPECT_EQ(5, a_qeltvapi_tsl_update_rec(2, record.data(), flag));
        service.expect({u32(3), bytes(record.substr(0, 304)), boolean(flag != 0)}, {i32(6)});
        EXPECT_EQ(6, a_qeltvapi_nwl_update_rec(3, record.data(), flag));
    }
}

}  // namespace
