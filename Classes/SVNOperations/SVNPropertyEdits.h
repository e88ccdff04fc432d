#pragma once

#include "Classes/SVNOperations/SVNOperation.h"

namespace quen {

/// The writes that end an ignore or unignore request. A request of any other type leaves
/// `arguments` unset.

/// `svn propset`: the request's files, one a line, become the ignore list of the destination. They
/// are entries of a list, not names for the client, and are written as they are.
class SVNPropSetOperation : public SVNOperation {
public:
    /// Does nothing: the client takes no part of an entry for a revision.
    void sanitizeFilenames() override;

protected:
    Command makeCommand(const QuenSourceControlRequest& request) override;
};

/// `svn propdel`: the directory of the request's first file loses its ignore list.
class SVNPropDelOperation : public SVNOperation {
    Command makeCommand(const QuenSourceControlRequest& request) override;
};

} // namespace quen
