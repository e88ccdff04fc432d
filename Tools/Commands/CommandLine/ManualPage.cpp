#include "Tools/Commands/CommandLine/ManualPage.h"

#include "Tools/Commands/CommandLine/CommandTable.h"

#include <algorithm>
#include <string_view>

namespace quen::tools {

namespace {

/// A text as it stands: nothing of it is taken for a request of the page's language.
std::string plain(std::string_view text) {
    std::string escaped;
    bool isAtStart = true;
    for (const char c : text) {
        if (isAtStart && (c == '.' || c == '\'')) {
            escaped += "\\&";
        }
        if (c == '\\') {
            escaped += "\\e";
        } else {
            escaped.append(c == '-' ? "\\" : "").push_back(c);
        }
        isAtStart = c == '\n';
    }
    return escaped;
}

std::string nameOfPage(const CommandText& command) {
    std::string name = command.name == "quen" ? "quen" : "quen " + command.name;
    std::replace(name.begin(), name.end(), ' ', '-');
    return name;
}

std::string heading(const CommandText& command, const std::string& version) {
    std::string name = nameOfPage(command);
    std::transform(name.begin(), name.end(), name.begin(),
                   [](unsigned char c) { return static_cast<char>(std::toupper(c)); });
    std::string help = command.help;
    if (help.ends_with('.')) {
        help.pop_back();
    }
    return ".TH " + plain(name) + " 1 \"\" \"quen " + plain(version) + "\" \"quen\"\n.SH NAME\n" +
           plain(nameOfPage(command)) + " \\- " + plain(help) + "\n";
}

std::string item(const std::string& term, const std::string& text) {
    return ".TP\n\\fB" + plain(term) + "\\fR\n" + plain(text) + "\n";
}

std::string namesOf(const OptionText& option) {
    std::string names = option.shortName;
    names.append(names.empty() || option.longName.empty() ? "" : ", ").append(option.longName);
    return names.append(option.takesValue() ? " " : "").append(option.value);
}

std::string optionItems(const CommandText& command, bool areGeneral) {
    std::string text;
    for (const OptionText& option : command.options) {
        if (option.isGeneral == areGeneral) {
            text += item(namesOf(option), option.help + ".");
        }
    }
    return text;
}

std::string section(const char* title, const std::string& content) {
    return content.empty() ? std::string() : ".SH " + std::string(title) + "\n" + content;
}

/// The last sections of every page.
std::string ending() {
    return ".SH EXIT STATUS\n" + item("0", "Done; all output was written.") +
           item("1", "An error, with a message on standard error.") +
           item("2", "The command line was not understood.") + item("130", "Interrupted.") +
           ".SH SEE ALSO\n.BR quen (1),\n.BR svn (1)\n";
}

} // namespace

std::string manualPageOf(const CommandText& command, const std::string& version) {
    std::string text = heading(command, version);
    text += section("SYNOPSIS", plain(command.usage()) + "\n");
    std::string about = plain(command.help) + ".\n";
    for (const std::string& alias : command.aliases) {
        about.append(alias == command.aliases.front() ? ".PP\nAlso: " : ", ").append(plain(alias));
    }
    about += command.aliases.empty() ? "" : "\n";
    if (!command.details.empty()) {
        about.append(".PP\n.nf\n").append(plain(command.details)).append("\n.fi\n");
    }
    text += section("DESCRIPTION", about);
    std::string commands;
    for (const CommandText& each : command.commands) {
        commands += item(each.usage(), each.help + ".");
    }
    text += section("COMMANDS", commands);
    std::string arguments;
    for (const ArgumentText& argument : command.arguments) {
        arguments += item(argument.name, argument.help + ".");
    }
    text += section("ARGUMENTS", arguments);
    text += section("OPTIONS", optionItems(command, false));
    text += section("GENERAL OPTIONS", optionItems(command, true));
    return text + ending();
}

std::string manualOverviewOf(const CommandText& program, const std::string& version) {
    std::string text = heading(program, version);
    text += section("SYNOPSIS", plain("quen [-C DIR] COMMAND [OPTION...] [ARGUMENT...]") + "\n");
    text += section("DESCRIPTION", plain(program.help) + "\n");
    for (const std::string& group : commandGroups()) {
        std::string items;
        for (const CommandText& command : program.commands) {
            if (command.group == group && !command.isHidden) {
                items += item(command.name, command.help + ".");
            }
        }
        text += section(group.c_str(), items);
    }
    text +=
        section("OPTIONS",
                item("-C DIR", "Run as if started in DIR.") +
                    item("--version", "Show the versions of quen, the plug-in contract and svn.") +
                    item("-h, --help", "Show the list of commands."));
    text += section("ENVIRONMENT",
                    item("QUEN_PAGER, PAGER", "What shows long output on a terminal.") +
                        item("SVN_EDITOR, VISUAL, EDITOR", "The editor for log messages.") +
                        item("NO_COLOR", "No colors if set."));
    return text + ending();
}

} // namespace quen::tools
