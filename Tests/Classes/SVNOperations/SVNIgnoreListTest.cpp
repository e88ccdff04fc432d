#include "Classes/SVNOperations/SVNIgnoreList.h"
#include "Tests/Support/CaseName.h"
#include "Tests/Support/Printers.h"

#include <gtest/gtest.h>
#include <string>

namespace quen::test {

namespace {

struct ListCase {
    std::string_view name;
    std::string text;
    StringArray list;
};

class SVNIgnoreListTest : public testing::TestWithParam<ListCase> {};

TEST_P(SVNIgnoreListTest, IsTheLinesThatHoldALetterOrADigit) {
    EXPECT_EQ(ignoreListFromText(GetParam().text), GetParam().list);
}

INSTANTIATE_TEST_SUITE_P(
    Lines, SVNIgnoreListTest,
    testing::Values(ListCase{"empty", "", {}}, ListCase{"one line", "a.txt", {"a.txt"}},
                    ListCase{"a line feed at the end", "a.txt\n", {"a.txt"}},
                    ListCase{"order and duplicates stay", "b\na\nb\n", {"b", "a", "b"}},
                    ListCase{"nothing is trimmed", "  *.o \n\ta\n", {"  *.o ", "\ta"}},
                    ListCase{"a carriage return stays", "a\r\nb\r\n", {"a\r", "b\r"}},
                    ListCase{"blank lines go", "\n\na\n \n\t\nb\n\n", {"a", "b"}},
                    ListCase{"punctuation and wildcards go", "*\n.*\n?\n__\n~$\nx*\n", {"x*"}},
                    ListCase{"a zero byte is not a letter",
                             std::string("\0\n\0a", 4),
                             {std::string("\0a", 2)}}),
    CaseName());

INSTANTIATE_TEST_SUITE_P(Characters, SVNIgnoreListTest,
                         testing::Values(ListCase{"upper case letter", "É", {"É"}},
                                         ListCase{"lower case letter", "*ß", {"*ß"}},
                                         ListCase{"title case letter", "ǅ", {"ǅ"}},
                                         ListCase{"modifier letter", "ʰ", {"ʰ"}},
                                         ListCase{"other letter", "*.日", {"*.日"}},
                                         ListCase{"letter beyond the first plane", "𐐷", {"𐐷"}},
                                         ListCase{"mark that takes no room", "\u0301", {"\u0301"}},
                                         ListCase{"mark that takes room", "\u0903", {"\u0903"}},
                                         ListCase{"mark that encloses", "\u20dd", {"\u20dd"}},
                                         ListCase{"digit", "*7", {"*7"}},
                                         ListCase{"other digit", "٣", {"٣"}},
                                         ListCase{"letter number", "Ⅷ", {"Ⅷ"}},
                                         ListCase{"other number", "½", {"½"}},
                                         ListCase{"symbols", "€\n+\n☃\n😀\n©", {}},
                                         ListCase{"other punctuation", "«…»\n—\n‿", {}},
                                         ListCase{"other blanks", "\u00a0\n\u3000\n\u2028", {}},
                                         ListCase{"private and unassigned", "\ue000\n\u0378", {}}),
                         CaseName());

INSTANTIATE_TEST_SUITE_P(
    NoText, SVNIgnoreListTest,
    testing::Values(ListCase{"bytes that are not characters", "\xff\xfe\n\xc3", {}},
                    ListCase{"a letter behind them", "\xff*\xc3z", {"\xff*\xc3z"}},
                    ListCase{"a letter cut short", "\xe6\x97\n*", {}}),
    CaseName());

} // namespace

} // namespace quen::test
