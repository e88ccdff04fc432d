#pragma once

#include "Foundation/Value.h"

#include <string>

namespace quen::tools {

/// Whether an error, or one that caused it, says that a working copy is in use, or that an earlier
/// write left it locked or unfinished (E155004, E155037, E200033).
bool saysLocked(const Error& error);

/// Whether the client left a lock at a path of a working copy, or at its top. Asks the client.
bool isLeftLocked(const std::string& path);

/// The command that cleans up the working copy that a path lies in; empty where it lies in none.
/// Left to the person, who alone can know whether another client is at work there.
std::string cleanupCommandFor(const std::string& path);

} // namespace quen::tools
