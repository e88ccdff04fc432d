#include "Host/HostSourceTrees.h"
#include "Tests/Support/CaseName.h"
#include "Tests/Support/Trees.h"

#include <gtest/gtest.h>
#include <ostream>
#include <vector>

namespace quen::test {
namespace {

struct InsideCase {
    const char* name;
    String location;
    String tree;
    bool isInside;

    friend void PrintTo(const InsideCase& c, std::ostream* out) {
        *out << c.location << " in " << c.tree;
    }
};

class LocationInside : public testing::TestWithParam<InsideCase> {};

TEST_P(LocationInside, IsDecidedByWholeComponents) {
    EXPECT_EQ(isLocationInside(GetParam().location, GetParam().tree), GetParam().isInside);
}

TEST_P(LocationInside, IsWhatEachKindOfTreeAnswers) {
    const TreeFacts facts{.location = GetParam().tree};
    const String& location = GetParam().location;
    EXPECT_EQ(repository(facts)->containsItemAtLocation(location), GetParam().isInside);
    EXPECT_EQ(workingTree(facts)->containsItemAtLocation(location), GetParam().isInside);
    EXPECT_EQ(otherTree(facts)->containsItemAtLocation(location), GetParam().isInside);
}

INSTANTIATE_TEST_SUITE_P(
    Locations, LocationInside,
    testing::Values(
        InsideCase{"itself", "/a/b", "/a/b", true}, InsideCase{"child", "/a/b/c", "/a/b", true},
        InsideCase{"grandchild", "/a/b/c/d", "/a/b", true},
        InsideCase{"parent", "/a", "/a/b", false},
        InsideCase{"a name that begins the same", "/a/bc", "/a/b", false},
        InsideCase{"a name that begins the same at the top", "/ab", "/a", false},
        InsideCase{"a sibling", "/a/c", "/a/b", false},
        InsideCase{"itself with a separator behind", "/a/b/", "/a/b", true},
        InsideCase{"a tree with a separator behind", "/a/b", "/a/b/", true},
        InsideCase{"a child of a tree with separators behind", "/a/b/c", "/a/b///", true},
        InsideCase{"a sibling of a tree with a separator behind", "/a/bc", "/a/b/", false},
        InsideCase{"separators in the middle", "/a//b/c", "/a/b", true},
        InsideCase{"the root", "/a", "/", true}, InsideCase{"the root itself", "/", "/", true},
        InsideCase{"a relative location in the root", "a", "/", false},
        InsideCase{"relative in relative", "a/b", "a", true},
        InsideCase{"relative in absolute", "a/b", "/a", false},
        InsideCase{"another case", "/A/b", "/a", false},
        InsideCase{"a URL itself", "http://host/r", "http://host/r", true},
        InsideCase{"a URL below", "http://host/r/trunk/a.c", "http://host/r/", true},
        InsideCase{"a URL beside", "http://host/r2", "http://host/r", false},
        InsideCase{"a URL on another host", "http://hosts/r", "http://host/r", false},
        InsideCase{"a URL of another scheme", "https://host/r", "http://host/r", false},
        InsideCase{"nothing", String(), "/a", false}, InsideCase{"empty text", "", "/a", false},
        InsideCase{"in nothing", "/a", String(), false},
        InsideCase{"in empty text", "/a", "", false},
        InsideCase{"nothing in nothing", String(), String(), false}),
    CaseName());

TEST(SourceTreeContents, AnExactListReplacesTheRule) {
    const auto tree = workingTree({.location = "/a", .contains = {{"/x", "/a/b"}}});
    EXPECT_TRUE(tree->containsItemAtLocation("/x"));
    EXPECT_TRUE(tree->containsItemAtLocation("/a/b"));
    EXPECT_FALSE(tree->containsItemAtLocation("/a"));
    EXPECT_FALSE(tree->containsItemAtLocation("/a/b/c"));
    EXPECT_FALSE(tree->containsItemAtLocation("/x/"));
}

TEST(SourceTreeContents, AnEmptyListHoldsNothing) {
    const auto tree = repository({.location = "/a", .contains = std::vector<String>()});
    EXPECT_FALSE(tree->containsItemAtLocation("/a"));
    EXPECT_FALSE(tree->containsItemAtLocation(nullptr));
}

TEST(SourceTreeFacts, AreAnsweredAsGiven) {
    const auto tree = repository({.name = "theirs",
                                  .location = "http://host/r",
                                  .reachable = false,
                                  .isValid = false,
                                  .user = "jane",
                                  .trunkLocation = "http://host/r/trunk",
                                  .branchesLocation = "http://host/r/branches"});
    EXPECT_EQ(tree->name(), "theirs");
    EXPECT_EQ(tree->location(), "http://host/r");
    EXPECT_FALSE(tree->reachable());
    EXPECT_FALSE(tree->isValid());
    EXPECT_EQ(tree->user(), "jane");
    EXPECT_EQ(tree->trunkLocation(), URL::fromString("http://host/r/trunk"));
    EXPECT_EQ(tree->branchesLocation(), URL::fromString("http://host/r/branches"));
    EXPECT_EQ(workingTree({.repository = tree})->repository(), tree);
}

TEST(SourceTreeFacts, AreAbsentUnlessGivenButReachableAndValid) {
    const HostRepository tree{HostRepository::Facts{}};
    EXPECT_EQ(tree.name(), String());
    EXPECT_EQ(tree.location(), String());
    EXPECT_TRUE(tree.reachable());
    EXPECT_TRUE(tree.isValid());
    EXPECT_EQ(tree.user(), String());
    EXPECT_EQ(tree.trunkLocation(), URL());
    EXPECT_EQ(tree.branchesLocation(), URL());
    EXPECT_EQ(HostWorkingTree(HostWorkingTree::Facts{}).repository(), nullptr);
}

TEST(SourceTreeKinds, AreToldApartByClass) {
    const QuenSourceControlSourceTreePtr trees[]{repository(), workingTree(), otherTree()};
    std::vector<bool> repositories;
    std::vector<bool> workingTrees;
    for (const auto& tree : trees) {
        repositories.push_back(dynamic_cast<QuenSourceControlRepository*>(tree.get()) != nullptr);
        workingTrees.push_back(dynamic_cast<QuenSourceControlWorkingTree*>(tree.get()) != nullptr);
    }
    EXPECT_EQ(repositories, (std::vector{true, false, false}));
    EXPECT_EQ(workingTrees, (std::vector{false, true, false}));
}

TEST(SourceTreeDescriptions, NameTheClassAndTheTree) {
    const TreeFacts facts{.name = "ours"};
    EXPECT_EQ(repository(facts)->descriptionForAssertionMessage(),
              "<QuenSourceControlRepository \"ours\">");
    EXPECT_EQ(workingTree(facts)->descriptionForAssertionMessage(),
              "<QuenSourceControlWorkingTree \"ours\">");
    EXPECT_EQ(otherTree(facts)->descriptionForAssertionMessage(),
              "<QuenSourceControlSourceTree \"ours\">");
}

} // namespace
} // namespace quen::test
