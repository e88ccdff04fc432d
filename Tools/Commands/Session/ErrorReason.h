#pragma once

#include "Tools/Commands/Session/ErrorFacts.h"

#include <string>
#include <string_view>
#include <vector>

namespace quen::tools {

/// Why something failed, a line each: in the client's words, with paths and URLs as they were
/// typed, or in better ones where the disk shows the reason. Never empty.
std::vector<std::string> reasonForPerson(const Error& error, const ErrorFacts& facts);

bool anyLineHas(const std::vector<std::string>& lines, std::string_view text);

/// `"nots.txt" does not exist. Did you mean "notes.txt"?`
std::string sentenceOnMissingPath(const std::string& path);

} // namespace quen::tools
