#include "Tools/Commands/CommandLine/HelpText.h"

#include "Tools/Commands/CommandLine/CommandTable.h"
#include "Tools/Terminal/Fitting.h"

#include <algorithm>
#include <string_view>
#include <utility>
#include <vector>

namespace quen::tools {

namespace {

/// A name and what is said of it.
using Row = std::pair<std::string, std::string>;

/// Wider names stand on a line of their own.
constexpr std::size_t widestName = 26;
constexpr std::size_t leastTextWidth = 20;

std::string section(const std::string& heading, const std::vector<Row>& rows, std::size_t width) {
    if (rows.empty()) {
        return {};
    }
    std::size_t column = 0;
    const std::size_t spared = leastTextWidth + 4;
    const std::size_t widest = std::min(widestName, width > spared ? width - spared : 0);
    for (const Row& row : rows) {
        column = row.first.size() <= widest ? std::max(column, row.first.size()) : column;
    }
    const std::size_t indent = 2 + column + 2;
    std::string text = "\n" + heading + ":\n";
    for (const auto& [name, help] : rows) {
        text.append("  ").append(name);
        if (name.size() <= column) {
            text.append(column - name.size() + 2, ' ');
        } else {
            text.append("\n").append(indent, ' ');
        }
        text.append(wrappedText(help, indent, width)).append("\n");
    }
    return text;
}

std::vector<Row> optionRows(const CommandText& command, bool areGeneral) {
    std::vector<Row> rows;
    for (const OptionText& option : command.options) {
        if (option.isGeneral == areGeneral) {
            rows.emplace_back(shownOption(option), option.help);
        }
    }
    return rows;
}

std::string withAliases(const CommandText& command) {
    std::string names = command.name;
    for (const std::string& alias : command.aliases) {
        names.append(", ").append(alias);
    }
    return names;
}

std::string aliasesOf(const CommandText& command) {
    return command.aliases.empty()
               ? std::string()
               : "\nAlso: " + withAliases(command).substr(command.name.size() + 2) + "\n";
}

/// Paragraphs with empty lines between, each wrapped.
std::string paragraphs(std::string_view text, std::size_t width) {
    std::string shown;
    while (!text.empty()) {
        const std::size_t end = std::min(text.find("\n\n"), text.size());
        std::string paragraph(text.substr(0, end));
        std::replace(paragraph.begin(), paragraph.end(), '\n', ' ');
        shown.append("\n").append(wrappedText(paragraph, 0, width)).append("\n");
        text.remove_prefix(std::min(end + 2, text.size()));
    }
    return shown;
}

} // namespace

std::string shownOption(const OptionText& option) {
    std::string text = option.shortName.empty() ? "    " : option.shortName;
    if (!option.longName.empty()) {
        text.append(option.shortName.empty() ? "" : ", ").append(option.longName);
    }
    return text.append(option.takesValue() ? " " : "").append(option.value);
}

std::string helpOf(const CommandText& command, std::size_t width) {
    std::string text = "Usage: " + wrappedText(command.usage(), 7, width) + "\n\n" +
                       wrappedText(command.help + ".", 0, width) + "\n" + aliasesOf(command);
    std::vector<Row> rows;
    for (const CommandText& each : command.commands) {
        rows.emplace_back(each.name, each.help);
    }
    text += section("Commands", rows, width);
    rows.clear();
    for (const ArgumentText& argument : command.arguments) {
        rows.emplace_back(argument.name, argument.help);
    }
    text += section("Arguments", rows, width);
    text += section("Options", optionRows(command, false), width);
    text += section(generalOptions, optionRows(command, true), width);
    return text + paragraphs(command.details, width);
}

std::string overviewOf(const CommandText& program, std::size_t width) {
    std::string text =
        "Usage: " + wrappedText("quen [-C DIR] COMMAND [OPTION...] [ARGUMENT...]", 7, width) +
        "\n\n" + wrappedText(program.help, 0, width) + "\n";
    for (const std::string& group : commandGroups()) {
        std::vector<Row> rows;
        for (const CommandText& command : program.commands) {
            if (command.group == group && !command.isHidden) {
                rows.emplace_back(withAliases(command), command.help);
            }
        }
        text += section(group, rows, width);
    }
    text += section("Options",
                    {{"-C DIR", "Run as if started in DIR"},
                     {"--version", "Show the versions of quen, the plug-in contract and svn"},
                     {"-h, --help", "Show this help"}},
                    width);
    return text + "\n" +
           wrappedText("`quen help COMMAND` describes a command, `man quen-COMMAND` likewise.", 0,
                       width) +
           "\n";
}

} // namespace quen::tools
