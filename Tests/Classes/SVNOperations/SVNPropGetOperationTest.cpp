#include "Classes/SVNOperations/SVNPropGetOperation.h"
#include "Foundation/XMLReport.h"
#include "QuenFoundation/QuenSourceControlConstants.h"
#include "Tests/Classes/SVNOperations/ArgumentsCase.h"
#include "Tests/Classes/SVNOperations/IgnoreListReport.h"
#include "Tests/Support/Trees.h"

#include <gtest/gtest.h>
#include <string>

namespace quen::test {

namespace {

Dictionary ignoreItem(const Value& property = "svn:ignore") {
    return {{QuenSourceControlRequestOptionIgnoreItem, property}};
}

Request query(std::int32_t type, const String& file, const Dictionary& options = ignoreItem()) {
    return {
        .type = type, .sourceTree = workingTree(), .files = StringArray{file}, .options = options};
}

// Arguments

class SVNPropGetArgumentsTest : public testing::TestWithParam<ArgumentsCase> {};

TEST_P(SVNPropGetArgumentsTest, AreTheWholeList) {
    expectArguments(GetParam());
}

INSTANTIATE_TEST_SUITE_P(
    All, SVNPropGetArgumentsTest,
    testing::Values(
        ArgumentsCase{"the directory of the file", a<SVNPropGetOperation>,
                      query(RequestTypeIgnore, "/w/src/build.log"),
                      StringArray{"propget", "--xml", "svn:ignore", "/w/src"}},
        ArgumentsCase{"whatever the type", a<SVNPropGetOperation>,
                      query(RequestTypeStatus, "/w/src/build.log"),
                      StringArray{"propget", "--xml", "svn:ignore", "/w/src"}},
        ArgumentsCase{"a bare name lies in the current directory", a<SVNPropGetOperation>,
                      query(RequestTypeIgnore, "build.log"),
                      StringArray{"propget", "--xml", "svn:ignore", ""}},
        ArgumentsCase{"a user",
                      a<SVNPropGetOperation>,
                      {.sourceTree = repository({.user = "jane"}),
                       .files = StringArray{"/w/a"},
                       .options = ignoreItem()},
                      StringArray{"--username", "jane", "propget", "--xml", "svn:ignore", "/w"}},
        ArgumentsCase{"an error from before does not keep the arguments back",
                      aFailed<SVNPropGetOperation>, query(RequestTypeIgnore, "/w/a"),
                      StringArray{"propget", "--xml", "svn:ignore", "/w"}},
        ArgumentsCase{"another property", a<SVNPropGetOperation>,
                      query(RequestTypeIgnore, "/w/a", ignoreItem("svn:externals")), std::nullopt},
        ArgumentsCase{"a property in other case", a<SVNPropGetOperation>,
                      query(RequestTypeIgnore, "/w/a", ignoreItem("SVN:ignore")), std::nullopt},
        ArgumentsCase{"an option without a value", a<SVNPropGetOperation>,
                      query(RequestTypeIgnore, "/w/a", ignoreItem(Value())), std::nullopt},
        ArgumentsCase{"no options", a<SVNPropGetOperation>, query(RequestTypeIgnore, "/w/a", {}),
                      std::nullopt}),
    CaseName());

struct CountCase {
    std::string_view name;
    std::optional<StringArray> files;
    StringArray arguments;
};

class SVNPropGetFileCountTest : public testing::TestWithParam<CountCase> {};

TEST_P(SVNPropGetFileCountTest, OtherThanOneIsAProgrammingErrorAndTheFirstIsUsed) {
    const HostRecorder recorder;
    const auto operation = makeOperation<SVNPropGetOperation>({.type = RequestTypeIgnore,
                                                               .sourceTree = workingTree(),
                                                               .files = GetParam().files,
                                                               .options = ignoreItem()});
    EXPECT_EQ(placedAssertions(recorder),
              (std::vector<PlacedAssertion>{
                  {"-[SVNPropGetOperation initWithRequest:]",
                   "Classes/SVNOperations",
                   710,
                   "Assertion failed: %s",
                   {"SVNPropGetOperation can only operate on one file at a time.",
                    "[self.request.files count] == 1"}}}));
    EXPECT_EQ(messageOf(recorder.assertions().front()),
              "Assertion failed: SVNPropGetOperation can only operate on one file at a time.");
    EXPECT_EQ(operation->arguments(), GetParam().arguments);
    operation->setData(dataOf(ignoreListReport("b.txt\n")));
    operation->parseData();
    EXPECT_EQ(operation->error(), Error());
}

INSTANTIATE_TEST_SUITE_P(
    All, SVNPropGetFileCountTest,
    testing::Values(
        CountCase{"two", StringArray{"/w/a", "/v/b"}, {"propget", "--xml", "svn:ignore", "/w"}},
        CountCase{"none", StringArray{}, {"propget", "--xml", "svn:ignore"}},
        CountCase{"absent", std::nullopt, {"propget", "--xml", "svn:ignore"}}),
    CaseName());

TEST(SVNPropGetOperationTest, WithoutARequestThereIsNoOperation) {
    SVNPropGetOperation operation;
    EXPECT_FALSE(operation.initWithRequest(nullptr));
}

// The edit

const Error notFound(QuenSourceControlErrorDomain, -11);

StringArray written(const String& names, const String& directory = "/w") {
    return {"SVNPropSetOperation", "propset", "svn:ignore", names, directory};
}

const StringArray deleted{"SVNPropDelOperation", "propdel", "svn:ignore", "/w"};

struct EditCase {
    std::string_view name;
    std::int32_t type;
    /// What the query's run gives.
    PreparedRun run;
    /// Class and arguments; absent where nothing may be queued.
    std::optional<StringArray> edit;
    Error error = {};
    String file = "/w/a.txt";
};

class SVNPropGetEditTest : public testing::TestWithParam<EditCase> {};

TEST_P(SVNPropGetEditTest, IsQueuedBehindTheQuery) {
    HostRecorder recorder;
    recorder.replay({GetParam().run, editRun()});
    const auto operation =
        makeOperation<SVNPropGetOperation>(query(GetParam().type, GetParam().file));
    // A queue without threads: both have run when this returns.
    OperationQueue::make(0)->addOperation(operation);
    std::vector<StringArray> runs{{"SVNPropGetOperation", "propget", "--xml", "svn:ignore", "/w"}};
    if (GetParam().edit) {
        runs.push_back(*GetParam().edit);
    }
    EXPECT_EQ(asked(recorder.invocations()), runs);
    EXPECT_EQ(operation->result(), Value());
    EXPECT_EQ(operation->error(), GetParam().error);
    EXPECT_EQ(recorder.assertionFacts(), std::vector<AssertionFacts>());
}

INSTANTIATE_TEST_SUITE_P(
    Ignore, SVNPropGetEditTest,
    testing::Values(
        EditCase{"the only ignored name", RequestTypeIgnore, listRun("a.txt\n"), std::nullopt},
        EditCase{"the only name that counts", RequestTypeIgnore, listRun("\n*\na.txt\n"),
                 std::nullopt},
        EditCase{"a name between others moves to the front", RequestTypeIgnore,
                 listRun("b.txt\na.txt\nc.txt\n"), written("a.txt\nb.txt\nc.txt")},
        EditCase{"a name that is in front already is written again", RequestTypeIgnore,
                 listRun("a.txt\nb.txt\n"), written("a.txt\nb.txt")},
        EditCase{"a name that is there twice and alone", RequestTypeIgnore,
                 listRun("a.txt\na.txt\n"), written("a.txt")},
        EditCase{"an absent property", RequestTypeIgnore, noListRun(), written("a.txt")},
        EditCase{"an empty property", RequestTypeIgnore, listRun(""), written("a.txt")},
        EditCase{"blank lines and bare wildcards are lost", RequestTypeIgnore,
                 listRun("b.txt\n\n*"), written("a.txt\nb.txt")},
        EditCase{"a captured list",
                 RequestTypeIgnore,
                 {.standardOutput = testData("Reports/propget/several.xml")},
                 written("a.txt\nb.txt\nc.txt")},
        EditCase{"a captured list with much in it",
                 RequestTypeIgnore,
                 {.standardOutput = testData("Reports/propget/odd.xml")},
                 written("a.txt\nb.txt\na & b <ü>\n  *.o ")},
        EditCase{"a captured list of that name",
                 RequestTypeIgnore,
                 {.standardOutput = testData("Reports/propget/single.xml")},
                 std::nullopt},
        EditCase{"a captured absence",
                 RequestTypeIgnore,
                 {.standardOutput = testData("Reports/propget/none.xml"),
                  .standardError = testData("Reports/propget/none.stderr"),
                  .exitStatus = 1},
                 written("a.txt")},
        EditCase{"other duplicates stay", RequestTypeIgnore, listRun("b\na.txt\nb\n"),
                 written("a.txt\nb\nb")},
        EditCase{"a pattern is not a name", RequestTypeIgnore, listRun("*.txt\n"),
                 written("a.txt\n*.txt")},
        EditCase{"other case is another name", RequestTypeIgnore, listRun("A.txt\n"),
                 written("a.txt\nA.txt")},
        EditCase{"white space makes another name", RequestTypeIgnore, listRun("a.txt \n"),
                 written("a.txt\na.txt ")}),
    CaseName());

INSTANTIATE_TEST_SUITE_P(
    Unignore, SVNPropGetEditTest,
    testing::Values(EditCase{"the only name", RequestTypeUnignore, listRun("a.txt\n"), deleted},
                    EditCase{"the only name several times", RequestTypeUnignore,
                             listRun("a.txt\na.txt\n\na.txt"), deleted},
                    EditCase{"the only name that counts", RequestTypeUnignore,
                             listRun("*\na.txt\n"), deleted},
                    EditCase{"a name among others", RequestTypeUnignore,
                             listRun("c\na.txt\nb\na.txt\n"), written("c\nb")},
                    EditCase{"a captured list",
                             RequestTypeUnignore,
                             {.standardOutput = testData("Reports/propget/several.xml")},
                             written("b.txt\nc.txt")},
                    EditCase{"another name alone", RequestTypeUnignore, listRun("b.txt\n"),
                             std::nullopt, notFound},
                    EditCase{"a pattern is not a name", RequestTypeUnignore, listRun("*.txt\n"),
                             std::nullopt, notFound},
                    EditCase{"other case is another name", RequestTypeUnignore, listRun("A.TXT\n"),
                             std::nullopt, notFound},
                    EditCase{"an empty property", RequestTypeUnignore, listRun(""), std::nullopt},
                    EditCase{"a list of nothing that counts", RequestTypeUnignore, listRun("*\n"),
                             std::nullopt},
                    EditCase{"an absent property", RequestTypeUnignore, noListRun(), std::nullopt}),
    CaseName());

INSTANTIATE_TEST_SUITE_P(
    AnyOtherType, SVNPropGetEditTest,
    testing::Values(EditCase{"status", RequestTypeStatus, listRun("b.txt\n"), std::nullopt},
                    EditCase{"add", RequestTypeAdd, listRun("a.txt\n"), std::nullopt}),
    CaseName());

// The query's own name is closed for the client when the query is made; entries are never touched.
INSTANTIATE_TEST_SUITE_P(
    AtSign, SVNPropGetEditTest,
    testing::Values(EditCase{"the name is compared as the client gets it",
                             RequestTypeIgnore,
                             listRun("i@2x.png@\n"),
                             std::nullopt,
                             {},
                             "/w/i@2x.png"},
                    EditCase{"the other entries are written as they are",
                             RequestTypeIgnore,
                             listRun("*@3x.png\nj@2x.png@\n/x/k@\n"),
                             written("i@2x.png@\n*@3x.png\nj@2x.png@\n/x/k@"),
                             {},
                             "/w/i@2x.png"},
                    EditCase{"and so they are when a name goes", RequestTypeUnignore,
                             listRun("*@3x.png\na.txt\n"), written("*@3x.png")},
                    EditCase{"the plain name is not found", RequestTypeUnignore,
                             listRun("i@2x.png\n"), std::nullopt, notFound, "/w/i@2x.png"}),
    CaseName());

// Which properties of a report count

PreparedRun report(const std::string& body) {
    return {.standardOutput = "<properties>" + body + "</properties>"};
}

INSTANTIATE_TEST_SUITE_P(
    Reports, SVNPropGetEditTest,
    testing::Values(EditCase{"of several the last counts", RequestTypeIgnore,
                             report("<target><property name='svn:ignore'>b</property>"
                                    "<property name='svn:ignore'>c</property></target>"
                                    "<target><property name='svn:ignore'>d</property></target>"),
                             written("a.txt\nd")},
                    EditCase{"of several the last counts though it is empty", RequestTypeIgnore,
                             report("<target><property name='svn:ignore'>b</property>"
                                    "<property name='svn:ignore'/></target>"),
                             written("a.txt")},
                    EditCase{"other properties do not count", RequestTypeIgnore,
                             report("<target><property name='svn:ignore'>b</property>"
                                    "<property name='svn:externals'>c</property>"
                                    "<property>d</property></target>"),
                             written("a.txt\nb")},
                    EditCase{
                        "neither do properties elsewhere", RequestTypeIgnore,
                        report("<property name='svn:ignore'>b</property>"
                               "<other><property name='svn:ignore'>c</property></other>"
                               "<target><x><property name='svn:ignore'>d</property></x></target>"),
                        written("a.txt")}),
    CaseName());

// A property that the client cannot show as text

PreparedRun encoded(const std::string& attributes, const std::string& text) {
    return report("<target><property name='svn:ignore' " + attributes + ">" + text +
                  "</property></target>");
}

Error notText() {
    return {QuenSourceControlErrorDomain,
            -11,
            {{NSLocalizedDescriptionKey,
              "The names that are ignored in \"/w\" cannot be edited because their list is not "
              "plain text."},
             {NSLocalizedRecoverySuggestionErrorKey,
              "Write the list anew with svn propset svn:ignore, and try again."}}};
}

INSTANTIATE_TEST_SUITE_P(
    Encoded, SVNPropGetEditTest,
    testing::Values(EditCase{"ignore leaves it alone", RequestTypeIgnore,
                             encoded("encoding='base64'", "AWEudHh0Cg=="), std::nullopt, notText()},
                    EditCase{"unignore leaves it alone", RequestTypeUnignore,
                             encoded("encoding='base64'", "AWEudHh0Cg=="), std::nullopt, notText()},
                    EditCase{"though it reads like the name", RequestTypeIgnore,
                             encoded("encoding='base64'", "a.txt"), std::nullopt, notText()},
                    EditCase{"any other type says nothing", RequestTypeStatus,
                             encoded("encoding='base64'", "AWEudHh0Cg=="), std::nullopt},
                    EditCase{"a later one in plain text counts", RequestTypeIgnore,
                             report("<target><property name='svn:ignore' encoding='base64'>AQ=="
                                    "</property><property name='svn:ignore'>b</property></target>"),
                             written("a.txt\nb")}),
    CaseName());

struct TreeCase {
    std::string_view name;
    QuenSourceControlSourceTreePtr tree;
};

class SVNPropGetTreeTest : public testing::TestWithParam<TreeCase> {};

TEST_P(SVNPropGetTreeTest, ThatIsNotValidSilentlySkipsTheEdit) {
    for (const std::int32_t type : {RequestTypeIgnore, RequestTypeUnignore}) {
        for (const PreparedRun& list : {listRun(""), listRun("a.txt\n"), listRun("b.txt\n"),
                                        encoded("encoding='base64'", "AQ==")}) {
            HostRecorder recorder;
            recorder.replay({list});
            Request request = query(type, "/w/a.txt");
            request.sourceTree = GetParam().tree;
            const auto operation = makeOperation<SVNPropGetOperation>(request);
            OperationQueue::make(0)->addOperation(operation);
            EXPECT_EQ(recorder.invocations().size(), 1U) << type << list.standardOutput;
            EXPECT_EQ(operation->error(), Error()) << type << list.standardOutput;
        }
    }
}

INSTANTIATE_TEST_SUITE_P(All, SVNPropGetTreeTest,
                         testing::Values(TreeCase{"working tree", workingTree({.isValid = false})},
                                         TreeCase{"repository", repository({.isValid = false})},
                                         TreeCase{"none", nullptr}),
                         CaseName());

TEST(SVNPropGetOperationTest, TheEditRunsForTheSameUser) {
    HostRecorder recorder;
    recorder.replay({listRun("a.txt\nb.txt\n"), editRun()});
    Request request = query(RequestTypeUnignore, "/w/a.txt");
    request.sourceTree = workingTree({.repository = repository({.user = "jane"})});
    OperationQueue::make(0)->addOperation(makeOperation<SVNPropGetOperation>(request));
    ASSERT_EQ(recorder.invocations().size(), 2U);
    EXPECT_EQ(recorder.invocations()[1].arguments,
              (StringArray{"--username", "jane", "propset", "svn:ignore", "b.txt", "/w"}));
}

TEST(SVNPropGetOperationTest, HowTheEditEndsIsNotLookedAt) {
    HostRecorder recorder;
    recorder.replay({noListRun(), failedRun()});
    const auto operation = makeOperation<SVNPropGetOperation>(query(RequestTypeIgnore, "/w/a.txt"));
    OperationQueue::make(0)->addOperation(operation);
    EXPECT_EQ(recorder.invocations().size(), 2U);
    EXPECT_EQ(operation->error(), Error());
}

TEST(SVNPropGetOperationTest, OutsideAQueueNothingIsQueued) {
    HostRecorder recorder;
    recorder.replay({noListRun()});
    const auto operation = makeOperation<SVNPropGetOperation>(query(RequestTypeIgnore, "/w/a.txt"));
    operation->main();
    EXPECT_EQ(recorder.invocations().size(), 1U);
    EXPECT_EQ(operation->error(), Error());
}

TEST(SVNPropGetOperationTest, AMalformedReportIsTheParsersErrorAndQueuesNothing) {
    const std::string whole = testData("Reports/propget/several.xml");
    for (const std::string_view beginning : malformedReports(whole)) {
        HostRecorder recorder;
        recorder.replay({{.standardOutput = std::string(beginning)}});
        const auto operation =
            makeOperation<SVNPropGetOperation>(query(RequestTypeIgnore, "/w/a.txt"));
        OperationQueue::make(0)->addOperation(operation);
        EXPECT_EQ(operation->error().domain(), XMLParserErrorDomain) << beginning;
        EXPECT_EQ(operation->result(), Value()) << beginning;
        EXPECT_EQ(recorder.invocations().size(), 1U) << beginning;
    }
}

TEST(SVNPropGetOperationTest, WithoutTheOptionAReportIsOnlyCheckedForBeingOne) {
    const HostRecorder recorder;
    const Request request = query(RequestTypeUnignore, "/w/a.txt", {});
    EXPECT_EQ(parsedOperation<SVNPropGetOperation>(request, ignoreListReport("b\n"))->error(),
              Error());
    EXPECT_EQ(parsedOperation<SVNPropGetOperation>(request, "<properties>")->error().domain(),
              XMLParserErrorDomain);
}

TEST(SVNPropGetOperationTest, NoDataIsAMalformedReport) {
    const HostRecorder recorder;
    const auto operation = makeOperation<SVNPropGetOperation>(query(RequestTypeIgnore, "/w/a.txt"));
    operation->parseData();
    EXPECT_EQ(operation->error().domain(), XMLParserErrorDomain);
}

} // namespace

} // namespace quen::test
