#pragma once

#include <string>
#include <vector>

namespace quen {

/// What a module leaves open for its host that no library or program in this process shows it, by
/// the names that people read, in alphabetical order. Empty where nothing is missing, and where the
/// file is not a module that can be read.
std::vector<std::string> missingSymbolsOf(const std::string& module);

} // namespace quen
