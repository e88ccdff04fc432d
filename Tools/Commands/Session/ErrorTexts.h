#pragma once

#include "Foundation/Value.h"

#include <string>
#include <vector>

namespace quen::tools {

/// The error, the errors that caused it, those that caused them, and so on.
std::vector<Error> withUnderlyingErrors(const Error& error);

/// The error's texts, then those of the errors that caused it: descriptions and suggestions, each
/// once. An error that says nothing at all is named by domain and code.
std::vector<std::string> linesOfError(const Error& error);

} // namespace quen::tools
