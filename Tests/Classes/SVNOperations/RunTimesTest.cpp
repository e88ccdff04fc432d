#include "Classes/SVNController.h"
#include "QuenFoundation/QuenSourceControlConstants.h"
#include "Tests/Support/HostRecorder.h"
#include "Tests/Support/Operations.h"

#include <algorithm>
#include <ctime>
#include <gtest/gtest.h>
#include <string>

namespace quen::test {
namespace {

/// What the client writes in the test's two sizes.
struct Written {
    const char* name;
    std::string (*output)(std::size_t size);
    std::string (*errors)(std::size_t size);
};

std::string nothing(std::size_t /*size*/) {
    return {};
}

std::string manyErrorLines(std::size_t size) {
    std::string text;
    for (std::size_t i = 0; i < size / 40; ++i) {
        text += "svn: E155007: '/w/" + std::to_string(i) + "' is not a working copy\n";
    }
    return text;
}

std::string manyWarnings(std::size_t size) {
    std::string text;
    for (std::size_t i = 0; i < size / 40; ++i) {
        text += "svn: warning: W155010: The node '" + std::to_string(i) + "' was not found.\n";
    }
    return text;
}

std::string manyLines(std::size_t size) {
    std::string text;
    while (text.size() < size) {
        text += "Sending        src/a file of the working copy.c\n";
    }
    return text;
}

std::string oneLine(std::size_t size) {
    return std::string(size, 'x');
}

/// Not UTF-8.
std::string oneOldLine(std::size_t size) {
    return std::string(size, '\xfc');
}

/// Seconds of this thread that a whole run takes, the client's own left out.
double secondsOf(std::int32_t type, const PreparedRun& run) {
    HostRecorder recorder;
    SVNController controller;
    const Request request{.type = type,
                          .sourceTree = nullptr,
                          .destination = "b.c",
                          .files = StringArray{"a.c"},
                          .options = {{QuenSourceControlRequestOptionMessage, "m"}},
                          .startingRevision = "1",
                          .endingRevision = "2"};
    const auto operation = controller.operationForRequest(request.make());
    recorder.replay({run});
    timespec begin{};
    timespec end{};
    ::clock_gettime(CLOCK_THREAD_CPUTIME_ID, &begin);
    operation->run();
    ::clock_gettime(CLOCK_THREAD_CPUTIME_ID, &end);
    return static_cast<double>(end.tv_sec - begin.tv_sec) +
           static_cast<double>(end.tv_nsec - begin.tv_nsec) / 1e9;
}

double fastestOf(int tries, std::int32_t type, const PreparedRun& run) {
    double fastest = secondsOf(type, run);
    for (int i = 1; i < tries; ++i) {
        fastest = std::min(fastest, secondsOf(type, run));
    }
    return fastest;
}

class RunTimes : public testing::TestWithParam<Written> {};

/// Sixteen times the text may take 16 times as long; what goes over all of it again for each line
/// or piece takes 256 times as long.
TEST_P(RunTimes, GrowNoFasterThanWhatTheClientWrites) {
    constexpr std::size_t small = 32 * 1024;
    const auto runOf = [](std::size_t size) {
        return PreparedRun{.standardOutput = GetParam().output(size),
                           .standardError = GetParam().errors(size),
                           .exitStatus = 1};
    };
    for (const std::int32_t type : {RequestTypeCommit, RequestTypeDiff, RequestTypeUpdate,
                                    RequestTypeStatus, RequestTypeLog}) {
        const double once = fastestOf(5, type, runOf(small));
        const double more = fastestOf(3, type, runOf(16 * small));
        EXPECT_LT(more, 64 * std::max(once, 0.0002)) << type;
    }
}

INSTANTIATE_TEST_SUITE_P(Texts, RunTimes,
                         testing::Values(Written{"many error lines", nothing, manyErrorLines},
                                         Written{"many warnings", nothing, manyWarnings},
                                         Written{"an error without a line feed", nothing, oneLine},
                                         Written{"many lines", manyLines, nothing},
                                         Written{"one line without a line feed", oneLine, nothing},
                                         Written{"one line that is not UTF-8", oneOldLine,
                                                 nothing}));

} // namespace
} // namespace quen::test
