#include "Tools/Commands/Session/ErrorTexts.h"

#include "Foundation/Lines.h"
#include "QuenFoundation/QuenSourceControlConstants.h"
#include "Tools/Commands/Session/Records.h"

#include <string>
#include <unordered_set>

namespace quen::tools {

namespace {

/// The error or the errors under QuenSourceControlUnderlyingErrorsKey, put at the end of the list.
void appendUnderlying(const Error& error, std::vector<Error>& errors) {
    const Value& underlying = error.userInfo()[QuenSourceControlUnderlyingErrorsKey];
    if (underlying.error() != nullptr) {
        errors.push_back(*underlying.error());
    }
    if (underlying.array() != nullptr) {
        for (const Value& value : *underlying.array()) {
            if (value.error() != nullptr) {
                errors.push_back(*value.error());
            }
        }
    }
}

/// A text of the client can have several lines, with empty ones between.
void appendNew(std::vector<std::string>& lines, std::unordered_set<std::string>& seen,
               const String& text) {
    for (const std::string_view line : linesOf(text.view())) {
        if (!line.empty() && seen.emplace(line).second) {
            lines.emplace_back(line);
        }
    }
}

} // namespace

std::vector<Error> withUnderlyingErrors(const Error& error) {
    std::vector<Error> errors{error};
    for (std::size_t i = 0; i < errors.size(); ++i) {
        // A copy: the list grows.
        appendUnderlying(Error(errors[i]), errors);
    }
    return errors;
}

std::vector<std::string> linesOfError(const Error& error) {
    std::vector<std::string> lines;
    std::unordered_set<std::string> seen;
    for (const Error& each : withUnderlyingErrors(error)) {
        appendNew(lines, seen, each.localizedDescription());
        appendNew(lines, seen,
                  each.userInfo()[NSLocalizedRecoverySuggestionErrorKey].stringValue());
    }
    if (lines.empty()) {
        lines.push_back(error.description().str());
    }
    return lines;
}

} // namespace quen::tools
