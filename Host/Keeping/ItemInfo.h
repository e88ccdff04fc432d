#pragma once

#include "Host/ClientCommand.h"
#include "Host/Facts/InfoFacts.h"

#include <map>
#include <string>
#include <vector>

namespace quen {

/// What `svn info` says of items, by their absolute paths; those that it cannot tell of are
/// missing. The client prints what lies below its working directory relative to that.
std::map<std::string, InfoEntry> askItemInfo(const std::vector<std::string>& absolutePaths,
                                             const QueryRunner& run);

/// A path of the client's output as an absolute one; `directory` itself for `.`.
std::string absoluteClientPath(const String& path, const String& directory);

} // namespace quen
