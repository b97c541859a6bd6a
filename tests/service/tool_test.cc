#include <gtest/gtest.h>
#include <unistd.h>

#include <nlohmann/json.hpp>

#include "daemon.h"
#include "wire.h"

using namespace wire;
using testing::Test;

namespace {

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

TEST_F(Tool, TellsRefusalUsageAndAMissingTelevisionApart) {
    expectFailed(qeltvctl({"config", "set", "picture.contrast", "101"}), 1,
                 "qeltvctl: picture.contrast: refused with code -4\n");
    expectFailed(qeltvctl({"config", "set", "picture.gamma", "1"}), 1,
                 "qeltvctl: picture.gamma: refused with code -5\n");
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
    expectFailed(qeltvctl({"config", "get", "picture.contrast"}), 3,
                 "qeltvctl: the television is not running\n");
    expectFailed(qeltvctl({"service", "ping"}), 3, "qeltvctl: the television is not running\n");
    expectFailed(qeltvctl({"service", "wait", "--timeout", "0.1"}), 3,
                 "qeltvctl: the television has not come up\n");
}

TEST_F(Tool, FaultsHitTheMethodTheyAreSetFor) {
    expectDone(qeltvctl({"service", "fault", "qeltvapi_config_set_value", "code", "-77"}), "");
    expectFailed(qeltvctl({"config", "set", "picture.contrast", "1"}), 1,
                 "qeltvctl: picture.contrast: refused with code -77\n");
    expectDone(qeltvctl({"service", "fault", "qeltvapi_config_set_value", "none"}), "");
    expectDone(qeltvctl({"config", "set", "picture.contrast", "1"}), "");

    expectFailed(qeltvctl({"service", "fault", "no_such_method", "lose"}), 1,
                 "qeltvctl: no method no_such_method\n");
    expectFailed(qeltvctl({"service", "fault", "*", "explode"}), 1, "qeltvctl: no such fault\n");

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

}  // namespace
