#include "Tests/System/ShowingCase.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <string>

namespace quen::test {

namespace {

class BlameTest : public testing::Test {
protected:
    BlameTest() { makeHistory(sandbox_); }

    Sandbox sandbox_;
};

TEST_F(BlameTest, ShowsEachLineWithItsLastChange) {
    expectEach(sandbox_, {{{"blame", "hello.c"},
                           "r2  alice  AGE  1  one\n"
                           "r3  bob    AGE  2  TWO\n"
                           "r2  alice  AGE  3  three\n"},
                          {{"blame", "icon@2x.txt"},
                           "r2  alice  AGE  1  x\n"
                           "r3  bob    AGE  2  y\n"},
                          {{"blame", "with blank.txt"}, "r2  alice  AGE  1  blank\n"},
                          {{"blame", "\xC3\xBCmlaut.txt"}, "r2  alice  AGE  1  u\n"},
                          {{"blame", "--", "-dash.txt"}, "r2  alice  AGE  1  d\n"},
                          {{"blame", "empty"}, ""},
                          {{"blame", sandbox_.url("trunk/icon@2x.txt")},
                           "r2  alice  AGE  1  x\n"
                           "r3  bob    AGE  2  y\n"}});
}

TEST_F(BlameTest, TakesTheTextFromTheSameRevision) {
    sandbox_.write("hello.c", "zero\none\nTWO\nthree\n");
    expectEach(sandbox_, {{{"blame", "-r", "2", "hello.c"},
                           "r2  alice  AGE  1  one\n"
                           "r2  alice  AGE  2  two\n"
                           "r2  alice  AGE  3  three\n"},
                          {{"blame", "-r", "BASE", "hello.c"},
                           "r2  alice  AGE  1  one\n"
                           "r3  bob    AGE  2  TWO\n"
                           "r2  alice  AGE  3  three\n"},
                          {{"blame", "-r", "3:HEAD", "hello.c"},
                           " -  (earlier)            1  one\n"
                           "r3  bob        AGE  2  TWO\n"
                           " -  (earlier)            3  three\n"},
                          {{"blame", "hello.c"},
                           " -  (not committed)            1  zero\n"
                           "r2  alice            AGE  2  one\n"
                           "r3  bob              AGE  3  TWO\n"
                           "r2  alice            AGE  4  three\n"}});
}

TEST_F(BlameTest, ShowsTextOfAnyKindSafely) {
    sandbox_.write("odd.txt", "tab\there\r\ncaf\xE9\r\n\x1b[2J\nno end");
    sandbox_.svn({"add", "-q", "odd.txt"});
    sandbox_.commit("Odd lines");
    expectEach(sandbox_, {{{"blame", "odd.txt"},
                           "r6  alice  AGE  1  tab\there\n"
                           "r6  alice  AGE  2  caf\xC3\xA9\n"
                           "r6  alice  AGE  3  \xEF\xBF\xBD[2J\n"
                           "r6  alice  AGE  4  no end\n"}});
}

TEST_F(BlameTest, GoesBehindARevision) {
    expectEach(sandbox_, {{{"blame", "--before", "3", "icon@2x.txt"}, "r2  alice  AGE  1  x\n"},
                          {{"blame", "--jsonl", "--before", "3", "icon@2x.txt"},
                           "{\"line\":1,\"revision\":2,\"author\":\"alice\",\"date\":"
                           "\"DATE\",\"text\":\"x\"}\n"}});
}

TEST_F(BlameTest, GoesToTheChangeBefore) {
    expectEach(sandbox_,
               {{{"blame", "-r", "r3^", "icon@2x.txt"}, "r2  alice  AGE  1  x\n"},
                {{"blame", "-r", "HEAD^", "hello.c"},
                 "r2  alice  AGE  1  one\n"
                 "r3  bob    AGE  2  TWO\n"
                 "r2  alice  AGE  3  three\n"},
                {{"blame", "-r", "HEAD~2", "hello.c"},
                 "r2  alice  AGE  1  one\n"
                 "r2  alice  AGE  2  two\n"
                 "r2  alice  AGE  3  three\n"},
                {{"cat", "-r", "3^", "icon@2x.txt"}, "x\n"},
                {{"log", "-q", "-r", "HEAD^:HEAD~2", "hello.c"},
                 "r3  bob  AGE (DATE)\nr2  alice  AGE (DATE)\n"},
                {{"diff", "-r", "HEAD^:HEAD", "--stat", "icon@2x.txt"},
                 " icon@2x.txt |   1 +\n 1 file changed, 1 line added, 0 lines removed\n"},
                {{"blame", "-r", "2^", "hello.c"},
                 "",
                 1,
                 "quen blame: r2^ does not exist: the first change of \"hello.c\" is r2.\n"},
                {{"cat", "-r", "HEAD~9", "icon@2x.txt"},
                 "",
                 1,
                 "quen cat: HEAD~9 does not exist: the first change of \"icon@2x.txt\" is r2.\n"}});
    EXPECT_EQ(sandbox_.neutral(sandbox_.quen({"show", "HEAD^", "--stat"}).out),
              sandbox_.neutral(sandbox_.quen({"show", "4", "--stat"}).out));
    EXPECT_EQ(sandbox_.neutral(sandbox_.quen({"show", "4^", "--stat", "icon@2x.txt"}).out),
              sandbox_.neutral(sandbox_.quen({"show", "2", "--stat"}).out));
}

/// r6 indents, and adds a line; r7 changes one again.
class IgnoringBlameTest : public BlameTest {
protected:
    IgnoringBlameTest() {
        sandbox_.write("hello.c", "  one\n  TWO\n  between\n  three\n");
        sandbox_.commit("Indent", "carol");
        sandbox_.write("hello.c", "  one\n  TWO\n  between\n  Three\n");
        sandbox_.commit("Capital", "bob");
    }
};

TEST_F(IgnoringBlameTest, LooksBehindRevisions) {
    const std::string file = (sandbox_.root() / "revs.txt").string();
    sandbox_.write(file, "# formatting\nr6  # indents\n\n3\n");
    expectEach(sandbox_, {{{"blame", "hello.c"},
                           "r6  carol  AGE  1    one\n"
                           "r6  carol  AGE  2    TWO\n"
                           "r6  carol  AGE  3    between\n"
                           "r7  bob    AGE  4    Three\n"},
                          {{"blame", "--ignore-rev", "6", "hello.c"},
                           " r2  alice  AGE  1    one\n"
                           " r3  bob    AGE  2    TWO\n"
                           "r6*  carol  AGE  3    between\n"
                           " r7  bob    AGE  4    Three\n"},
                          {{"blame", "--ignore-rev", "r6", "--ignore-rev", "7,3", "hello.c"},
                           " r2  alice  AGE  1    one\n"
                           " r2  alice  AGE  2    TWO\n"
                           "r6*  carol  AGE  3    between\n"
                           " r2  alice  AGE  4    Three\n"},
                          {{"blame", "--ignore-revs-file", file, "hello.c"},
                           " r2  alice  AGE  1    one\n"
                           " r2  alice  AGE  2    TWO\n"
                           "r6*  carol  AGE  3    between\n"
                           " r7  bob    AGE  4    Three\n"},
                          {{"blame", "--ignore-rev", "6", "-r", "3:6", "hello.c"},
                           "  -  (earlier)            1    one\n"
                           " r3  bob        AGE  2    TWO\n"
                           "r6*  carol      AGE  3    between\n"
                           "  -  (earlier)            4    three\n"},
                          {{"blame", "--ignore-rev", "6", sandbox_.url("trunk/hello.c")},
                           " r2  alice  AGE  1    one\n"
                           " r3  bob    AGE  2    TWO\n"
                           "r6*  carol  AGE  3    between\n"
                           " r7  bob    AGE  4    Three\n"}});
}

TEST_F(IgnoringBlameTest, ChangesOfTodayStay) {
    sandbox_.write("hello.c", "new\n  one\n  TWO!\n  between\n  Three\n");
    expectEach(sandbox_, {{{"blame", "--ignore-rev", "6", "hello.c"},
                           "  -  (not committed)            1  new\n"
                           " r2  alice            AGE  2    one\n"
                           "  -  (not committed)            3    TWO!\n"
                           "r6*  carol            AGE  4    between\n"
                           " r7  bob              AGE  5    Three\n"}});
}

TEST_F(IgnoringBlameTest, SaysInRecordsWhatWasIgnored) {
    expectEach(
        sandbox_,
        {{{"blame", "--jsonl", "--ignore-rev", "6", "-r", "6", "icon@2x.txt"},
          sandbox_.neutral(sandbox_.quen({"blame", "--jsonl", "-r", "6", "icon@2x.txt"}).out)}});
    const Ran lines = sandbox_.quen({"blame", "--jsonl", "--ignore-rev", "6", "hello.c"});
    EXPECT_THAT(lines.out,
                testing::AllOf(testing::HasSubstr("\"text\":\"  one\",\"ignoredRevision\":6}\n"),
                               testing::HasSubstr("\"revision\":6,\"author\":\"carol\""),
                               testing::HasSubstr("\"text\":\"  Three\"}\n")));
    const Ran records = sandbox_.quen({"blame", "--json", "--ignore-rev", "6", "hello.c"});
    EXPECT_THAT(records.out,
                testing::StartsWith("[{\"QuenSourceControlOperationLineNumberKey\":\"1\","
                                    "\"QuenSourceControlOperationRevisionKey\":\"2\","));
}

TEST_F(IgnoringBlameTest, SaysWhatIsWrongWithTheList) {
    const std::string file = (sandbox_.root() / "revs.txt").string();
    sandbox_.write(file, "6\nabc # no number\n");
    expectEach(sandbox_,
               {{{"blame", "--ignore-revs-file", file, "hello.c"},
                 "",
                 2,
                 "quen blame: SANDBOX/revs.txt:2: \"abc\" is not a revision number. `quen help "
                 "blame` shows how to use it.\n"},
                {{"blame", "--ignore-revs-file", "nowhere", "hello.c"},
                 "",
                 2,
                 "quen blame: \"nowhere\" cannot be read. `quen help blame` shows how to use "
                 "it.\n"},
                {{"blame", "--ignore-rev", "HEAD", "hello.c"},
                 "",
                 2,
                 "quen blame: \"HEAD\" is not a revision number. `quen help blame` shows how to "
                 "use it.\n"}});
}

TEST_F(BlameTest, GivesScriptsTheRecordsOfTheOperation) {
    expectEach(sandbox_, {{{"blame", "--json", "-r", "2:3", "icon@2x.txt"},
                           "[{\"QuenSourceControlOperationLineNumberKey\":\"1\","
                           "\"QuenSourceControlOperationRevisionKey\":\"2\","
                           "\"QuenSourceControlOperationAuthorKey\":\"alice\","
                           "\"QuenSourceControlOperationDateKey\":\"DATE\","
                           "\"line\":1,\"revision\":2,\"author\":\"alice\",\"date\":\"DATE\"},"
                           "{\"QuenSourceControlOperationLineNumberKey\":\"2\","
                           "\"QuenSourceControlOperationRevisionKey\":\"3\","
                           "\"QuenSourceControlOperationAuthorKey\":\"bob\","
                           "\"QuenSourceControlOperationDateKey\":\"DATE\","
                           "\"line\":2,\"revision\":3,\"author\":\"bob\",\"date\":\"DATE\"}]\n"}});
}

TEST_F(BlameTest, SaysWhatIsWrong) {
    expectEach(
        sandbox_,
        {{{"blame", "blob"},
          "",
          1,
          "quen blame: Skipping binary file (use --force to treat as text): \"blob\"\n"},
         {{"blame", "new.c"}, "", 1, "quen blame: Path \"new.c\" has no committed revision\n"},
         {{"blame", "-r", "1", "hello.c"},
          "",
          1,
          "quen blame: Unable to find repository location for "
          "'file://SANDBOX/repository/trunk/hello.c' in revision 1\n"},
         {{"blame", "src"}, "", 1, "quen blame: '/trunk/src' is not a file in revision 4\n"},
         {{"blame"},
          "",
          2,
          "quen blame: FILE is missing. `quen help blame` shows how to use it.\n"}});
}

} // namespace

} // namespace quen::test
