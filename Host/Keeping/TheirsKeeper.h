#pragma once

#include "Foundation/Export.h"
#include "Host/ClientCommand.h"
#include "Host/Facts/ChangeFacts.h"

#include <cstdint>
#include <optional>
#include <vector>

namespace quen {

/// An item in which the client decided for what was here.
struct KeptTheirs {
    /// What was settled, by the path of the facts.
    ConflictFacts conflict;
    /// The revision of what came in; absent where it could not be told.
    std::optional<std::int64_t> revision;
    /// The file beside that holds what came in, absolute; nil where there is none: nothing but
    /// properties or a tree was settled, or `error` says why.
    String theirs;
    /// Likewise the file with all properties that came in, as the client lists them
    /// (`svn proplist -v`); nil where no property was settled.
    String theirsProperties;
    Error error;
};

/// Keeps what came in where the client decided against it: for each file whose text was settled,
/// its incoming content goes beside it as `NAME.theirs.rN`, byte for byte as the client would have
/// written it to the working copy (keywords and line ends translated). No file is overwritten: a
/// taken name gets `.2`, `.3`, .. behind it.
///
/// Call it after the run, whether it succeeded or not: what was settled before a failure counts.
/// `directory` is the one that relative paths of the facts are relative to: the client's working
/// directory. One answer for each item with something settled, in the order of the facts.
///
/// It runs the client: once for all revisions, and once for each file that is written.
QUEN_EXPORT std::vector<KeptTheirs> keepTheirsOfUpdate(const ChangeFacts& facts,
                                                       const String& directory,
                                                       const QueryRunner& run = runHere);

/// Likewise after a merge of `source`: the URL that was merged, or `^/NAME` as the client takes it,
/// without a revision at its end and not closed. What came in is the source's file in the last
/// revision that was merged.
QUEN_EXPORT std::vector<KeptTheirs> keepTheirsOfMerge(const ChangeFacts& facts,
                                                      const String& directory, const String& source,
                                                      const QueryRunner& run = runHere);

} // namespace quen
