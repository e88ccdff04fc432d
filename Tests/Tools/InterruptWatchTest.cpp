#include "Tools/Commands/CommandLine/CommandLine.h"
#include "Tools/Terminal/InterruptWatch.h"

#include <atomic>
#include <chrono>
#include <csignal>
#include <future>
#include <gtest/gtest.h>
#include <unistd.h>

namespace quen::test {

using namespace tools;

namespace {

constexpr std::chrono::seconds patience{20};

class InterruptWatchTest : public testing::TestWithParam<int> {};

TEST_P(InterruptWatchTest, CallsInsteadOfEnding) {
    std::promise<void> called;
    const InterruptWatch watch([&] { called.set_value(); });
    EXPECT_FALSE(watch.wasInterrupted());

    kill(getpid(), GetParam());

    ASSERT_EQ(called.get_future().wait_for(patience), std::future_status::ready);
    EXPECT_TRUE(watch.wasInterrupted());
}

INSTANTIATE_TEST_SUITE_P(Signals, InterruptWatchTest, testing::Values(SIGINT, SIGTERM, SIGHUP));

TEST(InterruptWatch, LeavesAloneWhatIsIgnored) {
    const auto former = std::signal(SIGHUP, SIG_IGN);
    {
        std::atomic<int> calls = 0;
        std::promise<void> called;
        const InterruptWatch watch([&] {
            ++calls;
            called.set_value();
        });

        kill(getpid(), SIGHUP);
        kill(getpid(), SIGINT);

        ASSERT_EQ(called.get_future().wait_for(patience), std::future_status::ready);
        EXPECT_EQ(calls, 1);
    }
    std::signal(SIGHUP, former);
}

TEST(InterruptWatch, GivesTheSignalsBack) {
    {
        const InterruptWatch watch([] {});
    }
    sigset_t blocked;
    pthread_sigmask(SIG_SETMASK, nullptr, &blocked);
    EXPECT_EQ(sigismember(&blocked, SIGINT), 0);
    EXPECT_EQ(sigismember(&blocked, SIGTERM), 0);
    EXPECT_EQ(sigismember(&blocked, SIGHUP), 0);
}

TEST(InterruptWatchDeathTest, TheSecondInterruptEndsTheProgram) {
    testing::GTEST_FLAG(death_test_style) = "threadsafe";
    EXPECT_EXIT(
        {
            const InterruptWatch watch([] {});
            kill(getpid(), SIGINT);
            kill(getpid(), SIGTERM);
            std::promise<void>().get_future().wait_for(patience);
        },
        testing::ExitedWithCode(ExitInterrupted), "");
}

} // namespace

} // namespace quen::test
