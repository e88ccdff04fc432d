#include "Classes/SVNOperations/SVNCurrentBranchOperation.h"
#include "Fuzz/Support/Check.h"
#include "Fuzz/Support/Report.h"
#include "QuenFoundation/QuenSourceControlConstants.h"
#include "Tests/Support/Trees.h"

#include <vector>

namespace quen::fuzz {

using namespace test;

namespace {

/// Configured in the ways that people find: with a separator at the end or without, half, not at
/// all, and not valid.
std::vector<QuenSourceControlSourceTreePtr> sourceTrees() {
    const String trunk = "file:///r/trunk";
    const String branches = "file:///r/branches";
    return {nullptr,
            otherTree(),
            repository({.trunkLocation = trunk, .branchesLocation = branches}),
            repository({.trunkLocation = "file:///r/trunk/", .branchesLocation = "file:///r/b/"}),
            repository({.branchesLocation = branches}),
            repository({.isValid = false, .trunkLocation = trunk, .branchesLocation = branches}),
            workingTree({.repository = repository({.branchesLocation = "file:///"})}),
            workingTree()};
}

} // namespace

void run(FuzzInput input) {
    static const std::vector<QuenSourceControlSourceTreePtr> trees = sourceTrees();
    const ReportChoices choices = reportChoices(input);
    const Outcome outcome = agreedOutcome<SVNCurrentBranchOperation>(
        choices,
        {.type = RequestTypeCurrentBranch, .sourceTree = trees.at(choices.options % trees.size())});
    require(outcome.result.isNothing() == !outcome.error.isNil(), "neither result nor error");
    requireRecords(outcome.result, {{QuenSourceControlOperationNameKey, FieldKind::text, true}});
}

} // namespace quen::fuzz
