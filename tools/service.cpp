#include <unistd.h>

#include <chrono>
#include <cstdio>
#include <memory>
#include <nlohmann/json.hpp>
#include <thread>

#include "hw_qeltvapi_common.h"
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

/** Has the television carry out a control command; its answer without the last line. */
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
        if (steady_clock::now() >= deadline) {
            throw Failure(kUnreachable, "the television has not come up");
        }
        std::this_thread::sleep_for(milliseconds(20));
    }
}

}  // namespace

void requireNotifications() {
    requireService();
    registerCallbackHandler();
    const auto deadline = steady_clock::now() + std::chrono::seconds(10);
    while (!isClient()) {
        if (steady_clock::now() >= deadline) {
            throw Failure(kUnreachable, "the television does not take the callback object");
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
        std::string method, kind, values;
        std::vector<std::string> fault;
    };
    auto options = std::make_shared<Options>();

    group->addCommand("ping", "Ask whether it is alive")->callback(ping);

    Command* command = group->addCommand("wait", "Wait until it is there");
    command->addOption("--timeout", options->timeout, "Seconds")->showDefault();
    command->callback([options] { waitFor(options->timeout); });

    group->addCommand("dump", "Print clients, calls and faults as JSON")->callback([] {
        printf("%s", control({"dump"}).c_str());
    });

    command = group->addCommand("fault", "Have calls of a method go wrong");
    command->addOption("method", options->method, "Name of the method, * for all")->required();
    command->addOption("fault", options->fault, "die, lose, code N, delay MS or none")
            ->required()
            ->expected(1, 2);
    command->callback([options] {
        std::vector<std::string> words{"fault", options->method};
        words.insert(words.end(), options->fault.begin(), options->fault.end());
        control(words);
    });

    command = group->addCommand("plug", "Plug a source into an input, or take it out");
    command->addOption("input", options->method, "Number of the input")->required();
    command->addOption("on", options->kind, "on or off")->required();
    command->callback([options] { control({"plug", options->method, options->kind}); });

    command = group->addCommand("reception", "Weaken the signals of the aerial");
    command->addOption("percent", options->method, "Of what they are")->required();
    command->addOption("frequency", options->kind, "Only this one, in kHz");
    command->callback([options] {
        std::vector<std::string> words{"reception", options->method};
        if (!options->kind.empty()) words.push_back(options->kind);
        control(words);
    });

    command = group->addCommand("raise", "Raise a notification");
    command->addOption("method", options->method, "Method of the callback object")->required();
    command->addOption("values", options->values, "Its arguments, a JSON array")->required();
    command->addOption("--times", options->times, "How often")->showDefault();
    command->callback([options] {
        control({"raise", options->method, options->values, std::to_string(options->times)});
    });

    group->addCommand("die", "End it as a crash would")->callback([] {
        requireService();
        try {
            control({"die"});
        } catch (const Failure& failure) {
            // It is gone before it can answer.
            if (failure.exit() != kUnreachable) throw;
        }
    });
}

}  // namespace tool
