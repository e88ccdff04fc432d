#include "Foundation/PathComponents.h"

#include <algorithm>
#include <string>

namespace quen {

namespace {

std::string_view withoutSeparatorsAtEnd(std::string_view path) noexcept {
    while (path.size() > 1 && path.ends_with('/')) {
        path.remove_suffix(1);
    }
    return path;
}

} // namespace

std::string_view lastPathComponent(std::string_view path) noexcept {
    path = withoutSeparatorsAtEnd(path);
    return path == "/" ? path : path.substr(path.rfind('/') + 1);
}

std::string_view deletingLastPathComponent(std::string_view path) noexcept {
    path = withoutSeparatorsAtEnd(path);
    const std::size_t separator = path.rfind('/');
    if (separator == std::string_view::npos) {
        return {};
    }
    return withoutSeparatorsAtEnd(path.substr(0, separator + 1));
}

String appendingPathComponent(std::string_view directory, std::string_view component) {
    component.remove_prefix(std::min(component.find_first_not_of('/'), component.size()));
    std::string path(withoutSeparatorsAtEnd(directory));
    if (!path.empty() && !component.empty() && path.back() != '/') {
        path += '/';
    }
    path += component;
    return path;
}

std::vector<std::string_view> pathComponents(std::string_view path) {
    std::vector<std::string_view> components;
    if (path.starts_with('/')) {
        components.push_back(path.substr(0, 1));
    }
    while (!path.empty()) {
        const std::size_t end = std::min(path.find('/'), path.size());
        if (end > 0) {
            components.push_back(path.substr(0, end));
        }
        path.remove_prefix(std::min(end + 1, path.size()));
    }
    return components;
}

} // namespace quen
