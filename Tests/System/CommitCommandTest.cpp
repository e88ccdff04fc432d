#include "Tests/System/ShowingCase.h"

#include <algorithm>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace quen::test {

namespace {

using testing::HasSubstr;

class CommitCommandTest : public testing::Test {
protected:
    CommitCommandTest() {
        sandbox_.write("a.c", "one\n");
        sandbox_.svn({"add", "-q", "a.c"});
        sandbox_.write("notes.txt", "not versioned\n");
    }

    Ran quenWithEditor(const std::string& editor, const Sandbox::Words& words) const {
        Sandbox::Words command{Sandbox::program()};
        command.insert(command.end(), words.begin(), words.end());
        return sandbox_.run(
            command, sandbox_.workingCopy(),
            {"SVN_EDITOR=" + editor, "VISUAL=false", "TMPDIR=" + temporary().string()});
    }
    /// Where message files lie.
    std::filesystem::path temporary() const {
        std::filesystem::create_directories(sandbox_.root() / "tmp");
        return sandbox_.root() / "tmp";
    }
    std::string messageOf(const std::string& revision) const {
        return sandbox_.svn({"propget", "--revprop", "-r", revision, "svn:log", sandbox_.url()});
    }

    /// What is in the file that is told of, which only its owner can read.
    std::string savedMessage(const Ran& ran) const {
        const std::string told = "quen commit: Your message was saved in ";
        const auto found = ran.err.find(told);
        if (found == std::string::npos) {
            return "Nothing was told: " + ran.err;
        }
        std::string file = ran.err.substr(found + told.size());
        file.erase(file.find('\n'));
        using std::filesystem::perms;
        EXPECT_EQ(std::filesystem::status(file).permissions(),
                  perms::owner_read | perms::owner_write);
        return sandbox_.read(file);
    }

    Sandbox sandbox_;
};

TEST_F(CommitCommandTest, TellsTheNewRevision) {
    expectEach(sandbox_,
               {{{"commit", "-m", "-- \"First\"\n\n$HOME \xC3\xBC"},
                 "added  a.c\nCommitted revision 2.\n"},
                {{"commit", "-m", "Again"},
                 "Nothing to commit.\nNot sent, because not under version control: notes.txt\n"},
                {{"commit", "--json", "-m", "Again"},
                 "{\"summary\":\"Nothing to commit.\",\"revision\":null,\"items\":0}\n"},
                {{"commit", "--json"},
                 "{\"summary\":\"Nothing to commit.\",\"revision\":null,\"items\":0}\n"}});
    EXPECT_EQ(messageOf("2"), "-- \"First\"\n\n$HOME \xC3\xBC\n");

    sandbox_.write("a.c", "two\n");
    expectEach(sandbox_, {{{"commit", "--json", "--message=[WIP]", "a.c"},
                           "{\"QuenSourceControlOperationRevisionKey\":\"3\",\"revision\":3,"
                           "\"summary\":\"Committed revision 3.\",\"items\":1}\n"}});
    EXPECT_EQ(messageOf("3"), "[WIP]\n");
}

TEST_F(CommitCommandTest, RefusesAnEmptyMessage) {
    sandbox_.write("blank.txt", " \n\n");
    for (const Sandbox::Words& words : {Sandbox::Words{"commit", "-m", ""},
                                        {"commit", "-m", " \n"},
                                        {"commit", "-F", "-"},
                                        {"commit", "-F", "blank.txt"}}) {
        SCOPED_TRACE(testing::PrintToString(words));
        const Ran ran = sandbox_.quen(words);
        EXPECT_EQ(ran.err, "quen commit: The message is empty, so nothing was done.\n");
        EXPECT_EQ(ran.status, 1);
    }
}

TEST_F(CommitCommandTest, SendsAMessageThatNamesAFile) {
    expectEach(sandbox_, {{{"commit", "-m", "a.c"}, "added  a.c\nCommitted revision 2.\n"}});
    EXPECT_EQ(messageOf("2"), "a.c\n\n");
}

TEST_F(CommitCommandTest, TakesNamesAsTheyAre) {
    const Sandbox::Words names{"icon@2x.png", "-dash.c", "with blank.c", "\xC3\xBC.c", "[x]"};
    for (const std::string& name : names) {
        sandbox_.write(name, "one\n");
    }
    sandbox_.svn({"add", "-q", "icon@2x.png@", "./-dash.c", "with blank.c", "\xC3\xBC.c", "[x]"});
    Sandbox::Words words{"commit", "-m", "Names", "--"};
    words.insert(words.end(), names.begin(), names.end());

    expectEach(sandbox_, {{words, "added  -dash.c\nadded  [x]\nadded  icon@2x.png\n"
                                  "added  with blank.c\nadded  \xC3\xBC.c\n"
                                  "Committed revision 2.\n"}});

    EXPECT_EQ(sandbox_.svn({"status", "-q"}), "A       a.c\n");
}

TEST_F(CommitCommandTest, TakesTheMessageFromAFile) {
    sandbox_.write("message.txt", "From a file\n\n\xC3\xBC\n");
    expectEach(sandbox_,
               {{{"commit", "-F", "nowhere.txt"},
                 "",
                 1,
                 "quen commit: The message cannot be read from \"nowhere.txt\": No such "
                 "file or directory.\n"},
                {{"commit", "-F", "."},
                 "",
                 1,
                 "quen commit: The message cannot be read from \".\": Is a directory.\n"},
                {{"commit", "-F", "message.txt"}, "added  a.c\nCommitted revision 2.\n"}});
    EXPECT_EQ(messageOf("2"), "From a file\n\n\xC3\xBC\n");
}

TEST_F(CommitCommandTest, AsksTheEditorForTheMessage) {
    sandbox_.write("../difference", sandbox_.svn({"diff"}));
    const Ran ran =
        quenWithEditor("sh -c 'cp \"$1\" ../seen; echo \"In two words\" > \"$1\"' -", {"commit"});

    EXPECT_EQ(ran.err, "");
    EXPECT_EQ(ran.out, "Committed revision 2.\n");
    EXPECT_EQ(messageOf("2"), "In two words\n");
    EXPECT_EQ(sandbox_.read("../seen"),
              "\n--This line and everything below is not sent--\n\n"
              "added  a.c\n\n"
              "Not sent, because not under version control: notes.txt\n\n" +
                  sandbox_.read("../difference"));
    EXPECT_TRUE(std::filesystem::is_empty(temporary()));
}

TEST_F(CommitCommandTest, AnEmptyMessageAborts) {
    const Ran ran = quenWithEditor("true", {"commit"});

    EXPECT_EQ(ran.err, "quen commit: The message is empty, so nothing was done.\n");
    EXPECT_EQ(ran.status, 1);
    EXPECT_EQ(sandbox_.svn({"status", "-q"}), "A       a.c\n");
    EXPECT_TRUE(std::filesystem::is_empty(temporary()));
}

TEST_F(CommitCommandTest, AnEditorThatFailsAborts) {
    EXPECT_EQ(quenWithEditor("false", {"commit"}).err,
              "quen commit: The editor \"false\" failed with exit status 1.\n");
    expectEach(sandbox_, {{{"commit"},
                           "",
                           1,
                           "quen commit: There is no message. Give one with -m or -F, or name your "
                           "editor in SVN_EDITOR, VISUAL or EDITOR.\n"}});
    EXPECT_EQ(sandbox_.svn({"status", "-q"}), "A       a.c\n");
}

TEST_F(CommitCommandTest, KeepsTheMessageOfACommitThatFails) {
    sandbox_.write(sandbox_.root() / "repository/hooks/pre-commit", "#!/bin/sh\nexit 1\n");
    std::filesystem::permissions(sandbox_.root() / "repository/hooks/pre-commit",
                                 std::filesystem::perms::owner_all);

    const Ran ran = quenWithEditor("sed -i '1s/^/Precious/'", {"commit"});

    EXPECT_THAT(ran.err, HasSubstr("pre-commit"));
    EXPECT_EQ(savedMessage(ran), "Precious\n");
}

TEST_F(CommitCommandTest, ShowsExactlyWhatGoes) {
    sandbox_.write("src/b.c", "two\n");
    sandbox_.write("src/deep/c.c", "three\n");
    sandbox_.svn({"add", "-q", "src"});
    sandbox_.svn({"propset", "-q", "svn:externals", "^/tags ext", "."});
    sandbox_.svn({"update", "-q"});
    sandbox_.write("ext/d.c", "four\n");
    sandbox_.svn({"add", "-q", "ext/d.c"});

    expectEach(sandbox_, {{{"commit", "-m", "M", "src"},
                           "added  src\n"
                           "added  src/b.c\n"
                           "added  src/deep\n"
                           "added  src/deep/c.c\n"
                           "Committed revision 2.\n"}});
    sandbox_.svn({"update", "-q"});
    expectEach(sandbox_, {{{"commit", "-m", "M"},
                           "properties modified  .\n"
                           "added                a.c\n"
                           "Committed revision 3.\n"}});
    EXPECT_EQ(sandbox_.svn({"status", "-q", "ext"}), "A       ext/d.c\n");
}

TEST_F(CommitCommandTest, ShowsNoMoreThanAScreenful) {
    for (int i = 10; i < 40; ++i) {
        sandbox_.write("many/" + std::to_string(i) + ".c", "one\n");
    }
    sandbox_.svn({"add", "-q", "many"});
    const Ran ran = sandbox_.quen({"commit", "-m", "Many", "many"});
    EXPECT_THAT(ran.out, HasSubstr("added  many/28.c\n... and 11 more items\nCommitted"));
}

TEST_F(CommitCommandTest, RefusesBeforeTheMessageWhatWouldFail) {
    sandbox_.write("new/b.c", "one\n");
    sandbox_.svn({"add", "-q", "new"});
    sandbox_.svn({"commit", "-q", "-m", "A", "a.c"});
    sandbox_.svn({"move", "-q", "a.c", "moved.c"});
    expectEach(sandbox_, {{{"commit", "new/b.c"},
                           "",
                           1,
                           "quen commit: \"new\" is a new directory that is not in the repository "
                           "yet: commit it as well.\n"},
                          {{"commit", "moved.c"},
                           "",
                           1,
                           "quen commit: \"a.c\" is the other end of a move: commit it as well.\n"},
                          {{"commit", "notes.txt"},
                           "",
                           1,
                           "quen commit: \"notes.txt\" is not under version control. Add it with: "
                           "quen add notes.txt\n"}});
}

TEST_F(CommitCommandTest, ShowsWhatAHookSaysAfterTheCommit) {
    const std::filesystem::path hook = sandbox_.root() / "repository/hooks/post-commit";
    sandbox_.write(hook, "#!/bin/sh\necho The mail is not sent >&2\nexit 1\n");
    std::filesystem::permissions(hook, std::filesystem::perms::owner_all);

    const Ran ran = sandbox_.quen({"commit", "-m", "M"});

    EXPECT_EQ(ran.out, "added  a.c\nCommitted revision 2.\n");
    EXPECT_EQ(ran.err, "quen commit: Warning: post-commit hook failed (exit code 1) with output:\n"
                       "quen commit: Warning: The mail is not sent\n");
    EXPECT_EQ(ran.status, 0);
}

TEST_F(CommitCommandTest, AMessageFromStandardInputIsSavedWhereTheCommitFails) {
    const std::filesystem::path hook = sandbox_.root() / "repository/hooks/pre-commit";
    sandbox_.write(hook, "#!/bin/sh\nexit 1\n");
    std::filesystem::permissions(hook, std::filesystem::perms::owner_all);

    const Ran ran =
        sandbox_.run({"sh", "-c", "echo Precious | \"$0\" commit -F -", Sandbox::program()},
                     sandbox_.workingCopy(), {"TMPDIR=" + temporary().string()});

    EXPECT_EQ(ran.status, 1);
    EXPECT_EQ(savedMessage(ran), "Precious\n");
}

/// What it had written by then is kept.
TEST_F(CommitCommandTest, KeepsTheMessageOfAnEditorThatCrashes) {
    const Ran ran =
        quenWithEditor("sh -c 'sed -i \"1s/^/Precious/\" \"$1\"; kill -KILL $$' -", {"commit"});

    EXPECT_THAT(ran.err, HasSubstr("failed with exit status 137.\n"));
    EXPECT_THAT(savedMessage(ran), testing::StartsWith("Precious\n"));
    EXPECT_EQ(sandbox_.svn({"status", "-q"}), "A       a.c\n");
}

} // namespace

} // namespace quen::test
