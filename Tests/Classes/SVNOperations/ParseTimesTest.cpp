#include "Benchmarks/Reports/GeneratedReports.h"
#include "Classes/SVNOperations/SVNBlameOperation.h"
#include "Classes/SVNOperations/SVNLogOperation.h"
#include "Classes/SVNOperations/SVNStatusOperation.h"
#include "Tests/Support/HostRecorder.h"
#include "Tests/Support/Operations.h"

#include <chrono>
#include <gtest/gtest.h>
#include <string>

namespace quen::test {
namespace {

/// A query that tells the log how long its records took.
struct Timed {
    const char* words;
    std::shared_ptr<QuenSourceControlTaskOperation> (*make)();
    /// Of many records.
    std::string report;
    /// A report of one record behind a text of many megabytes that belongs to none.
    std::string beginning;
    std::string record;
};

template <typename Class> std::shared_ptr<QuenSourceControlTaskOperation> make() {
    return makeOperation<Class>({.files = StringArray{"a.c"}});
}

std::vector<Timed> timedQueries() {
    constexpr std::size_t many = 20000;
    return {{"Status operation data parsed in: ", make<SVNStatusOperation>,
             benchmarks::statusReportOf(many), "<status>",
             "<target><entry path='a'/></target></status>"},
            {"Time to set parse log operation data: ", make<SVNLogOperation>,
             benchmarks::logReportOf(many), "<log>", "<logentry revision='1'/></log>"},
            {"Blame operation data parsed in: ", make<SVNBlameOperation>,
             benchmarks::blameReportOf(many), "<blame>",
             "<target><entry line-number='1'/></target></blame>"}};
}

struct Times {
    double logged = -1;
    double whole = 0;
};

/// Serves the report as a host does, in pieces first or not, and reads the line in the log.
Times timesOf(const Timed& query, const std::string& report, bool inPieces) {
    HostRecorder host(3);
    const auto operation = query.make();
    const auto start = std::chrono::steady_clock::now();
    if (inPieces) {
        operation->outputArrived(report);
    }
    operation->setData(dataOf(report));
    operation->parseData();
    Times times;
    times.whole = std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
    EXPECT_EQ(host.log().size(), 1U);
    const std::string line = host.log().front().text.str();
    EXPECT_TRUE(line.starts_with(query.words)) << line;
    times.logged = std::stod(line.substr(std::string(query.words).size()));
    return times;
}

TEST(ParseTimes, AreThoseOfTheRecordsAlsoWhereTheReportComesInPieces) {
    for (const Timed& query : timedQueries()) {
        for (const bool inPieces : {false, true}) {
            const Times times = timesOf(query, query.report, inPieces);
            EXPECT_GT(times.logged, 0.0) << query.words << inPieces;
            EXPECT_LE(times.logged, times.whole + 0.0001) << query.words << inPieces;
        }
    }
}

TEST(ParseTimes, DoNotHoldTheReadingOfTheDocument) {
    const std::string filling(std::size_t{16} << 20, ' ');
    for (const Timed& query : timedQueries()) {
        for (const bool inPieces : {false, true}) {
            const Times times = timesOf(query, query.beginning + filling + query.record, inPieces);
            EXPECT_LT(times.logged, times.whole / 4) << query.words << inPieces;
        }
    }
}

} // namespace
} // namespace quen::test
