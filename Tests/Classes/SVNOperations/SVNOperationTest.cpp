#include "Classes/SVNOperations/SVNOperation.h"
#include "Tests/Support/CaseName.h"
#include "Tests/Support/HostRecorder.h"
#include "Tests/Support/Operations.h"
#include "Tests/Support/Trees.h"

#include <gtest/gtest.h>
#include <optional>
#include <ostream>

namespace quen::test {
namespace {

struct LaunchPathCase {
    const char* name;
    String toolsDirectory;
    String launchPath;

    friend void PrintTo(const LaunchPathCase& c, std::ostream* out) { *out << c.name; }
};

class LaunchPath : public testing::TestWithParam<LaunchPathCase> {
    const HostRecorder recorder_;
};

TEST_P(LaunchPath, IsTheToolsDirectoryJoinedWithTheClientsName) {
    const RunContext::Scope scope(
        RunContext::current().withToolsDirectory(GetParam().toolsDirectory));
    EXPECT_EQ(makeOperation<SVNOperation>({})->launchPath(), GetParam().launchPath);
}

// Nobody looks whether the file is there: a missing client is a failure of the run.
INSTANTIATE_TEST_SUITE_P(Joins, LaunchPath,
                         testing::Values(LaunchPathCase{"plain", "/no/tools", "/no/tools/svn"},
                                         LaunchPathCase{"one separator", "/tools/", "/tools/svn"},
                                         LaunchPathCase{"many", "/tools///", "/tools/svn"},
                                         LaunchPathCase{"root", "/", "/svn"},
                                         LaunchPathCase{"relative", "bin", "bin/svn"}),
                         CaseName());

class SVNOperationInitialisation : public testing::Test {
    const HostRecorder recorder_;
};

TEST_F(SVNOperationInitialisation, FailsWithoutARequest) {
    SVNOperation operation;
    EXPECT_FALSE(operation.initWithRequest(nullptr));
    EXPECT_EQ(operation.launchPath(), String());
}

TEST_F(SVNOperationInitialisation, LeavesAllButTheLaunchPathUnset) {
    const auto operation = makeOperation<SVNOperation>({.files = {{"a.c"}}});
    EXPECT_EQ(operation->arguments(), std::nullopt);
    EXPECT_EQ(operation->data(), nullptr);
    EXPECT_EQ(operation->result(), Value());
    EXPECT_EQ(operation->error(), Error());
}

struct NamesCase {
    const char* name;
    std::optional<StringArray> given;
    StringArray expected;

    friend void PrintTo(const NamesCase& c, std::ostream* out) { *out << c.name; }
};

class SanitizedNames : public testing::TestWithParam<NamesCase> {
    const HostRecorder recorder_;
};

TEST_P(SanitizedNames, AreWrittenBackIntoTheRequest) {
    const QuenSourceControlRequestPtr request = Request{.files = GetParam().given}.make();
    SVNOperation operation;
    ASSERT_TRUE(operation.initWithRequest(request));
    EXPECT_EQ(request->files(), GetParam().expected);
}

INSTANTIATE_TEST_SUITE_P(
    Names, SanitizedNames,
    testing::Values(
        NamesCase{"absent list", std::nullopt, {}}, NamesCase{"empty list", StringArray(), {}},
        NamesCase{"no at sign", {{"a.c", "/dir/b.c", "dir/"}}, {"a.c", "/dir/b.c", "dir/"}},
        NamesCase{"in the name", {{"dir/file@2x.png"}}, {"dir/file@2x.png@"}},
        NamesCase{"in a directory only", {{"dir@1/file"}}, {"dir@1/file"}},
        NamesCase{"in both", {{"dir@1/file@2"}}, {"dir@1/file@2@"}},
        NamesCase{"closed already", {{"file@2x.png@"}}, {"file@2x.png@@"}},
        NamesCase{"nothing else", {{"@"}}, {"@@"}},
        NamesCase{"at the start", {{"@file"}}, {"@file@"}},
        NamesCase{"several", {{"a@b@c"}}, {"a@b@c@"}},
        NamesCase{"a directory with a separator behind", {{"dir@1/"}}, {"dir@1/@"}},
        NamesCase{"host with a user", {{"svn://jane@host/a.c"}}, {"svn://jane@host/a.c"}},
        NamesCase{"host with a user alone", {{"svn://jane@host"}}, {"svn://jane@host@"}},
        NamesCase{"empty name", {{""}}, {""}},
        NamesCase{"order kept", {{"b@1", "a", "b@1"}}, {"b@1@", "a", "b@1@"}}),
    CaseName());

TEST_F(SVNOperationInitialisation, ASecondOperationOfTheSameRequestClosesTheNamesAgain) {
    const QuenSourceControlRequestPtr request = Request{.files = {{"a@1"}}}.make();
    SVNOperation first;
    SVNOperation second;
    ASSERT_TRUE(first.initWithRequest(request));
    ASSERT_TRUE(second.initWithRequest(request));
    EXPECT_EQ(request->files(), StringArray{"a@1@@"});
}

struct UserCase {
    const char* name;
    QuenSourceControlSourceTreePtr sourceTree;
    StringArray expected;

    friend void PrintTo(const UserCase& c, std::ostream* out) { *out << c.name; }
};

/// A command of no particular kind.
class CommandOperation : public SVNOperation {
    Command makeCommand(const QuenSourceControlRequest& /*request*/) override {
        return StringArray{"command", "--flag"};
    }
};

class DefaultArguments : public testing::TestWithParam<UserCase> {
    const HostRecorder recorder_;
};

TEST_P(DefaultArguments, NameTheUserOfTheRepository) {
    const auto operation = makeOperation<SVNOperation>({.sourceTree = GetParam().sourceTree});
    EXPECT_EQ(operation->defaultArguments(), GetParam().expected);
}

TEST_P(DefaultArguments, StandBeforeTheCommand) {
    StringArray expected = GetParam().expected;
    expected.insert(expected.end(), {"command", "--flag"});
    EXPECT_EQ(makeOperation<CommandOperation>({.sourceTree = GetParam().sourceTree})->arguments(),
              expected);
}

TEST_P(DefaultArguments, IgnoreTheRepositoryToAuthenticate) {
    const auto operation =
        makeOperation<SVNOperation>({.sourceTree = GetParam().sourceTree,
                                     .repositoryToAuthenticate = repository({.user = "joe"})});
    EXPECT_EQ(operation->defaultArguments(), GetParam().expected);
}

INSTANTIATE_TEST_SUITE_P(
    Users, DefaultArguments,
    testing::Values(
        UserCase{"no tree", nullptr, {}}, UserCase{"repository without a user", repository(), {}},
        UserCase{"repository with an empty user", repository({.user = ""}), {}},
        UserCase{"repository with a user", repository({.user = "jane"}), {"--username", "jane"}},
        UserCase{
            "user like a flag", repository({.user = "--jane doe"}), {"--username", "--jane doe"}},
        UserCase{"working tree without a repository", workingTree(), {}},
        UserCase{"working tree whose repository has an empty user",
                 workingTree({.repository = repository({.user = ""})}),
                 {}},
        UserCase{"working tree whose repository has no user",
                 workingTree({.repository = repository()}),
                 {}},
        UserCase{"working tree whose repository has a user",
                 workingTree({.repository = repository({.user = "jane"})}),
                 {"--username", "jane"}},
        UserCase{"neither kind", otherTree(), {}}),
    CaseName());

} // namespace
} // namespace quen::test
