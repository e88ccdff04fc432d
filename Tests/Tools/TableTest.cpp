#include "Tests/Support/CaseName.h"
#include "Tools/Terminal/Table.h"

#include <gtest/gtest.h>
#include <sstream>
#include <string>
#include <vector>

namespace quen::test {

using namespace tools;

namespace {

std::string printed(const std::vector<Table::Row>& rows, Palette::Use use = Palette::Use::never) {
    Table table;
    for (const Table::Row& row : rows) {
        table.add(row);
    }
    std::ostringstream out;
    table.print(out, Palette(use));
    return out.str();
}

struct Case {
    const char* name;
    std::vector<Table::Row> rows;
    const char* expected;
};

class TableTest : public testing::TestWithParam<Case> {};

TEST_P(TableTest, AlignsItsColumns) {
    EXPECT_EQ(printed(GetParam().rows), GetParam().expected);
}

INSTANTIATE_TEST_SUITE_P(
    Rows, TableTest,
    testing::Values(
        Case{"none", {}, ""}, Case{"one cell", {{{"a"}}}, "a\n"},
        Case{"last column not padded", {{{"a"}, {"long"}}, {{"bb"}, {"c"}}}, "a   long\nbb  c\n"},
        Case{"to the right",
             {{{"9", Style::plain, true}, {"x"}}, {{"10", Style::plain, true}, {"y"}}},
             " 9  x\n10  y\n"},
        Case{"rows of different length",
             {{{"a"}}, {{"bbb"}, {"c"}}, {{"d"}, {"e"}, {"f"}}},
             "a\nbbb  c\nd    e  f\n"},
        Case{"wide and combining characters",
             {{{"\xE6\x97\xA5"}, {"x"}}, {{"e\xCC\x81"}, {"y"}}, {{"abc"}, {"z"}}},
             "\xE6\x97\xA5   x\ne\xCC\x81    y\nabc  z\n"},
        Case{"empty cells", {{{""}, {"x"}}, {{"a"}, {""}}}, "   x\na\n"}),
    CaseName());

TEST(TableTest, ColoursTakeNoRoom) {
    EXPECT_EQ(printed({{{"a", Style::bad}, {"x"}}, {{"bb"}, {"y"}}}, Palette::Use::always),
              "\x1b[31ma\x1b[0m   x\nbb  y\n");
}

} // namespace

} // namespace quen::test
