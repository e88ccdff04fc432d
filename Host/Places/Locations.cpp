#include "Host/Places/Locations.h"

#include "Foundation/PathComponents.h"
#include "Foundation/PegPath.h"

#include <algorithm>
#include <cctype>

namespace quen {

namespace {

/// The client decodes `%40` in a URL before it looks for a revision behind its last slash, so it
/// is as good as an `@` there and must be seen as one.
std::string withPlainAt(std::string location) {
    const auto slash = location.find_last_of('/', location.find_last_not_of('/'));
    const bool isServer = slash == location.find("://") + 2;
    for (auto at = location.find("%40", slash); at != std::string::npos && !isServer;
         at = location.find("%40", slash)) {
        location.replace(at, 3, 1, '@');
    }
    return location;
}

/// -1 for what is not a digit.
int hexValue(char c) {
    const auto digit = std::string_view("0123456789abcdef")
                           .find(static_cast<char>(std::tolower(static_cast<unsigned char>(c))));
    return digit == std::string_view::npos ? -1 : static_cast<int>(digit);
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

std::string percentDecoded(std::string_view text) {
    std::string decoded;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const bool isCode = text[i] == '%' && i + 2 < text.size() && hexValue(text[i + 1]) >= 0 &&
                            hexValue(text[i + 2]) >= 0;
        decoded += isCode ? static_cast<char>(hexValue(text[i + 1]) * 16 + hexValue(text[i + 2]))
                          : text[i];
        i += isCode ? 2 : 0;
    }
    return decoded;
}

std::string directoryNameFor(const std::string& url) {
    return percentDecoded(lastPathComponent(url));
}

String clientPath(const std::string& path) {
    return path.starts_with('-') ? "./" + path : isRepositoryURL(path) ? withPlainAt(path) : path;
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

String closedDirectory(const std::string& path) {
    const String client = clientPath(path);
    return needsPegClosed(client.view()) && !client.hasSuffix("/") ? String(client.str() + "/")
                                                                   : client;
}

} // namespace quen
