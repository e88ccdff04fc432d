#include "Classes/SVNOperations/SVNDiffOperation.h"
#include "QuenFoundation/QuenSourceControlConstants.h"
#include "Tests/Classes/SVNOperations/QueryCases.h"
#include "Tests/Support/Trees.h"

namespace quen::test {
namespace {

using namespace std::string_literals;

const Request text{.type = RequestTypeDiff, .files = StringArray{"a.c"}};
const Request summary{.type = RequestTypeDiff, .destination = "v", .files = StringArray{"u"}};

class SVNDiffOperationTest : public testing::Test {
protected:
    HostRecorder host;
};

// Commands

class DiffCommand : public testing::TestWithParam<ArgumentsCase> {};

TEST_P(DiffCommand, IsWhole) {
    expectArguments(GetParam());
}

/// A request for the difference of `a` and `b`.
Request range(const String& start, const String& end = {}) {
    return {.type = RequestTypeDiff,
            .files = StringArray{"a", "b"},
            .startingRevision = start,
            .endingRevision = end};
}

/// The same with a destination, `v`, and with direct revisions.
Request direct(const String& start, const String& end = {}, const String& first = "u") {
    return {.type = RequestTypeDiff,
            .destination = "v",
            .files = StringArray{first, "ignored"},
            .options = {{QuenSourceControlRequestOptionSupplyDirectRevision, true}},
            .startingRevision = start,
            .endingRevision = end};
}

INSTANTIATE_TEST_SUITE_P(
    ARange, DiffCommand,
    testing::Values(
        ArgumentsCase{"of two revisions", a<SVNDiffOperation>, range("10", "12"),
                      StringArray{"diff", "-r", "10:12", "a", "b"}},
        ArgumentsCase{"without an end", a<SVNDiffOperation>, range("10"),
                      StringArray{"diff", "-r", "10:(null)", "a", "b"}},
        ArgumentsCase{"that is one change", a<SVNDiffOperation>, range("12^", "12"),
                      StringArray{"diff", "-c", "12", "a", "b"}},
        ArgumentsCase{"with a caret anywhere", a<SVNDiffOperation>, range("1^2", "7"),
                      StringArray{"diff", "-c", "7", "a", "b"}},
        ArgumentsCase{"with a caret and no end", a<SVNDiffOperation>, range("5^"),
                      StringArray{"diff", "-c", "a", "b"}},
        ArgumentsCase{"whose option says no",
                      a<SVNDiffOperation>,
                      {.type = RequestTypeDiff,
                       .files = StringArray{"a"},
                       .options = {{QuenSourceControlRequestOptionSupplyDirectRevision, false}},
                       .startingRevision = "10",
                       .endingRevision = "12"},
                      StringArray{"diff", "-r", "10:12", "a"}},
        ArgumentsCase{"is not touched by a destination",
                      a<SVNDiffOperation>,
                      {.type = RequestTypeDiff,
                       .destination = "v",
                       .files = StringArray{"a", "b"},
                       .startingRevision = "10",
                       .endingRevision = "12"},
                      StringArray{"diff", "-r", "10:12", "a", "b"}},
        ArgumentsCase{"of revision names", a<SVNDiffOperation>,
                      range(QuenSourceControlBASERevisionName, QuenSourceControlHEADRevisionName),
                      StringArray{"diff", "-r", "BASE:HEAD", "a", "b"}},
        ArgumentsCase{"of no files",
                      a<SVNDiffOperation>,
                      {.type = RequestTypeDiff, .startingRevision = "1", .endingRevision = "2"},
                      StringArray{"diff", "-r", "1:2"}},
        ArgumentsCase{"of a user",
                      a<SVNDiffOperation>,
                      {.type = RequestTypeDiff,
                       .sourceTree = repository({.user = "anna"}),
                       .files = StringArray{"icon@2x.png"},
                       .startingRevision = "1",
                       .endingRevision = "2"},
                      StringArray{"--username", "anna", "diff", "-r", "1:2", "icon@2x.png@"}}),
    CaseName());

INSTANTIATE_TEST_SUITE_P(
    WithoutARange, DiffCommand,
    testing::Values(
        ArgumentsCase{"nor a destination no files are passed", a<SVNDiffOperation>, range(nullptr),
                      StringArray{"diff"}},
        ArgumentsCase{"an end alone counts for nothing", a<SVNDiffOperation>, range(nullptr, "12"),
                      StringArray{"diff"}},
        ArgumentsCase{"a direct start without a destination adds nothing",
                      a<SVNDiffOperation>,
                      {.type = RequestTypeDiff,
                       .files = StringArray{"a"},
                       .options = {{QuenSourceControlRequestOptionSupplyDirectRevision, true}},
                       .startingRevision = "10",
                       .endingRevision = "12"},
                      StringArray{"diff"}},
        ArgumentsCase{
            "a destination makes a summary of the first file and it",
            a<SVNDiffOperation>,
            {.type = RequestTypeDiff, .destination = "v", .files = StringArray{"u", "ignored"}},
            StringArray{"diff", "--summarize", "--xml", "u", "v"}},
        ArgumentsCase{"an end that is not direct pins nothing",
                      a<SVNDiffOperation>,
                      {.type = RequestTypeDiff,
                       .destination = "v",
                       .files = StringArray{"u"},
                       .endingRevision = "12"},
                      StringArray{"diff", "--summarize", "--xml", "u", "v"}},
        ArgumentsCase{"a destination without files",
                      a<SVNDiffOperation>,
                      {.type = RequestTypeDiff, .destination = "v"},
                      StringArray{"diff", "--summarize", "--xml", "v"}},
        ArgumentsCase{"both pinned", a<SVNDiffOperation>, direct("10", "12"),
                      StringArray{"diff", "--summarize", "--xml", "u@10", "v@12"}},
        ArgumentsCase{"the first pinned", a<SVNDiffOperation>, direct("10"),
                      StringArray{"diff", "--summarize", "--xml", "u@10", "v"}},
        ArgumentsCase{"the destination pinned", a<SVNDiffOperation>, direct(nullptr, "12"),
                      StringArray{"diff", "--summarize", "--xml", "u", "v@12"}},
        ArgumentsCase{"none pinned", a<SVNDiffOperation>, direct(nullptr),
                      StringArray{"diff", "--summarize", "--xml", "u", "v"}},
        ArgumentsCase{"a caret is a revision like any other when direct", a<SVNDiffOperation>,
                      direct("5^"), StringArray{"diff", "--summarize", "--xml", "u@5^", "v"}},
        ArgumentsCase{"a name that ends in an at sign gets another when pinned",
                      a<SVNDiffOperation>, direct("10", "12", "icon@2x.png"),
                      StringArray{"diff", "--summarize", "--xml", "icon@2x.png@@10", "v@12"}}),
    CaseName());

// Texts

class DiffText : public SVNDiffOperationTest, public testing::WithParamInterface<const char*> {};

TEST_P(DiffText, IsOneRecord) {
    const std::string output = testData(GetParam());
    expectRecords<SVNDiffOperation>(
        text,
        {"", output, Array{Dictionary{{QuenSourceControlOperationContentKey, String(output)}}}});
}

INSTANTIATE_TEST_SUITE_P(, DiffText,
                         testing::Values("Reports/diff/working-copy.txt", "Reports/diff/range.txt",
                                         // Well-formed, and a text all the same.
                                         "Reports/diff/summary.xml"));

/// That a run has left neither result nor error, and has said nothing.
void expectNothing(HostRecorder& host, const Request& request, std::string_view output) {
    host.setLogLevel(3);
    const auto operation = parsedOperation<SVNDiffOperation>(request, output);
    EXPECT_TRUE(operation->result().isNothing());
    EXPECT_EQ(operation->error(), Error());
    EXPECT_EQ(host.log(), std::vector<LogLine>());
    EXPECT_EQ(host.assertionFacts(), std::vector<AssertionFacts>());
}

TEST_F(SVNDiffOperationTest, EmptyOutputLeavesNothing) {
    expectNothing(host, text, "");
    expectNothing(host, summary, "");
    for (const Request& request : {text, summary}) {
        const auto operation = makeOperation<SVNDiffOperation>(request);
        operation->parseData();
        EXPECT_TRUE(operation->result().isNothing());
        EXPECT_EQ(operation->error(), Error());
    }
}

TEST_F(SVNDiffOperationTest, OutputThatIsNoTextLeavesNothing) {
    expectNothing(host, text, "\xff\0\xfe"s);
}

TEST_F(SVNDiffOperationTest, ARangeWithADestinationGivesATextThatIsReadAsASummaryForNothing) {
    const Request request{.type = RequestTypeDiff,
                          .destination = "v",
                          .files = StringArray{"a.c"},
                          .startingRevision = "2",
                          .endingRevision = "7"};
    EXPECT_EQ(makeOperation<SVNDiffOperation>(request)->arguments(),
              (StringArray{"diff", "-r", "2:7", "a.c"}));
    expectNothing(host, request, testData("Reports/diff/range.txt"));
}

// Summaries

Dictionary change(std::int64_t status, bool isLeaf, const String& path) {
    return {{QuenSourceControlOperationWCStatusKey, status},
            {QuenSourceControlOperationIsLeafKey, isLeaf},
            {QuenSourceControlOperationPathKey, path}};
}

Dictionary unlabelled(const String& path) {
    return {{QuenSourceControlOperationPathKey, path}};
}

TEST_F(SVNDiffOperationTest, CapturedSummary) {
    const std::string trunk = "https://svn.example.org/repo/trunk";
    expectRecords<SVNDiffOperation>(
        summary, {"", testData("Reports/diff/summary.xml"),
                  Array{change(2, true, trunk + "/old.c"), change(1, true, trunk + "/new.c"),
                        change(4, true, trunk + "/src/main.c")}});
}

class DiffSummary : public SVNDiffOperationTest, public testing::WithParamInterface<ReportCase> {};

TEST_P(DiffSummary, GivesRecords) {
    expectRecords<SVNDiffOperation>(summary, GetParam());
    EXPECT_EQ(host.assertionFacts(), std::vector<AssertionFacts>());
}

INSTANTIATE_TEST_SUITE_P(
    , DiffSummary,
    testing::Values(
        ReportCase{"no paths", "<diff/>", Array::empty()},
        ReportCase{"no path", "<diff><paths></paths></diff>", Array::empty()},
        ReportCase{"a path outside paths", "<diff><path>a</path></diff>", Array::empty()},
        ReportCase{"only the first paths is read",
                   "<diff><paths><path>a</path></paths><paths><path>b</path></paths></diff>",
                   {unlabelled("a")}},
        ReportCase{"an empty first paths hides the second",
                   "<diff><paths/><paths><path>b</path></paths></diff>", Array::empty()},
        ReportCase{"kinds",
                   "<diff><paths><path item='none' kind='dir'>a</path>"
                   "<path item='none' kind='file'>b</path></paths></diff>",
                   {change(0, false, "a"), change(0, true, "b")}},
        ReportCase{"a kind that is neither leaves the key out",
                   "<diff><paths><path kind='none'>a</path><path kind='File'>b</path>"
                   "<path kind=''>c</path></paths></diff>",
                   {unlabelled("a"), unlabelled("b"), unlabelled("c")}},
        ReportCase{"no item leaves the key out",
                   "<diff><paths><path kind='file'>a</path></paths></diff>",
                   {Dictionary{{QuenSourceControlOperationIsLeafKey, true},
                               {QuenSourceControlOperationPathKey, "a"}}}},
        ReportCase{"changed properties do not show",
                   "<diff><paths><path item='none' props='modified' kind='file'>a</path></paths>"
                   "</diff>",
                   {change(0, true, "a")}},
        ReportCase{"added is never copied",
                   "<diff><paths><path item='added' copied='true' kind='file'>a</path></paths>"
                   "</diff>",
                   {change(1, true, "a")}},
        ReportCase{
            "an empty path is a path", "<diff><paths><path/></paths></diff>", {unlabelled("")}},
        ReportCase{"text with entities",
                   "<diff><paths><path>a &amp; b&lt;c</path></paths></diff>",
                   {unlabelled("a & b<c")}}),
    CaseName());

constexpr std::string_view unknownWord =
    "<diff><paths><path item='merged' kind='file'>a</path></paths></diff>";

TEST_F(SVNDiffOperationTest, AnUnknownWordIsNothingAndALineInTheLog) {
    host.setLogLevel(1);
    expectRecords<SVNDiffOperation>(summary,
                                    {"", std::string(unknownWord), {change(0, true, "a")}});
    EXPECT_EQ(host.log(),
              (std::vector<LogLine>{{1, "ERROR: Your working copy returned an SVN status of "
                                        "\"merged\" that we don't handle (yet)"}}));
    EXPECT_EQ(host.assertionFacts(), std::vector<AssertionFacts>());
}

TEST_F(SVNDiffOperationTest, AnUnknownWordInASecondPathsIsNotRead) {
    host.setLogLevel(1);
    expectRecords<SVNDiffOperation>(
        summary,
        {"", "<diff><paths/><paths><path item='merged'>a</path></paths></diff>", Array::empty()});
    EXPECT_EQ(host.log(), std::vector<LogLine>());
}

TEST_F(SVNDiffOperationTest, CutSummariesLeaveNothing) {
    for (const std::string& report :
         {testData("Reports/diff/summary.xml"), std::string(unknownWord)}) {
        expectCutReportsFail<SVNDiffOperation>(host, summary, report, {false, {}});
    }
}

} // namespace
} // namespace quen::test
