#include "Tests/System/ShowingCase.h"
#include "Tests/System/Terminal.h"
#include "Tests/System/TwoWorkingCopies.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <iterator>

namespace quen::test {

namespace {

using testing::HasSubstr;
using testing::Not;

/// What revert and remove take away, what is kept of it, and what undo brings back.
class LossTest : public testing::Test {
protected:
    LossTest() {
        people_.write("a.c", "one\n");
        people_.write("b.c", "one\n");
        people_.commitOurs();
    }
    ProcessInvocation invocation(Sandbox::Words words) const {
        words.insert(words.begin(), Sandbox::program());
        return sandbox_.invocation(words, sandbox_.workingCopy());
    }
    /// A file that takes no room on the disk, larger than all that is kept.
    void writeLarge(const std::string& name) const {
        people_.write(name, "");
        std::filesystem::resize_file(sandbox_.workingCopy() / name, 300'000'000);
    }

    const TwoWorkingCopies people_;
    const Sandbox& sandbox_ = people_.sandbox;
};

TEST_F(LossTest, PropertiesAloneAreShownByUndo) {
    sandbox_.svn({"propset", "-q", "colour", "a rare blue", "a.c"});

    const Ran reverted = sandbox_.quen({"revert", "--yes", "a.c"});
    EXPECT_EQ(reverted.out, "Reverted 1 item. `quen undo` brings back what the files held.\n");
    const Ran ran = sandbox_.quen({"undo"});
    EXPECT_THAT(ran.err, HasSubstr("\n  Added: colour\n"));
    EXPECT_THAT(ran.err, HasSubstr("\n  +a rare blue\n"));
    EXPECT_EQ(sandbox_.quen({"undo"}).out, "Nothing to undo.\n");
}

TEST_F(LossTest, WhatIsTooLargeIsNamedBeforeTheStep) {
    writeLarge("large");
    people_.write("a.c", "two\n");

    Terminal no(invocation({"remove", "large", "a.c"}));
    ASSERT_TRUE(no.waitFor("Remove 2 items? [y/N] ")) << no.shown();
    no.type("y\n");
    ASSERT_TRUE(no.waitFor("Remove all the same? [y/N] ")) << no.shown();
    EXPECT_THAT(no.shown(), HasSubstr("`quen undo` cannot bring these back:\r\n"));
    EXPECT_THAT(no.shown(), HasSubstr("bytes)  large\r\n"));
    no.type("n\n");
    EXPECT_EQ(no.waitForEnd(), 1);
    EXPECT_TRUE(people_.exists("large"));
    EXPECT_EQ(sandbox_.read("a.c"), "two\n");
    EXPECT_EQ(sandbox_.quen({"undo"}).out, "Nothing to undo.\n") << "there was no step";

    const Ran sure = sandbox_.quen({"remove", "--yes", "large", "a.c"});
    EXPECT_EQ(sure.status, 0);
    EXPECT_THAT(sure.err, HasSubstr("bytes)  large\n"));
    EXPECT_FALSE(people_.exists("large"));
    EXPECT_EQ(sandbox_.quen({"undo"}).status, 0);
    EXPECT_EQ(sandbox_.read("a.c"), "two\n");
}

TEST_F(LossTest, WhereNothingCanBeKeptThePersonIsAskedOnceMore) {
    people_.write("a.c", "two\n");
    sandbox_.write(sandbox_.root() / "home/.local", "no directory\n");

    Terminal no(invocation({"revert", "a.c"}));
    ASSERT_TRUE(no.waitFor("Revert 1 item? [y/N] ")) << no.shown();
    no.type("y\n");
    ASSERT_TRUE(no.waitFor("Revert all the same? [y/N] ")) << no.shown();
    no.type("\n");
    EXPECT_EQ(no.waitForEnd(), 1);
    EXPECT_EQ(sandbox_.read("a.c"), "two\n");

    const Ran sure = sandbox_.quen({"revert", "--yes", "a.c"});
    EXPECT_THAT(sure.err, HasSubstr("`quen undo` cannot bring these back:\n  modified  a.c\n"));
    EXPECT_EQ(sandbox_.read("a.c"), "one\n");
}

TEST_F(LossTest, SeveralWorkingCopies) {
    people_.write("a.c", "two\n");
    people_.writeTheirs("b.c", "two\n");

    const Ran ran = sandbox_.quen({"revert", "--yes", "wc/a.c", "theirs/b.c"}, sandbox_.root());
    EXPECT_EQ(ran.out,
              "Reverted 2 items. `quen undo theirs wc` brings back what the files held.\n");
    EXPECT_EQ(sandbox_.quen({"undo", "theirs", "wc"}, sandbox_.root()).out,
              "theirs/b.c\nBrought back 1 item of the last revert.\n"
              "wc/a.c\nBrought back 1 item of the last revert.\n");
    EXPECT_EQ(sandbox_.read("a.c"), "two\n");
    EXPECT_EQ(sandbox_.read(people_.theirs() / "b.c"), "two\n");
}

TEST_F(LossTest, StepsAreListedAndUndoneByNumber) {
    people_.write("a.c", "two\n");
    ASSERT_EQ(sandbox_.quen({"revert", "--yes", "a.c"}).status, 0);
    people_.write("b.c", "two\n");
    ASSERT_EQ(sandbox_.quen({"remove", "--yes", "b.c"}).status, 0);

    EXPECT_EQ(sandbox_.neutral(sandbox_.quen({"undo", "--list"}).out),
              "1  remove  DATE  1 item  b.c\n2  revert  DATE  1 item  a.c\n");
    EXPECT_EQ(sandbox_.quen({"undo", "--step", "2"}).out,
              "a.c\nBrought back 1 item of the last revert.\n");
    EXPECT_EQ(sandbox_.quen({"undo", "--step", "2"}).out, "Nothing to undo.\n");
    for (const std::string word : {"0", "x", "-1", "9999999999"}) {
        EXPECT_EQ(sandbox_.quen({"undo", "--step=" + word}).status, 2) << word;
    }
    EXPECT_EQ(sandbox_.quen({"undo"}).out, "b.c\nBrought back 1 item of the last remove.\n");
}

TEST_F(LossTest, ADirectoryWhoseNameEndsWithAnAtSignIsNotTheOther) {
    for (const char* const name : {"d/a", "d@/a"}) {
        people_.write(name, "one\n");
    }
    people_.commitOurs();
    for (const char* const word : {"d@", "d@/", "d@/.", "./d@"}) {
        SCOPED_TRACE(word);
        people_.write("d/a", "two\n");
        people_.write("d@/a", "two\n");
        EXPECT_THAT(sandbox_.quen({"revert", word}).err, HasSubstr("  modified  d@/a\n"));
        EXPECT_EQ(sandbox_.quen({"revert", "--yes", word}).status, 0);
        EXPECT_EQ(sandbox_.svn({"status"}), "M       d/a\n");
        EXPECT_EQ(sandbox_.quen({"remove", "--yes", word}).status, 0);
        EXPECT_EQ(sandbox_.read("d/a"), "two\n");
        EXPECT_FALSE(people_.exists("d@/a"));
        sandbox_.svn({"revert", "-q", "-R", "."});
    }
}

TEST_F(LossTest, AnExportWithoutRoomLeavesWhatWasThere) {
    people_.write("big", std::string(100'000, 'x'));
    people_.commitOurs();
    sandbox_.write(sandbox_.root() / "out/old", "old\n");
    // A limit of the size of files stands for a full disk; the client may write what it wants.
    sandbox_.write(sandbox_.root() / "bin/svn",
                   "#!/bin/sh\nulimit -S -f unlimited; exec /usr/bin/svn \"$@\"\n");
    std::filesystem::permissions(sandbox_.root() / "bin/svn", std::filesystem::perms::owner_all);
    const auto exported = [&](const Sandbox::Words& words) {
        Sandbox::Words command{"sh", "-c", "trap '' XFSZ; ulimit -S -f 8; exec \"$0\" \"$@\"",
                               Sandbox::program(), "export"};
        command.insert(command.end(), words.begin(), words.end());
        return sandbox_.run(command, sandbox_.workingCopy(),
                            {"PATH=" + (sandbox_.root() / "bin").string() + ":/usr/bin:/bin"});
    };
    for (const Sandbox::Words& words :
         {Sandbox::Words{"--force", "big", "../out/old"}, {"big", "../out/new"}}) {
        const Ran ran = exported(words);
        EXPECT_EQ(ran.err,
                  "quen export: \"" + words.back() + "\" cannot be written: File too large.\n");
        EXPECT_EQ(ran.status, 1);
    }
    EXPECT_EQ(sandbox_.read(sandbox_.root() / "out/old"), "old\n");
    const std::filesystem::directory_iterator files(sandbox_.root() / "out");
    EXPECT_EQ(std::distance(begin(files), end(files)), 1) << "nothing half lies beside";
}

TEST_F(LossTest, AnExportNeverFollowsALink) {
    sandbox_.write(sandbox_.root() / "out/elsewhere", "old\n");
    std::filesystem::create_symlink("elsewhere", sandbox_.root() / "out/link");
    EXPECT_EQ(sandbox_.quen({"export", "a.c", "../out/link"}).status, 1);
    EXPECT_EQ(sandbox_.quen({"export", "--force", "a.c", "../out/link"}).status, 0);
    EXPECT_EQ(sandbox_.read(sandbox_.root() / "out/elsewhere"), "old\n");
    EXPECT_EQ(sandbox_.read(sandbox_.root() / "out/link"), "one\n");
}

TEST_F(LossTest, EditsInsideOfCopiesAndMovesAreNamedAndKept) {
    people_.write("dir/deep", "one\n");
    people_.commitOurs();
    const Sandbox::Words edited{"copy.c", "moved.c", "dir2/deep"};
    for (const char* const step : {"revert", "remove"}) {
        SCOPED_TRACE(step);
        for (const char* const name : {"copy.c", "moved.c", "dir2", "same.c"}) {
            std::filesystem::remove_all(sandbox_.workingCopy() / name);
        }
        sandbox_.svn({"revert", "-q", "-R", "."});
        sandbox_.svn({"copy", "-q", "a.c", "copy.c"});
        sandbox_.svn({"move", "-q", "b.c", "moved.c"});
        sandbox_.svn({"copy", "-q", "dir", "dir2"});
        sandbox_.svn({"copy", "-q", "a.c", "same.c"});
        for (const std::string& name : edited) {
            people_.write(name, "edited " + name + "\n");
        }

        const Ran refused = sandbox_.quen({step, "copy.c", "moved.c", "dir2", "same.c"});
        for (const std::string& name : edited) {
            EXPECT_THAT(refused.err, HasSubstr(" " + name + "\n"));
        }
        EXPECT_THAT(refused.err, Not(HasSubstr("same.c")));
        EXPECT_EQ(sandbox_.quen({step, "--yes", "copy.c", "moved.c", "dir2", "same.c"}).status, 0);
        EXPECT_FALSE(people_.exists("copy.c"));
        EXPECT_EQ(sandbox_.quen({"undo"}).status, 0);
        for (const std::string& name : edited) {
            EXPECT_EQ(sandbox_.read(name), "edited " + name + "\n");
        }
    }
}

TEST_F(LossTest, WhatStandsInADeletedItemsPlaceIsKept) {
    sandbox_.svn({"remove", "-q", "a.c"});
    people_.write("a.c", "something else\n");
    EXPECT_THAT(sandbox_.quen({"revert", "a.c"}).err, HasSubstr("  deleted  a.c\n"));
    EXPECT_EQ(sandbox_.quen({"revert", "--yes", "a.c"}).status, 0);
    EXPECT_EQ(sandbox_.quen({"undo"}).status, 0);
    EXPECT_EQ(sandbox_.read("a.c"), "something else\n");
}

} // namespace

} // namespace quen::test
