#include "Classes/SVNOperations/SVNCommitOperation.h"
#include "Fuzz/Support/Check.h"
#include "Fuzz/Support/Report.h"
#include "Fuzz/Support/Text.h"
#include "QuenFoundation/QuenSourceControlConstants.h"

#include <cstdlib>
#include <string>

namespace quen {

namespace {

/// By the C library, which reads a number as the commit does: white space, a sign, digits, the
/// nearest limit where they are too many.
Value expectedResult(std::string_view output) {
    constexpr std::string_view announcement = "Committed revision";
    const std::string text = expectedText(output).value_or("");
    const std::size_t position = text.find(announcement);
    if (position == std::string::npos) {
        return {};
    }
    const long long revision =
        std::strtoll(text.c_str() + position + announcement.size(), nullptr, 10);
    return Array{
        Dictionary{{QuenSourceControlOperationRevisionKey, String(std::to_string(revision))}}};
}

} // namespace

void fuzz(FuzzInput input) {
    const ReportChoices choices = reportChoices(input);
    const Outcome outcome = agreedOutcome<SVNCommitOperation>(
        choices, {.type = RequestTypeCommit,
                  .files = StringArray{"a.c"},
                  .options = {{QuenSourceControlRequestOptionMessage, "why"}}});
    requireEqual(outcome.result, expectedResult(choices.run.output), "another revision");
    require(!outcome.error, "a commit's output has an error");
}

} // namespace quen
