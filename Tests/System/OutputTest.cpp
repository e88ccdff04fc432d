#include "Tests/System/Sandbox.h"

#include <algorithm>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace quen::test {

namespace {

using testing::AnyOf;
using testing::HasSubstr;
using Words = Sandbox::Words;

/// A command that writes to standard output. SANDBOX stands for the repository's address.
std::vector<Words> writingCommands() {
    return {{"status"},
            {"status", "--json"},
            {"status", "--jsonl"},
            {"status", "-s"},
            {"diff"},
            {"log"},
            {"log", "--graph"},
            {"log", "--graph", "--json"},
            {"blame", "a.c"},
            {"blame", "--ignore-rev", "2", "a.c"},
            {"report"},
            {"report", "-o", "-"},
            {"info"},
            {"list"},
            {"cat", "a.c"},
            {"export", "a.c", "exported"},
            {"branch"},
            {"branch", "create", "new", "-m", "M"},
            {"branch", "delete", "old", "--yes", "-m", "M"},
            {"branches"},
            {"commit", "-m", "M"},
            {"add", "new.c"},
            {"remove", "--yes", "a.c"},
            {"revert", "--yes", "a.c"},
            {"undo"},
            {"resolve", "a.c"},
            {"cleanup"},
            {"undo", "--list"},
            {"update", "--preview"},
            {"copy", "a.c", "b.c"},
            {"move", "d.c", "e.c"},
            {"mkdir", "made"},
            {"merge", "--yes", "old"},
            {"checkout", "SANDBOX/branches", "co"},
            {"import", "new.c", "SANDBOX/trunk/imported.c", "-m", "M"},
            {"switch", "--yes", "old"},
            {"update"},
            {"ignore", "ignored"},
            {"unignore", "other"},
            {"tour"},
            {"--help"},
            {"status", "--help"}};
}

class OutputTest : public testing::TestWithParam<Words> {
protected:
    OutputTest() {
        sandbox_.write("a.c", "one\n");
        sandbox_.write("d.c", "one\n");
        sandbox_.svn({"add", "-q", "a.c", "d.c"});
        sandbox_.svn({"propset", "-q", "svn:ignore", "other", "."});
        sandbox_.commit("A");
        sandbox_.svn(
            {"copy", "-q", "-m", "B", sandbox_.url("trunk"), sandbox_.url("branches/old")});
        sandbox_.svn({"update", "-q"});
        sandbox_.write("a.c", "two\n");
        sandbox_.write("new.c", "new\n");
    }

    Ran runIntoShell(const std::string& redirection) const {
        std::string script = "exec 3>&2; { \"$0\" \"$@\"; echo \"status $?\" >&3; } " + redirection;
        Words words{"sh", "-c", script, Sandbox::program()};
        for (const std::string& word : GetParam()) {
            const bool isAddress = word.starts_with("SANDBOX/");
            words.push_back(isAddress ? sandbox_.url(word.substr(8)) : word);
        }
        return sandbox_.run(words, sandbox_.workingCopy());
    }

    Sandbox sandbox_;
};

TEST_P(OutputTest, AFullDiskIsAFailureThatIsTold) {
    const Ran ran = runIntoShell(">/dev/full");
    // As a line for people, or as the message of a JSON object.
    EXPECT_THAT(ran.err,
                AnyOf(HasSubstr("quen: Standard output cannot be written to: No space left "
                                "on device.\n"),
                      HasSubstr("\"message\":\"Standard output cannot be written to: No "
                                "space left on device.\"")));
    EXPECT_THAT(ran.err, HasSubstr("status 1\n"));
}

TEST_P(OutputTest, AReaderThatWentAwayIsNotWorthAWord) {
    // The reader is gone before anything is written: the writer waits for its end.
    const Ran ran = runIntoShell("| :");
    EXPECT_THAT(ran.err, testing::Not(HasSubstr("Standard output")));
}

INSTANTIATE_TEST_SUITE_P(Commands, OutputTest, testing::ValuesIn(writingCommands()),
                         [](const auto& each) {
                             std::string name;
                             for (const std::string& word : each.param) {
                                 name += word + "_";
                             }
                             std::replace_if(
                                 name.begin(), name.end(),
                                 [](unsigned char c) { return std::isalnum(c) == 0; }, '_');
                             return name;
                         });

/// What a repository of somebody else's can bring along, and what may not reach a terminal.
constexpr std::string_view hostile = "\x1b]0;title\x07\x1b[2J\xC2\x9B"
                                     "31m\xE2\x80\xAEtxt";

bool isHarmless(const std::string& text) {
    for (const std::string_view unsafe :
         {"\x1b", "\x07", "\xC2\x9B", "\xE2\x80\xAE", "\r", "\xE2\x81\xA6"}) {
        if (text.find(unsafe) != std::string::npos) {
            return false;
        }
    }
    return true;
}

class HostileTextTest : public testing::Test {
protected:
    /// A name with a direction override, a message and an author with escape sequences.
    HostileTextTest() {
        const std::string override = "a\xE2\x80\xAE"
                                     "c.txt";
        sandbox_.write(override, "one\n");
        sandbox_.svn({"add", "-q", override});
        sandbox_.commit("Message\xE2\x80\xAE \xE2\x81\xA6 \xC2\x9B"
                        "31m",
                        "al\xE2\x80\xAEice");
        std::string text(hostile);
        text.push_back('\n');
        sandbox_.write(override, text);
        sandbox_.write("new\xE2\x80\xAE.c", "new\n");
        file_ = override;
    }

    Sandbox sandbox_;
    std::string file_;
};

TEST_F(HostileTextTest, NothingOfItReachesATerminal) {
    const std::string missing = "missing" + std::string(hostile);
    const std::vector<Words> commands{{"status"},
                                      {"log", "-f"},
                                      {"log", file_},
                                      {"log", "--graph", "-v"},
                                      {"log", "--graph", "--oneline"},
                                      {"log", "--graph", missing},
                                      {"blame", file_},
                                      {"blame", "--ignore-rev", "2", file_},
                                      {"blame", "--ignore-revs-file", missing, file_},
                                      {"cat", "-r", "HEAD~9", file_},
                                      {"status", "-s"},
                                      {"report", "--force", missing},
                                      {"info", file_},
                                      {"list"},
                                      {"cat", missing},
                                      {"export", missing},
                                      {"export", file_, "to\xE2\x80\xAE"},
                                      {"branch", missing},
                                      {"branch", "create", missing, "-m", "M"},
                                      {"branch", "delete", missing, "-m", "M"},
                                      {"branches", missing},
                                      {"commit", missing, "-m", "M"},
                                      {"add", missing},
                                      {"remove", missing},
                                      {"revert", missing},
                                      {"revert", file_},
                                      {"remove", "new\xE2\x80\xAE.c"},
                                      {"revert", "--yes", file_},
                                      {"undo"},
                                      {"undo", missing},
                                      {"resolve", missing},
                                      {"resolve", "--accept", "mine", missing},
                                      {"cleanup", missing},
                                      {"update", "--preview", missing},
                                      {"merge", "--preview", missing},
                                      {"switch", "trunk"},
                                      {"merge", "trunk"},
                                      {"checkout", sandbox_.url("trunk"), "."},
                                      {"copy", missing, "to"},
                                      {"copy", file_, "copy\xE2\x80\xAE"},
                                      {"move", missing, "to"},
                                      {"mkdir", "made\xE2\x80\xAE"},
                                      {"merge", missing},
                                      {"checkout", sandbox_.url(missing)},
                                      {"import", missing, sandbox_.url("x"), "-m", "M"},
                                      {"switch", missing},
                                      {"update", missing},
                                      {"ignore", missing},
                                      {"unignore", missing},
                                      {"diff", missing},
                                      {"log", "-r", missing},
                                      {missing},
                                      {"request", missing},
                                      {"status", missing},
                                      {"status", "-u"},
                                      {"branch", "delete", "--yes", missing, "-m", "M"},
                                      {"commit", "-m", "M"}};
    for (const Words& words : commands) {
        SCOPED_TRACE(testing::PrintToString(words));
        const Ran ran = sandbox_.quen(words);
        EXPECT_TRUE(isHarmless(ran.out)) << testing::PrintToString(ran.out);
        EXPECT_TRUE(isHarmless(ran.err)) << testing::PrintToString(ran.err);
    }
}

/// A settings file comes with the working copy.
TEST_F(HostileTextTest, NorOfASettingsFile) {
    sandbox_.write(".quen", std::string(hostile).append(" = x\n"));
    for (const Words& words : {Words{"status"}, Words{"branch"}, Words{"commit", "-m", "M"}}) {
        const Ran ran = sandbox_.quen(words);
        EXPECT_EQ(ran.status, 1);
        EXPECT_THAT(ran.err, HasSubstr("is not a setting"));
        EXPECT_TRUE(isHarmless(ran.err)) << testing::PrintToString(ran.err);
    }
}

} // namespace

} // namespace quen::test
