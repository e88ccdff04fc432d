#pragma once

#include "Host/Places/SettingsFile.h"
#include "QuenFoundation/QuenSourceControlRequest.h"
#include "Tools/Commands/Session/Session.h"

#include <string>
#include <vector>

namespace quen::tools {

/// What a request is about, and whom authentication is about: a working copy and its repository,
/// or a repository twice.
struct SourceTree {
    QuenSourceControlSourceTreePtr tree;
    QuenSourceControlRepositoryPtr repository;
};

/// The client's own option for the user that a source tree names, for runs that no request asks
/// for; empty where it names none.
std::vector<std::string> userOption(const SourceTree& source);

/// A request about a source tree, ready for its type's further members.
QuenSourceControlRequestPtr makeRequest(RequestType type, const SourceTree& source,
                                        StringArray files = {}, Dictionary options = Dictionary());

/// Options of the sub-commands that must know where trunk and branches lie.
struct LayoutOptions {
    RepositoryLayout layout;

    void addTo(Subcommand& command);
};

/// The records of source trees that a host would keep, made from what a person types: for a path
/// the working copy that it lies in, at its top directory; for a URL the repository. Always taken
/// to be reachable, since only trying can tell. The client is not asked, so nothing is known of the
/// layout.
///
/// What the person says by options comes first, then what a `.quen` file says (for paths), then the
/// usual layout. Explained where a `.quen` file is at fault.
Outcome<SourceTree> findSource(const Session& session, const std::string& location);

/// Likewise, with trunk and branches; the repository's location is its root. Asks the client where
/// the location lies, unless both are given as URLs. Explained also where that cannot be found out.
Outcome<SourceTree> findSourceWithLayout(Session& session, const std::string& location,
                                         const LayoutOptions& options);

} // namespace quen::tools
