#include "Tests/Host/Process/ProcessTestSupport.h"

#include <atomic>
#include <csignal>
#include <fstream>
#include <future>
#include <new>
#include <stdexcept>
#include <sys/types.h>

namespace quen::test {
namespace {

constexpr std::size_t mebibyte = std::size_t{1} << 20U;

class ProcessOutputTest : public ProcessTest {};

TEST_F(ProcessOutputTest, TakesSingleBytes) {
    std::string expected;
    for (int value = 0; value < 256; ++value) {
        expected.push_back(static_cast<char>(value));
    }
    const ProcessOutcome outcome = run(faultChild("drip"));
    EXPECT_EQ(described(outcome), "exited 0");
    EXPECT_EQ(outputOf(outcome), expected);
    EXPECT_EQ(errorsOf(outcome), expected);
}

TEST_F(ProcessOutputTest, TakesBothStreamsAtOnce) {
    const ProcessOutcome outcome = run(faultChild("both:10"));
    EXPECT_EQ(described(outcome), "exited 0");
    EXPECT_TRUE(isPattern(outputOf(outcome), 10 * mebibyte));
    EXPECT_TRUE(isPattern(errorsOf(outcome), 10 * mebibyte));
}

TEST_F(ProcessOutputTest, HasNoLimit) {
    const ProcessOutcome outcome = run(faultChild("flood:100"));
    EXPECT_EQ(described(outcome), "exited 0");
    EXPECT_TRUE(isPattern(outputOf(outcome), 100 * mebibyte));
    EXPECT_EQ(errorsOf(outcome), "");
}

TEST_F(ProcessOutputTest, HasTheMostRoomOnlyWhereTheChildIsFast) {
    EXPECT_EQ(errorsOf(run(faultChild("room:0"))), "262144");
    EXPECT_EQ(errorsOf(run(faultChild("room:8"))), "1048576");
}

TEST_F(ProcessOutputTest, IsWatchedByteForByteAsItArrives) {
    std::string output;
    std::string errors;
    ProcessInvocation invocation = faultChild("both:4");
    invocation.outputWatcher = [&](std::string_view piece) { output += piece; };
    invocation.errorWatcher = [&](std::string_view piece) { errors += piece; };
    const ProcessOutcome outcome = run(invocation);
    EXPECT_TRUE(isPattern(output, 4 * mebibyte));
    EXPECT_TRUE(isPattern(errors, 4 * mebibyte));
    EXPECT_EQ(outputOf(outcome), output);
    EXPECT_EQ(errorsOf(outcome), errors);
}

TEST_F(ProcessOutputTest, IsWatchedWhileTheChildRuns) {
    std::stop_source stop;
    ProcessInvocation invocation = faultChild("hang"); // it would never end by itself
    invocation.outputWatcher = [&](std::string_view) { stop.request_stop(); };
    EXPECT_EQ(described(runProcess(invocation, stop.get_token())), "cancelled by signal 15");
}

struct FailingWatcherCase {
    const char* name;
    std::function<void()> fail;
    std::string end;
};

std::ostream& operator<<(std::ostream& out, const FailingWatcherCase& value) {
    return out << value.name;
}

class FailingWatcherTest : public ProcessTest,
                           public testing::WithParamInterface<FailingWatcherCase> {};

TEST_P(FailingWatcherTest, EndsTheRunAndKeepsWhatCameBefore) {
    ProcessInvocation invocation = faultChild("hang");
    invocation.outputWatcher = [](std::string_view) { GetParam().fail(); };
    const ProcessOutcome outcome = run(invocation);
    EXPECT_EQ(described(outcome), GetParam().end);
    EXPECT_EQ(outputOf(outcome), "ready\n");
}

TEST_P(FailingWatcherTest, IsNotCalledAgain) {
    int calls = 0;
    ProcessInvocation invocation = faultChild("chatter");
    invocation.outputWatcher = [&](std::string_view) {
        ++calls;
        GetParam().fail();
    };
    EXPECT_EQ(run(invocation).end, RunEnd::outputLost);
    EXPECT_EQ(calls, 1);
}

INSTANTIATE_TEST_SUITE_P(
    Throwing, FailingWatcherTest,
    testing::Values(FailingWatcherCase{"no memory", [] { throw std::bad_alloc(); },
                                       "output lost by signal 15: Cannot allocate memory"},
                    FailingWatcherCase{"an exception", [] { throw std::runtime_error("full"); },
                                       "output lost by signal 15: full"},
                    FailingWatcherCase{
                        "anything", [] { throw 1; },
                        "output lost by signal 15: a watcher of the output failed"}));

class GrandchildTest : public ProcessTest, public testing::WithParamInterface<const char*> {};

TEST_P(GrandchildTest, CannotHoldTheRunPastTheDrainTimeoutAndIsLeftAlone) {
    ProcessInvocation invocation = faultChild(GetParam());
    invocation.limits.drainTimeout = std::chrono::milliseconds(30);
    Grandchild grandchild;
    invocation.outputWatcher = [&](std::string_view said) { grandchild = Grandchild(said); };
    const ProcessOutcome outcome = run(invocation);
    EXPECT_EQ(described(outcome), "exited 3");
    EXPECT_TRUE(outcome.leftOutputOpen);
    EXPECT_EQ(outputOf(outcome), std::to_string(grandchild.pid()) + "\n");
    EXPECT_GE(outcome.duration, invocation.limits.drainTimeout);
    EXPECT_LT(outcome.duration, std::chrono::seconds(10));
    // One that writes on dies of its pipe, which is how a pipe tells that nobody listens.
    if (std::string_view(GetParam()) == "grandchild:3") {
        EXPECT_TRUE(grandchild.isAlive());
        grandchild.kill();
    }
    EXPECT_TRUE(grandchild.endsSoon());
}

INSTANTIATE_TEST_SUITE_P(Silent, GrandchildTest, testing::Values("grandchild:3"));
INSTANTIATE_TEST_SUITE_P(Writing, GrandchildTest, testing::Values("grandchild-flood:3"));

TEST_F(ProcessOutputTest, OfTheChildItselfIsWholeWithoutADrainTimeout) {
    ProcessInvocation invocation = faultChild("both:2");
    invocation.limits.drainTimeout = std::chrono::milliseconds(0);
    for (int i = 0; i < 20; ++i) {
        const ProcessOutcome outcome = run(invocation);
        EXPECT_EQ(described(outcome), "exited 0");
        EXPECT_TRUE(isPattern(outputOf(outcome), 2 * mebibyte));
        EXPECT_TRUE(isPattern(errorsOf(outcome), 2 * mebibyte));
    }
}

/// Each reading is later than the last by the same step.
class SteppingClock : public RunClock {
public:
    explicit SteppingClock(std::chrono::microseconds step) noexcept : step_(step) {}

    TimePoint now() const noexcept override { return TimePoint(step_ * ++readings_); }

private:
    const std::chrono::microseconds step_;
    mutable std::atomic<int> readings_ = 0;
};

class ClockStepTest : public ProcessTest, public testing::WithParamInterface<int> {};

/// After a piece of output the run pauses for 2 ms. If the pause could end between two readings of
/// one round, nothing would end that round: the child waits for room in its pipe, and the run for
/// the child.
TEST_P(ClockStepTest, NeverLeavesTheChildWaitingForRoom) {
    const SteppingClock clock{std::chrono::microseconds(GetParam())};
    ProcessInvocation invocation = faultChild("flood:2");
    invocation.limits.total.reset();
    std::stop_source stop;
    std::promise<void> end;
    const auto watchdog = std::async(std::launch::async, [&stop, ended = end.get_future()] {
        if (ended.wait_for(std::chrono::seconds(20)) == std::future_status::timeout) {
            stop.request_stop();
        }
    });
    const ProcessOutcome outcome = runProcess(invocation, stop.get_token(), clock);
    end.set_value();
    EXPECT_EQ(described(outcome), "exited 0");
    EXPECT_TRUE(isPattern(outputOf(outcome), 2 * mebibyte));
}

// With each step the pause ends between another two readings: the second and third after its
// beginning, the third and fourth, and so on.
INSTANTIATE_TEST_SUITE_P(Microseconds, ClockStepTest,
                         testing::Values(4000, 1333, 800, 571, 444, 364, 308, 267, 100));

TEST_F(ProcessOutputTest, IsReplayedByTheStandIn) {
    const std::string name = testing::TempDir() + "quen-replay-" + std::to_string(::getpid());
    std::ofstream(name) << "captured\n";
    ProcessInvocation invocation = faultChild("status");
    invocation.environment = {{"QUEN_FAULT", "replay:1"}, {"QUEN_FAULT_ERRORS", String(name)}};
    const ProcessOutcome outcome = run(invocation);
    EXPECT_EQ(described(outcome), "exited 1");
    EXPECT_EQ(outputOf(outcome), "");
    EXPECT_EQ(errorsOf(outcome), "captured\n");
    std::remove(name.c_str());
}

} // namespace
} // namespace quen::test
