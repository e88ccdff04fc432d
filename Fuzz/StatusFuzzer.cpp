#include "Classes/SVNOperations/SVNStatusOperation.h"
#include "Fuzz/Support/Check.h"
#include "Fuzz/Support/Report.h"
#include "QuenFoundation/QuenSourceControlConstants.h"

namespace quen::fuzz {

void run(FuzzInput input) {
    const ReportChoices choices = reportChoices(input);
    const Outcome outcome = agreedOutcome<SVNStatusOperation>(
        choices, {.type = (choices.options & 1) != 0 ? RequestTypeRemoteStatus : RequestTypeStatus,
                  .files = StringArray{"a.c"}});
    require(outcome.result.array() != nullptr, "a status has no result");
    require(outcome.isDataReleased, "a status keeps its data");
    require(!outcome.error || outcome.result.array()->count() == 0, "a malformed report counts");
    requireRecords(outcome.result,
                   {{QuenSourceControlOperationPathKey, FieldKind::text, true},
                    {QuenSourceControlOperationWCStatusKey, FieldKind::integer, true},
                    {QuenSourceControlOperationRepositoryStatusKey, FieldKind::integer, true}});
}

} // namespace quen::fuzz
