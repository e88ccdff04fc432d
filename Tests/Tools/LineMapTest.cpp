#include "Tests/Support/CaseName.h"
#include "Tools/Commands/Content/LineMap.h"

#include <gtest/gtest.h>
#include <ostream>
#include <string>
#include <vector>

namespace quen::test {

using namespace tools;

namespace {

struct Case {
    const char* name;
    const char* difference;
    /// Of the lines 1, 2, ..; 0 for none.
    std::vector<std::int64_t> same;
    std::vector<std::int64_t> earlier;
};

void PrintTo(const Case& each, std::ostream* out) {
    *out << each.name;
}

class LineMapTest : public testing::TestWithParam<Case> {};

TEST_P(LineMapTest, SaysWhereLinesStood) {
    const LineMap map(GetParam().difference);
    for (std::size_t i = 0; i < GetParam().same.size(); ++i) {
        const auto line = static_cast<std::int64_t>(i) + 1;
        EXPECT_EQ(map.sameLine(line).value_or(0), GetParam().same[i]) << line;
        EXPECT_EQ(map.earlierLine(line).value_or(0), GetParam().earlier[i]) << line;
    }
}

INSTANTIATE_TEST_SUITE_P(
    Table, LineMapTest,
    testing::Values(
        Case{"no difference", "", {1, 2}, {1, 2}},
        Case{"all is new", "--- a\n+++ a\n@@ -0,0 +1,2 @@\n+x\n+y\n", {0, 0}, {0, 0}},
        Case{"a line is replaced", "@@ -1,3 +1,3 @@\n a\n-b\n+B\n c\n", {1, 0, 3, 4}, {1, 2, 3, 4}},
        Case{"one line becomes three",
             "@@ -1,3 +1,5 @@\n a\n-b\n+b1\n+b2\n+b3\n c\n",
             {1, 0, 0, 0, 3, 4},
             {1, 2, 0, 0, 3, 4}},
        Case{"three lines become one",
             "@@ -1,5 +1,3 @@\n a\n-b1\n-b2\n-b3\n+b\n c\n",
             {1, 0, 5, 6},
             {1, 2, 5, 6}},
        Case{"lines are gone", "@@ -2,2 +1,0 @@\n-b\n-c\n", {1, 4, 5}, {1, 4, 5}},
        Case{"several pieces, and no line feed at the end",
             "@@ -2 +2,2 @@\n-b\n+B\n+B2\n@@ -9 +10 @@\n-i\n\\ No newline at end of file\n+I\n"
             "\\ No newline at end of file\n",
             {1, 0, 0, 3, 4, 5, 6, 7, 8, 0},
             {1, 2, 0, 3, 4, 5, 6, 7, 8, 9}},
        Case{"lines that look like a head", "@@ -1,2 +1,2 @@\n--- a\n+++ b\n c\n", {0, 2}, {1, 2}},
        Case{"properties are no lines",
             "@@ -1 +1 @@\n-a\n+b\n\nProperty changes on: a\n## -0,0 +1 ##\n+x\n",
             {0, 2},
             {1, 2}}),
    CaseName());

} // namespace

} // namespace quen::test
