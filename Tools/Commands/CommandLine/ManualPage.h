#pragma once

#include "Tools/Commands/CommandLine/CommandText.h"

#include <string>

namespace quen::tools {

/// The manual page of a command, in the language of `man`. `version` is the program's.
std::string manualPageOf(const CommandText& command, const std::string& version);

/// The manual page of the program, which lists the commands.
std::string manualOverviewOf(const CommandText& program, const std::string& version);

} // namespace quen::tools
