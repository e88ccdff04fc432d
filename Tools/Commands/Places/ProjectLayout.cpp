#include "Tools/Commands/Places/ProjectLayout.h"

#include "Foundation/PercentCoding.h"
#include "Host/Places/Locations.h"

namespace quen::tools {

namespace {

std::string parentOf(const std::string& path) {
    const std::size_t slash = path.rfind('/');
    return slash == std::string::npos ? std::string() : path.substr(0, slash);
}

/// The directory right below `directory` that a path lies in; empty for none.
std::string childAbove(std::string_view path, const std::string& directory) {
    if (!isBelow(path, directory) || path.size() < directory.size() + 2) {
        return {};
    }
    return std::string(path.substr(0, path.find('/', directory.size() + 1)));
}

} // namespace

ProjectLayout::ProjectLayout(const SourceTree& source)
    : root_(withoutSlashesAtEnd(source.repository->location().view())),
      trunkURL_(source.repository->trunkLocation().absoluteString().str()),
      trunk_(pathOf(trunkURL_)),
      branches_(pathOf(source.repository->branchesLocation().absoluteString().str())),
      tags_(tagsBeside(branches_)) {
    directory_ = parentOf(trunk_);
    url_ = parentOf(trunkURL_);
    // A trunk that is the whole repository has nothing above it.
    if (trunk_.empty()) {
        directory_.clear();
        url_ = root_;
    }
}

std::string ProjectLayout::pathOf(const std::string& url) const {
    return isAtOrBelow(url, root_) ? percentDecoded(url.substr(root_.size())) : std::string();
}

std::string ProjectLayout::branchOf(std::string_view path) const {
    if (isAtOrBelow(path, trunk_)) {
        return trunk_;
    }
    const std::string branch = childAbove(path, branches_);
    return branch.empty() ? childAbove(path, tags_) : branch;
}

std::string ProjectLayout::nameOf(const std::string& branch) const {
    if (branch == trunk_) {
        return "trunk";
    }
    const std::string name = branch.substr(branch.rfind('/') + 1);
    return isAtOrBelow(branch, tags_) ? "tags/" + name : name;
}

std::string ProjectLayout::shortened(std::string_view path) const {
    return std::string(isBelow(path, directory_) ? path.substr(directory_.size() + 1) : path);
}

} // namespace quen::tools
