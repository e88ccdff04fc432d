#pragma once

#include "Foundation/Value.h"

#include <string>

namespace quen::tools {

/// Whether an error, or one that caused it, says that a working copy is in use, or that an earlier
/// write left it locked or unfinished (E155004, E155037, E200033).
bool saysLocked(const Error& error);

/// The command that cleans up the working copy that a path lies in; empty where it lies in none.
/// The contract has no request for that, so it is left to the person.
std::string cleanupCommandFor(const std::string& path);

} // namespace quen::tools
