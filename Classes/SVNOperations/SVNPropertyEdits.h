#pragma once

#include "Classes/SVNOperations/SVNOperation.h"

namespace quen {

/// The writes that end an ignore or unignore request. A request of any other type leaves
/// `arguments` unset.

/// `svn propset`: the request's files, one a line, become the ignore list of the destination.
class SVNPropSetOperation : public SVNOperation {
public:
    bool initWithRequest(QuenSourceControlRequestPtr request) override;
};

/// `svn propdel`: the directory of the request's first file loses its ignore list.
class SVNPropDelOperation : public SVNOperation {
public:
    bool initWithRequest(QuenSourceControlRequestPtr request) override;
};

} // namespace quen
