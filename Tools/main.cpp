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
    return app.got_subcommand("request") ? quen::ExitFailure : quen::ExitUsage;
}

int run(int argc, char** argv) {
    CLI::App app("Subversion for people, scripts and editors, through a source-control plug-in.",
                 "quen");
    app.require_subcommand(1);
    quen::CommandLine line{app, {}};
    quen::addStatusCommand(line);
    quen::addDiffCommand(line);
    quen::addLogCommand(line);
    quen::addBlameCommand(line);
    quen::addInfoCommand(line);
    quen::addListCommand(line);
    quen::addCatCommand(line);
    quen::addExportCommand(line);
    quen::addBranchCommand(line);
    quen::addBranchesCommand(line);
    quen::addCommitCommand(line);
    quen::addLocalEditCommands(line);
    quen::addTreeEditCommands(line);
    quen::addTransferCommands(line);
    quen::addIgnoreCommands(line);
    quen::addTourCommand(line);
    quen::addRequestCommand(line);
    try {
        auto words = quen::parserArguments(app, {argv + std::min(argc, 1), argv + argc});
        // The parser takes them from the end.
        std::reverse(words.begin(), words.end());
        app.parse(std::move(words));
    } catch (const CLI::ParseError& error) {
        return app.exit(error) == 0 ? quen::ExitSuccess : usageStatus(app);
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
        return quen::ExitFailure;
    }
}
