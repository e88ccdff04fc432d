#include "Foundation/PegPath.h"

#include <gtest/gtest.h>

namespace quen::test {
namespace {

TEST(PegPath, IsClosedWhereItsNameHoldsAnAt) {
    const struct {
        const char* path;
        const char* closed;
    } cases[] = {
        {"", ""},
        {"a", "a"},
        {"a@2", "a@2@"},
        {"a@", "a@@"},
        {"@", "@@"},
        {"d@2/a", "d@2/a"},
        {"d/@a", "d/@a@"},
        {"a@2/", "a@2/@"},
        {"/a", "/a"},
        {"^/b@c", "^/b@c@"},
        {"http://u@h/r", "http://u@h/r"},
    };
    for (const auto& each : cases) {
        EXPECT_EQ(withPegClosed(each.path), each.closed) << each.path;
        EXPECT_EQ(needsPegClosed(each.path), withPegClosed(each.path) != each.path) << each.path;
    }
}

TEST(PegPath, StandsBeforeItsRevision) {
    const struct {
        const char* location;
        const char* pinned;
        const char* ofClosed;
    } cases[] = {
        {"x", "x@7", "x@7"},
        {"x@", "x@@7", "x@7"},
        {"x@@", "x@@@7", "x@@7"},
        {"a@b", "a@b@7", "a@b@7"},
    };
    for (const auto& each : cases) {
        EXPECT_EQ(withPeg(each.location, "7"), each.pinned) << each.location;
        EXPECT_EQ(locationAtRevision(each.location, "7"), each.ofClosed) << each.location;
        EXPECT_EQ(withoutPeg(each.pinned), each.location);
    }
}

TEST(PegPath, LosesOnlyARevisionBehindItsName) {
    for (const std::string_view location : {"", "a", "/a", "d@2/a", "d@2/", "http://u@h/r"}) {
        EXPECT_EQ(withoutPeg(location), location);
    }
    EXPECT_EQ(withoutPeg("@5"), "");
    EXPECT_EQ(withoutPeg("d/@5"), "d/");
}

TEST(PegPath, HidesAndShowsTheAtOfAName) {
    const struct {
        const char* plain;
        const char* encoded;
    } cases[] = {
        {"http://h/r/a@2", "http://h/r/a%402"}, {"http://h/r/a@2/", "http://h/r/a%402/"},
        {"http://h/r/@@", "http://h/r/%40%40"}, {"http://h/r/a", "http://h/r/a"},
        {"http://u@h/r", "http://u@h/r"},       {"http://u@h", "http://u@h"},
    };
    for (const auto& each : cases) {
        EXPECT_EQ(withEncodedAt(each.plain), each.encoded);
        EXPECT_EQ(withPlainAt(each.encoded), each.plain);
    }
    EXPECT_EQ(withPlainAt("http://h/d%402/a"), "http://h/d%402/a");
    EXPECT_EQ(withPlainAt("http://u%40v@h/r"), "http://u%40v@h/r");
    EXPECT_EQ(withPlainAt("http://u%40v@h"), "http://u%40v@h");
}

} // namespace
} // namespace quen::test
