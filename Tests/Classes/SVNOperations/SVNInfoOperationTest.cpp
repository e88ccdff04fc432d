#include "Classes/SVNOperations/SVNInfoOperation.h"
#include "Foundation/XMLReport.h"
#include "QuenFoundation/QuenSourceControlConstants.h"
#include "Tests/Classes/SVNOperations/QueryCases.h"
#include "Tests/Support/Trees.h"

namespace quen::test {
namespace {

const Request oneFile{.type = RequestTypeInfo, .files = StringArray{"a.c"}};

class SVNInfoOperationTest : public testing::Test {
protected:
    HostRecorder host;
};

// Commands

class InfoCommand : public testing::TestWithParam<ArgumentsCase> {};

TEST_P(InfoCommand, IsWhole) {
    expectArguments(GetParam());
}

INSTANTIATE_TEST_SUITE_P(
    , InfoCommand,
    testing::Values(
        ArgumentsCase{"no file",
                      a<SVNInfoOperation>,
                      {.type = RequestTypeInfo},
                      StringArray{"info", "--xml"}},
        ArgumentsCase{"files in their order",
                      a<SVNInfoOperation>,
                      {.type = RequestTypeInfo, .files = StringArray{"b.c", "a.c"}},
                      StringArray{"info", "--xml", "b.c", "a.c"}},
        ArgumentsCase{"a name with an at sign",
                      a<SVNInfoOperation>,
                      {.type = RequestTypeInfo, .files = StringArray{"icon@2x.png"}},
                      StringArray{"info", "--xml", "icon@2x.png@"}},
        ArgumentsCase{"a user",
                      a<SVNInfoOperation>,
                      {.type = RequestTypeInfo,
                       .sourceTree = repository({.user = "anna"}),
                       .files = StringArray{"a.c"}},
                      StringArray{"--username", "anna", "info", "--xml", "a.c"}},
        ArgumentsCase{"a check",
                      a<SVNInfoOperation>,
                      {.type = RequestTypeInfoCheck, .files = StringArray{"a.c", "b.c"}},
                      StringArray{"info", "--xml", "a.c", "b.c"}},
        ArgumentsCase{"the other check",
                      a<SVNInfoOperation>,
                      {.type = RequestTypeInfoCheckAlternate, .files = StringArray{"a.c"}},
                      StringArray{"info", "--xml", "a.c"}},
        ArgumentsCase{"revisions and options are not read",
                      a<SVNInfoOperation>,
                      {.type = RequestTypeInfo,
                       .destination = "elsewhere",
                       .files = StringArray{"a.c"},
                       .options = {{QuenSourceControlRequestOptionSupplyDirectRevision, true}},
                       .startingRevision = "3",
                       .endingRevision = "5"},
                      StringArray{"info", "--xml", "a.c"}}),
    CaseName());

// Reports

constexpr std::string_view root = "https://svn.example.org/repo";

Dictionary item(const String& url, const String& revision, const String& author, Date date) {
    return {{QuenSourceControlOperationRemoteOriginKey, url},
            {QuenSourceControlOperationRepositoryRootKey, String(root)},
            {QuenSourceControlOperationRevisionKey, revision},
            {QuenSourceControlOperationAuthorKey, author},
            {QuenSourceControlOperationDateKey, date}};
}

TEST_F(SVNInfoOperationTest, CapturedReportOfItemsLeavesOutTheOneThatWasNeverCommitted) {
    expectRecords<SVNInfoOperation>(
        oneFile, {"", testData("Reports/info/items.xml"),
                  Array{item("https://svn.example.org/repo/trunk", "7", "ben", dateOfRevision(7)),
                        item("https://svn.example.org/repo/trunk/src/main.c", "6", "Ben Müller",
                             dateOfRevision(6)),
                        item("https://svn.example.org/repo/trunk/%C3%9C%20folder", "2", "anna",
                             dateOfRevision(2)),
                        item("https://svn.example.org/repo/trunk/icon@2x.png", "2", "anna",
                             dateOfRevision(2))}});
}

TEST_F(SVNInfoOperationTest, CapturedReportOfAChangeWithoutAnAuthor) {
    expectRecords<SVNInfoOperation>(
        oneFile, {"", testData("Reports/info/branch.xml"),
                  Array{Dictionary{{QuenSourceControlOperationRemoteOriginKey,
                                    "https://svn.example.org/repo/branches/feature-x"},
                                   {QuenSourceControlOperationRepositoryRootKey, String(root)},
                                   {QuenSourceControlOperationRevisionKey, "4"},
                                   {QuenSourceControlOperationDateKey, dateOfRevision(4)}}}});
}

/// 2012-03-01T10:11:12.123456Z
Date dateOfTexts() {
    using namespace std::chrono;
    return sys_days(2012y / March / 1) + 10h + 11min + 12s + 123456us;
}

Array revisionAlone(const String& revision) {
    return {Dictionary{{QuenSourceControlOperationRevisionKey, revision}}};
}

class InfoReport : public SVNInfoOperationTest, public testing::WithParamInterface<ReportCase> {};

TEST_P(InfoReport, GivesRecords) {
    expectRecords<SVNInfoOperation>(oneFile, GetParam());
}

INSTANTIATE_TEST_SUITE_P(
    , InfoReport,
    testing::Values(
        ReportCase{"no entries", "<info/>", Array::empty()},
        ReportCase{"an entry that is not a child of the root",
                   "<info><group><entry><commit revision='1'/></entry></group></info>",
                   Array::empty()},
        ReportCase{"an item that was added and never committed",
                   "<info><entry><url>u</url><repository><root>r</root></repository></entry>"
                   "<entry><commit revision='1'/></entry></info>",
                   revisionAlone("1")},
        ReportCase{"two commits drop the record",
                   "<info><entry><url>u</url><commit revision='1'/><commit revision='2'/></entry>"
                   "</info>",
                   Array::empty()},
        ReportCase{"a commit deeper down does not count",
                   "<info><entry><url>u</url><more><commit revision='1'/></more></entry></info>",
                   Array::empty()},
        ReportCase{"two urls leave the key out",
                   "<info><entry><url>u</url><url>v</url><commit revision='1'/></entry></info>",
                   revisionAlone("1")},
        ReportCase{"a url deeper down does not count",
                   "<info><entry><commit revision='1'><url>u</url></commit></entry></info>",
                   revisionAlone("1")},
        ReportCase{"two repositories leave the root out",
                   "<info><entry><repository><root>r</root></repository><repository/>"
                   "<commit revision='1'/></entry></info>",
                   revisionAlone("1")},
        ReportCase{"two roots leave the root out",
                   "<info><entry><repository><root>r</root><root>r</root></repository>"
                   "<commit revision='1'/></entry></info>",
                   revisionAlone("1")},
        ReportCase{"a commit without a revision",
                   "<info><entry><commit><author>anna</author></commit></entry></info>",
                   {Dictionary{{QuenSourceControlOperationAuthorKey, "anna"}}}},
        ReportCase{"a commit with nothing in it",
                   "<info><entry><commit/></entry></info>",
                   {Dictionary::empty()}},
        ReportCase{"two authors leave the key out",
                   "<info><entry><commit revision='1'><author>a</author><author>b</author>"
                   "</commit></entry></info>",
                   revisionAlone("1")},
        ReportCase{"a date of six digits",
                   "<info><entry><commit><date>2012-03-01T10:11:12.123456Z</date></commit>"
                   "</entry></info>",
                   {Dictionary{{QuenSourceControlOperationDateKey, dateOfTexts()}}}},
        ReportCase{"a date without digits of a second",
                   "<info><entry><commit revision='1'><date>2012-03-01T10:11:12Z</date></commit>"
                   "</entry></info>",
                   revisionAlone("1")},
        ReportCase{"a date of three digits",
                   "<info><entry><commit revision='1'><date>2012-03-01T10:11:12.123Z</date>"
                   "</commit></entry></info>",
                   revisionAlone("1")},
        ReportCase{"two dates leave the key out",
                   "<info><entry><commit revision='1'><date>2012-03-01T10:11:12.123456Z</date>"
                   "<date>2012-03-01T10:11:12.123456Z</date></commit></entry></info>",
                   revisionAlone("1")},
        ReportCase{"empty texts are texts",
                   "<info><entry><url/><commit revision=''><author/></commit></entry></info>",
                   {Dictionary{{QuenSourceControlOperationRemoteOriginKey, ""},
                               {QuenSourceControlOperationRevisionKey, ""},
                               {QuenSourceControlOperationAuthorKey, ""}}}},
        ReportCase{"the entry's own revision is not read",
                   "<info><entry revision='9'><commit/></entry></info>",
                   {Dictionary::empty()}}),
    CaseName());

TEST_F(SVNInfoOperationTest, CutReportsGiveTheReadersErrorAndNoResult) {
    for (const char* report : {"Reports/info/items.xml", "Reports/info/branch.xml"}) {
        expectCutReportsFail<SVNInfoOperation>(host, oneFile, testData(report), {true, {}});
    }
}

TEST_F(SVNInfoOperationTest, NoOutputAtAllIsAMalformedReport) {
    const auto operation = makeOperation<SVNInfoOperation>(oneFile);
    operation->parseData();
    EXPECT_EQ(operation->error().domain(), XMLParserErrorDomain);
    EXPECT_TRUE(operation->result().isNothing());
}

TEST_F(SVNInfoOperationTest, ChecksLeaveNeitherResultNorErrorWhateverTheOutput) {
    const std::string good = testData("Reports/info/items.xml");
    for (const std::int32_t type : {RequestTypeInfoCheck, RequestTypeInfoCheckAlternate}) {
        for (const std::string& report : {good, good.substr(0, 200), std::string()}) {
            const auto operation = parsedOperation<SVNInfoOperation>(
                {.type = type, .files = StringArray{"a.c"}}, report);
            EXPECT_TRUE(operation->result().isNothing());
            EXPECT_EQ(operation->error(), Error());
            ASSERT_NE(operation->data(), nullptr);
            EXPECT_EQ(operation->data()->bytes(), report);
        }
    }
}

} // namespace
} // namespace quen::test
