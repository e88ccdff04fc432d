#include "Classes/SVNOperations/SVNCommitOperation.h"
#include "Fuzz/Support/Check.h"
#include "Fuzz/Support/Report.h"
#include "Fuzz/Support/Text.h"
#include "QuenFoundation/QuenSourceControlConstants.h"

#include <array>
#include <cstdlib>
#include <string>

namespace quen::fuzz {

namespace {

/// Unicode's white space beyond that of the C library, as UTF-8 writes it.
constexpr std::array<std::string_view, 19> moreWhiteSpace{
    "\xC2\x85",     "\xC2\xA0",     "\xE1\x9A\x80", "\xE2\x80\x80", "\xE2\x80\x81",
    "\xE2\x80\x82", "\xE2\x80\x83", "\xE2\x80\x84", "\xE2\x80\x85", "\xE2\x80\x86",
    "\xE2\x80\x87", "\xE2\x80\x88", "\xE2\x80\x89", "\xE2\x80\x8A", "\xE2\x80\xA8",
    "\xE2\x80\xA9", "\xE2\x80\xAF", "\xE2\x81\x9F", "\xE3\x80\x80"};

std::size_t lengthOfWhiteSpace(std::string_view text) {
    if (!text.empty() && std::string_view(" \t\n\v\f\r").find(text[0]) != std::string_view::npos) {
        return 1;
    }
    for (const std::string_view each : moreWhiteSpace) {
        if (text.starts_with(each)) {
            return each.size();
        }
    }
    return 0;
}

/// Behind the white space by the C library, which reads a number as the commit does: a sign,
/// digits, the nearest limit where they are too many.
Value expectedResult(std::string_view output) {
    constexpr std::string_view announcement = "Committed revision";
    const std::string text = expectedText(output).value_or("");
    const std::size_t position = text.find(announcement);
    if (position == std::string::npos) {
        return {};
    }
    std::string number = text.substr(position + announcement.size());
    while (const std::size_t length = lengthOfWhiteSpace(number)) {
        number.erase(0, length);
    }
    const long long revision = std::strtoll(number.c_str(), nullptr, 10);
    return Array{
        Dictionary{{QuenSourceControlOperationRevisionKey, String(std::to_string(revision))}}};
}

} // namespace

void run(FuzzInput input) {
    const ReportChoices choices = reportChoices(input);
    const Outcome outcome = agreedOutcome<SVNCommitOperation>(
        choices, {.type = RequestTypeCommit,
                  .files = StringArray{"a.c"},
                  .options = {{QuenSourceControlRequestOptionMessage, "why"}}});
    requireEqual(outcome.result, expectedResult(choices.run.output), "another revision");
    require(!outcome.error, "a commit's output has an error");
}

} // namespace quen::fuzz
