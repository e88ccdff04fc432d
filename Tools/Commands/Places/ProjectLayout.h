#pragma once

#include "Tools/Commands/Places/SourceTreeFinder.h"

#include <string>
#include <string_view>

namespace quen::tools {

/// Where a project lies in its repository: its own directory, and those of trunk, branches and
/// tags. Paths begin with a slash and are not percent-encoded, as in a log; the directory of a
/// project that is the whole repository is the empty text.
class ProjectLayout {
public:
    explicit ProjectLayout(const SourceTree& source);

    const std::string& url() const { return url_; }
    const std::string& rootURL() const { return root_; }
    const std::string& trunkURL() const { return trunkURL_; }
    const std::string& trunk() const { return trunk_; }

    /// The branch that a path lies on, as a path: `/trunk`, `/branches/fix`; empty for none.
    std::string branchOf(std::string_view path) const;
    /// How people call it: `trunk`, `fix`, `tags/1.0`.
    std::string nameOf(const std::string& branch) const;
    /// A path below the project: `trunk/a.c`.
    std::string shortened(std::string_view path) const;

private:
    std::string pathOf(const std::string& url) const;

    std::string root_;
    std::string url_;
    std::string trunkURL_;
    std::string directory_;
    std::string trunk_;
    std::string branches_;
    std::string tags_;
};

} // namespace quen::tools
