#include "Tools/Terminal/ExitStatus.h"
#include "Tools/Terminal/InterruptWatch.h"

#include <array>
#include <atomic>
#include <chrono>
#include <csignal>
#include <future>
#include <gtest/gtest.h>
#include <poll.h>
#include <unistd.h>

namespace quen::test {

using namespace tools;

namespace {

constexpr std::chrono::seconds patience{20};

class InterruptWatchTest : public testing::TestWithParam<int> {};

TEST_P(InterruptWatchTest, CallsInsteadOfEnding) {
    std::promise<void> called;
    const InterruptWatch watch;
    const InterruptWatch::Action action([&] { called.set_value(); });
    EXPECT_FALSE(InterruptWatch::wasInterrupted());

    kill(getpid(), GetParam());

    ASSERT_EQ(called.get_future().wait_for(patience), std::future_status::ready);
    EXPECT_TRUE(InterruptWatch::wasInterrupted());
}

INSTANTIATE_TEST_SUITE_P(Signals, InterruptWatchTest, testing::Values(SIGINT, SIGTERM, SIGHUP));

TEST(InterruptWatch, LeavesAloneWhatIsIgnored) {
    const auto former = std::signal(SIGHUP, SIG_IGN);
    {
        std::atomic<int> calls = 0;
        std::promise<void> called;
        const InterruptWatch watch;
        const InterruptWatch::Action action([&] {
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

TEST(InterruptWatch, ActsAtOnceWhereTheInterruptCameBefore) {
    const InterruptWatch watch;
    kill(getpid(), SIGINT);
    std::array<int, 2> ends{};
    ASSERT_EQ(pipe(ends.data()), 0);
    EXPECT_FALSE(waitUntilReady(ends[0], POLLIN));

    int calls = 0;
    const InterruptWatch::Action action([&] { ++calls; });

    EXPECT_EQ(calls, 1);
    close(ends[0]);
    close(ends[1]);
}

TEST(InterruptWatch, LeavesKeysToWhomTheyAreLent) {
    const InterruptWatch watch;
    std::promise<void> called;
    const InterruptWatch::Action action([&] { called.set_value(); });
    const InterruptWatch::KeysLent keys;

    kill(getpid(), SIGINT);
    kill(getpid(), SIGQUIT);
    EXPECT_FALSE(InterruptWatch::wasInterrupted());

    kill(getpid(), SIGTERM);
    EXPECT_EQ(called.get_future().wait_for(patience), std::future_status::ready);
}

TEST(InterruptWatch, WaitsForADescriptor) {
    const InterruptWatch watch;
    std::array<int, 2> ends{};
    ASSERT_EQ(pipe(ends.data()), 0);
    EXPECT_TRUE(waitUntilReady(ends[1], POLLOUT));
    close(ends[1]);
    EXPECT_TRUE(waitUntilReady(ends[0], POLLIN));
    close(ends[0]);
}

TEST(InterruptWatch, GivesTheSignalsBack) {
    { const InterruptWatch watch; }
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
            const InterruptWatch watch;
            kill(getpid(), SIGINT);
            kill(getpid(), SIGTERM);
            std::promise<void>().get_future().wait_for(patience);
        },
        testing::ExitedWithCode(ExitInterrupted), "");
}

TEST(InterruptWatchDeathTest, SoDoesTheKeyThatQuits) {
    testing::GTEST_FLAG(death_test_style) = "threadsafe";
    EXPECT_EXIT(
        {
            const InterruptWatch watch;
            kill(getpid(), SIGQUIT);
            std::promise<void>().get_future().wait_for(patience);
        },
        testing::ExitedWithCode(ExitInterrupted), "");
}

} // namespace

} // namespace quen::test
