#include "Tests/System/ShowingCase.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <string>

namespace quen::test {

namespace {

class LogTest : public testing::Test {
protected:
    LogTest() { makeHistory(sandbox_); }

    Sandbox sandbox_;
};

const std::string r1 = "r1  alice  AGE (DATE)\n\n    The usual layout\n";
const std::string r2 = "r2  alice  AGE (DATE)\n\n    Add files\n";
const std::string r3 = "r3  bob  AGE (DATE)\n\n    Shout\n\n    Louder is clearer.\n";
const std::string r4 = "r4  alice  AGE (DATE)\n\n    Rename greet.c\n";
const std::string r5 = "r5  bob  AGE (DATE)\n\n    Branch\n";

TEST_F(LogTest, ShowsTheHistoryYoungestFirstAcrossRenamesAndCopies) {
    expectEach(sandbox_, {{{"log"}, r4 + "\n" + r3 + "\n" + r2 + "\n" + r1},
                          {{"log", "hello.c"}, r4 + "\n" + r3 + "\n" + r2},
                          {{"log", "icon@2x.txt"}, r3 + "\n" + r2},
                          {{"log", "with blank.txt"}, r2},
                          {{"log", "\xC3\xBCmlaut.txt"}, r2},
                          {{"log", "--", "-dash.txt"}, r2},
                          {{"log", sandbox_.url("branches/feature/hello.c")},
                           r5 + "\n" + r4 + "\n" + r3 + "\n" + r2}});
}

TEST_F(LogTest, ShowsLessWhenAskedTo) {
    expectEach(sandbox_, {{{"log", "--limit", "1"}, r4},
                          {{"log", "-l2", "hello.c"}, r4 + "\n" + r3},
                          {{"log", "--stop-on-copy", sandbox_.url("branches/feature")}, r5},
                          {{"log", "-r", "3", "hello.c"}, r3},
                          {{"log", "-r", "2:3", "hello.c"}, r2 + "\n" + r3},
                          {{"log", "-r", "r3:r2"}, r3 + "\n" + r2},
                          {{"log", "-r", "BASE"}, r4},
                          {{"log", "-r", "HEAD:4", sandbox_.url("trunk")}, r4},
                          {{"log", "-r", "{2001-01-01}:1", sandbox_.url()}, r1},
                          {{"log", "-r", "2", "--peg", sandbox_.url("trunk/greet.c")}, r2},
                          {{"log", "-r", "4", "--peg", "icon@2x.txt"}, ""}});
}

TEST_F(LogTest, ShowsTheFilesOfEachRevision) {
    expectEach(sandbox_, {{{"log", "-r", "3:4", "--files"},
                           r3 +
                               "\n"
                               "    modified  /trunk/greet.c\n"
                               "    modified  /trunk/icon@2x.txt\n"
                               "\n" +
                               r4 +
                               "\n"
                               "    deleted  /trunk/greet.c\n"
                               "    added    /trunk/hello.c (from /trunk/greet.c@3)\n"}});
}

TEST_F(LogTest, LeavesOutWhatIsNotAskedFor) {
    const Ran all = sandbox_.quen({"log", "--oneline"});
    EXPECT_THAT(all.out, testing::MatchesRegex("r4 .*alice +Rename greet.c\nr3 .*bob +Shout\nr2 "
                                               ".*alice +Add files\nr1 .*The usual layout\n"));
    expectEach(sandbox_, {{{"log", "--author", "BO"}, r3},
                          {{"log", "--search", "greet"}, r4},
                          {{"log", "--search", "louder", "--author", "alice"}, ""},
                          {{"log", "--since", "1 hour", "-1"}, r4},
                          {{"log", "--author", "alice", "--limit", "2"}, r4 + "\n" + r2},
                          {{"log", "-c", "2,3"}, r2 + "\n" + r3},
                          {{"log", "-c", "2", "-c", "3"}, r2 + "\n" + r3},
                          {{"log", "-q", "-2"}, "r4  alice  AGE (DATE)\nr3  bob  AGE (DATE)\n"},
                          {{"log", "--since", "2001-01-01", "-c", "3"}, r3}});
}

TEST_F(LogTest, OnesOwnCommitIsThereWithoutAnUpdate) {
    sandbox_.write("hello.c", "mine\n");
    sandbox_.svn({"commit", "-q", "--username", "alice", "-m", "Mine", "hello.c"});
    expectEach(sandbox_, {{{"log", "-1"}, "r6  alice  AGE (DATE)\n\n    Mine\n"}});
    sandbox_.svn({"remove", "-q", "-m", "Gone", sandbox_.url("trunk/hello.c")});
    expectEach(sandbox_, {{{"log", "-1", "hello.c"}, "r6  alice  AGE (DATE)\n\n    Mine\n"}});
}

TEST_F(LogTest, OneObjectALineForScripts) {
    expectEach(sandbox_, {{{"log", "--jsonl", "-2"},
                           "{\"revision\":4,\"author\":\"alice\",\"date\":\"DATE\",\"message\":"
                           "\"Rename greet.c\"}\n"
                           "{\"revision\":3,\"author\":\"bob\",\"date\":\"DATE\",\"message\":"
                           "\"Shout\\n\\nLouder is clearer.\"}\n"}});
}

TEST_F(LogTest, ShowsOneRevisionWithItsChanges) {
    const Ran shown = sandbox_.quen({"show", "3"});
    EXPECT_THAT(sandbox_.neutral(shown.out),
                testing::AllOf(testing::StartsWith(r3 + "\n    modified  /trunk/greet.c\n"),
                               testing::HasSubstr("\n-two\n+TWO\n")));
    expectEach(sandbox_,
               {{{"show", "3", "--stat"},
                 r3 + "\n    modified  /trunk/greet.c\n    modified  /trunk/icon@2x.txt\n\n"
                      " trunk/greet.c     |   2 +-\n trunk/icon@2x.txt |   1 +\n"
                      " 2 files changed, 2 lines added, 1 line removed\n"},
                {{"show", "x"},
                 "",
                 2,
                 "quen show: \"x\" is not a valid revision. Use a number, HEAD or a date in "
                 "braces, with ^ "
                 "behind it for the one before; `quen log` shows them.\n"}});
}

TEST_F(LogTest, ShowsWhatOthersHaveCommittedSince) {
    expectEach(sandbox_, {{{"incoming"}, "Nothing new in the repository since revision 4.\n"}});
    sandbox_.svn({"mkdir", "-q", "--username", "bob", "-m", "New", sandbox_.url("trunk/new")});
    EXPECT_THAT(sandbox_.quen({"incoming"}).out,
                testing::MatchesRegex("r6 .*bob +New\n1 revision to update to; .*\n"));
}

/// The reader of the output has seen enough: so has the client.
TEST_F(LogTest, EndsWithItsReader) {
    const Ran head = sandbox_.run({"sh", "-c", "'" + Sandbox::program() + "' log | head -n 1"},
                                  sandbox_.workingCopy());
    EXPECT_EQ(sandbox_.neutral(head.out), "r4  alice  AGE (DATE)\n");
    EXPECT_EQ(head.err, "");
}

TEST_F(LogTest, GivesScriptsTheRecordsOfTheOperation) {
    expectEach(sandbox_, {{{"log", "--json", "-r", "3", "-f", "icon@2x.txt"},
                           "[{\"QuenSourceControlOperationRevisionKey\":\"3\","
                           "\"QuenSourceControlOperationAuthorKey\":\"bob\","
                           "\"QuenSourceControlOperationDateKey\":\"DATE\","
                           "\"QuenSourceControlOperationFilesKey\":"
                           "{\"/trunk/greet.c\":12,\"/trunk/icon@2x.txt\":12},"
                           "\"QuenSourceControlOperationMessageKey\":"
                           "\"Shout\\n\\nLouder is clearer.\","
                           "\"revision\":3,\"author\":\"bob\",\"date\":\"DATE\","
                           "\"message\":\"Shout\\n\\nLouder is clearer.\","
                           "\"paths\":[{\"path\":\"/trunk/greet.c\",\"action\":\"M\"},"
                           "{\"path\":\"/trunk/icon@2x.txt\",\"action\":\"M\"}]}]\n"}});
}

TEST_F(LogTest, SaysWhatIsWrong) {
    expectEach(
        sandbox_,
        {{{"log", "-r", "99"},
          "",
          1,
          "quen log: No such revision 99\nquen log: `quen log -l 1` shows the newest revision.\n"},
         {{"log", "new.c"}, "", 1, "quen log: Path \"new.c\" has no committed revision\n"},
         {{"log", "-r", "1", "hello.c"},
          "",
          1,
          "quen log: Unable to find repository location for "
          "'file://SANDBOX/repository/trunk/hello.c' in revision 1\n"},
         {{"log", "-r", "yesterday"},
          "",
          2,
          "quen log: \"yesterday\" is not a valid revision or range. A revision is a number, "
          "HEAD, BASE, PREV, COMMITTED or a date in braces, with ^ behind it the change before; a "
          "range is two of them with a colon between. `quen help log` shows how to use it.\n"},
         {{"log", "--peg", "hello.c"},
          "",
          2,
          "quen log: --peg can only be used with --revision. `quen help log` shows how to use "
          "it.\n"}});
    for (const std::string limit : {"0", "-1", "x", "1x", "9223372036854775808"}) {
        const Ran ran = sandbox_.quen({"log", "--limit=" + limit});
        EXPECT_EQ(ran.status, 2);
        EXPECT_THAT(ran.err, testing::HasSubstr("quen log: \"" + limit +
                                                "\" is not a number of revisions (at least 1)"));
    }
}

TEST_F(LogTest, AMessageCannotPlayTricksOnATerminal) {
    sandbox_.write("hello.c", "once more\n");
    sandbox_.commit("Quiet \xC2\x9B"
                    "2J");
    expectEach(sandbox_, {{{"log", "-l", "1"},
                           "r6  alice  AGE (DATE)\n\n    Quiet \xEF\xBF\xBD"
                           "2J\n"}});
}

/// `script` gives its command a terminal. The output comes back with the terminal's line ends.
TEST_F(LogTest, OnATerminalThePagerShowsIt) {
    const auto onTerminal = [&](const std::string& pager) {
        return sandbox_.run({"script", "--quiet", "--return", "--command",
                             Sandbox::program() + " log --limit 1", "/dev/null"},
                            sandbox_.workingCopy(), {"PAGER=" + pager, "TERM=xterm"});
    };
    const Ran paged = onTerminal("sed -e 's/^/| /'");
    EXPECT_EQ(paged.status, 0) << paged.err;
    EXPECT_THAT(paged.out, testing::HasSubstr("|     Rename greet.c\r\n"));
    EXPECT_THAT(paged.out, testing::HasSubstr("| \x1b[33mr4\x1b[0m"));

    const Ran missing = onTerminal("/no/such/pager");
    EXPECT_EQ(missing.status, 0) << missing.err;
    EXPECT_THAT(missing.out, testing::HasSubstr("\r\n    Rename greet.c\r\n"));
}

} // namespace

} // namespace quen::test
