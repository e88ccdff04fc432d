#include "Foundation/PercentCoding.h"

#include <gtest/gtest.h>

namespace quen::test {
namespace {

TEST(PercentCoding, EncodesAllButLettersDigitsAndWhatIsPlain) {
    const struct {
        std::string_view text;
        std::string_view plain;
        std::string_view expected;
    } cases[] = {
        {"", "", ""},
        {"azAZ09", "", "azAZ09"},
        {"a b", "", "a%20b"},
        {"a b", " ", "a b"},
        {"a/b@c", "/", "a/b%40c"},
        {"100%", "", "100%25"},
        {"\xc3\xbc\n", "", "%C3%BC%0A"},
        {std::string_view("\0\xff", 2), "", "%00%FF"},
    };
    for (const auto& each : cases) {
        EXPECT_EQ(percentEncoded(each.text, each.plain), each.expected) << each.text;
        EXPECT_EQ(percentDecoded(each.expected), each.text) << each.expected;
    }
}

TEST(PercentCoding, DecodesSmallDigitsToo) {
    EXPECT_EQ(percentDecoded("%c3%bC%2f"), "\xc3\xbc/");
}

TEST(PercentCoding, LeavesAPercentSignThatBeginsNoCode) {
    for (const std::string_view text : {"%", "%4", "50%", "%%", "%g0", "%0g", "%-1", "% 1"}) {
        EXPECT_EQ(percentDecoded(text), text);
        EXPECT_EQ(byteOfPercentCode(text), std::nullopt) << text;
    }
    EXPECT_EQ(percentDecoded("%%41"), "%A");
    EXPECT_EQ(percentDecoded("%2541"), "%41");
}

} // namespace
} // namespace quen::test
