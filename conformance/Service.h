#pragma once

#include <hwbinder/IBinder.h>
#include <hwbinder/Parcel.h>
#include <sys/types.h>

#include <atomic>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "transactions.h"

namespace conformance {

using transactions::Json;

/** The full name of an interface of the package. */
std::string descriptorOf(const std::string& interface);

/** How long a call may take. */
constexpr int kCallLimitMilliseconds = 10'000;

/** One interface of the service. */
struct Target {
    const transactions::Interface* interface;
    std::string descriptor;
    /** Null if it is not registered. */
    android::sp<android::hardware::IBinder> object;
};

/** How a call has ended. */
struct Reply {
    android::status_t status = android::OK;
    /** The exception that stands before the results. */
    int32_t exception = 0;
    /** Why the results are not those of the method; "" if they are. */
    std::string malformed;
    Json results;

    bool answered() const { return status == android::OK && exception == 0; }
    bool good() const { return answered() && malformed.empty(); }
    /** The transport's status and the exception for people. */
    std::string statusText() const;
};

/** Writes arguments into a parcel. */
using Writer = std::function<void(android::hardware::Parcel*)>;

class Service {
  public:
    /** @param names the interfaces to look for */
    explicit Service(const std::vector<std::string>& names);

    const std::vector<Target>& targets() const { return mTargets; }
    /** The interface, if it is examined and registered. */
    const Target* find(const std::string& interface) const;
    /** The service's process; 0 if it is not known. */
    pid_t process() const { return mProcess; }
    /** Open descriptors of the service's process; nothing if they cannot be counted. */
    std::optional<size_t> descriptors() const;
    /**
     * Counts the descriptors until there are `limit` or fewer, for a few seconds.
     *
     * @return the last count
     */
    std::optional<size_t> awaitDescriptors(size_t limit) const;
    /** Whether an object still answers pings. */
    static bool alive(const Target& target);
    uint64_t calls() const { return mCalls; }

    /** Calls a method with arguments as transactions::write() takes them. */
    Reply call(const Target& target, const transactions::Method& method, const Json& arguments);
    /** As call(), with arguments that are written by the caller. */
    Reply call(const Target& target, const transactions::Method& method, const Writer& write);
    /** The transaction alone. */
    android::status_t transact(const Target& target, const std::string& token, uint32_t code,
                               const Writer& write, android::hardware::Parcel* reply);

  private:
    std::vector<Target> mTargets;
    pid_t mProcess = 0;
    std::atomic<uint64_t> mCalls{0};
};

/** As transactions::write(), with null in place of an object. */
void writeArguments(const transactions::Method& method, const Json& arguments,
                    android::hardware::Parcel* parcel, transactions::Files* files);

uint32_t ordinalOf(const transactions::Interface& interface, const transactions::Method& method);
/** A method by its whole name. @throws std::logic_error if there is none */
const transactions::Method& methodOf(const transactions::Interface& interface,
                                     const std::string& name);

/** "IQelTvApiConfig.config_get_value" */
std::string subjectOf(const Target& target, const transactions::Method& method);
/** "called with (selector=0, name="x")"; long values are cut. */
std::string callText(const Json& arguments);

/** The code that a method ends with, if it has one. */
std::optional<int64_t> codeOf(const transactions::Method& method, const Json& results);
/** Whether a good reply is no refusal. */
bool succeeded(const transactions::Method& method, const Reply& reply);

}  // namespace conformance
