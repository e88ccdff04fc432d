#include "Classes/SVNOperations/SVNLocalEdits.h"
#include "QuenFoundation/QuenSourceControlConstants.h"
#include "Tests/Classes/SVNOperations/ArgumentsCase.h"
#include "Tests/Support/Trees.h"

#include <gtest/gtest.h>
#include <string>

namespace quen::test {

namespace {

Dictionary messageOption(const Value& message) {
    return {{QuenSourceControlRequestOptionMessage, message}};
}

QuenSourceControlSourceTreePtr configured() {
    return repository({.name = "origin", .branchesLocation = "http://host/r/branches"});
}

class SVNLocalEditsArgumentsTest : public testing::TestWithParam<ArgumentsCase> {};

TEST_P(SVNLocalEditsArgumentsTest, AreTheWholeList) {
    expectArguments(GetParam());
}

INSTANTIATE_TEST_SUITE_P(
    Add, SVNLocalEditsArgumentsTest,
    testing::Values(
        ArgumentsCase{"files in their order",
                      a<SVNAddOperation>,
                      {.files = StringArray{"b.c", "a.c", "icon@2x.png"}},
                      StringArray{"add", "b.c", "a.c", "icon@2x.png@"}},
        ArgumentsCase{
            "empty files", a<SVNAddOperation>, {.files = StringArray{}}, StringArray{"add"}},
        ArgumentsCase{
            "absent files are empty ones by then", a<SVNAddOperation>, {}, StringArray{"add"}},
        ArgumentsCase{"a message is not read",
                      a<SVNAddOperation>,
                      {.files = StringArray{"a.c"}, .options = messageOption("m")},
                      StringArray{"add", "a.c"}},
        ArgumentsCase{"a user",
                      a<SVNAddOperation>,
                      {.sourceTree = repository({.user = "jane"}), .files = StringArray{"a.c"}},
                      StringArray{"--username", "jane", "add", "a.c"}},
        ArgumentsCase{"an error from before does not keep the arguments back",
                      aFailed<SVNAddOperation>,
                      {.files = StringArray{"a.c"}},
                      StringArray{"add", "a.c"}}),
    CaseName());

INSTANTIATE_TEST_SUITE_P(
    Revert, SVNLocalEditsArgumentsTest,
    testing::Values(ArgumentsCase{"a single file with everything below",
                                  a<SVNRevertOperation>,
                                  {.files = StringArray{"a.c"}},
                                  StringArray{"revert", "-R", "a.c"}},
                    ArgumentsCase{"files in their order",
                                  a<SVNRevertOperation>,
                                  {.files = StringArray{"b.c", "a.c"}},
                                  StringArray{"revert", "-R", "b.c", "a.c"}},
                    ArgumentsCase{"empty files",
                                  a<SVNRevertOperation>,
                                  {.files = StringArray{}},
                                  StringArray{"revert", "-R"}},
                    ArgumentsCase{
                        "absent files", a<SVNRevertOperation>, {}, StringArray{"revert", "-R"}},
                    ArgumentsCase{"an error from before does not keep the arguments back",
                                  aFailed<SVNRevertOperation>,
                                  {.files = StringArray{"a.c"}},
                                  StringArray{"revert", "-R", "a.c"}}),
    CaseName());

INSTANTIATE_TEST_SUITE_P(
    Resolve, SVNLocalEditsArgumentsTest,
    testing::Values(ArgumentsCase{"files in their order",
                                  a<SVNResolveOperation>,
                                  {.files = StringArray{"b.c", "a.c"}},
                                  StringArray{"resolve", "--accept", "working", "b.c", "a.c"}},
                    ArgumentsCase{"empty files",
                                  a<SVNResolveOperation>,
                                  {.files = StringArray{}},
                                  StringArray{"resolve", "--accept", "working"}},
                    ArgumentsCase{"absent files",
                                  a<SVNResolveOperation>,
                                  {},
                                  StringArray{"resolve", "--accept", "working"}},
                    ArgumentsCase{"an error from before does not keep the arguments back",
                                  aFailed<SVNResolveOperation>,
                                  {.files = StringArray{"a.c"}},
                                  StringArray{"resolve", "--accept", "working", "a.c"}}),
    CaseName());

INSTANTIATE_TEST_SUITE_P(
    Remove, SVNLocalEditsArgumentsTest,
    testing::Values(
        ArgumentsCase{"files without a message",
                      a<SVNRemoveOperation>,
                      {.type = RequestTypeRemove, .files = StringArray{"b.c", "a.c"}},
                      StringArray{"remove", "--force", "b.c", "a.c"}},
        ArgumentsCase{"a message stands before the files",
                      a<SVNRemoveOperation>,
                      {.type = RequestTypeRemove,
                       .files = StringArray{"b.c", "a.c"},
                       .options = messageOption("Gone")},
                      StringArray{"remove", "--force", "-m", "Gone", "b.c", "a.c"}},
        ArgumentsCase{
            "files of any other type and no destination",
            a<SVNRemoveOperation>,
            {.type = RequestTypeStatus, .destination = "elsewhere", .files = StringArray{"a.c"}},
            StringArray{"remove", "--force", "a.c"}},
        ArgumentsCase{"local after an error from before",
                      aFailed<SVNRemoveOperation>,
                      {.type = RequestTypeRemove, .files = StringArray{"a.c"}},
                      std::nullopt},
        ArgumentsCase{"remote",
                      a<SVNRemoveOperation>,
                      {.type = RequestTypeRemoteRemove,
                       .sourceTree = configured(),
                       .destination = "old",
                       .files = StringArray{"not.read"},
                       .options = messageOption("Gone")},
                      StringArray{"remove", "--force", "-m", "Gone", "http://host/r/branches/old"}},
        ArgumentsCase{
            "remote keeps a separator that is there",
            a<SVNRemoveOperation>,
            {.type = RequestTypeRemoteRemove,
             .sourceTree = repository({.branchesLocation = "http://host/r/branches/"}),
             .destination = "old",
             .options = messageOption("Gone")},
            StringArray{"remove", "--force", "-m", "Gone", "http://host/r/branches//old"}},
        ArgumentsCase{
            "remote without a message",
            a<SVNRemoveOperation>,
            {.type = RequestTypeRemoteRemove, .sourceTree = configured(), .destination = "old"},
            StringArray{"remove", "--force", "-m", "http://host/r/branches/old"}},
        ArgumentsCase{
            "remote with a message that is not a text",
            a<SVNRemoveOperation>,
            {.type = RequestTypeRemoteRemove,
             .sourceTree = configured(),
             .destination = "old",
             .options = messageOption(Array{"Gone", 7})},
            StringArray{"remove", "--force", "-m", "(Gone, 7)", "http://host/r/branches/old"}},
        ArgumentsCase{"local with a message that is not a text",
                      a<SVNRemoveOperation>,
                      {.type = RequestTypeRemove,
                       .files = StringArray{"a.c"},
                       .options = messageOption(Array::empty())},
                      StringArray{"remove", "--force", "-m", "()", "a.c"}},
        ArgumentsCase{"remote without a destination spares the branches folder",
                      a<SVNRemoveOperation>,
                      {.type = RequestTypeRemoteRemove,
                       .sourceTree = configured(),
                       .options = messageOption("Gone")},
                      StringArray{"remove", "--force", "-m", "Gone"}},
        ArgumentsCase{"remote with a user",
                      a<SVNRemoveOperation>,
                      {.type = RequestTypeRemoteRemove,
                       .sourceTree = repository({.user = "jane",
                                                 .branchesLocation = "http://host/r/branches"}),
                       .destination = "old",
                       .options = messageOption("Gone")},
                      StringArray{"--username", "jane", "remove", "--force", "-m", "Gone",
                                  "http://host/r/branches/old"}},
        ArgumentsCase{"remote after an error from before",
                      aFailed<SVNRemoveOperation>,
                      {.type = RequestTypeRemoteRemove,
                       .sourceTree = configured(),
                       .destination = "old",
                       .options = messageOption("Gone")},
                      std::nullopt}),
    CaseName());

// A removal's refusal and its assertions

constexpr std::string_view method = "-[SVNRemoveOperation initWithRequest:]";
constexpr std::string_view file = "Classes/SVNOperations";

Error notConfigured(const std::string& name) {
    return {QuenSourceControlErrorDomain,
            -23,
            {{NSLocalizedDescriptionKey,
              String("The operation could not be performed because the repository \"" + name +
                     "\" has not been configured with the required trunk, branches, or tags "
                     "information.")}}};
}

struct RefusalCase {
    std::string_view name;
    QuenSourceControlSourceTreePtr tree;
    std::string repositoryName;
    std::vector<PlacedAssertion> reports;
};

class SVNRemoveRefusalTest : public testing::TestWithParam<RefusalCase> {};

TEST_P(SVNRemoveRefusalTest, NamesTheRepositoryAndSetsNoArguments) {
    const HostRecorder recorder;
    const auto operation = makeOperation<SVNRemoveOperation>({.type = RequestTypeRemoteRemove,
                                                              .sourceTree = GetParam().tree,
                                                              .destination = "old",
                                                              .options = messageOption("Gone")});
    EXPECT_EQ(operation->error(), notConfigured(GetParam().repositoryName));
    EXPECT_EQ(operation->arguments(), std::nullopt);
    EXPECT_EQ(placedAssertions(recorder), GetParam().reports);
}

const auto working = workingTree(
    {.name = "here", .repository = repository({.branchesLocation = "http://host/r/branches"})});

INSTANTIATE_TEST_SUITE_P(
    All, SVNRemoveRefusalTest,
    testing::Values(
        RefusalCase{"no branches location",
                    repository({.name = "origin", .trunkLocation = "http://host/r/trunk"}),
                    "origin",
                    {}},
        RefusalCase{"a branches location that is not a URL",
                    repository({.name = "origin", .branchesLocation = "http://host/a b"}),
                    "origin",
                    {}},
        RefusalCase{"no tree",
                    nullptr,
                    "(null)",
                    {{method,
                      file,
                      597,
                      "%s should be an instance inheriting from %@, but it is nil",
                      {"repository", "QuenSourceControlRepository", "(repository) != nil"}}}},
        RefusalCase{"a working tree whose repository does not count",
                    working,
                    "here",
                    {{method,
                      file,
                      597,
                      "%s should be an instance inheriting from %@, but it is %@",
                      {"repository", "QuenSourceControlRepository",
                       working->descriptionForAssertionMessage(),
                       "[(id)(repository) isKindOfClass:[QuenSourceControlRepository class]]"}}}}),
    CaseName());

TEST(SVNRemoveOperationTest, LocallyWithoutFilesIsAProgrammingErrorAndGoesOn) {
    for (const std::optional<StringArray>& files :
         {std::optional<StringArray>(), std::optional(StringArray())}) {
        const HostRecorder recorder;
        const auto operation = makeOperation<SVNRemoveOperation>(
            {.type = RequestTypeRemove, .files = files, .options = messageOption("Gone")});
        EXPECT_EQ(placedAssertions(recorder),
                  (std::vector<PlacedAssertion>{
                      {method, file, 612, "Assertion failed: %s", {"[request.files count] > 0"}}}));
        EXPECT_EQ(operation->arguments(), (StringArray{"remove", "--force", "-m", "Gone"}));
    }
}

template <typename Class> class SVNLocalEditsTest : public testing::Test {};
using AllClasses =
    testing::Types<SVNAddOperation, SVNRemoveOperation, SVNResolveOperation, SVNRevertOperation>;
TYPED_TEST_SUITE(SVNLocalEditsTest, AllClasses);

TYPED_TEST(SVNLocalEditsTest, LeaveTheOutputAlone) {
    const HostRecorder recorder;
    const auto operation = parsedOperation<TypeParam>(
        {.type = RequestTypeRemove, .files = StringArray{"a.c"}}, "A         a.c\n");
    EXPECT_EQ(operation->result(), Value());
    EXPECT_EQ(operation->error(), Error());
}

TYPED_TEST(SVNLocalEditsTest, WithoutARequestThereIsNoOperation) {
    TypeParam operation;
    EXPECT_FALSE(operation.initWithRequest(nullptr));
}

} // namespace

} // namespace quen::test
