#include "Classes/SVNOperations/SVNCommitOperation.h"
#include "QuenFoundation/QuenSourceControlConstants.h"
#include "Tests/Classes/SVNOperations/ArgumentsCase.h"
#include "Tests/Support/Trees.h"

#include <gtest/gtest.h>
#include <string>

namespace quen::test {

namespace {

// Arguments

const auto aCommit = a<SVNCommitOperation>;

Dictionary messageOption(const Value& message) {
    return {{QuenSourceControlRequestOptionMessage, message}};
}

class SVNCommitArgumentsTest : public testing::TestWithParam<ArgumentsCase> {};

TEST_P(SVNCommitArgumentsTest, AreTheWholeList) {
    expectArguments(GetParam());
}

INSTANTIATE_TEST_SUITE_P(
    All, SVNCommitArgumentsTest,
    testing::Values(
        ArgumentsCase{"two files and a message",
                      aCommit,
                      {.files = StringArray{"b.c", "a.c"}, .options = messageOption("Both")},
                      StringArray{"commit", "-m", "Both", "b.c", "a.c"}},
        ArgumentsCase{
            "no message", aCommit, {.files = StringArray{"a.c"}}, StringArray{"commit", "a.c"}},
        ArgumentsCase{"an option without a value is not a message",
                      aCommit,
                      {.files = StringArray{"a.c"}, .options = messageOption(Value())},
                      StringArray{"commit", "a.c"}},
        ArgumentsCase{"an empty message is a message",
                      aCommit,
                      {.files = StringArray{"a.c"}, .options = messageOption("")},
                      StringArray{"commit", "-m", "", "a.c"}},
        ArgumentsCase{"a message stays one argument",
                      aCommit,
                      {.files = StringArray{"a.c"}, .options = messageOption("One\n\n-m \"two\"")},
                      StringArray{"commit", "-m", "One\n\n-m \"two\"", "a.c"}},
        ArgumentsCase{"empty files",
                      aCommit,
                      {.files = StringArray{}, .options = messageOption("Nothing")},
                      StringArray{"commit", "-m", "Nothing"}},
        ArgumentsCase{"absent files", aCommit, {}, StringArray{"commit"}},
        ArgumentsCase{"an at sign in a name",
                      aCommit,
                      {.files = StringArray{"dir@1/a.c", "icon@2x.png"}},
                      StringArray{"commit", "dir@1/a.c", "icon@2x.png@"}},
        ArgumentsCase{"a user",
                      aCommit,
                      {.sourceTree = workingTree({.repository = repository({.user = "jane"})}),
                       .files = StringArray{"a.c"}},
                      StringArray{"--username", "jane", "commit", "a.c"}},
        ArgumentsCase{"an error from before does not keep the arguments back",
                      aFailed<SVNCommitOperation>,
                      {.files = StringArray{"a.c"}},
                      StringArray{"commit", "a.c"}}),
    CaseName());

TEST(SVNCommitOperationTest, AnEmptyCommitIsAProgrammingErrorAndTheArgumentsAreBuiltAllTheSame) {
    const HostRecorder recorder;
    const auto operation = makeOperation<SVNCommitOperation>(
        {.files = StringArray{"a.c"},
         .options = {{QuenSourceControlRequestOptionAllowEmptyCommit, false}}});
    EXPECT_EQ(placedAssertions(recorder),
              (std::vector<PlacedAssertion>{
                  {"-[SVNCommitOperation initWithRequest:]",
                   "Classes/SVNOperations",
                   328,
                   "Assertion failed: %s",
                   {"((void*)0) == [request.options "
                    "objectForKey:QuenSourceControlRequestOptionAllowEmptyCommit]"}}}));
    EXPECT_EQ(operation->arguments(), (StringArray{"commit", "a.c"}));
    EXPECT_FALSE(operation->error());
}

TEST(SVNCommitOperationTest, WithoutARequestThereIsNoOperation) {
    SVNCommitOperation operation;
    EXPECT_FALSE(operation.initWithRequest(nullptr));
}

// Parsing

struct ParseCase {
    std::string_view name;
    std::string output;
    /// nil where the result must be set to nothing.
    String revision;
};

class SVNCommitParseTest : public testing::TestWithParam<ParseCase> {};

TEST_P(SVNCommitParseTest, ReadsTheRevision) {
    const HostRecorder recorder(3);
    const auto operation = makeOperation<SVNCommitOperation>({.files = StringArray{"a.c"}});
    operation->setResult("of an earlier run");
    operation->setData(dataOf(GetParam().output));
    operation->parseData();
    const String revision = GetParam().revision;
    const Value expected =
        revision.isNil() ? Value()
                         : Array{Dictionary{{QuenSourceControlOperationRevisionKey, revision}}};
    EXPECT_EQ(operation->result(), expected);
    EXPECT_EQ(operation->error(), Error());
    EXPECT_EQ(recorder.log(), std::vector<LogLine>());
}

INSTANTIATE_TEST_SUITE_P(
    Written, SVNCommitParseTest,
    testing::Values(
        ParseCase{"blank number full stop", "Committed revision 42.", "42"},
        ParseCase{"no digits", "Committed revision pending.", "0"},
        ParseCase{"nothing behind", "Committed revision", "0"},
        ParseCase{"white space alone behind", "Committed revision \n\t", "0"},
        ParseCase{"twice is read at the first", "Committed revision 7.\nCommitted revision 8.\n",
                  "7"},
        ParseCase{"twice with no digits at the first", "Committed revision.\nCommitted revision 8.",
                  "0"},
        ParseCase{"no blank", "Committed revision42", "42"},
        ParseCase{"other white space", "Committed revision\t\r\n  42", "42"},
        ParseCase{"a no break space",
                  "Committed revision\xC2\xA0"
                  "42",
                  "42"},
        ParseCase{"a next line control",
                  "Committed revision\xC2\x85"
                  "42",
                  "42"},
        ParseCase{"line and paragraph separators",
                  "Committed revision\xE2\x80\xA8\xE2\x80\xA9"
                  "42",
                  "42"},
        ParseCase{"an ideographic space",
                  "Committed revision\xE3\x80\x80"
                  "-42",
                  "-42"},
        ParseCase{"spaces of every width",
                  "Committed revision\xE1\x9A\x80\xE2\x80\x80\xE2\x80\x8A"
                  "\xE2\x80\xAF\xE2\x81\x9F 42",
                  "42"},
        ParseCase{"a letter of several bytes",
                  "Committed revision \xC3\xBC"
                  "42",
                  "0"},
        ParseCase{"a control character",
                  "Committed revision \x1f"
                  "42",
                  "0"},
        ParseCase{"leading zeros", "Committed revision 0042.", "42"},
        ParseCase{"plus", "Committed revision +42", "42"},
        ParseCase{"minus", "Committed revision -42", "-42"},
        ParseCase{"plus and minus", "Committed revision +-42", "0"},
        ParseCase{"two plus", "Committed revision ++42", "0"},
        ParseCase{"sign apart from the digits", "Committed revision - 42", "0"},
        ParseCase{"greatest", "Committed revision 9223372036854775807", "9223372036854775807"},
        ParseCase{"past the greatest", "Committed revision 9223372036854775808.",
                  "9223372036854775807"},
        ParseCase{"past the least", "Committed revision -99999999999999999999",
                  "-9223372036854775808"},
        ParseCase{"in the middle of a line", "svn: Committed revision 5", "5"},
        ParseCase{"other case", "committed Revision 42.", nullptr},
        ParseCase{"other text", "Sending a.c\n", nullptr},
        ParseCase{"a zero byte before it", std::string("a\0b Committed revision 3.", 25), "3"},
        ParseCase{"no text in any encoding", std::string("\xff\0 Committed revision 3.", 24),
                  nullptr}),
    CaseName());

INSTANTIATE_TEST_SUITE_P(
    Captured, SVNCommitParseTest,
    testing::Values(ParseCase{"additions", testData("Reports/commit/additions.txt"), "1"},
                    ParseCase{"changes of every kind", testData("Reports/commit/changes.txt"), "2"},
                    ParseCase{"a failed hook", testData("Reports/commit/hook-failed.txt"), "4"},
                    ParseCase{"a refusal", testData("Reports/commit/refused.txt"), nullptr},
                    // The first occurrence decides, whatever it is.
                    ParseCase{"a misleading name", testData("Reports/commit/misleading-name.txt"),
                              "7"}),
    CaseName());

TEST(SVNCommitOperationTest, OutputThatIsCutShortGivesNoErrorAndNoInventedRevision) {
    const HostRecorder recorder;
    const std::string output = testData("Reports/commit/additions.txt");
    for (const std::string_view beginning : malformedReports(output)) {
        const auto operation = parsedOperation<SVNCommitOperation>({}, beginning);
        const Array* const records = operation->result().array();
        const bool isAnnounced = beginning.find("Committed revision") != std::string_view::npos;
        EXPECT_EQ(records != nullptr, isAnnounced) << beginning;
        EXPECT_FALSE(operation->error()) << beginning;
    }
}

TEST(SVNCommitOperationTest, EmptyOutputLeavesTheResultAsItWas) {
    for (const DataPtr& nothing : {dataOf(""), DataPtr()}) {
        SVNCommitOperation operation;
        operation.setResult("of an earlier run");
        operation.setData(nothing);
        operation.parseData();
        EXPECT_EQ(operation.result(), Value("of an earlier run"));
        EXPECT_FALSE(operation.error());
    }
}

TEST(SVNCommitOperationTest, ARunEndsInOneRecord) {
    HostRecorder recorder;
    recorder.replay({{.standardOutput = testData("Reports/commit/changes.txt")}});
    const auto operation = makeOperation<SVNCommitOperation>(
        {.files = StringArray{"a.c"}, .options = messageOption("m")});
    operation->main();
    ASSERT_EQ(recorder.invocations().size(), 1U);
    EXPECT_EQ(recorder.invocations().front().arguments, (StringArray{"commit", "-m", "m", "a.c"}));
    EXPECT_EQ(operation->result(),
              Value(Array{Dictionary{{QuenSourceControlOperationRevisionKey, "2"}}}));
    EXPECT_FALSE(operation->error());
}

} // namespace

} // namespace quen::test
