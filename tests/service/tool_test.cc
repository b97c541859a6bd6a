#include <gtest/gtest.h>
#include <unistd.h>
#include <vendor/qelnova/tv/qeltvapi/1.0/IQelTvApiConfig.h>

#include <nlohmann/json.hpp>

#include "daemon.h"
#include "wire.h"

using namespace wire;
using testing::Test;
using vendor::qelnova::tv::qeltvapi::V1_0::IQelTvApiConfig;
using Words = std::vector<std::string>;

namespace {

std::string noTelevision() {
    return std::string("qeltvctl: no television at ") + getenv("QELTV_RUNTIME_DIR") +
           " (QELTV_RUNTIME_DIR); start qeltvd, or set QELTV_RUNTIME_DIR to the directory of one "
           "that runs\n";
}

/** qeltvctl against a real television that starts with its factory settings. */
class Tool : public Test {
  protected:
    void SetUp() override { television.start(); }

    static void expectDone(const Ended& ended, const std::string& out) {
        EXPECT_EQ(0, ended.status) << ended.err;
        EXPECT_EQ(out, ended.out);
        EXPECT_EQ("", ended.err);
    }

    static void expectFailed(const Ended& ended, int status, const std::string& err) {
        EXPECT_EQ(status, ended.status);
        EXPECT_EQ("", ended.out);
        EXPECT_EQ(err, ended.err);
    }

    Daemon television;
};

TEST_F(Tool, ReadsAndWritesSettingsThatOutliveTheTelevision) {
    expectDone(qeltvctl({"config", "get", "picture.contrast"}), "85\n");
    expectDone(qeltvctl({"config", "set", "picture.contrast", "12"}), "");
    expectDone(qeltvctl({"config", "set", "channels.country", "NOR"}), "");
    expectDone(qeltvctl({"config", "set", "picture.hue", "-50"}), "");

    television.kill();
    television.start();
    expectDone(qeltvctl({"config", "get", "picture.contrast"}), "12\n");
    expectDone(qeltvctl({"config", "get", "channels.country"}), "NOR\n");
    expectDone(qeltvctl({"config", "get", "picture.hue"}), "-50\n");

    // Only the group that is named goes back.
    expectDone(qeltvctl({"config", "reset", "1"}), "");
    expectDone(qeltvctl({"config", "get", "picture.contrast"}), "85\n");
    expectDone(qeltvctl({"config", "get", "channels.country"}), "NOR\n");
    expectDone(qeltvctl({"config", "reset"}), "");
    expectDone(qeltvctl({"config", "get", "channels.country"}), "DEU\n");
}

TEST_F(Tool, ListsItemsForPeopleAndForScripts) {
    const Ended table = qeltvctl({"config", "list", "picture.h"});
    expectDone(table,
               "ITEM         VALUE  RANGE\n"
               "picture.hue  0      -50..50\n");
    const auto json = nlohmann::json::parse(qeltvctl({"config", "list", "--all", "--json"}).out);
    ASSERT_GT(json.size(), 30u);
    for (const auto& item : json) {
        EXPECT_FALSE(item.at("name").get<std::string>().empty());
        if (item.at("name") == "system.serial") EXPECT_FALSE(item.at("visible").get<bool>());
    }
    EXPECT_EQ(std::string::npos, qeltvctl({"config", "list"}).out.find("system.serial"));
}

TEST_F(Tool, DistinguishesRefusalUsageAndAMissingTelevision) {
    expectFailed(qeltvctl({"config", "set", "picture.contrast", "101"}), 1,
                 "qeltvctl: picture.contrast: not a value that the television takes (-4)\n");
    expectFailed(qeltvctl({"config", "set", "picture.gamma", "1"}), 1,
                 "qeltvctl: picture.gamma: not now or not allowed (-5)\n");
    expectFailed(qeltvctl({"config", "get", "picture.nothing"}), 1,
                 "qeltvctl: there is no item picture.nothing\n");
    expectFailed(qeltvctl({"config", "set", "picture.contrast", "12x"}), 2,
                 "qeltvctl: picture.contrast takes an integer, not \"12x\"\n");
    EXPECT_EQ(2, qeltvctl({"config", "set", "picture.contrast"}).status);
    EXPECT_EQ(2, qeltvctl({"nonsense"}).status);
    EXPECT_EQ(0, qeltvctl({"--help"}).status);

    expectDone(qeltvctl({"service", "fault", "qeltvapi_config_get_value", "lose"}), "");
    expectFailed(qeltvctl({"config", "get", "picture.contrast"}), 3,
                 "qeltvctl: picture.contrast: the television did not answer\n");
    expectDone(qeltvctl({"config", "get", "picture.contrast"}), "85\n");

    expectDone(qeltvctl({"service", "die"}), "");
    expectFailed(qeltvctl({"config", "get", "picture.contrast"}), 3, noTelevision());
    expectFailed(qeltvctl({"service", "ping"}), 3, noTelevision());
    expectFailed(qeltvctl({"service", "wait", "--timeout", "0.1"}), 3, noTelevision());
}

TEST_F(Tool, FaultsHitTheMethodTheyAreSetFor) {
    expectDone(qeltvctl({"service", "fault", "qeltvapi_config_set_value", "code", "-77"}), "");
    expectFailed(qeltvctl({"config", "set", "picture.contrast", "1"}), 1,
                 "qeltvctl: picture.contrast: refused (-77)\n");
    expectDone(qeltvctl({"service", "fault", "qeltvapi_config_set_value", "none"}), "");
    expectDone(qeltvctl({"config", "set", "picture.contrast", "1"}), "");

    expectFailed(qeltvctl({"service", "fault", "qeltvapi_config_get_valeu", "lose"}), 2,
                 "qeltvctl: there is no method qeltvapi_config_get_valeu (did you mean "
                 "\"a_hidl_qeltvapi_config_get_value\"?); qeltvctl service methods shows them\n");
    expectFailed(qeltvctl({"service", "fault", "*", "explode"}), 2,
                 "qeltvctl: a fault is die, lose, code N, delay MS or none, not \"explode\"\n");

    const auto dump = nlohmann::json::parse(qeltvctl({"service", "dump"}).out);
    uint64_t calls = 0;
    for (const auto& method : dump.at("methods")) {
        if (method.at("method") == "a_hidl_qeltvapi_config_set_value") calls = method.at("calls");
    }
    EXPECT_EQ(2u, calls) << "refused calls count too";

    expectDone(qeltvctl({"service", "fault", "qeltvapi_config_set_value", "die"}), "");
    expectFailed(qeltvctl({"config", "set", "picture.contrast", "2"}), 3,
                 "qeltvctl: picture.contrast: the television did not answer\n");
}

TEST_F(Tool, FaultsOfACFunctionEndAfterSoManyCalls) {
    const Words get{"config", "get", "picture.contrast"};
    expectDone(qeltvctl({"service", "fault", "a_qeltvapi_config_get_minmaxvalue", "code", "-77",
                         "--times", "2"}),
               "");
    for (int i = 0; i < 2; ++i) {
        expectFailed(qeltvctl(get), 1, "qeltvctl: picture.contrast: refused (-77)\n");
    }
    expectDone(qeltvctl(get), "85\n");
    expectDone(qeltvctl({"service", "fault", "a_qeltvapi_config_get_minmaxvalue", "lose", "--times",
                         "2"}),
               "");
    EXPECT_EQ(3, qeltvctl(get).status);
    EXPECT_EQ(3, qeltvctl(get).status);
    expectDone(qeltvctl(get), "85\n");
}

TEST_F(Tool, ListsMethodsAndNotificationsForFaultsAndRaises) {
    const Ended methods = qeltvctl({"service", "methods", "a_hidl_qeltvapi_config_get_value"});
    expectDone(methods,
               "METHOD                            INTERFACE        C FUNCTIONS\n"
               "a_hidl_qeltvapi_config_get_value  IQelTvApiConfig  a_qeltvapi_config_get_value\n");
    const auto all = nlohmann::json::parse(qeltvctl({"service", "notifications", "--json"}).out);
    EXPECT_GT(all.size(), 50u);
    // Its kind, its method and its registration are names of the same notification.
    for (const char* name : {"sleep_timer", "a_hidl_qeltvapi_sleep_timer_callback_fct",
                             "a_qeltvapi_time_register_sleep_timer_callback"}) {
        expectDone(qeltvctl({"service", "raise", name, "[1,0,42]"}), "");
    }
    EXPECT_EQ(2, qeltvctl({"service", "raise", "sleep_timer", "{"}).status);
}

TEST_F(Tool, ReadsTextItemsOfAnySizeThatIsStored) {
    // A megabyte is what a message of the device's size takes; the television may take less.
    for (const size_t size : {1000u, 70'000u, 500'000u}) {
        const std::string text(size, 'x');
        std::string stored = "DEU";
        // Longer than one argument of a command may be.
        const auto config = IQelTvApiConfig::getService("default", false);
        ASSERT_NE(nullptr, config);
        if (config->a_hidl_qeltvapi_config_set_str_value("channels.country", text) == 0) {
            stored = text;
        } else {
            EXPECT_GT(size, 1000u);
            stored = qeltvctl({"config", "get", "channels.country", "--json"}).out;
            stored = nlohmann::json::parse(stored).at("value");
        }
        expectDone(qeltvctl({"config", "get", "channels.country"}), stored + "\n");
        EXPECT_EQ(0, qeltvctl({"config", "list"}).status);
        expectDone(qeltvctl({"config", "set", "picture.hue", "1"}), "");
    }
}

TEST_F(Tool, PrintsJsonAndTablesOfNamesThatAreNoText) {
    // A name as a broadcast may have it: not UTF-8, and with a sequence that terminals act on.
    const auto config = IQelTvApiConfig::getService("default", false);
    ASSERT_NE(nullptr, config);
    ASSERT_EQ(0, config->a_hidl_qeltvapi_config_set_str_value("channels.country",
                                                              "\xc3(\x1b[31m\xff"));
    const Ended json = qeltvctl({"config", "list", "--json"});
    EXPECT_EQ(0, json.status) << json.err;
    EXPECT_TRUE(nlohmann::json::accept(json.out));
    const Ended table = qeltvctl({"config", "list", "channels.country"});
    EXPECT_NE(std::string::npos, table.out.find("\\xc3(\\x1b[31m\\xff")) << table.out;
    // Scripts get what is stored.
    expectDone(qeltvctl({"config", "get", "channels.country"}), "\xc3(\x1b[31m\xff\n");
    expectFailed(qeltvctl({"config", "get", "\x1b[31m"}), 1,
                 "qeltvctl: there is no item \\x1b[31m\n");
}

TEST_F(Tool, FailsWhenItsOutputCannotBeWritten) {
    const auto shell = [](const std::string& redirection) {
        return runProgram({"/bin/sh", "-c",
                           QELTV_EMULATOR " " QELTV_BUILD_DIR
                                          "/tools/qeltvctl config get picture.contrast " +
                                   redirection});
    };
    for (const char* redirection : {">/dev/full", ">&-"}) {
        const Ended ended = shell(redirection);
        EXPECT_EQ(1, ended.status) << redirection;
        EXPECT_EQ(0u, ended.err.find("qeltvctl: the output cannot be written: ")) << ended.err;
    }
    EXPECT_EQ(0, shell(">/dev/null 2>&- <&-").status);
}

TEST_F(Tool, SuggestsWhatWasMeantAndKnowsItsVersion) {
    expectFailed(qeltvctl({"chanel", "list"}), 2,
                 "qeltvctl: there is no command \"chanel\" (did you mean \"channel\"?)\n");
    expectFailed(qeltvctl({"config", "gte", "x"}), 2,
                 "qeltvctl: there is no command \"config gte\" (did you mean \"get\"?)\n");
    expectFailed(qeltvctl({"config", "get", "picture.contrats"}), 1,
                 "qeltvctl: there is no item picture.contrats (did you mean "
                 "\"picture.contrast\"?)\n");
    const Ended version = qeltvctl({"--version"});
    EXPECT_EQ(0, version.status);
    EXPECT_EQ(0u, version.out.find("qeltvctl 1.")) << version.out;
}

TEST_F(Tool, AsksOnlyTheInterfaceThatIsCalled) {
    setenv("QELTV_TRACE", "1", 1);
    const Ended got = qeltvctl({"config", "get", "picture.contrast"});
    const Ended called =
            qeltvctl({"call", "a_qeltvapi_config_is_visible", "0", "picture.contrast"});
    unsetenv("QELTV_TRACE");
    for (const Ended& ended : {got, called}) {
        EXPECT_EQ(0, ended.status) << ended.err;
        EXPECT_NE(std::string::npos, ended.err.find("IQelTvApiConfig ")) << ended.err;
        EXPECT_EQ(std::string::npos, ended.err.find("IQelTvApi ")) << ended.err;
    }
}

}  // namespace
