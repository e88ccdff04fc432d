#pragma once

#include "Tools/Terminal/ExitStatus.h"

#include <functional>
#include <memory>

namespace CLI {
class App;
}

namespace quen::tools {

/// The command line while it is put together. A sub-command adds itself with its options and, when
/// it is the one given, sets `run`, which then does the work and answers the exit status.
struct CommandLine {
    CLI::App& app;
    std::function<int()> run;
};

/// Makes a sub-command run when it is the one given, and none of its own sub-commands.
void runWhenGiven(CommandLine& line, CLI::App& command, std::function<int()> run);

/// Likewise, a function of its options.
template <typename Options> void runWhenGiven(CommandLine& line, CLI::App& command,
                                              const std::shared_ptr<Options>& options,
                                              int (*run)(const Options&)) {
    runWhenGiven(line, command, [options, run] { return run(*options); });
}

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

} // namespace quen::tools
