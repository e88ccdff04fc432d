#include "Classes/SVNOperations/SVNDiffOperation.h"
#include "Fuzz/Support/Check.h"
#include "Fuzz/Support/Report.h"
#include "QuenFoundation/QuenSourceControlConstants.h"

namespace quen::fuzz {

void run(FuzzInput input) {
    const ReportChoices choices = reportChoices(input);
    const bool hasRange = (choices.options & 1) != 0;
    const Outcome outcome = agreedOutcome<SVNDiffOperation>(
        choices, {.type = RequestTypeDiff,
                  .destination = "file:///r/trunk",
                  .files = StringArray{"file:///r/branches/b"},
                  .startingRevision = hasRange ? String("3") : String(),
                  .endingRevision = hasRange ? String("5") : String()});
    require(!outcome.error, "a malformed summary does not pass in silence");
    require(!choices.run.output.empty() || outcome.result.isNothing(), "nothing gave something");
    requireRecords(outcome.result, {{QuenSourceControlOperationWCStatusKey, FieldKind::integer},
                                    {QuenSourceControlOperationIsLeafKey, FieldKind::boolean},
                                    {QuenSourceControlOperationPathKey, FieldKind::text, true}});
}

} // namespace quen::fuzz
