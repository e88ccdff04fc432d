#include "Host/Keeping/TheirsKeeper.h"
#include "Host/RunContext.h"
#include "Tests/Faults/RealClient.h"
#include "Tests/Host/Keeping/TwoPeople.h"

#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <map>

namespace quen::test {

namespace {

namespace fs = std::filesystem;

/// What lies beside, by the item it belongs to.
std::map<std::string, std::string> besideOf(const std::vector<KeptTheirs>& kept) {
    std::map<std::string, std::string> beside;
    for (const KeptTheirs& each : kept) {
        EXPECT_FALSE(each.error) << each.error.description().str();
        beside[each.conflict.path.str()] =
            each.theirs.isNil() ? "-" : fs::path(each.theirs.str()).filename().string();
    }
    return beside;
}

TEST(TheirsKeeperTest, WhatAnUpdateDecidedAgainstLiesBeside) {
    const TwoPeople people;
    const std::string name = "it's @ \u00FC";
    for (const std::string& each :
         {std::string("a.c"), name, std::string("both"), std::string("p")}) {
        people.write(people.ours(), each, "1\n2\n3\n");
    }
    people.write(people.ours(), "keywords", "$Rev$\n1\n");
    people.write(people.ours(), "binary", std::string("\0\1", 2));
    people.svn(people.ours(), {"add", "-q", "--force", "."});
    people.svn(people.ours(), {"propset", "-q", "svn:keywords", "Rev", "keywords"});
    people.svn(people.ours(), {"propset", "-q", "colour", "blue", "p", "both"});
    people.commitOurs("The beginning");
    people.updateTheirs();
    for (const std::string& each : {std::string("a.c"), name, std::string("both")}) {
        people.write(people.theirs(), each, "1\ntheirs\n3\n");
    }
    people.write(people.theirs(), "keywords", "$Rev$\ntheirs\n");
    people.write(people.theirs(), "binary", std::string("\0\2theirs\r\n", 10));
    people.svn(people.theirs(), {"propset", "-q", "colour", "red", "p", "both"});
    people.commitTheirs("Theirs");
    for (const std::string& each : {std::string("a.c"), name, std::string("both")}) {
        people.write(people.ours(), each, "1\nours\n3\n");
    }
    people.write(people.ours(), "keywords", "$Rev$\nours\n");
    people.write(people.ours(), "binary", "ours");
    people.svn(people.ours(), {"propset", "-q", "colour", "green", "p", "both"});
    people.write(people.ours(), "a.c.theirs.r3", "taken");

    const Told told = people.update();
    EXPECT_FALSE(told.error) << told.error.description().str();
    EXPECT_TRUE(told.facts.holdsSettled());
    const auto kept = keepTheirsOfUpdate(told.facts, people.sandbox().root().string());
    EXPECT_EQ(besideOf(kept),
              (std::map<std::string, std::string>{{people.named("a.c"), "a.c.theirs.r3.2"},
                                                  {people.named(name), name + ".theirs.r3"},
                                                  {people.named("both"), "both.theirs.r3"},
                                                  {people.named("keywords"), "keywords.theirs.r3"},
                                                  {people.named("binary"), "binary.theirs.r3"},
                                                  {people.named("p"), "-"}}));
    EXPECT_EQ(people.read(people.ours(), "a.c"), "1\nours\n3\n");
    EXPECT_EQ(people.read(people.ours(), "a.c.theirs.r3"), "taken");
    EXPECT_EQ(people.read(people.ours(), "a.c.theirs.r3.2"), "1\ntheirs\n3\n");
    EXPECT_EQ(people.read(people.ours(), name + ".theirs.r3"), "1\ntheirs\n3\n");
    EXPECT_EQ(people.read(people.ours(), "keywords.theirs.r3"), "$Rev: 3 $\ntheirs\n");
    EXPECT_EQ(people.read(people.ours(), "binary.theirs.r3"), std::string("\0\2theirs\r\n", 10));
    for (const char* const each : {"p", "both"}) {
        EXPECT_NE(people.read(people.ours(), std::string(each) + ".theirs-properties.r3")
                      .find("\n  colour\n    red\n"),
                  std::string::npos);
    }
}

TEST(TheirsKeeperTest, PropertiesOfADirectoryLieWithinIt) {
    const TwoPeople people;
    people.svn(people.ours(), {"propset", "-q", "colour", "blue", "."});
    people.commitOurs("The beginning");
    people.svn(people.ours(), {"update", "-q"});
    people.updateTheirs();
    people.svn(people.theirs(), {"propdel", "-q", "colour", "."});
    people.commitTheirs("Theirs");
    people.svn(people.ours(), {"propset", "-q", "colour", "green", "."});

    const Told told = people.update();
    const auto kept = keepTheirsOfUpdate(told.facts, people.sandbox().root().string());
    ASSERT_EQ(kept.size(), 1U);
    EXPECT_FALSE(kept[0].error) << kept[0].error.description().str();
    EXPECT_EQ(kept[0].theirsProperties,
              String((people.ours() / "dir.theirs-properties.r3").string()));
    EXPECT_EQ(people.read(people.ours(), "dir.theirs-properties.r3"), "No properties.\n");
}

TEST(TheirsKeeperTest, ATreeConflictHidesNothingOfWhatWasSettled) {
    const TwoPeople people;
    people.write(people.ours(), "text", "1\n2\n3\n");
    people.write(people.ours(), "tree", "1\n2\n3\n");
    people.svn(people.ours(), {"add", "-q", "text", "tree"});
    people.commitOurs("The beginning");
    people.updateTheirs();
    people.write(people.theirs(), "text", "1\ntheirs\n3\n");
    people.svn(people.theirs(), {"remove", "-q", "tree"});
    people.commitTheirs("Theirs");
    people.write(people.ours(), "text", "1\nours\n3\n");
    people.write(people.ours(), "tree", "1\nours\n3\n");

    const Told told = people.update();
    EXPECT_TRUE(told.error) << "the client ends with 1 where a tree conflict is left";
    EXPECT_TRUE(told.facts.holdsLeft());
    EXPECT_EQ(besideOf(keepTheirsOfUpdate(told.facts, people.sandbox().root().string())),
              (std::map<std::string, std::string>{{people.named("text"), "text.theirs.r3"}}));
    EXPECT_EQ(people.read(people.ours(), "text.theirs.r3"), "1\ntheirs\n3\n");
    EXPECT_EQ(people.read(people.ours(), "tree"), "1\nours\n3\n");
}

TEST(TheirsKeeperTest, WhatAMergeDecidedAgainstLiesBeside) {
    const TwoPeople people;
    people.write(people.ours(), "sub dir/a b@1", "1\n2\n3\n");
    people.svn(people.ours(), {"add", "-q", "sub dir"});
    people.commitOurs("The beginning");
    people.svn(people.ours(), {"copy", "-q", "-m", "A branch", "^/trunk", "^/branches/b"});
    people.updateTheirs();
    people.write(people.theirs(), "sub dir/a b@1", "1\ntheirs\n3\n4\n");
    people.commitTheirs("Theirs");
    people.svn(people.ours(), {"switch", "-q", "^/branches/b", "."});
    people.write(people.ours(), "sub dir/a b@1", "1\nours\n3\n");
    people.commitOurs("On the branch");
    people.svn(people.ours(), {"update", "-q"});

    const String source = people.url("trunk");
    const Told told = people.merge(source);
    EXPECT_FALSE(told.error) << told.error.description().str();
    const auto kept = keepTheirsOfMerge(told.facts, people.sandbox().root().string(), source);
    ASSERT_EQ(kept.size(), 1U);
    EXPECT_FALSE(kept[0].error) << kept[0].error.description().str();
    EXPECT_EQ(people.read(people.ours(), "sub dir/a b@1"), "1\nours\n3\n");
    ASSERT_TRUE(kept[0].revision.has_value());
    EXPECT_EQ(
        people.read(people.ours(), "sub dir/a b@1.theirs.r" + std::to_string(*kept[0].revision)),
        "1\ntheirs\n3\n4\n");
}

} // namespace

} // namespace quen::test
