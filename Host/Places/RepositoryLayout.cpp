#include "Host/Places/RepositoryLayout.h"

#include <algorithm>

namespace quen {

namespace {

bool isUsualName(std::string_view component) {
    return component == "trunk" || component == "branches" || component == "tags";
}

std::string wholeURL(const std::string& said, const std::string& usual, std::string_view root) {
    std::string location = said.empty() ? usual : said;
    if (isBelowRoot(location)) {
        location.replace(0, 1, withoutSlashesAtEnd(root));
    }
    location.resize(withoutSlashesAtEnd(location).size());
    return location;
}

} // namespace

std::string projectRootOf(std::string_view url, std::string_view repositoryRoot) {
    const std::string_view root = withoutSlashesAtEnd(repositoryRoot);
    // Names above the root are not part of the layout: /srv/trunk may hold repositories.
    std::size_t slash = root.size();
    while (url.starts_with(root) && slash < url.size() && url[slash] == '/') {
        const std::size_t end = std::min(url.find('/', slash + 1), url.size());
        if (isUsualName(url.substr(slash + 1, end - slash - 1))) {
            return std::string(withoutSlashesAtEnd(url.substr(0, slash)));
        }
        slash = end;
    }
    return std::string(root);
}

RepositoryLayout usualLayout(std::string_view url, std::string_view repositoryRoot) {
    const std::string project = projectRootOf(url, repositoryRoot);
    return {project + "/trunk", project + "/branches"};
}

RepositoryLayout wholeLayout(const RepositoryLayout& said, std::string_view url,
                             std::string_view repositoryRoot) {
    const RepositoryLayout usual = usualLayout(url, repositoryRoot);
    return {wholeURL(said.trunk, usual.trunk, repositoryRoot),
            wholeURL(said.branches, usual.branches, repositoryRoot)};
}

std::string tagsBeside(std::string_view branches) {
    const std::string_view plain = withoutSlashesAtEnd(branches);
    return std::string(plain.substr(0, plain.rfind('/'))) + "/tags";
}

bool isBelowRoot(std::string_view location) noexcept {
    return location.starts_with("^/");
}

std::string_view withoutSlashesAtEnd(std::string_view url) noexcept {
    while (url.ends_with('/')) {
        url.remove_suffix(1);
    }
    return url;
}

} // namespace quen
