#include "Classes/SVNOperations/SVNRevisions.h"
#include "QuenFoundation/QuenSourceControlConstants.h"
#include "Tests/Support/CaseName.h"
#include "Tests/Support/RequestBuilder.h"

#include <gtest/gtest.h>

namespace quen::test {
namespace {

struct RevisionCase {
    std::string name;
    String revision;
    String headOrBase;
    String headOnly;

    friend void PrintTo(const RevisionCase& row, std::ostream* out) { *out << row.name; }
};

class SVNRevisionWord : public testing::TestWithParam<RevisionCase> {};

TEST_P(SVNRevisionWord, IsTheClients) {
    EXPECT_EQ(headOrBaseRevision(GetParam().revision), GetParam().headOrBase);
    EXPECT_EQ(headOnlyRevision(GetParam().revision), GetParam().headOnly);
}

INSTANTIATE_TEST_SUITE_P(
    , SVNRevisionWord,
    testing::Values(
        RevisionCase{"the head name", QuenSourceControlHEADRevisionName, "HEAD", "HEAD"},
        RevisionCase{"the base name", QuenSourceControlBASERevisionName, "BASE", "HEAD"},
        RevisionCase{"an equal base name", QuenSourceControlBASERevisionName.str(), "BASE", "HEAD"},
        RevisionCase{"the clients own word", "BASE", "BASE", "HEAD"},
        RevisionCase{"in other case", "base", "base", "base"},
        RevisionCase{"a number", "12", "12", "12"},
        RevisionCase{"a date", "{2024-01-31}", "{2024-01-31}", "{2024-01-31}"},
        RevisionCase{"the empty text", "", "", ""}, RevisionCase{"nil", nullptr, nullptr, nullptr}),
    CaseName());

TEST(SVNRevisionRange, ShowsWhatIsMissing) {
    EXPECT_EQ(revisionRange("1", "2"), "1:2");
    EXPECT_EQ(revisionRange("1", nullptr), "1:(null)");
    EXPECT_EQ(revisionRange(nullptr, "2"), "(null):2");
}

TEST(SVNDirectRevision, IsSuppliedWhenTheOptionIsTrue) {
    const auto supplies = [](const Dictionary& options) {
        return suppliesDirectRevision(*Request{.options = options}.make());
    };
    const String& key = QuenSourceControlRequestOptionSupplyDirectRevision;
    EXPECT_FALSE(supplies({}));
    EXPECT_FALSE(supplies(Dictionary::empty()));
    EXPECT_FALSE(supplies({{key, false}}));
    EXPECT_FALSE(supplies({{key, 0}}));
    EXPECT_TRUE(supplies({{key, true}}));
    EXPECT_TRUE(supplies({{key, 1}}));
    EXPECT_TRUE(supplies({{key, "YES"}}));
}

} // namespace
} // namespace quen::test
