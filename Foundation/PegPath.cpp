#include "Foundation/PegPath.h"

#include "Foundation/PathComponents.h"

#include <utility>

namespace quen {

namespace {

/// Where the last component of a URL begins, with its slash; npos where there is only a server.
std::size_t lastSlash(std::string_view url) noexcept {
    const std::size_t slash = url.find_last_of('/', url.find_last_not_of('/'));
    return slash == url.find("://") + 2 ? std::string_view::npos : slash;
}

std::string replacedInName(std::string url, std::string_view from, std::string_view to) {
    for (auto at = url.find(from, lastSlash(url)); at != std::string::npos;
         at = url.find(from, at + to.size())) {
        url.replace(at, from.size(), to);
    }
    return url;
}

} // namespace

bool needsPegClosed(std::string_view path) noexcept {
    return lastPathComponent(path).find('@') != std::string_view::npos;
}

String withPegClosed(const String& path) {
    return needsPegClosed(path.view()) ? String(path.str() + "@") : path;
}

String withPeg(const String& location, const String& revision) {
    return location.str() + "@" + revision.str();
}

String locationAtRevision(const String& location, const String& revision) {
    return location.hasSuffix("@") ? String(location.str() + revision.str())
                                   : withPeg(location, revision);
}

std::string_view withoutPeg(std::string_view location) noexcept {
    const std::size_t at = location.rfind('@');
    const std::size_t slash = location.rfind('/');
    const bool isInName = slash == std::string_view::npos || at > slash;
    return at != std::string_view::npos && isInName ? location.substr(0, at) : location;
}

std::string withEncodedAt(std::string url) {
    return replacedInName(std::move(url), "@", "%40");
}

std::string withPlainAt(std::string url) {
    return replacedInName(std::move(url), "%40", "@");
}

} // namespace quen
