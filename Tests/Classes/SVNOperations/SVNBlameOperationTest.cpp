#include "Classes/SVNOperations/SVNBlameOperation.h"
#include "Foundation/XMLReport.h"
#include "QuenFoundation/QuenSourceControlConstants.h"
#include "Tests/Classes/SVNOperations/QueryCases.h"
#include "Tests/Support/Trees.h"

#include <gmock/gmock.h>

namespace quen::test {
namespace {

const Request oneFile{.type = RequestTypeBlame, .files = StringArray{"a.c"}};

class SVNBlameOperationTest : public testing::Test {
protected:
    HostRecorder host;
};

// Commands

class BlameCommand : public testing::TestWithParam<ArgumentsCase> {};

TEST_P(BlameCommand, IsWhole) {
    expectArguments(GetParam());
}

Request blameOf(const String& start, const String& end, QuenSourceControlSourceTreePtr tree = {}) {
    return {.type = RequestTypeBlame,
            .sourceTree = std::move(tree),
            .files = StringArray{"/w/a.c"},
            .startingRevision = start,
            .endingRevision = end};
}

INSTANTIATE_TEST_SUITE_P(
    , BlameCommand,
    testing::Values(
        ArgumentsCase{"no revisions", a<SVNBlameOperation>, blameOf(nullptr, nullptr),
                      StringArray{"blame", "--xml", "/w/a.c"}},
        ArgumentsCase{"start and end", a<SVNBlameOperation>, blameOf("12", "40"),
                      StringArray{"blame", "--xml", "-r", "12:40", "/w/a.c"}},
        ArgumentsCase{"start alone", a<SVNBlameOperation>, blameOf("12", nullptr),
                      StringArray{"blame", "--xml", "-r", "12", "/w/a.c"}},
        ArgumentsCase{"start at HEAD", a<SVNBlameOperation>,
                      blameOf(QuenSourceControlHEADRevisionName, nullptr),
                      StringArray{"blame", "--xml", "-r", "HEAD", "/w/a.c"}},
        ArgumentsCase{"start at BASE and an end", a<SVNBlameOperation>,
                      blameOf(QuenSourceControlBASERevisionName, "9"),
                      StringArray{"blame", "--xml", "-r", "BASE:9", "/w/a.c"}},
        ArgumentsCase{"an end at HEAD", a<SVNBlameOperation>,
                      blameOf("9", QuenSourceControlHEADRevisionName),
                      StringArray{"blame", "--xml", "-r", "9:HEAD", "/w/a.c"}},
        ArgumentsCase{
            "end alone in a repository", a<SVNBlameOperation>,
            blameOf(nullptr, "90", repository({.user = "anna"})),
            StringArray{"--username", "anna", "blame", "--xml", "-r", "HEAD:90", "/w/a.c"}},
        ArgumentsCase{"end alone in a working tree", a<SVNBlameOperation>,
                      blameOf(nullptr, "90", workingTree()),
                      StringArray{"blame", "--xml", "-r", "BASE:90", "/w/a.c"}},
        ArgumentsCase{"end alone without a tree", a<SVNBlameOperation>, blameOf(nullptr, "90"),
                      StringArray{"blame", "--xml", "-r", "BASE:90", "/w/a.c"}},
        ArgumentsCase{"the first of two files, never pinned",
                      a<SVNBlameOperation>,
                      {.type = RequestTypeBlame,
                       .files = StringArray{"a.c", "b.c"},
                       .options = {{QuenSourceControlRequestOptionSupplyDirectRevision, true}},
                       .startingRevision = "7"},
                      StringArray{"blame", "--xml", "-r", "7", "a.c"}},
        ArgumentsCase{"an empty name is a name",
                      a<SVNBlameOperation>,
                      {.type = RequestTypeBlame, .files = StringArray{""}},
                      StringArray{"blame", "--xml", ""}},
        ArgumentsCase{"a name with an at sign",
                      a<SVNBlameOperation>,
                      {.type = RequestTypeBlame, .files = StringArray{"icon@2x.png"}},
                      StringArray{"blame", "--xml", "icon@2x.png@"}},
        ArgumentsCase{"no file",
                      a<SVNBlameOperation>,
                      {.type = RequestTypeBlame},
                      StringArray{"blame", "--xml"}}),
    CaseName());

// Reports

Dictionary line(const String& number, const String& author, unsigned revision) {
    return {{QuenSourceControlOperationLineNumberKey, number},
            {QuenSourceControlOperationRevisionKey, String(std::to_string(revision))},
            {QuenSourceControlOperationAuthorKey, author},
            {QuenSourceControlOperationDateKey, dateOfRevision(revision)}};
}

Dictionary bareLine(const String& number) {
    return {{QuenSourceControlOperationLineNumberKey, number}};
}

TEST_F(SVNBlameOperationTest, CapturedReportEndsInALineThatIsNotCommitted) {
    expectRecords<SVNBlameOperation>(
        oneFile, {"",
                  testData("Reports/blame/file.xml"),
                  {line("1", "ben", 3), line("2", "anna", 2), line("3", "ben", 3),
                   line("4", "anna", 2), line("5", "anna", 2), bareLine("6")}});
}

TEST_F(SVNBlameOperationTest, CapturedReportOfTwoFilesIsOneList) {
    expectRecords<SVNBlameOperation>(
        oneFile,
        {"",
         testData("Reports/blame/two-files.xml"),
         {line("1", "ben", 3), line("2", "anna", 2), line("3", "ben", 3), line("4", "anna", 2),
          line("5", "anna", 2), bareLine("6"), line("1", "ben", 7)}});
}

class BlameReport : public SVNBlameOperationTest, public testing::WithParamInterface<ReportCase> {};

TEST_P(BlameReport, GivesRecords) {
    expectRecords<SVNBlameOperation>(oneFile, GetParam());
}

INSTANTIATE_TEST_SUITE_P(
    , BlameReport,
    testing::Values(
        ReportCase{"no target", "<blame/>", Array::empty()},
        ReportCase{"no lines", "<blame><target path='a.c'/></blame>", Array::empty()},
        ReportCase{"a line outside a target", "<blame><entry line-number='1'/></blame>",
                   Array::empty()},
        ReportCase{"two targets are one list",
                   "<blame><target><entry line-number='1'/><entry line-number='2'/></target>"
                   "<target><entry line-number='1'/></target></blame>",
                   {bareLine("1"), bareLine("2"), bareLine("1")}},
        ReportCase{"a line without a number",
                   "<blame><target><entry><commit revision='2'/></entry></target></blame>",
                   {Dictionary{{QuenSourceControlOperationRevisionKey, "2"}}}},
        ReportCase{"two commits",
                   "<blame><target><entry line-number='1'><commit revision='2'/>"
                   "<commit revision='3'/></entry></target></blame>",
                   {bareLine("1")}},
        ReportCase{"the merged change is not read",
                   "<blame><target><entry line-number='1'><merged path='b.c'>"
                   "<commit revision='2'/></merged></entry></target></blame>",
                   {bareLine("1")}},
        ReportCase{"a commit without a revision, two authors, two dates",
                   "<blame><target><entry line-number='1'><commit><author>a</author>"
                   "<author>b</author><date>2024-01-11T01:15:30.111111Z</date>"
                   "<date>2024-01-11T01:15:30.111111Z</date></commit></entry></target></blame>",
                   {bareLine("1")}},
        ReportCase{"a date that does not match",
                   "<blame><target><entry line-number='1'><commit><date>yesterday</date>"
                   "</commit></entry></target></blame>",
                   {bareLine("1")}},
        ReportCase{"no author",
                   "<blame><target><entry line-number='1'><commit revision='1'>"
                   "<date>2024-01-11T01:15:30.111111Z</date></commit></entry></target></blame>",
                   {Dictionary{{QuenSourceControlOperationLineNumberKey, "1"},
                               {QuenSourceControlOperationRevisionKey, "1"},
                               {QuenSourceControlOperationDateKey, dateOfRevision(1)}}}}),
    CaseName());

TEST_F(SVNBlameOperationTest, NeighbouringLinesOfOneChangeShareTheirTexts) {
    const auto operation =
        parsedOperation<SVNBlameOperation>(oneFile, testData("Reports/blame/file.xml"));
    const Array& lines = *operation->result().array();
    const auto textOf = [&](std::size_t index, const String& key) {
        return *(*lines[index].dictionary())[key].string();
    };
    for (const String& key :
         {QuenSourceControlOperationAuthorKey, QuenSourceControlOperationRevisionKey}) {
        EXPECT_TRUE(textOf(3, key).isIdenticalTo(textOf(4, key)));
        EXPECT_FALSE(textOf(2, key).isIdenticalTo(textOf(3, key)));
    }
}

TEST_F(SVNBlameOperationTest, TheTimeIsLoggedFromLevelThreeOn) {
    host.setLogLevel(2);
    parsedOperation<SVNBlameOperation>(oneFile, "<blame/>");
    EXPECT_EQ(host.log(), std::vector<LogLine>());

    host.setLogLevel(3);
    parsedOperation<SVNBlameOperation>(oneFile, "<blame/>");
    ASSERT_EQ(host.log().size(), 1U);
    EXPECT_EQ(host.log().front().level, 3U);
    EXPECT_THAT(
        host.log().front().text.str(),
        testing::MatchesRegex("Blame operation data parsed in: [0-9]+[.][0-9][0-9][0-9][0-9]"));
}

TEST_F(SVNBlameOperationTest, CutReportsGiveTheReadersErrorAndAnEmptyResult) {
    for (const char* report : {"Reports/blame/file.xml", "Reports/blame/two-files.xml"}) {
        expectCutReportsFail<SVNBlameOperation>(host, oneFile, testData(report),
                                                {true, Array::empty()});
    }
}

} // namespace
} // namespace quen::test
