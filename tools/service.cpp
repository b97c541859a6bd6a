#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstring>
#include <memory>
#include <nlohmann/json.hpp>
#include <optional>
#include <thread>

#include "calls.h"
#include "hw_qeltvapi_common.h"
#include "local_time.h"
#include "notifications.h"
#include "suggestion.h"
#include "tool.h"

namespace tool {
namespace {

using android::sp;
using android::hardware::hidl_handle;
using android::hardware::hidl_string;
using android::hardware::hidl_vec;
using std::chrono::milliseconds;
using std::chrono::steady_clock;

sp<vendor::qelnova::tv::qeltvapi::V1_0::IQelTvApi> service() {
    requireService();
    return getQelTvApiService();
}

/** Has the television carry out a control command; returns its answer without the last line. */
std::string control(const std::vector<std::string>& words) {
    const auto tv = service();
    FILE* file = tmpfile();
    if (file == nullptr) throw Failure(kRefused, "no temporary file");
    native_handle_t* native = native_handle_create(1, 0);
    native->data[0] = dup(fileno(file));
    hidl_handle handle;
    handle.setTo(native, true);

    hidl_vec<hidl_string> options(words.size());
    for (size_t i = 0; i < words.size(); ++i) options[i] = words[i];
    const bool sent = tv->debug(handle, options).isOk();
    std::string answer;
    rewind(file);
    char buffer[4096];
    for (size_t n; (n = fread(buffer, 1, sizeof(buffer), file)) > 0;) answer.append(buffer, n);
    fclose(file);
    if (!sent) throw Failure(kUnreachable, "the television did not answer");

    static const std::string kOk = "ok\n", kError = "error: ";
    if (answer.size() >= kOk.size() &&
        answer.compare(answer.size() - kOk.size(), kOk.size(), kOk) == 0) {
        return answer.substr(0, answer.size() - kOk.size());
    }
    if (answer.compare(0, kError.size(), kError) == 0) answer.erase(0, kError.size());
    if (!answer.empty() && answer.back() == '\n') answer.pop_back();
    throw Failure(kRefused, answer);
}

bool isClient() {
    const auto dump = nlohmann::json::parse(control({"dump"}));
    for (const auto& client : dump.at("clients")) {
        if (client.at("pid") == getpid()) return true;
    }
    return false;
}

void ping() {
    const auto tv = service();
    const auto start = steady_clock::now();
    if (!tv->ping().isOk()) throw Failure(kUnreachable, "the television did not answer");
    const std::chrono::duration<double, std::micro> time = steady_clock::now() - start;
    printf("alive, %.0f us\n", time.count());
}

void waitFor(double seconds) {
    const auto deadline = steady_clock::now() + std::chrono::duration<double>(seconds);
    while (getQelTvApiService() == nullptr) {
        if (steady_clock::now() >= deadline) requireService();
        std::this_thread::sleep_for(milliseconds(20));
    }
}

constexpr char kCallbackInterface[] = "IQelTvApiCallback";

/** Methods of the service, or of the object that is notified, with what else names them. */
void listMethods(const std::string& prefix, bool notified, bool asJson) {
    std::vector<std::vector<std::string>> rows{
            {"METHOD", notified ? "KIND" : "INTERFACE", "C FUNCTIONS"}};
    nlohmann::ordered_json all = nlohmann::json::array();
    for (const Method& method : methods()) {
        if ((strcmp(method.interface, kCallbackInterface) == 0) != notified) continue;
        if (strncmp(method.name, prefix.c_str(), prefix.size()) != 0) continue;
        std::string group = method.interface;
        std::vector<std::string> names;
        if (notified) {
            for (const auto& one : notificationNames().at("notifications")) {
                const auto& methods = one.at("methods");
                if (std::find(methods.begin(), methods.end(), method.name) == methods.end())
                    continue;
                group = one.at("name");
                names = one.at("registeredBy").get<std::vector<std::string>>();
            }
        } else {
            for (const Function& function : functions()) {
                for (const char* called : function.methods) {
                    if (strcmp(called, method.name) == 0) names.push_back(function.name);
                }
            }
        }
        std::string joined;
        for (const std::string& name : names) joined += (joined.empty() ? "" : " ") + name;
        rows.push_back({method.name, group, joined});
        all.push_back({{"method", method.name},
                       {notified ? "kind" : "interface", group},
                       {"functions", names}});
    }
    if (asJson) {
        printJson(all);
    } else {
        printTable(rows);
    }
}

[[noreturn]] void refuseMethod(const std::string& name, bool notified) {
    std::vector<std::string> names;
    for (const Method& method : methods()) {
        if ((strcmp(method.interface, kCallbackInterface) == 0) == notified) {
            names.push_back(method.name);
        }
    }
    throw Failure(kUsage, std::string("there is no ") + (notified ? "notification " : "method ") +
                                  name + suggestion(name, names) + "; qeltvctl service " +
                                  (notified ? "notifications" : "methods") + " shows them");
}

/** The methods of a name: "*", a method, one without its "a_hidl_", or a C function. */
std::vector<std::string> methodsOf(const std::string& name) {
    if (name == "*") return {name};
    for (const Method& method : methods()) {
        if (strcmp(method.interface, kCallbackInterface) == 0) continue;
        if (name == method.name || "a_hidl_" + name == method.name) return {method.name};
    }
    for (const Function& function : functions()) {
        if (name != function.name) continue;
        if (function.methods.empty()) throw Failure(kUsage, name + " calls no method");
        return {function.methods.begin(), function.methods.end()};
    }
    refuseMethod(name, false);
}

/** The method of a notification: its own name, the kind, the callback's type or a C function. */
std::string notificationOf(const std::string& name) {
    for (const Method& method : methods()) {
        const bool notified = strcmp(method.interface, kCallbackInterface) == 0;
        if (notified && (name == method.name || "a_hidl_" + name == method.name))
            return method.name;
    }
    for (const auto& one : notificationNames().at("notifications")) {
        const auto& functions = one.at("registeredBy");
        if (name == one.at("name") || name == one.at("callback") ||
            std::find(functions.begin(), functions.end(), name) != functions.end()) {
            return one.at("methods").at(0);
        }
    }
    refuseMethod(name, true);
}

/** The words of a fault for the television: "lose", "code -5", "delay 200". */
std::vector<std::string> faultOf(const std::vector<std::string>& words) {
    const std::string& kind = words.front();
    const bool takesNumber = kind == "code" || kind == "delay";
    if (takesNumber != (words.size() == 2)) {
        throw Failure(kUsage, takesNumber ? kind + " takes a number" : kind + " takes no number");
    }
    if (kind == "code") parseNumber(words[1], "a code", INT32_MIN, INT32_MAX);
    if (kind == "delay") parseNumber(words[1], "a delay in milliseconds", 0, 3'600'000);
    if (!takesNumber && kind != "die" && kind != "lose" && kind != "none") {
        throw Failure(kUsage,
                      "a fault is die, lose, code N, delay MS or none, not \"" + kind + "\"");
    }
    return words;
}

void setFault(const std::string& name, const std::vector<std::string>& fault,
              const std::optional<uint32_t>& times) {
    const std::vector<std::string> wanted = faultOf(fault);
    for (const std::string& method : methodsOf(name)) {
        std::vector<std::string> words{"fault", method};
        words.insert(words.end(), wanted.begin(), wanted.end());
        if (times && wanted.front() != "none") {
            words.insert(words.end(), {"times", std::to_string(*times)});
        }
        control(words);
    }
}

void raise(const std::string& name, const std::string& values, uint32_t times) {
    if (!nlohmann::json::accept(values) || !nlohmann::json::parse(values).is_array()) {
        throw Failure(kUsage,
                      "the values are a JSON array as [1,0,\"text\"], not \"" + values + "\"");
    }
    control({"raise", notificationOf(name), values, std::to_string(times)});
}

}  // namespace

bool inStandby() {
    try {
        return nlohmann::json::parse(control({"dump"})).value("standby", false);
    } catch (const std::exception&) {
        // Asked for beside something else, which has an answer of its own.
        return false;
    }
}

void requireNotifications() {
    requireService();
    registerCallbackHandler();
    const auto deadline = steady_clock::now() + std::chrono::seconds(10);
    while (!isClient()) {
        if (steady_clock::now() >= deadline) {
            throw Failure(kUnreachable,
                          "the television does not register the callback object; its log says why");
        }
        std::this_thread::sleep_for(milliseconds(5));
    }
}

void addService(Command& app) {
    Command* group = app.addCommand("service", "The television's process itself");
    group->requireCommand();

    struct Options {
        double timeout = 10;
        uint32_t times = 1;
        std::optional<uint32_t> faultTimes;
        int32_t input = 0;
        bool on = false, json = false;
        std::string method, kind, values;
        std::vector<std::string> fault;
    };
    auto options = std::make_shared<Options>();

    group->addCommand("ping", "Ask whether it is alive")->callback(ping);

    Command* command = group->addCommand("wait", "Wait until it is there");
    command->addOption("--timeout", options->timeout, "Seconds")->notNegative()->showDefault();
    command->callback([options] { waitFor(options->timeout); });

    group->addCommand("dump", "Print clients, calls, faults and standby as JSON")->callback([] {
        printf("%s", control({"dump"}).c_str());
    });

    command = group->addCommand("methods", "List the methods of the service");
    command->addOption("prefix", options->method, "Only those whose names begin with it");
    addJson(command, &options->json);
    command->callback([options] { listMethods(options->method, false, options->json); });

    command = group->addCommand("notifications", "List the methods that notify");
    command->addOption("prefix", options->method, "Only those whose names begin with it");
    addJson(command, &options->json);
    command->callback([options] { listMethods(options->method, true, options->json); });

    command = group->addCommand("fault", "Have calls of a method fail");
    command->addOption("method", options->method,
                       "A method, see \"service methods\", or a C function; * for all methods")
            ->required()
            ->offerFrom("service methods \"$word\"");
    command->addOption("fault", options->fault,
                       "lose: the call is served and its reply lost; code N: answered with N and "
                       "not served; delay MS: served late; die: the television ends; none: no "
                       "fault any longer")
            ->required()
            ->expected(1, 2)
            ->offer({"lose", "code", "delay", "die", "none"});
    command->addOption("--times", options->faultTimes,
                       "For so many calls, 0 for all until \"none\"; the default is 1 for lose and "
                       "0 for code and delay. The first call of die is its last");
    command->callback(
            [options] { setFault(options->method, options->fault, options->faultTimes); });

    command = group->addCommand("plug", "Plug a source into an input, or take it out");
    command->addOption("number", options->input, "Number of the input")->required();
    command->addOption("on", options->on, "on or off")->required();
    command->callback([options] {
        control({"plug", std::to_string(options->input), options->on ? "on" : "off"});
    });

    command = group->addCommand("reception", "Weaken the signals of the aerial");
    command->addOption("percent", options->method, "New strength, 0 to 100 percent of the first")
            ->required();
    command->addOption("frequency", options->kind, "Only this one, in kHz");
    command->callback([options] {
        parseNumber(options->method, "a strength", 0, 100);
        if (!options->kind.empty()) parseNumber(options->kind, "a frequency", 1, UINT32_MAX);
        std::vector<std::string> words{"reception", options->method};
        if (!options->kind.empty()) words.push_back(options->kind);
        control(words);
    });

    command = group->addCommand("raise", "Raise a notification");
    command->addOption("notification", options->method,
                       "A method, see \"service notifications\", its kind as \"watch --list\" has "
                       "it, or the C function that registers for it")
            ->required()
            ->offerFrom("service notifications \"$word\"");
    command->addOption("values", options->values, "Its arguments, a JSON array")->required();
    command->addOption("--times", options->times, "How often")
            ->between(1, 1'000'000)
            ->showDefault();
    command->callback([options] { raise(options->method, options->values, options->times); });

    group->addCommand("die", "End it as a crash would")->callback([] {
        requireService();
        try {
            control({"die"});
        } catch (const Failure& failure) {
            // It ends before it can answer.
            if (failure.exit() != kUnreachable) throw;
        }
    });
}

}  // namespace tool
