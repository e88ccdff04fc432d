#pragma once

#include "Foundation/Value.h"
#include "Tools/Commands/CommandLine/CommandText.h"

namespace quen::tools {

/// A command as it is told to scripts: names, help, options, arguments and the commands below it,
/// hidden ones left out.
Dictionary commandRecord(const CommandText& command);

} // namespace quen::tools
