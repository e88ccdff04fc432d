#include "Tests/Support/CaseName.h"
#include "Tools/Terminal/Fitting.h"
#include "Tools/Terminal/Marks.h"
#include "Tools/Terminal/Progress.h"

#include <gtest/gtest.h>
#include <ostream>

namespace quen::test {

using namespace tools;

namespace {

struct FitCase {
    std::string name;
    std::string text;
    std::size_t width;
    std::string fitting;
};

void PrintTo(const FitCase& fit, std::ostream* out) {
    *out << '"' << fit.text << "\" in " << fit.width;
}

class FittingText : public testing::TestWithParam<FitCase> {};

TEST_P(FittingText, LeavesOutTheMiddle) {
    EXPECT_EQ(fittingText(GetParam().text, GetParam().width), GetParam().fitting);
}

INSTANTIATE_TEST_SUITE_P(
    Table, FittingText,
    testing::Values(FitCase{"nothing", "", 5, ""},
                    FitCase{"as wide as the room", "abcde", 5, "abcde"},
                    FitCase{"one too many", "abcdef", 5, "a…def"},
                    FitCase{"a long path", "A    src/some/where/far/away.c", 16,
                            "A    …far/away.c"},
                    FitCase{"one cell", "abcdef", 1, "…"}, FitCase{"no room", "abcdef", 0, ""},
                    FitCase{"characters of two bytes", "äöüäöü", 5, "ä…äöü"},
                    FitCase{"wide characters that fit", "漢字", 4, "漢字"},
                    FitCase{"wide characters are not halved", "漢字漢字漢字", 8, "漢…漢字"},
                    FitCase{"a mark stays with its letter",
                            "e\xCC\x81"
                            "bcdef",
                            4, "e\xCC\x81…ef"}),
    CaseName());

TEST(ColumnText, HasTheWidthWhateverTheTextIs) {
    struct Case {
        const char* text;
        std::size_t width;
        const char* column;
    };
    for (const Case& each : {Case{"alice", 10, "alice     "},
                             {"bartholomew", 11, "bartholomew"},
                             {"bartholomew", 10, "bartholom…"},
                             {"äöü", 4, "äöü "},
                             {"漢字漢字", 6, "漢字… "},
                             {"", 2, "  "},
                             {"ab", 0, ""}}) {
        EXPECT_EQ(columnText(each.text, each.width), each.column) << each.text;
    }
}

TEST(Marks, AreThoseOfTheLocale) {
    for (const char* const unicode : {"C.UTF-8", "de_DE.utf8", "en_US.UTF-8@euro"}) {
        EXPECT_EQ(marksOf(unicode).ellipsis, "…") << unicode;
    }
    for (const char* const other : {"", "C", "POSIX", "de_DE.ISO-8859-1", "en_US"}) {
        EXPECT_EQ(marksOf(other).ellipsis, "...") << other;
        EXPECT_EQ(marksOf(other).replacement, "?") << other;
    }
}

struct LineCase {
    std::string name;
    ProgressFacts facts;
    std::size_t width;
    std::string line;
};

void PrintTo(const LineCase& line, std::ostream* out) {
    *out << '"' << line.facts.doing << "\" in " << line.width;
}

class ProgressLine : public testing::TestWithParam<LineCase> {};

TEST_P(ProgressLine, SaysHowFarTheWorkIs) {
    EXPECT_EQ(progressLine(GetParam().facts, GetParam().width), GetParam().line);
}

INSTANTIATE_TEST_SUITE_P(
    Table, ProgressLine,
    testing::Values(
        LineCase{"before the first word", {"", 0, std::chrono::seconds(0)}, 79, "0 items  0:00"},
        LineCase{
            "one item", {"A    a.c", 1, std::chrono::seconds(9)}, 79, "1 item  0:09  A    a.c"},
        LineCase{"more than a minute",
                 {"A    a.c", 12, std::chrono::seconds(71)},
                 79,
                 "12 items  1:11  A    a.c"},
        LineCase{"more than an hour", {"", 2, std::chrono::seconds(3605)}, 79, "2 items  60:05"},
        LineCase{"the path gives way",
                 {"A    source/main.c", 2, std::chrono::seconds(1)},
                 28,
                 "2 items  0:01  A   …e/main.c"},
        LineCase{"a narrow terminal", {"A    a.c", 12, std::chrono::seconds(1)}, 8, "12… 0:01"}),
    CaseName());

} // namespace

} // namespace quen::test
