#include "Tests/Support/CaseName.h"
#include "Tools/Terminal/Style.h"

#include <gtest/gtest.h>

namespace quen::test {

using namespace tools;

namespace {

struct Case {
    const char* name;
    std::string text;
    std::string shown;
    std::string shownAsLine;
};

class PrintableTest : public testing::TestWithParam<Case> {};

TEST_P(PrintableTest, LeavesNothingThatSteersATerminal) {
    EXPECT_EQ(printable(GetParam().text), GetParam().shown);
    EXPECT_EQ(printableLine(GetParam().text), GetParam().shownAsLine);
}

constexpr const char* replaced = "\xEF\xBF\xBD";

INSTANTIATE_TEST_SUITE_P(
    Texts, PrintableTest,
    testing::Values(
        Case{"plain", "a b", "a b", "a b"}, Case{"empty", "", "", ""},
        Case{"letters of other scripts", "\xC3\xA9\xE6\x97\xA5", "\xC3\xA9\xE6\x97\xA5",
             "\xC3\xA9\xE6\x97\xA5"},
        Case{"escape", "\x1b[31m", std::string(replaced) + "[31m", std::string(replaced) + "[31m"},
        Case{"line feed", "a\nb", std::string("a") + replaced + "b",
             std::string("a") + replaced + "b"},
        Case{"tab", "a\tb", std::string("a") + replaced + "b", "a\tb"},
        Case{"delete", "\x7F", replaced, replaced},
        Case{"control of two bytes",
             "\xC2\x9B"
             "31m",
             std::string(replaced) + "31m", std::string(replaced) + "31m"},
        Case{"first character behind the controls", "\xC2\xA0", "\xC2\xA0", "\xC2\xA0"},
        Case{"no UTF-8", "a\xC2", std::string("a") + replaced, std::string("a") + replaced}),
    CaseName());

TEST(Palette, PaintsOnlyWhereAskedTo) {
    EXPECT_EQ(Palette(Palette::Use::always).paint(Style::good, "a"), "\x1b[32ma\x1b[0m");
    EXPECT_EQ(Palette(Palette::Use::always).paint(Style::plain, "a"), "a");
    EXPECT_EQ(Palette(Palette::Use::always).paint(Style::good, ""), "");
    EXPECT_EQ(Palette(Palette::Use::never).paint(Style::good, "a"), "a");
}

} // namespace

} // namespace quen::test
