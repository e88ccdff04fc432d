#include "Tests/Support/CaseName.h"
#include "Tools/Terminal/Times.h"

#include <cstdlib>
#include <ctime>
#include <gtest/gtest.h>

namespace quen::test {

using namespace tools;

namespace {

using namespace std::chrono_literals;
using std::chrono::days;
using std::chrono::microseconds;

/// 2024-03-01T12:00:00Z.
constexpr Date now{std::chrono::sys_days(std::chrono::year(2024) / 3 / 1) + 12h};

struct Case {
    const char* name;
    microseconds age;
    const char* expected;
};

class AgeTest : public testing::TestWithParam<Case> {};

TEST_P(AgeTest, IsSaidAsPeopleSayIt) {
    EXPECT_EQ(ageText(now - GetParam().age, now), GetParam().expected);
}

INSTANTIATE_TEST_SUITE_P(
    Ages, AgeTest,
    testing::Values(
        Case{"now", 0s, "just now"}, Case{"below a minute", 59s, "just now"},
        Case{"a moment below a minute", 60s - 1us, "just now"},
        Case{"a minute", 60s, "1 minute ago"}, Case{"minutes", 59min + 59s, "59 minutes ago"},
        Case{"an hour", 1h, "1 hour ago"}, Case{"hours", 24h - 1s, "23 hours ago"},
        Case{"a day", 24h, "1 day ago"}, Case{"days", days(14) - 1s, "13 days ago"},
        Case{"two weeks", days(14), "2 weeks ago"}, Case{"weeks", days(60), "8 weeks ago"},
        Case{"two months", days(61), "2 months ago"}, Case{"months", days(730), "23 months ago"},
        Case{"two years", days(731), "2 years ago"},
        Case{"decades", days(366 * 30), "30 years ago"},
        Case{"a clock a little ahead", -60s, "just now"},
        Case{"a clock far ahead", -61s, "in the future"}),
    CaseName());

/// Another time zone while this lives.
class ScopedZone {
public:
    explicit ScopedZone(const char* zone) {
        setenv("TZ", zone, 1);
        tzset();
    }
    ScopedZone(const ScopedZone&) = delete;
    ScopedZone& operator=(const ScopedZone&) = delete;
    ~ScopedZone() {
        unsetenv("TZ");
        tzset();
    }
};

TEST(LocalDateText, IsTheDateOnTheClockHere) {
    {
        const ScopedZone zone("UTC0");
        EXPECT_EQ(localDateText(now), "2024-03-01 12:00:00 +0000");
    }
    {
        const ScopedZone zone("TEST-5:30");
        EXPECT_EQ(localDateText(now - 1us), "2024-03-01 17:29:59 +0530");
    }
}

} // namespace

} // namespace quen::test
