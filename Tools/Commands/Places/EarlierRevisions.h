#pragma once

#include "Tools/Commands/Places/RevisionArguments.h"
#include "Tools/Commands/Places/SourceTreeFinder.h"

#include <string>

namespace quen::tools {

/// The revisions with each `REV~N` replaced by the revision of the Nth change before REV, of the
/// item at a path, a URL or `^/NAME`; every other one stays as it is. The change at REV itself is
/// the last one up to it, so that `HEAD~1` is what an item was before it was changed last. With
/// `pegs` the location names what was there in REV.
///
/// Asks the client once for each that is replaced. Explained where there is no earlier change.
Outcome<RevisionRange> resolveRevisions(Session& session, const SourceTree& source,
                                        const std::string& location, RevisionRange revisions,
                                        bool pegs = false);

} // namespace quen::tools
