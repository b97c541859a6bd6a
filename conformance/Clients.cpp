#include "Clients.h"

#include <fcntl.h>
#include <hidlhost/raw_service.h>
#include <poll.h>
#include <signal.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <stdexcept>

#include "Arguments.h"

namespace conformance {

using android::OK;
using android::sp;
using android::status_t;
using android::hardware::Parcel;
using std::chrono::steady_clock;

namespace {

constexpr char kCallback[] = "IQelTvApiCallback";
constexpr char kReady[] = "ready";
constexpr std::chrono::seconds kStartLimit{15};

/** One write for a line, so that lines of several threads stay whole. */
void say(int out, const std::string& line) {
    const std::string text = line + "\n";
    if (write(out, text.data(), text.size()) < 0) _exit(1);
}

/** "method<tab>change<tab>what is wrong with it" */
std::string lineOf(uint32_t code, const Parcel& arguments, const std::string& item) {
    const transactions::Interface* callback = transactions::findInterface(kCallback);
    const size_t index = code - 1;
    if (index >= callback->methods.size()) {
        return "ordinal " + std::to_string(code) + "\t0\tno such method";
    }
    const transactions::Method& method = callback->methods[index];
    try {
        const Json values = transactions::read(method.parameters, arguments);
        const bool change = values.value("name", Json()) == item;
        return std::string(method.name) + (change ? "\t1\t" : "\t0\t") +
               (arguments.dataAvail() != 0 ? "bytes behind the last value" : "");
    } catch (const transactions::Malformed&) {
        return std::string(method.name) + "\t0\tother values";
    }
}

void answer(uint32_t code, Parcel* reply) {
    hidlhost::writeOk(reply);
    const transactions::Interface* callback = transactions::findInterface(kCallback);
    const size_t index = code - 1;
    if (index >= callback->methods.size()) return;
    transactions::Files files;
    const auto& results = callback->methods[index].results;
    transactions::write(results, transactions::zerosOf(results), reply, &files);
}

}  // namespace

Client::Client(Service& service, const ClientOptions& options) {
    int ends[2];
    if (pipe2(ends, O_CLOEXEC) != 0) {
        throw std::runtime_error(std::string("no pipe: ") + strerror(errno));
    }
    fflush(nullptr);
    mProcess = fork();
    if (mProcess < 0) {
        close(ends[0]);
        close(ends[1]);
        throw std::runtime_error(std::string("no process: ") + strerror(errno));
    }
    if (mProcess == 0) serve(service, options, ends[1]);
    close(ends[1]);
    mPipe = ends[0];
    const auto deadline = steady_clock::now() + kStartLimit;
    while (mError == "it has not answered" && readUntil(deadline)) {
    }
}

Client::~Client() {
    kill();
    close(mPipe);
}

void Client::kill() {
    if (mProcess < 0) return;
    ::kill(mProcess, SIGKILL);
    while (waitpid(mProcess, nullptr, 0) < 0 && errno == EINTR) {
    }
    mProcess = -1;
}

void Client::serve(Service& service, const ClientOptions& options, int out) {
    prctl(PR_SET_PDEATHSIG, SIGKILL);
    const sp<hidlhost::RawService> object = new hidlhost::RawService(
            {descriptorOf(kCallback)}, [&](const hidlhost::RawCall& call, Parcel* reply) {
                say(out, lineOf(call.code, call.arguments, options.item));
                while (options.hangs) pause();
                answer(call.code, reply);
                return OK;
            });
    const Target* main = service.find("IQelTvApi");
    const auto& method = methodOf(*main->interface, "a_hidl_registerCallbackHandler");
    for (int i = 0; i < options.registrations; ++i) {
        const Reply reply = service.call(
                *main, method, [&](Parcel* parcel) { parcel->writeStrongBinder(object); });
        if (!reply.good()) {
            say(out, "the registration ends with " + reply.statusText());
            _exit(1);
        }
    }
    if (const Target* config = service.find("IQelTvApiConfig"); config != nullptr) {
        (void)service.call(
                *config,
                methodOf(*config->interface, "a_hidl_qeltvapi_config_add_value_changed_callback"),
                {{"name", options.item}});
    }
    say(out, kReady);
    for (;;) pause();
}

void Client::take(const std::string& line) {
    if (line == kReady) {
        mError.clear();
        return;
    }
    const size_t first = line.find('\t');
    if (first == line.npos) {
        mError = line;
        return;
    }
    mNotifications.push_back(
            {line.substr(0, first), line.substr(first + 3), line[first + 1] == '1'});
}

bool Client::readUntil(steady_clock::time_point deadline) {
    const auto left =
            std::chrono::duration_cast<std::chrono::milliseconds>(deadline - steady_clock::now());
    pollfd poller{mPipe, POLLIN, 0};
    if (poll(&poller, 1, std::max(0, static_cast<int>(left.count()))) <= 0) return false;
    char buffer[4096];
    const ssize_t size = read(mPipe, buffer, sizeof(buffer));
    if (size <= 0) return false;
    mUnread.append(buffer, static_cast<size_t>(size));
    for (size_t end; (end = mUnread.find('\n')) != mUnread.npos; mUnread.erase(0, end + 1)) {
        take(mUnread.substr(0, end));
    }
    return true;
}

size_t Client::changes() const {
    return static_cast<size_t>(std::count_if(mNotifications.begin(), mNotifications.end(),
                                             [](const auto& one) { return one.change; }));
}

bool Client::awaitChanges(size_t count, std::chrono::milliseconds limit) {
    const auto deadline = steady_clock::now() + limit;
    while (changes() < count && readUntil(deadline)) {
    }
    return changes() >= count;
}

void Client::listen(std::chrono::milliseconds time) {
    const auto deadline = steady_clock::now() + time;
    while (readUntil(deadline)) {
    }
}

}  // namespace conformance
