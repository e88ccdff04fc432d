#include "Classes/SVNOperations/SVNLogOperation.h"
#include "Foundation/XMLReport.h"
#include "QuenFoundation/QuenSourceControlConstants.h"
#include "Tests/Classes/SVNOperations/QueryCases.h"
#include "Tests/Support/Trees.h"

#include <gmock/gmock.h>

namespace quen::test {
namespace {

const Request oneFile{.type = RequestTypeLog, .files = StringArray{"a.c"}};

class SVNLogOperationTest : public testing::Test {
protected:
    HostRecorder host;
};

// Commands

class LogCommand : public testing::TestWithParam<ArgumentsCase> {};

TEST_P(LogCommand, IsWhole) {
    for (const std::int32_t type : {RequestTypeLog, RequestTypeLogAll}) {
        ArgumentsCase row = GetParam();
        row.request.type = type;
        expectArguments(row);
    }
}

Request logOf(const String& start, const String& end, QuenSourceControlSourceTreePtr tree = {}) {
    return {.sourceTree = std::move(tree),
            .files = StringArray{"a.c"},
            .startingRevision = start,
            .endingRevision = end};
}

INSTANTIATE_TEST_SUITE_P(
    Range, LogCommand,
    testing::Values(
        ArgumentsCase{"none", a<SVNLogOperation>, logOf(nullptr, nullptr),
                      StringArray{"log", "--xml", "a.c"}},
        ArgumentsCase{"start and end", a<SVNLogOperation>, logOf("12", "40"),
                      StringArray{"log", "--xml", "-r", "12:40", "a.c"}},
        ArgumentsCase{"start alone", a<SVNLogOperation>, logOf("12", nullptr),
                      StringArray{"log", "--xml", "-r", "12", "a.c"}},
        ArgumentsCase{"start at HEAD", a<SVNLogOperation>,
                      logOf(QuenSourceControlHEADRevisionName, nullptr),
                      StringArray{"log", "--xml", "-r", "HEAD", "a.c"}},
        ArgumentsCase{"start at BASE", a<SVNLogOperation>,
                      logOf(QuenSourceControlBASERevisionName, nullptr),
                      StringArray{"log", "--xml", "-r", "BASE", "a.c"}},
        ArgumentsCase{"start at an equal name from elsewhere", a<SVNLogOperation>,
                      logOf(QuenSourceControlBASERevisionName.str(), nullptr),
                      StringArray{"log", "--xml", "-r", "BASE", "a.c"}},
        ArgumentsCase{"both at names", a<SVNLogOperation>,
                      logOf(QuenSourceControlHEADRevisionName, QuenSourceControlBASERevisionName),
                      StringArray{"log", "--xml", "-r", "HEAD:BASE", "a.c"}},
        ArgumentsCase{"end at a name alone", a<SVNLogOperation>,
                      logOf(nullptr, QuenSourceControlHEADRevisionName),
                      StringArray{"log", "--xml", "-r", "BASE:HEAD", "a.c"}},
        ArgumentsCase{"end alone in a repository", a<SVNLogOperation>,
                      logOf(nullptr, "40", repository({.user = "anna"})),
                      StringArray{"--username", "anna", "log", "--xml", "-r", "HEAD:40", "a.c"}},
        ArgumentsCase{"end alone in a working tree", a<SVNLogOperation>,
                      logOf(nullptr, "40", workingTree({.repository = repository({})})),
                      StringArray{"log", "--xml", "-r", "BASE:40", "a.c"}},
        ArgumentsCase{"end alone in a tree that is neither", a<SVNLogOperation>,
                      logOf(nullptr, "40", otherTree()),
                      StringArray{"log", "--xml", "-r", "BASE:40", "a.c"}},
        ArgumentsCase{"end alone without a tree", a<SVNLogOperation>, logOf(nullptr, "40"),
                      StringArray{"log", "--xml", "-r", "BASE:40", "a.c"}}),
    CaseName());

Request withOption(const String& key, const Value& value) {
    return {.files = StringArray{"a.c"}, .options = {{key, value}}};
}

INSTANTIATE_TEST_SUITE_P(
    Option, LogCommand,
    testing::Values(
        ArgumentsCase{"stop on branching", a<SVNLogOperation>,
                      withOption(QuenSourceControlRequestOptionLogStopOnBranching, true),
                      StringArray{"log", "--xml", "--stop-on-copy", "a.c"}},
        ArgumentsCase{"stop on branching as text", a<SVNLogOperation>,
                      withOption(QuenSourceControlRequestOptionLogStopOnBranching, "YES"),
                      StringArray{"log", "--xml", "--stop-on-copy", "a.c"}},
        ArgumentsCase{"no stop on branching", a<SVNLogOperation>,
                      withOption(QuenSourceControlRequestOptionLogStopOnBranching, false),
                      StringArray{"log", "--xml", "a.c"}},
        ArgumentsCase{"limit", a<SVNLogOperation>,
                      withOption(QuenSourceControlRequestOptionLogOutputLimit, 50),
                      StringArray{"log", "--xml", "--limit", "50", "a.c"}},
        ArgumentsCase{"limit 0", a<SVNLogOperation>,
                      withOption(QuenSourceControlRequestOptionLogOutputLimit, 0),
                      StringArray{"log", "--xml", "--limit", "0", "a.c"}},
        ArgumentsCase{"limit as text", a<SVNLogOperation>,
                      withOption(QuenSourceControlRequestOptionLogOutputLimit, "7"),
                      StringArray{"log", "--xml", "--limit", "7", "a.c"}},
        ArgumentsCase{"limit without a value", a<SVNLogOperation>,
                      withOption(QuenSourceControlRequestOptionLogOutputLimit, {}),
                      StringArray{"log", "--xml", "a.c"}},
        ArgumentsCase{"files changed", a<SVNLogOperation>,
                      withOption(QuenSourceControlRequestOptionLogOutputFilesChanged, true),
                      StringArray{"log", "--xml", "a.c", "-v"}},
        ArgumentsCase{"no files changed", a<SVNLogOperation>,
                      withOption(QuenSourceControlRequestOptionLogOutputFilesChanged, 0),
                      StringArray{"log", "--xml", "a.c"}},
        ArgumentsCase{"all of them",
                      a<SVNLogOperation>,
                      {.files = StringArray{"a.c"},
                       .options = {{QuenSourceControlRequestOptionLogOutputLimit, 50},
                                   {QuenSourceControlRequestOptionSupplyDirectRevision, true},
                                   {QuenSourceControlRequestOptionLogOutputFilesChanged, true},
                                   {QuenSourceControlRequestOptionLogStopOnBranching, true}},
                       .startingRevision = "12",
                       .endingRevision = "40"},
                      StringArray{"log", "--xml", "--stop-on-copy", "--limit", "50", "-r", "12:40",
                                  "a.c@12", "-v"}}),
    CaseName());

/// With direct revisions.
Request direct(const String& file, const String& start, const String& end = {}) {
    return {.files = StringArray{file, "ignored"},
            .options = {{QuenSourceControlRequestOptionSupplyDirectRevision, true}},
            .startingRevision = start,
            .endingRevision = end};
}

INSTANTIATE_TEST_SUITE_P(
    Target, LogCommand,
    testing::Values(
        ArgumentsCase{"the first of two files",
                      a<SVNLogOperation>,
                      {.files = StringArray{"a.c", "b.c"}},
                      StringArray{"log", "--xml", "a.c"}},
        ArgumentsCase{"no file", a<SVNLogOperation>, {}, StringArray{"log", "--xml"}},
        ArgumentsCase{"no file and files changed",
                      a<SVNLogOperation>,
                      {.options = {{QuenSourceControlRequestOptionLogOutputFilesChanged, true}}},
                      StringArray{"log", "--xml", "-v"}},
        ArgumentsCase{"an empty first file",
                      a<SVNLogOperation>,
                      {.files = StringArray{"", "b.c"}},
                      StringArray{"log", "--xml"}},
        ArgumentsCase{"an empty first file with a peg", a<SVNLogOperation>, direct("", "7"),
                      StringArray{"log", "--xml", "-r", "7"}},
        ArgumentsCase{"a name with an at sign",
                      a<SVNLogOperation>,
                      {.files = StringArray{"icon@2x.png"}},
                      StringArray{"log", "--xml", "icon@2x.png@"}},
        ArgumentsCase{"a peg", a<SVNLogOperation>, direct("x", "7"),
                      StringArray{"log", "--xml", "-r", "7", "x@7"}},
        // Made safe for the client the name ends in two at signs; the peg takes the last.
        ArgumentsCase{"a peg behind an at sign", a<SVNLogOperation>, direct("x@", "7"),
                      StringArray{"log", "--xml", "-r", "7", "x@@7"}},
        ArgumentsCase{"a peg behind a name made safe", a<SVNLogOperation>,
                      direct("icon@2x.png", "7"),
                      StringArray{"log", "--xml", "-r", "7", "icon@2x.png@7"}},
        ArgumentsCase{"a peg is the start alone", a<SVNLogOperation>, direct("x", "7", "9"),
                      StringArray{"log", "--xml", "-r", "7:9", "x@7"}},
        ArgumentsCase{"a peg at HEAD", a<SVNLogOperation>,
                      direct("x", QuenSourceControlHEADRevisionName),
                      StringArray{"log", "--xml", "-r", "HEAD", "x@HEAD"}},
        ArgumentsCase{"direct without a start pins nothing", a<SVNLogOperation>,
                      direct("x", nullptr, "9"), StringArray{"log", "--xml", "-r", "BASE:9", "x"}},
        ArgumentsCase{"direct without revisions pins nothing", a<SVNLogOperation>,
                      direct("x", nullptr), StringArray{"log", "--xml", "x"}}),
    CaseName());

// Reports

struct LogEntry {
    unsigned revision;
    String author;
    String message;
};

Dictionary record(const LogEntry& entry, const Dictionary& files = {}) {
    Dictionary record = Dictionary::empty();
    record.set(QuenSourceControlOperationRevisionKey, String(std::to_string(entry.revision)));
    if (!entry.author.isNil()) {
        record.set(QuenSourceControlOperationAuthorKey, entry.author);
    }
    record.set(QuenSourceControlOperationDateKey, dateOfRevision(entry.revision));
    if (!files.isNil()) {
        record.set(QuenSourceControlOperationFilesKey, files);
    }
    record.set(QuenSourceControlOperationMessageKey, entry.message);
    return record;
}

constexpr const char* longMessage = "Begin: <main> & \"friends\"\n\nZweite Zeile äöü ✓";

TEST_F(SVNLogOperationTest, CapturedReportOfOneFile) {
    expectRecords<SVNLogOperation>(oneFile,
                                   {"",
                                    testData("Reports/log/file.xml"),
                                    {record({6, "Ben Müller", "Rename"}), record({3, "ben", ""}),
                                     record({2, "anna", longMessage})}});
}

TEST_F(SVNLogOperationTest, CapturedReportWithChangedFiles) {
    expectRecords<SVNLogOperation>(
        oneFile, {"",
                  testData("Reports/log/with-files.xml"),
                  {record({7, "ben", "Replace"}, {{"/trunk/new.c", 8192}}),
                   record({6, "Ben Müller", "Rename"},
                          {{"/trunk/new.c", 1}, {"/trunk/old.c", 2}, {"/trunk/src/main.c", 12}}),
                   record({5, "anna", "Another"}, {{"/branches/fix me", 1}}),
                   record({4, nullptr, "Branch for x"}, {{"/branches/feature-x", 1}}),
                   record({3, "ben", ""}, {{"/trunk/src/main.c", 12}}),
                   record({2, "anna", longMessage}, {{"/trunk/icon@2x.png", 1},
                                                     {"/trunk/old.c", 1},
                                                     {"/trunk/src", 1},
                                                     {"/trunk/src/main.c", 1},
                                                     {"/trunk/Ü folder", 1},
                                                     {"/trunk/Ü folder/a & b.txt", 1}}),
                   record({1, "anna", "Lay out the repository"},
                          {{"/branches", 1}, {"/tags", 1}, {"/trunk", 1}})}});
}

TEST_F(SVNLogOperationTest, CapturedReportOfNoRevisions) {
    expectRecords<SVNLogOperation>(oneFile,
                                   {"", testData("Reports/log/empty.xml"), Array::empty()});
}

Array one(const String& key, const Value& value) {
    return {Dictionary{{key, value}}};
}

class LogReport : public SVNLogOperationTest, public testing::WithParamInterface<ReportCase> {};

TEST_P(LogReport, GivesRecords) {
    host.setLogLevel(2);
    expectRecords<SVNLogOperation>(oneFile, GetParam());
    EXPECT_EQ(host.log(), std::vector<LogLine>());
    EXPECT_EQ(host.assertionFacts(), std::vector<AssertionFacts>());
}

INSTANTIATE_TEST_SUITE_P(
    , LogReport,
    testing::Values(
        ReportCase{"no entries", "<log/>", Array::empty()},
        ReportCase{"an entry with nothing is a record with nothing",
                   "<log><logentry/></log>",
                   {Dictionary::empty()}},
        ReportCase{"an entry that is not a child of the root",
                   "<log><group><logentry revision='1'/></group></log>", Array::empty()},
        ReportCase{"a merged revision inside an entry is not read",
                   "<log><logentry revision='2'><logentry revision='1'><msg>a</msg></logentry>"
                   "</logentry></log>",
                   one(QuenSourceControlOperationRevisionKey, "2")},
        ReportCase{"no revision leaves the key out", "<log><logentry><msg>a</msg></logentry></log>",
                   one(QuenSourceControlOperationMessageKey, "a")},
        ReportCase{"two messages leave the key out",
                   "<log><logentry revision='1'><msg>a</msg><msg>b</msg></logentry></log>",
                   one(QuenSourceControlOperationRevisionKey, "1")},
        ReportCase{"an empty message is a message", "<log><logentry><msg></msg></logentry></log>",
                   one(QuenSourceControlOperationMessageKey, "")},
        ReportCase{"white space of a message is kept",
                   "<log><logentry><msg> a\n\n</msg></logentry></log>",
                   one(QuenSourceControlOperationMessageKey, " a\n\n")},
        ReportCase{"two authors leave the key out",
                   "<log><logentry revision='1'><author>a</author><author>b</author></logentry>"
                   "</log>",
                   one(QuenSourceControlOperationRevisionKey, "1")},
        ReportCase{"two dates leave the key out",
                   "<log><logentry revision='1'><date>2024-01-11T01:15:30.111111Z</date>"
                   "<date>2024-01-11T01:15:30.111111Z</date></logentry></log>",
                   one(QuenSourceControlOperationRevisionKey, "1")},
        ReportCase{"a date that does not match leaves the key out",
                   "<log><logentry revision='1'><date>2024-01-11 01:15:30</date></logentry></log>",
                   one(QuenSourceControlOperationRevisionKey, "1")},
        ReportCase{"an empty list of paths", "<log><logentry><paths></paths></logentry></log>",
                   one(QuenSourceControlOperationFilesKey, Dictionary::empty())},
        ReportCase{"two lists of paths leave the key out",
                   "<log><logentry revision='1'><paths><path action='A'>a</path></paths><paths/>"
                   "</logentry></log>",
                   one(QuenSourceControlOperationRevisionKey, "1")},
        ReportCase{
            "an unknown letter is nothing and passes in silence",
            "<log><logentry><paths><path action='C'>a</path><path action=''>b</path>"
            "<path action='m'>c</path></paths></logentry></log>",
            one(QuenSourceControlOperationFilesKey, Dictionary{{"a", 0}, {"b", 0}, {"c", 0}})},
        ReportCase{"a later path of the same text replaces the earlier",
                   "<log><logentry><paths><path action='A'>a</path><path action='M'>b</path>"
                   "<path action='D'>a</path></paths></logentry></log>",
                   one(QuenSourceControlOperationFilesKey, Dictionary{{"a", 2}, {"b", 12}})}),
    CaseName());

// Remarks

constexpr std::string_view pathsWithoutAction =
    "<log><logentry><paths><path>a</path><path action='M'>b</path></paths></logentry></log>";

TEST_F(SVNLogOperationTest, APathWithoutAnActionIsNothingAndAnAssertion) {
    expectRecords<SVNLogOperation>(
        oneFile, {"", std::string(pathsWithoutAction),
                  one(QuenSourceControlOperationFilesKey, Dictionary{{"a", 0}, {"b", 12}})});
    EXPECT_EQ(host.assertionFacts(),
              std::vector{AssertionFacts::notNil(
                  "-[SVNLogOperation statusValueForRepositoryShortStringValue:]",
                  "Classes/SVNOperations", "(string)")});
}

TEST_F(SVNLogOperationTest, TheTimeIsLoggedFromLevelThreeOn) {
    host.setLogLevel(2);
    parsedOperation<SVNLogOperation>(oneFile, "<log/>");
    EXPECT_EQ(host.log(), std::vector<LogLine>());

    host.setLogLevel(3);
    parsedOperation<SVNLogOperation>(oneFile, "<log/>");
    ASSERT_EQ(host.log().size(), 1U);
    EXPECT_EQ(host.log().front().level, 3U);
    EXPECT_THAT(host.log().front().text.str(),
                testing::MatchesRegex("Time to set parse log operation data: [0-9]+[.]"
                                      "[0-9][0-9][0-9][0-9]"));
}

TEST_F(SVNLogOperationTest, CutReportsGiveTheReadersErrorAndNoResult) {
    for (const std::string& report :
         {testData("Reports/log/file.xml"), testData("Reports/log/with-files.xml"),
          testData("Reports/log/empty.xml"), std::string(pathsWithoutAction)}) {
        expectCutReportsFail<SVNLogOperation>(host, oneFile, report, {true, {}});
    }
}

} // namespace
} // namespace quen::test
