#include "Tools/Commands/CommandLine/CommandLine.h"

#include "Tools/Commands/CommandLine/Arguments.h"

#include <CLI/CLI.hpp>
#include <algorithm>

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

int CommandLine::run(const std::vector<std::string>& words) {
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
