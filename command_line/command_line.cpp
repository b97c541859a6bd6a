#include "command_line.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <cstdio>
#include <optional>
#include <type_traits>
#include <utility>

#include "printable.h"
#include "suggestion.h"

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
    return offer(words);
}

Option* Option::offer(const std::vector<std::string>& words) {
    mOffered = words;
    return this;
}

Option* Option::offerFrom(const std::string& command) {
    mOfferedFrom = command;
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
    if constexpr (std::is_same_v<T, bool>) mOptions.back()->offer({"on", "off"});
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

void Command::callback(std::function<void()> run) {
    mApp->callback(std::move(run));
}

CommandLine::CommandLine(const std::string& name, const std::string& help,
                         const std::string& footer, const std::string& version)
        : CommandLine(std::make_unique<CLI::App>(help, name)) {
    mRoot->footer(footer);
    mRoot->set_version_flag("--version", name + " " + version, "Print the version, and exit");
}

CommandLine::CommandLine(std::unique_ptr<CLI::App> root)
        : Command(root.get()), mRoot(std::move(root)) {}

CommandLine::~CommandLine() = default;

void CommandLine::beforeCommand(std::function<void()> run) {
    mRoot->parse_complete_callback(std::move(run));
}

bool CommandLine::knowsCommands(int argc, char** argv) const {
    const CLI::App* app = mRoot.get();
    std::string path;
    for (int i = 1; i < argc; ++i) {
        const std::string word = argv[i];
        const auto commands = app->get_subcommands(nullptr);
        if (commands.empty()) return true;
        if (word == "-h" || word == "--help" || word == "--version") return true;
        // Options of commands that have commands below them take no values.
        if (!word.empty() && word[0] == '-') continue;
        const auto found =
                std::find_if(commands.begin(), commands.end(),
                             [&](const CLI::App* each) { return each->get_name() == word; });
        if (found == commands.end()) {
            std::vector<std::string> names;
            for (const CLI::App* each : commands) names.push_back(each->get_name());
            fprintf(stderr, "%s: there is no command \"%s%s\"%s\n", mRoot->get_name().c_str(),
                    path.c_str(), printable(word).c_str(), suggestion(word, names).c_str());
            return false;
        }
        app = *found;
        path += word + " ";
    }
    const auto commands = app->get_subcommands(nullptr);
    if (commands.empty()) return true;
    fprintf(stderr, "%s takes one of these commands:\n",
            (mRoot->get_name() + " " + path.substr(0, path.size() - !path.empty())).c_str());
    for (const CLI::App* each : commands) {
        fprintf(stderr, "  %-14s %s\n", each->get_name().c_str(), each->get_description().c_str());
    }
    return false;
}

bool CommandLine::run(int argc, char** argv) {
    if (!knowsCommands(argc, argv)) return false;
    try {
        mRoot->parse(argc, argv);
        return true;
    } catch (const CLI::ParseError& e) {
        return mRoot->exit(e) == 0;
    }
}

CommandDescription Command::describe() const {
    CommandDescription description{
            mApp->get_name(), mApp->get_description(), mApp->get_footer(), {}, {}};
    for (const CLI::Option* option : mApp->get_options()) {
        // CLI11 hides options that are in no group.
        if (option->get_group().empty()) continue;
        const auto own = std::find_if(mOptions.begin(), mOptions.end(),
                                      [&](const auto& each) { return each->mOption == option; });
        OptionDescription described{option->get_name(false, true),
                                    option->get_positional(),
                                    option->get_items_expected_max() > 0,
                                    option->get_items_expected_max() > 1,
                                    option->get_required(),
                                    option->get_default_str(),
                                    option->get_description(),
                                    {},
                                    ""};
        if (own != mOptions.end()) {
            described.offered = (*own)->offered();
            described.offeredFrom = (*own)->offeredFrom();
        }
        description.options.push_back(described);
    }
    for (const auto& command : mCommands) description.commands.push_back(command->describe());
    return description;
}

}  // namespace tool
