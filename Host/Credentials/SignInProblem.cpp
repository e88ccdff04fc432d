#include "Host/Credentials/SignInProblem.h"

#include "Host/ClientMessage.h"

#include <algorithm>
#include <cctype>
#include <initializer_list>

namespace quen {

namespace {

bool holds(std::string_view text, std::string_view part) {
    return text.find(part) != std::string_view::npos;
}

bool holdsAny(std::string_view text, std::initializer_list<std::string_view> parts) {
    return std::any_of(parts.begin(), parts.end(),
                       [text](std::string_view part) { return holds(text, part); });
}

struct Range {
    std::int64_t first;
    std::int64_t last;
};

bool hasNumber(const std::vector<ClientNumber>& numbers, std::initializer_list<Range> ranges) {
    return std::any_of(numbers.begin(), numbers.end(), [ranges](const ClientNumber& number) {
        return std::any_of(ranges.begin(), ranges.end(), [&](const Range& range) {
            return number.number >= range.first && number.number <= range.last;
        });
    });
}

std::string inLowerCase(std::string_view text) {
    std::string lower(text);
    std::transform(lower.begin(), lower.end(), lower.begin(),
                   [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    return lower;
}

/// `svn://host` of `svn://alice@host`.
std::string withoutUser(std::string server) {
    const std::size_t begin = server.find("://");
    const std::size_t end = server.rfind('@');
    if (begin != std::string::npos && end != std::string::npos && end > begin) {
        server.erase(begin + 3, end - begin - 2);
    }
    return server;
}

/// The client's word for a refusal of svnserve, before anybody has signed in and after.
SignInProblem problemOfRefusal(std::string_view text) {
    if (holds(text, "Can't get username or password")) {
        return SignInProblem::noPassword;
    }
    return holds(text, "Authorization failed") ? SignInProblem::noPermission
                                               : SignInProblem::wrongPassword;
}

} // namespace

SignInProblem signInProblemOf(std::string_view standardError) {
    const ClientMessage message = readClientMessage(standardError);
    const std::string_view text = message.text.view();
    if (hasNumber(message.numbers, {{230001, 230001}})) {
        return SignInProblem::certificate;
    }
    if (hasNumber(message.numbers, {{170001, 170001}})) {
        return problemOfRefusal(text);
    }
    if (hasNumber(message.numbers, {{215000, 215002}, {215004, 215004}})) {
        return SignInProblem::noPassword;
    }
    if (hasNumber(message.numbers, {{175013, 175013}, {220000, 220002}, {220004, 220004}})) {
        return SignInProblem::noPermission;
    }
    if (hasNumber(message.numbers, {{170013, 170013}}) &&
        hasNumber(message.numbers, {{101, 101}, {110, 113}, {670000, 670099}})) {
        return SignInProblem::unreachable;
    }
    if (hasNumber(message.numbers, {{205011, 205011}}) &&
        hasNumber(message.numbers, {{170013, 170013}})) {
        return SignInProblem::external;
    }
    const bool isTunnel = holdsAny(text, {"To better debug SSH connection problems", "svn+ssh://"});
    return isTunnel && hasNumber(message.numbers, {{170012, 170013}, {210002, 210002}})
               ? SignInProblem::secureShell
               : SignInProblem::none;
}

SignInProblem secureShellProblemOf(std::string_view text) {
    if (holds(text, "HOST IDENTIFICATION HAS CHANGED")) {
        return SignInProblem::hostKeyChanged;
    }
    if (holdsAny(text, {"Host key verification failed", "host key is known for"})) {
        return SignInProblem::hostKeyUnknown;
    }
    if (holdsAny(text, {"Permission denied (", "Too many authentication failures"})) {
        return SignInProblem::keyRefused;
    }
    return holdsAny(text, {"Could not resolve hostname", "Connection refused", "timed out",
                           "No route to host", "Network is unreachable"})
               ? SignInProblem::unreachable
               : SignInProblem::secureShell;
}

std::string urlInComplaint(std::string_view standardError) {
    constexpr std::string_view before = "at URL '";
    const std::size_t at = standardError.find(before);
    if (at == std::string_view::npos) {
        return {};
    }
    standardError.remove_prefix(at + before.size());
    return std::string(standardError.substr(0, standardError.find("'\n")));
}

std::string serverOf(std::string_view url) {
    const std::size_t scheme = url.find("://");
    if (scheme == std::string_view::npos) {
        return {};
    }
    return std::string(url.substr(0, url.find('/', scheme + 3)));
}

bool isRealmOf(std::string_view realm, std::string_view url) {
    constexpr std::size_t longest = 4096;
    const std::size_t end = realm.find('>');
    if (realm.size() > longest || !realm.starts_with('<') || end == std::string_view::npos) {
        return false;
    }
    const std::string place = inLowerCase(realm.substr(1, end - 1));
    const std::string server = withoutUser(inLowerCase(serverOf(url)));
    if (server.empty() || !place.starts_with(server)) {
        return false;
    }
    // The client names the usual port too.
    const std::string_view rest = std::string_view(place).substr(server.size());
    return rest.empty() || (rest.size() > 1 && rest.front() == ':' &&
                            rest.find_first_not_of("0123456789", 1) == std::string_view::npos);
}

} // namespace quen
