#include "Tests/System/ShowingCase.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sstream>
#include <string>

namespace quen::test {

namespace {

using ::testing::AllOf;
using ::testing::HasSubstr;
using ::testing::MatchesRegex;
using ::testing::Not;

class HelpTest : public testing::Test {
protected:
    HelpTest() { makeHistory(sandbox_); }

    Sandbox sandbox_;
};

TEST_F(HelpTest, WhatIsWrongIsToldInTheWordsOfTheCommand) {
    const std::string seeLog = " `quen help log` shows how to use it.\n";
    expectEach(
        sandbox_,
        {{{"log", "-r"}, "", 2, "quen log: --revision needs a revision." + seeLog},
         {{"log", "--limit"}, "", 2, "quen log: --limit needs a number." + seeLog},
         {{"log", "--limi", "2"},
          "",
          2,
          "quen log: Unknown option: --limi. Did you mean --limit?" + seeLog},
         {{"log", "-x"}, "", 2, "quen log: Unknown option: -x." + seeLog},
         {{"log", "a", "b"}, "", 2, "quen log: Too many arguments: \"b\"." + seeLog},
         {{"log", "--color", "blue"},
          "",
          2,
          "quen log: \"blue\" is not a value for --color: use auto, always or never." + seeLog},
         {{"cat", "-2", "hello.c"},
          "",
          2,
          "quen cat: Unknown option: -2. `quen help cat` shows how to use it.\n"},
         {{"branch", "create"},
          "",
          2,
          "quen branch create: NAME is missing. `quen help branch create` shows how to use it.\n"},
         {{"commit", "-m", "M", "-F", "f"},
          "",
          2,
          "quen commit: --message and --file cannot be used together. `quen help commit` shows how "
          "to use it.\n"},
         {{"--frob"}, "", 2, "quen: Unknown option: --frob. `quen help` shows how to use it.\n"},
         {{"help", "frob"},
          "",
          2,
          "quen: \"frob\" is not a command. `quen help` lists all commands.\n"},
         {{"-C", "nowhere", "log"},
          "",
          2,
          "quen: Cannot change to the directory \"nowhere\": No such file or directory.\n"}});
}

TEST_F(HelpTest, EveryCommandHasAHelpWithoutTheParsersOwnWords) {
    std::istringstream names(sandbox_.quen({"complete", "words", "--", ""}).out);
    std::size_t count = 0;
    for (std::string line; std::getline(names, line); ++count) {
        const std::string name = line.substr(0, line.find('\t'));
        const Ran help = sandbox_.quen({"help", name});
        EXPECT_EQ(help.status, 0) << name;
        EXPECT_THAT(help.out, HasSubstr("Usage: quen " + name + " ")) << name;
        EXPECT_THAT(help.out, AllOf(Not(HasSubstr("TEXT")), Not(HasSubstr("Needs:")),
                                    Not(HasSubstr("Excludes:")), Not(HasSubstr("INT"))));
        if (name != "help" && name != "complete") {
            EXPECT_EQ(sandbox_.quen({name, "--help"}).out, help.out) << name;
        }
    }
    EXPECT_GT(count, 25U);
}

TEST_F(HelpTest, LinesFitTheWidth) {
    for (const std::size_t width : {std::size_t{40}, std::size_t{80}, std::size_t{250}}) {
        const Ran ran = sandbox_.run({Sandbox::program(), "help", "log"}, sandbox_.workingCopy(),
                                     {"COLUMNS=" + std::to_string(width)});
        std::istringstream lines(ran.out);
        for (std::string line; std::getline(lines, line);) {
            EXPECT_LE(line.size(), width) << line;
        }
    }
}

TEST_F(HelpTest, TheNamesOfSubversionsOwnClientAreUnderstood) {
    EXPECT_EQ(sandbox_.quen({"st"}).out, sandbox_.quen({"status"}).out);
    EXPECT_EQ(sandbox_.quen({"ls"}).out, sandbox_.quen({"list"}).out);
    EXPECT_EQ(sandbox_.quen({"help", "ci"}).out, sandbox_.quen({"help", "commit"}).out);
    EXPECT_EQ(sandbox_.quen({"-C", "src", "ls"}).out, "main.c\n");
    EXPECT_EQ(sandbox_.quen({"-C", "..", "-C", "wc/src", "ls"}).out, "main.c\n");
    EXPECT_EQ(sandbox_.quen({"log", "-2"}).out, sandbox_.quen({"log", "--limit", "2"}).out);
    EXPECT_EQ(sandbox_.quen({"log", "-r", "r3"}).out, sandbox_.quen({"log", "-r", "3"}).out);
}

TEST_F(HelpTest, TheVersionsAreThoseOfAllThree) {
    const Ran ran = sandbox_.quen({"--version"});
    EXPECT_THAT(ran.out, MatchesRegex("quen [0-9.]+\nplug-in contract [0-9]+\nsvn [0-9.]+ "
                                      "\\(.*/svn\\)\n"));
    EXPECT_EQ(ran.status, 0);
}

TEST_F(HelpTest, CompletionKnowsWhatIsThere) {
    expectEach(sandbox_,
               {{{"complete", "words", "--", "commit", ""}, "new.c\tadded\n"},
                {{"complete", "words", "--", "revert", "x"}, ""},
                {{"complete", "words", "--", "switch", ""}, "trunk\nfeature\n"},
                {{"complete", "words", "--", "switch", "f"}, "feature\n"},
                {{"complete", "words", "--", "log", "-r", "4"}, "4\talice: Rename greet.c\n"},
                {{"complete", "words", "--", "log", "-r", "H"}, "HEAD\tthe youngest revision\n"}});
    const Ran bash = sandbox_.run(
        {"bash", "-c",
         "PATH=$(dirname '" + Sandbox::program() +
             "'):$PATH; source <(quen complete bash); COMP_WORDS=(quen switch fe); COMP_CWORD=2; "
             "_quen 2>/dev/null; printf '%s|' \"${COMPREPLY[@]}\""},
        sandbox_.workingCopy());
    EXPECT_EQ(bash.out, "feature|") << bash.err;
}

TEST_F(HelpTest, TheManualHasAPageForEachCommand) {
    std::filesystem::create_directory(sandbox_.root() / "man");
    EXPECT_EQ(sandbox_.quen({"manual", (sandbox_.root() / "man").string()}).status, 0);
    std::istringstream names(sandbox_.quen({"complete", "words", "--", ""}).out);
    for (std::string line; std::getline(names, line);) {
        const std::string name = line.substr(0, line.find('\t'));
        EXPECT_THAT(sandbox_.read(sandbox_.root() / "man" / ("quen-" + name + ".1")),
                    HasSubstr(".SH SYNOPSIS\nquen " + name));
    }
    EXPECT_THAT(sandbox_.read(sandbox_.root() / "man/quen.1"), HasSubstr(".SH NAME\nquen \\- "));
}

} // namespace

} // namespace quen::test
