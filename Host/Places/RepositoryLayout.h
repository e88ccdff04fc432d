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

/// What is said, and the usual place for what is not, as whole URLs without slashes at the end:
/// `^/NAME` is NAME below the repository's root. The provider compares these URLs by prefix. What
/// is said in any other way is kept, for whoever reads the layout to refuse.
RepositoryLayout wholeLayout(const RepositoryLayout& said, std::string_view url,
                             std::string_view repositoryRoot);

/// The directory of the tags: beside that of the branches.
std::string tagsBeside(std::string_view branches);

/// Whether a location is said as a place below the repository's root: `^/NAME`.
bool isBelowRoot(std::string_view location) noexcept;

std::string_view withoutSlashesAtEnd(std::string_view url) noexcept;

} // namespace quen
