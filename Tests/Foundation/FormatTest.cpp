#include "Foundation/Format.h"

#include <clocale>
#include <cmath>
#include <cstdlib>
#include <filesystem>
#include <gtest/gtest.h>
#include <limits>
#include <locale>
#include <memory>
#include <string>

namespace quen::test {
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

/// The host's locale, for as long as this lives, is one that groups digits with full stops and
/// begins fractions with a comma.
class CommaLocale {
public:
    CommaLocale()
        : global_(std::locale::global(
              std::locale(std::locale(), std::make_unique<Comma>().release()))) {
        const std::string directory = testing::TempDir() + "/locales";
        std::filesystem::create_directories(directory);
        const std::string command = "localedef -i de_DE -f UTF-8 '" + directory + "/de_DE.UTF-8'";
        EXPECT_EQ(std::system(command.c_str()), 0);
        setenv("LOCPATH", directory.c_str(), 1);
        EXPECT_NE(std::setlocale(LC_ALL, "de_DE.UTF-8"), nullptr);
        EXPECT_STREQ(std::localeconv()->decimal_point, ",");
    }
    CommaLocale(const CommaLocale&) = delete;
    CommaLocale& operator=(const CommaLocale&) = delete;
    ~CommaLocale() {
        std::setlocale(LC_ALL, "C");
        unsetenv("LOCPATH");
        std::locale::global(global_);
    }

private:
    struct Comma : std::numpunct<char> {
        char do_decimal_point() const override { return ','; }
        char do_thousands_sep() const override { return '.'; }
        std::string do_grouping() const override { return "\3"; }
    };

    std::locale global_;
};

TEST(FormatTest, IsTheSameInAnyLocaleOfTheHost) {
    const CommaLocale locale;
    EXPECT_EQ(formatText("parsed in: %.4f", {1234567.25}), "parsed in: 1234567.2500");
    EXPECT_EQ(formatText("Code %ld.", {number(-1234567)}), "Code -1234567.");
}

TEST(FormatTest, ShowsWhatIsNotANumber) {
    EXPECT_EQ(formatText("%.1f %.1f", {std::numeric_limits<double>::infinity(), std::nan("")}),
              "inf nan");
}

TEST(FormatTest, ShowsTheLargestNumberWhole) {
    const double largest = std::numeric_limits<double>::max();
    EXPECT_EQ(formatText("%.9f", {-largest}).length(), 1U + 309U + 1U + 9U);
}

} // namespace
} // namespace quen::test
