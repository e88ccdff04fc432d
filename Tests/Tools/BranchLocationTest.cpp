#include "Tests/Support/CaseName.h"
#include "Tests/Support/Printers.h"
#include "Tools/Commands/Places/BranchLocation.h"

#include <gtest/gtest.h>
#include <ostream>

namespace quen::test {

using namespace tools;

namespace {

TEST(BranchName, HasPartsThatStandForThemselves) {
    for (const char* const name : {"stable", "1.x", "team/feature", "..a", "a b", "a@b",
                                   "."
                                   "a"}) {
        EXPECT_TRUE(isBranchName(name)) << name;
    }
    for (const char* const name :
         {"", ".", "..", "/", "a/", "/a", "a//b", "a/.", "a/../b", "../a"}) {
        EXPECT_FALSE(isBranchName(name)) << name;
    }
}

/// Behind `--` a word that begins with `-` arrives as a path.
TEST(BranchName, MayBeginWithADash) {
    EXPECT_EQ(branchNameSaid("./-x"), "-x");
    EXPECT_EQ(branchNameSaid("-x"), "-x");
    EXPECT_EQ(branchNameSaid("./x"), "./x");
    EXPECT_EQ(branchNameSaid("a/./-x"), "a/./-x");
}

struct URLCase {
    std::string name;
    std::string branch;
    std::string inURL;
};

void PrintTo(const URLCase& url, std::ostream* out) {
    *out << '"' << url.branch << '"';
}

class BranchNameInURL : public testing::TestWithParam<URLCase> {};

TEST_P(BranchNameInURL, IsEncodedAndClosed) {
    EXPECT_EQ(branchNameInURL(GetParam().branch).view(), GetParam().inURL);
}

INSTANTIATE_TEST_SUITE_P(Table, BranchNameInURL,
                         testing::Values(URLCase{"plain", "team/1.x-y_z~", "team/1.x-y_z~"},
                                         URLCase{"a blank", "a b", "a%20b"},
                                         URLCase{"a percent sign", "50%20", "50%2520"},
                                         URLCase{"a question mark", "a?b#c", "a%3Fb%23c"},
                                         URLCase{"other letters", "ü", "%C3%BC"},
                                         URLCase{"an at sign", "a@b", "a@b@"},
                                         URLCase{"one in front", "a@1/b", "a@1/b"}),
                         CaseName());

} // namespace

} // namespace quen::test
