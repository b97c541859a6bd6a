// The callback object: registration, notifications, and clients that hang or die.

#include <algorithm>
#include <deque>

#include "Clients.h"
#include "Run.h"

namespace conformance {
namespace {

using namespace std::chrono_literals;
using std::chrono::steady_clock;

/** How long a notification may take, and how long a second one is waited for. */
constexpr auto kLimit = 5s;
constexpr auto kSilence = 400ms;
constexpr size_t kChanges = 3;
constexpr size_t kDying = 6;
/** Descriptors that the service may have opened for another reason. */
constexpr size_t kOthers = 2;

#define CHECKS                                                                            \
    {                                                                                     \
        "callbacks.notified", "callbacks.shape", "callbacks.once", "callbacks.processes", \
                "callbacks.hanging", "callbacks.death"                                    \
    }

/** Changes an item of the configuration to and fro. */
class Item {
  public:
    Item(Run& run, const Target& config) : mRun(run), mConfig(config) {}
    ~Item() {
        if (!mValues.empty()) set(mFirst);
    }

    /** Why there are no changes that clients can watch; "" if there are. */
    std::string prepare() {
        const std::string& name = mRun.options().item;
        const auto& get = methodOf(*mConfig.interface, "a_hidl_qeltvapi_config_get_value");
        const Reply reply =
                mRun.service().call(mConfig, get, Json{{"selector", 0}, {"name", name}});
        if (!succeeded(get, reply)) return "get_value refuses the item " + name;
        const auto& watch =
                methodOf(*mConfig.interface, "a_hidl_qeltvapi_config_add_value_changed_callback");
        if (!succeeded(watch, mRun.service().call(mConfig, watch, Json{{"name", name}}))) {
            return "add_value_changed_callback refuses the item " + name;
        }
        mFirst = reply.results["value"].get<int32_t>();
        for (const int32_t value : {mFirst, mFirst ^ 1, 0, 1, 2}) {
            const bool known = std::find(mValues.begin(), mValues.end(), value) != mValues.end();
            if (!known && set(value)) mValues.push_back(value);
            if (mValues.size() == 2) return "";
        }
        return "set_value refuses all other values of the item " + name;
    }

    /** Whether it was answered with success, and in time. */
    bool change() {
        const auto begin = steady_clock::now();
        mNow ^= 1;
        return set(mValues[mNow]) && steady_clock::now() - begin < kLimit;
    }

  private:
    bool set(int32_t value) {
        const auto& method = methodOf(*mConfig.interface, "a_hidl_qeltvapi_config_set_value");
        const Reply reply = mRun.service().call(mConfig, method,
                                                Json{{"selector", 0},
                                                     {"name", mRun.options().item},
                                                     {"value", value},
                                                     {"flags", 0}});
        mRun.lookAfter(mConfig, &method, reply.status);
        return succeeded(method, reply);
    }

    Run& mRun;
    const Target& mConfig;
    int32_t mFirst = 0;
    /** Two that are accepted, and which of them is set. */
    std::vector<int32_t> mValues;
    size_t mNow = 1;
};

/** An object that is registered twice beside one that is registered once, in two processes. */
void checkRegistration(Run& run, Item& item, Client& once, Client& twice) {
    Check& notified = run.check("callbacks.notified");
    const size_t before = once.changes();
    const size_t beforeTwice = twice.changes();
    for (size_t i = 0; i < kChanges; ++i) {
        notified.examine();
        if (!item.change()) {
            notified.fail("IQelTvApiConfig.config_set_value", "", "success in time", "none");
        }
        if (!once.awaitChanges(before + i + 1, kLimit)) {
            notified.fail(run.options().item, "", "a notification of a change within 5 s", "none");
            return run.skip(CHECKS, "no notification has arrived");
        }
    }
    Check& processes = run.check("callbacks.processes");
    processes.examine();
    if (!twice.awaitChanges(beforeTwice + kChanges, kLimit)) {
        processes.fail("the second process", "",
                       std::to_string(kChanges) + " notifications, as the first one",
                       std::to_string(twice.changes() - beforeTwice));
    }
    once.listen(kSilence);
    twice.listen(kSilence);
    Check& check = run.check("callbacks.once");
    check.examine();
    if (twice.changes() - beforeTwice > once.changes() - before) {
        check.fail("an object that is registered twice", "",
                   std::to_string(once.changes() - before) +
                           " notifications, as one that is registered once",
                   std::to_string(twice.changes() - beforeTwice));
    }
}

void checkHanging(Run& run, Item& item, Client& once) {
    ClientOptions options;
    options.item = run.options().item;
    options.hangs = true;
    Client hanging(run.service(), options);
    Check& check = run.check("callbacks.hanging");
    check.examine();
    once.listen(kSilence);
    for (size_t i = 0; i < kChanges; ++i) {
        const size_t before = once.changes();
        if (!item.change()) {
            check.fail("IQelTvApiConfig.config_set_value", "while a client hangs",
                       "success within 5 s", "none");
        }
        if (!once.awaitChanges(before + 1, kLimit)) {
            check.fail("another client", "while a client hangs", "a notification within 5 s",
                       "none");
            break;
        }
    }
}

void checkDeath(Run& run, Item& item, Client& once) {
    Check& check = run.check("callbacks.death");
    check.examine();
    const auto before = run.service().descriptors();
    {
        ClientOptions options;
        options.item = run.options().item;
        std::deque<Client> dying;
        for (size_t i = 0; i < kDying; ++i) dying.emplace_back(run.service(), options);
        item.change();
        const auto deadline = steady_clock::now() + kLimit;
        for (Client& client : dying) {
            client.awaitChanges(1, std::chrono::duration_cast<std::chrono::milliseconds>(
                                           deadline - steady_clock::now()));
        }
    }
    once.listen(kSilence);
    const size_t changes = once.changes();
    if (!item.change() || !once.awaitChanges(changes + 1, kLimit)) {
        check.fail("another client", "after the death of " + std::to_string(kDying) + " clients",
                   "a notification within 5 s", "none");
    }
    if (!before) return check.note("the service's descriptors cannot be counted");
    const auto after = run.service().awaitDescriptors(*before + kOthers);
    if (after && *after > *before + kOthers) {
        check.fail("the service's process",
                   "after the death of " + std::to_string(kDying) + " clients",
                   std::to_string(*before) + " open descriptors, as before",
                   std::to_string(*after));
    }
}

}  // namespace

void checkCallbacks(Run& run) {
    if (run.options().readOnly) return run.skip(CHECKS, "changes a setting (--read-only)");
    const Target* config = run.service().find("IQelTvApiConfig");
    if (run.service().find("IQelTvApi") == nullptr || config == nullptr) {
        return run.skip(CHECKS, "needs IQelTvApi and IQelTvApiConfig");
    }
    Item item(run, *config);
    if (const std::string error = item.prepare(); !error.empty()) {
        return run.skip(CHECKS, error + "; name another one with --item");
    }
    ClientOptions options;
    options.item = run.options().item;
    Client once(run.service(), options);
    options.registrations = 2;
    Client twice(run.service(), options);
    for (const Client* client : {&once, &twice}) {
        if (client->error().empty()) continue;
        run.check("callbacks.notified")
                .fail("IQelTvApi.registerCallbackHandler", "", "an answer", client->error());
        return run.skip(CHECKS, "no object is registered");
    }
    checkRegistration(run, item, once, twice);
    Check& shape = run.check("callbacks.shape");
    for (const Client* client : {&once, &twice}) {
        for (const auto& notification : client->notifications()) {
            shape.examine();
            if (notification.malformed.empty()) continue;
            shape.fail("IQelTvApiCallback." + notification.method, "", "the values of the method",
                       notification.malformed);
        }
    }
    if (run.check("callbacks.notified").outcome() != Check::Outcome::kPassed || run.gone()) return;
    if (run.wants({"callbacks.hanging"})) checkHanging(run, item, once);
    if (run.wants({"callbacks.death"}) && !run.gone()) checkDeath(run, item, once);
}

}  // namespace conformance
