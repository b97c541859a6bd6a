/** qeltv-conformance against the reference television, and against services with one fault each. */
#include <gmock/gmock.h>
#include <hidlhost/runtime_directory.h>

#include <cstdlib>
#include <fstream>
#include <iterator>
#include <sstream>

#include "daemon.h"
#include "faulty_service.h"

using namespace wire;
using ::testing::HasSubstr;

namespace {

Ended conformance(std::vector<std::string> arguments) {
    arguments.insert(arguments.begin(), "conformance/qeltv-conformance");
    return runBuilt(arguments);
}

std::string contents(const std::string& path) {
    std::ifstream file(path);
    return {std::istreambuf_iterator<char>(file), {}};
}

/** The names of all checks, as the program lists them. */
std::vector<std::string> checks() {
    std::vector<std::string> names;
    std::istringstream list(conformance({"--list"}).out);
    for (std::string line; std::getline(list, line);) {
        names.push_back(line.substr(0, line.find(' ')));
    }
    return names;
}

TEST(Conformance, OfTheReferenceTelevision) {
    Daemon television;
    television.start();
    const TemporaryDirectory directory;
    const std::string junit = directory.path() + "/report.xml";
    const Ended ended = conformance({"--layouts", "--seconds", "2", "--junit", junit});
    EXPECT_EQ(0, ended.status) << ended.out << ended.err;
    const std::string all = std::to_string(checks().size());
    EXPECT_THAT(ended.out, HasSubstr(all + " checks: " + all + " passed, 0 failed, 0 skipped"));
    EXPECT_TRUE(television.alive());
    // As a reader of the format takes it.
    const Ended read = runProgram({"/usr/bin/python3", "-c",
                                   "import sys, xml.etree.ElementTree as t\n"
                                   "r = t.parse(sys.argv[1]).getroot()\n"
                                   "print(len(r.findall('testsuite/testcase')), "
                                   "sum(int(s.get('failures')) for s in r))",
                                   junit});
    EXPECT_EQ(all + " 0\n", read.out) << read.err << contents(junit);
}

TEST(Conformance, ReadsOnlyIfThatIsAskedFor) {
    Daemon television;
    television.start();
    const auto settings = [] { return qeltvctl({"config", "list", "--all", "--json"}).out; };
    const std::string before = settings();
    const Ended ended = conformance({"--read-only", "--seconds", "1"});
    EXPECT_EQ(0, ended.status) << ended.out << ended.err;
    EXPECT_THAT(ended.out, HasSubstr("changes a setting (--read-only)"));
    EXPECT_EQ(before, settings());
    EXPECT_FALSE(before.empty());
}

TEST(Conformance, TakesASampleOfInterfaces) {
    const FaultyService service("interfaces.registered");
    EXPECT_EQ(1, conformance({"--check", "interfaces"}).status);
    const Ended ended = conformance(
            {"--interface", "IQelTvApiConfig", "IQelTvApi", "--check", "interfaces", "methods"});
    EXPECT_EQ(0, ended.status) << ended.out;
    EXPECT_THAT(ended.out, HasSubstr("6 checks: 6 passed"));
}

TEST(Conformance, RefusesWrongUsageAndAMissingService) {
    EXPECT_EQ(3, conformance({}).status);
    EXPECT_THAT(conformance({}).err, HasSubstr(hidlhost::runtimeDirectory()));
    EXPECT_EQ(2, conformance({"--sedd", "1"}).status);
    EXPECT_EQ(2, conformance({"--interface", "IQelTvApiCallback"}).status);
    const Ended ended = conformance({"--check", "callbacks.twice"});
    EXPECT_EQ(2, ended.status);
    EXPECT_THAT(ended.err, HasSubstr("no check callbacks.twice"));
    const FaultyService service("");
    EXPECT_EQ(2, conformance({"--junit", "/nonexistent/report.xml"}).status);
}

TEST(Conformance, ReportsADeath) {
    const FaultyService service("death");
    const Ended ended = conformance({"--check", "hostile", "--seconds", "30"});
    EXPECT_EQ(1, ended.status);
    EXPECT_THAT(ended.out, HasSubstr("FAILED   hostile.values"));
    EXPECT_THAT(ended.out, HasSubstr("DEAD_OBJECT"));
    EXPECT_THAT(ended.out, HasSubstr("FAILED   hostile.identity"));
}

TEST(Conformance, OfAServiceWithoutFaults) {
    const FaultyService service("");
    const Ended ended = conformance({"--layouts", "--seconds", "1"});
    EXPECT_EQ(0, ended.status) << ended.out << ended.err;
    EXPECT_THAT(ended.out, HasSubstr(" passed, 0 failed, 0 skipped"));
}

struct FaultOf {
    const char* check;
    /** Where it is, for checks that would take long for all; "" for all. */
    const char* interface;
};

constexpr FaultOf kFaults[] = {
        {"interfaces.registered", ""},
        {"interfaces.chain", ""},
        {"interfaces.descriptor", ""},
        {"methods.answer", "IQelTvApiConfig"},
        {"methods.shape", "IQelTvApiConfig"},
        {"methods.beyond", ""},
        {"results.records", "IQelTvApiChannelList"},
        {"results.layouts", "IQelTvApi"},
        {"results.counts", "IQelTvApiConfig"},
        {"results.capacity", "IQelTvApi"},
        {"results.texts", "IQelTvApiConfig"},
        {"results.codes", "IQelTvApiTime"},
        {"memory.bounds", ""},
        {"memory.counts", ""},
        {"memory.handles", ""},
        {"memory.released", ""},
        {"callbacks.notified", ""},
        {"callbacks.shape", ""},
        {"callbacks.once", ""},
        {"callbacks.processes", ""},
        {"callbacks.hanging", ""},
        {"callbacks.death", ""},
        {"hostile.values", "IQelTvApiConfig"},
        {"hostile.malformed", "IQelTvApiConfig"},
        {"hostile.identity", "IQelTvApiConfig"},
};

class Fault : public testing::TestWithParam<FaultOf> {};

TEST_P(Fault, IsFoundByItsCheck) {
    const std::string name = GetParam().check;
    // Little patience for calls that hang.
    setenv("QELTV_CALL_TIMEOUT_MS", "1000", 1);
    const FaultyService service(name);
    std::vector<std::string> words = {"--check", name, "--layouts", "--seconds", "1"};
    if (*GetParam().interface != '\0') {
        words.insert(words.end(), {"--interface", GetParam().interface});
    }
    const Ended ended = conformance(words);
    unsetenv("QELTV_CALL_TIMEOUT_MS");
    EXPECT_EQ(1, ended.status) << ended.out << ended.err;
    EXPECT_THAT(ended.out, HasSubstr("FAILED   " + name + " "));
    EXPECT_THAT(ended.out, HasSubstr(": expected "));
}

INSTANTIATE_TEST_SUITE_P(Checks, Fault, testing::ValuesIn(kFaults), [](const auto& info) {
    std::string name = info.param.check;
    name[name.find('.')] = '_';
    return name;
});

TEST(Conformance, HasAFaultForEveryCheck) {
    std::vector<std::string> names;
    for (const FaultOf& fault : kFaults) names.emplace_back(fault.check);
    EXPECT_EQ(names, checks());
}

}  // namespace
