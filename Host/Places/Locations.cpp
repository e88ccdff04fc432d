#include "Host/Places/Locations.h"

#include "Foundation/PathComponents.h"
#include "Foundation/PegPath.h"
#include "Foundation/PercentCoding.h"

#include <algorithm>
#include <cctype>
#include <filesystem>
#include <system_error>

namespace quen {

namespace {

/// The client drops these before it looks for a revision behind an `@`: `d@/.` is `d@` to it. With
/// a slash at the end it looks for none.
std::string withoutDotsAtEnd(std::string path) {
    while (path.ends_with("/.") || path.ends_with("/./")) {
        path.resize(path.size() - (path.ends_with('/') ? 2 : 1));
    }
    return path;
}

} // namespace

bool isRepositoryURL(std::string_view location) {
    const auto colon = location.find("://");
    const std::string_view scheme = location.substr(0, colon);
    return colon != std::string_view::npos && !scheme.empty() &&
           std::isalpha(static_cast<unsigned char>(scheme.front())) != 0 &&
           std::all_of(scheme.begin(), scheme.end(), [](unsigned char c) {
               return std::isalnum(c) != 0 || c == '+' || c == '-' || c == '.';
           });
}

bool isOnDisk(const std::string& path) {
    std::error_code ignored;
    return std::filesystem::exists(std::filesystem::symlink_status(path, ignored));
}

bool isDirectory(const std::string& location) {
    std::error_code ignored;
    return !isRepositoryURL(location) && std::filesystem::is_directory(location, ignored);
}

std::string plainPath(const std::string& path) {
    std::string plain = std::filesystem::path(path).lexically_normal().string();
    while (plain.size() > 1 && plain.ends_with('/')) {
        plain.pop_back();
    }
    return plain;
}

std::string absolutePath(const std::string& path) {
    std::error_code ignored;
    return plainPath(std::filesystem::absolute(path, ignored).string());
}

bool isAtOrBelow(std::string_view path, std::string_view directory) noexcept {
    return path.starts_with(directory) &&
           (path.size() == directory.size() || directory == "/" || path[directory.size()] == '/');
}

bool isBelow(std::string_view path, std::string_view directory) noexcept {
    return path != directory && isAtOrBelow(path, directory);
}

std::string directoryNameFor(const std::string& url) {
    return percentDecoded(lastPathComponent(url));
}

String clientPath(const std::string& path) {
    // As it is seen by whoever looks for an `@` in what the client is given.
    if (isRepositoryURL(path)) {
        return withPlainAt(path);
    }
    const std::string plain = path.find('@') == std::string::npos ? path : withoutDotsAtEnd(path);
    return plain.starts_with('-') ? "./" + plain : plain;
}

StringArray clientPaths(const std::vector<std::string>& paths) {
    StringArray client;
    for (const std::string& path : paths) {
        client.push_back(clientPath(path));
    }
    return client;
}

String closedClientPath(const std::string& path) {
    return withPegClosed(clientPath(path));
}

String importedPath(const std::string& path) {
    const String client = clientPath(path);
    return needsPegClosed(client.view()) ? String(client.str() + "/.") : client;
}

String closedDirectory(const std::string& path) {
    const String client = clientPath(path);
    return needsPegClosed(client.view()) && !client.hasSuffix("/") ? String(client.str() + "/")
                                                                   : client;
}

} // namespace quen
