#include "Classes/SVNOperations/SVNBlameOperation.h"
#include "Fuzz/Support/Check.h"
#include "Fuzz/Support/Report.h"
#include "QuenFoundation/QuenSourceControlConstants.h"

namespace quen::fuzz {

void run(FuzzInput input) {
    const ReportChoices choices = reportChoices(input);
    const Outcome outcome = agreedOutcome<SVNBlameOperation>(
        choices, {.type = RequestTypeBlame, .files = StringArray{"a.c"}});
    require(outcome.result.array() != nullptr, "a blame has no result");
    require(!outcome.error || outcome.result.array()->count() == 0, "a malformed report counts");
    requireRecords(outcome.result, {{QuenSourceControlOperationLineNumberKey, FieldKind::text},
                                    {QuenSourceControlOperationRevisionKey, FieldKind::text},
                                    {QuenSourceControlOperationAuthorKey, FieldKind::text},
                                    {QuenSourceControlOperationDateKey, FieldKind::date}});
}

} // namespace quen::fuzz
