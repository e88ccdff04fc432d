#include "Tests/Support/CaseName.h"
#include "Tools/Commands/Changes/LogMessage.h"

#include <gtest/gtest.h>
#include <ostream>

namespace quen::test {

using namespace tools;

namespace {

constexpr std::string_view separator = "--This line and everything below is not sent--\n";

struct MessageCase {
    std::string name;
    std::string text;
    std::string message;
};

void PrintTo(const MessageCase& message, std::ostream* out) {
    *out << '"' << message.text << '"';
}

class MessageInEditorText : public testing::TestWithParam<MessageCase> {};

TEST_P(MessageInEditorText, StandsBeforeTheSeparator) {
    EXPECT_EQ(messageInEditorText(GetParam().text), GetParam().message);
}

TEST_P(MessageInEditorText, IsTheSameAboveWhatItIsAbout) {
    const std::string below = editorTextFor({"modified  a.c", "added     b.c"});
    EXPECT_EQ(messageInEditorText(GetParam().text + "\n" + below), GetParam().message);
}

INSTANTIATE_TEST_SUITE_P(
    Table, MessageInEditorText,
    testing::Values(
        MessageCase{"nothing", "", ""}, MessageCase{"only blanks", " \n\t\n\n", ""},
        MessageCase{"one line", "Fix it\n", "Fix it"},
        MessageCase{"no line end", "Fix it", "Fix it"},
        MessageCase{"blank lines around", "\n\nFix it\n\n\n", "Fix it"},
        MessageCase{"blank lines within", "Fix it\n\nIt was broken.\n", "Fix it\n\nIt was broken."},
        MessageCase{"an indented first line", "\n  - one\n  - two\n", "  - one\n  - two"},
        MessageCase{"line ends of two bytes", "Fix it\r\n\r\nNow\r\n", "Fix it\n\nNow"},
        MessageCase{"a line that begins like the separator", "--This line stays\n",
                    "--This line stays"},
        MessageCase{"other scripts", "Прощай\n", "Прощай"}),
    CaseName());

TEST(MessageInEditorText, IsEmptyWhereNothingWasWritten) {
    EXPECT_EQ(messageInEditorText(editorTextFor({"modified  a.c"})), "");
}

TEST(MessageInEditorText, EndsAtTheFirstSeparator) {
    const std::string separated(separator);
    EXPECT_EQ(messageInEditorText("One\n" + separated + "two\n" + separated + "three\n"), "One");
    EXPECT_EQ(
        messageInEditorText("One\r\n" + separated.substr(0, separated.size() - 1) + "\r\ntwo\r\n"),
        "One");
}

TEST(EditorText, ShowsWhatTheMessageIsAbout) {
    EXPECT_EQ(editorTextFor({"modified  a.c", "added     b.c"}),
              "\n" + std::string(separator) + "\nmodified  a.c\nadded     b.c\n");
}

} // namespace

} // namespace quen::test
