#include "Classes/SVNOperations/SVNDiffOperation.h"
#include "Fuzz/Support/Check.h"
#include "Fuzz/Support/Report.h"
#include "Fuzz/Support/Text.h"
#include "QuenFoundation/QuenSourceControlConstants.h"

namespace quen::fuzz {

void run(FuzzInput input) {
    const ReportChoices choices = reportChoices(input);
    const Outcome outcome = agreedOutcome<SVNDiffOperation>(
        choices, {.type = RequestTypeDiff,
                  .files = StringArray{"a.c"},
                  .startingRevision = (choices.options & 1) != 0 ? String("5^") : String()});
    const auto text = expectedText(choices.run.output);
    const Value expected =
        choices.run.output.empty() || !text
            ? Value()
            : Value(Array{Dictionary{{QuenSourceControlOperationContentKey, String(*text)}}});
    requireEqual(outcome.result, expected, "the difference is not its text");
    require(!outcome.error, "a text has an error");
}

} // namespace quen::fuzz
