#pragma once

#include "Foundation/Value.h"
#include "Tools/Commands/Changes/ChangeOutput.h"

#include <cstddef>
#include <string>

namespace quen::tools {

/// `1 item`, `12 items`; `noun` is the plural but for its `s`.
std::string counted(std::size_t count, const std::string& noun);

/// With a capital at its beginning.
std::string capitalised(std::string text);

/// `Committed revision 12.`; nothing to commit where the client named no revision.
std::string committedSummary(const Value& result, const ChangeOutput& output);

} // namespace quen::tools
