#include "Classes/SVNDiagnostics.h"
#include "Tests/Support/CaseName.h"
#include "Tests/Support/HostRecorder.h"

#include <gtest/gtest.h>

namespace quen::test {
namespace {

struct TextCase {
    std::string name;
    String text;
    std::vector<AssertionFacts> failures;

    friend void PrintTo(const TextCase& row, std::ostream* out) { *out << row.name; }
};

class NonEmptyStringAssertion : public testing::TestWithParam<TextCase> {
protected:
    HostRecorder host;
};

TEST_P(NonEmptyStringAssertion, NamesWhatIsMissing) {
    const SVNAssertions assertions(this, "-[Class message:with:]", SVNAssertions::operationsFile);
    assertions.checkNonEmptyString(GetParam().text, "pathString", 1163);
    EXPECT_EQ(host.assertionFacts(), GetParam().failures);
    for (const MarlAssertionFailure& failure : host.assertions()) {
        EXPECT_EQ(failure.line, 1163);
        EXPECT_EQ(failure.receiver, this);
        EXPECT_EQ(failure.selector, "message:with:");
    }
}

AssertionFacts failure(const String& format, const String& condition) {
    return {"-[Class message:with:]", "Classes/SVNOperations", format, {"pathString", condition}};
}

INSTANTIATE_TEST_SUITE_P(
    , NonEmptyStringAssertion,
    testing::Values(TextCase{"some text", "x", {}},
                    TextCase{"nil",
                             nullptr,
                             {failure("%s should be a non-empty string, but it is nil",
                                      "(pathString) != nil")}},
                    TextCase{"the empty text",
                             "",
                             {failure("%s should be a non-empty string, but it's an empty string",
                                      R"(![@"" isEqualToString:(pathString)])")}}),
    CaseName());

TEST(SVNAssertions, TakeTheLineOfTheCheckWhereNoneIsGiven) {
    const HostRecorder host;
    const SVNAssertions assertions(nullptr, "-[Class message]", SVNAssertions::controllerFile);
    assertions.check(false, "one");
    const int line = __LINE__ - 1;
    assertions.checkNotNil(true, "(two)");
    assertions.unreachable();
    assertions.check(false, "four", 328);
    assertions.check(true, "five");
    assertions.checkNotNil(false, "(six)");
    std::vector<int> lines;
    for (const MarlAssertionFailure& failure : host.assertions()) {
        lines.push_back(failure.line);
    }
    EXPECT_EQ(lines, (std::vector<int>{line, line + 2, line + 3, 328}));
}

} // namespace
} // namespace quen::test
