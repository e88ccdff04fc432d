#include "Tests/Host/Process/ProcessTestSupport.h"

#include <csignal>

namespace quen::test {
namespace {

struct EndCase {
    const char* mode;
    std::string end;
    std::string output;
    std::string errors;
};

std::ostream& operator<<(std::ostream& out, const EndCase& value) {
    return out << value.mode;
}

class ProcessEndTest : public ProcessTest, public testing::WithParamInterface<EndCase> {};

TEST_P(ProcessEndTest, IsReportedWithEverythingThatWasWritten) {
    const ProcessOutcome outcome = run(faultChild(GetParam().mode));
    EXPECT_EQ(described(outcome), GetParam().end);
    EXPECT_EQ(outputOf(outcome), GetParam().output);
    EXPECT_EQ(errorsOf(outcome), GetParam().errors);
    EXPECT_FALSE(outcome.leftOutputOpen);
    EXPECT_FALSE(outcome.leftErrorsOpen);
    EXPECT_GT(outcome.duration.count(), 0);
}

std::string signalled(int signal) {
    return "signalled by signal " + std::to_string(signal);
}

INSTANTIATE_TEST_SUITE_P(ByItself, ProcessEndTest,
                         testing::Values(EndCase{"exit:0", "exited 0", "", ""},
                                         EndCase{"exit:1", "exited 1", "", ""},
                                         EndCase{"exit:3", "exited 3", "", ""},
                                         EndCase{"exit:255", "exited 255", "", ""},
                                         EndCase{"say:0", "exited 0", "output\n", "errors\n"},
                                         EndCase{"say:1", "exited 1", "output\n", "errors\n"},
                                         EndCase{"close-output:7", "exited 7", "", ""},
                                         EndCase{"read-input", "exited 0", "0 bytes\n", ""}));

INSTANTIATE_TEST_SUITE_P(
    BySignal, ProcessEndTest,
    testing::Values(EndCase{"die-before:9", signalled(SIGKILL), "", ""},
                    EndCase{"die-middle:9", signalled(SIGKILL), "out", ""},
                    EndCase{"die-after:9", signalled(SIGKILL), "output\n", "errors\n"},
                    EndCase{"die-before:11", signalled(SIGSEGV), "", ""},
                    EndCase{"die-middle:11", signalled(SIGSEGV), "out", ""},
                    EndCase{"die-after:11", signalled(SIGSEGV), "output\n", "errors\n"},
                    EndCase{"die-before:15", signalled(SIGTERM), "", ""},
                    EndCase{"die-middle:15", signalled(SIGTERM), "out", ""},
                    EndCase{"die-after:15", signalled(SIGTERM), "output\n", "errors\n"}));

INSTANTIATE_TEST_SUITE_P(
    WithBytesThatAreNoText, ProcessEndTest,
    testing::Values(EndCase{"garbage", "exited 0", "\xff\xfe\x80 <\xc0\xaf", ""},
                    EndCase{"half-character", "exited 0", "caf\xc3", ""},
                    EndCase{"zero-bytes", "exited 0", std::string("a\0b\0", 4), ""}));

} // namespace
} // namespace quen::test
