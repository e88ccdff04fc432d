#include "Tests/System/ShowingCase.h"

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
