#pragma once

#include "Foundation/String.h"
#include "Host/ToolRunner.h"

#include <string_view>

namespace quen {

/// A variable's value as a child sees it, which the host's own environment and these changes make;
/// nil where it sees none.
String variableOf(const EnvironmentChanges& changes, const char* name);

/// The first directory of a list with colons that holds an executable `svn`; `/usr/bin` where none
/// does.
String directoryOfClient(std::string_view path);

} // namespace quen
