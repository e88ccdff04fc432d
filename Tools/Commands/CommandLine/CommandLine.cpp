#include "Tools/Commands/CommandLine/CommandLine.h"

#include "Tools/Commands/CommandLine/Arguments.h"
#include "Tools/Commands/CommandLine/Suggestion.h"
#include "Tools/Terminal/SafeText.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <iostream>

namespace quen::tools {

CommandLine::CommandLine()
    : app_(std::make_unique<CLI::App>(
          "Subversion for people, scripts and editors, through a source-control plug-in.",
          "quen")) {
    app_->require_subcommand(1);
}

CommandLine::~CommandLine() = default;

Subcommand CommandLine::add(const std::string& name, const std::string& help) {
    return {*this, *app_->add_subcommand(name, help)};
}

int CommandLine::tellUnknown(const std::string& word) const {
    std::vector<std::string> names;
    for (const CLI::App* const command :
         app_->get_subcommands([](const CLI::App*) { return true; })) {
        names.push_back(command->get_name());
    }
    const std::string meant = nearestName(word, names);
    std::cerr << "quen: \"" << printable(word) << "\" is not a command."
              << (meant.empty() ? "" : " Did you mean \"" + meant + "\"?")
              << " `quen --help` lists them all.\n";
    return ExitUsage;
}

int CommandLine::run(const std::vector<std::string>& words) {
    const auto isNamed = [&](const CLI::App* command) { return command->get_name() == words[0]; };
    if (!words.empty() && !words[0].starts_with('-') && app_->get_subcommands(isNamed).empty()) {
        return tellUnknown(words[0]);
    }
    try {
        auto arguments = parserArguments(*app_, words);
        // The parser takes them from the end.
        std::reverse(arguments.begin(), arguments.end());
        app_->parse(std::move(arguments));
    } catch (const CLI::ParseError& error) {
        return app_->exit(error) == 0 ? ExitSuccess : usageStatus();
    }
    return action_();
}

int CommandLine::usageStatus() const {
    const auto given = app_->get_subcommands();
    const auto status = given.empty() ? usageStatuses_.end() : usageStatuses_.find(given.front());
    return status == usageStatuses_.end() ? ExitUsage : status->second;
}

} // namespace quen::tools
