#include "Tests/System/Sandbox.h"
#include "Tests/System/Terminal.h"

#include <filesystem>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace quen::test {

namespace {

using testing::HasSubstr;
using testing::Not;
using Words = Sandbox::Words;

/// The programs that a person has chosen: for long output, for differences, for messages. All of
/// them are scripts, and quen is on a terminal.
class PeoplesProgramsTest : public testing::Test {
protected:
    PeoplesProgramsTest() {
        sandbox_.write("a.c", "one\n");
        sandbox_.svn({"add", "-q", "a.c"});
        sandbox_.commit("First");
        sandbox_.write("a.c", "two\n");
    }

    /// The path of a program that does what the script says.
    std::string program(const std::string& name, const std::string& script) const {
        const auto path = sandbox_.root() / name;
        sandbox_.write(path, "#!/bin/sh\n" + script + "\n");
        std::filesystem::permissions(path, std::filesystem::perms::owner_all);
        return path.string();
    }

    void setHelper(const std::string& line) const {
        std::filesystem::create_directories(sandbox_.root() / "home/.subversion");
        sandbox_.write(sandbox_.root() / "home/.subversion/config", "[helpers]\n" + line + "\n");
    }

    ProcessInvocation invocation(Words words, const Words& variables) const {
        words.insert(words.begin(), Sandbox::program());
        return sandbox_.invocation(words, sandbox_.workingCopy(), variables);
    }

    Sandbox sandbox_;
};

/// What is shown, and how it ends, for each kind of pager.
TEST_F(PeoplesProgramsTest, EveryPager) {
    struct Case {
        std::string name;
        Words words;
        Words variables;
        std::string shown;
        std::string notShown;
    };
    const std::string marking = program("marking", "sed -e \"s/^/${1:-|}/\"");
    const std::string brief = program("brief", "head -n 1; echo enough");
    const std::string blind = program("blind", "echo looked away");
    const std::string failing = program("failing", "cat; exit 3");
    for (const auto& [name, words, variables, shown, notShown] :
         {Case{"a program", {"log"}, {"PAGER=" + marking}, "|    First\r\n", "\n    First"},
          Case{"with an argument", {"log"}, {"PAGER=" + marking + " '> '"}, ">     First\r\n", "|"},
          Case{"ours comes first",
               {"log"},
               {"PAGER=" + blind, "QUEN_PAGER=" + marking},
               "|    First\r\n",
               "looked away"},
          Case{"for a difference", {"diff"}, {"PAGER=" + marking}, "two", "\n\x1b[32m+"},
          Case{"that ends early", {"log"}, {"PAGER=" + brief}, "enough\r\n", "First"},
          Case{"that reads nothing", {"log"}, {"PAGER=" + blind}, "looked away\r\n", "First"},
          Case{"that fails", {"log"}, {"PAGER=" + failing}, "    First\r\n", "failing"},
          Case{"that is not there", {"log"}, {"PAGER=/no/such/pager"}, "\r\n    First\r\n", "|"},
          Case{"none", {"log"}, {"PAGER="}, "\r\n    First\r\n", "|"}}) {
        SCOPED_TRACE(name);
        Terminal terminal(invocation(words, variables));
        EXPECT_EQ(terminal.waitForEnd(), 0);
        EXPECT_THAT(terminal.shown(), HasSubstr(shown));
        EXPECT_THAT(terminal.shown(), Not(HasSubstr(notShown)));
    }
}

TEST_F(PeoplesProgramsTest, APagerThatIsLeftEndsTheClient) {
    // Writes without an end, as a client does whose history has none.
    program("bin/svn", "[ \"$1\" = log ] || exec /usr/bin/svn \"$@\"\n"
                       "echo '<?xml version=\"1.0\"?><log>'\n"
                       "while echo '<logentry revision=\"1\"><msg>m</msg></logentry>'; do :; done\n"
                       "touch " +
                           (sandbox_.root() / "ended").string());
    Terminal terminal(
        invocation({"log"}, {"PAGER=" + program("brief", "head -n 1"),
                             "PATH=" + (sandbox_.root() / "bin").string() + ":/usr/bin:/bin"}));

    EXPECT_EQ(terminal.waitForEnd(), 0) << terminal.shown();
}

TEST_F(PeoplesProgramsTest, TheirProgramForDifferencesIsTheClients) {
    const std::string differ =
        program("differ", "shift $(($# - 2)); echo \"compared $(cat \"$1\") with $(cat \"$2\")\"");
    setHelper("diff-cmd = " + differ);
    Terminal terminal(invocation({"diff"}, {"PAGER="}));
    EXPECT_EQ(terminal.waitForEnd(), 0);
    EXPECT_THAT(terminal.shown(), HasSubstr("compared one with two"));
    EXPECT_THAT(sandbox_.quen({"diff"}).out, HasSubstr("compared one with two\n"));
    EXPECT_THAT(sandbox_.quen({"diff", "a.c"}).out, HasSubstr("compared one with two\n"));

    const std::string other = program("other", "echo other");
    EXPECT_THAT(sandbox_.quen({"diff", "--diff-cmd", other}).out, HasSubstr("other\n"));
    EXPECT_THAT(sandbox_.quen({"diff", "--diff-cmd", other, "-c", "2"}).out, HasSubstr("other\n"));
    EXPECT_THAT(sandbox_.quen({"diff", "--diff-cmd", other, "--json"}).out, HasSubstr("other\\n"));
    EXPECT_EQ(sandbox_.quen({"diff", "--diff-cmd", other, "--stat"}).status, 2);
    EXPECT_EQ(sandbox_.quen({"diff", "--diff-cmd", "/no/such/program"}).status, 1);
}

/// What reads a difference itself needs the client's own.
TEST_F(PeoplesProgramsTest, CountsAndSidesDoNotDependOnTheirProgramForDifferences) {
    setHelper("diff-cmd = " + program("differ", "echo nothing of use"));
    const std::string counts = R"("path":"a.c","added":1,"removed":1)";
    EXPECT_THAT(sandbox_.quen({"diff", "--stat", "--json"}).out, HasSubstr(counts));
    EXPECT_THAT(sandbox_.quen({"diff", "--stat", "--json", "a.c"}).out, HasSubstr(counts));
    EXPECT_THAT(sandbox_.quen({"show", "2", "--stat"}).out, HasSubstr("1"));
    EXPECT_THAT(sandbox_.quen({"show", "2", "--stat"}).out, Not(HasSubstr("nothing of use")));
    Terminal sides(invocation({"diff", "-y"}, {"PAGER=", "COLUMNS=100"}));
    EXPECT_EQ(sides.waitForEnd(), 0);
    EXPECT_THAT(sides.shown(), HasSubstr("two"));
    const Ran ran = sandbox_.quen({"revert", "--yes", "a.c"});
    EXPECT_EQ(ran.status, 0) << ran.err;
}

TEST_F(PeoplesProgramsTest, TheirEditorIsTheOneOfTheClientsSettings) {
    setHelper("editor-cmd = " + program("editor", "echo 'From the settings' > \"$1\""));
    Terminal terminal(invocation({"commit"}, {}));
    EXPECT_EQ(terminal.waitForEnd(), 0) << terminal.shown();
    EXPECT_THAT(sandbox_.svn({"log", "-r", "HEAD"}), HasSubstr("From the settings"));

    sandbox_.write("a.c", "three\n");
    Terminal over(
        invocation({"commit"}, {"SVN_EDITOR=" + program("other", "echo 'From SVN_EDITOR' > \"$1\""),
                                "EDITOR=" + program("last", "exit 1")}));
    EXPECT_EQ(over.waitForEnd(), 0) << over.shown();
    EXPECT_THAT(sandbox_.svn({"log", "-r", "HEAD"}), HasSubstr("From SVN_EDITOR"));
}

TEST_F(PeoplesProgramsTest, AnEditorThatFailsSendsNothing) {
    Terminal terminal(invocation({"commit"}, {"SVN_EDITOR=" + program("editor", "exit 7")}));
    EXPECT_EQ(terminal.waitForEnd(), 1);
    EXPECT_THAT(terminal.shown(), HasSubstr("editor\" failed with exit status 7."));
    EXPECT_EQ(sandbox_.svn({"status", "-q"}), "M       a.c\n");
}

} // namespace

} // namespace quen::test
