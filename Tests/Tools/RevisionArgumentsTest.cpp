#include "QuenFoundation/QuenSourceControlConstants.h"
#include "Tests/Support/CaseName.h"
#include "Tools/Commands/Places/RevisionArguments.h"

#include <gtest/gtest.h>

namespace quen::test {

using namespace tools;

namespace {

struct Case {
    const char* name;
    const char* text;
    const char* start;
    const char* end;
};

class RevisionRangeTest : public testing::TestWithParam<Case> {};

TEST_P(RevisionRangeTest, IsReadAsTheClientReadsIt) {
    const auto range = parseRevisionRange(GetParam().text);
    ASSERT_TRUE(range.has_value());
    EXPECT_EQ(range->start, GetParam().start);
    EXPECT_EQ(range->end, GetParam().end);
}

INSTANTIATE_TEST_SUITE_P(
    Good, RevisionRangeTest,
    testing::Values(
        Case{"a number", "12", "12", ""}, Case{"zero", "0", "0", ""},
        Case{"a number as it is printed", "r12", "12", ""}, Case{"a word", "HEAD", "HEAD", ""},
        Case{"in small letters", "base", "BASE", ""},
        Case{"the words of a working copy", "PREV:COMMITTED", "PREV", "COMMITTED"},
        Case{"a range", "10:12", "10", "12"}, Case{"a range backwards", "HEAD:1", "HEAD", "1"},
        Case{"a date", "{2024-01-01}", "{2024-01-01}", ""},
        Case{"a date with a time", "{2024-01-01 10:11}", "{2024-01-01 10:11}", ""},
        Case{"from a date", "{10:11}:r7", "{10:11}", "7"},
        Case{"to a date", "7:{10:11}", "7", "{10:11}"},
        Case{"the change before", "r12^", "12~1", ""},
        Case{"several changes before", "HEAD~3:head^^", "HEAD~3", "HEAD~2"},
        Case{"put together", "5~2^", "5~3", ""}, Case{"one by default", "5~", "5~1", ""},
        Case{"before a date", "{10:11}^:7", "{10:11}~1", "7"},
        Case{"two dates", "{10:11}:{10:12}", "{10:11}", "{10:12}"}),
    CaseName());

struct BadCase {
    const char* name;
    const char* text;
};

class NoRevisionRangeTest : public testing::TestWithParam<BadCase> {};

TEST_P(NoRevisionRangeTest, IsRefused) {
    EXPECT_FALSE(parseRevisionRange(GetParam().text).has_value());
}

INSTANTIATE_TEST_SUITE_P(
    Bad, NoRevisionRangeTest,
    testing::Values(BadCase{"nothing", ""}, BadCase{"a name", "trunk"},
                    BadCase{"a negative number", "-1"}, BadCase{"a number and more", "12a"},
                    BadCase{"the letter alone", "r"}, BadCase{"no start", ":12"},
                    BadCase{"no end", "12:"}, BadCase{"a colon", ":"}, BadCase{"three", "1:2:3"},
                    BadCase{"an open date", "{2024-01-01"}, BadCase{"an empty date", "{}"},
                    BadCase{"text behind a date", "{10:11}x"}, BadCase{"an option", "--xml"},
                    BadCase{"a blank", "1 2"}, BadCase{"before nothing", "^"},
                    BadCase{"another parent", "5^2"}, BadCase{"not a count", "5~x"},
                    BadCase{"no step", "5~0"}, BadCase{"far back", "5~100001"},
                    BadCase{"a mark in front", "^5"}),
    CaseName());

TEST(StartingRevision, IsTheHostsOwnNameForHeadAndBase) {
    EXPECT_TRUE(startingRevisionFor("BASE").isIdenticalTo(QuenSourceControlBASERevisionName));
    EXPECT_TRUE(startingRevisionFor("HEAD").isIdenticalTo(QuenSourceControlHEADRevisionName));
    EXPECT_EQ(startingRevisionFor("12"), "12");
    EXPECT_EQ(startingRevisionFor("{2024-01-01}"), "{2024-01-01}");
    EXPECT_TRUE(startingRevisionFor("").isNil());
}

} // namespace

} // namespace quen::test
