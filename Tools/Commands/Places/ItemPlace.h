#pragma once

#include "Host/Facts/InfoFacts.h"
#include "Host/Places/RepositoryLayout.h"

#include <optional>
#include <string>
#include <string_view>

namespace quen::tools {

/// What the client says of a path or URL; nothing where it says nothing, or fails.
std::optional<InfoEntry> infoOf(const std::string& location);

/// The branch that a URL lies on, as a person calls it: `trunk`, `stable`, or of a tag
/// `tag v1.0`; empty where it lies on none. Names of several parts are taken for their first one
/// unless the URL is that of the branch itself.
std::string branchNameOf(std::string_view url, const RepositoryLayout& layout);

} // namespace quen::tools
