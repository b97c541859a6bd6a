#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <functional>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

#include "command_line.h"
#include "output.h"

/** Shared by the commands of qeltvctl. The commands of a family are in a file of their own. */
namespace tool {

/** Exit codes of the tool. */
enum Exit : int { kDone = 0, kRefused = 1, kUsage = 2, kUnreachable = 3 };

/** Ends the command with an exit code, and one line on stderr unless the text is empty. */
class Failure : public std::runtime_error {
  public:
    Failure(int exit, const std::string& what) : std::runtime_error(what), mExit(exit) {}
    int exit() const { return mExit; }

  private:
    int mExit;
};

/** Ends the command unless an interface is there: what its getter has returned is not null. */
void require(bool there);

/** The same for the main interface. */
void requireService();

/** The same; from its return on the service's notifications arrive in this process. */
void requireNotifications();

/** Whether the television reports that it is in standby; false if it does not answer. */
bool inStandby();

/**
 * The result of a function of the library.
 *
 * @param code what the function returned
 * @param what what was tried, for the message
 * @return code, unless it is negative
 */
int64_t check(int64_t code, const std::string& what);

/**
 * A zeroed buffer for an answer that the library copies without a bound. The default is the largest
 * message of the host runtime and a terminating zero; pages that are not written take no memory.
 */
class AnswerBuffer {
  public:
    explicit AnswerBuffer(size_t size = (32u << 20) + 1);
    char* text() { return mBytes.get(); }
    void* data() { return mBytes.get(); }
    const char* text() const { return mBytes.get(); }

  private:
    std::unique_ptr<char, decltype(&free)> mBytes;
};

/**
 * Runs a command of the tool in this process. Usage errors go to stderr.
 *
 * @param words its words, as on the command line
 * @return whether there was no usage error
 */
bool runCommand(const std::vector<std::string>& words);

/** Adds "--json" to a command. */
void addJson(Command* command, bool* json);

/** Prints the tree of commands as JSON, for the manual and the completion of shells. */
void printCommands(const CommandLine& app);

}  // namespace tool
