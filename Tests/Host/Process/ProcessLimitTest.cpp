#include "Tests/Host/Process/ProcessTestSupport.h"

#include <algorithm>
#include <optional>

namespace quen::test {
namespace {

using std::chrono::milliseconds;

struct LimitCase {
    const char* mode;
    std::optional<milliseconds> total;
    std::optional<milliseconds> idle;
    std::string end;
};

std::ostream& operator<<(std::ostream& out, const LimitCase& value) {
    return out << value.mode;
}

class LimitTest : public ProcessTest, public testing::WithParamInterface<LimitCase> {};

TEST_P(LimitTest, EndsTheChild) {
    ProcessInvocation invocation = faultChild(GetParam().mode);
    invocation.limits.total = GetParam().total;
    invocation.limits.idle = GetParam().idle;
    invocation.limits.terminationGrace = milliseconds(20);
    const ProcessOutcome outcome = run(invocation);
    EXPECT_EQ(described(outcome), GetParam().end);
    EXPECT_LT(outcome.duration, std::chrono::seconds(10));
}

constexpr milliseconds longTime{60'000};
constexpr milliseconds shortTime{100};
constexpr milliseconds forever = milliseconds::max();

INSTANTIATE_TEST_SUITE_P(
    Total, LimitTest,
    testing::Values(LimitCase{"hang", shortTime, {}, "timed out by signal 15"},
                    // Long enough for the child to have become deaf.
                    LimitCase{"hang-deaf", milliseconds(1000), {}, "timed out by signal 9"},
                    LimitCase{"hang-closed", shortTime, {}, "timed out by signal 15"},
                    LimitCase{"chatter", shortTime, longTime, "timed out by signal 15"},
                    LimitCase{"hang", milliseconds(0), {}, "timed out by signal 15"},
                    LimitCase{"say:0", forever, {}, "exited 0"}));

INSTANTIATE_TEST_SUITE_P(
    Idle, LimitTest,
    testing::Values(LimitCase{"hang", {}, shortTime, "idle timed out by signal 15"},
                    LimitCase{"hang", longTime, shortTime, "idle timed out by signal 15"},
                    LimitCase{"hang-closed", {}, shortTime, "idle timed out by signal 15"},
                    LimitCase{"say:0", {}, forever, "exited 0"}));

/// Limits stand still while a person is asked something, and go on afterwards.
struct QuestionCase {
    const char* name;
    std::optional<milliseconds> total;
    std::optional<milliseconds> idle;
    std::string end;
};

std::ostream& operator<<(std::ostream& out, const QuestionCase& value) {
    return out << value.name;
}

class LimitWhileAskedTest : public ProcessTest, public testing::WithParamInterface<QuestionCase> {};

TEST_P(LimitWhileAskedTest, StandsStill) {
    constexpr milliseconds asked{400};
    ProcessInvocation invocation = faultChild("hang");
    invocation.limits.total = GetParam().total;
    invocation.limits.idle = GetParam().idle;
    invocation.limits.terminationGrace = milliseconds(20);
    const auto start = std::chrono::steady_clock::now();
    invocation.uncountedTime = [&]() -> std::chrono::nanoseconds {
        return std::min<std::chrono::nanoseconds>(std::chrono::steady_clock::now() - start, asked);
    };
    const ProcessOutcome outcome = run(invocation);
    EXPECT_EQ(described(outcome), GetParam().end);
    EXPECT_GE(outcome.duration, asked + shortTime);
    EXPECT_LT(outcome.duration, std::chrono::seconds(10));
}

INSTANTIATE_TEST_SUITE_P(
    Each, LimitWhileAskedTest,
    testing::Values(QuestionCase{"total", shortTime, {}, "timed out by signal 15"},
                    QuestionCase{"idle", {}, shortTime, "idle timed out by signal 15"},
                    QuestionCase{"both", longTime, shortTime, "idle timed out by signal 15"}));

class ProcessLimitTest : public ProcessTest {};

TEST_F(ProcessLimitTest, AChildThatSpeaksIsNotSilent) {
    std::stop_source stop;
    ProcessInvocation invocation = faultChild("chatter");
    invocation.limits.idle = milliseconds(300);
    std::size_t heard = 0;
    invocation.outputWatcher = [&](std::string_view piece) {
        heard += piece.size();
        if (heard > 450) { // more milliseconds than the limit has
            stop.request_stop();
        }
    };
    EXPECT_EQ(described(runProcess(invocation, stop.get_token())), "cancelled by signal 15");
}

} // namespace
} // namespace quen::test
