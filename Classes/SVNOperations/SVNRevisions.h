#pragma once

#include "QuenFoundation/QuenSourceControlRequest.h"

namespace quen {

/// The client's word for a revision: the host's two revision names become `HEAD` and `BASE`; every
/// other revision, nil included, stays as it is.
String headOrBaseRevision(const String& revision);

/// The same where no working copy stands behind the item: with nothing to have a base revision,
/// both names mean `HEAD`.
String headOnlyRevision(const String& revision);

/// `start:end`; a nil one shows as `(null)`, which the client refuses.
String revisionRange(const String& start, const String& end);

/// Adds `-r` and what the request's revisions make of it; nothing where it has neither. Without a
/// start the range is open towards the newest revision that the source tree knows: `HEAD` for a
/// repository, `BASE` for anything else. The end is passed on as given.
void appendRevisionRange(StringArray& command, const QuenSourceControlRequest& request);

/// Whether the request's revisions are peg revisions of its locations.
bool suppliesDirectRevision(const QuenSourceControlRequest& request);

} // namespace quen
