#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <stdexcept>
#include <string>
#include <vector>

#include "command_line.h"

/** What the commands of qeltvctl share. A family's commands stand in a file of their own. */
namespace tool {

/** Exit codes of the tool. */
enum Exit : int { kDone = 0, kRefused = 1, kUsage = 2, kUnreachable = 3 };

/** Ends the command with an exit code and one line on stderr. */
class Failure : public std::runtime_error {
  public:
    Failure(Exit exit, const std::string& what) : std::runtime_error(what), mExit(exit) {}
    Exit exit() const { return mExit; }

  private:
    Exit mExit;
};

/** The service must be there, or the command ends. */
void requireService();

/** The same, and from now on its notifications come to this process. */
void requireNotifications();

/**
 * The result of a function of the library.
 *
 * @param code what the function returned
 * @param what what was tried, for the message
 * @return code, when it is not negative
 */
int64_t check(int64_t code, const std::string& what);

/** Room for an answer of unknown length: zeroed, so that texts end. */
class Room {
  public:
    explicit Room(size_t size = 1 << 16) : mBytes(size) {}
    char* text() { return mBytes.data(); }
    void* data() { return mBytes.data(); }
    const char* text() const { return mBytes.data(); }

  private:
    std::vector<char> mBytes;
};

/** Prints rows in columns as wide as their longest cell; the first row is the head. */
void printTable(const std::vector<std::vector<std::string>>& rows);

/** Adds "--json" to a command. */
void addJson(Command* command, bool* json);

/** Prints the tree of commands as JSON, for the manual and the completion of shells. */
void printCommands(const CommandLine& app);

}  // namespace tool
