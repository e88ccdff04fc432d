#pragma once

#include "Tools/Commands/CommandLine/CommandText.h"

#include <cstddef>
#include <string>

namespace quen::tools {

/// The help of one command, in lines of at most `width` cells.
std::string helpOf(const CommandText& command, std::size_t width);

/// The list of all commands.
std::string overviewOf(const CommandText& program, std::size_t width);

/// The names of an option and its value: `-r, --revision REV`.
std::string shownOption(const OptionText& option);

} // namespace quen::tools
