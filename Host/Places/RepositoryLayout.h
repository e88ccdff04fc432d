#pragma once

#include <string>
#include <string_view>

namespace quen {

/// Where a project keeps its trunk and its branches, as URLs; empty where that is not known.
struct RepositoryLayout {
    std::string trunk;
    std::string branches;
};

/// The root of the project that a URL lies in, by the usual names: what stands before `/trunk`,
/// `/branches` or `/tags` in the URL, the first of them below the repository's root; that root
/// itself where the URL holds none of them. Nothing is asked, nothing needs to exist.
std::string projectRootOf(std::string_view url, std::string_view repositoryRoot);

/// `trunk` and `branches` below the project's root.
RepositoryLayout usualLayout(std::string_view url, std::string_view repositoryRoot);

} // namespace quen
