#pragma once

#include "Host/Places/SettingsFile.h"
#include "QuenFoundation/QuenSourceControlRequest.h"
#include "Tools/Commands/Session/Session.h"

#include <optional>
#include <string>

namespace quen::tools {

/// What a request is about, and whom authentication is about: a working copy and its repository,
/// or a repository twice.
struct SourceTree {
    QuenSourceControlSourceTreePtr tree;
    QuenSourceControlRepositoryPtr repository;
};

/// A request about a source tree, ready for its type's further members.
QuenSourceControlRequestPtr makeRequest(RequestType type, const SourceTree& source,
                                        StringArray files = {}, Dictionary options = Dictionary());

/// Options of the sub-commands that must know where trunk and branches lie.
struct LayoutOptions {
    RepositoryLayout layout;

    void addTo(CLI::App& command);
};

/// Makes the records of source trees that a host would keep, from what a person types: for a path
/// the working copy that it lies in, at its top directory; for a URL the repository. Always taken
/// to be reachable, since only trying can tell.
///
/// What the person says by options comes first, then what a `.quen` file says (for paths), then the
/// usual layout.
class SourceTreeFinder {
public:
    SourceTreeFinder(Session& session, const CommonOptions& common)
        : session_(session), common_(common) {}

    /// Without a word to the client, so it knows nothing of the layout. nullopt where a `.quen`
    /// file is at fault; that has then been told.
    std::optional<SourceTree> find(const std::string& location);

    /// With trunk and branches; the repository's location is its root. Asks the client where the
    /// location lies, unless both are given as URLs. nullopt where that is not to be found out; the
    /// reason has then been told.
    std::optional<SourceTree> findWithLayout(const std::string& location,
                                             const LayoutOptions& options);

private:
    struct Place {
        std::string url;
        std::string root;
    };
    /// What is said of this location by options and files.
    std::optional<Settings> settingsOf(const std::string& location);
    std::optional<Place> placeOf(const std::string& location, const SourceTree& source);

    Session& session_;
    const CommonOptions& common_;
};

} // namespace quen::tools
