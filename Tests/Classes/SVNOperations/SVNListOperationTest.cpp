#include "Classes/SVNOperations/SVNListOperation.h"
#include "Foundation/XMLReport.h"
#include "QuenFoundation/QuenSourceControlConstants.h"
#include "Tests/Classes/SVNOperations/QueryCases.h"
#include "Tests/Support/Trees.h"

namespace quen::test {
namespace {

constexpr const char* branches = "https://svn.example.org/repo/branches";
const Request oneFile{.type = RequestTypeList, .files = StringArray{"src"}};

class SVNListOperationTest : public testing::Test {
protected:
    HostRecorder host;
};

Request branchesOf(QuenSourceControlSourceTreePtr tree) {
    return {.type = RequestTypeListBranches, .sourceTree = std::move(tree)};
}

// Commands

class ListCommand : public testing::TestWithParam<ArgumentsCase> {};

TEST_P(ListCommand, IsWhole) {
    expectArguments(GetParam());
    EXPECT_EQ(GetParam().make(GetParam().request)->error(), Error());
}

INSTANTIATE_TEST_SUITE_P(
    , ListCommand,
    testing::Values(
        ArgumentsCase{"the first file alone",
                      a<SVNListOperation>,
                      {.type = RequestTypeList, .files = StringArray{"src", "doc"}},
                      StringArray{"list", "--xml", "src"}},
        ArgumentsCase{"a user",
                      a<SVNListOperation>,
                      {.type = RequestTypeList,
                       .sourceTree = repository({.user = "anna", .branchesLocation = branches}),
                       .files = StringArray{"src"}},
                      StringArray{"--username", "anna", "list", "--xml", "src"}},
        ArgumentsCase{"a name with an at sign",
                      a<SVNListOperation>,
                      {.type = RequestTypeList, .files = StringArray{"a@b"}},
                      StringArray{"list", "--xml", "a@b@"}},
        ArgumentsCase{"no file",
                      a<SVNListOperation>,
                      {.type = RequestTypeList},
                      StringArray{"list", "--xml"}},
        ArgumentsCase{"the branches of a repository", a<SVNListOperation>,
                      branchesOf(repository({.user = "anna", .branchesLocation = branches})),
                      StringArray{"--username", "anna", "list", "--xml", branches}},
        ArgumentsCase{
            "the branches of a working tree", a<SVNListOperation>,
            branchesOf(workingTree({.repository = repository({.branchesLocation = branches})})),
            StringArray{"list", "--xml", branches}},
        ArgumentsCase{"branches do not look at files",
                      a<SVNListOperation>,
                      {.type = RequestTypeListBranches,
                       .sourceTree = repository({.branchesLocation = branches}),
                       .files = StringArray{"src"}},
                      StringArray{"list", "--xml", branches}}),
    CaseName());

// Branches that nobody can locate

struct RefusalCase {
    std::string name;
    QuenSourceControlSourceTreePtr tree;
    StringArray arguments = {"list", "--xml"};
};

class UnlocatedBranches : public SVNListOperationTest,
                          public testing::WithParamInterface<RefusalCase> {};

TEST_P(UnlocatedBranches, SetAnErrorBesideTheArguments) {
    const auto operation = makeOperation<SVNListOperation>(branchesOf(GetParam().tree));
    EXPECT_EQ(operation->error(),
              Error(QuenSourceControlErrorDomain, -90,
                    {{NSLocalizedDescriptionKey,
                      "The operation could not be performed because the repository's branches "
                      "could not be located."},
                     {NSLocalizedRecoverySuggestionErrorKey,
                      "Check that the local repository is configured properly and try again."}}));
    EXPECT_EQ(operation->arguments(), GetParam().arguments);
}

INSTANTIATE_TEST_SUITE_P(
    , UnlocatedBranches,
    testing::Values(RefusalCase{"a repository without a branches location",
                                repository({.user = "anna"}),
                                {"--username", "anna", "list", "--xml"}},
                    RefusalCase{"a working tree whose repository has no branches location",
                                workingTree({.repository = repository({.user = "anna"})}),
                                {"--username", "anna", "list", "--xml"}},
                    RefusalCase{"a working tree without a repository", workingTree()},
                    RefusalCase{"a tree that is neither", otherTree()},
                    RefusalCase{"no source tree", nullptr}),
    CaseName());

TEST_F(SVNListOperationTest, UnlocatedBranchesAreLoggedFromLevelTwoOnByTheErrorsDescription) {
    host.setLogLevel(1);
    EXPECT_TRUE(makeOperation<SVNListOperation>(branchesOf(repository()))->error());
    EXPECT_EQ(host.log(), std::vector<LogLine>());

    for (const std::uint32_t level : {2U, 3U}) {
        host.clear();
        host.setLogLevel(level);
        const auto operation = makeOperation<SVNListOperation>(branchesOf(repository()));
        EXPECT_EQ(host.log(), (std::vector<LogLine>{{2, operation->error().description()}}));
    }
}

TEST_F(SVNListOperationTest, APlainListWithoutAFileIsNoError) {
    host.setLogLevel(3);
    EXPECT_EQ(makeOperation<SVNListOperation>({.type = RequestTypeList})->error(), Error());
    EXPECT_EQ(host.log(), std::vector<LogLine>());
}

// Reports

Dictionary entry(bool isLeaf, const String& name) {
    return {{QuenSourceControlOperationIsLeafKey, isLeaf},
            {QuenSourceControlOperationNameKey, name}};
}

Dictionary unnamed(bool isLeaf) {
    return {{QuenSourceControlOperationIsLeafKey, isLeaf}};
}

class ListReport : public SVNListOperationTest, public testing::WithParamInterface<ReportCase> {};

TEST_P(ListReport, GivesRecords) {
    expectRecords<SVNListOperation>(oneFile, GetParam());
    expectRecords<SVNListOperation>(branchesOf(repository({.branchesLocation = branches})),
                                    GetParam());
}

INSTANTIATE_TEST_SUITE_P(
    , ListReport,
    testing::Values(
        ReportCase{"an empty first list hides the second",
                   "<lists><list/><list><entry kind='dir'><name>a</name></entry></list></lists>",
                   Array::empty()},
        ReportCase{"no list", "<lists/>", Array::empty()},
        ReportCase{"an empty list", "<lists><list path='src'></list></lists>", Array::empty()},
        ReportCase{"an entry outside a list",
                   "<lists><entry kind='dir'><name>a</name></entry></lists>", Array::empty()},
        ReportCase{"kinds",
                   "<lists><list><entry kind='file'/><entry/><entry kind='dir'/>"
                   "<entry kind='DIR'/><entry kind=''/></list></lists>",
                   {unnamed(true), unnamed(true), unnamed(false), unnamed(true), unnamed(true)}},
        ReportCase{"two names leave the key out",
                   "<lists><list><entry kind='dir'><name>a</name><name>b</name></entry></list>"
                   "</lists>",
                   {unnamed(false)}},
        ReportCase{"an empty name is a name",
                   "<lists><list><entry kind='dir'><name/></entry></list></lists>",
                   {entry(false, "")}}),
    CaseName());

TEST_F(SVNListOperationTest, CapturedReportsOfADirectoryAndOfBranches) {
    const Array directory{entry(true, "icon@2x.png"), entry(true, "new.c"), entry(false, "src"),
                          entry(false, "Ü folder")};
    expectRecords<SVNListOperation>(oneFile,
                                    {"", testData("Reports/list/directory.xml"), directory});
    expectRecords<SVNListOperation>(branchesOf(repository({.branchesLocation = branches})),
                                    {"",
                                     testData("Reports/list/branches.xml"),
                                     {entry(false, "feature-x"), entry(false, "fix me")}});
    // Two lists: the same directory, then the branches.
    expectRecords<SVNListOperation>(oneFile,
                                    {"", testData("Reports/list/two-locations.xml"), directory});
}

TEST_F(SVNListOperationTest, CutReportsGiveTheReadersErrorAndNoResult) {
    for (const char* report : {"Reports/list/directory.xml", "Reports/list/branches.xml",
                               "Reports/list/two-locations.xml"}) {
        expectCutReportsFail<SVNListOperation>(host, oneFile, testData(report), {true, {}});
    }
}

} // namespace
} // namespace quen::test
