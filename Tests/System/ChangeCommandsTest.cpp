#include "Tests/System/ShowingCase.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace quen::test {

namespace {

using testing::HasSubstr;
using testing::StartsWith;

/// What is added by a dash in front would be an option, by an at sign a revision, by brackets a
/// list, if nobody took care.
const Sandbox::Words awkwardNames{"plain.c",   "with blank.c", "icon@2x.png", "\xC3\xBCmlaut.c",
                                  "-dash.c",   "50%.c",        "[a,b]",       "it's.c",
                                  "-both@2.c", "ends@",        "dir/in@1.c"};

/// A command with awkward names as they are typed behind two dashes.
Sandbox::Words withNames(Sandbox::Words words, const Sandbox::Words& names) {
    words.emplace_back("--");
    words.insert(words.end(), names.begin(), names.end());
    return words;
}

/// How quen writes a name that was given behind two dashes.
std::string shown(const std::string& name) {
    return name.starts_with('-') ? "./" + name : name;
}

class LocalEditCommandsTest : public testing::Test {
protected:
    void commitFiles(const Sandbox::Words& names) const {
        for (const std::string& name : names) {
            sandbox_.write(name, "one\n");
        }
        sandbox_.svn({"add", "-q", "--force", "."});
        sandbox_.commit("Files");
    }

    Sandbox sandbox_;
};

TEST_F(LocalEditCommandsTest, AddTakesNamesAsTheyAre) {
    std::filesystem::create_directory(sandbox_.workingCopy() / "dir");
    sandbox_.svn({"add", "-q", "dir"});
    for (const std::string& name : awkwardNames) {
        sandbox_.write(name, "one\n");
    }

    expectEach(sandbox_, {{withNames({"add"}, awkwardNames), "Added 11 items.\n"}});

    EXPECT_EQ(sandbox_.svn({"status", "-q"}).find('?'), std::string::npos);
    for (const std::string& name : awkwardNames) {
        EXPECT_THAT(sandbox_.svn({"status", "-q"}), HasSubstr("A       " + name + "\n"));
    }
}

TEST_F(LocalEditCommandsTest, AddTellsWhatIsWrong) {
    commitFiles({"a.c"});
    expectEach(sandbox_,
               {{{"add", "nowhere"}, "", 1, "quen add: \"nowhere\" does not exist.\n"},
                {{"add", "--json", "."},
                 "{\"summary\":\"Nothing to add.\",\"revision\":null,\"items\":0}\n"},
                {{"add", "."}, "Nothing to add.\n"},
                {{"add", "a.c"}, "", 1, "quen add: \"a.c\" is already under version control\n"}});
    const Ran json = sandbox_.quen({"add", "--json", "a.c"});
    EXPECT_EQ(json.out, "null\n");
    EXPECT_THAT(json.err, StartsWith(R"({"error":{"exitStatus":1,)"
                                     R"("domain":"QuenSourceControlTaskErrorDomain","code":150002,)"
                                     R"("failure":"other",)"
                                     R"("message":"\"a.c\" is already under version control",)"));
    EXPECT_EQ(json.status, 1);
}

/// As a status would list them: below another new directory nothing is named, ignored items stay.
TEST_F(LocalEditCommandsTest, AddTakesWhatIsNewBelowADirectory) {
    commitFiles({"src/a.c"});
    sandbox_.svn({"propset", "-q", "svn:ignore", "*.o", "src"});
    for (const std::string name : {"new.c", "src/b@1.c", "src/a.o", "src/-dash", "lib/deep/c.c"}) {
        sandbox_.write(name, "one\n");
    }
    expectEach(sandbox_,
               {{{"add", "src"}, "Added 2 items.\n"},
                {{"add"},
                 "",
                 1,
                 "quen add: According to the status:\n"
                 "  unversioned  lib\n"
                 "  unversioned  new.c\n"
                 "quen add: Nothing was done, because nobody can be asked here. Use --yes to go "
                 "ahead without a question.\n"},
                {{"add", "--yes"}, "Added 4 items.\n"},
                {{"add", "--yes"}, "Nothing to add.\n"}});
    EXPECT_EQ(sandbox_.svn({"status", "--no-ignore"}),
              "A       lib\nA       lib/deep\nA       lib/deep/c.c\nA       new.c\n M      src\n"
              "A       src/-dash\nI       src/a.o\nA       src/b@1.c\n");
}

TEST_F(LocalEditCommandsTest, RemoveTakesWhatIsMissing) {
    commitFiles({"a.c", "dir/b.c", "c.c"});
    std::filesystem::remove(sandbox_.workingCopy() / "a.c");
    std::filesystem::remove_all(sandbox_.workingCopy() / "dir");
    expectEach(sandbox_,
               {{{"remove"},
                 "",
                 1,
                 "quen remove: According to the status:\n"
                 "  missing  a.c\n"
                 "  missing  dir\n"
                 "quen remove: Nothing was done, because nobody can be asked here. Use --yes to go "
                 "ahead without a question.\n"},
                {{"remove", "--yes"}, "Removed 3 items.\n"},
                {{"remove"}, "Nothing to remove.\n"}});
    EXPECT_EQ(sandbox_.svn({"status"}), "D       a.c\nD       dir\n");
}

/// The client takes it without a word.
TEST_F(LocalEditCommandsTest, RemoveTellsOfWhatWasNotUnderVersionControl) {
    commitFiles({"a.c"});
    for (const std::string name : {"new.c", "other.c", "dir/b.c"}) {
        sandbox_.write(name, "one\n");
    }
    const std::string undo = " `quen undo` brings back what the files held.\n";
    expectEach(sandbox_, {{{"remove", "--yes", "new.c"}, "Removed 1 item." + undo},
                          {{"remove", "--yes", "a.c", "other.c"}, "Removed 2 items." + undo},
                          {{"remove", "--yes", "dir"}, "Removed 1 item." + undo}});
    EXPECT_EQ(sandbox_.svn({"status"}), "D       a.c\n");
}

/// The client would end at the first, with the rest not added.
TEST_F(LocalEditCommandsTest, AddTellsOfNamesThatNoRepositoryTakes) {
    for (const std::string name : {"a.c", "b\nb.c", "c.c"}) {
        sandbox_.write(name, "one\n");
    }
    expectEach(sandbox_, {{{"add", "--yes"},
                           "Added 2 items.\n",
                           1,
                           "quen add: \"b\xEF\xBF\xBD"
                           "b.c\" cannot be added: its name holds a "
                           "control character. Rename it.\n"},
                          {{"add", "b\nb.c"},
                           "Nothing to add.\n",
                           1,
                           "quen add: \"b\xEF\xBF\xBD"
                           "b.c\" cannot be added: its name holds a "
                           "control character. Rename it.\n"}});
    EXPECT_EQ(sandbox_.svn({"status", "-q"}), "A       a.c\nA       c.c\n");
}

/// The client says nothing of a path that is not there.
TEST_F(LocalEditCommandsTest, WhatNamesNothingIsTold) {
    commitFiles({"a.c", "b.c"});
    sandbox_.svn({"update", "-q"});
    sandbox_.svn({"remove", "-q", "b.c"});
    expectEach(sandbox_,
               {{{"status", "nowhere"}, "", 1, "quen status: \"nowhere\" does not exist.\n"},
                {{"revert", "nowhere"}, "", 1, "quen revert: \"nowhere\" does not exist.\n"},
                {{"update", "nowhere"},
                 "Already up to date at revision 2.\n",
                 1,
                 "quen update: \"nowhere\" does not exist.\n"},
                {{"update", "b.c"}, "Already up to date at revision 2.\n"},
                {{"revert", "b.c", "nowhere"},
                 "Reverted 1 item.\n",
                 1,
                 "quen revert: \"nowhere\" does not exist.\n"}});
}

TEST_F(LocalEditCommandsTest, RevertTakesNamesAsTheyAre) {
    commitFiles(awkwardNames);
    for (const std::string& name : awkwardNames) {
        sandbox_.write(name, "two\n");
    }

    expectEach(sandbox_, {{withNames({"revert", "--yes"}, awkwardNames),
                           "Reverted 11 items. `quen undo` brings back what the files held.\n"},
                          {withNames({"revert"}, awkwardNames), "Nothing to revert.\n"},
                          {{"revert", "--json", "."},
                           "{\"summary\":\"Nothing to revert.\",\"revision\":null,"
                           "\"items\":0}\n"}});

    EXPECT_EQ(sandbox_.svn({"status"}), "");
    EXPECT_EQ(sandbox_.read("icon@2x.png"), "one\n");
}

TEST_F(LocalEditCommandsTest, RemoveTakesNamesAsTheyAre) {
    commitFiles(awkwardNames);

    expectEach(sandbox_, {{withNames({"remove", "--yes"}, awkwardNames), "Removed 11 items.\n"}});

    for (const std::string& name : awkwardNames) {
        EXPECT_FALSE(std::filesystem::exists(sandbox_.workingCopy() / name)) << name;
        EXPECT_THAT(sandbox_.svn({"status"}), HasSubstr("D       " + name + "\n"));
    }
}

TEST_F(LocalEditCommandsTest, RemoveInTheRepositoryIsACommit) {
    commitFiles({"a@1.c", "b.c"});

    expectEach(sandbox_, {{{"remove", "--yes", sandbox_.url("trunk/a@1.c"), "-m", "No a"},
                           "Committed revision 3.\n"},
                          {{"remove", "--yes", sandbox_.url("trunk/b.c")},
                           "",
                           1,
                           "quen remove: There is no message. Give one with -m or -F, or name your "
                           "editor in SVN_EDITOR, VISUAL or EDITOR.\n"}});

    EXPECT_EQ(sandbox_.svn({"list", sandbox_.url("trunk")}), "b.c\n");
    EXPECT_THAT(sandbox_.svn({"log", "-r3", sandbox_.url()}), HasSubstr("No a"));
}

/// Both sides have changed `a.c`, and an update has left the conflict to the person.
void makeConflict(const Sandbox& sandbox) {
    sandbox.write("a.c", "theirs\n");
    sandbox.commit("Theirs");
    sandbox.svn({"update", "-q", "-r2"});
    sandbox.write("a.c", "mine\n");
    sandbox.svn({"update", "-q", "--accept", "postpone"});
}

TEST_F(LocalEditCommandsTest, ResolveSettlesAConflictInFavourOfTheFile) {
    commitFiles({"a.c"});
    makeConflict(sandbox_);
    ASSERT_THAT(sandbox_.svn({"status", "-q"}), StartsWith("C       a.c\n"));
    sandbox_.write("a.c", "both\n");

    expectEach(sandbox_, {{{"resolve", "a.c"}, "Resolved 1 conflict.\n"},
                          {{"resolve", "a.c"}, "Nothing to resolve.\n"}});

    EXPECT_EQ(sandbox_.svn({"status"}), "M       a.c\n");
    EXPECT_EQ(sandbox_.read("a.c"), "both\n");
}

class TreeEditCommandsTest : public LocalEditCommandsTest {};

TEST_F(TreeEditCommandsTest, CopyTakesNamesAsTheyAre) {
    commitFiles(awkwardNames);

    for (const std::string& name : awkwardNames) {
        const std::string copy = name + "@copy";
        expectEach(sandbox_, {{{"copy", "--", name, copy},
                               "Copied " + shown(name) + " to " + shown(copy) + ".\n"}});
        EXPECT_THAT(sandbox_.svn({"status"}), HasSubstr("A  +    " + copy + "\n"));
    }
}

TEST_F(TreeEditCommandsTest, CopyTakesAURL) {
    commitFiles({"a@1.c"});
    const std::string url = sandbox_.url("trunk/a%401.c");

    expectEach(sandbox_,
               {{{"copy", url, "b.c"}, "Copied file://SANDBOX/repository/trunk/a%401.c to b.c.\n"},
                {{"copy", "a@1.c", url},
                 "",
                 1,
                 "quen copy: \"file://SANDBOX/repository/trunk/a%401.c\" is a URL. "
                 "Copies within the repository are made by: quen branch create\n"}});

    EXPECT_EQ(sandbox_.read("b.c"), "one\n");
}

TEST_F(TreeEditCommandsTest, MoveTakesNamesAsTheyAre) {
    commitFiles(awkwardNames);

    for (const std::string& name : awkwardNames) {
        const std::string target = "new/place@1/" + name;
        expectEach(sandbox_, {{{"move", "--", name, target},
                               "Moved " + shown(name) + " to " + target + ".\n"}});
        EXPECT_EQ(sandbox_.read(target), "one\n");
        EXPECT_THAT(sandbox_.svn({"status"}), HasSubstr("D       " + name + "\n"));
    }
}

TEST_F(TreeEditCommandsTest, SeveralGoIntoADirectory) {
    commitFiles({"a.c", "b@2.c", "dir/c.c"});
    const std::string url = sandbox_.url("trunk/a.c");
    expectEach(
        sandbox_,
        {{{"copy", "a.c", "b@2.c", "dir"}, "Copied a.c to dir/a.c.\nCopied b@2.c to dir/b@2.c.\n"},
         {{"copy", url, "dir/d"}, "Copied file://SANDBOX/repository/trunk/a.c to dir/d.\n"},
         {{"move", "a.c", "dir/"},
          "",
          1,
          "quen move: The file could not be renamed because a file with that name already "
          "exists.\n"},
         {{"move", "dir/c.c", "."}, "Moved dir/c.c to ./c.c.\n"},
         {{"copy", "a.c", "c.c", "nowhere"},
          "",
          1,
          "quen copy: \"nowhere\" is not a directory, and several items need one to go "
          "into.\n"},
         {{"move", "a.c"},
          "",
          2,
          "quen move: Where to? Give the new path, or a directory, last.\n"}});
    EXPECT_EQ(sandbox_.svn({"status"}),
              "A  +    c.c\n        > moved from dir/c.c\nA  +    dir/a.c\nA  +    dir/b@2.c\n"
              "D       dir/c.c\n        > moved to c.c\nA  +    dir/d\n");
}

TEST_F(TreeEditCommandsTest, MakeDirectoryMakesParents) {
    expectEach(sandbox_,
               {{{"mkdir", "-p", "a/b@1/c", "a/d"}, "Created 4 items.\n"},
                {{"mkdir", "-p", "a/d"}, "Nothing to create.\n"},
                {{"mkdir", "--json", "-p", "a/d"},
                 "{\"summary\":\"Nothing to create.\",\"revision\":null,\"items\":0}\n"},
                {{"mkdir", "-p", sandbox_.url("trunk/x/y"), "-m", "M"}, "Committed revision 2.\n"},
                {{"mkdir", "-p", sandbox_.url("trunk/x/y"), "-m", "M"}, "Nothing to create.\n"},
                {{"mkdir", "-p", sandbox_.url("trunk/x"), sandbox_.url("trunk/z"), "-m", "M"},
                 "Committed revision 3.\n"}});
    EXPECT_EQ(sandbox_.svn({"status"}), "A       a\nA       a/b@1\nA       a/b@1/c\nA       a/d\n");
    EXPECT_EQ(sandbox_.svn({"list", "-R", sandbox_.url("trunk")}), "x/\nx/y/\nz/\n");
}

TEST_F(TreeEditCommandsTest, MoveWorksFromADirectoryBelow) {
    commitFiles({"src/a.c"});

    const Ran ran = sandbox_.quen({"move", "a.c", "../b.c"}, sandbox_.workingCopy() / "src");

    EXPECT_EQ(ran.out, "Moved a.c to ../b.c.\n");
    EXPECT_EQ(sandbox_.read("b.c"), "one\n");
}

TEST_F(TreeEditCommandsTest, MoveStaysInTheWorkingCopy) {
    commitFiles({"a.c", "b.c"});
    expectEach(
        sandbox_,
        {{{"move", "a.c", "../out.c"},
          "",
          1,
          "quen move: \"../out.c\" lies outside the working copy that holds \"a.c\": SANDBOX/wc\n"},
         {{"move", "a.c", "b.c"},
          "",
          1,
          "quen move: The file could not be renamed because a file with that name already "
          "exists.\n"},
         {{"move", sandbox_.url("trunk/a.c"), "c.c"},
          "",
          1,
          "quen move: \"file://SANDBOX/repository/trunk/a.c\" is a URL. Items are moved in a "
          "working copy, and the move is then committed.\n"}});
    EXPECT_EQ(sandbox_.svn({"status"}), "");
}

TEST_F(TreeEditCommandsTest, MakeDirectoryTakesNamesAsTheyAre) {
    Sandbox::Words names = awkwardNames;
    names.pop_back(); // lies in a directory that is not there

    expectEach(sandbox_, {{withNames({"mkdir"}, names),
                           "Created plain.c.\nCreated with blank.c.\nCreated icon@2x.png.\n"
                           "Created \xC3\xBCmlaut.c.\nCreated ./-dash.c.\nCreated 50%.c.\n"
                           "Created [a,b].\nCreated it's.c.\nCreated ./-both@2.c.\n"
                           "Created ends@.\n"}});

    for (const std::string& name : names) {
        EXPECT_THAT(sandbox_.svn({"status"}), HasSubstr("A       " + name + "\n"));
    }
}

TEST_F(TreeEditCommandsTest, MakeDirectoryInTheRepositoryIsACommit) {
    expectEach(sandbox_,
               {{{"mkdir", sandbox_.url("trunk/d@1"), sandbox_.url("trunk/e f"), "-m", "D"},
                 "Committed revision 2.\nCommitted revision 3.\n"},
                {{"mkdir", "nowhere/d"},
                 "",
                 1,
                 "quen mkdir: Can't create directory \"nowhere/d\": No such file or "
                 "directory\n"}});
    EXPECT_EQ(sandbox_.svn({"list", sandbox_.url("trunk")}), "d@1/\ne f/\n");
}

class BranchCommandsTest : public LocalEditCommandsTest {
protected:
    BranchCommandsTest() { commitFiles({"a.c"}); }
};

TEST_F(BranchCommandsTest, CreateCopiesTheTrunkAndDeleteTakesItAway) {
    for (const std::string name : {"stable", "a b@1", "50%", "\xC3\xBC"}) {
        SCOPED_TRACE(name);
        const Ran made = sandbox_.quen({"branch", "create", name, "-m", "Begin"});
        EXPECT_THAT(made.out, StartsWith("Committed revision "));
        EXPECT_EQ(made.err, "");
        EXPECT_EQ(sandbox_.svn({"list", sandbox_.url("branches")}), name + "/\n");

        const Ran deleted = sandbox_.quen({"branch", "delete", name, "--yes", "-m", "End"});
        EXPECT_THAT(deleted.out, StartsWith("Committed revision "));
        EXPECT_EQ(sandbox_.svn({"list", sandbox_.url("branches")}), "");
    }
}

TEST_F(BranchCommandsTest, CreateTakesAnotherSource) {
    expectEach(
        sandbox_,
        {{{"branch", "create", "one", "-m", "1"}, "Committed revision 3.\n"},
         {{"branch", "create", "two", "-m", "2", "--from", "one"}, "Committed revision 4.\n"},
         {{"branch", "create", "three", "-m", "3", "--from", "^/tags"}, "Committed revision 5.\n"},
         {{"branch", "create", "four", "-m", "4", "--from", sandbox_.url("trunk")},
          "Committed revision 6.\n"}});
    EXPECT_EQ(sandbox_.svn({"list", "-R", sandbox_.url("branches")}),
              "four/\nfour/a.c\none/\none/a.c\nthree/\ntwo/\ntwo/a.c\n");
}

/// A name that stands for the folder itself would take every branch along.
TEST_F(BranchCommandsTest, RefusesNamesThatAreNone) {
    sandbox_.svn({"mkdir", "-q", "-m", "One", sandbox_.url("branches/one")});
    for (const std::string name : {".", "..", "/", "one/..", "../trunk", "one/", ""}) {
        expectEach(sandbox_, {{{"branch", "delete", name, "-m", "Gone"},
                               "",
                               1,
                               "quen branch delete: \"" + name +
                                   "\" cannot be the name of a branch: its parts must not be "
                                   "empty, . or ..\n"}});
    }
    EXPECT_EQ(sandbox_.svn({"list", sandbox_.url()}), "branches/\ntags/\ntrunk/\n");
    EXPECT_EQ(sandbox_.svn({"list", sandbox_.url("branches")}), "one/\n");
}

TEST_F(BranchCommandsTest, CreateRefusesBeforeTheRunWhatCannotBe) {
    sandbox_.svn({"copy", "-q", "-m", "B", "--username", "alice", sandbox_.url("trunk"),
                  sandbox_.url("branches/b")});
    expectEach(
        sandbox_,
        {{{"branch", "create", "b", "-m", "M"},
          "",
          1,
          "quen branch create: Branch \"b\" already exists (last changed in r3 by alice). Choose "
          "another name.\n"},
         {{"branch", "create", "trunk", "-m", "M"},
          "",
          1,
          "quen branch create: A branch \"trunk\" would never be reached: the name means the "
          "trunk.\n"},
         {{"branch", "create", "^/x", "-m", "M"},
          "",
          1,
          "quen branch create: A branch \"^/x\" would never be reached: ^/ means the repository's "
          "root.\n"},
         {{"branch", "create", "team/x", "-m", "M"},
          "",
          1,
          "quen branch create: \"team/x\" cannot be created: \"file://SANDBOX/repository/branches/"
          "team\" does not exist. Make it first with: quen mkdir "
          "file://SANDBOX/repository/branches/"
          "team\n"}});
}

TEST_F(BranchCommandsTest, DeleteRefusesWhatWasNotConfirmedAndTheBranchOneIsOn) {
    sandbox_.svn({"copy", "-q", "-m", "B", "--username", "alice", sandbox_.url("trunk"),
                  sandbox_.url("branches/a b")});
    sandbox_.svn({"switch", "-q", sandbox_.url("branches/a%20b")});
    expectEach(
        sandbox_,
        {{{"branch"}, "a b\n"},
         {{"branch", "delete", "a c", "-m", "M"},
          "",
          1,
          "quen branch delete: There is no branch \"a c\". Did you mean \"a b\"?\n"},
         {{"branch", "delete", "a b", "--yes", "-m", "M"},
          "",
          1,
          "quen branch delete: The working copy is on branch \"a b\". Leave it first, with "
          "quen switch trunk, or delete it with --force.\n"},
         {{"branch", "delete", "a b", "--force", "-m", "M"},
          "",
          1,
          "quen branch delete: Deleting branch \"a b\" (last changed in r3 by alice) was not "
          "confirmed, so nothing was done. --yes confirms it.\n"},
         {{"branch", "delete", "a b", "--force", "--yes", "-m", "M"}, "Committed revision 4.\n"}});
}

TEST_F(BranchCommandsTest, SwitchAndMergeTakeABranchByName) {
    sandbox_.svn(
        {"copy", "-q", "-m", "Branch", sandbox_.url("trunk"), sandbox_.url("branches/a b@1@")});

    expectEach(sandbox_, {{{"switch", "a b@1"}, "Switched to a b@1.\n"}});
    EXPECT_EQ(sandbox_.svn({"info", "--show-item", "relative-url"}), "^/branches/a%20b@1\n");

    sandbox_.write("a.c", "two\n");
    sandbox_.write("b.c", "new\n");
    sandbox_.svn({"add", "-q", "b.c"});
    sandbox_.commit("Work");
    expectEach(sandbox_, {{{"switch", "trunk"}, "Switched to trunk (2 items).\n"},
                          {{"merge", "a b@1"},
                           "Merged 2 items from a b@1.\n"
                           "To undo the merge before you commit it: `quen revert .`.\n"},
                          {{"merge", "--yes", "a b@1"}, "Nothing to merge from a b@1.\n"}});
    EXPECT_EQ(sandbox_.svn({"status"}), " M      .\nM       a.c\nA  +    b.c\n");
}

/// What is changed here is compared with the branch before the switch: that is where it is missed.
TEST_F(BranchCommandsTest, ABranchThatIsNotThereIsMissedWithWhatHelps) {
    sandbox_.write("a.c", "mine\n");
    for (const Sandbox::Words& words : {Sandbox::Words{"switch", "nowhere"},
                                        {"switch", "nowhere", "--yes"},
                                        {"switch", "nowhere", "--dry-run"}}) {
        const Ran ran = sandbox_.quen(words);
        EXPECT_EQ(ran.status, 1);
        EXPECT_THAT(ran.err, testing::EndsWith("`quen branches` lists the branches.\n"));
    }
    EXPECT_EQ(sandbox_.svn({"status"}), "M       a.c\n");
}

TEST_F(BranchCommandsTest, MergeTakesARange) {
    sandbox_.svn({"copy", "-q", "-m", "Branch", sandbox_.url("trunk"), sandbox_.url("branches/b")});
    sandbox_.write("a.c", "two\n");
    sandbox_.commit("Two");
    sandbox_.write("b.c", "new\n");
    sandbox_.svn({"add", "-q", "b.c"});
    sandbox_.commit("New");
    sandbox_.svn({"switch", "-q", "^/branches/b"});

    expectEach(sandbox_,
               {{{"merge", "^/trunk", "-r", "4:5"},
                 "Merged 1 item from ^/trunk.\n"
                 "To undo the merge before you commit it: `quen revert .`.\n"},
                {{"merge", "trunk", "-r", "4"},
                 "",
                 2,
                 "quen merge: A merge takes two revisions, -r START:END: the changes "
                 "after START are merged, up to END.\n"},
                {{"merge", ".."},
                 "",
                 1,
                 "quen merge: \"..\" is not a branch: give its name, a URL or ^/NAME.\n"}});
    EXPECT_EQ(sandbox_.svn({"status"}), " M      .\nA  +    b.c\n");
}

TEST_F(BranchCommandsTest, MergeTakesChanges) {
    sandbox_.svn({"copy", "-q", "-m", "Branch", sandbox_.url("trunk"), sandbox_.url("branches/b")});
    for (const std::string name : {"b.c", "c.c", "d.c"}) {
        sandbox_.write(name, "new\n");
        sandbox_.svn({"add", "-q", name});
        sandbox_.commit("New " + name);
    }
    sandbox_.svn({"switch", "-q", "^/branches/b"});
    expectEach(sandbox_,
               {{{"merge", "-c", "4", "-c", "6", "trunk"},
                 "Merged 2 items from trunk.\n"
                 "To undo the merge before you commit it: `quen revert .`.\n"},
                {{"merge", "-c", "4", "-r", "4:5", "trunk"},
                 "",
                 2,
                 "quen merge: --revision and --change cannot be used together. `quen help merge` "
                 "shows how to use it.\n"}});
    EXPECT_EQ(sandbox_.svn({"status", "-q"}), " M      .\nA  +    b.c\nA  +    d.c\n");
}

class TransferCommandsTest : public LocalEditCommandsTest {};

TEST_F(TransferCommandsTest, CheckoutNamesTheDirectoryAfterTheURL) {
    commitFiles({"a b@1/c.c", "d/e.c"});
    const auto place = sandbox_.root() / "place";
    std::filesystem::create_directory(place);
    const auto checkout = [&](const Sandbox::Words& words) {
        Sandbox::Words command{"checkout"};
        command.insert(command.end(), words.begin(), words.end());
        return sandbox_.quen(command, place);
    };

    EXPECT_EQ(checkout({sandbox_.url("trunk/a%20b@1")}).out,
              "Checked out revision 2 to a b@1 (1 item).\n");
    EXPECT_EQ(checkout({sandbox_.url("trunk"), "-r", "1", "--", "-old@1"}).out,
              "Checked out revision 1 to ./-old@1.\n");
    EXPECT_EQ(sandbox_.neutral(checkout({"--json", sandbox_.url("trunk/d"), "x"}).out),
              "{\"QuenSourceControlOperationPathKey\":{\"MarlFilePath\":\"x\"},\"path\":\"x\","
              "\"summary\":\"Checked out revision 2 to x (1 item).\",\"revision\":2,\"items\":1,"
              "\"changes\":[{\"path\":\"x/e.c\",\"action\":\"added\",\"properties\":\"none\"}],"
              "\"conflicts\":[],\"skipped\":[]}\n");

    EXPECT_EQ(sandbox_.read(place / "a b@1/c.c"), "one\n");
    EXPECT_TRUE(std::filesystem::exists(place / "-old@1/.svn"));
    EXPECT_EQ(sandbox_.read(place / "x/e.c"), "one\n");
}

TEST_F(TransferCommandsTest, CheckoutTellsThatThereIsNothing) {
    expectEach(sandbox_, {{{"checkout", sandbox_.url("nowhere"), "x"},
                           "",
                           1,
                           "quen checkout: \"file://SANDBOX/repository/nowhere\" does not exist "
                           "in the repository.\n"
                           "quen checkout: `quen list` of the directory above shows what is "
                           "there.\n"},
                          {{"checkout", sandbox_.url("trunk"), "x", "-r", "9"},
                           "",
                           1,
                           "quen checkout: The revision 9 was not found for the file "
                           "\"file://SANDBOX/repository/trunk\".\n"
                           "quen checkout: `quen log` of the file shows its revisions.\n"}});
}

TEST_F(TransferCommandsTest, ImportPutsATreeIntoTheRepository) {
    const auto tree = sandbox_.root() / "-tree@1";
    std::filesystem::create_directory(tree);
    for (const std::string name : {"a.c", "b@2.c", "\xC3\xBC.c"}) {
        sandbox_.write(tree / name, "one\n");
    }

    const Ran ran = sandbox_.quen(
        {"import", "-m", "In", "--", "-tree@1", sandbox_.url("trunk/in@1")}, sandbox_.root());

    EXPECT_EQ(ran.err, "");
    EXPECT_EQ(ran.out, "Committed revision 2.\n");
    EXPECT_EQ(sandbox_.svn({"list", "-R", sandbox_.url("trunk")}),
              "in@1/\nin@1/a.c\nin@1/b@2.c\nin@1/\xC3\xBC.c\n");
}

TEST_F(TransferCommandsTest, ImportTakesAFile) {
    sandbox_.write("icon@2x.png", "one\n");

    expectEach(sandbox_, {{{"import", "-m", "In", "icon@2x.png", sandbox_.url("trunk/other@1.png")},
                           "Committed revision 2.\n"}});

    EXPECT_EQ(sandbox_.svn({"cat", sandbox_.url("trunk/other@1.png@")}), "one\n");
}

TEST_F(TransferCommandsTest, UpdateGoesToARevision) {
    commitFiles({"a.c", "b.c"});
    expectEach(sandbox_, {{{"update"}, "Already up to date at revision 2.\n"},
                          {{"update", "-r", "1"}, "Updated to revision 1 (2 items).\n"},
                          {{"update"}, "Updated to revision 2 (2 items).\n"},
                          {{"update", "--json", "-r", "1", "a.c"},
                           "{\"summary\":\"Updated to revision 1 (1 item).\",\"revision\":1,"
                           "\"items\":1,\"changes\":[{\"path\":\"a.c\",\"action\":\"deleted\","
                           "\"properties\":\"none\"}],\"conflicts\":[],\"skipped\":[]}\n"},
                          {{"update", "-r", "99"},
                           "",
                           1,
                           "quen update: No such revision 99\n"
                           "quen update: `quen log -l 1` shows the newest revision.\n"}});
    EXPECT_FALSE(std::filesystem::exists(sandbox_.workingCopy() / "a.c"));
}

TEST_F(TransferCommandsTest, UpdateKeepsTheFileWhereBothSidesHaveChangedIt) {
    commitFiles({"a.c"});
    sandbox_.write("a.c", "theirs\n");
    sandbox_.commit("Theirs");
    sandbox_.svn({"update", "-q", "-r2"});
    sandbox_.write("a.c", "mine\n");

    expectEach(sandbox_, {{{"update"},
                           "Updated to revision 3 (1 item).\n",
                           3,
                           "quen update: 1 conflict was decided for your version:\n"
                           "  a.c  theirs: a.c.theirs.r3\n"
                           "quen update: Compare both versions, take over what is missing from "
                           "yours, and delete the file with theirs.\n"}});

    EXPECT_EQ(sandbox_.read("a.c"), "mine\n");
}

class IgnoreCommandsTest : public LocalEditCommandsTest {
protected:
    std::string ignored(const std::string& directory = ".") const {
        return sandbox_.svn({"propget", "svn:ignore", directory});
    }
};

TEST_F(IgnoreCommandsTest, NamesGoIntoTheListOfTheirDirectoryAndOut) {
    commitFiles({"src/a.c"});
    expectEach(sandbox_,
               {{{"ignore", "*.o", "with blank", "src/\xC3\xBC.log"}, "Ignored 3 names.\n"}});
    EXPECT_EQ(ignored(), "with blank\n*.o\n\n");
    EXPECT_EQ(ignored("src"), "\xC3\xBC.log\n\n");

    expectEach(sandbox_, {{{"unignore", "with blank"}, "Removed 1 pattern from svn:ignore.\n"},
                          {{"unignore", "--json", "src/\xC3\xBC.log"},
                           "{\"summary\":\"Removed 1 pattern from svn:ignore.\","
                           "\"revision\":null,\"items\":0}\n"}});
    EXPECT_EQ(ignored(), "*.o\n\n");
    EXPECT_EQ(sandbox_.svn({"proplist", "src"}), "");
}

TEST_F(IgnoreCommandsTest, TellsWhatIsBehindAnError) {
    commitFiles({"a.c"});
    sandbox_.svn({"propset", "-q", "svn:ignore", "*.o", "."});
    expectEach(sandbox_,
               {{{"unignore", "b.o"},
                 "",
                 1,
                 "quen unignore: \"b.o\" is not among the ignored names of \".\".\n"},
                {{"ignore", "nowhere/x", "y"},
                 "",
                 1,
                 "quen ignore: \"nowhere/x\" cannot be ignored, since \"nowhere\" is not a "
                 "directory under version control.\n"
                 "quen ignore: Nothing was changed.\n"},
                {{"ignore", "y", "a\nb"},
                 "",
                 1,
                 "quen ignore: \"a\xEF\xBF\xBD"
                 "b\" holds a control character, which no line of the list of ignored names can.\n"
                 "quen ignore: Nothing was changed.\n"},
                {{"ignore", "icon@2x.png"},
                 "",
                 1,
                 "quen ignore: \"icon@2x.png\" holds an @, which cannot be written to the list of "
                 "ignored names. The pattern \"icon?2x.png\" matches it.\n"},
                {{"ignore", "--", "-x.c"},
                 "",
                 1,
                 "quen ignore: \"-x.c\" begins with -, which would be taken for an option. The "
                 "pattern \"[-]x.c\" matches it.\n"}});
    EXPECT_EQ(ignored(), "*.o\n\n");
}

/// The provider's rule drops them.
TEST_F(IgnoreCommandsTest, EntriesWithoutLettersStay) {
    commitFiles({"a.c"});
    sandbox_.svn({"propset", "-q", "svn:ignore", "*\na.o\n??", "."});
    expectEach(sandbox_,
               {{{"ignore", "b.o"}, "Ignored 1 name.\n"},
                {{"unignore", "a.o"}, "Removed 1 pattern from svn:ignore.\n"},
                {{"unignore", "b.o"}, "Removed 1 pattern from svn:ignore.\n"},
                {{"unignore", "*"},
                 "",
                 1,
                 "quen unignore: \"*\" holds no letter and no digit, and can only be taken "
                 "out with: svn propedit svn:ignore\n"}});
    EXPECT_EQ(ignored(), "*\n??\n\n");
}

TEST_F(IgnoreCommandsTest, SeveralAtOnceLoseNoName) {
    commitFiles({"a.c"});
    const std::string script = "for i in 1 2 3 4 5 6 7 8; do \"$0\" ignore name$i & done; wait";
    const Ran ran = sandbox_.run({"sh", "-c", script, Sandbox::program()}, sandbox_.workingCopy());
    EXPECT_EQ(ran.err, "");
    const std::string list = ignored();
    for (int i = 1; i <= 8; ++i) {
        EXPECT_THAT(list, HasSubstr("name" + std::to_string(i) + "\n"));
    }
}

/// Another program takes the name out again as soon as it is written, and again.
TEST_F(IgnoreCommandsTest, AListThatOthersWriteIsToldInTheEnd) {
    commitFiles({"a.c"});
    sandbox_.write(sandbox_.root() / "bin/svn",
                   "#!/bin/sh\n"
                   "case $1 in propset)\n"
                   "    exec /usr/bin/svn propset -q svn:ignore theirs .\n"
                   "esac\n"
                   "exec /usr/bin/svn \"$@\"\n");
    std::filesystem::permissions(sandbox_.root() / "bin/svn", std::filesystem::perms::owner_all);

    const Ran ran = sandbox_.run({Sandbox::program(), "ignore", "mine"}, sandbox_.workingCopy(),
                                 {"PATH=" + (sandbox_.root() / "bin").string() + ":/usr/bin:/bin"});

    EXPECT_EQ(ran.err, "quen ignore: \"mine\": another program writes the list at the same time. "
                       "Try again.\n");
    EXPECT_EQ(ran.status, 1);
}

/// The operation does not look at how its edit ends, and would call it done.
TEST_F(IgnoreCommandsTest, TellsOfAnEditThatFailed) {
    commitFiles({"a.c"});
    // The client that reads is the real one, the one that writes refuses.
    sandbox_.write(sandbox_.root() / "bin/svn",
                   "#!/bin/sh\n"
                   "case $1 in propset)\n"
                   "    echo 'svn: E155004: It is locked' >&2; exit 1\n"
                   "esac\n"
                   "exec /usr/bin/svn \"$@\"\n");
    std::filesystem::permissions(sandbox_.root() / "bin/svn", std::filesystem::perms::owner_all);

    const Ran ran = sandbox_.run({Sandbox::program(), "ignore", "*.o"}, sandbox_.workingCopy(),
                                 {"PATH=" + (sandbox_.root() / "bin").string() + ":/usr/bin:/bin"});

    EXPECT_EQ(ran.out, "");
    EXPECT_EQ(sandbox_.neutral(ran.err),
              "quen ignore: \"*.o\": It is locked\n"
              "quen ignore: Unless another svn is at work there, run: quen cleanup\n");
    EXPECT_EQ(ran.status, 1);
}

} // namespace

} // namespace quen::test
