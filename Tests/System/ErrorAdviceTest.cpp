#include "Tests/System/ShowingCase.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace quen::test {

namespace {

/// Each error names what was typed, the reason, and one thing to do.
class ErrorAdviceTest : public testing::Test {
protected:
    ErrorAdviceTest() {
        sandbox_.write("notes.txt", "one\n");
        sandbox_.svn({"add", "-q", "notes.txt"});
        sandbox_.commit("One");
        sandbox_.write("new.c", "not versioned\n");
    }

    Sandbox sandbox_;
};

TEST_F(ErrorAdviceTest, OfPathsThatAreNotThere) {
    const auto missing = [](const std::string& command, const std::string& name) {
        return "quen " + command + ": \"" + name + "\" does not exist.\n";
    };
    expectEach(sandbox_, {{{"log", "nots.txt"},
                           "",
                           1,
                           "quen log: \"nots.txt\" does not exist. Did you mean \"notes.txt\"?\n"},
                          {{"info", "icon@2x.png"}, "", 1, missing("info", "icon@2x.png")},
                          {{"blame", "icon@2x.png"}, "", 1, missing("blame", "icon@2x.png")},
                          {{"cat", "icon@2x.png"}, "", 1, missing("cat", "icon@2x.png")},
                          {{"add", "icon@2x.png"}, "", 1, missing("add", "icon@2x.png")},
                          {{"commit", "-m", "M", "gone"}, "", 1, missing("commit", "gone")},
                          {{"copy", "gone", "to"}, "", 1, missing("copy", "gone")},
                          {{"move", "gone", "to"}, "", 1, missing("move", "gone")},
                          {{"diff", "gone"}, "", 1, missing("diff", "gone")}});
}

TEST_F(ErrorAdviceTest, OfWhatIsNotUnderVersionControl) {
    const auto text = [](const std::string& command) {
        return "quen " + command + ": \"new.c\" is not under version control.\nquen " + command +
               ": Put it under version control with: quen add new.c\n";
    };
    expectEach(sandbox_, {{{"log", "new.c"}, "", 1, text("log")},
                          {{"blame", "new.c"}, "", 1, text("blame")},
                          {{"commit", "-m", "M", "new.c"},
                           "",
                           1,
                           "quen commit: \"new.c\" is not under version control. Add it with: "
                           "quen add new.c\n"}});
}

TEST_F(ErrorAdviceTest, OutsideAWorkingCopy) {
    for (const Sandbox::Words& words :
         {Sandbox::Words{"status"}, {"log"}, {"commit", "-m", "M"}, {"branch"}, {"branches"}}) {
        SCOPED_TRACE(words.front());
        const Ran ran = sandbox_.quen(words, sandbox_.root());
        const std::string command = "quen " + words.front() + ": ";
        EXPECT_EQ(ran.err, command + "\".\" is not in a working copy.\n" + command +
                               "Go into a working copy, or make one with: quen checkout URL\n");
        EXPECT_EQ(ran.status, 1);
    }
}

TEST_F(ErrorAdviceTest, OfURLsAndRevisions) {
    const std::string looking = "`quen list` of the directory above shows what is there.\n";
    const std::string spelling =
        "Check the spelling of the URL, and that the server can be reached.\n";
    expectEach(
        sandbox_,
        {{{"log", sandbox_.url("icon@2x")},
          "",
          1,
          "quen log: \"file://SANDBOX/repository/icon@2x\": File not found: revision 2, path "
          "'/icon@2x'\nquen log: " +
              looking},
         {{"list", "file://" + (sandbox_.root() / "repo").string()},
          "",
          1,
          "quen list: Unable to connect to a repository at URL \"file://SANDBOX/repo\"\n"
          "quen list: Unable to open repository \"file://SANDBOX/repo\"\nquen list: " +
              spelling},
         {{"list", "htp://host/r"},
          "",
          1,
          "quen list: Unrecognized URL scheme for \"htp://host/r\"\n"
          "quen list: A repository's URL begins with https://, http://, svn://, svn+ssh:// or "
          "file://.\n"},
         {{"checkout", sandbox_.url("trnk"), "to"},
          "",
          1,
          "quen checkout: \"file://SANDBOX/repository/trnk\" does not exist in the repository.\n"
          "quen checkout: " +
              looking},
         {{"log", "-r", "99"},
          "",
          1,
          "quen log: No such revision 99\n"
          "quen log: `quen log -l 1` shows the newest revision.\n"}});
}

TEST_F(ErrorAdviceTest, OutOfDateSaysToUpdate) {
    const std::string theirs = (sandbox_.root() / "theirs").string();
    sandbox_.svn({"checkout", "-q", sandbox_.url("trunk"), theirs});
    sandbox_.write(theirs + "/notes.txt", "theirs\n");
    sandbox_.svn({"commit", "-q", "-m", "Theirs", theirs});
    sandbox_.write("notes.txt", "mine\n");

    const Ran ran = sandbox_.quen({"commit", "-m", "Mine"});

    EXPECT_THAT(ran.err, testing::HasSubstr("out of date"));
    EXPECT_THAT(ran.err,
                testing::EndsWith("Bring the working copy up to date first: quen update\n"));
    EXPECT_EQ(ran.status, 1);
}

} // namespace

} // namespace quen::test
