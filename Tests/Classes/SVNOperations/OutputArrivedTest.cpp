#include "Benchmarks/Reports/GeneratedReports.h"
#include "Classes/SVNOperations/SVNBlameOperation.h"
#include "Classes/SVNOperations/SVNDiffOperation.h"
#include "Classes/SVNOperations/SVNInfoOperation.h"
#include "Classes/SVNOperations/SVNListOperation.h"
#include "Classes/SVNOperations/SVNLogOperation.h"
#include "Classes/SVNOperations/SVNStatusOperation.h"
#include "Tests/Support/HostRecorder.h"
#include "Tests/Support/Operations.h"

#include <gtest/gtest.h>

namespace quen::test {
namespace {

/// An operation that reads while the client runs, and a report for it.
struct Streamed {
    std::shared_ptr<QuenSourceControlTaskOperation> (*make)();
    std::string report;
};

template <typename Class> std::shared_ptr<QuenSourceControlTaskOperation> make() {
    return makeOperation<Class>({.destination = "b.c", .files = StringArray{"a.c"}});
}

const char* const statusReport =
    "<status><target path='.'><entry path='a'><wc-status item='modified' props='none'/></entry>"
    "<entry path='b'><wc-status item='odd' props='none'/></entry></target></status>";

const char* const summaryReport =
    "<diff><paths><path item='modified' kind='file'>a</path><path item='odd' kind='file'>b</path>"
    "<path item='added' props='none' kind='dir'>a longer name than that</path></paths></diff>";

std::vector<Streamed> streamedOperations() {
    return {{make<SVNStatusOperation>, statusReport},
            {make<SVNLogOperation>, benchmarks::logReportOf(3)},
            {make<SVNListOperation>, benchmarks::listReportOf(3)},
            {make<SVNInfoOperation>, benchmarks::infoReportOf(2)},
            {make<SVNDiffOperation>, summaryReport},
            {make<SVNBlameOperation>, benchmarks::blameReportOf(5)}};
}

/// What an operation leaves, and what it said.
struct Outcome {
    Value result;
    Error error;
    std::size_t logLines = 0;
    friend bool operator==(const Outcome&, const Outcome&) = default;
};

/// Hands the pieces over, then the data, as a host does.
Outcome outcomeOf(const Streamed& streamed, const std::vector<std::string_view>& pieces,
                  std::string_view data) {
    HostRecorder host(1);
    const auto operation = streamed.make();
    for (const std::string_view piece : pieces) {
        operation->outputArrived(piece);
    }
    EXPECT_TRUE(operation->result().isNothing());
    EXPECT_TRUE(operation->error().isNil());
    EXPECT_EQ(host.log().size(), 0U);
    operation->setData(dataOf(data));
    operation->parseData();
    return {operation->result(), operation->error(), host.log().size()};
}

TEST(OutputArrived, PiecesCutAnywhereLeaveWhatTheDataAloneLeaves) {
    for (const Streamed& streamed : streamedOperations()) {
        const std::string_view report = streamed.report;
        const Outcome whole = outcomeOf(streamed, {}, report);
        ASSERT_TRUE(whole.error.isNil());
        for (std::size_t cut = 0; cut <= report.size(); ++cut) {
            EXPECT_EQ(outcomeOf(streamed, {report.substr(0, cut), report.substr(cut)}, report),
                      whole);
        }
    }
}

TEST(OutputArrived, AHostThatStopsInBetweenIsServedFromTheData) {
    for (const Streamed& streamed : streamedOperations()) {
        const std::string_view report = streamed.report;
        EXPECT_EQ(outcomeOf(streamed, {report.substr(0, report.size() / 2)}, report),
                  outcomeOf(streamed, {}, report));
    }
}

TEST(OutputArrived, PiecesOfAnotherReportAsLongAsTheDataDoNotCount) {
    for (const Streamed& streamed : streamedOperations()) {
        const std::string& report = streamed.report;
        for (const std::size_t at : {report.size() / 3, report.size() / 2, report.size() - 20}) {
            std::string other = report;
            other[at] = other[at] == 'x' ? 'y' : 'x';
            EXPECT_EQ(outcomeOf(streamed, {other}, report), outcomeOf(streamed, {}, report)) << at;
        }
    }
}

TEST(OutputArrived, AReportThatEndsTooSoonFailsAsItDoesWithoutPieces) {
    for (const Streamed& streamed : streamedOperations()) {
        const std::string_view report = std::string_view(streamed.report).substr(0, 150);
        const Outcome cut = outcomeOf(streamed, {report}, report);
        // A malformed summary passes in silence.
        EXPECT_EQ(cut.error.isNil(), streamed.report == summaryReport);
        EXPECT_EQ(cut.logLines, 0U);
        EXPECT_EQ(cut, outcomeOf(streamed, {}, report));
    }
}

} // namespace
} // namespace quen::test
