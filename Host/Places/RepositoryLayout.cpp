#include "Host/Places/RepositoryLayout.h"

#include <algorithm>

namespace quen {

namespace {

std::string_view withoutSlashesAtEnd(std::string_view url) {
    while (url.ends_with('/')) {
        url.remove_suffix(1);
    }
    return url;
}

bool isUsualName(std::string_view component) {
    return component == "trunk" || component == "branches" || component == "tags";
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

} // namespace quen
