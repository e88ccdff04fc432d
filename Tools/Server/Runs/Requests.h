#pragma once

#include "Host/Places/SettingsFile.h"
#include "QuenFoundation/QuenSourceControlRequest.h"

#include <string>
#include <vector>

namespace quen::tools::server {

/// What a request is about, and whom signing in is about: a working copy and its repository, or a
/// repository twice.
struct Place {
    QuenSourceControlSourceTreePtr tree;
    QuenSourceControlRepositoryPtr repository;
};

/// The place of a path (the working copy that it lies in) or of a URL, with what a `.quen` file
/// says of the user. Asks nobody, so it knows nothing of trunk and branches.
Place placeOf(const std::string& location);

/// Where a project keeps its trunk and its branches, as whole URLs: what the `.quen` file of a
/// working copy says, or the usual names in the project that `url` lies in. `path` may be empty.
RepositoryLayout layoutOf(const std::string& path, const std::string& url,
                          const std::string& repositoryRoot);

/// The repository with its trunk and branches; `tree` is the repository, or the working copy at
/// `path` where that is not empty.
Place placeWithLayout(const std::string& path, const std::string& repositoryRoot,
                      const RepositoryLayout& layout);

QuenSourceControlRequestPtr makeRequest(RequestType type, const Place& place,
                                        const std::vector<std::string>& files = {},
                                        Dictionary options = Dictionary());

} // namespace quen::tools::server
