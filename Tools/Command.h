#pragma once

#include <CLI/CLI.hpp>
#include <functional>
#include <memory>

namespace quen {

/// The command line while it is put together. A sub-command adds itself with its options and, when
/// it is the one given, sets `run`, which then does the work and answers the exit status.
struct CommandLine {
    CLI::App& app;
    std::function<int()> run;
};

/// Makes a sub-command run a function of its options when it is the one given, and none of its own
/// sub-commands.
template <typename Options, typename Run> void runWhenGiven(CommandLine& line, CLI::App& command,
                                                            const std::shared_ptr<Options>& options,
                                                            Run run) {
    command.callback([&line, &command, options, run] {
        if (command.get_subcommands().empty()) {
            line.run = [options, run] { return run(*options); };
        }
    });
}

/// Exit statuses of every sub-command but `request`, which has its own.
enum ExitStatus : int {
    ExitSuccess = 0,
    /// The operation ended with an error.
    ExitFailure = 1,
    /// The command line was not understood.
    ExitUsage = 2,
    /// It was ended early, by the interrupt key or a signal that asks to end.
    ExitInterrupted = 130,
};

void addBlameCommand(CommandLine& line);
void addBranchCommand(CommandLine& line);
void addBranchesCommand(CommandLine& line);
void addCatCommand(CommandLine& line);
void addCommitCommand(CommandLine& line);
void addDiffCommand(CommandLine& line);
void addExportCommand(CommandLine& line);
void addIgnoreCommands(CommandLine& line);
void addInfoCommand(CommandLine& line);
void addListCommand(CommandLine& line);
void addLocalEditCommands(CommandLine& line);
void addLogCommand(CommandLine& line);
void addRequestCommand(CommandLine& line);
void addStatusCommand(CommandLine& line);
void addTourCommand(CommandLine& line);
void addTransferCommands(CommandLine& line);
void addTreeEditCommands(CommandLine& line);

} // namespace quen
