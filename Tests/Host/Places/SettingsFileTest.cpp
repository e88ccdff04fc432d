#include "Host/Places/SettingsFile.h"
#include "Tests/Host/ScratchDirectory.h"
#include "Tests/Support/CaseName.h"

#include <filesystem>
#include <functional>
#include <gtest/gtest.h>
#include <string>
#include <sys/stat.h>
#include <vector>

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

TEST_F(SettingsForTest, OnlyAFileInTheTopDirectoryCounts) {
    directory_.write(".quen", "username = above\n");
    EXPECT_EQ(userFor("top/src"), "");
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

/// What is not a regular file: made by a function of its name, since each would hang or mislead in
/// a way of its own.
TEST_F(SettingsForTest, WhatIsNotARegularFileIsAProblem) {
    directory_.write("other.quen", "username = elsewhere\n");
    const std::string file = path("top/.quen");
    const std::vector<std::function<void()>> makers{
        [&] { std::filesystem::create_directory(file); },
        [&] { std::filesystem::create_symlink(path("other.quen"), file); },
        [&] { std::filesystem::create_symlink("/dev/zero", file); },
        [&] { ASSERT_EQ(mkfifo(file.c_str(), 0600), 0); },
    };
    for (const auto& make : makers) {
        make();
        EXPECT_EQ(userFor("top"), "problem: " + file +
                                      " cannot be read; make it a readable file, or take it away.");
        std::filesystem::remove(file);
    }
}

TEST_F(SettingsForTest, AFileThatIsTooLargeIsAProblem) {
    directory_.write("top/.quen", std::string(65 * 1024, '#'));
    EXPECT_EQ(userFor("top"),
              "problem: " + path("top/.quen") + " is too large for a settings file.");
}

TEST(SettingsOwner, IsThePersonOrTheWorkingCopysOwner) {
    EXPECT_TRUE(mayOwnSettings(1000, 1000, 0));
    EXPECT_TRUE(mayOwnSettings(1000, 0, 1000));
    EXPECT_FALSE(mayOwnSettings(1001, 1000, 1000));
    EXPECT_FALSE(mayOwnSettings(0, 1000, 1000));
}

} // namespace

} // namespace quen::test
