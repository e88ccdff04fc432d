#include "Classes/SVNOperations/SVNPropertyEdits.h"
#include "QuenFoundation/QuenSourceControlConstants.h"
#include "Tests/Classes/SVNOperations/ArgumentsCase.h"
#include "Tests/Support/Trees.h"

#include <gtest/gtest.h>

namespace quen::test {

namespace {

Request edit(std::int32_t type, const StringArray& files, const String& destination = nullptr) {
    return {.type = type, .destination = destination, .files = files};
}

class SVNPropertyEditsArgumentsTest : public testing::TestWithParam<ArgumentsCase> {};

TEST_P(SVNPropertyEditsArgumentsTest, AreTheWholeList) {
    expectArguments(GetParam());
}

INSTANTIATE_TEST_SUITE_P(
    Set, SVNPropertyEditsArgumentsTest,
    testing::Values(
        ArgumentsCase{"two names in one argument", a<SVNPropSetOperation>,
                      edit(RequestTypeIgnore, {"build", "*.o"}, "/w/src"),
                      StringArray{"propset", "svn:ignore", "build\n*.o", "/w/src"}},
        ArgumentsCase{"one name has no line feed", a<SVNPropSetOperation>,
                      edit(RequestTypeIgnore, {"build"}, "/w/src"),
                      StringArray{"propset", "svn:ignore", "build", "/w/src"}},
        ArgumentsCase{"unignore", a<SVNPropSetOperation>,
                      edit(RequestTypeUnignore, {"c", "a", "a"}, "/w/src"),
                      StringArray{"propset", "svn:ignore", "c\na\na", "/w/src"}},
        ArgumentsCase{"no names make an empty value", a<SVNPropSetOperation>,
                      edit(RequestTypeIgnore, {}, "/w/src"),
                      StringArray{"propset", "svn:ignore", "", "/w/src"}},
        ArgumentsCase{"an empty name is one", a<SVNPropSetOperation>,
                      edit(RequestTypeIgnore, {"", "a"}, "/w/src"),
                      StringArray{"propset", "svn:ignore", "\na", "/w/src"}},
        ArgumentsCase{"no destination", a<SVNPropSetOperation>, edit(RequestTypeIgnore, {"a"}),
                      StringArray{"propset", "svn:ignore", "a"}},
        ArgumentsCase{"an empty destination is the current directory", a<SVNPropSetOperation>,
                      edit(RequestTypeIgnore, {"a"}, ""),
                      StringArray{"propset", "svn:ignore", "a", ""}},
        // An entry is not a path: nobody takes what follows its @ for a revision.
        ArgumentsCase{"at signs in entries", a<SVNPropSetOperation>,
                      edit(RequestTypeIgnore, {"*@3x.png", "icon@2x.png@", "@"}, "/w"),
                      StringArray{"propset", "svn:ignore", "*@3x.png\nicon@2x.png@\n@", "/w"}},
        ArgumentsCase{"an absent entry is left out", a<SVNPropSetOperation>,
                      edit(RequestTypeIgnore, {nullptr, "a", nullptr, "b"}, "/w"),
                      StringArray{"propset", "svn:ignore", "a\nb", "/w"}},
        ArgumentsCase{"a user",
                      a<SVNPropSetOperation>,
                      {.type = RequestTypeIgnore,
                       .sourceTree = repository({.user = "jane"}),
                       .destination = "/w",
                       .files = StringArray{"a"}},
                      StringArray{"--username", "jane", "propset", "svn:ignore", "a", "/w"}},
        ArgumentsCase{"an error from before does not keep the arguments back",
                      aFailed<SVNPropSetOperation>, edit(RequestTypeIgnore, {"a"}, "/w"),
                      StringArray{"propset", "svn:ignore", "a", "/w"}},
        ArgumentsCase{"any other type", a<SVNPropSetOperation>,
                      edit(RequestTypeStatus, {"a"}, "/w"), std::nullopt},
        ArgumentsCase{"type 0", a<SVNPropSetOperation>, edit(RequestTypeAdd, {"a"}, "/w"),
                      std::nullopt}),
    CaseName());

INSTANTIATE_TEST_SUITE_P(
    Delete, SVNPropertyEditsArgumentsTest,
    testing::Values(ArgumentsCase{"the directory of the file", a<SVNPropDelOperation>,
                                  edit(RequestTypeUnignore, {"/w/src/build"}),
                                  StringArray{"propdel", "svn:ignore", "/w/src"}},
                    ArgumentsCase{"the destination is not read", a<SVNPropDelOperation>,
                                  edit(RequestTypeIgnore, {"/w/src/build", "/v/b"}, "/elsewhere"),
                                  StringArray{"propdel", "svn:ignore", "/w/src"}},
                    ArgumentsCase{"a bare name", a<SVNPropDelOperation>,
                                  edit(RequestTypeUnignore, {"build"}),
                                  StringArray{"propdel", "svn:ignore", ""}},
                    ArgumentsCase{"no file", a<SVNPropDelOperation>,
                                  edit(RequestTypeUnignore, {}, "/w"),
                                  StringArray{"propdel", "svn:ignore"}},
                    ArgumentsCase{"an error from before does not keep the arguments back",
                                  aFailed<SVNPropDelOperation>, edit(RequestTypeUnignore, {"/w/a"}),
                                  StringArray{"propdel", "svn:ignore", "/w"}},
                    ArgumentsCase{"any other type", a<SVNPropDelOperation>,
                                  edit(RequestTypeStatus, {"/w/a"}), std::nullopt}),
    CaseName());

template <typename Class> class SVNPropertyEditsTest : public testing::Test {};
using BothClasses = testing::Types<SVNPropSetOperation, SVNPropDelOperation>;
TYPED_TEST_SUITE(SVNPropertyEditsTest, BothClasses);

TYPED_TEST(SVNPropertyEditsTest, LeaveTheOutputAlone) {
    const HostRecorder recorder;
    const auto operation = parsedOperation<TypeParam>(edit(RequestTypeIgnore, {"a"}, "/w"),
                                                      "property 'svn:ignore' set on '/w'\n");
    EXPECT_EQ(operation->result(), Value());
    EXPECT_EQ(operation->error(), Error());
}

TYPED_TEST(SVNPropertyEditsTest, WithoutARequestThereIsNoOperation) {
    TypeParam operation;
    EXPECT_FALSE(operation.initWithRequest(nullptr));
}

TYPED_TEST(SVNPropertyEditsTest, OfAnotherTypeNeverRuns) {
    HostRecorder recorder;
    recorder.replay({});
    const auto operation = makeOperation<TypeParam>(edit(RequestTypeStatus, {"/w/a"}, "/w"));
    operation->main();
    EXPECT_EQ(recorder.invocations().size(), 0U);
}

} // namespace

} // namespace quen::test
