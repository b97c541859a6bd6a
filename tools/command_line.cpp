#include "command_line.h"

#include <CLI/CLI.hpp>
#include <optional>
#include <utility>

namespace tool {

Option* Option::required() {
    mOption->required();
    return this;
}

Option* Option::showDefault() {
    mOption->capture_default_str();
    return this;
}

Option* Option::excludes(const Option* other) {
    mOption->excludes(other->mOption);
    return this;
}

Option* Option::needs(const Option* other) {
    mOption->needs(other->mOption);
    return this;
}

Option* Option::expected(int minimum, int maximum) {
    mOption->expected(minimum, maximum);
    return this;
}

Option* Option::among(const std::vector<std::string>& words) {
    mOption->check(CLI::IsMember(words));
    return this;
}

Option* Option::betweenIntegers(int64_t lowest, int64_t highest) {
    mOption->check(CLI::Range(lowest, highest));
    return this;
}

Option* Option::betweenReals(double lowest, double highest) {
    mOption->check(CLI::Range(lowest, highest));
    return this;
}

Option* Option::notNegative() {
    mOption->check(CLI::NonNegativeNumber);
    return this;
}

bool Option::given() const {
    return mOption->count() != 0;
}

Command::Command(CLI::App* app) : mApp(app) {}
Command::~Command() = default;

Command* Command::addCommand(const std::string& name, const std::string& help) {
    mCommands.push_back(std::make_unique<Command>(mApp->add_subcommand(name, help)));
    return mCommands.back().get();
}

template <class T>
Option* Command::addOption(const std::string& name, T& value, const std::string& help) {
    mOptions.push_back(std::make_unique<Option>(mApp->add_option(name, value, help)));
    return mOptions.back().get();
}

template Option* Command::addOption(const std::string&, bool&, const std::string&);
template Option* Command::addOption(const std::string&, int32_t&, const std::string&);
template Option* Command::addOption(const std::string&, uint32_t&, const std::string&);
template Option* Command::addOption(const std::string&, int64_t&, const std::string&);
template Option* Command::addOption(const std::string&, uint64_t&, const std::string&);
template Option* Command::addOption(const std::string&, std::optional<uint32_t>&,
                                    const std::string&);
template Option* Command::addOption(const std::string&, double&, const std::string&);
template Option* Command::addOption(const std::string&, std::string&, const std::string&);
template Option* Command::addOption(const std::string&, std::vector<std::string>&,
                                    const std::string&);
template Option* Command::addOption(const std::string&, std::vector<int32_t>&, const std::string&);

Option* Command::addFlag(const std::string& name, bool& value, const std::string& help) {
    mOptions.push_back(std::make_unique<Option>(mApp->add_flag(name, value, help)));
    return mOptions.back().get();
}

void Command::requireCommand() {
    mApp->require_subcommand(1);
}

void Command::allowOneCommand() {
    mApp->require_subcommand(0, 1);
}

bool Command::commandGiven() const {
    return !mApp->get_subcommands().empty();
}

void Command::callback(std::function<void()> run) {
    mApp->callback(std::move(run));
}

CommandLine::CommandLine(const std::string& name, const std::string& help,
                         const std::string& footer)
        : CommandLine(std::make_unique<CLI::App>(help, name)) {
    mRoot->footer(footer);
}

CommandLine::CommandLine(std::unique_ptr<CLI::App> root)
        : Command(root.get()), mRoot(std::move(root)) {}

CommandLine::~CommandLine() = default;

void CommandLine::beforeCommand(std::function<void()> run) {
    mRoot->parse_complete_callback(std::move(run));
}

bool CommandLine::run(int argc, char** argv) {
    try {
        mRoot->parse(argc, argv);
        return true;
    } catch (const CLI::ParseError& e) {
        return mRoot->exit(e) == 0;
    }
}

namespace {

// CLI11 hides options and commands that are in no group.
CommandDescription described(const CLI::App& app) {
    CommandDescription description{app.get_name(), app.get_description(), app.get_footer(), {}, {}};
    for (const CLI::Option* option : app.get_options()) {
        if (option->get_group().empty()) continue;
        description.options.push_back({option->get_name(false, true), option->get_positional(),
                                       option->get_items_expected_max() > 0,
                                       option->get_items_expected_max() > 1, option->get_required(),
                                       option->get_default_str(), option->get_description()});
    }
    for (const CLI::App* command : app.get_subcommands(nullptr)) {
        if (!command->get_group().empty()) description.commands.push_back(described(*command));
    }
    return description;
}

}  // namespace

CommandDescription CommandLine::describe() const {
    return described(*mRoot);
}

}  // namespace tool
