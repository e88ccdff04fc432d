#include "QuenFoundation/QuenSourceControlFunctions.h"
#include "Tests/Support/CaseName.h"
#include "Tests/Support/Reports.h"

#include <gtest/gtest.h>
#include <ostream>
#include <string>
#include <string_view>

namespace quen::test {
namespace {

using namespace std::string_view_literals;

struct Case {
    const char* name;
    std::string_view bytes;
    String expected;

    friend void PrintTo(const Case& c, std::ostream* out) { *out << c.name; }
};

class StringFromData : public testing::TestWithParam<Case> {};

TEST_P(StringFromData, ReadsUTF8OrElseTextOfBeforeIt) {
    EXPECT_EQ(quensc_stringFromData(dataOf(GetParam().bytes)), GetParam().expected);
}

// A line that is not UTF-8 is read as ISO 8859-1, where every byte is the character of its number.
INSTANTIATE_TEST_SUITE_P(
    Bytes, StringFromData,
    testing::Values(
        Case{"none", "", ""}, Case{"ASCII", "+a\r\n-b\n", "+a\r\n-b\n"},
        Case{"two bytes", "gr\xC3\xBC\xC3\x9F", "gr\xC3\xBC\xC3\x9F"},
        Case{"three bytes", "\xE2\x82\xAC", "\xE2\x82\xAC"},
        Case{"four bytes", "\xF0\x9F\x98\x80", "\xF0\x9F\x98\x80"},
        Case{"the last character", "\xF4\x8F\xBF\xBF", "\xF4\x8F\xBF\xBF"},
        Case{"a zero byte among UTF8", "a\0b"sv, "a\0b"sv},
        Case{"ISO 8859", "gr\xFC\xDF", "gr\xC3\xBC\xC3\x9F"},
        Case{"control characters of ISO 8859", "\x80\x9F", "\xC2\x80\xC2\x9F"},
        Case{"one bad byte among UTF8", "\xC3\xBC\xFF", "\xC3\x83\xC2\xBC\xC3\xBF"},
        Case{"a sequence cut short", "a\xE2\x82", "a\xC3\xA2\xC2\x82"},
        Case{"a sequence broken by ASCII", "\xC3z", "\xC3\x83z"},
        Case{"a continuation alone", "\xBF", "\xC2\xBF"},
        Case{"too long a form", "\xC0\xAF", "\xC3\x80\xC2\xAF"},
        Case{"half a surrogate pair", "\xED\xA0\x80", "\xC3\xAD\xC2\xA0\xC2\x80"},
        Case{"past the last character", "\xF4\x90\x80\x80", "\xC3\xB4\xC2\x90\xC2\x80\xC2\x80"},
        Case{"an old line among lines of UTF8", "+gr\xC3\xBC\n-gr\xFC\r\n \xE2\x82\xAC\n",
             "+gr\xC3\xBC\n-gr\xC3\xBC\r\n \xE2\x82\xAC\n"},
        Case{"old lines at both ends", "\xFC\n\xC3\xBC\n\n\xFC", "\xC3\xBC\n\xC3\xBC\n\n\xC3\xBC"},
        Case{"ISO 8859 with a zero byte", "\xFC\0"sv, String()},
        Case{"UTF16",
             "\xFF\xFE"
             "a\0"sv,
             String()}),
    CaseName());

TEST(StringFromNoData, IsNil) {
    EXPECT_EQ(quensc_stringFromData(nullptr), String());
}

TEST(StringFromNoData, DiffersFromThatOfEmptyData) {
    EXPECT_FALSE(quensc_stringFromData(dataOf("")).isNil());
}

TEST(StringFromLongData, IsWhole) {
    const std::string text(1 << 20, 'x');
    EXPECT_EQ(quensc_stringFromData(dataOf(text + "\xC3\xBC")), String(text + "\xC3\xBC"));
    EXPECT_EQ(quensc_stringFromData(dataOf(text + "\xFC")), String(text + "\xC3\xBC"));
}

} // namespace
} // namespace quen::test
