#include "Host/TaskFailure.h"
#include "Tests/Faults/ExpectedErrors.h"
#include "Tests/Faults/FaultyClient.h"
#include "Tests/Faults/LeftBehind.h"
#include "Tests/Faults/Running.h"

#include <gtest/gtest.h>

namespace quen::test {

namespace {

using std::chrono::milliseconds;

enum class Limit { total, idle };

struct LimitCase {
    const char* fault;
    Limit limit;
};

RunLimits limitsWith(Limit limit) {
    RunLimits limits;
    (limit == Limit::total ? limits.total : limits.idle) = milliseconds(400);
    limits.terminationGrace = milliseconds(200);
    return limits;
}

Error errorOf(Limit limit) {
    return limit == Limit::total
               ? hostError(TaskErrorTimedOut, "The client was ended because it took too long: its "
                                              "limit is 0.4 seconds.")
               : hostError(TaskErrorIdleTimedOut,
                           "The client was ended because it took too long: it "
                           "wrote nothing for 0.4 seconds.");
}

TEST(LimitTest, EndEveryKindOfOperationWithAnErrorThatNamesTheLimit) {
    const ScratchDirectory existing;
    const std::vector<OperationKind> kinds = operationKinds(existing.path());
    const FaultyClient client;
    const LeftBehind left;
    Tally tally("Limits");
    for (const auto& [fault, limit] :
         {LimitCase{"hang", Limit::total}, LimitCase{"hang", Limit::idle},
          LimitCase{"hang-deaf", Limit::total}, LimitCase{"hang-deaf", Limit::idle},
          LimitCase{"hang-closed", Limit::total}, LimitCase{"hang-closed", Limit::idle},
          LimitCase{"chatter", Limit::total}, LimitCase{"stop", Limit::total},
          LimitCase{"stop", Limit::idle}, LimitCase{"family", Limit::total},
          LimitCase{"family-deaf", Limit::idle}, LimitCase{"flood:1000000", Limit::total}}) {
        const bool floods = std::string_view(fault).starts_with("flood");
        const RunContext::Scope scope(RunContext::current().withLimits(limitsWith(limit)));
        client.misbehave(fault);
        const auto start = std::chrono::steady_clock::now();
        for (const KindRun& run : runAll(kinds, floods ? 4 : kinds.size())) {
            const std::string expected =
                expectedLine(*run.kind, {.interruption = errorOf(limit), .wasEnded = true});
            const std::string actual = actualLine(*run.operation);
            tally.count(std::string(fault) + ", " + run.kind->name,
                        actual == expected ? "" : actual + "\ninstead of\n" + expected);
        }
        tally.countGroup();
        EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(20)) << fault;
        EXPECT_EQ(left.since(), "") << fault;
        EXPECT_TRUE(client.leavesNoProcess()) << fault;
        EXPECT_FALSE(client.hasTemporaryFiles()) << fault;
    }
}

} // namespace

} // namespace quen::test
