#include "Host/TaskFailure.h"
#include "Host/WorkingCopyCleanup.h"
#include "QuenFoundation/QuenSourceControlConstants.h"
#include "Tests/Faults/ExpectedErrors.h"
#include "Tests/Faults/FaultyClient.h"
#include "Tests/Faults/LeftBehind.h"
#include "Tests/Faults/Running.h"
#include "Tests/Support/CaseName.h"

#include <algorithm>
#include <atomic>
#include <gtest/gtest.h>
#include <random>
#include <thread>

namespace quen::test {

namespace {

using std::chrono::milliseconds;

/// Every kind of operation at once, cancelled at one moment, from threads that run none of them.
class CancelTest : public testing::Test {
protected:
    static constexpr std::chrono::seconds bound{15};

    /// From several threads, some operations by two at once.
    static void cancelAll(const std::vector<KindRun>& runs) {
        std::vector<std::thread> threads;
        for (std::size_t first = 0; first < 4; ++first) {
            threads.emplace_back([&runs, first] {
                for (std::size_t i = first / 2; i < runs.size(); i += 2) {
                    runs[i].operation->cancel();
                }
            });
        }
        for (std::thread& thread : threads) {
            thread.join();
        }
    }

    /// Starts all, waits until each client has told, cancels all.
    std::vector<KindRun> cancelledOnceTold(const std::string& fault) {
        client_.misbehave(fault);
        RunsOfAllKinds all = startAll(kinds_, kinds_.size());
        EXPECT_TRUE(client_.waitUntilTold(kinds_.size()));
        return cancelledNow(all);
    }

    std::vector<KindRun> cancelledNow(RunsOfAllKinds& all) const {
        const auto cancelled = std::chrono::steady_clock::now();
        cancelAll(all.runs);
        all.queue->waitUntilAllOperationsAreFinished();
        EXPECT_LT(std::chrono::steady_clock::now() - cancelled, bound);
        return std::move(all.runs);
    }

    /// What is expected of every kind, and that nothing is left.
    void expectAll(Tally& tally, const std::vector<KindRun>& runs, const Verdict& verdict) {
        for (const KindRun& run : runs) {
            const std::string expected = expectedLine(*run.kind, verdict);
            const std::string actual = actualLine(*run.operation);
            tally.count(run.kind->name,
                        actual == expected ? "" : actual + "\ninstead of\n" + expected);
        }
        tally.countGroup();
        EXPECT_EQ(left_.since(), "");
    }

    void TearDown() override {
        EXPECT_EQ(left_.since(), "");
        EXPECT_TRUE(client_.leavesNoProcess());
        EXPECT_FALSE(client_.hasTemporaryFiles());
    }

    static Verdict cancelled(bool wasEnded) {
        return {.interruption = hostError(TaskErrorCancelled,
                                          "The operation was cancelled before it had finished."),
                .wasEnded = wasEnded};
    }

    ScratchDirectory existing_;
    std::vector<OperationKind> kinds_ = operationKinds(existing_.path());
    FaultyClient client_;
    LeftBehind left_;
};

TEST_F(CancelTest, BeforeTheRun) {
    Tally tally("Cancelled before the run");
    client_.takeAway(); // nothing may be started
    std::vector<KindRun> runs;
    for (const OperationKind& kind : kinds_) {
        runs.push_back({&kind, operationOf(kind)});
    }
    cancelAll(runs);
    for (const KindRun& run : runs) {
        run.operation->main(); // run would skip it, as a queue does
    }
    expectAll(tally, runs, cancelled(false));
}

/// Waits behind an operation that has to be cancelled itself.
TEST_F(CancelTest, WhileWaitingInAQueue) {
    Tally tally("Cancelled in the queue");
    for (const bool wholeQueue : {true, false}) {
        client_.misbehave("hang");
        RunsOfAllKinds all = startAll(kinds_, 1);
        EXPECT_TRUE(client_.waitUntilTold(1));
        client_.takeAway();
        if (wholeQueue) {
            all.queue->cancelAllOperations();
        } else {
            std::for_each(all.runs.rbegin(), all.runs.rend(),
                          [](const KindRun& run) { run.operation->cancel(); });
        }
        all.queue->waitUntilAllOperationsAreFinished();
        // The one that had begun is a query. Those that had not wrap nothing.
        for (const KindRun& run : all.runs) {
            const std::string expected = lineOf(cancelled(false).interruption);
            tally.count(run.kind->name,
                        lineOf(run.operation->error()) == expected ? "" : "another error");
        }
        tally.countGroup();
        client_.putBack();
    }
}

TEST_F(CancelTest, RightAfterTheStart) {
    Tally tally("Cancelled right after the start");
    client_.misbehave("hang");
    RunsOfAllKinds all{{}, nullptr};
    for (const OperationKind& kind : kinds_) {
        all.runs.push_back({&kind, operationOf(kind)});
    }
    for (const KindRun& run : all.runs) {
        std::atomic<bool> isStarting = false;
        std::thread running([&] {
            isStarting = true;
            run.operation->run();
        });
        while (!isStarting) {
            std::this_thread::yield();
        }
        run.operation->cancel();
        running.join();
        tally.count(run.kind->name, taskFailureOf(run.operation->error()) == TaskFailure::cancelled
                                        ? ""
                                        : lineOf(run.operation->error()));
    }
    tally.countGroup();
}

TEST_F(CancelTest, WhileTheClientIsSilent) {
    Tally tally("Cancelled while the client is silent");
    expectAll(tally, cancelledOnceTold("hang"), cancelled(true));
}

TEST_F(CancelTest, InTheMiddleOfOutput) {
    Tally tally("Cancelled in the middle of output");
    expectAll(tally, cancelledOnceTold("chatter"), cancelled(true));
}

TEST_F(CancelTest, AfterTheOutputBeforeTheClientsEnd) {
    Tally tally("Cancelled after the output, before the client's end");
    expectAll(tally, cancelledOnceTold("hang-closed"), cancelled(true));
}

TEST_F(CancelTest, OfAClientThatDoesNotListen) {
    Tally tally("Cancelled, of a deaf client");
    RunLimits limits;
    limits.terminationGrace = milliseconds(200);
    const RunContext::Scope scope(RunContext::current().withLimits(limits));
    expectAll(tally, cancelledOnceTold("hang-deaf"), cancelled(true));
}

/// A client that heeds the request to end with status 0 leaves nothing to clean up.
TEST_F(CancelTest, OfAClientThatTidiesUp) {
    Tally tally("Cancelled, of a tidy client");
    expectAll(tally, cancelledOnceTold("last-words:0"), cancelled(false));
}

/// The client's own end counts, though a process that it left behind still holds the streams.
TEST_F(CancelTest, AfterTheClientsEnd) {
    Tally tally("Cancelled after the client's end");
    constexpr std::int64_t badSyntax = 2;
    expectAll(tally, cancelledOnceTold("grandchild:0"),
              {.parserCode = badSyntax, .leftOutputOpen = true});
    client_.endLeftProcesses();
}

TEST_F(CancelTest, AfterTheRun) {
    Tally tally("Cancelled after the run");
    client_.misbehave("exit:7");
    const std::vector<KindRun> runs = runAll(kinds_, 8);
    std::vector<Value> results;
    for (const KindRun& run : runs) {
        results.push_back(run.operation->result());
    }
    cancelAll(runs);
    const Verdict failed{
        .complaint = hostError(7, "The client failed with exit status 7 and did not say why."),
        .parserCode = 3};
    expectAll(tally, runs, failed);
    for (std::size_t i = 0; i < runs.size(); ++i) {
        EXPECT_EQ(runs[i].operation->result(), results[i]) << runs[i].kind->name;
    }
}

/// Either the one outcome or the other, at whatever moment the cancel falls into the run.
TEST_F(CancelTest, AtAnyMoment) {
    Tally tally("Cancelled at any moment");
    client_.misbehave("say:7");
    const Verdict failed{.complaint = hostError(7, "errors"), .parserCode = 2};
    std::minstd_rand random(
        1); // NOLINT(cert-msc51-cpp): the same moments each time, as far as can be
    int cancelledOnes = 0;
    for (int round = 0; round < 12; ++round) {
        RunsOfAllKinds all = startAll(kinds_, 8);
        for (const KindRun& run : all.runs) {
            const auto end =
                std::chrono::steady_clock::now() + std::chrono::microseconds(random() % 1500);
            while (std::chrono::steady_clock::now() < end) {
                std::this_thread::yield();
            }
            run.operation->cancel();
        }
        all.queue->waitUntilAllOperationsAreFinished();
        for (const KindRun& run : all.runs) {
            const bool wasCancelled =
                taskFailureOf(run.operation->error()) == TaskFailure::cancelled;
            const std::string actual = actualLine(*run.operation);
            cancelledOnes += wasCancelled ? 1 : 0;
            tally.count(run.kind->name,
                        wasCancelled || actual == expectedLine(*run.kind, failed) ? "" : actual);
        }
        tally.countGroup();
    }
    RecordProperty("cancelled", cancelledOnes);
    std::cout << "  " << cancelledOnes << " of them ended as cancelled\n";
}

// The chain

Error cancelledError() {
    return hostError(TaskErrorCancelled, "The operation was cancelled before it had finished.");
}

QuenSourceControlOperationPtr ignoring(const StringArray& files) {
    Request request;
    request.type = RequestTypeIgnore;
    request.sourceTree = operationKinds("/").front().request.sourceTree;
    request.files = files;
    return loadedProvider()->operationForRequest(request.make());
}

/// The errors of its files, as far as they have any.
std::vector<TaskFailure> failuresOfFiles(const QuenSourceControlOperation& operation) {
    std::vector<TaskFailure> failures;
    const Array* const causes =
        operation.error().userInfo()[QuenSourceControlUnderlyingErrorsKey].array();
    if (causes != nullptr) {
        for (const Value& cause : *causes) {
            failures.push_back(taskFailureOf(*cause.error()));
        }
    }
    return failures;
}

class ChainCancelTest : public CancelTest {
protected:
    ChainCancelTest() { client_.prepare(".output", "<properties/>"); }

    QuenSourceControlOperationPtr cancelledInFirst(const std::string& fault) {
        client_.misbehave(fault);
        auto operation = ignoring({"/v/a", "/v/b", "/v/c"});
        std::thread running([&] { operation->run(); });
        EXPECT_TRUE(client_.waitUntilTold(1));
        client_.takeAway(); // nothing more may be started
        operation->cancel();
        running.join();
        return operation;
    }
};

TEST_F(ChainCancelTest, InTheQueryNoFileIsServed) {
    const auto operation = cancelledInFirst("propget=hang");
    EXPECT_EQ(failuresOfFiles(*operation), std::vector(3, TaskFailure::cancelled));
    EXPECT_EQ(operation->result(), Value(Array::empty()));
    EXPECT_TRUE(mayHaveLeftLock(*operation));
}

TEST_F(ChainCancelTest, InTheEditTheFileCountsAsNotServed) {
    const auto operation = cancelledInFirst("propset=hang\nreplay:0");
    EXPECT_EQ(failuresOfFiles(*operation), std::vector(3, TaskFailure::cancelled));
    EXPECT_EQ(operation->result(), Value(Array::empty()));
}

TEST_F(ChainCancelTest, InTheQueueItIsSkippedLikeAnyOther) {
    client_.takeAway();
    const OperationQueuePtr queue = OperationQueue::make();
    const auto operation = ignoring({"/v/a"});
    operation->cancel();
    queue->addOperation(operation);
    queue->waitUntilAllOperationsAreFinished();
    EXPECT_TRUE(operation->wasSkipped());
    EXPECT_EQ(operation->error(), cancelledError());
    EXPECT_FALSE(mayHaveLeftLock(*operation));
}

} // namespace

} // namespace quen::test
