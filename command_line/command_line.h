#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <type_traits>
#include <vector>

namespace CLI {
class App;
class Option;
}  // namespace CLI

/**
 * The command line as the commands see it. It hides CLI11, whose headers cost a compiler several
 * seconds a file. All pointers are valid as long as the CommandLine.
 */
namespace tool {

/** An option or a positional argument. Every function returns the option itself. */
class Option {
  public:
    explicit Option(CLI::Option* option) : mOption(option) {}

    Option* required();
    /** Shows the variable's present value in the help. */
    Option* showDefault();
    Option* excludes(const Option* other);
    Option* needs(const Option* other);
    /** How many values it takes. */
    Option* expected(int minimum, int maximum);
    /** Accepts these words only. */
    Option* among(const std::vector<std::string>& words);
    /** Words that the completion of shells offers; others are accepted too. */
    Option* offer(const std::vector<std::string>& words);
    /**
     * The completion of shells offers what a command of the tool prints in its first column, below
     * the head.
     *
     * @param command its words; $word is what is typed so far
     */
    Option* offerFrom(const std::string& command);
    /** Accepts numbers from `lowest` to `highest` only. */
    template <class T>
    Option* between(T lowest, T highest) {
        if constexpr (std::is_floating_point_v<T>) {
            return betweenReals(lowest, highest);
        } else {
            return betweenIntegers(static_cast<int64_t>(lowest), static_cast<int64_t>(highest));
        }
    }
    Option* notNegative();

    /** Whether it was given. */
    bool given() const;

    const std::vector<std::string>& offered() const { return mOffered; }
    const std::string& offeredFrom() const { return mOfferedFrom; }

  private:
    Option* betweenIntegers(int64_t lowest, int64_t highest);
    Option* betweenReals(double lowest, double highest);

    friend class Command;

    CLI::Option* mOption;
    std::vector<std::string> mOffered;
    std::string mOfferedFrom;
};

struct CommandDescription;

/** A command, with options and with commands below it. */
class Command {
  public:
    explicit Command(CLI::App* app);
    virtual ~Command();
    Command(const Command&) = delete;
    Command& operator=(const Command&) = delete;

    Command* addCommand(const std::string& name, const std::string& help);

    /**
     * Adds an option ("--name") or a positional argument ("name").
     *
     * @param value [out] where its value goes, which has to outlive the command line: a bool, a
     *              number of 32 or 64 bits, an optional uint32_t, a double, a std::string, or a
     *              vector of strings or 32-bit numbers; command_line.cpp lists the types
     */
    template <class T>
    Option* addOption(const std::string& name, T& value, const std::string& help);
    /** Adds an option without a value. */
    Option* addFlag(const std::string& name, bool& value, const std::string& help);

    /** One of the commands below it has to be given. */
    void requireCommand();
    /** What runs when the command is given. */
    void callback(std::function<void()> run);

    CommandDescription describe() const;

  private:
    CLI::App* mApp;
    std::vector<std::unique_ptr<Command>> mCommands;
    std::vector<std::unique_ptr<Option>> mOptions;
};

/** An option for the manual and the completion of shells. */
struct OptionDescription {
    std::string names;
    bool positional;
    bool takesValue;
    bool many;
    bool required;
    std::string defaultValue;
    std::string text;
    std::vector<std::string> offered;
    std::string offeredFrom;
};

/** A command for the manual and the completion of shells. */
struct CommandDescription {
    std::string name;
    std::string text;
    std::string footer;
    std::vector<OptionDescription> options;
    std::vector<CommandDescription> commands;
};

/** The whole command line. */
class CommandLine : public Command {
  public:
    CommandLine(const std::string& name, const std::string& help, const std::string& footer,
                const std::string& version);
    ~CommandLine() override;

    /** What runs when the words are read, before the command itself. */
    void beforeCommand(std::function<void()> run);
    /**
     * Reads the words and runs the command. Usage errors and help go to stderr and stdout.
     *
     * @return whether there was no usage error
     */
    bool run(int argc, char** argv);

  private:
    explicit CommandLine(std::unique_ptr<CLI::App> root);
    /** Whether the words name a command; prints what is wrong with them otherwise. */
    bool knowsCommands(int argc, char** argv) const;

    std::unique_ptr<CLI::App> mRoot;
};

}  // namespace tool
