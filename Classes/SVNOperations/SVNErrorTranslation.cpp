#include "Classes/SVNDiagnostics.h"
#include "Classes/SVNOperations/SVNOperation.h"
#include "Classes/SVNOperations/SVNTreeEdits.h"
#include "QuenFoundation/QuenSourceControlConstants.h"
#include "QuenFoundation/QuenSourceControlErrorCode.h"

#include <optional>

namespace quen {

namespace {

String nameOfRepositoryToAuthenticate(const QuenSourceControlRequest& request) {
    const QuenSourceControlRepositoryPtr repository = request.repositoryToAuthenticate();
    return repository == nullptr ? String() : repository->name();
}

Error authenticationError(std::int64_t code, const String& description, const String& type) {
    return sourceControlError(code, description,
                              {{QuenSourceControlAuthenticationErrorTypeKey, type}});
}

/// Complaints that are known in any operation's text; nil for any other text.
Error typicalError(const String& text, const QuenSourceControlRequest& request) {
    if (text.contains("ssh: Could not resolve hostname") || text.contains("Host not found")) {
        return authenticationError(QuenSourceControlErrorUnreachable,
                                   formatText("The repository \"%@\" could not be reached.",
                                              {nameOfRepositoryToAuthenticate(request)}),
                                   QuenSourceControlSSHConnectionErrorKey);
    }
    if (text.contains("svn: To better debug SSH connection problems")) {
        return authenticationError(
            QuenSourceControlErrorAuthentication,
            formatText("Authentication failed because the SSH could not connect to the repository "
                       "\"%@\".",
                       {nameOfRepositoryToAuthenticate(request)}),
            QuenSourceControlSSHConnectionErrorKey);
    }
    // A server that hangs up is how a refused login looks from here.
    if (text.contains("svn: Network connection closed unexpectedly")) {
        return authenticationError(
            QuenSourceControlErrorAuthentication,
            "Authentication failed because the name or password was incorrect.",
            QuenSourceControlAuthenticationCredentialsIncorrect);
    }
    if (text.hasSuffix("is not a working copy")) {
        return sourceControlError(QuenSourceControlErrorNotVersioned,
                                  "The operation could not be performed because the file is "
                                  "not under version control.");
    }
    return {};
}

/// How the login shell on the server complains. What follows may be worth hearing.
constexpr std::string_view homeDirectoryNotice = "Could not chdir to home directory";

constexpr std::string_view endOfNotice = "No such file or directory\n";

/// The text behind the notice that it begins with; absent where the notice is all there is.
std::optional<std::string_view> behindNotice(std::string_view text) {
    const std::size_t position = text.find(endOfNotice);
    return position == std::string_view::npos
               ? std::nullopt
               : std::optional(text.substr(position + endOfNotice.size()));
}

/// The text to ask about next: that behind the first notice. Of a great many notices the first ones
/// are skipped together, because each is asked about within the one before.
std::optional<std::string_view> behindNotices(std::string_view text) {
    constexpr std::size_t depth = 64;
    std::size_t count = 0;
    for (std::optional rest(text); rest && rest->starts_with(homeDirectoryNotice);
         rest = behindNotice(*rest)) {
        ++count;
    }
    std::optional<std::string_view> rest = behindNotice(text);
    for (; rest && count > depth; --count) {
        rest = behindNotice(*rest);
    }
    return rest;
}

} // namespace

Error SVNOperation::errorFromErrorMessage(const String& message) {
    if (message.isNil() || request() == nullptr) {
        return {};
    }
    if (Error known = typicalError(message, *request())) {
        return known;
    }
    if (message.hasSuffix("is not a directory") &&
        dynamic_cast<const SVNMoveOperation*>(this) != nullptr) {
        return sourceControlError(
            QuenSourceControlErrorNameTaken,
            "The file could not be renamed because a file with that name already exists.");
    }
    if (message.hasPrefix(homeDirectoryNotice)) {
        const auto rest = behindNotices(message.view());
        return rest ? errorFromErrorMessage(*rest) : Error();
    }
    if (message.hasPrefix("Warning: Permanently added") &&
        message.hasSuffix("(RSA) to the list of known hosts.")) {
        return {};
    }
    return QuenSourceControlTaskOperation::errorFromErrorMessage(message);
}

} // namespace quen
