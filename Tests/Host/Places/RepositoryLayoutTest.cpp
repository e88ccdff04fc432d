#include "Host/Places/RepositoryLayout.h"
#include "Tests/Support/CaseName.h"

#include <gtest/gtest.h>

namespace quen::test {

namespace {

struct Case {
    const char* name;
    const char* url;
    const char* root;
    const char* project;
};

class RepositoryLayoutTest : public testing::TestWithParam<Case> {};

TEST_P(RepositoryLayoutTest, TheProjectIsWhatStandsBeforeTheUsualNames) {
    const std::string project = GetParam().project;
    EXPECT_EQ(projectRootOf(GetParam().url, GetParam().root), project);
    const RepositoryLayout layout = usualLayout(GetParam().url, GetParam().root);
    EXPECT_EQ(layout.trunk, project + "/trunk");
    EXPECT_EQ(layout.branches, project + "/branches");
}

INSTANTIATE_TEST_SUITE_P(
    URLs, RepositoryLayoutTest,
    testing::Values(
        Case{"the trunk", "http://h/r/trunk", "http://h/r", "http://h/r"},
        Case{"below the trunk", "http://h/r/trunk/src/a.c", "http://h/r", "http://h/r"},
        Case{"a branch", "http://h/r/branches/fix/src", "http://h/r", "http://h/r"},
        Case{"a tag", "http://h/r/tags/1.0", "http://h/r", "http://h/r"},
        Case{"all branches", "http://h/r/p/branches", "http://h/r", "http://h/r/p"},
        Case{"a project of several", "http://h/r/a/b/trunk/src", "http://h/r", "http://h/r/a/b"},
        Case{"the root", "http://h/r", "http://h/r", "http://h/r"},
        Case{"the root with a slash", "http://h/r/", "http://h/r/", "http://h/r"},
        Case{"no usual name", "http://h/r/main/src", "http://h/r", "http://h/r"},
        Case{"a name that only begins like it", "http://h/r/trunk2/src", "http://h/r",
             "http://h/r"},
        Case{"the first of two", "http://h/r/branches/trunk/tags", "http://h/r", "http://h/r"},
        Case{"a usual name above the root", "file:///srv/trunk/r/p/trunk", "file:///srv/trunk/r",
             "file:///srv/trunk/r/p"},
        Case{"a URL of another repository", "http://h/other/p/trunk", "http://h/r", "http://h/r"},
        Case{"a root that is a part of a name", "http://h/r2/trunk", "http://h/r", "http://h/r"}),
    CaseName());

struct WholeCase {
    const char* name;
    RepositoryLayout said;
    RepositoryLayout whole;
};

class WholeLayoutTest : public testing::TestWithParam<WholeCase> {};

TEST_P(WholeLayoutTest, IsWhatIsSaidAndTheUsualPlaces) {
    const RepositoryLayout whole =
        wholeLayout(GetParam().said, "http://h/r/p/trunk/src", "http://h/r");
    EXPECT_EQ(whole.trunk, GetParam().whole.trunk);
    EXPECT_EQ(whole.branches, GetParam().whole.branches);
}

INSTANTIATE_TEST_SUITE_P(
    Layouts, WholeLayoutTest,
    testing::Values(
        WholeCase{"nothing said", {}, {"http://h/r/p/trunk", "http://h/r/p/branches"}},
        WholeCase{"below the root", {"^/main", ""}, {"http://h/r/main", "http://h/r/p/branches"}},
        WholeCase{"the root itself", {"^/", "^/b"}, {"http://h/r", "http://h/r/b"}},
        WholeCase{"slashes at the end",
                  {"^/main//", "http://h/r/b/"},
                  {"http://h/r/main", "http://h/r/b"}},
        WholeCase{"a URL", {"", "http://h/other/b"}, {"http://h/r/p/trunk", "http://h/other/b"}},
        WholeCase{"neither", {"main", "^x"}, {"main", "^x"}}),
    CaseName());

TEST(TagsTest, LieBesideTheBranches) {
    EXPECT_EQ(tagsBeside("http://h/r/branches"), "http://h/r/tags");
    EXPECT_EQ(tagsBeside("http://h/r/p/lines//"), "http://h/r/p/tags");
    EXPECT_EQ(tagsBeside("/branches"), "/tags");
}

} // namespace

} // namespace quen::test
