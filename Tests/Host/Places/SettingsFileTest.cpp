#include "Host/Places/SettingsFile.h"
#include "Tests/Host/ScratchDirectory.h"
#include "Tests/Support/CaseName.h"

#include <filesystem>
#include <gtest/gtest.h>

namespace quen::test {

namespace {

struct Case {
    const char* name;
    const char* text;
    Settings expected;
};

void PrintTo(const Case& c, std::ostream* out) {
    *out << c.name;
}

class SettingsTest : public testing::TestWithParam<Case> {};

TEST_P(SettingsTest, AreReadLineByLine) {
    std::string problem;
    const auto settings = parseSettings(GetParam().text, ".quen", problem);
    ASSERT_TRUE(settings.has_value()) << problem;
    EXPECT_EQ(settings->layout.trunk, GetParam().expected.layout.trunk);
    EXPECT_EQ(settings->layout.branches, GetParam().expected.layout.branches);
    EXPECT_EQ(settings->user, GetParam().expected.user);
}

INSTANTIATE_TEST_SUITE_P(
    Good, SettingsTest,
    testing::Values(
        Case{"nothing", "", {}}, Case{"comments", "# a = b\n\n  # c\n", {}},
        Case{"all",
             "trunk = ^/main\nbranches = http://h/r/b\nusername = alice\n",
             {{"^/main", "http://h/r/b"}, "alice"}},
        Case{"no blanks and no line end", "trunk=^/main", {{"^/main", ""}, ""}},
        Case{"blanks around", " \ttrunk\t=  ^/main \t\r\n", {{"^/main", ""}, ""}},
        Case{"an equals sign in the value", "trunk = http://h/?a=b", {{"http://h/?a=b", ""}, ""}},
        Case{"the last one counts", "username = a\nusername = b\n", {{"", ""}, "b"}}),
    CaseName());

struct BadCase {
    const char* name;
    const char* text;
    const char* problem;
};

class BadSettingsTest : public testing::TestWithParam<BadCase> {};

TEST_P(BadSettingsTest, AreRefusedWithFileAndLine) {
    std::string problem;
    EXPECT_FALSE(parseSettings(GetParam().text, "/w/.quen", problem).has_value());
    EXPECT_EQ(problem, GetParam().problem);
}

INSTANTIATE_TEST_SUITE_P(
    Bad, BadSettingsTest,
    testing::Values(
        BadCase{"an unknown name", "\n# x\ntrnk = a\n",
                "/w/.quen:3: \"trnk\" is not a setting; there are trunk, branches and username."},
        BadCase{"no equals sign", "trunk ^/main\n",
                "/w/.quen:1: expected `name = value`, as in `trunk = ^/trunk`."},
        BadCase{"no value", "trunk = ^/main\nbranches =\n",
                "/w/.quen:2: \"branches\" is given no value."},
        BadCase{"no name", "= a",
                "/w/.quen:1: \"\" is not a setting; there are trunk, branches and "
                "username."}),
    CaseName());

/// A directory that looks like a working copy: `top`, with `top/src` in it.
class SettingsForTest : public testing::Test {
protected:
    void SetUp() override {
        std::filesystem::create_directories(path("top/.svn"));
        std::filesystem::create_directories(path("top/src"));
    }
    std::string path(std::string_view name) const { return directory_.pathOf(name).str(); }
    std::string userFor(std::string_view name) const {
        std::string problem;
        const auto settings = settingsFor(path(name), problem);
        return settings ? settings->user : "problem: " + problem;
    }

    ScratchDirectory directory_;
};

TEST_F(SettingsForTest, TheTopDirectoryIsTheOneWithTheClientsData) {
    EXPECT_EQ(topDirectoryOf(path("top")), path("top"));
    EXPECT_EQ(topDirectoryOf(path("top/src/new/a.c")), path("top"));
    EXPECT_EQ(topDirectoryOf(path("other")), "");
}

TEST_F(SettingsForTest, AFileInTheTopDirectoryComesBeforeOneAbove) {
    directory_.write(".quen", "username = above\n");
    EXPECT_EQ(userFor("top/src"), "above");
    directory_.write("top/.quen", "username = top\n");
    EXPECT_EQ(userFor("top/src"), "top");
}

TEST_F(SettingsForTest, AFileBelowTheTopDirectoryDoesNotCount) {
    directory_.write("top/src/.quen", "username = below\n");
    EXPECT_EQ(userFor("top/src"), "");
}

TEST_F(SettingsForTest, OutsideAWorkingCopyThereAreNone) {
    directory_.write(".quen", "username = above\n");
    EXPECT_EQ(userFor("other"), "");
}

TEST_F(SettingsForTest, WhatIsNoFileIsAProblem) {
    std::filesystem::create_directory(path("top/.quen"));
    EXPECT_EQ(userFor("top"), "problem: " + path("top/.quen") +
                                  " cannot be read; make it a readable file, or take it away.");
}

} // namespace

} // namespace quen::test
