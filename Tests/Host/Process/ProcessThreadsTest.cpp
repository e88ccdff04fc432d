#include "Tests/Host/Process/ProcessTestSupport.h"

#include <future>

namespace quen::test {
namespace {

class ProcessThreadsTest : public ProcessTest {};

/// Every kind of run a few times over, by one thread of many.
std::string wrongRuns(int thread) {
    struct Case {
        const char* mode;
        const char* end;
        std::size_t size;
    };
    constexpr Case cases[] = {{"say:0", "exited 0", 7},
                              {"exit:3", "exited 3", 0},
                              {"die-after:9", "signalled by signal 9", 7},
                              {"drip", "exited 0", 256},
                              {"both:1", "exited 0", 1U << 20U}};
    std::string wrong;
    for (int i = 0; i < 25; ++i) {
        const Case& expected = cases[(thread + i) % 5];
        const ProcessOutcome outcome = run(faultChild(expected.mode));
        if (described(outcome) != expected.end || outputOf(outcome).size() != expected.size) {
            wrong += std::string(expected.mode) + ": " + described(outcome) + '\n';
        }
    }
    return wrong;
}

TEST_F(ProcessThreadsTest, RunAtOnceWithoutMixingAnythingUp) {
    std::vector<std::future<std::string>> threads;
    for (int thread = 0; thread < 8; ++thread) {
        threads.push_back(std::async(std::launch::async, wrongRuns, thread));
    }
    for (std::future<std::string>& thread : threads) {
        EXPECT_EQ(thread.get(), "");
    }
}

} // namespace
} // namespace quen::test
