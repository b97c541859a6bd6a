#include "hw_qeltvapi_ci.h"

#include <set>

#include "wire.h"

using namespace wire;

/** Stands in for the library's own: a registration has tests of its own, and threads. */
__attribute__((visibility("default"))) int registerCallbackHandler() {
    return 0;
}

namespace {

int ignore(uint32_t, uint32_t, int32_t, const void*) {
    return 0;
}

/** The function as "%p" writes it. */
std::string addressOf(qeltvapi_ci_cb_t function) {
    char text[32];
    snprintf(text, sizeof(text), "%p", reinterpret_cast<void*>(function));
    return text;
}

/** A PIN code as the service sends it. */
Value pinCode(uint8_t valid, std::initializer_list<uint16_t> units) {
    return record(Bytes(1, static_cast<char>(valid)) + Bytes(23, '\0'))
            .vec(8, bytesOf(units), sizeof(uint16_t));
}

/** An answer to an enquiry as the service gets it. */
Value enquiryAnswer(uint32_t first, uint32_t second, std::initializer_list<uint16_t> units) {
    return record(bytesOf({first, second}) + Bytes(16, '\0'))
            .vec(8, bytesOf(units), sizeof(uint16_t));
}

constexpr char kTag[] = "(hw_qeltvapi_ci)(client)";
constexpr uint16_t kTwelve[] = {'1', '2', 0};

const std::string kName = "<{f}:{n}> {f}";
const std::string kResult = "<{f}:{n}> {{f}} i4_ret:{r}.\n";

Row keyRow(const char* function, uint32_t ordinal) {
    return Row(function, ordinal).entry({kName}).exit({kResult});
}

Table table() {
    Table t;
    t.interface = "IQelTvApiCI";
    t.tag = kTag;
    t.missingAlways = {"<{f}:{n}> {{f}} Get ci service fail.\n"};
    t.rows = {
            // As many bytes as the answer's own length, beyond the room that was sent.
            Row("a_qeltvapi_ci_get", 0)
                    .given(0, counted(5))
                    .given(1, bytesOf(uint32_t{5}))
                    .call([](Outputs& o) {
                        return a_qeltvapi_ci_get(7, 0x80000001, o.at(0), o.at<uint32_t>(1));
                    })
                    .sent({i32(7), u32(0x80000001), bytes(counted(5)), u32(5)})
                    .answered({bytes(counted(9, 100)), u32(6), i32(2)})
                    .returns(2)
                    .stores(0, counted(6, 100))
                    .stores(1, uint32_t{6})
                    .entry({kName + ",e_get_type:7, pz_data_len:5"})
                    .exit({kResult}),
            Row("a_qeltvapi_ci_get", 0)
                    .given(1, bytesOf(uint32_t{0}))
                    .call([](Outputs& o) {
                        return a_qeltvapi_ci_get(32, 3, o.at(0), o.at<uint32_t>(1));
                    })
                    .sent({i32(32), u32(3), bytes(""), u32(0)})
                    .answered({bytes(counted(4)), u32(0), i32(4)})
                    .returns(4)
                    .entry({kName + ",e_get_type:32, pz_data_len:0"})
                    .reply({"<operator():{n}> {operator() {n}}  data_len is 0.\n"})
                    .exit({kResult}),
            // Type 15 counts 16-bit units.
            Row("a_qeltvapi_ci_get", 0)
                    .given(0, counted(2))
                    .given(1, bytesOf(uint32_t{2}))
                    .call([](Outputs& o) {
                        return a_qeltvapi_ci_get(15, 5, o.at(0), o.at<uint32_t>(1));
                    })
                    .sent({i32(15), u32(5), bytes(counted(2)), u32(2)})
                    .answered({bytes(counted(8, 50)), u32(3), i32(6)})
                    .returns(6)
                    .stores(0, counted(6, 50))
                    .stores(1, uint32_t{3})
                    .entry({kName + ",e_get_type:15, pz_data_len:2"})
                    .reply({"<operator():{n}> {operator() {n}}  ui4_out_data_len is 3.\n"})
                    .exit({kResult}),
            Row("a_qeltvapi_ci_get", 0)
                    .given(0, counted(2))
                    .given(1, bytesOf(uint32_t{2}))
                    .call([](Outputs& o) {
                        return a_qeltvapi_ci_get(15, 5, o.at(0), o.at<uint32_t>(1));
                    })
                    .sent({i32(15), u32(5), bytes(counted(2)), u32(2)})
                    .answered({bytes(counted(8, 50)), u32(0), i32(7)})
                    .returns(7)
                    .stores(1, uint32_t{0})
                    .entry({kName + ",e_get_type:15, pz_data_len:2"})
                    .reply({"<operator():{n}> {operator() {n}}  data_len is 0.\n"})
                    .exit({kResult}),
            Row("a_qeltvapi_ci_get", 1)
                    .given(2, bytesOf(uint32_t{8}))
                    .call([](Outputs& o) {
                        QELTVAPI_CI_CAM_PIN_CODE_T out{o.at<uint8_t>(0), o.at<uint16_t>(1)};
                        return a_qeltvapi_ci_get(29, 0x80000007, &out, o.at<uint32_t>(2));
                    })
                    .sent({i32(29), u32(0x80000007)})
                    .answered({pinCode(2, {'4', '2', 0, '1'}), i32(8)})
                    .returns(8)
                    .stores(0, uint8_t{2})
                    .stores(1, bytesOf<uint16_t>({'4', '2', 0, '1'}))
                    .entry({kName + ",e_get_type:29, pz_data_len:8"})
                    .reply({"<operator():{n}> {hw_qeltvapi_ci} t_out_cam_pin_code.ui1_valid:2, "
                            "w2s_pin_code.size():4!\n",
                            "<operator():{n}> hw_qeltvapi_ci, a_qeltvapi_ci_get with "
                            "QELTVAPI_CI_GET_TYPE_CAM_PIN_CODE len:4",
                            "<operator():{n}> hw_qeltvapi_ci, with "
                            "QELTVAPI_CI_GET_TYPE_CAM_PIN_CODE "
                            "t_out_cam_pin_code.w2s_pin_code[0]:52",
                            "<operator():{n}> hw_qeltvapi_ci, with "
                            "QELTVAPI_CI_GET_TYPE_CAM_PIN_CODE "
                            "t_out_cam_pin_code.w2s_pin_code[1]:50"})
                    .exit({kResult}),
            Row("a_qeltvapi_ci_set", 2)
                    .given(0, counted(9))
                    .call([](Outputs& o) { return a_qeltvapi_ci_set(3, 0x80000009, o.at(0)); })
                    .sent({i32(3), u32(0x80000009), bytes(counted(8))})
                    .answered({i32(10)})
                    .returns(10)
                    .direct<int32_t>()
                    .entry({kName + " with e_set_type:3"})
                    .exit({kResult}),
            Row("a_qeltvapi_ci_set", 3)
                    .call([](Outputs&) {
                        QELTVAPI_CI_MMI_ENQ_ANS_T answer{0x80000011, 0x80000012, kTwelve};
                        return a_qeltvapi_ci_set(2, 0x80000013, &answer);
                    })
                    .sent({i32(2), u32(0x80000013),
                           enquiryAnswer(0x80000011, 0x80000012, {'1', '2', 0})})
                    .answered({i32(14)})
                    .returns(14)
                    .direct<int32_t>()
                    .entry({kName + " with e_set_type:2",
                            "<{f}:{n}> a_qeltvapi_ci_set  QELTVAPI_CI_SET_TYPE_MMI_ENQ_ANS",
                            "<_getStrSize:{n}> _getStrSize, size:3",
                            "<{f}:{n}> a_qeltvapi_ci_set  QELTVAPI_CI_SET_TYPE_MMI_ENQ_ANS, "
                            "w2s_txt_len:3",
                            "<{f}:{n}> a_qeltvapi_ci_set  QELTVAPI_CI_SET_TYPE_MMI_ENQ_ANS, "
                            "vector w2s_text size:3"})
                    .exit({kResult}),
            Row("a_qeltvapi_ci_get_virtual_channel_info", 4)
                    .given(0, bytesOf(uint32_t{0x80000016}))
                    .call([](Outputs& o) {
                        return a_qeltvapi_ci_get_virtual_channel_info(15, o.at<uint32_t>(0));
                    })
                    .sent({u32(0x80000016)})
                    .answered({u32(0x90000017), i32(18)})
                    .returns(18)
                    .stores(0, uint32_t{0x90000017}),
            keyRow("a_qeltvapi_ci_key_erase", 5)
                    .call([](Outputs&) { return a_qeltvapi_ci_key_erase(); })
                    .answered({i32(19)})
                    .returns(19)
                    .direct<int32_t>(),
            // As many bytes as the answer's own length, beyond the caller's.
            keyRow("a_qeltvapi_ci_key_get_host_id", 6)
                    .given(1, bytesOf(uint8_t{0x84}))
                    .call([](Outputs& o) {
                        return a_qeltvapi_ci_key_get_host_id(o.at<uint8_t>(0), o.at<uint8_t>(1));
                    })
                    .sent({u8(0x84)})
                    .answered({bytes(counted(0x90)), u8(0x8a), i32(20)})
                    .returns(20)
                    .stores(0, counted(0x8a))
                    .stores(1, uint8_t{0x8a}),
            keyRow("a_qeltvapi_ci_key_query", 7)
                    .call([](Outputs& o) { return a_qeltvapi_ci_key_query(o.at<uint16_t>(0)); })
                    .answered({u16s({0x8041, 0, 0x42}), i32(21)})
                    .returns(21)
                    .stores(0, bytesOf<uint16_t>({0x8041, 0, 0x42})),
            keyRow("a_qeltvapi_ci_key_query_exist", 8)
                    .call([](Outputs& o) {
                        return a_qeltvapi_ci_key_query_exist(o.at<uint8_t>(0));
                    })
                    .answered({u8(0x81), i32(22)})
                    .returns(22)
                    .stores(0, uint8_t{0x81}),
            keyRow("a_qeltvapi_ci_key_query_exist_ex", 9)
                    .call([](Outputs& o) {
                        return a_qeltvapi_ci_key_query_exist_ex(0x80000023, o.at<uint8_t>(0));
                    })
                    .sent({u32(0x80000023)})
                    .answered({u8(1), i32(24)})
                    .returns(24)
                    .stores(0, uint8_t{1}),
            keyRow("a_qeltvapi_ci_key_update", 10)
                    .call([](Outputs&) { return a_qeltvapi_ci_key_update(); })
                    .answered({i32(-25)})
                    .returns(-25)
                    .direct<int32_t>(),
            keyRow("a_qeltvapi_ci_key_update_with_path", 11)
                    .call([](Outputs&) { return a_qeltvapi_ci_key_update_with_path("/usb/key"); })
                    .sent({str("/usb/key")})
                    .answered({i32(26)})
                    .returns(26)
                    .direct<int32_t>(),
            keyRow("a_qeltvapi_ci_key_update_with_path_ex", 12)
                    .call([](Outputs&) {
                        return a_qeltvapi_ci_key_update_with_path_ex("/usb/key2", 0x80000027);
                    })
                    .sent({str("/usb/key2"), u32(0x80000027)})
                    .answered({i32(28)})
                    .returns(28)
                    .direct<int32_t>(),
            keyRow("a_qeltvapi_ci_key_update_ex", 13)
                    .call([](Outputs&) { return a_qeltvapi_ci_key_update_ex(0x80000029); })
                    .sent({u32(0x80000029)})
                    .answered({i32(30)})
                    .returns(30)
                    .direct<int32_t>(),
            keyRow("a_qeltvapi_ci_key_write", 14)
                    .given(0, counted(13))
                    .call([](Outputs& o) { return a_qeltvapi_ci_key_write(o.at(0), 12); })
                    .sent({bytes(counted(12)), u32(12)})
                    .answered({i32(31)})
                    .returns(31)
                    .direct<int32_t>(),
            keyRow("a_qeltvapi_ci_key_activate", 15)
                    .call([](Outputs&) { return a_qeltvapi_ci_key_activate(); })
                    .answered({i32(32)})
                    .returns(32)
                    .direct<int32_t>(),
            Row("a_qeltvapi_ci_reg_cb", 16)
                    .call([](Outputs& o) {
                        return a_qeltvapi_ci_reg_cb(o.at<int32_t>(0), 0x80000033, 0x80000034,
                                                    ignore);
                    })
                    .sent({u32(0x80000033), u32(0x80000034)})
                    .answered({i32(-35), i32(36)})
                    .returns(36)
                    .stores(0, int32_t{-35})
                    .entry({"<{f}:142> {f}, pv_nfy addr:" + addressOf(ignore)})
                    .exit({"<{f}:176> {{f}} handle:{i32@0}, i4_ret:{r}.\n"}),
            Row("a_qeltvapi_ci_unreg_cb", 17)
                    .call([](Outputs&) { return a_qeltvapi_ci_unreg_cb(-37); })
                    .sent({i32(-37)})
                    .answered({i32(38)})
                    .returns(38)
                    .direct<int32_t>()
                    .entry({"<{f}:196> {f}"})
                    .exit({"<{f}:211> {{f}} i4_ret:{r}.\n"}),
    };
    return t;
}

WIRE_TABLE_TESTS(CiWire, table())

class CiTypes : public testing::Test {
  protected:
    void SetUp() override {
        captureLog();
        service.start();
        service.take();
    }

    /** Sets typed data and compares what arrives. */
    void expectSet(int type, void* data, Value payload) {
        service.expect({i32(type), u32(9), std::move(payload)}, {i32(type)});
        EXPECT_EQ(type, a_qeltvapi_ci_set(type, 9, data));
        const std::vector<Seen> seen = service.take();
        ASSERT_EQ(1u, seen.size());
        EXPECT_EQ(type == 2 ? 3u : 2u, seen[0].ordinal) << "type " << type;
    }

    ScriptedService& service = ScriptedService::instance();
};

TEST_F(CiTypes, MakeATransactionForKnownGetTypesOnly) {
    const std::set<int> known = {0,  1,  2,  7,  8,  10, 13, 15, 16, 17,
                                 18, 19, 20, 26, 27, 28, 30, 31, 32};
    for (int type = -1; type < 90; ++type) {
        if (type == 29) continue;
        SCOPED_TRACE(type);
        char data[] = "abc";
        uint32_t length = 2;
        if (known.count(type) != 0) {
            service.expect({i32(type), u32(1), bytes("ab"), u32(2)}, {bytes("x"), u32(1), i32(6)});
            EXPECT_EQ(6, a_qeltvapi_ci_get(type, 1, data, &length));
            const std::vector<Seen> seen = service.take();
            ASSERT_EQ(1u, seen.size());
            EXPECT_EQ(0u, seen[0].ordinal);
            EXPECT_EQ(1u, length);
        } else {
            takeLog();
            Debug on(true);
            EXPECT_EQ(-1, a_qeltvapi_ci_get(type, 1, data, &length));
            const std::string name = "a_qeltvapi_ci_get";
            expectLog(kTag, {"<" + name + ":{n}> " + name + ",e_get_type:" + std::to_string(type) +
                                     ", pz_data_len:2",
                             "<" + name + ":{n}> {" + name + "} i4_ret:-1.\n"});
            EXPECT_TRUE(service.take().empty());
            EXPECT_STREQ("abc", data);
            EXPECT_EQ(2u, length);
        }
    }
}

TEST_F(CiTypes, StoreOnlyTheLengthWithoutABuffer) {
    for (int type : {0, 15}) {
        uint32_t length = 0;
        service.expect({i32(type), u32(1), bytes(""), u32(0)}, {bytes("xyz"), u32(3), i32(0)});
        EXPECT_EQ(0, a_qeltvapi_ci_get(type, 1, nullptr, &length));
        EXPECT_EQ(3u, length);
    }
}

TEST_F(CiTypes, StoreTheValidityOfThePinWithoutABuffer) {
    uint8_t valid = 9;
    uint32_t length = 7;
    QELTVAPI_CI_CAM_PIN_CODE_T out{&valid, nullptr};
    service.expect({i32(29), u32(1)}, {pinCode(1, {'4', '2'}), i32(5)});
    takeLog();
    Debug off(false);
    EXPECT_EQ(5, a_qeltvapi_ci_get(29, 1, &out, &length));
    EXPECT_EQ(1, valid);
    EXPECT_EQ(7u, length);
    expectLog(kTag,
              {"<operator():{n}> {hw_qeltvapi_ci} pt_cam_pin_code->pw2s_pin_code == NULL!\n"});
}

TEST_F(CiTypes, SendThePayloadOfEachSetType) {
    Bytes data = counted(20);
    char text[] = "a text";
    char empty[] = "";
    expectSet(3, data.data(), bytes(counted(8)));
    expectSet(34, text, bytes("a text"));
    expectSet(34, empty, bytes(""));
    expectSet(40, data.data(), bytes(counted(4)));
    // The argument is the value, not an address.
    expectSet(80, reinterpret_cast<void*>(uintptr_t{513}), bytes(Bytes(1, '\1')));
    for (int type : {0, 1, 4, 29, 33, 79, 81}) expectSet(type, data.data(), bytes(""));
}

TEST_F(CiTypes, CountAnEnquiryTextWithItsTerminator) {
    const uint16_t nothing[] = {0};
    QELTVAPI_CI_MMI_ENQ_ANS_T answer{1, 2, nothing};
    expectSet(2, &answer, enquiryAnswer(1, 2, {0}));

    answer.w2s_txt = nullptr;
    takeLog();
    Debug on(true);
    expectSet(2, &answer, enquiryAnswer(1, 2, {}));
    const std::string head = "<a_qeltvapi_ci_set:{n}> a_qeltvapi_ci_set";
    const std::string type = head + "  QELTVAPI_CI_SET_TYPE_MMI_ENQ_ANS";
    expectLog(kTag, {head + " with e_set_type:2", type, "<_getStrSize:{n}> _getStrSize",
                     type + ", w2s_txt_len:0", type + ", vector w2s_text size:0",
                     "<a_qeltvapi_ci_set:{n}> {a_qeltvapi_ci_set} i4_ret:2.\n"});
}

TEST_F(CiTypes, SendKeyDataOfNoBytes) {
    uint8_t data = 1;
    service.expect({bytes(""), u32(0)}, {i32(3)});
    EXPECT_EQ(3, a_qeltvapi_ci_key_write(&data, 0));
}

}  // namespace
