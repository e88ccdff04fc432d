#include "Tests/Host/Process/ProcessTestSupport.h"

#include <atomic>
#include <csignal>
#include <ctime>
#include <fstream>
#include <future>
#include <stdexcept>
#include <string>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>
#include <utility>

namespace quen::test {
namespace {

using std::chrono::milliseconds;

/// Whether a thread of this process sleeps in a system call.
bool isAsleep(pid_t thread) {
    std::ifstream file("/proc/self/task/" + std::to_string(thread) + "/stat");
    std::string stat;
    std::getline(file, stat);
    return stat.find(") S ") != std::string::npos;
}

/// Cancels from a thread of its own once the child has said something and the run's thread waits
/// for more.
class CancellingThread {
public:
    explicit CancellingThread(std::stop_source& stop)
        : thread_([&stop, said = running_.get_future()]() mutable {
              const pid_t running = said.get();
              const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(10);
              while (!isAsleep(running) && std::chrono::steady_clock::now() < deadline) {
                  std::this_thread::yield();
              }
              stop.request_stop();
          }) {}
    ~CancellingThread() { thread_.join(); }

    /// On the run's thread.
    void childSpoke() {
        if (!std::exchange(hasSpoken_, true)) {
            running_.set_value(::gettid());
        }
    }

private:
    std::promise<pid_t> running_;
    bool hasSpoken_ = false;
    std::thread thread_;
};

struct CancelCase {
    const char* mode;
    milliseconds terminationGrace;
    std::string end;
    std::string output;
};

std::ostream& operator<<(std::ostream& out, const CancelCase& value) {
    return out << value.mode;
}

class CancelTest : public ProcessTest, public testing::WithParamInterface<CancelCase> {};

TEST_P(CancelTest, EndsTheChildFromAnotherThread) {
    std::stop_source stop;
    CancellingThread other(stop);
    ProcessInvocation invocation = faultChild(GetParam().mode);
    invocation.limits.terminationGrace = GetParam().terminationGrace;
    invocation.outputWatcher = [&](std::string_view) { other.childSpoke(); };
    const ProcessOutcome outcome = runProcess(invocation, stop.get_token());
    EXPECT_EQ(described(outcome), GetParam().end);
    EXPECT_EQ(outputOf(outcome), GetParam().output);
    EXPECT_LT(outcome.duration, std::chrono::seconds(10));
}

constexpr milliseconds longTime{60'000};

INSTANTIATE_TEST_SUITE_P(
    While, CancelTest,
    testing::Values(CancelCase{"hang", longTime, "cancelled by signal 15", "ready\n"},
                    CancelCase{"last-words:4", longTime, "cancelled 4", "ready\nasked to end\n"},
                    CancelCase{"hang-deaf", milliseconds(30), "cancelled by signal 9", "ready\n"},
                    CancelCase{"hang-deaf", milliseconds(0), "cancelled by signal 9", "ready\n"}));

class ProcessCancelTest : public ProcessTest {};

TEST_F(ProcessCancelTest, BeforeTheRunStartsNothing) {
    std::stop_source stop;
    stop.request_stop();
    stop.request_stop();
    ProcessInvocation invocation = faultChild("say:0");
    for (int i = 0; i < 2; ++i) {
        const ProcessOutcome outcome = runProcess(invocation, stop.get_token());
        EXPECT_EQ(described(outcome), "cancelled");
        EXPECT_EQ(outputOf(outcome), "");
    }
}

TEST_F(ProcessCancelTest, AfterTheRunChangesNothingAboutIt) {
    std::stop_source stop;
    const ProcessOutcome outcome = runProcess(faultChild("say:1"), stop.get_token());
    stop.request_stop();
    stop.request_stop();
    EXPECT_EQ(described(outcome), "exited 1");
    EXPECT_EQ(described(runProcess(faultChild("say:1"), stop.get_token())), "cancelled");
}

/// Cancels when the child has ended and the run, busy with its first words, has not seen it yet.
ProcessOutcome cancelTooLate(ProcessInvocation invocation) {
    std::stop_source stop;
    bool isFirst = true;
    invocation.outputWatcher = [&](std::string_view said) {
        if (std::exchange(isFirst, false)) {
            ::kill(std::stoi(std::string(said)), SIGUSR1);
            siginfo_t info{};
            EXPECT_EQ(::waitid(P_ALL, 0, &info, WEXITED | WNOWAIT), 0);
            stop.request_stop();
        }
    };
    return runProcess(invocation, stop.get_token());
}

TEST_F(ProcessCancelTest, AfterTheChildsEndChangesNothing) {
    ProcessInvocation invocation = faultChild("on-request:3");
    for (const milliseconds timeout : {milliseconds(0), milliseconds(5000)}) {
        invocation.limits.drainTimeout = timeout;
        const ProcessOutcome outcome = cancelTooLate(invocation);
        EXPECT_EQ(described(outcome), "exited 3");
        EXPECT_TRUE(outputOf(outcome).ends_with("\noutput\n")) << outputOf(outcome);
        EXPECT_EQ(errorsOf(outcome), "errors\n");
    }
}

TEST_F(ProcessCancelTest, StaysTheReasonWhateverFailsAfterwards) {
    std::stop_source stop;
    ProcessInvocation invocation = faultChild("last-words:4");
    invocation.outputWatcher = [&](std::string_view) {
        if (stop.stop_requested()) {
            throw std::runtime_error("no more words");
        }
        stop.request_stop();
    };
    EXPECT_EQ(described(runProcess(invocation, stop.get_token())), "cancelled 4");
}

std::chrono::nanoseconds processorTimeOfThisThread() {
    timespec time{};
    ::clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
    return std::chrono::seconds(time.tv_sec) + std::chrono::nanoseconds(time.tv_nsec);
}

TEST_F(ProcessCancelTest, IsWaitedForWithoutSpinning) {
    std::stop_source stop;
    ProcessInvocation invocation = faultChild("hang-deaf");
    invocation.limits.terminationGrace = milliseconds(200);
    invocation.outputWatcher = [&](std::string_view) { stop.request_stop(); };
    const auto before = processorTimeOfThisThread();
    EXPECT_EQ(described(runProcess(invocation, stop.get_token())), "cancelled by signal 9");
    EXPECT_LT(processorTimeOfThisThread() - before, milliseconds(100));
}

TEST_F(ProcessCancelTest, HoldsADescriptorOnlyDuringARun) {
    const std::vector<int> before = openDescriptors();
    std::vector<std::stop_source> sources(3);
    for (const std::stop_source& source : sources) {
        EXPECT_EQ(described(runProcess(faultChild("exit:0"), source.get_token())), "exited 0");
        EXPECT_EQ(openDescriptors(), before);
    }
}

TEST_F(ProcessCancelTest, ReachesAStoppedChild) {
    std::stop_source stop;
    ProcessInvocation invocation = faultChild("stop");
    invocation.limits.terminationGrace = milliseconds(5000);
    invocation.outputWatcher = [&](std::string_view) {
        siginfo_t info{};
        EXPECT_EQ(::waitid(P_ALL, 0, &info, WSTOPPED | WNOWAIT), 0);
        stop.request_stop();
    };
    EXPECT_EQ(described(runProcess(invocation, stop.get_token())), "cancelled by signal 15");
}

TEST_F(ProcessCancelTest, AtAnyMomentFindsTheRunOrLetsItEnd) {
    for (int i = 0; i < 50; ++i) {
        std::stop_source stop;
        std::thread other([&stop] { stop.request_stop(); });
        const std::string end = described(runProcess(faultChild("say:0"), stop.get_token()));
        other.join();
        EXPECT_TRUE(end == "exited 0" || end == "cancelled" || end == "cancelled by signal 15" ||
                    end == "cancelled 0")
            << end;
    }
}

TEST_F(ProcessCancelTest, EndsAllRunsWithItsToken) {
    std::stop_source stop;
    std::atomic<int> ready = 0;
    std::vector<std::future<std::string>> runs;
    for (int i = 0; i < 3; ++i) {
        runs.push_back(std::async(std::launch::async, [&] {
            ProcessInvocation invocation = faultChild("hang");
            invocation.outputWatcher = [&](std::string_view) {
                if (++ready == 3) {
                    stop.request_stop();
                }
            };
            return described(runProcess(invocation, stop.get_token()));
        }));
    }
    for (std::future<std::string>& run : runs) {
        EXPECT_EQ(run.get(), "cancelled by signal 15");
    }
}

class FamilyTest : public ProcessTest, public testing::WithParamInterface<const char*> {};

TEST_P(FamilyTest, IsEndedAsAWhole) {
    std::stop_source stop;
    ProcessInvocation invocation = faultChild(GetParam());
    invocation.limits.drainTimeout = milliseconds(30);
    Grandchild grandchild;
    std::string said;
    invocation.outputWatcher = [&](std::string_view piece) {
        said += piece;
        if (grandchild.pid() < 0) {
            grandchild = Grandchild(said);
        }
        if (std::string_view(GetParam()) == "family" || said.ends_with("ready\n")) {
            stop.request_stop();
        }
    };
    EXPECT_EQ(described(runProcess(invocation, stop.get_token())), "cancelled by signal 15");
    EXPECT_TRUE(grandchild.endsSoon());
}

INSTANTIATE_TEST_SUITE_P(Listening, FamilyTest, testing::Values("family"));
INSTANTIATE_TEST_SUITE_P(Deaf, FamilyTest, testing::Values("family-deaf"));

} // namespace
} // namespace quen::test
