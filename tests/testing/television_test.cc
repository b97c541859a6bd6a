#include <gmock/gmock.h>
#include <qeltvapi.h>
#include <qeltvapi/testing/testing.h>
#include <qeltvapi/testing/testing_c.h>

#include <atomic>
#include <cstring>
#include <string>
#include <thread>

using namespace qeltvapi::testing;
using namespace std::chrono_literals;
using ::testing::HasSubstr;

namespace {

constexpr char kConfig[] = "IQelTvApiConfig";

int contrast(int32_t* value) {
    return a_qeltvapi_config_get_value(0, "picture.contrast", value);
}

/** What a script that cannot be is refused with. */
template <class F>
std::string errorOf(const F& script) {
    try {
        script();
    } catch (const ScriptError& error) {
        return error.what();
    }
    return "no error";
}

TEST(Television, AnswersWithTheLastRuleThatMatches) {
    Television tv;
    tv.when(kConfig, "get_value").answers(1, 0);
    tv.when(kConfig, "get_value").with(any, "picture.contrast").answers(2, 0).answers(3, 0);
    int32_t value = 0;
    ASSERT_EQ(0, a_qeltvapi_config_get_value(0, "picture.sharpness", &value));
    EXPECT_EQ(1, value);
    for (const int32_t expected : {2, 3, 3}) {
        ASSERT_EQ(0, contrast(&value));
        EXPECT_EQ(expected, value);
    }
}

TEST(Television, RefusesWhatNoRuleMatches) {
    Television tv;
    int32_t value = 7;
    EXPECT_EQ(-38, contrast(&value));
    ASSERT_EQ(1u, tv.unscripted().size());
    EXPECT_EQ(
            "IQelTvApiConfig a_hidl_qeltvapi_config_get_value(selector 0, name "
            "\"picture.contrast\")",
            tv.unscripted()[0].show());
    tv.otherwise(kConfig).refuses(-5);
    EXPECT_EQ(-5, contrast(&value));
    tv.otherwise(kConfig).losesReply();
    EXPECT_EQ(-1, contrast(&value));
}

TEST(Television, ComputesDelaysAndRecordsAnswers) {
    Television tv;
    tv.when(kConfig, "get_value")
            .answersWith([](const Call& call) -> Values {
                return {static_cast<int32_t>(call["name"].text().size()), 0};
            })
            .after(50ms);
    int32_t value = 0;
    const auto begin = std::chrono::steady_clock::now();
    ASSERT_EQ(0, contrast(&value));
    EXPECT_GE(std::chrono::steady_clock::now() - begin, 50ms);
    EXPECT_EQ(16, value);
    EXPECT_EQ(1u, tv.calls(kConfig, "get_value").size());
    tv.clearCalls();
    EXPECT_TRUE(tv.calls().empty());
}

TEST(Television, CarriesTextsRecordsAndSharedMemory) {
    Television tv;
    tv.when(kConfig, "get_str_value").answers("text", 4u, 0);
    char text[64] = {};
    uint32_t size = sizeof(text);
    ASSERT_EQ(0, a_qeltvapi_config_get_str_value("a.name", text, &size));
    EXPECT_STREQ("text", text);

    tv.when("IQelTvApiChannelList", "get_all_svlid")
            .answers(2, 0)
            .fills("mem", bytesOf(uint32_t{0x00020001}));
    uint16_t ids[4] = {};
    uint16_t count = 4;
    EXPECT_EQ(0, a_qeltvapi_tvprovider_get_all_svlid(ids, &count));
    EXPECT_EQ(2, count);
    EXPECT_EQ(1, ids[0]);
    EXPECT_EQ(2, ids[1]);
    EXPECT_EQ("a_hidl_qeltvapi_tvprovider_get_all_svlid has no shared memory capacity",
              errorOf([&] {
                  tv.when("IQelTvApiChannelList", "get_all_svlid")
                          .answers(2, 0)
                          .fills("capacity", bytes(""));
              }));
}

TEST(Television, DiesAndComesBack) {
    Television tv;
    tv.when(kConfig, "get_value").dies().answers(5, 0);
    // The library notices a death once it has used the main interface.
    a_qeltvapi_freeze_set_freeze("main", 1);
    int32_t value = 0;
    EXPECT_EQ(-1, contrast(&value));
    EXPECT_EQ(-1, contrast(&value));
    tv.comeBack();
    const auto deadline = std::chrono::steady_clock::now() + 30s;
    while (contrast(&value) != 0 && std::chrono::steady_clock::now() < deadline) {
        std::this_thread::sleep_for(10ms);
    }
    EXPECT_EQ(5, value);
}

std::atomic<int> sLast{0};
std::string* sName = new std::string;

TEST(Television, NotifiesWithTypedValues) {
    Television tv;
    a_qeltvapi_config_reg_callback(
            [](int32_t type, uintptr_t, uintptr_t arg1, const char* name, uintptr_t, uintptr_t) {
                *sName = name;
                sLast = type * 100 + static_cast<int>(arg1);
                return 0;
            });
    a_qeltvapi_channellist_register_callback([](auto...) { return 0; });
    tv.notify("config", 3, 0u, 42u, "picture.contrast", 0u, 0u);
    EXPECT_EQ(342, sLast);
    EXPECT_EQ("picture.contrast", *sName);
    EXPECT_TRUE(tv.notify("a_hidl_qeltvapi_ci_nfy_fct_menu", 1u, 2u, 3,
                          list({list({65, 66}), list({}), list({67}),
                                list({list({68}), list({69, 70})})}))
                        .empty());
    EXPECT_THAT(errorOf([&] { tv.notify("config", 3); }),
                HasSubstr("1 of the 6 values (int32_t type"));
    EXPECT_THAT(errorOf([&] { tv.notify("weather", 3); }), HasSubstr("has no method weather"));
}

TEST(Television, RejectsScriptsThatCannotBe) {
    Television tv;
    EXPECT_THAT(errorOf([&] { tv.when("IConfig", "get_value"); }),
                HasSubstr("There is no interface IConfig"));
    EXPECT_THAT(errorOf([&] { tv.when(kConfig, "get_valu"); }),
                HasSubstr("has no method get_valu"));
    EXPECT_THAT(errorOf([&] { tv.when(kConfig, "value"); }), HasSubstr("several methods"));
    const auto fails = [&](const auto& use, const char* text) {
        EXPECT_THAT(errorOf([&] {
                        Rule rule = tv.when(kConfig, "get_value");
                        use(rule);
                    }),
                    HasSubstr(text));
    };
    fails([](Rule& rule) { rule.with(0u); }, "1 of the 2 values (uint32_t selector, string name)");
    fails([](Rule& rule) { rule.with(0u, 5); }, "name: 5 is not of type string");
    fails([](Rule& rule) { rule.with(-1, "x"); }, "selector: -1 does not fit a uint32_t");
    fails([](Rule& rule) { rule.with(1ull << 32, "x"); }, "does not fit a uint32_t");
    fails([](Rule& rule) { rule.answers(42); }, "answers: 1 of the 2 values (int32_t value");
    fails([](Rule& rule) { rule.answers(any, 0); }, "`any` is not an answer");
    fails([](Rule& rule) { rule.after(1ms); }, "after() follows what it changes");
    EXPECT_THAT(errorOf([] { Television second; }), HasSubstr("There is a Television already"));
}

TEST(TelevisionInC, ScriptsNotifiesAndRecords) {
    qeltv_testing_t* tv = qeltv_testing_open();
    ASSERT_NE(nullptr, tv) << qeltv_testing_error();
    EXPECT_EQ(nullptr, qeltv_testing_open());
    EXPECT_THAT(qeltv_testing_error(), HasSubstr("There is a Television already"));
    qeltv_testing_rule_t* rule = qeltv_testing_when(tv, kConfig, "get_value");
    ASSERT_NE(nullptr, rule) << qeltv_testing_error();
    const qeltv_testing_value_t with[] = {{QELTV_TESTING_ANY, 0, nullptr, 0, nullptr},
                                          qeltv_testing_text("picture.contrast")};
    const qeltv_testing_value_t answer[] = {qeltv_testing_number(42), qeltv_testing_number(0)};
    EXPECT_EQ(0, qeltv_testing_with(rule, with, 2));
    EXPECT_EQ(0, qeltv_testing_answers(rule, answer, 2));
    EXPECT_EQ(-1, qeltv_testing_answers(rule, answer, 1));
    EXPECT_THAT(qeltv_testing_error(), HasSubstr("1 of the 2 values"));
    int32_t value = 0;
    EXPECT_EQ(0, contrast(&value));
    EXPECT_EQ(42, value);
    ASSERT_EQ(1u, qeltv_testing_call_count(tv));
    EXPECT_THAT(qeltv_testing_call_text(tv, 0), HasSubstr("name \"picture.contrast\""));
    EXPECT_EQ(nullptr, qeltv_testing_call_text(tv, 1));
    qeltv_testing_value_t seen;
    ASSERT_EQ(0, qeltv_testing_call_argument(tv, 0, "name", &seen));
    EXPECT_EQ("picture.contrast", std::string(static_cast<const char*>(seen.data), seen.size));
    EXPECT_EQ(-1, qeltv_testing_call_argument(tv, 0, "nobody", &seen));
    qeltv_testing_close(tv);
}

}  // namespace
