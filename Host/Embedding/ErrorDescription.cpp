#include "Host/Embedding/ErrorDescription.h"

#include "QuenFoundation/QuenSourceControlConstants.h"
#include "QuenFoundation/QuenSourceControlErrorCode.h"

#include <algorithm>
#include <string_view>

namespace quen {

namespace {

/// Errors are told down to this depth; a provider makes three levels.
constexpr int deepest = 8;

void addLine(std::vector<std::string>& lines, std::string_view text) {
    if (!text.empty() && std::find(lines.begin(), lines.end(), text) == lines.end()) {
        lines.emplace_back(text);
    }
}

/// The provider's code -11 without any facts: the name to take out is not in the list.
bool isNameNotInList(const Error& error) {
    return error.domain() == QuenSourceControlErrorDomain &&
           error.code() == QuenSourceControlErrorNotIgnored && error.userInfo().count() == 0;
}

std::string inWordsOf(std::int32_t requestType, std::string text) {
    constexpr std::string_view theirs = "trying to unignore";
    const std::size_t at = text.find(theirs);
    if (requestType == RequestTypeIgnore && at != std::string::npos) {
        text.replace(at, theirs.size(), "trying to ignore");
    }
    return text;
}

void addLines(std::vector<std::string>& lines, const Error& error, std::int32_t requestType,
              int depth) {
    const std::size_t before = lines.size();
    if (isNameNotInList(error)) {
        addLine(lines, "The name is not in the list of ignored names.");
    }
    addLine(lines, inWordsOf(requestType, error.localizedDescription().str()));
    if (depth < deepest) {
        for (const Error& cause : underlyingErrorsOf(error)) {
            addLines(lines, cause, requestType, depth + 1);
        }
    }
    addLine(lines, error.userInfo()[NSLocalizedRecoverySuggestionErrorKey].stringValue().view());
    if (lines.size() == before && depth == 0) {
        addLine(lines, error.description().view());
    }
}

} // namespace

std::vector<Error> underlyingErrorsOf(const Error& error) {
    std::vector<Error> errors;
    const Value& causes = error.userInfo()[QuenSourceControlUnderlyingErrorsKey];
    if (causes.error() != nullptr) {
        errors.push_back(*causes.error());
    } else if (causes.array() != nullptr) {
        for (const Value& cause : *causes.array()) {
            if (cause.error() != nullptr) {
                errors.push_back(*cause.error());
            }
        }
    }
    return errors;
}

std::string descriptionOfError(const Error& error, std::int32_t requestType) {
    std::vector<std::string> lines;
    if (error) {
        addLines(lines, error, requestType, 0);
    }
    std::string text;
    for (const std::string& line : lines) {
        text.append(text.empty() ? "" : "\n").append(line);
    }
    return text;
}

} // namespace quen
