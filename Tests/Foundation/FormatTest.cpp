#include "Foundation/Format.h"

#include <cmath>
#include <gtest/gtest.h>
#include <limits>

namespace quen {
namespace {

struct Case {
    std::string_view format;
    std::vector<FormatArgument> arguments;
    std::string_view expected;
};

FormatArgument number(std::int64_t value) {
    return value;
}

TEST(FormatTest, FillsPlaceholdersInOrder) {
    const Case cases[] = {
        {"", {}, ""},
        {"plain", {}, "plain"},
        {"%@%@", {String("path"), String("@")}, "path@"},
        {"%@:%@", {String("10"), String("12")}, "10:12"},
        {"%s at %s", {String("here"), String()}, "here at (null)"},
        {"%@", {String("")}, ""},
        {"%@", {String("%@ %ld")}, "%@ %ld"},
        {"Code %ld.", {number(-90)}, "Code -90."},
        {"%ld", {number(std::numeric_limits<std::int64_t>::min())}, "-9223372036854775808"},
        {"parsed in: %.4f", {1.23456}, "parsed in: 1.2346"},
        {"%.0f|%.9f", {2.5, -0.5}, "2|-0.500000000"},
    };
    for (const Case& each : cases) {
        EXPECT_EQ(formatText(each.format, each.arguments), each.expected) << each.format;
    }
}

TEST(FormatTest, LeavesWhatItCannotFill) {
    const Case cases[] = {
        {"%@ and %@", {String("one")}, "one and %@"},
        {"%@", {}, "%@"},
        {"100%", {String("x")}, "100%"},
        {"%d %x %@", {String("x")}, "%d %x x"},
        {"%%@", {String("x")}, "%x"},
        {"%l %.f %.4", {String("x")}, "%l %.f %.4"},
        {"none", {String("left over")}, "none"},
    };
    for (const Case& each : cases) {
        EXPECT_EQ(formatText(each.format, each.arguments), each.expected) << each.format;
    }
}

TEST(FormatTest, ShowsTheLargestNumberWhole) {
    const double largest = std::numeric_limits<double>::max();
    EXPECT_EQ(formatText("%.9f", {-largest}).length(), 1U + 309U + 1U + 9U);
}

} // namespace
} // namespace quen
