#include "Host/Embedding/Records.h"
#include "QuenFoundation/QuenSourceControlConstants.h"

#include <gtest/gtest.h>

namespace quen::test {
namespace {

const Date noon{std::chrono::microseconds(1'700'000'000'000'000)};

TEST(Records, StatusItemsHoldPathAndBothStates) {
    const auto items = statusItems(Array{Dictionary{
        {QuenSourceControlOperationPathKey, "/w/a.c"},
        {QuenSourceControlOperationWCStatusKey, std::int64_t{QuenSourceControlStatusModified}},
        {QuenSourceControlOperationRepositoryStatusKey,
         std::int64_t{QuenSourceControlStatusDeleted}}}});
    ASSERT_EQ(items.size(), 1U);
    EXPECT_EQ(items[0].path, "/w/a.c");
    EXPECT_TRUE(items[0].local.has(QuenSourceControlStatusModified));
    EXPECT_FALSE(items[0].local.has(QuenSourceControlStatusAdded));
    EXPECT_TRUE(items[0].repository.has(QuenSourceControlStatusDeleted));
}

struct Changed {
    std::uint32_t status;
    bool isChanged;
    bool isConflicted;
    bool isUnversioned;
};

constexpr Changed states[] = {
    {0, false, false, false},
    {QuenSourceControlStatusModified, true, false, false},
    {QuenSourceControlStatusMissing, true, false, false},
    {QuenSourceControlStatusPropertiesConflicted, true, true, false},
    {QuenSourceControlStatusConflicted | QuenSourceControlStatusModified, true, true, false},
    {QuenSourceControlStatusUnversioned, false, false, true},
    {QuenSourceControlStatusIgnored, false, false, false},
};

TEST(Records, AStatusItemSaysWhatAPersonAsks) {
    for (const Changed& state : states) {
        const StatusItem item{"a", StatusFlags(state.status), {}};
        EXPECT_EQ(item.isChanged(), state.isChanged) << state.status;
        EXPECT_EQ(item.isConflicted(), state.isConflicted) << state.status;
        EXPECT_EQ(item.isUnversioned(), state.isUnversioned) << state.status;
    }
}

TEST(Records, LogEntriesHoldNumbersDatesAndPaths) {
    const auto entries = logEntries(Array{
        Dictionary{{QuenSourceControlOperationRevisionKey, "12"},
                   {QuenSourceControlOperationAuthorKey, "jane"},
                   {QuenSourceControlOperationDateKey, noon},
                   {QuenSourceControlOperationMessageKey, "Why"},
                   {QuenSourceControlOperationFilesKey,
                    Dictionary{{"/trunk/a.c", std::int64_t{QuenSourceControlStatusAdded}}}}}});
    ASSERT_EQ(entries.size(), 1U);
    EXPECT_EQ(entries[0].revision, 12);
    EXPECT_EQ(entries[0].author, "jane");
    EXPECT_EQ(entries[0].date, noon);
    EXPECT_EQ(entries[0].message, "Why");
    ASSERT_EQ(entries[0].changedPaths.size(), 1U);
    EXPECT_EQ(entries[0].changedPaths[0].path, "/trunk/a.c");
    EXPECT_TRUE(entries[0].changedPaths[0].status.has(QuenSourceControlStatusAdded));
}

TEST(Records, OneValueResults) {
    const Value commit(Array{Dictionary{{QuenSourceControlOperationRevisionKey, "7"}}});
    EXPECT_EQ(committedRevision(commit), 7);
    EXPECT_EQ(committedRevision(Value()), std::nullopt);
    const Value text(Array{Dictionary{{QuenSourceControlOperationContentKey, "@@ -1 +1 @@"}}});
    EXPECT_EQ(differenceText(text), "@@ -1 +1 @@");
    const Value branch(Array{Dictionary{{QuenSourceControlOperationNameKey, "polite"}}});
    EXPECT_EQ(branchName(branch), "polite");
}

TEST(Records, WhatIsMissingOrOfAnotherShapeIsEmpty) {
    const Value strange(Array{Value(3), Dictionary{{QuenSourceControlOperationRevisionKey, "12x"},
                                                   {QuenSourceControlOperationDateKey, "today"}}});
    EXPECT_EQ(statusItems(strange).size(), 2U);
    const auto lines = blameLines(strange);
    ASSERT_EQ(lines.size(), 2U);
    EXPECT_EQ(lines[1].revision, std::nullopt);
    EXPECT_EQ(lines[1].date, std::nullopt);
    EXPECT_TRUE(logEntries(Value()).empty());
    EXPECT_TRUE(itemInfos(Value("text")).empty());
    EXPECT_EQ(writtenPath(Value()), "");
}

} // namespace
} // namespace quen::test
