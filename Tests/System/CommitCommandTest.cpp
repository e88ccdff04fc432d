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

    Sandbox sandbox_;
};

TEST_F(CommitCommandTest, TellsTheNewRevision) {
    expectEach(sandbox_,
               {{{"commit", "-m", "-- \"First\"\n\n$HOME \xC3\xBC"}, "Committed revision 2.\n"},
                {{"commit", "-m", "Again"}, "Nothing to commit.\n"},
                {{"commit", "--json", "-m", "Again"}, "null\n"},
                {{"commit", "--json"}, "null\n"}});
    EXPECT_EQ(messageOf("2"), "-- \"First\"\n\n$HOME \xC3\xBC\n");

    sandbox_.write("a.c", "two\n");
    expectEach(sandbox_, {{{"commit", "--json", "--message=[WIP]", "a.c"},
                           "[{\"QuenSourceControlOperationRevisionKey\":\"3\"}]\n"}});
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
    expectEach(sandbox_, {{{"commit", "-m", "a.c"}, "Committed revision 2.\n"}});
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

    expectEach(sandbox_, {{words, "Committed revision 2.\n"}});

    EXPECT_EQ(sandbox_.svn({"status", "-q"}), "A       a.c\n");
}

TEST_F(CommitCommandTest, TakesTheMessageFromAFile) {
    sandbox_.write("message.txt", "From a file\n\n\xC3\xBC\n");
    expectEach(sandbox_,
               {{{"commit", "-F", "message.txt"}, "Committed revision 2.\n"},
                {{"commit", "-F", "nowhere.txt"},
                 "",
                 1,
                 "quen commit: The message cannot be read from \"nowhere.txt\": No such "
                 "file or directory.\n"},
                {{"commit", "-F", "."},
                 "",
                 1,
                 "quen commit: The message cannot be read from \".\": Is a directory.\n"}});
    EXPECT_EQ(messageOf("2"), "From a file\n\n\xC3\xBC\n");
}

TEST_F(CommitCommandTest, AsksTheEditorForTheMessage) {
    const Ran ran =
        quenWithEditor("sh -c 'cp \"$1\" ../seen; echo \"In two words\" > \"$1\"' -", {"commit"});

    EXPECT_EQ(ran.err, "");
    EXPECT_EQ(ran.out, "Committed revision 2.\n");
    EXPECT_EQ(messageOf("2"), "In two words\n");
    EXPECT_EQ(sandbox_.read("../seen"), "\n--This line and everything below is not sent--\n\n"
                                        "added  a.c\n");
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
              "quen commit: The editor \"false\" failed: its exit status is 1.\n");
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
    const std::string told = "quen commit: Your message is kept in ";
    ASSERT_THAT(ran.err, HasSubstr(told));
    std::string file = ran.err.substr(ran.err.find(told) + told.size());
    file.erase(file.find('\n'));
    EXPECT_EQ(sandbox_.read(file), "Precious\n");
    using std::filesystem::perms;
    EXPECT_EQ(std::filesystem::status(file).permissions(), perms::owner_read | perms::owner_write);
}

} // namespace

} // namespace quen::test
