#include "hw_qeltvapi_broadcast.h"

#include "wire.h"

using namespace wire;

namespace {

constexpr char kTag[] = "(hw_qeltvapi_broadcast)(client)";
constexpr char kRet[] = "<{f}:{n}> ret={r}";

/** A slot's value as the trace shows it. */
template <class T>
constexpr const char* kShown = "{i32@0}";
template <>
constexpr const char* kShown<uint8_t> = "{u8@0}";
template <>
constexpr const char* kShown<uint16_t> = "{u16@0}";

/** A function whose result is the method's own, with its arguments as traced. */
Row plain(const std::string& name, uint32_t ordinal, Row::CallFn call, Values sent, int32_t code,
          const std::string& args = "") {
    Row row("a_qeltvapi_broadcast_" + name, ordinal);
    row.call(call).sent(std::move(sent)).answered({i32(code)}).returns(code).direct<int32_t>();
    if (!args.empty()) row.started({"<{f}:{n}> ARG=[" + args + "]"});
    return row.exit({kRet});
}

/** A function that refuses a null pointer before it fetches the proxy. */
Row refusal(const std::string& name, Row::CallFn call) {
    return Row("a_qeltvapi_broadcast_" + name, Row::kNoCall)
            .call(call)
            .returns(-1)
            .replyAlways({"<{f}:{n}> Arg invalid(null ptr).\n"});
}

/** A function that stores one value, always in slot 0. */
template <class T>
Row getter(const std::string& name, uint32_t ordinal, Row::CallFn call, Values sent, Value answer,
           T stored, int32_t code) {
    return Row("a_qeltvapi_broadcast_" + name, ordinal)
            .call(call)
            .sent(std::move(sent))
            .answered({answer, i32(code)})
            .returns(code)
            .stores(0, stored)
            .entry({"<{f}:{n}> ."})
            .exit({std::string("<{f}:{n}> val=") + kShown<T> + ", ret={r}"});
}

Bytes regionImage() {
    return Bytes("\x81\0", 2) + bytesOf<uint16_t>({0x8102, 0x8203, 0x8304}) + Bytes(16, '\0');
}

QELTVAPI_CHANGE_FREQ_T frequency() {
    QELTVAPI_CHANGE_FREQ_T r;
    memcpy(&r, counted(sizeof(r)).data(), sizeof(r));
    return r;
}

Table table() {
    Table t;
    t.interface = "IQelTvApiBroadcast";
    t.tag = kTag;
    t.lost = 0;
    t.missingAlways = {"<{f}:{n}> Get broadcast service fail.\n"};
    t.rows = {
            plain(
                    "select_channel", 0,
                    [](Outputs&) { return a_qeltvapi_broadcast_select_channel(11, -12, 13, 6); },
                    {i32(11), i32(-12), i32(13), boolean(true)}, 21, "11,-12,13,6"),
            plain(
                    "select_channel_by_focusid", 1,
                    [](Outputs&) {
                        return a_qeltvapi_broadcast_select_channel_by_focusid(11, 12, -13, 6, 7);
                    },
                    {i32(11), i32(12), i32(-13), boolean(true), i32(7)}, 22, "11,12,-13,6,7"),
            plain(
                    "select_channel_by_chan_num", 2,
                    [](Outputs&) {
                        return a_qeltvapi_broadcast_select_channel_by_chan_num(-11, 12, 6);
                    },
                    {i32(-11), i32(12), boolean(true)}, -23, "-11,12,6"),
            plain(
                    "select_channel_by_chan_id", 3,
                    [](Outputs&) { return a_qeltvapi_broadcast_select_channel_by_chan_id(-11, 6); },
                    {i32(-11), boolean(true)}, 24, "-11,6"),
            plain(
                    "select_channel_by_prog_no", 4,
                    [](Outputs&) { return a_qeltvapi_broadcast_select_channel_by_prog_no(11, -6); },
                    {i32(11), i32(-6)}, 25, "11,-6"),
            // The fourth argument is no truth value here, and the fifth is not traced.
            plain(
                    "select_channel_silently", 5,
                    [](Outputs&) {
                        return a_qeltvapi_broadcast_select_channel_silently(11, 12, 13, 6, -7);
                    },
                    {i32(11), i32(12), i32(13), i32(6), i32(-7)}, 26, "11,12,13,6"),
            plain(
                    "set_banner_visibility", 6,
                    [](Outputs&) { return a_qeltvapi_broadcast_set_banner_visibility(2); },
                    {boolean(true)}, 27, "2"),
            Row("a_qeltvapi_broadcast_get_tuning_status", 7)
                    .call([](Outputs& o) {
                        return a_qeltvapi_broadcast_get_tuning_status(o.at<int32_t>(0));
                    })
                    .answered({i32(-70001), i32(28)})
                    .returns(28)
                    .stores(0, int32_t{-70001})
                    .exit({"<{f}:{n}> status={i32@0}, ret={r}"}),
            getter(
                    "get_tuning_error", 8,
                    [](Outputs& o) {
                        return a_qeltvapi_broadcast_get_tuning_error(o.at<int32_t>(0));
                    },
                    {}, i32(-70002), int32_t{-70002}, 29),
            plain(
                    "key_handler", 9, [](Outputs&) { return a_qeltvapi_broadcast_key_handler(-9); },
                    {i32(-9)}, 30, "-9"),
            plain(
                    "switch_input_to_tv", 10,
                    [](Outputs&) { return a_qeltvapi_broadcast_switch_input_to_tv(); }, {}, 31),
            getter(
                    "is_cam_installed", 11,
                    [](Outputs& o) {
                        return a_qeltvapi_broadcast_is_cam_installed(o.at<uint8_t>(0));
                    },
                    {}, u8(201), uint8_t{201}, 32),
            getter(
                    "is_additional_service_available", 12,
                    [](Outputs& o) {
                        return a_qeltvapi_broadcast_is_additional_service_available(
                                o.at<uint8_t>(0));
                    },
                    {}, u8(202), uint8_t{202}, 33),
            getter(
                    "is_support_4_digits_chan_no", 13,
                    [](Outputs& o) {
                        return a_qeltvapi_broadcast_is_support_4_digits_chan_no(o.at<uint8_t>(0));
                    },
                    {}, u8(203), uint8_t{203}, 34),
            // The same method as its neighbour's.
            getter(
                    "is_digits_key_handled", 13,
                    [](Outputs& o) {
                        return a_qeltvapi_broadcast_is_digits_key_handled(o.at<uint8_t>(0));
                    },
                    {}, u8(204), uint8_t{204}, 35),
            getter(
                    "is_channel_number_valid", 15,
                    [](Outputs& o) {
                        return a_qeltvapi_broadcast_is_channel_number_valid(11, -12, 6,
                                                                            o.at<uint8_t>(0));
                    },
                    {i32(11), i32(-12), boolean(true)}, u8(205), uint8_t{205}, 36),
            plain(
                    "set_favorite_icon_on_banner", 16,
                    [](Outputs&) { return a_qeltvapi_broadcast_set_favorite_icon_on_banner(2); },
                    {boolean(true)}, 37, "2"),
            plain(
                    "reset_digits_key_handled", 17,
                    [](Outputs&) { return a_qeltvapi_broadcast_reset_digits_key_handled(); }, {},
                    38),
            getter(
                    "get_target_region_num", 18,
                    [](Outputs& o) {
                        return a_qeltvapi_broadcast_get_target_region_num(-11, o.at<uint16_t>(0));
                    },
                    {i32(-11)}, u16(0xfedc), uint16_t{0xfedc}, 39),
            // Byte 1 stays the caller's; a long name fills its field without a terminator.
            Row("a_qeltvapi_broadcast_get_target_regions", 19)
                    .call([](Outputs& o) {
                        return a_qeltvapi_broadcast_get_target_regions(
                                11, 12, -13, o.at<QELTVAPI_SB_DVB_REGION_T>(0));
                    })
                    .sent({i32(11), i32(12), i32(-13)})
                    .answered({record(regionImage()).text(8, counted(40)), i32(40)})
                    .returns(40)
                    .stores(0, uint8_t{0x81})
                    .stores(0, bytesOf<uint16_t>({0x8102, 0x8203, 0x8304}), 2)
                    .stores(0, counted(32), 8),
            getter(
                    "get_max_possible_major_chan_no", 20,
                    [](Outputs& o) {
                        return a_qeltvapi_broadcast_get_max_possible_major_chan_no(
                                11, o.at<int32_t>(0));
                    },
                    {i32(11)}, i32(-70020), int32_t{-70020}, 41),
            getter(
                    "get_max_possible_minor_chan_no", 21,
                    [](Outputs& o) {
                        return a_qeltvapi_broadcast_get_max_possible_minor_chan_no(
                                12, o.at<int32_t>(0));
                    },
                    {i32(12)}, i32(70021), int32_t{70021}, 42),
            getter(
                    "get_max_possible_major_digits", 22,
                    [](Outputs& o) {
                        return a_qeltvapi_broadcast_get_max_possible_major_digits(13,
                                                                                  o.at<int32_t>(0));
                    },
                    {i32(13)}, i32(70022), int32_t{70022}, 43),
            getter(
                    "get_max_possible_minor_digits", 23,
                    [](Outputs& o) {
                        return a_qeltvapi_broadcast_get_max_possible_minor_digits(14,
                                                                                  o.at<int32_t>(0));
                    },
                    {i32(14)}, i32(70023), int32_t{70023}, 44),
            // Silent, and 0, without a service.
            Row("a_qeltvapi_broadcast_get_cam_operator_name", 24)
                    .call([](Outputs& o) {
                        return a_qeltvapi_broadcast_get_cam_operator_name(8, o.at<char>(0));
                    })
                    .given(0, Bytes("before\0--", 9))
                    .sent({i32(8)})
                    .answered({str("Operator of CAM"), i32(45)})
                    .returns(45)
                    .stores(0, Bytes("Operato\0", 8))
                    .missing(0)
                    .missingLines({}, {})
                    .exit({"<{f}:{n}> val={text@0}, ret={r}"}),
            getter(
                    "get_mheg_input_event_mask", 25,
                    [](Outputs& o) {
                        return a_qeltvapi_broadcast_get_mheg_input_event_mask(-15,
                                                                              o.at<uint8_t>(0));
                    },
                    {i32(-15)}, u8(206), uint8_t{206}, 46),
            plain(
                    "sync_stop", 26,
                    [](Outputs&) { return a_qeltvapi_broadcast_sync_stop("main", 2); },
                    {str("main"), boolean(true)}, 47),
            Row("a_qeltvapi_broadcast_is_signal_loss", 27)
                    .call([](Outputs&) { return a_qeltvapi_broadcast_is_signal_loss(); })
                    .answered({boolean(true)})
                    .returns(1)
                    .missing(0)
                    .direct<bool>()
                    .exit({kRet}),
            plain(
                    "get_signal_level", 28,
                    [](Outputs&) { return a_qeltvapi_broadcast_get_signal_level(); }, {}, 48),
            plain(
                    "get_signal_quality", 29,
                    [](Outputs&) { return a_qeltvapi_broadcast_get_signal_quality(); }, {}, 49),
            getter(
                    "strm_is_orig_scramble", 30,
                    [](Outputs& o) {
                        return a_qeltvapi_broadcast_strm_is_orig_scramble("sub", -16,
                                                                          o.at<uint8_t>(0));
                    },
                    {str("sub"), i32(-16)}, u8(207), uint8_t{207}, 50),
            plain(
                    "change_freq", 31,
                    [](Outputs&) {
                        const QELTVAPI_CHANGE_FREQ_T r = frequency();
                        return a_qeltvapi_broadcast_change_freq("main", &r);
                    },
                    {str("main"), record(counted(28))}, 51),
            plain(
                    "ana_channel_fine_tune", 32,
                    [](Outputs&) {
                        return a_qeltvapi_broadcast_ana_channel_fine_tune("main", -17, 2);
                    },
                    {str("main"), i32(-17), boolean(true)}, 52),
            getter(
                    "get_connect_attr", 33,
                    [](Outputs& o) {
                        return a_qeltvapi_broadcast_get_connect_attr("sub", 18, o.at<int32_t>(0));
                    },
                    {str("sub"), i32(18)}, i32(-70033), int32_t{-70033}, 53),
            // The word becomes a truth value; the bytes behind it are zeros.
            plain(
                    "transfer_external_ui_status", 34,
                    [](Outputs&) {
                        const QELTVAPI_EXTERNAL_UI_STATUS_T r{-19, 0x80000000};
                        return a_qeltvapi_broadcast_transfer_external_ui_status(&r);
                    },
                    {record(bytesOf(int32_t{-19}) + Bytes("\1\0\0\0", 4))}, 54),
            refusal("get_cam_operator_name",
                    [](Outputs&) {
                        return a_qeltvapi_broadcast_get_cam_operator_name(8, nullptr);
                    }),
            refusal("sync_stop",
                    [](Outputs&) { return a_qeltvapi_broadcast_sync_stop(nullptr, 1); }),
            refusal("strm_is_orig_scramble",
                    [](Outputs& o) {
                        return a_qeltvapi_broadcast_strm_is_orig_scramble(nullptr, 1,
                                                                          o.at<uint8_t>(0));
                    }),
            refusal("change_freq",
                    [](Outputs&) {
                        const QELTVAPI_CHANGE_FREQ_T r = frequency();
                        return a_qeltvapi_broadcast_change_freq(nullptr, &r);
                    }),
            refusal("change_freq",
                    [](Outputs&) { return a_qeltvapi_broadcast_change_freq("a", nullptr); }),
            refusal("ana_channel_fine_tune",
                    [](Outputs&) {
                        return a_qeltvapi_broadcast_ana_channel_fine_tune(nullptr, 1, 1);
                    }),
            refusal("get_connect_attr",
                    [](Outputs& o) {
                        return a_qeltvapi_broadcast_get_connect_attr(nullptr, 1, o.at<int32_t>(0));
                    }),
            refusal("transfer_external_ui_status",
                    [](Outputs&) {
                        return a_qeltvapi_broadcast_transfer_external_ui_status(nullptr);
                    }),
    };
    return t;
}

WIRE_TABLE_TESTS(BroadcastWire, table())

TEST(BroadcastWire, SendsFalseForZero) {
    ScriptedService& service = ScriptedService::instance();
    service.start();
    const auto sends = [&](Values values, const std::function<int()>& call) {
        service.expect(std::move(values), {i32(0)});
        call();
        service.settle();
    };
    sends({i32(1), i32(2), i32(3), boolean(false)},
          [] { return a_qeltvapi_broadcast_select_channel(1, 2, 3, 0); });
    sends({i32(1), i32(2), i32(3), boolean(false), i32(0)},
          [] { return a_qeltvapi_broadcast_select_channel_by_focusid(1, 2, 3, 0, 0); });
    sends({i32(1), i32(2), boolean(false)},
          [] { return a_qeltvapi_broadcast_select_channel_by_chan_num(1, 2, 0); });
    sends({i32(1), boolean(false)},
          [] { return a_qeltvapi_broadcast_select_channel_by_chan_id(1, 0); });
    sends({boolean(false)}, [] { return a_qeltvapi_broadcast_set_banner_visibility(0); });
    sends({boolean(false)}, [] { return a_qeltvapi_broadcast_set_favorite_icon_on_banner(0); });
    sends({str("a"), boolean(false)}, [] { return a_qeltvapi_broadcast_sync_stop("a", 0); });
    sends({str("a"), i32(1), boolean(false)},
          [] { return a_qeltvapi_broadcast_ana_channel_fine_tune("a", 1, 0); });
    sends({record(Bytes("\5\0\0\0\0\0\0\0", 8))}, [] {
        const QELTVAPI_EXTERNAL_UI_STATUS_T r{5, 0};
        return a_qeltvapi_broadcast_transfer_external_ui_status(&r);
    });
    uint8_t value = 0;
    service.expect({i32(1), i32(2), boolean(false)}, {u8(1), i32(0)});
    a_qeltvapi_broadcast_is_channel_number_valid(1, 2, 0, &value);
    service.expect({}, {boolean(false)});
    EXPECT_EQ(0, a_qeltvapi_broadcast_is_signal_loss());
}

TEST(BroadcastWire, CutsTheOperatorNameToTheCallersBuffer) {
    ScriptedService& service = ScriptedService::instance();
    service.start();
    const auto name = [&](int32_t length, const char* answer) {
        char buffer[10];
        memset(buffer, '#', sizeof(buffer));
        service.expect({i32(length)}, {str(answer), i32(0)});
        EXPECT_EQ(0, a_qeltvapi_broadcast_get_cam_operator_name(length, buffer));
        return Bytes(buffer, sizeof(buffer));
    };
    EXPECT_EQ(Bytes("\0#########", 10), name(1, "ABC"));
    EXPECT_EQ(Bytes("ABC\0######", 10), name(4, "ABC"));
    EXPECT_EQ(Bytes("AB\0#######", 10), name(3, "ABC"));
    EXPECT_EQ(Bytes("ABC\0\0\0####", 10), name(6, "ABC"));
    EXPECT_EQ(Bytes("\0\0########", 10), name(2, ""));
}

TEST(BroadcastWire, PadsAShortRegionNameToItsField) {
    ScriptedService& service = ScriptedService::instance();
    service.start();
    QELTVAPI_SB_DVB_REGION_T region;
    memset(&region, '#', sizeof(region));
    service.expect({i32(0), i32(0), i32(0)}, {record(regionImage()).text(8, "North"), i32(0)});
    EXPECT_EQ(0, a_qeltvapi_broadcast_get_target_regions(0, 0, 0, &region));
    EXPECT_EQ("North" + Bytes(27, '\0'), Bytes(region.name, sizeof(region.name)));
    EXPECT_EQ('#', reinterpret_cast<const char*>(&region)[1]);
}

}  // namespace
