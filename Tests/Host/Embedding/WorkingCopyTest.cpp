// The questions of an environment, with the real client and the module as it is found beside the
// program.

#include "Host/Embedding/ErrorDescription.h"
#include "Host/Embedding/InstalledModule.h"
#include "Host/Embedding/WorkingCopy.h"
#include "Host/PlugInLoader.h"
#include "Tests/Faults/RealClient.h"

#include <filesystem>
#include <gtest/gtest.h>
#include <map>

namespace quen::test {
namespace {

QuenSourceControlProtocolPtr installedProvider() {
    Error error;
    auto provider = loadProvider(installedModule(), &error);
    EXPECT_NE(provider, nullptr) << descriptionOfError(error);
    return provider;
}

/// r2 by alice: `a.c` of three lines, and `gone.c`. r3 by bob changes the second line.
class WorkingCopyTest : public testing::Test {
protected:
    WorkingCopyTest() : copy_(installedProvider(), sandbox().workingCopy().string()) {
        sandbox().write("a.c", "one\ntwo\nthree\n");
        sandbox().write("gone.c", "gone\n");
        sandbox().svn({"add", "-q", "a.c", "gone.c"});
        sandbox().commit("First", "alice");
        sandbox().write("a.c", "one\nTWO\nthree\n");
        sandbox().commit("Second", "bob");
    }

    const Sandbox& sandbox() const { return client_.sandbox(); }
    std::string path(const std::string& name) const {
        return (sandbox().workingCopy() / name).string();
    }
    std::string ignoredNames() const {
        return sandbox().run({"svn", "propget", "svn:ignore", "."}, sandbox().workingCopy()).out;
    }

    RealClient client_;
    WorkingCopy copy_;
};

TEST_F(WorkingCopyTest, LocalChangesAreWhatIsNotAsItWasCheckedOut) {
    sandbox().svn({"propset", "-q", "svn:ignore", "*.log", "."});
    sandbox().write("a.c", "changed\n");
    sandbox().write("deep/new.c", "new\n");
    sandbox().write("x.log", "ignored\n");
    std::filesystem::remove(path("gone.c"));
    const auto answer = copy_.localChanges();
    EXPECT_FALSE(answer.error) << descriptionOfError(answer.error);
    std::map<std::string, bool> found;
    for (const StatusItem& item : answer.items) {
        found[item.path] = item.isUnversioned();
    }
    EXPECT_EQ(found, (std::map<std::string, bool>{{sandbox().workingCopy().string(), false},
                                                  {path("a.c"), false},
                                                  {path("deep"), true},
                                                  {path("gone.c"), false}}));
    EXPECT_EQ(copy_.localChanges(path("a.c")).items.size(), 1U);
}

TEST_F(WorkingCopyTest, LocalDifferenceIsOneTextOfThePathsAlone) {
    EXPECT_EQ(copy_.localDifference({path("a.c")}).items, "");
    sandbox().write("a.c", "one\nTWO\nTHREE\n");
    sandbox().write("gone.c", "other\n");
    const auto one = copy_.localDifference({path("a.c")});
    EXPECT_FALSE(one.error) << descriptionOfError(one.error);
    EXPECT_NE(one.items.find("-three\n+THREE\n"), std::string::npos) << one.items;
    EXPECT_EQ(one.items.find("gone"), std::string::npos) << one.items;
    const auto both = copy_.localDifference({path("a.c"), path("gone.c")});
    EXPECT_NE(both.items.find("-gone\n+other\n"), std::string::npos) << both.items;
}

TEST_F(WorkingCopyTest, BlameNamesWhoWroteEachLine) {
    const auto answer = copy_.blame(path("a.c"));
    EXPECT_FALSE(answer.error) << descriptionOfError(answer.error);
    std::string told;
    for (const BlameLine& line : answer.items) {
        EXPECT_TRUE(line.date.has_value());
        told += std::to_string(line.line) + " r" + std::to_string(line.revision.value_or(0)) + ' ' +
                line.author + '\n';
    }
    EXPECT_EQ(told, "1 r2 alice\n2 r3 bob\n3 r2 alice\n");
}

TEST_F(WorkingCopyTest, InfoSaysWhereAnItemComesFrom) {
    const auto answer = copy_.info(path("a.c"));
    ASSERT_TRUE(answer.items.has_value()) << descriptionOfError(answer.error);
    EXPECT_EQ(answer.items->url, sandbox().url("trunk/a.c"));
    EXPECT_EQ(answer.items->repositoryRoot, sandbox().url());
    EXPECT_EQ(answer.items->revision, 3);
    EXPECT_EQ(answer.items->author, "bob");
    EXPECT_TRUE(answer.items->date.has_value());
}

TEST_F(WorkingCopyTest, TheHistoryComesPageByPage) {
    const LogPage first = copy_.log(copy_.directory(), 2, std::nullopt, true);
    ASSERT_EQ(first.entries.size(), 2U) << descriptionOfError(first.error);
    EXPECT_EQ(first.entries[0].message, "Second");
    EXPECT_EQ(first.entries[0].author, "bob");
    ASSERT_EQ(first.entries[0].changedPaths.size(), 1U);
    EXPECT_EQ(first.entries[0].changedPaths[0].path, "/trunk/a.c");
    ASSERT_EQ(first.next, 1);
    const LogPage second = copy_.log(copy_.directory(), 2, first.next);
    ASSERT_EQ(second.entries.size(), 1U) << descriptionOfError(second.error);
    EXPECT_EQ(second.entries[0].revision, 1);
    EXPECT_EQ(second.next, std::nullopt);
}

TEST_F(WorkingCopyTest, NamesAreIgnoredAndNoLonger) {
    sandbox().write("b.log", "b\n");
    sandbox().write("c.log", "c\n");
    const Error added = copy_.addIgnored({path("b.log"), path("c.log")});
    EXPECT_FALSE(added) << descriptionOfError(added, RequestTypeIgnore);
    EXPECT_NE(ignoredNames().find("b.log\n"), std::string::npos);
    EXPECT_NE(ignoredNames().find("c.log\n"), std::string::npos);
    const Error removed = copy_.removeIgnored({path("b.log")});
    EXPECT_FALSE(removed) << descriptionOfError(removed, RequestTypeUnignore);
    EXPECT_EQ(ignoredNames().find("b.log"), std::string::npos) << ignoredNames();
    EXPECT_NE(ignoredNames().find("c.log\n"), std::string::npos);
}

TEST_F(WorkingCopyTest, WhatCannotBeAnsweredIsAnError) {
    sandbox().write("plain/x.log", "not under version control\n");
    sandbox().write("-x", "looks like an option\n");
    const std::string elsewhere = sandbox().root().string();
    struct Row {
        const char* name;
        Error error;
        const char* part;
    };
    const Row rows[] = {
        {"changes", copy_.localChanges(elsewhere).error, "is not under version control"},
        {"difference", copy_.localDifference({path("plain/x.log")}).error, "was not found"},
        {"blame", copy_.blame(path("plain/x.log")).error, "was not found"},
        {"info", copy_.info(path("plain/x.log")).error, "was not found"},
        {"history", copy_.log(elsewhere, 2).error, "is not under version control"},
        {"ignoring below an unversioned directory", copy_.addIgnored({path("plain/x.log")}),
         "version control"},
        {"ignoring what looks like an option", copy_.addIgnored({path("-x")}), "-x"},
    };
    for (const Row& row : rows) {
        const std::string text = descriptionOfError(row.error);
        EXPECT_NE(text.find(row.part), std::string::npos) << row.name << ": " << text;
    }
    EXPECT_EQ(ignoredNames(), "");
    EXPECT_EQ(copy_.info(path("plain/x.log")).items, std::nullopt);
    EXPECT_EQ(copy_.log(elsewhere, 2).next, std::nullopt);
}

} // namespace
} // namespace quen::test
