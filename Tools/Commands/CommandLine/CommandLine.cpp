#include "Tools/Commands/CommandLine/CommandLine.h"

#include <CLI/CLI.hpp>
#include <utility>

namespace quen::tools {

void runWhenGiven(CommandLine& line, CLI::App& command, std::function<int()> run) {
    command.callback([&line, &command, run = std::move(run)] {
        if (command.get_subcommands().empty()) {
            line.run = run;
        }
    });
}

} // namespace quen::tools
