#include "QuenFoundation/QuenSourceControlStatus.h"
#include "Tests/Support/CaseName.h"
#include "Tests/System/Sandbox.h"
#include "Tests/System/ShowingCase.h"

#include <filesystem>
#include <gmock/gmock.h>
#include <map>
#include <nlohmann/json.hpp>
#include <ostream>
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
    EXPECT_EQ(sandbox.quen({"status", "-u"}).out, "Here         Repository  Path\n"
                                                  "modified     modified    a.c\n"
                                                  "1 item: 1 modified; also: 1 changed "
                                                  "in the repository\n");
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
    EXPECT_THAT(ran.out, ::testing::HasSubstr("modified     a.c\n"));
    EXPECT_EQ(ran.err,
              "quen status: \"/\" is not in a working copy.\n"
              "quen status: Go into a working copy, or make one with: quen checkout URL\n");
}

/// What people see beyond the records: one situation a row, in a working copy of its own.
struct Shown {
    const char* name;
    /// Done by a colleague and committed, then by this person; scripts of a shell.
    const char* theirs;
    const char* ours;
    Sandbox::Words words;
    const char* out;
    const char* err = "";
    int status = 0;
};

void PrintTo(const Shown& shown, std::ostream* out) {
    *out << shown.name;
}

class ShownStatus : public StatusOfRealWorkingCopy, public testing::WithParamInterface<Shown> {};

TEST_P(ShownStatus, IsWhole) {
    const Shown& shown = GetParam();
    if (*shown.theirs != '\0') {
        colleagueCommits({"sh", "-ec", shown.theirs});
    }
    const Ran done = sandbox.run({"sh", "-ec", shown.ours}, sandbox.workingCopy(),
                                 {"URL=" + sandbox.url(), "SVN_EDITOR=true"});
    ASSERT_EQ(done.status, 0) << done.err;

    const Ran ran = sandbox.quen(shown.words);

    EXPECT_EQ(sandbox.neutral(ran.out), shown.out);
    EXPECT_EQ(sandbox.neutral(ran.err), shown.err);
    EXPECT_EQ(ran.status, shown.status);
}

INSTANTIATE_TEST_SUITE_P(
    Situations, ShownStatus,
    testing::Values(
        Shown{"changelists, sorted, with what is unchanged in them",
              "",
              "echo x >> a.c; svn changelist -q 'fix 7' a.c dir/c.c; touch z.c b.new; svn propset "
              "-q p v b.c",
              {"status"},
              "properties modified  b.c\n"
              "unversioned  b.new\n"
              "unversioned  z.c\n"
              "\n"
              "Changelist fix 7:\n"
              "modified     a.c\n"
              "unchanged    dir/c.c\n"
              "5 items: 1 properties modified, 2 unversioned, 1 modified, 1 unchanged\n"},
        Shown{"moves and copies",
              "",
              "svn move -q a.c dir/moved.c; svn copy -q b.c copy.c",
              {"status"},
              "deleted      a.c  (moved to dir/moved.c)\n"
              "copied       copy.c\n"
              "copied       dir/moved.c  (moved from a.c)\n"
              "3 items: 1 deleted, 2 copied\n"},
        Shown{"a tree conflict with its reason",
              "svn remove -q a.c",
              "echo mine >> a.c; svn update -q --accept postpone || true",
              {"status"},
              "tree conflict, copied  a.c  (local file edit, incoming file delete or move upon "
              "update)\n"
              "1 item: 1 tree conflict; also: 1 copied\n"},
        Shown{"a tree conflict comes last, and says that it is in no changelist",
              "svn remove -q a.c",
              "echo x >> b.c; svn changelist -q fix b.c; echo mine >> a.c; svn update -q --accept "
              "postpone || true; touch z.new",
              {"status"},
              "unversioned  z.new\n"
              "\n"
              "Changelist fix:\n"
              "modified     b.c\n"
              "\n"
              "In no changelist:\n"
              "tree conflict, copied  a.c  (local file edit, incoming file delete or move upon "
              "update)\n"
              "3 items: 1 unversioned, 1 modified, 1 tree conflict; also: 1 copied\n"},
        Shown{"switched, external",
              "",
              "svn copy -q -m B $URL/trunk $URL/branches/b; svn switch -q $URL/branches/b/dir dir; "
              "svn propset -q svn:externals '^/tags ext' .; svn update -q",
              {"status"},
              "properties modified  .\n"
              "switched     dir\n"
              "external     ext\n"
              "3 items: 1 properties modified, 1 switched, 1 external\n"},
        Shown{"locks held here and elsewhere",
              "echo x > a.c",
              "svn update -q; svn lock -q --username alice -m 'My turn' a.c; svn checkout -q "
              "$URL/trunk ../third; svn lock -q --username bob -m 'Hands off' ../third/b.c",
              {"status", "-u"},
              "Here         Repository  Path\n"
              "locked       -           a.c  (locked here by alice: My turn)\n"
              "locked       -           b.c  (locked elsewhere by bob: Hands off)\n"
              "2 items: 2 locked\n"},
        Shown{"a lock that was taken over",
              "echo x > a.c",
              "svn update -q; svn lock -q --username alice a.c; svn checkout -q $URL/trunk "
              "../third; svn lock -q --force --username bob ../third/a.c",
              {"status", "-u"},
              "Here         Repository  Path\n"
              "locked       -           a.c  (lock taken over by bob)\n"
              "1 item: 1 locked\n"},
        Shown{"what comes in, in text and properties",
              "echo x >> a.c; svn propset -q p v b.c; svn remove -q dir/c.c; touch n.c; svn add -q "
              "n.c",
              "svn propset -q q w b.c",
              {"status", "-u"},
              "Here         Repository  Path\n"
              "unchanged    modified    .\n"
              "unchanged    modified    a.c\n"
              "properties modified  properties modified  b.c\n"
              "unchanged    deleted     dir/c.c\n"
              "not here     added       n.c\n"
              "5 items: 4 changed in the repository, 1 properties modified; also: 1 changed in the "
              "repository\n"},
        Shown{"names that are not there",
              "",
              "echo x > a.c",
              {"status", "a.c", "dirr", "b.c"},
              "modified     a.c\n1 item: 1 modified\n",
              "quen status: \"dirr\" does not exist. Did you mean \"dir\"?\n",
              1},
        Shown{"a name that XML cannot hold",
              "",
              "echo x > a.c; touch \"$(printf 'bad\\001name')\"",
              {"status"},
              "modified     a.c\n"
              "unversioned  bad\xEF\xBF\xBDname\n"
              "2 items: 1 modified, 1 unversioned\n",
              "quen status: The name \"bad\xEF\xBF\xBDname\" holds control characters, which break "
              "svn's own reports. Rename it.\n"},
        Shown{"a name that is not UTF-8",
              "",
              "echo x > a.c; touch \"$(printf 'dir/bad\\377name')\"",
              {"status", "dir"},
              "",
              "quen status: Error converting entry in directory \"dir\" to UTF-8\n"
              "quen status: Valid UTF-8 data\n"
              "quen status: (hex: 62 61 64)\n"
              "quen status: followed by invalid UTF-8 sequence\n"
              "quen status: (hex: ff 6e 61 6d)\n"
              "quen status: The name \"bad\xEF\xBF\xBDname\" is not UTF-8. Rename it.\n",
              1}),
    CaseName());

TEST_F(StatusOfRealWorkingCopy, AnAuthorThatXMLCannotHoldIsNamedAndAllIsShown) {
    sandbox.write("../repository/hooks/pre-revprop-change", "#!/bin/sh\n");
    std::filesystem::permissions(sandbox.root() / "repository/hooks/pre-revprop-change",
                                 std::filesystem::perms::owner_all);
    sandbox.svn(
        {"propset", "-q", "--revprop", "-r", "2", "svn:author", "ma\x01llory", sandbox.url()});
    sandbox.svn({"update", "-q", "-r", "1"});
    sandbox.svn({"update", "-q"});
    sandbox.write("a.c", "changed\n");

    const Ran ran = sandbox.quen({"status"});

    EXPECT_EQ(ran.out, "modified     a.c\n1 item: 1 modified\n");
    EXPECT_THAT(ran.err, ::testing::HasSubstr("The author \"ma\xEF\xBF\xBDllory\" of \"a.c\" holds "
                                              "control characters"));
    EXPECT_EQ(ran.status, 0);
    EXPECT_THAT(statusOf(sandbox), has("a.c", QuenSourceControlStatusModified));
}

/// The client is ended with the reader of the output: it has more to say than a pipe holds.
TEST_F(StatusOfRealWorkingCopy, EndsWithItsReader) {
    const Ran made = sandbox.run({"sh", "-ec",
                                  "i=0; while [ $i -lt 3000 ]; do : > "
                                  "a-name-of-some-length-that-fills-the-pipe-$i; i=$((i+1)); done"},
                                 sandbox.workingCopy());
    ASSERT_EQ(made.status, 0);
    for (const char* const option : {"", "-s", "--jsonl"}) {
        const Ran head = sandbox.run(
            {"sh", "-c", "'" + Sandbox::program() + "' status " + option + " | head -n 1"},
            sandbox.workingCopy());
        EXPECT_THAT(head.out, ::testing::HasSubstr("a-name-of-some-length-that-fills-the-pipe-0"));
        EXPECT_EQ(head.err, "");
    }
}

TEST_F(StatusOfRealWorkingCopy, OneObjectALineForScripts) {
    sandbox.write("a.c", "changed\n");
    sandbox.write("notes.txt", "new\n");
    EXPECT_EQ(sandbox.quen({"status", "--jsonl"}).out,
              "{\"path\":\"a.c\",\"item\":\"modified\",\"properties\":\"none\",\"revision\":2}\n"
              "{\"path\":\"notes.txt\",\"item\":\"unversioned\",\"properties\":\"none\"}\n");
}

TEST(ShortStatus, HasTheClientsLetters) {
    const Sandbox sandbox;
    makeHistory(sandbox);
    sandbox.write("hello.c", "changed\n");
    sandbox.write("a b.txt", "new\n");
    sandbox.svn({"propset", "-q", "p", "v", "src"});
    sandbox.svn({"remove", "-q", "empty"});
    std::filesystem::remove(sandbox.workingCopy() / "blob");
    expectEach(sandbox,
               {{{"status", "-s"}, "?  a b.txt\n!  blob\nD  empty\nM  hello.c\nA  new.c\n M src\n"},
                {{"status", "-s", "src/main.c"}, ""}});
}

} // namespace

} // namespace quen::test
