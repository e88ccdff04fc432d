#include "Foundation/Date.h"

#include <gtest/gtest.h>

namespace quen::test {
namespace {

using std::chrono::microseconds;
using std::chrono::seconds;

constexpr std::string_view clientPattern = "yyyy-MM-dd'T'HH:mm:ss.SSSSSS'Z'";

std::optional<Date> read(std::string_view pattern, std::string_view text) {
    DateFormatter formatter;
    formatter.setTimeZone("GMT");
    formatter.setDateFormat(pattern);
    return formatter.dateFromString(text);
}

TEST(DateTest, ReadsTheClientsDates) {
    const struct {
        std::string_view text;
        Date expected;
    } cases[] = {
        {"1970-01-01T00:00:00.000000Z", Date()},
        {"1970-01-01T00:00:00.000001Z", Date(microseconds(1))},
        {"1969-12-31T23:59:59.999999Z", Date(microseconds(-1))},
        {"2001-09-09T01:46:40.123456Z", Date(seconds(1'000'000'000) + microseconds(123'456))},
        {"2024-02-29T23:59:59.999999Z", Date(seconds(1'709'251'199) + microseconds(999'999))},
    };
    for (const auto& each : cases) {
        EXPECT_EQ(read(clientPattern, each.text), each.expected) << each.text;
        EXPECT_EQ(dateText(each.expected), each.text);
    }
}

TEST(DateTest, RefusesWhatIsNotADate) {
    const std::string_view cases[] = {
        "",
        "2024-03-01",
        "2024-03-01T12:00:00.000000",
        "2024-03-01T12:00:00.000000Z ",
        " 2024-03-01T12:00:00.000000Z",
        "2024-03-01t12:00:00.000000Z",
        "2024-03-01T12:00:00.00000Z",
        "2024-03-01T12:00:00.0000000Z",
        "2024-3-01T12:00:00.000000Z",
        "2024-13-01T12:00:00.000000Z",
        "2024-00-01T12:00:00.000000Z",
        "2024-01-00T12:00:00.000000Z",
        "2024-02-30T12:00:00.000000Z",
        "2023-02-29T12:00:00.000000Z",
        "2024-03-01T24:00:00.000000Z",
        "2024-03-01T12:60:00.000000Z",
        "2024-03-01T12:00:60.000000Z",
        "2024-03-01T-1:00:00.000000Z",
        "-024-03-01T12:00:00.000000Z",
        "2024-03-01T12:00:00.00000xZ",
    };
    for (const std::string_view text : cases) {
        EXPECT_EQ(read(clientPattern, text), std::nullopt) << text;
    }
}

/// The client's pattern is read in a way of its own; the same pattern in other quotes is not.
TEST(DateTest, ReadsTheClientsPatternLikeAnyOther) {
    constexpr std::string_view sameInOtherQuotes = "yyyy'-'MM'-'dd'T'HH:mm:ss'.'SSSSSS'Z'";
    const std::string dates[] = {"2024-02-29T23:59:59.999999Z", "1969-12-31T00:00:00.000000Z",
                                 "0000-01-01T00:00:00.000000Z", "9999-12-31T10:20:30.405060Z"};
    std::size_t readable = 0;
    for (const std::string& date : dates) {
        for (std::size_t place = 0; place < date.size(); ++place) {
            for (int byte = 0; byte < 256; ++byte) {
                std::string text = date;
                text[place] = static_cast<char>(byte);
                const auto expected = read(sameInOtherQuotes, text);
                ASSERT_EQ(read(clientPattern, text), expected) << text;
                readable += expected ? 1U : 0U;
            }
        }
    }
    EXPECT_GT(readable, 500U);
}

TEST(DateTest, FollowsItsPattern) {
    const struct {
        std::string_view pattern;
        std::string_view text;
        std::optional<Date> expected;
    } cases[] = {
        {"yyyy", "1971", Date(seconds(31'536'000))},
        {"ss.SSS", "01.500", Date(microseconds(1'500'000))},
        {"ss.SSSSSSSSS", "00.123456789", Date(microseconds(123'456))},
        {"'at' ss", "at 07", Date(seconds(7))},
        {"'ss' ss", "ss 07", Date(seconds(7))},
        {"ss", "7", std::nullopt},
        {"yyyyy", "70000", std::nullopt},
        {"MMM", "257", std::nullopt},
        {"ddd", "257", std::nullopt},
        {"'at' ss", "in 07", std::nullopt},
        {"", "", Date()},
        {"", "x", std::nullopt},
    };
    for (const auto& each : cases) {
        EXPECT_EQ(read(each.pattern, each.text), each.expected) << each.pattern;
    }
}

TEST(DateTest, KnowsOnlyUniversalTime) {
    DateFormatter formatter;
    formatter.setDateFormat("ss");
    EXPECT_EQ(formatter.dateFromString("07"), Date(seconds(7)));
    formatter.setTimeZone("CET");
    EXPECT_EQ(formatter.dateFromString("07"), std::nullopt);
    formatter.setTimeZone("UTC");
    EXPECT_EQ(formatter.dateFromString("07"), Date(seconds(7)));
}

TEST(DateTest, TakesTheLatestPattern) {
    DateFormatter formatter;
    formatter.setDateFormat("ss");
    formatter.setDateFormat("mm");
    EXPECT_EQ(formatter.dateFromString("01"), Date(seconds(60)));
}

} // namespace
} // namespace quen::test
