#include "Tests/System/ShowingCase.h"
#include "Tests/System/Terminal.h"

#include <algorithm>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace quen::test {

namespace {

/// A project whose texts are ASCII, with much that is too long for a narrow terminal, and a message
/// with a control character.
class LocaleTest : public testing::Test {
protected:
    LocaleTest() {
        const std::string deep = "a/directory/that/lies/far/down/in/the/tree/" + file_;
        sandbox_.write(file_, "one\n" + std::string(100, 'x') + "\n");
        sandbox_.write(deep, "one\n");
        sandbox_.svn({"add", "-q", file_, "a"});
        sandbox_.commit("A message of many words, so that a line of a terminal is too short",
                        author_);
        sandbox_.write(file_, "two\n" + std::string(100, 'y') + "\n");
        sandbox_.commit("Control\x7F", author_);
        sandbox_.svn({"copy", "-q", "--username", author_, "-m", "Branch", sandbox_.url("trunk"),
                      sandbox_.url("branches/fix")});
        sandbox_.svn({"update", "-q"});
        sandbox_.write(file_, "three\n" + std::string(100, 'z') + "\n");
        sandbox_.write("notes.txt", "new\n");
    }

    std::string onTerminal(const Sandbox::Words& words, const std::string& locale) const {
        Sandbox::Words command{"sh", "-c", "stty cols 40; exec \"$0\" \"$@\"", Sandbox::program()};
        command.insert(command.end(), words.begin(), words.end());
        Terminal terminal(sandbox_.invocation(command, sandbox_.workingCopy(),
                                              {"LC_ALL=" + locale, "TERM=xterm", "PAGER="}));
        terminal.waitForEnd();
        return terminal.shown();
    }

    const std::string file_ = "file-with-a-name-that-is-too-long-for-forty-columns.txt";
    const std::string author_ = "bartholomew.longfellow";
    Sandbox sandbox_;
};

bool isASCII(const std::string& text) {
    return std::all_of(text.begin(), text.end(),
                       [](char c) { return static_cast<unsigned char>(c) < 0x80; });
}

TEST_F(LocaleTest, WithoutUTF8NothingButASCIIIsAdded) {
    const std::vector<Sandbox::Words> commands{{"status"},
                                               {"status", "-u"},
                                               {"status", "-s"},
                                               {"status", "nowhere\x7F"},
                                               {"diff"},
                                               {"diff", "--stat"},
                                               {"diff", "-y"},
                                               {"log"},
                                               {"log", "-v"},
                                               {"log", "--oneline"},
                                               {"log", "--graph"},
                                               {"log", "--graph", "--oneline"},
                                               {"show", "2"},
                                               {"show", "3", "--stat"},
                                               {"incoming"},
                                               {"blame", file_},
                                               {"info", file_},
                                               {"list", "-v", "-R"},
                                               {"cat", file_},
                                               {"branch"},
                                               {"branches"},
                                               {"tags"},
                                               {"update", "--preview"},
                                               {"merge", "--preview", "fix"},
                                               {"commit", "--dry-run", "-m", "M"},
                                               {"revert", file_},
                                               {"undo", "--list"},
                                               {"help"},
                                               {"help", "log"},
                                               {"frob"}};
    for (const Sandbox::Words& words : commands) {
        SCOPED_TRACE(testing::PrintToString(words));
        Sandbox::Words command{Sandbox::program()};
        command.insert(command.end(), words.begin(), words.end());
        const Ran ran = sandbox_.run(command, sandbox_.workingCopy(), {"LC_ALL=C", "COLUMNS=40"});
        EXPECT_TRUE(isASCII(ran.out)) << testing::PrintToString(ran.out);
        EXPECT_TRUE(isASCII(ran.err)) << testing::PrintToString(ran.err);
    }
    for (const Sandbox::Words& words : {Sandbox::Words{"log", "--oneline"},
                                        {"log", "--graph"},
                                        {"blame", file_},
                                        {"diff", "--stat"},
                                        {"branches"}}) {
        SCOPED_TRACE(testing::PrintToString(words));
        const std::string shown = onTerminal(words, "C");
        EXPECT_TRUE(isASCII(shown)) << testing::PrintToString(shown);
    }
}

/// The test above would find nothing where nothing is cut or replaced.
TEST_F(LocaleTest, TheSameMarksInBothLocales) {
    struct Case {
        const char* locale;
        const char* message;
        const char* file;
        const char* node;
    };
    for (const Case& each : {Case{"C", "A message of many...", "\"nowhere?\"", "* r4"},
                             Case{"POSIX", "A message of many...", "\"nowhere?\"", "* r4"},
                             Case{"C.UTF-8", "A message of many w\xE2\x80\xA6",
                                  "\"nowhere\xEF\xBF\xBD\"", "\xE2\x97\x8F r4"},
                             Case{"en_US.utf8", "A message of many w\xE2\x80\xA6",
                                  "\"nowhere\xEF\xBF\xBD\"", "\xE2\x97\x8F r4"}}) {
        using testing::HasSubstr;
        EXPECT_THAT(onTerminal({"log", "--color=never", "--oneline"}, each.locale),
                    HasSubstr(each.message));
        EXPECT_THAT(onTerminal({"status", "nowhere\x7F"}, each.locale), HasSubstr(each.file));
        EXPECT_THAT(onTerminal({"log", "--color=never", "--graph", "-q"}, each.locale),
                    HasSubstr(each.node));
    }
}

} // namespace

} // namespace quen::test
