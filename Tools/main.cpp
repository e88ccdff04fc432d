#include "Tools/Commands/CommandLine/Arguments.h"
#include "Tools/Commands/CommandLine/CommandLine.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <csignal>
#include <exception>
#include <iostream>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace {

/// The command line was not understood. `request` keeps 2 for input that it cannot read.
int usageStatus(const CLI::App& app) {
    return app.got_subcommand("request") ? quen::tools::ExitFailure : quen::tools::ExitUsage;
}

int run(int argc, char** argv) {
    CLI::App app("Subversion for people, scripts and editors, through a source-control plug-in.",
                 "quen");
    app.require_subcommand(1);
    quen::tools::CommandLine line{app, {}};
    quen::tools::addStatusCommand(line);
    quen::tools::addDiffCommand(line);
    quen::tools::addLogCommand(line);
    quen::tools::addBlameCommand(line);
    quen::tools::addInfoCommand(line);
    quen::tools::addListCommand(line);
    quen::tools::addCatCommand(line);
    quen::tools::addExportCommand(line);
    quen::tools::addBranchCommand(line);
    quen::tools::addBranchesCommand(line);
    quen::tools::addCommitCommand(line);
    quen::tools::addLocalEditCommands(line);
    quen::tools::addTreeEditCommands(line);
    quen::tools::addTransferCommands(line);
    quen::tools::addIgnoreCommands(line);
    quen::tools::addTourCommand(line);
    quen::tools::addRequestCommand(line);
    try {
        auto words = quen::tools::parserArguments(app, {argv + std::min(argc, 1), argv + argc});
        // The parser takes them from the end.
        std::reverse(words.begin(), words.end());
        app.parse(std::move(words));
    } catch (const CLI::ParseError& error) {
        return app.exit(error) == 0 ? quen::tools::ExitSuccess : usageStatus(app);
    }
    return line.run();
}

} // namespace

int main(int argc, char** argv) {
    // A reader that goes away is an error of writing, not the end of the program.
    std::signal(SIGPIPE, SIG_IGN);
    try {
        return run(argc, argv);
    } catch (const std::exception& error) {
        std::cerr << "quen: " << error.what() << '\n';
        return quen::tools::ExitFailure;
    }
}
