#include "Classes/SVNOperations/SVNTreeEdits.h"
#include "QuenFoundation/QuenSourceControlConstants.h"
#include "Tests/Classes/SVNOperations/ArgumentsCase.h"
#include "Tests/Support/Trees.h"

#include <gtest/gtest.h>
#include <string>

namespace quen::test {

namespace {

const String trunk = "http://host/r/trunk";
const String branches = "http://host/r/branches";

Dictionary messageOption(const Value& message) {
    return {{QuenSourceControlRequestOptionMessage, message}};
}

Dictionary messageAndSource(const Value& source) {
    return {{QuenSourceControlRequestOptionMessage, "Branch"},
            {QuenSourceControlRequestOptionSourceLocation, source}};
}

QuenSourceControlSourceTreePtr configured() {
    return repository({.name = "origin", .trunkLocation = trunk, .branchesLocation = branches});
}

Request remoteCopy(const QuenSourceControlSourceTreePtr& tree, const Dictionary& options) {
    return {.type = RequestTypeRemoteCopy,
            .sourceTree = tree,
            .destination = "new",
            .options = options};
}

Request localCopy(const StringArray& files, const String& destination) {
    return {.type = RequestTypeCopy, .destination = destination, .files = files};
}

Request merge(const String& start, const String& end) {
    return {.type = RequestTypeMerge,
            .destination = trunk,
            .files = StringArray{"/w"},
            .startingRevision = start,
            .endingRevision = end};
}

Request moving(const StringArray& files, const String& destination,
               const std::optional<std::vector<String>>& contains = std::nullopt) {
    return {.type = RequestTypeMove,
            .sourceTree = workingTree({.location = "/w", .contains = contains}),
            .destination = destination,
            .files = files};
}

StringArray merged(const StringArray& revision) {
    StringArray arguments{"merge", "--accept", "mine-full"};
    arguments.insert(arguments.end(), revision.begin(), revision.end());
    arguments.insert(arguments.end(), {trunk, "/w"});
    return arguments;
}

class SVNTreeEditsArgumentsTest : public testing::TestWithParam<ArgumentsCase> {};

TEST_P(SVNTreeEditsArgumentsTest, AreTheWholeList) {
    expectArguments(GetParam());
}

INSTANTIATE_TEST_SUITE_P(
    RemoteCopy, SVNTreeEditsArgumentsTest,
    testing::Values(
        ArgumentsCase{"without a source location copies the trunk", a<SVNCopyOperation>,
                      remoteCopy(configured(), messageOption("Branch")),
                      StringArray{"copy", "-m", "Branch", trunk, "http://host/r/branches/new"}},
        ArgumentsCase{
            "a source location wins over the trunk", a<SVNCopyOperation>,
            remoteCopy(configured(), messageAndSource("http://x/y")),
            StringArray{"copy", "-m", "Branch", "http://x/y", "http://host/r/branches/new"}},
        ArgumentsCase{"a source location suffices without trunk and branches", a<SVNCopyOperation>,
                      remoteCopy(repository(), messageAndSource("http://x/y")),
                      StringArray{"copy", "-m", "Branch", "http://x/y"}},
        ArgumentsCase{
            "a source location suffices without a trunk", a<SVNCopyOperation>,
            remoteCopy(repository({.branchesLocation = branches}), messageAndSource("http://x/y")),
            StringArray{"copy", "-m", "Branch", "http://x/y", "http://host/r/branches/new"}},
        ArgumentsCase{"without a message", a<SVNCopyOperation>, remoteCopy(configured(), {}),
                      StringArray{"copy", "-m", trunk, "http://host/r/branches/new"}},
        ArgumentsCase{"without a destination",
                      a<SVNCopyOperation>,
                      {.type = RequestTypeRemoteCopy,
                       .sourceTree = configured(),
                       .options = messageOption("Branch")},
                      StringArray{"copy", "-m", "Branch", trunk}},
        ArgumentsCase{
            "a destination of several components",
            a<SVNCopyOperation>,
            {.type = RequestTypeRemoteCopy,
             .sourceTree = configured(),
             .destination = "jane/new",
             .files = StringArray{"not.read"},
             .options = messageOption("Branch")},
            StringArray{"copy", "-m", "Branch", trunk, "http://host/r/branches/jane/new"}},
        ArgumentsCase{"a user", a<SVNCopyOperation>,
                      remoteCopy(repository({.user = "jane",
                                             .trunkLocation = trunk,
                                             .branchesLocation = branches}),
                                 messageOption("Branch")),
                      StringArray{"--username", "jane", "copy", "-m", "Branch", trunk,
                                  "http://host/r/branches/new"}},
        ArgumentsCase{"an error from before", aFailed<SVNCopyOperation>,
                      remoteCopy(configured(), messageOption("Branch")), std::nullopt}),
    CaseName());

INSTANTIATE_TEST_SUITE_P(
    LocalCopy, SVNTreeEditsArgumentsTest,
    testing::Values(
        ArgumentsCase{"one file", a<SVNCopyOperation>, localCopy({"a.c"}, "b.c"),
                      StringArray{"copy", "a.c", "b.c"}},
        ArgumentsCase{"of three files the first alone", a<SVNCopyOperation>,
                      localCopy({"c.c", "a.c", "b.c"}, "dir"), StringArray{"copy", "c.c", "dir"}},
        ArgumentsCase{"an at sign in the file", a<SVNCopyOperation>,
                      localCopy({"icon@2x.png"}, "new@2x.png"),
                      StringArray{"copy", "icon@2x.png@", "new@2x.png"}},
        ArgumentsCase{"no destination", a<SVNCopyOperation>, localCopy({"a.c"}, nullptr),
                      StringArray{"copy", "a.c"}},
        ArgumentsCase{"neither message nor revision is read",
                      a<SVNCopyOperation>,
                      {.type = RequestTypeCopy,
                       .destination = "b.c",
                       .files = StringArray{"a.c"},
                       .options = messageAndSource("http://x/y"),
                       .startingRevision = "3"},
                      StringArray{"copy", "a.c", "b.c"}},
        ArgumentsCase{
            "any other type is local",
            a<SVNCopyOperation>,
            {.type = RequestTypeStatus, .destination = "b.c", .files = StringArray{"a.c"}},
            StringArray{"copy", "a.c", "b.c"}},
        ArgumentsCase{"an error from before", aFailed<SVNCopyOperation>, localCopy({"a.c"}, "b.c"),
                      std::nullopt}),
    CaseName());

INSTANTIATE_TEST_SUITE_P(
    MakeDirectory, SVNTreeEditsArgumentsTest,
    testing::Values(
        ArgumentsCase{"without a message",
                      a<SVNMakeDirectoryOperation>,
                      {.destination = "/w/new", .files = StringArray{"not.read"}},
                      StringArray{"mkdir", "/w/new"}},
        ArgumentsCase{"with a message",
                      a<SVNMakeDirectoryOperation>,
                      {.destination = "http://host/r/new", .options = messageOption("Room")},
                      StringArray{"mkdir", "-m", "Room", "http://host/r/new"}},
        ArgumentsCase{"no destination", a<SVNMakeDirectoryOperation>, {}, StringArray{"mkdir"}},
        ArgumentsCase{"an error from before",
                      aFailed<SVNMakeDirectoryOperation>,
                      {.destination = "/w/new"},
                      std::nullopt}),
    CaseName());

INSTANTIATE_TEST_SUITE_P(
    Merge, SVNTreeEditsArgumentsTest,
    testing::Values(
        ArgumentsCase{"no revisions", a<SVNMergeOperation>, merge(nullptr, nullptr), merged({})},
        ArgumentsCase{"a starting revision alone", a<SVNMergeOperation>, merge("3", nullptr),
                      merged({})},
        ArgumentsCase{"an ending revision alone", a<SVNMergeOperation>, merge(nullptr, "9"),
                      merged({})},
        ArgumentsCase{"both", a<SVNMergeOperation>, merge("3", "9"), merged({"-r", "3:9"})},
        ArgumentsCase{"empty ones are there", a<SVNMergeOperation>, merge("", ""),
                      merged({"-r", ":"})},
        ArgumentsCase{"the start is normalised to head", a<SVNMergeOperation>,
                      merge(QuenSourceControlHEADRevisionName.str(), "9"),
                      merged({"-r", "HEAD:9"})},
        ArgumentsCase{"the start is normalised to base", a<SVNMergeOperation>,
                      merge(QuenSourceControlBASERevisionName, "9"), merged({"-r", "BASE:9"})},
        ArgumentsCase{"the end at head", a<SVNMergeOperation>,
                      merge("3", QuenSourceControlHEADRevisionName), merged({"-r", "3:HEAD"})},
        ArgumentsCase{"no files give no target",
                      a<SVNMergeOperation>,
                      {.destination = trunk},
                      StringArray{"merge", "--accept", "mine-full", trunk}},
        ArgumentsCase{"two files give no target",
                      a<SVNMergeOperation>,
                      {.destination = trunk, .files = StringArray{"/w", "/v"}},
                      StringArray{"merge", "--accept", "mine-full", trunk}},
        ArgumentsCase{"no destination",
                      a<SVNMergeOperation>,
                      {.files = StringArray{"/w"}},
                      StringArray{"merge", "--accept", "mine-full", "/w"}},
        ArgumentsCase{"an error from before", aFailed<SVNMergeOperation>, merge("3", "9"),
                      std::nullopt}),
    CaseName());

INSTANTIATE_TEST_SUITE_P(
    Move, SVNTreeEditsArgumentsTest,
    testing::Values(ArgumentsCase{"within the tree", a<SVNMoveOperation>,
                                  moving({"/w/a.c"}, "/w/new/b.c"),
                                  StringArray{"move", "--parents", "/w/a.c", "/w/new/b.c"}},
                    ArgumentsCase{"of two files the first alone", a<SVNMoveOperation>,
                                  moving({"/w/a.c", "/elsewhere/b.c"}, "/w/new"),
                                  StringArray{"move", "--parents", "/w/a.c", "/w/new"}},
                    ArgumentsCase{"the tree is asked about the name as the client gets it",
                                  a<SVNMoveOperation>,
                                  moving({"icon@2x.png"}, "b.png",
                                         std::vector<String>{"icon@2x.png@", "b.png"}),
                                  StringArray{"move", "--parents", "icon@2x.png@", "b.png"}},
                    ArgumentsCase{"an error from before", aFailed<SVNMoveOperation>,
                                  moving({"/w/a.c"}, "/w/b.c"), std::nullopt}),
    CaseName());

// Refusals

Error notConfigured(const std::string& name) {
    return {QuenSourceControlErrorDomain,
            -23,
            {{NSLocalizedDescriptionKey,
              String("The operation could not be performed because the repository \"" + name +
                     "\" has not been configured with the required trunk, branches, or tags "
                     "information.")}}};
}

constexpr std::string_view copyMethod = "-[SVNCopyOperation initWithRequest:]";
constexpr std::string_view sourceFile = "Classes/SVNOperations";

std::vector<PlacedAssertion> isNoRepository(const QuenSourceControlSourceTreePtr& tree) {
    return {{copyMethod,
             sourceFile,
             452,
             "%s should be an instance inheriting from %@, but it is %@",
             {"repository", "QuenSourceControlRepository", tree->descriptionForAssertionMessage(),
              "[(id)(repository) isKindOfClass:[QuenSourceControlRepository class]]"}}};
}

const std::vector<PlacedAssertion> isNil{
    {copyMethod,
     sourceFile,
     452,
     "%s should be an instance inheriting from %@, but it is nil",
     {"repository", "QuenSourceControlRepository", "(repository) != nil"}}};

struct CopyRefusalCase {
    std::string_view name;
    QuenSourceControlSourceTreePtr tree;
    std::string repositoryName;
    std::vector<PlacedAssertion> reports;
};

class SVNCopyRefusalTest : public testing::TestWithParam<CopyRefusalCase> {};

TEST_P(SVNCopyRefusalTest, NamesTheRepositoryAndSetsNoArguments) {
    const HostRecorder recorder;
    const auto operation =
        makeOperation<SVNCopyOperation>(remoteCopy(GetParam().tree, messageAndSource(Value())));
    EXPECT_EQ(operation->error(), notConfigured(GetParam().repositoryName));
    EXPECT_EQ(operation->arguments(), std::nullopt);
    EXPECT_EQ(placedAssertions(recorder), GetParam().reports);
}

const auto working = workingTree({.name = "here", .repository = repository()});
const auto other = otherTree({.name = "other"});

INSTANTIATE_TEST_SUITE_P(
    All, SVNCopyRefusalTest,
    testing::Values(
        CopyRefusalCase{"neither location", repository({.name = "origin"}), "origin", {}},
        CopyRefusalCase{
            "no trunk", repository({.name = "origin", .branchesLocation = branches}), "origin", {}},
        CopyRefusalCase{
            "no branches", repository({.name = "origin", .trunkLocation = trunk}), "origin", {}},
        CopyRefusalCase{"no tree", nullptr, "(null)", isNil},
        CopyRefusalCase{"a working tree", working, "here", isNoRepository(working)},
        CopyRefusalCase{"a tree of another kind", other, "other", isNoRepository(other)}),
    CaseName());

TEST(SVNCopyOperationTest, WithASourceLocationATreeThatIsNoRepositoryIsStillReported) {
    const HostRecorder recorder;
    const auto operation =
        makeOperation<SVNCopyOperation>(remoteCopy(working, messageAndSource("http://x/y")));
    EXPECT_EQ(placedAssertions(recorder), isNoRepository(working));
    EXPECT_FALSE(operation->error());
    EXPECT_EQ(operation->arguments(), (StringArray{"copy", "-m", "Branch", "http://x/y"}));
}

TEST(SVNCopyOperationTest, LocallyWithoutFilesIsAProgrammingErrorAndGoesOn) {
    const HostRecorder recorder;
    const auto operation = makeOperation<SVNCopyOperation>(localCopy({}, "b.c"));
    EXPECT_EQ(
        placedAssertions(recorder),
        (std::vector<PlacedAssertion>{
            {copyMethod, sourceFile, 477, "Assertion failed: %s", {"[request.files count] > 0"}}}));
    EXPECT_EQ(operation->arguments(), (StringArray{"copy", "b.c"}));
}

struct MoveRefusalCase {
    std::string_view name;
    Request request;
};

class SVNMoveRefusalTest : public testing::TestWithParam<MoveRefusalCase> {};

TEST_P(SVNMoveRefusalTest, CallsTheRequestInvalidAndSetsNoArguments) {
    const HostRecorder recorder;
    const auto operation = makeOperation<SVNMoveOperation>(GetParam().request);
    EXPECT_EQ(operation->error(), Error(QuenSourceControlErrorDomain, -12,
                                        {{NSLocalizedDescriptionKey,
                                          "The request could not be performed because it was "
                                          "returned by Subversion as invalid."}}));
    EXPECT_EQ(operation->arguments(), std::nullopt);
    EXPECT_EQ(recorder.assertionFacts(), std::vector<AssertionFacts>());
}

INSTANTIATE_TEST_SUITE_P(
    All, SVNMoveRefusalTest,
    testing::Values(
        MoveRefusalCase{"the tree says no to the target", moving({"/w/a.c"}, "/elsewhere/a.c")},
        MoveRefusalCase{"the tree says no to the source", moving({"/elsewhere/a.c"}, "/w/a.c")},
        MoveRefusalCase{"the tree says no to both", moving({"/x/a.c"}, "/y/a.c")},
        MoveRefusalCase{
            "the tree says no to the closed name",
            moving({"icon@2x.png"}, "b.png", std::vector<String>{"icon@2x.png", "b.png"})},
        MoveRefusalCase{"no tree", {.destination = "/w/b.c", .files = StringArray{"/w/a.c"}}},
        MoveRefusalCase{"no file", moving({}, "/w/b.c")},
        MoveRefusalCase{"no destination", moving({"/w/a.c"}, nullptr)}),
    CaseName());

TEST(SVNMoveOperationTest, ARefusalReplacesAnErrorFromBefore) {
    const HostRecorder recorder;
    const auto operation = aFailed<SVNMoveOperation>(moving({"/x/a.c"}, "/w/a.c"));
    EXPECT_EQ(operation->error().code(), -12);
    EXPECT_EQ(operation->arguments(), std::nullopt);
}

template <typename Class> class SVNTreeEditsTest : public testing::Test {};
using AllClasses = testing::Types<SVNCopyOperation, SVNMakeDirectoryOperation, SVNMergeOperation,
                                  SVNMoveOperation>;
TYPED_TEST_SUITE(SVNTreeEditsTest, AllClasses);

TYPED_TEST(SVNTreeEditsTest, LeaveTheOutputAlone) {
    const HostRecorder recorder;
    const auto operation =
        parsedOperation<TypeParam>(moving({"/w/a.c"}, "/w/b.c"), "A         /w/b.c\n");
    EXPECT_EQ(operation->result(), Value());
    EXPECT_EQ(operation->error(), Error());
}

TYPED_TEST(SVNTreeEditsTest, WithoutARequestThereIsNoOperation) {
    TypeParam operation;
    EXPECT_FALSE(operation.initWithRequest(nullptr));
}

} // namespace

} // namespace quen::test
