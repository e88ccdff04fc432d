#include "Foundation/PathComponents.h"

#include <gtest/gtest.h>

namespace quen::test {
namespace {

using Components = std::vector<std::string_view>;

TEST(PathComponentsTest, TakesPathsApart) {
    const struct {
        std::string_view path;
        std::string_view last;
        std::string_view parent;
        Components components;
    } cases[] = {
        {"", "", "", {}},
        {"/", "/", "/", {"/"}},
        {"//", "/", "/", {"/"}},
        {"a", "a", "", {"a"}},
        {"a/", "a", "", {"a"}},
        {"/a", "a", "/", {"/", "a"}},
        {"/a/", "a", "/", {"/", "a"}},
        {"//a", "a", "/", {"/", "a"}},
        {"a/b.c", "b.c", "a", {"a", "b.c"}},
        {"a/b//", "b", "a", {"a", "b"}},
        {"a//b", "b", "a", {"a", "b"}},
        {"/a/b/c", "c", "/a/b", {"/", "a", "b", "c"}},
        {".", ".", "", {"."}},
        {"../a", "a", "..", {"..", "a"}},
        {"a b/\xc3\xbc@1", "\xc3\xbc@1", "a b", {"a b", "\xc3\xbc@1"}},
    };
    for (const auto& each : cases) {
        EXPECT_EQ(lastPathComponent(each.path), each.last) << each.path;
        EXPECT_EQ(deletingLastPathComponent(each.path), each.parent) << each.path;
        EXPECT_EQ(pathComponents(each.path), each.components) << each.path;
    }
}

TEST(PathComponentsTest, JoinsWithOneSeparator) {
    const struct {
        std::string_view directory;
        std::string_view component;
        std::string_view expected;
    } cases[] = {
        {"a", "b", "a/b"}, {"a/", "b", "a/b"}, {"a", "/b", "a/b"}, {"a//", "//b", "a/b"},
        {"/", "b", "/b"},  {"", "b", "b"},     {"", "/b", "b"},    {"a", "b/c", "a/b/c"},
        {"a", "", "a"},    {"a/", "", "a"},    {"/", "", "/"},     {"", "", ""},
        {"a", "/", "a"},
    };
    for (const auto& each : cases) {
        EXPECT_EQ(appendingPathComponent(each.directory, each.component), each.expected)
            << each.directory << " and " << each.component;
    }
}

} // namespace
} // namespace quen::test
