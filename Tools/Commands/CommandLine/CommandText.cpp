#include "Tools/Commands/CommandLine/CommandText.h"

#include "Tools/Commands/CommandLine/CommandTable.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <array>
#include <cctype>
#include <utility>

namespace quen::tools {

const char* const generalOptions = "General options";

namespace {

/// Values that go by another name than their option.
constexpr std::array<std::pair<std::string_view, std::string_view>, 8> valueNames{{
    {"username", "NAME"},
    {"plug-in", "FILE"},
    {"tools-directory", "DIR"},
    {"trunk", "URL"},
    {"branches", "URL"},
    {"from", "BRANCH"},
    {"log-level", "N"},
    {"limit", "N"},
}};

std::string inCapitals(std::string text) {
    std::transform(text.begin(), text.end(), text.begin(),
                   [](unsigned char c) { return static_cast<char>(std::toupper(c)); });
    return text;
}

/// The parser's own names of types say nothing to a person.
bool isNameOfType(const std::string& name) {
    return name.empty() || name == "TEXT" || name == "INT" || name == "UINT";
}

std::string firstOf(const std::vector<std::string>& names, const char* dashes) {
    return names.empty() ? std::string() : dashes + names.front();
}

OptionText optionText(const CLI::Option& option) {
    OptionText text;
    text.shortName = firstOf(option.get_snames(), "-");
    text.longName = firstOf(option.get_lnames(), "--");
    if (option.get_lnames().size() > 1) {
        text.alias = "--" + option.get_lnames()[1];
    }
    text.value = valueNameOf(option);
    text.help = option.get_description();
    text.isGeneral = option.get_group() == generalOptions;
    return text;
}

ArgumentText argumentText(const CLI::Option& option) {
    return {option.get_name(true), option.get_description(), option.get_required(),
            option.get_allow_extra_args()};
}

} // namespace

std::vector<std::string> OptionText::choices() const {
    std::vector<std::string> choices;
    if (value.find('|') == std::string::npos) {
        return choices;
    }
    for (std::string_view rest = value; !rest.empty();) {
        const std::size_t end = std::min(rest.find('|'), rest.size());
        choices.emplace_back(rest.substr(0, end));
        rest.remove_prefix(std::min(end + 1, rest.size()));
    }
    return choices;
}

const CommandText* CommandText::find(std::string_view word) const {
    const auto isMeant = [&](const CommandText& command) {
        const std::string_view own =
            std::string_view(command.name)
                .substr(name == "quen" ? 0 : std::min(name.size() + 1, command.name.size()));
        return own == word || std::find(command.aliases.begin(), command.aliases.end(), word) !=
                                  command.aliases.end();
    };
    const auto found = std::find_if(commands.begin(), commands.end(), isMeant);
    return found == commands.end() ? nullptr : &*found;
}

const OptionText* CommandText::option(std::string_view word) const {
    const auto found = std::find_if(options.begin(), options.end(), [&](const OptionText& option) {
        return word == option.shortName || word == option.longName || word == option.alias;
    });
    return word.empty() || found == options.end() ? nullptr : &*found;
}

std::string CommandText::usage() const {
    std::string text = "quen " + name + " [OPTION...]";
    for (const ArgumentText& argument : arguments) {
        const std::string shown = argument.name + (argument.isRepeated ? "..." : "");
        text.append(argument.isRequired ? " " : " [").append(shown);
        text.append(argument.isRequired ? "" : "]");
    }
    return text;
}

std::string valueNameOf(const CLI::Option& option) {
    if (option.get_items_expected_max() == 0) {
        return {};
    }
    const std::string type = option.get_type_name();
    if (!isNameOfType(type)) {
        return type;
    }
    const std::string name = option.get_lnames().empty() ? "value" : option.get_lnames().front();
    const auto known = std::find_if(valueNames.begin(), valueNames.end(),
                                    [&](const auto& each) { return each.first == name; });
    return known == valueNames.end() ? inCapitals(name) : std::string(known->second);
}

CommandText textOf(const CLI::App& command, const std::string& name) {
    CommandText text;
    text.name = name;
    text.help = command.get_description();
    text.details = command.get_footer();
    text.isHidden = command.get_group().empty();
    const CommandPlace place = placeOf(name);
    text.group = place.group;
    text.aliases = place.aliases;
    for (const CLI::Option* const option : command.get_options()) {
        if (option->get_positional()) {
            text.arguments.push_back(argumentText(*option));
        } else if (!option->get_group().empty()) {
            text.options.push_back(optionText(*option));
        }
    }
    for (const CLI::App* const each :
         command.get_subcommands([](const CLI::App*) { return true; })) {
        text.commands.push_back(
            textOf(*each, name == "quen" ? each->get_name() : name + " " + each->get_name()));
    }
    return text;
}

} // namespace quen::tools
