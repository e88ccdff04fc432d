#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace CLI {
class App;
class Option;
} // namespace CLI

namespace quen::tools {

/// An option as it is told to people: `-r, --revision REV  Revision to update to`.
struct OptionText {
    /// `-r`; empty where there is none.
    std::string shortName;
    /// `--revision`; empty where there is none. `alias` is a second long name.
    std::string longName;
    std::string alias;
    /// `REV`, or the words to choose from with bars between; empty for a flag.
    std::string value;
    std::string help;
    /// Every command has it.
    bool isGeneral = false;

    bool takesValue() const { return !value.empty(); }
    /// The words to choose from; empty where anything may be given.
    std::vector<std::string> choices() const;
};

struct ArgumentText {
    std::string name;
    std::string help;
    bool isRequired = false;
    bool isRepeated = false;
};

/// A command as it is told to people: the one description that help, manual pages and completion
/// are made from.
struct CommandText {
    /// `branch create`; that of the program is `quen`.
    std::string name;
    std::string help;
    /// Further paragraphs; may be empty.
    std::string details;
    /// The heading that it stands under in the list of commands.
    std::string group;
    std::vector<std::string> aliases;
    bool isHidden = false;
    std::vector<OptionText> options;
    std::vector<ArgumentText> arguments;
    std::vector<CommandText> commands;

    /// The command of this one with a name, which may be an alias; null for none.
    const CommandText* find(std::string_view word) const;
    /// The option with a name as it is typed, `-r` or `--revision`; null for none.
    const OptionText* option(std::string_view word) const;
    /// `quen log [OPTION...] [PATH]`.
    std::string usage() const;
};

/// The group of the options that every command has.
extern const char* const generalOptions;

/// What a value is called in the help: `REV`, `N`, `FILE`; empty for a flag.
std::string valueNameOf(const CLI::Option& option);

/// Reads the description of a command and its sub-commands from the parser.
CommandText textOf(const CLI::App& command, const std::string& name);

} // namespace quen::tools
