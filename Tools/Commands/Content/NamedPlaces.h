#pragma once

#include "Host/Facts/ListFacts.h"
#include "Tools/Commands/Places/SourceTreeFinder.h"

#include <string>
#include <vector>

namespace quen::tools {

/// What the directories hold, in the order of the directories; explained where the client fails.
/// The entry's `location` says which of them.
Outcome<std::vector<ListEntry>> entriesOf(Session& session, const SourceTree& source,
                                          const std::vector<std::string>& urls);

/// Branches or tags, a line each: `* stable  r12  alice  3 days ago`. The star stands before
/// `current`, and the column is there where it is not empty.
void printNamedPlaces(const std::vector<ListEntry>& places, const std::string& current,
                      const Palette& palette);

} // namespace quen::tools
