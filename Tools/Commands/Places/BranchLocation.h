#pragma once

#include "Host/Places/BranchNames.h"
#include "Tools/Commands/Places/SourceTreeFinder.h"

#include <string>
#include <string_view>

namespace quen::tools {

/// The branch that a person named. Behind `--` a word that begins with `-` has been given the form
/// of a path, `./-name`; as no branch can be named like that, the name is clear.
std::string branchNameSaid(const std::string& word);

/// What a person means by the branch to switch to, to merge or to copy: a URL or a place below the
/// repository's root (`^/NAME`) as it is, `trunk`, or the name of a branch. As the client must be
/// given it; explained where it cannot be found out.
Outcome<String> branchLocation(Session& session, const LayoutOptions& layout,
                               const std::string& place, const std::string& word);

} // namespace quen::tools
