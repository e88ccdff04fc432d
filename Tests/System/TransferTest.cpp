#include "Tests/System/ShowingCase.h"
#include "Tests/System/Terminal.h"
#include "Tests/System/TwoWorkingCopies.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace quen::test {

namespace {

using testing::HasSubstr;
using testing::Not;

const std::string compare = "Compare both versions, take over what is missing from yours, and "
                            "delete the file with theirs.\n";

/// What update, merge, switch and checkout say of what both sides have changed.
class TransferTest : public testing::Test {
protected:
    /// Both have changed a text, properties and trees; ours is not committed.
    void makeConflicts() const {
        for (const char* const name : {"text", "props", "gone there", "gone here", "dir/in it"}) {
            people_.write(name, "1\n2\n3\n");
        }
        sandbox_.svn({"add", "-q", "--force", "."});
        sandbox_.svn({"propset", "-q", "colour", "blue", "props"});
        people_.commitOurs();
        for (const char* const name : {"text", "gone here", "dir/in it"}) {
            people_.writeTheirs(name, "1\ntheirs\n3\n");
        }
        people_.svnTheirs({"propset", "-q", "colour", "red", "props"});
        people_.svnTheirs({"remove", "-q", "gone there"});
        people_.commitTheirs();
        for (const char* const name : {"text", "gone there", "dir/in it"}) {
            people_.write(name, "1\nmine\n3\n");
        }
        sandbox_.svn({"propset", "-q", "colour", "green", "props"});
        sandbox_.svn({"remove", "-q", "gone here"});
    }
    /// A branch on which `text` is changed, while the trunk, which ours is, has changed it too.
    void makeBranch() const {
        people_.write("text", "1\n2\n3\n");
        people_.write("other", "1\n2\n3\n");
        people_.commitOurs();
        sandbox_.svn({"copy", "-q", "-m", "B", sandbox_.url("trunk"), sandbox_.url("branches/b")});
        people_.svnTheirs({"switch", "-q", "^/branches/b"});
        people_.writeTheirs("text", "1\ntheirs\n3\nonly theirs\n");
        people_.commitTheirs();
        people_.write("text", "1\nmine\n3\n");
        sandbox_.commit("On the trunk");
    }
    /// A client before the real one, in the shell's language.
    Ran quenWithClient(const std::string& script, Sandbox::Words words) const {
        sandbox_.write(sandbox_.root() / "bin/svn", "#!/bin/sh\n" + script);
        std::filesystem::permissions(sandbox_.root() / "bin/svn",
                                     std::filesystem::perms::owner_all);
        words.insert(words.begin(), Sandbox::program());
        return sandbox_.run(words, sandbox_.workingCopy(),
                            {"PATH=" + (sandbox_.root() / "bin").string() + ":/usr/bin:/bin"});
    }
    ProcessInvocation invocation(Sandbox::Words words) const {
        words.insert(words.begin(), Sandbox::program());
        return sandbox_.invocation(words, sandbox_.workingCopy());
    }

    const TwoWorkingCopies people_;
    const Sandbox& sandbox_ = people_.sandbox;
};

// Update

TEST_F(TransferTest, UpdateNamesEachConflictAndKeepsTheirs) {
    makeConflicts();

    const Ran ran = sandbox_.quen({"update"});

    EXPECT_EQ(ran.out, "Updated to revision 3 (5 items).\n");
    for (const char* const line :
         {"quen update: 3 conflicts were decided for your version:\n",
          "\n  text                theirs: text.theirs.r3\n",
          "\n  dir/in it           theirs: dir/in it.theirs.r3\n",
          "\n  props (properties)  theirs: props.theirs-properties.r3\n",
          "quen update: 2 conflicts are left for you to resolve:\n",
          "\n  gone there (tree)  local file edit, incoming file delete or move upon update\n",
          "\n  gone here (tree)   local file delete, incoming file edit upon update\n"}) {
        EXPECT_THAT(ran.err, HasSubstr(line));
    }
    EXPECT_THAT(ran.err, HasSubstr(compare));
    EXPECT_THAT(ran.err, HasSubstr("then run: quen resolve "));
    EXPECT_EQ(ran.status, 3);
    EXPECT_EQ(sandbox_.read("text"), "1\nmine\n3\n");
    EXPECT_EQ(sandbox_.read("text.theirs.r3"), "1\ntheirs\n3\n");
    EXPECT_THAT(sandbox_.read("props.theirs-properties.r3"), HasSubstr("\n  colour\n    red\n"));
}

TEST_F(TransferTest, UpdateKeepsNothingWhereThePersonSaysSo) {
    makeConflicts();

    const Ran ran = sandbox_.quen({"update", "--no-theirs", "text"});

    EXPECT_EQ(ran.err, "quen update: 1 conflict was decided for your version:\n"
                       "  text  theirs was not kept; quen cat text shows it\n"
                       "quen update: Nothing of theirs is in these; compare before you commit.\n");
    EXPECT_EQ(ran.status, 3);
    EXPECT_FALSE(people_.exists("text.theirs.r3"));
    EXPECT_EQ(sandbox_.quen({"cat", "text"}).out, "1\ntheirs\n3\n") << "the advice is true";
}

TEST_F(TransferTest, UpdateTellsFromAnywhereAndAsJson) {
    makeConflicts();

    const Ran ran = sandbox_.quen({"update", "--json", "wc/text", "wc/dir"}, sandbox_.root());

    const std::string out = sandbox_.neutral(ran.out);
    EXPECT_THAT(out, HasSubstr(R"("revision":3,)"));
    EXPECT_THAT(out, HasSubstr(R"({"path":"SANDBOX/wc/text","kind":"text","state":"settled",)"
                               R"("theirs":"SANDBOX/wc/text.theirs.r3","mine":null,)"
                               R"("description":null,"revision":3})"));
    EXPECT_THAT(ran.err, HasSubstr(R"({"error":{"exitStatus":3,)"));
    EXPECT_THAT(ran.err, HasSubstr("theirs: wc/text.theirs.r3\""));
    EXPECT_EQ(ran.status, 3);
    EXPECT_EQ(sandbox_.read("dir/in it.theirs.r3"), "1\ntheirs\n3\n");
}

TEST_F(TransferTest, APreviewChangesNothing) {
    makeConflicts();
    people_.writeTheirs("new", "theirs\n");
    people_.commitTheirs();
    people_.write("new", "mine\n");
    const std::string before = sandbox_.svn({"status"});

    const Ran ran = sandbox_.quen({"update", "--preview"});

    EXPECT_THAT(ran.out, HasSubstr("Would update to revision 4: 6 items would change.\n"
                                   "Changed on both sides; where the same lines are concerned, "
                                   "yours are kept:\n"));
    for (const char* const line :
         {"\n  modified             text\n", "\n  modified             dir/in it\n",
          "\n  modified             gone there\n", "\n  deleted              gone here\n",
          "\n  properties modified  props\n",
          "In the way of what comes in; a tree conflict would be left:\n  unversioned  new\n"}) {
        EXPECT_THAT(ran.out, HasSubstr(line));
    }
    EXPECT_EQ(ran.status, 3);
    EXPECT_EQ(sandbox_.svn({"status"}), before);
    const Ran older = sandbox_.quen({"update", "--preview", "-r", "2"});
    EXPECT_EQ(older.out, "Would update to revision 2: nothing comes in.\n");
    EXPECT_EQ(older.status, 0);
    EXPECT_THAT(sandbox_.quen({"update", "--preview", "--json"}).out,
                HasSubstr(R"("inTheWay":[{"path":")"));
}

TEST_F(TransferTest, WhatIsStillInConflictIsNamedAsSkipped) {
    makeConflicts();
    EXPECT_EQ(sandbox_.quen({"update"}).status, 3);
    people_.writeTheirs("gone here", "1\ntheirs again\n3\n");
    people_.commitTheirs();

    const Ran ran = sandbox_.quen({"update"});

    EXPECT_EQ(ran.err, "quen update: 1 item was skipped:\n"
                       "  gone here  Node remains in conflict\n"
                       "quen update: Nothing of theirs has come in there. See to the reason, then "
                       "run this again.\n");
    EXPECT_EQ(ran.status, 3);
}

TEST_F(TransferTest, WhatWasDecidedBeforeAFailureIsNamedAsWell) {
    makeConflicts();

    const Ran ran = quenWithClient("[ $1 = update ] || exec /usr/bin/svn \"$@\"\n"
                                   "/usr/bin/svn \"$@\"\n"
                                   "echo 'svn: E170013: Unable to connect to a repository' >&2\n"
                                   "exit 1\n",
                                   {"update", "text"});

    EXPECT_THAT(ran.err, HasSubstr("Unable to connect to a repository"));
    EXPECT_THAT(ran.err, HasSubstr("quen update: 1 conflict was decided for your version:\n"
                                   "  text  theirs: text.theirs.r3\n"));
    EXPECT_EQ(ran.status, 1);
    EXPECT_EQ(sandbox_.read("text.theirs.r3"), "1\ntheirs\n3\n");
}

TEST_F(TransferTest, WhereTheirsCannotBeKeptTheReasonIsTold) {
    makeConflicts();

    const Ran ran = quenWithClient("[ $1 = cat ] || exec /usr/bin/svn \"$@\"\n"
                                   "echo 'svn: E200030: sqlite: disk I/O error' >&2; exit 1\n",
                                   {"update", "text"});

    EXPECT_THAT(ran.err, HasSubstr("  text  theirs was not kept (sqlite: disk I/O error); quen cat "
                                   "text shows it\n"));
    EXPECT_EQ(ran.status, 3);
}

// Merge

TEST_F(TransferTest, MergeNamesTheFileThatDroppedALine) {
    makeBranch();

    const Ran ran = sandbox_.quen({"merge", "b"});

    EXPECT_EQ(ran.out, "Merged 1 item from b.\n"
                       "To undo the merge before you commit it: `quen revert .`.\n");
    EXPECT_EQ(ran.err, "quen merge: 1 conflict was decided for your version:\n"
                       "  text  theirs: text.theirs.r5\n"
                       "quen merge: " +
                           compare);
    EXPECT_EQ(ran.status, 3);
    EXPECT_THAT(sandbox_.read("text"), Not(HasSubstr("only theirs")));
    EXPECT_THAT(sandbox_.read("text.theirs.r5"), HasSubstr("only theirs\n"));
    // The advice is true.
    EXPECT_EQ(sandbox_.quen({"revert", "--yes", "."}).status, 0);
    EXPECT_EQ(sandbox_.svn({"status", "-q"}), "");
}

TEST_F(TransferTest, MergeFindsTheirsFromOutsideOfTheWorkingCopy) {
    makeBranch();

    const Ran ran = sandbox_.quen({"merge", "^/branches/b", "wc"}, sandbox_.root());

    EXPECT_THAT(ran.err, HasSubstr("  wc/text  theirs: wc/text.theirs.r5\n"));
    EXPECT_THAT(sandbox_.read("text.theirs.r5"), HasSubstr("only theirs\n"));
}

TEST_F(TransferTest, MergePreviewChangesNothing) {
    makeBranch();
    people_.write("other", "mine\n");

    const Ran ran = sandbox_.quen({"merge", "--preview", "b"});

    EXPECT_EQ(ran.out, "Would merge from b: 1 item would change.\n"
                       "Changed on both sides; where the same lines are concerned, yours are "
                       "kept:\n"
                       "  text  text\n"
                       "Changed here and not committed:\n"
                       "  modified  other\n");
    EXPECT_EQ(ran.status, 3);
    EXPECT_EQ(sandbox_.svn({"status"}), "M       other\n");
}

TEST_F(TransferTest, MergeLooksAtLocalChangesFirst) {
    makeBranch();
    people_.write("other", "mine, not committed\n");

    const Ran refused = sandbox_.quen({"merge", "b"});
    EXPECT_EQ(refused.err, "quen merge: These changes are not committed, and would be mixed with "
                           "what is merged:\n"
                           "  modified  other\n"
                           "quen merge: Nothing was done, because nobody can be asked here. Use "
                           "--yes to go ahead without a question.\n");
    EXPECT_EQ(refused.status, 1);
    EXPECT_EQ(sandbox_.svn({"status"}), "M       other\n");

    Terminal terminal(invocation({"merge", "b"}));
    ASSERT_TRUE(terminal.waitFor("Merge into a working copy with 1 local change? [y/N]"));
    terminal.type("y\n");
    EXPECT_EQ(terminal.waitForEnd(), 3) << terminal.shown();

    // The way back that was told.
    EXPECT_THAT(terminal.shown(), HasSubstr("`quen undo --step 2`"));
    EXPECT_EQ(sandbox_.quen({"revert", "--yes", "."}).status, 0);
    EXPECT_EQ(sandbox_.quen({"undo", "--step", "2"}).out,
              "other\nBrought back 1 item of the last merge.\n");
    EXPECT_EQ(sandbox_.svn({"status", "-q"}), "M       other\n");
    EXPECT_EQ(sandbox_.read("other"), "mine, not committed\n");
}

// Switch

TEST_F(TransferTest, SwitchLooksAtLocalChangesFirst) {
    makeBranch();
    people_.writeTheirs("new", "theirs\n");
    people_.commitTheirs();
    people_.write("text", "1\nnot committed\n3\n");
    people_.write("other", "mine, not committed\n");
    people_.write("new", "mine\n");
    people_.write("unrelated", "mine\n");

    const Ran refused = sandbox_.quen({"switch", "b"});
    EXPECT_EQ(refused.err, "quen switch: These are in no revision, and would be taken along to b:\n"
                           "  modified                   other\n"
                           "  modified, different there  text\n"
                           "  unversioned, in the way    new\n"
                           "quen switch: Nothing was done, because nobody can be asked here. Use "
                           "--yes to go ahead without a question.\n");
    EXPECT_EQ(refused.status, 1);

    const Ran ran = sandbox_.quen({"switch", "--yes", "b"});
    EXPECT_EQ(ran.status, 3);
    EXPECT_THAT(ran.out, HasSubstr("Switched to b ("));
    EXPECT_THAT(ran.err, HasSubstr("quen switch: 2 conflicts are left for you to resolve:\n"));
    EXPECT_THAT(ran.err, HasSubstr("  text        yours: text.mine, theirs: text.r"));
    EXPECT_THAT(ran.err, HasSubstr("  new (tree)  local file unversioned, incoming file add upon "
                                   "switch\n"));
    EXPECT_THAT(sandbox_.read("text.mine"), HasSubstr("not committed\n"));
    EXPECT_EQ(sandbox_.read("new"), "mine\n");
}

TEST_F(TransferTest, SwitchDoesNotAskWhereNothingIsConcerned) {
    makeBranch();
    people_.write("unrelated", "mine\n");
    EXPECT_EQ(sandbox_.quen({"switch", "b"}).status, 0);
}

// Checkout

TEST_F(TransferTest, CheckoutLooksAtWhatLiesThere) {
    makeBranch();
    const auto place = sandbox_.root() / "place";
    sandbox_.write(place / "text", "mine\n");
    sandbox_.write(place / "unrelated", "mine\n");
    const Sandbox::Words words{"checkout", sandbox_.url("trunk"), "place"};

    const Ran refused = sandbox_.quen(words, sandbox_.root());
    EXPECT_EQ(refused.err, "quen checkout: These exist where the checkout would put something; "
                           "they would stay as they are, in conflict with it:\n"
                           "  in the way  place/text\n"
                           "quen checkout: Nothing was done, because nobody can be asked here. Use "
                           "--yes to go ahead without a question.\n");
    EXPECT_EQ(refused.status, 1);
    EXPECT_FALSE(std::filesystem::exists(place / ".svn"));

    const Ran ran =
        sandbox_.quen({"checkout", "--yes", sandbox_.url("trunk"), "place"}, sandbox_.root());
    EXPECT_EQ(ran.status, 3);
    EXPECT_THAT(ran.err, HasSubstr("  place/text (tree)  local file unversioned, incoming file add "
                                   "upon update\n"));
    EXPECT_EQ(sandbox_.read(place / "text"), "mine\n");
}

TEST_F(TransferTest, CheckoutIntoAWorkingCopyIsAnUpdate) {
    makeConflicts();
    const Ran refused = sandbox_.quen({"checkout", sandbox_.url("trunk"), "."});
    EXPECT_THAT(refused.err, HasSubstr("  modified             text\n"));
    EXPECT_EQ(refused.status, 1);
    EXPECT_EQ(sandbox_.quen({"checkout", sandbox_.url("trunk"), "theirs"}, sandbox_.root()).status,
              0);
}

// Removal in the repository

TEST_F(TransferTest, RemovalInTheRepositoryIsAskedAbout) {
    makeConflicts();
    const std::string url = sandbox_.url("trunk");

    const Ran refused = sandbox_.quen({"remove", "-m", "M", url + "/dir", url + "/text"});
    EXPECT_EQ(sandbox_.neutral(refused.err),
              "quen remove: This will be removed from the repository at once, for everybody:\n"
              "  directory, 1 item  file://SANDBOX/repository/trunk/dir\n"
              "  file               file://SANDBOX/repository/trunk/text\n"
              "quen remove: Nothing was done, because nobody can be asked here. Use --yes to go "
              "ahead without a question.\n");
    EXPECT_EQ(refused.status, 1);

    Terminal terminal(invocation({"remove", "-m", "M", url + "/dir"}));
    ASSERT_TRUE(terminal.waitFor("Remove 1 URL? [y/N]")) << terminal.shown();
    terminal.type("y\n");
    EXPECT_EQ(terminal.waitForEnd(), 0) << terminal.shown();
    EXPECT_THAT(sandbox_.svn({"list", url}), Not(HasSubstr("dir/")));
    EXPECT_EQ(sandbox_.quen({"remove", "-m", "M", url + "/none"}).status, 1);
}

// Resolving

TEST_F(TransferTest, ResolveTakesAVersionAndKeepsTheOther) {
    makeBranch();
    for (const auto& [accept, content] :
         {std::pair("theirs", "1\ntheirs\n3\nonly theirs\n"), std::pair("mine", "1\nedit\n3\n"),
          std::pair("base", "1\nmine\n3\n")}) {
        SCOPED_TRACE(accept);
        people_.write("text", "1\nedit\n3\n");
        EXPECT_EQ(sandbox_.quen({"switch", "--yes", "b"}).status, 3);
        people_.write("text", "half resolved\n");

        const Ran ran = sandbox_.quen({"resolve", "--accept", accept, "text"});
        EXPECT_EQ(ran.out, "Resolved 1 conflict. `quen undo` brings back what the files held.\n");
        EXPECT_EQ(ran.status, 0) << ran.err;
        EXPECT_EQ(sandbox_.read("text"), content);
        EXPECT_EQ(sandbox_.quen({"undo"}).status, 0);
        EXPECT_EQ(sandbox_.read("text"), "half resolved\n");

        sandbox_.svn({"revert", "-q", "-R", "."});
        sandbox_.svn({"switch", "-q", "^/trunk"});
    }
}

} // namespace

} // namespace quen::test
