#include "Tools/Server/WorkingCopies/StatusTable.h"
#include "Tools/Server/WorkingCopies/WorkingCopy.h"

#include <gmock/gmock.h>

namespace quen::test {

using namespace tools;
using namespace tools::server;

namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::Pair;

StatusItem item(std::string path, const char* status) {
    StatusItem made;
    made.path = std::move(path);
    made.status = status;
    made.property = "none";
    return made;
}

StatusItems items(std::vector<StatusItem> list) {
    StatusItems made;
    for (StatusItem& each : list) {
        made.put(std::move(each));
    }
    return made;
}

std::vector<std::string> pathsOf(const std::vector<StatusItem>& items) {
    std::vector<std::string> paths;
    for (const StatusItem& each : items) {
        paths.push_back(each.path);
    }
    return paths;
}

TEST(StatusTable, TellsDifferencesOnly) {
    StatusTable table;
    table.replaceAll(
        items({item("/w/a", "modified"), item("/w/b", "added"), item("/w/c", "missing")}));
    const StatusChange change = table.replaceAll(
        items({item("/w/a", "modified"), item("/w/b", "modified"), item("/w/d", "added")}));
    EXPECT_THAT(pathsOf(change.changed), ElementsAre("/w/b", "/w/d"));
    EXPECT_THAT(pathsOf(change.removed), ElementsAre("/w/c"));
    EXPECT_TRUE(table
                    .replaceAll(items({item("/w/a", "modified"), item("/w/b", "modified"),
                                       item("/w/d", "added")}))
                    .isEmpty());
}

TEST(StatusTable, AReportOfSomePathsLeavesTheOthersAlone) {
    StatusTable table;
    table.replaceAll(items({item("/w/d", "modified"), item("/w/d.c", "modified"),
                            item("/w/d/x", "modified"), item("/w/d/y", "modified")}));
    const StatusChange change = table.replaceBelow({"/w/d"}, items({item("/w/d/y", "conflicted")}));
    EXPECT_THAT(pathsOf(change.changed), ElementsAre("/w/d/y"));
    EXPECT_THAT(pathsOf(change.removed), ElementsAre("/w/d", "/w/d/x"));
    EXPECT_THAT(table.items().counts(true),
                ElementsAre(Pair("conflicted", 1), Pair("modified", 1)));
}

TEST(StatusItems, CountsWhatIsThere) {
    StatusItems some = items({item("/w/a", "modified"), item("/w/b", "added"),
                              item("/w/i", "ignored"), item("/w/b", "modified")});
    StatusItem external = item("/w/x", "none");
    external.external = true;
    some.put(external);
    EXPECT_THAT(some.counts(false), ElementsAre(Pair("modified", 2), Pair("none", 1)));
    EXPECT_EQ(some.counts(true)["ignored"], 1U);
    EXPECT_EQ(some.externals(), 1U);
    StatusItems moved;
    some.moveTo(moved, "/w/x");
    some.moveTo(moved, "/w/a");
    EXPECT_EQ(some.externals(), 0U);
    EXPECT_EQ(moved.externals(), 1U);
    EXPECT_THAT(some.counts(false), ElementsAre(Pair("modified", 1)));
    EXPECT_THAT(moved.counts(false), ElementsAre(Pair("modified", 1), Pair("none", 1)));
}

TEST(StatusTable, FindsWhatIsUnversionedAbove) {
    StatusTable table;
    table.replaceAll(items({item("/w/new", "unversioned"), item("/w/newer", "modified")}));
    ASSERT_NE(table.unversionedAt("/w/new/a/b"), nullptr);
    EXPECT_EQ(table.unversionedAt("/w/new/a/b")->path, "/w/new");
    EXPECT_EQ(table.unversionedAt("/w/newer"), nullptr);
    EXPECT_EQ(table.unversionedAt("/w"), nullptr);
}

TEST(WorkingCopy, NobodyHearsOfIgnoredItemsBeforeAskingForThem) {
    WorkingCopy copy({"/w", "", "", "", 1, {}, false});
    EXPECT_FALSE(copy.replaceAll(items({item("/w/o", "ignored"), item("/w/a", "modified")})).news);
    EXPECT_EQ(copy.snapshot(false).items.size(), 1U);
    EXPECT_FALSE(copy.replaceBelow({"/w/p"}, items({item("/w/p", "ignored")})));
    // One that was told of is taken back when it becomes an ignored one.
    const auto hidden = copy.replaceBelow({"/w/a"}, items({item("/w/a", "ignored")}));
    ASSERT_TRUE(hidden);
    EXPECT_THAT(hidden->change.changed, IsEmpty());
    EXPECT_THAT(pathsOf(hidden->change.removed), ElementsAre("/w/a"));
    EXPECT_EQ(copy.snapshot(true).items.size(), 3U);
    EXPECT_TRUE(copy.replaceBelow({"/w/q"}, items({item("/w/q", "ignored")})));
}

TEST(WorkingCopy, TheGenerationGrowsWithEveryDifference) {
    WorkingCopy copy({"/w", "", "", "", 1, {}, false});
    copy.replaceAll(items({}));
    const auto first = copy.summary(false).generation;
    EXPECT_GT(first, 0U);
    EXPECT_FALSE(copy.replaceAll(items({})).news);
    EXPECT_EQ(copy.summary(false).generation, first);
    const auto news = copy.replaceAll(items({item("/w/a", "modified")})).news;
    ASSERT_TRUE(news);
    EXPECT_EQ(news->generation, first + 1);
    EXPECT_EQ(copy.summary(false).generation, first + 1);
}

/// Its items may be answered when others have followed, whose differences must not pass for old.
TEST(WorkingCopy, AReportHasTheGenerationThatItMade) {
    WorkingCopy copy({"/w", "", "", "", 1, {}, false});
    const auto first = copy.replaceAll(items({item("/w/a", "modified")}));
    EXPECT_EQ(first.generation, copy.summary(false).generation);
    const auto second = copy.replaceAll(items({item("/w/b", "modified")}));
    ASSERT_TRUE(second.news);
    EXPECT_EQ(second.generation, second.news->generation);
    EXPECT_GT(second.generation, first.generation);
    EXPECT_EQ(copy.replaceAll(items({item("/w/b", "modified")})).generation, second.generation);
}

TEST(StatusItem, HoldsWhatSaysSomething) {
    StatusEntry entry;
    entry.path = "/w/a";
    entry.item = "modified";
    entry.properties = "none";
    entry.revision = 7;
    EXPECT_EQ(statusItemJson(statusItemOf(entry)).dump(),
              R"({"path":"/w/a","status":"modified","property":"none","revision":7})");
    entry.isCopied = entry.isSwitched = entry.isTreeConflict = entry.isWorkingCopyLocked = true;
    entry.incomingItem = "deleted";
    entry.incomingProperties = "none";
    entry.changelist = "c";
    EXPECT_EQ(
        statusItemJson(statusItemOf(entry)).dump(),
        R"({"path":"/w/a","status":"modified","property":"none","copied":true,"incoming":"deleted",)"
        R"("changelist":"c","treeConflict":true,"locked":true,"switched":true,"revision":7})");
}

} // namespace

} // namespace quen::test
