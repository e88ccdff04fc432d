#include "QuenFoundation/QuenSourceControlStatus.h"
#include "Tests/System/Sandbox.h"

#include <filesystem>
#include <gmock/gmock.h>
#include <map>
#include <nlohmann/json.hpp>
#include <utility>

namespace quen::test {

namespace {

using ::testing::Contains;
using ::testing::Key;
using ::testing::Not;
using ::testing::Pair;

/// Status in the working copy and in the repository, by path.
using Statuses = std::map<std::string, std::pair<unsigned, unsigned>>;

Statuses statusesIn(const Ran& ran) {
    EXPECT_EQ(ran.status, 0) << ran.err;
    Statuses statuses;
    for (const nlohmann::json& record : nlohmann::json::parse(ran.out)) {
        statuses[record.at("QuenSourceControlOperationPathKey")] = {
            record.at("QuenSourceControlOperationWCStatusKey"),
            record.at("QuenSourceControlOperationRepositoryStatusKey")};
    }
    return statuses;
}

Statuses statusOf(const Sandbox& sandbox) {
    return statusesIn(sandbox.quen({"status", "--json"}));
}

Statuses remoteStatusOf(const Sandbox& sandbox) {
    return statusesIn(sandbox.quen({"status", "-u", "--json"}));
}

auto has(const std::string& path, unsigned workingCopy, unsigned repository = 0) {
    return Contains(Pair(path, Pair(workingCopy, repository)));
}

/// A working copy of three committed files and a directory, to be changed by a test.
class StatusOfRealWorkingCopy : public ::testing::Test {
protected:
    StatusOfRealWorkingCopy() {
        for (const char* name : {"a.c", "b.c", "dir/c.c"}) {
            sandbox.write(name, "one\ntwo\nthree\n");
        }
        sandbox.svn({"add", "-q", "a.c", "b.c", "dir"});
        sandbox.commit("Three files");
    }

    /// A second working copy changes files and commits.
    void colleagueCommits(const Sandbox::Words& change) const {
        const std::string theirs = (sandbox.root() / "theirs").string();
        sandbox.svn({"checkout", "-q", sandbox.url("trunk"), theirs});
        const Ran ran = sandbox.run(change, theirs);
        ASSERT_EQ(ran.status, 0) << ran.err;
        sandbox.svn({"commit", "-q", "-m", "From the other side", theirs});
    }

    std::filesystem::path file(const std::string& name) const {
        return sandbox.workingCopy() / name;
    }

    Sandbox sandbox;
};

TEST_F(StatusOfRealWorkingCopy, CleanCopyHasNoRecords) {
    EXPECT_EQ(statusOf(sandbox), Statuses());
    EXPECT_EQ(sandbox.quen({"status"}).out, "No changes\n");
}

TEST_F(StatusOfRealWorkingCopy, Modified) {
    sandbox.write("a.c", "changed\n");
    EXPECT_THAT(statusOf(sandbox), has("a.c", QuenSourceControlStatusModified));
}

TEST_F(StatusOfRealWorkingCopy, PropertiesModified) {
    sandbox.svn({"propset", "-q", "note", "x", "a.c"});
    EXPECT_THAT(statusOf(sandbox), has("a.c", QuenSourceControlStatusPropertiesModified));
}

TEST_F(StatusOfRealWorkingCopy, ContentsAndPropertiesModified) {
    sandbox.write("a.c", "changed\n");
    sandbox.svn({"propset", "-q", "note", "x", "a.c"});
    EXPECT_THAT(statusOf(sandbox), has("a.c", QuenSourceControlStatusModified |
                                                  QuenSourceControlStatusPropertiesModified));
}

TEST_F(StatusOfRealWorkingCopy, AddedAndUnversioned) {
    sandbox.write("new.c", "new\n");
    sandbox.write("notes.txt", "notes\n");
    sandbox.svn({"add", "-q", "new.c"});
    EXPECT_THAT(statusOf(sandbox), has("new.c", QuenSourceControlStatusAdded));
    EXPECT_THAT(statusOf(sandbox), has("notes.txt", QuenSourceControlStatusUnversioned));
}

TEST_F(StatusOfRealWorkingCopy, Deleted) {
    sandbox.svn({"remove", "-q", "a.c"});
    EXPECT_THAT(statusOf(sandbox), has("a.c", QuenSourceControlStatusDeleted));
}

TEST_F(StatusOfRealWorkingCopy, Replaced) {
    sandbox.svn({"remove", "-q", "a.c"});
    sandbox.write("a.c", "another\n");
    sandbox.svn({"add", "-q", "a.c"});
    EXPECT_THAT(statusOf(sandbox), has("a.c", QuenSourceControlStatusReplaced));
}

TEST_F(StatusOfRealWorkingCopy, ReplacedByACopyStaysReplaced) {
    sandbox.svn({"remove", "-q", "a.c"});
    sandbox.svn({"copy", "-q", "b.c", "a.c"});
    EXPECT_THAT(statusOf(sandbox), has("a.c", QuenSourceControlStatusReplaced));
}

TEST_F(StatusOfRealWorkingCopy, Copied) {
    sandbox.svn({"copy", "-q", "a.c", "copy.c"});
    EXPECT_THAT(statusOf(sandbox), has("copy.c", QuenSourceControlStatusAddedWithHistory));
}

TEST_F(StatusOfRealWorkingCopy, Missing) {
    std::filesystem::remove(file("a.c"));
    EXPECT_THAT(statusOf(sandbox), has("a.c", QuenSourceControlStatusMissing));
}

TEST_F(StatusOfRealWorkingCopy, Obstructed) {
    std::filesystem::remove(file("a.c"));
    std::filesystem::create_directory(file("a.c"));
    EXPECT_THAT(statusOf(sandbox), has("a.c", QuenSourceControlStatusObstructed));
}

TEST_F(StatusOfRealWorkingCopy, Ignored) {
    sandbox.svn({"propset", "-q", "svn:ignore", "*.o", "."});
    sandbox.write("a.o", "object\n");
    EXPECT_THAT(statusOf(sandbox), has("a.o", QuenSourceControlStatusIgnored));
    EXPECT_EQ(sandbox.quen({"status"}).out,
              "properties modified  .\n"
              "1 item: 1 properties modified (1 ignored; --ignored shows them)\n");
    EXPECT_THAT(sandbox.quen({"status", "--ignored"}).out, ::testing::HasSubstr("a.o\n"));
}

TEST_F(StatusOfRealWorkingCopy, External) {
    sandbox.svn({"propset", "-q", "svn:externals", "^/tags other", "."});
    sandbox.svn({"update", "-q"});
    EXPECT_THAT(statusOf(sandbox), has("other", QuenSourceControlStatusNone));
}

TEST_F(StatusOfRealWorkingCopy, ConflictedContents) {
    colleagueCommits({"sh", "-c", "echo theirs > a.c"});
    sandbox.write("a.c", "ours\n");
    sandbox.svn({"update", "-q", "--accept", "postpone"});
    EXPECT_THAT(statusOf(sandbox), has("a.c", QuenSourceControlStatusConflicted));
}

TEST_F(StatusOfRealWorkingCopy, ConflictedProperties) {
    colleagueCommits({"svn", "propset", "-q", "note", "theirs", "a.c"});
    sandbox.svn({"propset", "-q", "note", "ours", "a.c"});
    sandbox.svn({"update", "-q", "--accept", "postpone"});
    EXPECT_THAT(statusOf(sandbox), has("a.c", QuenSourceControlStatusPropertiesConflicted));
}

TEST_F(StatusOfRealWorkingCopy, ChangesOfAnotherWorkingCopyShowInTheRepository) {
    colleagueCommits(
        {"sh", "-c", "echo more >> a.c; svn remove -q b.c; echo n > new.c; svn add -q new.c"});
    const Statuses statuses = remoteStatusOf(sandbox);
    EXPECT_THAT(statuses, has("a.c", 0, QuenSourceControlStatusModifiedInRepository));
    EXPECT_THAT(statuses, has("b.c", 0, QuenSourceControlStatusDeleted));
    EXPECT_THAT(statuses, has("new.c", 0, QuenSourceControlStatusAdded));
    EXPECT_THAT(statusOf(sandbox), Not(Contains(Key("a.c"))));
}

TEST_F(StatusOfRealWorkingCopy, BothSidesChanged) {
    colleagueCommits({"sh", "-c", "echo more >> a.c"});
    sandbox.write("a.c", "ours\n");
    EXPECT_THAT(remoteStatusOf(sandbox), has("a.c", QuenSourceControlStatusModified,
                                             QuenSourceControlStatusModifiedInRepository));
    EXPECT_EQ(sandbox.quen({"status", "-u"}).out, "Here      Repository  Path\n"
                                                  "modified  modified    a.c\n"
                                                  "1 item: 1 modified, 1 changed in the "
                                                  "repository\n");
}

TEST_F(StatusOfRealWorkingCopy, NamesThatAreHardToType) {
    for (const char* name : {"-v", "icon@2x.png", "two words.c", "gr\xC3\xBC\xC3\x9F.c", "end@"}) {
        sandbox.write(name, "x\n");
    }
    const Statuses statuses =
        statusesIn(sandbox.quen({"status", "--json", "icon@2x.png", "two words.c",
                                 "gr\xC3\xBC\xC3\x9F.c", "end@", "--", "-v"}));
    for (const char* name : {"-v", "icon@2x.png", "two words.c", "gr\xC3\xBC\xC3\x9F.c", "end@"}) {
        EXPECT_THAT(statuses, has(name, QuenSourceControlStatusUnversioned));
    }
}

TEST_F(StatusOfRealWorkingCopy, WhatIsNoWorkingCopyIsSaidAndTheRestIsShown) {
    sandbox.write("a.c", "changed\n");
    const Ran ran = sandbox.quen({"status", "a.c", "/"});
    EXPECT_EQ(ran.status, 1);
    EXPECT_THAT(ran.out, ::testing::HasSubstr("modified  a.c\n"));
    EXPECT_EQ(ran.err, "quen status: The operation could not be performed because the file is not "
                       "under version control.\n");
}

} // namespace

} // namespace quen::test
