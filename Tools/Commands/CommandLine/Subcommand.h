#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace CLI {
class App;
class Option;
} // namespace CLI

namespace quen::tools {

class CommandLine;

/// What is wrong with a word of the command line, as a sentence; empty where it is right.
using WordCheck = std::function<std::string(const std::string& word)>;

/// An option or an argument of a sub-command. A handle: copies are about the same one.
class Parameter {
public:
    explicit Parameter(CLI::Option& option) noexcept : option_(&option) {}

    Parameter& required();
    /// `kind` is shown in the help for the value, such as `N`.
    Parameter& checked(WordCheck check, const std::string& kind = {});
    /// What the value is called in the help: `BRANCH`. By default the option's own name in
    /// capitals.
    Parameter& named(const std::string& kind);
    Parameter& oneOf(const std::vector<std::string>& values);
    /// Given once or several times; only for an option that is read word by word.
    Parameter& repeatable();
    /// One of the options that every command has.
    Parameter& general();
    /// Given only together with the other one.
    Parameter& needs(const Parameter& other);
    /// Never given together with the other one.
    Parameter& excludes(const Parameter& other);

private:
    CLI::Option* option_;
};

/// A sub-command while it is declared: which options and arguments it has, and what it does. What
/// they are read into must live until the command has run. A handle, like Parameter.
///
/// Names of options are written as in `-r,--revision`. An argument has the name that the help shows
/// for it, such as `PATH`; its default value is what the member holds beforehand.
class Subcommand {
public:
    Subcommand(CommandLine& line, CLI::App& app) noexcept : line_(&line), app_(&app) {}

    /// As it is typed: `status`, `branch create`.
    std::string name() const;

    Parameter flag(const std::string& names, bool& isGiven, const std::string& help);
    Parameter option(const std::string& names, std::string& value, const std::string& help);
    Parameter option(const std::string& names, std::optional<std::string>& value,
                     const std::string& help);
    Parameter option(const std::string& names, std::int64_t& value, const std::string& help);
    Parameter option(const std::string& names, std::uint32_t& value, const std::string& help);
    /// A value that `read` takes, or complains about. `kind` is shown for it in the help.
    Parameter option(const std::string& names, const std::string& kind, WordCheck read,
                     const std::string& help);

    Parameter argument(const std::string& name, std::string& value, const std::string& help);
    /// One or more.
    Parameter arguments(const std::string& name, std::vector<std::string>& values,
                        const std::string& help);

    /// Further paragraphs for the help, below the options.
    void details(const std::string& text);
    /// Leaves it out of the list of commands.
    void hide();

    /// A sub-command of this one, which is then run in its place.
    Subcommand subcommand(const std::string& name, const std::string& help);

    /// What the sub-command does when it is the one given; answers the exit status.
    void run(std::function<int()> action);

    /// The exit status for a command line of this sub-command that is not understood. Default:
    /// ExitUsage.
    void setUsageStatus(int status);

private:
    CommandLine* line_;
    CLI::App* app_;
};

} // namespace quen::tools
