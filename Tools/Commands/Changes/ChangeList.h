#pragma once

#include "QuenFoundation/QuenSourceControlStatus.h"
#include "Tools/Commands/Places/SourceTreeFinder.h"

#include <cstdint>
#include <string>
#include <vector>

namespace quen::tools {

/// What a commit sends.
constexpr std::uint32_t committedChanges =
    QuenSourceControlStatusAdded | QuenSourceControlStatusAddedWithHistory |
    QuenSourceControlStatusDeleted | QuenSourceControlStatusReplaced |
    QuenSourceControlStatusModified | QuenSourceControlStatusPropertiesModified |
    QuenSourceControlStatusConflicted | QuenSourceControlStatusPropertiesConflicted;

/// The items at and below the paths whose status has one of the flags, a line each in aligned
/// columns: `modified  src/a.c`. Explained where the client does not tell the status.
Outcome<std::vector<std::string>> linesOfChanges(Session& session, const SourceTree& source,
                                                 const std::vector<std::string>& paths,
                                                 std::uint32_t flags);

} // namespace quen::tools
