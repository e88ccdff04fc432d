#include "Tools/Commands/CommandLine/CommandLine.h"

#include "Tools/Commands/CommandLine/Arguments.h"
#include "Tools/Commands/CommandLine/CommandRecords.h"
#include "Tools/Commands/CommandLine/CommandTable.h"
#include "Tools/Commands/CommandLine/HelpText.h"
#include "Tools/Commands/CommandLine/Suggestion.h"
#include "Tools/Commands/CommandLine/UsageProblem.h"
#include "Tools/Console/JsonOutput.h"
#include "Tools/Terminal/Columns.h"
#include "Tools/Terminal/SafeText.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <filesystem>
#include <iostream>
#include <system_error>
#include <utility>

namespace quen::tools {

namespace {

/// The words of the options that stand in place of a command, as the commands that they mean.
std::string commandMeant(const std::string& word) {
    if (word == "--help" || word == "-h") {
        return "help";
    }
    return word == "--version" ? "version" : word;
}

/// The innermost command that was given.
const CLI::App& commandGiven(const CLI::App& app) {
    const CLI::App* command = &app;
    while (!command->get_subcommands().empty()) {
        command = command->get_subcommands().front();
    }
    return *command;
}

/// `branch create`; the program's own name is left out.
std::string nameOf(const CLI::App& command) {
    const CLI::App* const parent = command.get_parent();
    const bool isNested = parent != nullptr && parent->get_parent() != nullptr;
    return parent == nullptr ? "" : (isNested ? nameOf(*parent) + " " : "") + command.get_name();
}

} // namespace

std::size_t indexOfCommand(const std::vector<std::string>& words) {
    std::size_t index = 0;
    while (index + 1 < words.size() && words[index] == "-C") {
        index += 2;
    }
    return std::min(index, words.size());
}

CommandLine::CommandLine()
    : app_(std::make_unique<CLI::App>(
          "Subversion for people, scripts and editors, through a source-control plug-in.",
          "quen")) {
    app_->require_subcommand(1);
    app_->set_help_flag("-h,--help", "Show this help");
    app_->get_option("--help")->group(generalOptions);
}

CommandLine::~CommandLine() = default;

Subcommand CommandLine::add(const std::string& name, const std::string& help) {
    CLI::App* const command = app_->add_subcommand(name, help);
    command->get_help_ptr()->group(generalOptions);
    return {*this, *command};
}

void CommandLine::addPlain(const CommandText& shown, std::function<int(const Words& words)> run) {
    plain_.push_back({shown, std::move(run)});
}

CommandText CommandLine::text() const {
    CommandText text = textOf(*app_, "quen");
    for (const Plain& plain : plain_) {
        CommandText shown = plain.text;
        const CommandPlace place = placeOf(shown.name);
        shown.group = place.group;
        shown.aliases = place.aliases;
        text.commands.push_back(std::move(shown));
    }
    return text;
}

int CommandLine::tellProblem(const std::string& problem) const {
    const CLI::App& command = commandGiven(*app_);
    const std::string name = nameOf(command);
    std::cerr << "quen" << (name.empty() ? "" : " ") << name << ": " << problem << " `quen help"
              << (name.empty() ? "" : " ") << name << "` shows how to use it.\n";
    return usageStatus(command);
}

int CommandLine::tellUnknown(const std::string& word) const {
    std::vector<std::string> names;
    for (const CommandText& command : text().commands) {
        if (!command.isHidden) {
            names.push_back(command.name);
        }
    }
    const std::string meant = nearestName(word, names);
    std::cerr << "quen: \"" << printable(word) << "\" is not a command."
              << (meant.empty() ? "" : " Did you mean \"" + meant + "\"?")
              << " `quen help` lists all commands.\n";
    return ExitUsage;
}

int CommandLine::showHelp(const Words& words) const {
    const CommandText program = text();
    const CommandText* command = &program;
    const bool isForScripts = std::find(words.begin(), words.end(), "--json") != words.end();
    for (const std::string& word : words) {
        if (word == "--json") {
            continue;
        }
        command = command->find(word);
        if (command == nullptr) {
            return tellUnknown(word);
        }
    }
    if (isForScripts) {
        std::cout << jsonText(commandRecord(*command)) << '\n';
        return ExitSuccess;
    }
    const std::size_t width = outputColumns();
    std::cout << (words.empty() ? overviewOf(program, width) : helpOf(*command, width));
    return ExitSuccess;
}

int CommandLine::run(const Words& words) {
    const std::size_t start = indexOfCommand(words);
    for (std::size_t i = 1; i < start; i += 2) {
        std::error_code error;
        std::filesystem::current_path(words[i], error);
        if (error) {
            std::cerr << "quen: Cannot change to the directory \"" << printable(words[i])
                      << "\": " << error.message() << ".\n";
            return ExitUsage;
        }
    }
    if (start == words.size()) {
        std::cerr << overviewOf(text(), outputColumns());
        return ExitUsage;
    }
    return runCommand({words.begin() + static_cast<std::ptrdiff_t>(start), words.end()});
}

int CommandLine::runCommand(Words words) {
    words[0] = commandMeant(words[0]);
    const CommandText program = text();
    const CommandText* const command = program.find(words[0]);
    if (command == nullptr) {
        if (words[0].starts_with('-')) {
            return tellProblem("Unknown option: " + printable(words[0]) + ".");
        }
        return tellUnknown(words[0]);
    }
    words[0] = command->name;
    const auto plain = std::find_if(plain_.begin(), plain_.end(), [&](const Plain& each) {
        return each.text.name == command->name;
    });
    if (command->name == "help") {
        return showHelp({words.begin() + 1, words.end()});
    }
    return plain == plain_.end() ? parse(words) : plain->run({words.begin() + 1, words.end()});
}

int CommandLine::parse(const Words& words) {
    ParserArguments arguments = parserArguments(*app_, words);
    try {
        // The parser takes them from the end.
        std::reverse(arguments.words.begin(), arguments.words.end());
        app_->parse(std::move(arguments.words));
    } catch (const CLI::CallForHelp&) {
        std::cout << helpOf(textOf(commandGiven(*app_), nameOf(commandGiven(*app_))),
                            outputColumns());
        return ExitSuccess;
    } catch (const CLI::ParseError& error) {
        return tellProblem(usageProblem(error, commandGiven(*app_)));
    }
    if (!arguments.unknownOption.empty()) {
        return tellProblem(unknownOption(arguments.unknownOption, commandGiven(*app_)));
    }
    return action_();
}

int CommandLine::usageStatus(const CLI::App& command) const {
    const auto status = usageStatuses_.find(&command);
    return status == usageStatuses_.end() ? ExitUsage : status->second;
}

} // namespace quen::tools
