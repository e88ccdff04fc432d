#include "Classes/SVNOperations/SVNCurrentBranchOperation.h"
#include "Foundation/XMLReport.h"
#include "QuenFoundation/QuenSourceControlConstants.h"
#include "Tests/Classes/SVNOperations/QueryCases.h"
#include "Tests/Support/Trees.h"

namespace quen::test {
namespace {

constexpr const char* trunk = "https://svn.example.org/repo/trunk";
constexpr const char* branches = "https://svn.example.org/repo/branches";

class SVNCurrentBranchOperationTest : public testing::Test {
protected:
    HostRecorder host;
};

Request requestFor(QuenSourceControlSourceTreePtr tree) {
    return {.type = RequestTypeCurrentBranch, .sourceTree = std::move(tree)};
}

// Commands

class CurrentBranchCommand : public testing::TestWithParam<ArgumentsCase> {};

TEST_P(CurrentBranchCommand, IsWhole) {
    expectArguments(GetParam());
}

INSTANTIATE_TEST_SUITE_P(
    , CurrentBranchCommand,
    testing::Values(ArgumentsCase{"a working tree", a<SVNCurrentBranchOperation>,
                                  requestFor(workingTree({.location = "/home/anna/project"})),
                                  StringArray{"info", "--xml", "/home/anna/project"}},
                    ArgumentsCase{
                        "a working tree whose repository has a user", a<SVNCurrentBranchOperation>,
                        requestFor(workingTree({.location = "/home/anna/project",
                                                .repository = repository({.user = "anna"})})),
                        StringArray{"--username", "anna", "info", "--xml", "/home/anna/project"}},
                    ArgumentsCase{"a repository", a<SVNCurrentBranchOperation>,
                                  requestFor(repository({.location = trunk, .user = "anna"})),
                                  StringArray{"--username", "anna", "info", "--xml", trunk}},
                    ArgumentsCase{"a tree that is neither", a<SVNCurrentBranchOperation>,
                                  requestFor(otherTree({.location = "/somewhere"})),
                                  StringArray{"info", "--xml", "/somewhere"}},
                    ArgumentsCase{"files are not used",
                                  a<SVNCurrentBranchOperation>,
                                  {.type = RequestTypeCurrentBranch,
                                   .sourceTree = workingTree({.location = "/home/anna/project"}),
                                   .files = StringArray{"a.c"}},
                                  StringArray{"info", "--xml", "/home/anna/project"}},
                    ArgumentsCase{"a location is passed on as it is", a<SVNCurrentBranchOperation>,
                                  requestFor(workingTree({.location = "/home/anna/a@b"})),
                                  StringArray{"info", "--xml", "/home/anna/a@b"}},
                    ArgumentsCase{"no location", a<SVNCurrentBranchOperation>,
                                  requestFor(workingTree()), StringArray{"info", "--xml"}},
                    ArgumentsCase{"no source tree", a<SVNCurrentBranchOperation>,
                                  requestFor(nullptr), StringArray{"info", "--xml"}}),
    CaseName());

// Branches

struct BranchCase {
    std::string name;
    std::string url;
    std::vector<String> branches;
    String trunkLocation = trunk;
    String branchesLocation = test::branches;
};

Array namedRecords(const std::vector<String>& names) {
    Array records = Array::empty();
    for (const String& name : names) {
        records.append(Dictionary{{QuenSourceControlOperationNameKey, name}});
    }
    return records;
}

class CurrentBranch : public SVNCurrentBranchOperationTest,
                      public testing::WithParamInterface<BranchCase> {};

TEST_P(CurrentBranch, IsToldByTheURL) {
    const BranchCase& row = GetParam();
    const auto owner =
        repository({.trunkLocation = row.trunkLocation, .branchesLocation = row.branchesLocation});
    const ReportCase report{"", "<info><entry><url>" + row.url + "</url></entry></info>",
                            namedRecords(row.branches)};
    expectRecords<SVNCurrentBranchOperation>(requestFor(owner), report);
    expectRecords<SVNCurrentBranchOperation>(requestFor(workingTree({.repository = owner})),
                                             report);
}

INSTANTIATE_TEST_SUITE_P(
    , CurrentBranch,
    testing::Values(
        BranchCase{"the trunk itself", trunk, {QuenSourceControlTrunkBranchName}},
        BranchCase{
            "below the trunk", trunk + std::string("/src"), {QuenSourceControlTrunkBranchName}},
        BranchCase{"a place whose name begins like the trunks",
                   trunk + std::string("-old/src"),
                   {QuenSourceControlTrunkBranchName}},
        BranchCase{"a branch itself", branches + std::string("/feature-x"), {"feature-x"}},
        BranchCase{"below a branch", branches + std::string("/feature-x/src/main"), {"feature-x"}},
        BranchCase{"the branches location itself", branches, {}},
        BranchCase{
            "the branches location with a separator at its end", branches + std::string("/"), {}},
        BranchCase{"a branches location configured with a separator at its end",
                   branches + std::string("/fix"),
                   {"ix"},
                   trunk,
                   branches + std::string("/")},
        BranchCase{"a branch of one letter below such a location",
                   branches + std::string("/f"),
                   {},
                   trunk,
                   branches + std::string("/")},
        BranchCase{"a place whose name begins like the branches location",
                   branches + std::string("-old/fix"),
                   {"old"}},
        BranchCase{"one character behind the branches location is skipped, not one byte",
                   branches + std::string("\xC3\xBC"
                                          "fix/src"),
                   {"fix"}},
        BranchCase{"a character beyond the basic plane is one character",
                   branches + std::string("\xF0\x9F\x98\x80"
                                          "fix"),
                   {"fix"}},
        BranchCase{"one such character alone", branches + std::string("\xC3\xBC"), {}},
        BranchCase{"a name stays encoded", branches + std::string("/fix%20me/src"), {"fix%20me"}},
        BranchCase{"a tag", "https://svn.example.org/repo/tags/1.0", {}},
        BranchCase{"above both", "https://svn.example.org/repo", {}},
        BranchCase{"the trunk counts before the branches",
                   branches + std::string("/feature-x"),
                   {QuenSourceControlTrunkBranchName},
                   branches,
                   branches},
        BranchCase{"no trunk configured", trunk, {}, {}, branches},
        BranchCase{"no trunk configured on a branch",
                   branches + std::string("/feature-x"),
                   {"feature-x"},
                   {},
                   branches},
        BranchCase{"no branches configured", branches + std::string("/feature-x"), {}, trunk, {}},
        BranchCase{"neither configured", trunk, {}, {}, {}}, BranchCase{"an empty url", "", {}}),
    CaseName());

class CurrentBranchReport : public SVNCurrentBranchOperationTest,
                            public testing::WithParamInterface<ReportCase> {};

TEST_P(CurrentBranchReport, GivesRecords) {
    const auto owner = repository({.trunkLocation = "t:/trunk", .branchesLocation = "t:/b"});
    expectRecords<SVNCurrentBranchOperation>(requestFor(owner), GetParam());
}

INSTANTIATE_TEST_SUITE_P(
    , CurrentBranchReport,
    testing::Values(
        ReportCase{"no entries", "<info></info>", Array::empty()},
        ReportCase{"several entries",
                   "<info><entry><url>t:/b/one</url></entry><entry><url>t:/trunk</url></entry>"
                   "<entry><url>t:/b/two/x</url></entry></info>",
                   namedRecords({"one", QuenSourceControlTrunkBranchName, "two"})},
        ReportCase{"an entry without a url is skipped",
                   "<info><entry/><entry><url>t:/b/two</url></entry></info>",
                   namedRecords({"two"})},
        ReportCase{"an entry with two urls is skipped",
                   "<info><entry><url>t:/b/one</url><url>t:/b/one</url></entry></info>",
                   Array::empty()},
        ReportCase{"a url deeper down does not count",
                   "<info><entry><more><url>t:/b/one</url></more></entry></info>", Array::empty()}),
    CaseName());

TEST_F(SVNCurrentBranchOperationTest, CapturedReports) {
    const Request request =
        requestFor(repository({.trunkLocation = trunk, .branchesLocation = branches}));
    expectRecords<SVNCurrentBranchOperation>(
        request, {"", testData("Reports/info/branch.xml"), namedRecords({"feature-x"})});
    expectRecords<SVNCurrentBranchOperation>(request,
                                             {"", testData("Reports/info/items.xml"),
                                              namedRecords({5, QuenSourceControlTrunkBranchName})});
}

TEST_F(SVNCurrentBranchOperationTest, WithoutAUsableRepositoryTheResultIsEmpty) {
    const auto invalid =
        repository({.isValid = false, .trunkLocation = trunk, .branchesLocation = branches});
    const std::vector<QuenSourceControlSourceTreePtr> trees = {
        nullptr, otherTree(), workingTree(), invalid, workingTree({.repository = invalid})};
    for (const QuenSourceControlSourceTreePtr& tree : trees) {
        expectRecords<SVNCurrentBranchOperation>(
            requestFor(tree), {"", testData("Reports/info/branch.xml"), Array::empty()});
    }
}

TEST_F(SVNCurrentBranchOperationTest, AnInvalidWorkingTreeOfAValidRepositoryIsAnswered) {
    const auto tree =
        workingTree({.isValid = false, .repository = repository({.branchesLocation = branches})});
    expectRecords<SVNCurrentBranchOperation>(
        requestFor(tree), {"", testData("Reports/info/branch.xml"), namedRecords({"feature-x"})});
}

TEST_F(SVNCurrentBranchOperationTest, CutReportsGiveTheReadersErrorAndNoResult) {
    const Request request = requestFor(repository({.branchesLocation = branches}));
    for (const char* report : {"Reports/info/items.xml", "Reports/info/branch.xml"}) {
        expectCutReportsFail<SVNCurrentBranchOperation>(host, request, testData(report),
                                                        {true, {}});
    }
}

} // namespace
} // namespace quen::test
