#pragma once

#include "Foundation/XMLReport.h"
#include "Tests/Classes/SVNOperations/ArgumentsCase.h"

#include <chrono>
#include <gtest/gtest.h>
#include <string>
#include <string_view>

namespace quen::test {

/// A row of a table of reports: all the records that a report gives.
struct ReportCase {
    std::string name;
    std::string report;
    Array records;

    friend void PrintTo(const ReportCase& row, std::ostream* out) { *out << row.name; }
};

template <typename Class> void expectRecords(const Request& request, const ReportCase& row) {
    const auto operation = parsedOperation<Class>(request, row.report);
    EXPECT_EQ(operation->result(), Value(row.records));
    EXPECT_EQ(operation->error(), Error());
    EXPECT_NE(operation->data(), nullptr) << "Only the status query lets go of its output.";
}

/// What a query leaves of a report that is malformed.
struct MalformedOutcome {
    bool hasError;
    Value result;
};

/// Cuts a report at every byte. Whatever it had to say until then, the outcome is the same, and
/// nothing reaches the log or the assertion handler.
template <typename Class> void expectCutReportsFail(HostRecorder& host, const Request& request,
                                                    std::string_view report,
                                                    const MalformedOutcome& outcome) {
    host.setLogLevel(3);
    for (const std::string_view beginning : malformedReports(report)) {
        SCOPED_TRACE("Cut after " + std::to_string(beginning.size()) + " bytes.");
        const auto operation = parsedOperation<Class>(request, beginning);
        ASSERT_EQ(operation->error().domain(), outcome.hasError ? XMLParserErrorDomain : String());
        ASSERT_EQ(operation->result(), outcome.result);
        ASSERT_NE(operation->data(), nullptr);
    }
    EXPECT_EQ(host.log(), std::vector<LogLine>());
    EXPECT_EQ(host.assertionFacts(), std::vector<AssertionFacts>());
}

/// The dates of the captured reports: in revision 3 it is the third month, day 13, 03:15:30.333333.
inline Date dateOfRevision(unsigned revision) {
    using namespace std::chrono;
    const sys_days date = 2024y / month(revision) / day(10 + revision);
    return date + hours(revision) + minutes(15) + seconds(30) + microseconds(revision * 111111);
}

} // namespace quen::test
