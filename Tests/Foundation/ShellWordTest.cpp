#include "Foundation/ShellWord.h"
#include "Tests/Support/CaseName.h"

#include <gtest/gtest.h>
#include <ostream>
#include <string>

namespace quen::test {

namespace {

struct WordCase {
    std::string name;
    std::string text;
    std::string word;
};

void PrintTo(const WordCase& word, std::ostream* out) {
    *out << '"' << word.text << '"';
}

class ShellWord : public testing::TestWithParam<WordCase> {};

TEST_P(ShellWord, IsQuotedWhereAShellWouldTearIt) {
    EXPECT_EQ(shellWord(GetParam().text), GetParam().word);
}

INSTANTIATE_TEST_SUITE_P(
    Table, ShellWord,
    testing::Values(WordCase{"plain", "/home/me/wc-1_2.x@", "/home/me/wc-1_2.x@"},
                    WordCase{"nothing", "", "''"}, WordCase{"a blank", "/my wc", "'/my wc'"},
                    WordCase{"a quote", "/it's", "'/it'\\''s'"},
                    WordCase{"a variable", "/$HOME", "'/$HOME'"},
                    WordCase{"a line feed", "a\nb", "'a\nb'"},
                    WordCase{"other letters", "/ü", "'/ü'"}),
    CaseName());

} // namespace

} // namespace quen::test
