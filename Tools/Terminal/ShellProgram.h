#pragma once

#include <string>
#include <sys/types.h>
#include <vector>

namespace quen::tools {

/// A shell's script in a program of its own, as a person's editor or pager is one: with the signals
/// as a program finds them at its start, whatever this one does with its own.
struct ShellProgram {
    std::string script;
    /// `$1` and so on.
    std::vector<std::string> arguments;
    /// What it reads as its standard input; -1 for this program's.
    int input = -1;
};

/// Starts it; -1 with errno where it cannot be started.
pid_t startShellProgram(const ShellProgram& program) noexcept;

/// Waits for its end; the status as waitpid answers it.
int waitForShellProgram(pid_t child) noexcept;

} // namespace quen::tools
