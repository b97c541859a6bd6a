#pragma once

#include <sys/types.h>

#include <chrono>
#include <string>
#include <vector>

#include "Service.h"

namespace conformance {

/** The behaviour of a client with its callback object. */
struct ClientOptions {
    /** How often it registers the object. */
    int registrations = 1;
    /** Whether the object never returns from a notification. */
    bool hangs = false;
    /** The item of the configuration that it watches. */
    std::string item;
};

/** Another process with a callback object. It ends with the object, by SIGKILL. */
class Client {
  public:
    struct Notification {
        /** The method, or the ordinal of one that does not exist. */
        std::string method;
        /** Why the values are not those of the method; "" if they are. */
        std::string malformed;
        /** Whether it reports a change of the item. */
        bool change;
    };

    /** Returns when the object is registered, or has not been. */
    Client(Service& service, const ClientOptions& options);
    ~Client();
    Client(const Client&) = delete;
    Client& operator=(const Client&) = delete;

    /** Why the object is not registered; "" if it is. */
    const std::string& error() const { return mError; }
    /** Everything that has arrived so far. */
    const std::vector<Notification>& notifications() const { return mNotifications; }
    size_t changes() const;
    /** Waits until so many changes have arrived. */
    bool awaitChanges(size_t count, std::chrono::milliseconds limit);
    /** Takes what arrives in this time. */
    void listen(std::chrono::milliseconds time);
    void kill();

  private:
    [[noreturn]] static void serve(Service& service, const ClientOptions& options, int out);
    /** Reads what has arrived; waits for the first of it until the deadline. */
    bool readUntil(std::chrono::steady_clock::time_point deadline);
    void take(const std::string& line);

    pid_t mProcess = -1;
    int mPipe = -1;
    std::string mUnread;
    std::string mError = "it has not answered";
    std::vector<Notification> mNotifications;
};

}  // namespace conformance
