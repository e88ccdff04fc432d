#include "Classes/SVNOperations/SVNListOperation.h"
#include "Fuzz/Support/Check.h"
#include "Fuzz/Support/Report.h"
#include "QuenFoundation/QuenSourceControlConstants.h"
#include "Tests/Support/Trees.h"

namespace quen::fuzz {

using namespace test;

void run(FuzzInput input) {
    static const auto tree = repository({.branchesLocation = "file:///r/branches"});
    const ReportChoices choices = reportChoices(input);
    const Outcome outcome = agreedOutcome<SVNListOperation>(
        choices, {.type = (choices.options & 1) != 0 ? RequestTypeListBranches : RequestTypeList,
                  .sourceTree = tree,
                  .files = StringArray{"file:///r"}});
    require(outcome.result.isNothing() == !outcome.error.isNil(), "neither result nor error");
    requireRecords(outcome.result, {{QuenSourceControlOperationIsLeafKey, FieldKind::boolean, true},
                                    {QuenSourceControlOperationNameKey, FieldKind::text}});
}

} // namespace quen::fuzz
