#include "Classes/SVNOperations/SVNInfoOperation.h"
#include "Fuzz/Support/Check.h"
#include "Fuzz/Support/Report.h"
#include "QuenFoundation/QuenSourceControlConstants.h"

#include <array>

namespace quen::fuzz {

void run(FuzzInput input) {
    // A check looks at nothing, so it gets a small share.
    constexpr std::array types{RequestTypeInfoCheck, RequestTypeInfoCheckAlternate};
    const ReportChoices choices = reportChoices(input);
    const bool isCheck = choices.options < types.size();
    const Outcome outcome = agreedOutcome<SVNInfoOperation>(
        choices, {.type = isCheck ? types.at(choices.options) : RequestTypeInfo,
                  .files = StringArray{"a.c"}});
    if (isCheck) {
        require(outcome.result.isNothing() && !outcome.error, "a check looks at the report");
        return;
    }
    require(outcome.result.isNothing() == !outcome.error.isNil(), "neither result nor error");
    requireRecords(outcome.result, {{QuenSourceControlOperationRemoteOriginKey, FieldKind::text},
                                    {QuenSourceControlOperationRepositoryRootKey, FieldKind::text},
                                    {QuenSourceControlOperationRevisionKey, FieldKind::text},
                                    {QuenSourceControlOperationAuthorKey, FieldKind::text},
                                    {QuenSourceControlOperationDateKey, FieldKind::date}});
}

} // namespace quen::fuzz
