#include "Host/Facts/ChangeFacts.h"
#include "QuenFoundation/QuenSourceControlRequestType.h"
#include "Tests/Host/Facts/FactsText.h"
#include "Tests/Support/Reports.h"

#include <algorithm>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <set>

namespace quen::test {

namespace {

using Lines = std::vector<std::string>;

ChangeColumns columnsOf(std::string_view capture) {
    constexpr std::array scheduling = {"add", "copy", "move", "remove", "make-directory"};
    return std::any_of(scheduling.begin(), scheduling.end(),
                       [&](const char* each) {
                           return capture.ends_with("/" + std::string(each) + ".txt");
                       })
               ? ChangeColumns::schedule
               : ChangeColumns::transfer;
}

ChangeFacts factsIn(std::string_view text, ChangeColumns columns = ChangeColumns::transfer) {
    ChangeFactsReader reader(columns);
    reader.take(text);
    return reader.takeFacts();
}

ChangeFacts captured(const std::string& name) {
    const std::string capture = "Facts/change/" + name + ".txt";
    return factsIn(testData(capture), columnsOf(capture));
}

// Single lines

struct LineCase {
    std::string_view line;
    Lines expected;
};

class ChangeLineTest : public testing::TestWithParam<LineCase> {};

TEST_P(ChangeLineTest, IsRead) {
    EXPECT_EQ(linesOf(factsIn(std::string(GetParam().line) + "\n")), GetParam().expected)
        << GetParam().line;
}

INSTANTIATE_TEST_SUITE_P(
    Columns, ChangeLineTest,
    testing::Values(
        LineCase{"A    a.c", {"added a.c"}}, LineCase{"D    a.c", {"deleted a.c"}},
        LineCase{"U    a.c", {"updated a.c"}}, LineCase{"G    a.c", {"merged a.c"}},
        LineCase{"E    a.c", {"existed a.c"}}, LineCase{"R    a.c", {"replaced a.c"}},
        LineCase{"C    a.c", {"conflicted a.c", "conflict a.c: text left"}},
        LineCase{" U   .", {"none . properties updated"}},
        LineCase{"UG   a", {"updated a properties merged"}},
        LineCase{" C   a", {"none a properties conflicted", "conflict a: properties left"}},
        LineCase{"CC   a",
                 {"conflicted a properties conflicted", "conflict a: text left properties left"}},
        LineCase{"   C a", {"none a treeConflict", "conflict a: tree left"}},
        LineCase{"   U a", {"updated a belowTreeConflict"}},
        LineCase{"   A a", {"added a belowTreeConflict"}},
        LineCase{"U B  a", {"updated a lockBroken"}}, LineCase{"  B  a", {"none a lockBroken"}},
        LineCase{"U      a", {"updated   a"}}, LineCase{"U    U    a", {"updated U    a"}},
        LineCase{"A         a", {"added      a"}},
        LineCase{"U    Restored 'a'", {"updated Restored 'a'"}},
        LineCase{"X    a", {"unknown: X    a"}}, LineCase{"U    ", {"unknown: U    "}},
        LineCase{"UX   a", {"unknown: UX   a"}}, LineCase{"U X  a", {"unknown: U X  a"}},
        LineCase{"U  X a", {"unknown: U  X a"}}, LineCase{"U   Xa", {"unknown: U   Xa"}},
        LineCase{"     a", {"unknown:      a"}}, LineCase{"", {}}, LineCase{"   ", {}}));

INSTANTIATE_TEST_SUITE_P(
    Sentences, ChangeLineTest,
    testing::Values(
        LineCase{"Restored 'it's'", {"restored it's"}}, LineCase{"Restored ''", {"restored "}},
        LineCase{"Restored '", {"unknown: Restored '"}}, LineCase{"Reverted 'a'", {"reverted a"}},
        LineCase{"Failed to revert 'a' -- try updating instead.",
                 {"skipped a: try updating instead."}},
        LineCase{"Skipped 'a'", {"skipped a: "}},
        LineCase{"Skipped 'a' -- Node remains in conflict",
                 {"skipped a: Node remains in conflict"}},
        LineCase{"Skipped 'a' -- b' -- Node remains in conflict",
                 {"skipped a' -- b: Node remains in conflict"}},
        LineCase{"Skipped missing target: 'a'", {"skipped a: "}},
        LineCase{"Skipped", {"unknown: Skipped"}}, LineCase{"Sending        a", {"sent a"}},
        LineCase{"Adding  (bin)  a", {"added a"}}, LineCase{"Adding         a", {"added a"}},
        LineCase{"Deleting       a", {"deleted a"}}, LineCase{"Replacing      a", {"replaced a"}},
        LineCase{"Sending        ", {"unknown: Sending        "}},
        LineCase{"At revision 7.", {"target - r=7", "revision 7"}},
        LineCase{"At revision 7x.", {"unknown: At revision 7x."}},
        LineCase{"At revision .", {"unknown: At revision ."}},
        LineCase{"At revision -7.", {"unknown: At revision -7."}},
        LineCase{"At revision 99999999999999999999.",
                 {"unknown: At revision 99999999999999999999."}},
        LineCase{"Updated external to revision 7.", {}},
        LineCase{"Left local modifications as 'a'", {}},
        LineCase{"Something newer", {"unknown: Something newer"}}));

INSTANTIATE_TEST_SUITE_P(
    Conflicts, ChangeLineTest,
    testing::Values(
        LineCase{"Merge conflicts in 'a' marked as resolved.", {"conflict a: text settled"}},
        LineCase{"Merge conflict in 'a' marked as resolved.", {"conflict a: text settled"}},
        LineCase{"Conflict in property 'colour' at 'a b' marked as resolved.",
                 {"conflict a b: properties settled (colour)"}},
        LineCase{"Tree conflict at 'a' marked as resolved.", {"conflict a: tree settled"}},
        LineCase{"Resolved conflicted state of 'a'", {"conflict a: unspecified settled"}},
        LineCase{"C    a\nResolved conflicted state of 'a'",
                 {"conflicted a", "conflict a: text settled"}},
        LineCase{
            "CC   a\nResolved conflicted state of 'a'",
            {"conflicted a properties conflicted", "conflict a: text settled properties settled"}},
        LineCase{
            "CC   a\nMerge conflicts in 'a' marked as resolved.",
            {"conflicted a properties conflicted", "conflict a: text settled properties left"}},
        LineCase{"C  C a\nResolved conflicted state of 'a'",
                 {"conflicted a treeConflict", "conflict a: text settled tree left"}},
        LineCase{"   C a\nResolved conflicted state of 'a'",
                 {"none a treeConflict", "conflict a: tree settled"}},
        LineCase{"C    a\nResolved conflicted state of 'b'",
                 {"conflicted a", "conflict a: text left", "conflict b: unspecified settled"}},
        LineCase{"C    a\nMerge conflicts in 'a' marked as resolved.\nC    a",
                 {"conflicted a", "conflicted a", "conflict a: text left"}},
        LineCase{"  Text conflicts: 2", {"text conflicts: 2 remaining, 0 resolved"}},
        LineCase{"  Tree conflicts: 0 remaining (and 3 already resolved)",
                 {"tree conflicts: 0 remaining, 3 resolved"}},
        LineCase{"  Property conflicts: many", {"unknown:   Property conflicts: many"}}));

INSTANTIATE_TEST_SUITE_P(
    Merges, ChangeLineTest,
    testing::Values(
        LineCase{"--- Merging r3 into '.':", {"merge into . first=3 last=3"}},
        LineCase{"--- Merging r3 through r5 into 'it's':", {"merge into it's first=3 last=5"}},
        LineCase{"--- Reverse-merging r5 through r3 into '.':",
                 {"reverse merge into . first=5 last=3"}},
        LineCase{"--- Merging (from foreign repository) r3 into '.':",
                 {"merge into . first=3 last=3"}},
        LineCase{"--- Merging differences between repository URLs into '.':", {"merge into ."}},
        LineCase{"--- Merging r3 into '':", {"merge into  first=3 last=3"}},
        LineCase{"--- Merging r3 into ':", {}}, LineCase{"--- Merging rx into '.':", {}},
        LineCase{"--- Recording mergeinfo for merge of r3 into '.':\n U   .", {}},
        LineCase{"--- Recording mergeinfo for merge of r3 into '.':\n U   .\n"
                 "--- Merging r5 into '.':\nU    a",
                 {"updated a", "merge into . first=5 last=5"}}));

TEST(ChangeFactsTest, SchedulingHasItsOwnColumns) {
    const auto read = [](std::string_view line) {
        return linesOf(factsIn(std::string(line) + "\n", ChangeColumns::schedule));
    };
    EXPECT_EQ(read("A         a"), Lines{"added a"});
    EXPECT_EQ(read("A  (bin)  a"), Lines{"added a"});
    EXPECT_EQ(read("D         a b"), Lines{"deleted a b"});
    EXPECT_EQ(read("D    a"), Lines{"unknown: D    a"});
    EXPECT_EQ(read("          a"), Lines{"unknown:           a"});
    EXPECT_EQ(read("A         "), Lines{"unknown: A         "});
    EXPECT_EQ(changeColumnsOf(RequestTypeMove), ChangeColumns::schedule);
    EXPECT_EQ(changeColumnsOf(RequestTypeUpdate), ChangeColumns::transfer);
}

// What the real client printed

TEST(ChangeFactsTest, AnUpdateTellsWhatItSettledAndWhatItLeft) {
    const ChangeFacts facts = captured("update-with-tree-conflicts");
    EXPECT_EQ(linesOf(facts.conflicts), (Lines{"deleted-edited: tree left",
                                               "deleted-twice: tree left",
                                               "gone-twice: tree left",
                                               "moved-twice: tree left",
                                               "gone-edited: tree left",
                                               "a & b <ü>: text settled",
                                               "binary: text settled",
                                               "both: text settled properties settled",
                                               "colours: properties settled",
                                               "conflicted: text settled",
                                               "edited-gone: tree left",
                                               "existed: tree left",
                                               "icon@2x.png: text settled",
                                               "in-the-way-of-a-directory: tree left",
                                               "in-the-way-of-a-file: tree left",
                                               "it's: text settled",
                                               "moved-away: tree left",
                                               "moved-dir: tree left",
                                               "properties: properties settled",
                                               "replaced-edited: tree left",
                                               "the-same: tree left"}));
    EXPECT_TRUE(facts.holdsSettled());
    EXPECT_TRUE(facts.holdsLeft());
    EXPECT_EQ(facts.revision, 3);
    EXPECT_EQ(facts.targets, (std::vector<ReachedPlace>{{".", 3}}));
    EXPECT_EQ(facts.externals,
              (std::vector<ReachedPlace>{{"lib-external", 3}, {"file-external", 3}}));
    EXPECT_THAT(linesOf(facts),
                testing::IsSupersetOf({"restored missing", "restored missing-gone",
                                       "updated locked lockBroken", "deleted gone", "merged merged",
                                       "updated moved-dir/a belowTreeConflict", "deleted replaced",
                                       "added replaced", "added lib-external/l external 0",
                                       "added file-external external 1"}));
}

/// What the facts say is left must be what the client's own status then shows.
TEST(ChangeFactsTest, AgreeWithTheStatusAfterwards) {
    std::set<std::string> left;
    for (const ConflictFacts& each : captured("update-with-tree-conflicts").conflicts) {
        if (each.tree == ConflictState::left) {
            left.insert(each.path.str());
        }
        EXPECT_NE(each.text, ConflictState::left) << each.path.str();
    }
    std::set<std::string> shown;
    std::istringstream status(testData("Facts/change/status-after-update.txt"));
    for (std::string line; std::getline(status, line);) {
        if (line.size() > 8 && line[6] == 'C') {
            shown.insert(line.substr(8));
        }
    }
    EXPECT_EQ(left, shown);
    EXPECT_EQ(left.size(), 13U);
}

TEST(ChangeFactsTest, CountsAreTheClients) {
    const ChangeFacts facts = captured("update-settled");
    EXPECT_EQ(facts.textConflicts, (ConflictCount{0, 6}));
    EXPECT_EQ(facts.propertyConflicts, (ConflictCount{0, 3}));
    const auto settled = [&](ConflictState ConflictFacts::*kind) {
        return std::count_if(
            facts.conflicts.begin(), facts.conflicts.end(),
            [&](const ConflictFacts& each) { return each.*kind == ConflictState::settled; });
    };
    EXPECT_EQ(settled(&ConflictFacts::text), 6);
    EXPECT_EQ(settled(&ConflictFacts::properties), 3);
    EXPECT_FALSE(facts.holdsLeft());
}

struct CaptureCase {
    const char* name;
    Lines expected;
    friend void PrintTo(const CaptureCase& each, std::ostream* out) { *out << each.name; }
};

class ChangeCaptureTest : public testing::TestWithParam<CaptureCase> {};

TEST_P(ChangeCaptureTest, IsReadWhole) {
    // The client's order varies from run to run.
    EXPECT_THAT(linesOf(captured(GetParam().name)),
                testing::UnorderedElementsAreArray(GetParam().expected));
}

INSTANTIATE_TEST_SUITE_P(
    Runs, ChangeCaptureTest,
    testing::Values(
        CaptureCase{"update-again",
                    {"target . r=3", "external lib-external r=3", "external file-external r=3",
                     "revision 3"}},
        CaptureCase{"update-several",
                    {"target conflicted r=3", "target main r=3", "target nowhere r=3",
                     "target /place/theirs r=3", "revision 3"}},
        CaptureCase{"update-postponed",
                    {"conflicted conflicted", "conflicted both properties conflicted",
                     "none colours properties conflicted", "conflict conflicted: text left",
                     "conflict both: text left properties left",
                     "conflict colours: properties left", "target conflicted r=3",
                     "target both r=3", "target colours r=3",
                     "text conflicts: 2 remaining, 0 resolved",
                     "property conflicts: 2 remaining, 0 resolved", "revision 3"}},
        CaptureCase{"update-nested-externals",
                    {"none lib properties updated", "added outer/l external 0",
                     "none outer properties updated external 0", "added outer/inner/m external 1",
                     "added after/m external 2", "added lib/inner/m external 3", "target . r=4",
                     "external outer r=4", "external outer/inner r=4", "external after r=4",
                     "external lib/inner r=4", "revision 4"}},
        CaptureCase{"update-removed-external",
                    {"target . r=4", "external lib/inner r=4", "removed external after",
                     "removed external outer", "revision 4"}},
        CaptureCase{"merge-settled",
                    {"conflicted both properties conflicted", "updated changed",
                     "conflicted conflicted", "updated deep/d", "added moved-in-main", "added new",
                     "none properties properties conflicted", "deleted moved", "deleted deleted",
                     "conflict both: text settled properties settled",
                     "conflict conflicted: text settled", "conflict properties: properties settled",
                     "merge into . first=7 last=10", "text conflicts: 0 remaining, 2 resolved",
                     "property conflicts: 0 remaining, 2 resolved"}},
        CaptureCase{"merge-with-tree-conflicts",
                    {"none deleted treeConflict", "none moved treeConflict",
                     "conflicted both properties conflicted", "updated changed",
                     "conflicted conflicted", "updated deep/d", "added moved-in-main",
                     "none properties properties conflicted", "conflict deleted: tree left",
                     "conflict moved: tree left", "conflict both: text settled properties settled",
                     "conflict conflicted: text settled", "conflict properties: properties settled",
                     "skipped new: obstructed by unversioned node",
                     "merge into . first=7 last=11"}},
        CaptureCase{"switch",
                    {"deleted deleted", "deleted moved", "conflicted both properties conflicted",
                     "updated changed", "conflicted conflicted", "updated deep/d",
                     "added moved-in-main", "none new treeConflict",
                     "none properties properties conflicted",
                     "conflict both: text left properties left", "conflict conflicted: text left",
                     "conflict new: tree left", "conflict properties: properties left",
                     "target - r=11", "text conflicts: 2 remaining, 0 resolved",
                     "property conflicts: 2 remaining, 0 resolved",
                     "tree conflicts: 1 remaining, 0 resolved", "revision 11"}},
        CaptureCase{
            "switch-elsewhere",
            {"deleted moved-in-main", "updated changed", "updated deep/d", "added deleted",
             "added moved", "none . properties updated", "skipped new: Node remains in conflict",
             "skipped both: Node remains in conflict",
             "skipped conflicted: Node remains in conflict",
             "skipped properties: Node remains in conflict", "target - r=11", "revision 11"}},
        CaptureCase{"commit",
                    {"sent changed", "added copied", "added image", "added made", "deleted merged",
                     "added moved", "sent moved-by-them", "added one", "replaced replaced",
                     "deleted colours", "deleted the-same", "target - r=12", "revision 12"}},
        CaptureCase{"add", {"added one", "added image"}},
        CaptureCase{"move", {"added moved", "deleted merged"}},
        CaptureCase{"remove", {"deleted colours", "deleted the-same"}}),
    [](const auto& each) {
        std::string name = each.param.name;
        std::replace(name.begin(), name.end(), '-', '_');
        return name;
    });

TEST(ChangeFactsTest, AHooksTextIsNoFact) {
    const ChangeFacts facts = factsIn(testData("Reports/commit/hook-failed.txt"));
    EXPECT_EQ(facts.revision, 4);
    EXPECT_FALSE(facts.unknownLines.empty());
}

TEST(ChangeFactsTest, TheReaderKnowsEveryLineOfTheClient) {
    for (const std::string& capture : captures("Facts/change", ".txt")) {
        if (capture.find("status-") == std::string::npos) {
            EXPECT_TRUE(factsIn(testData(capture), columnsOf(capture)).unknownLines.empty())
                << capture;
        }
    }
}

// However it arrives

TEST(ChangeFactsTest, AreTheSameWhateverTheCuts) {
    for (const std::string& capture : captures("Facts/change", ".txt")) {
        const std::string text = testData(capture);
        const ChangeFacts whole = factsIn(text, columnsOf(capture));
        for (const std::size_t size : {1U, 2U, 3U, 7U, 64U}) {
            ChangeFactsReader reader(columnsOf(capture));
            for (const std::string_view piece : piecesOf(text, size)) {
                reader.take(piece);
            }
            EXPECT_EQ(reader.facts(), whole) << capture << " in pieces of " << size;
        }
        for (std::size_t cut = 0; cut <= text.size(); ++cut) {
            ChangeFactsReader reader(columnsOf(capture));
            reader.take(std::string_view(text).substr(0, cut));
            reader.take(std::string_view(text).substr(cut));
            ASSERT_EQ(reader.facts(), whole) << capture << " cut at " << cut;
        }
    }
}

template <typename Fact>
bool isBeginning(const std::vector<Fact>& part, const std::vector<Fact>& whole) {
    return part.size() <= whole.size() && std::equal(part.begin(), part.end(), whole.begin());
}

/// Output that breaks off holds a beginning of the facts, and none that the whole does not hold.
TEST(ChangeFactsTest, OfOutputThatBreaksOffNothingIsMadeUp) {
    for (const std::string& capture : captures("Facts/change", ".txt")) {
        const std::string text = testData(capture);
        const ChangeFacts whole = factsIn(text, columnsOf(capture));
        for (std::size_t length = 0; length < text.size(); ++length) {
            const ChangeFacts part =
                factsIn(std::string_view(text).substr(0, length), columnsOf(capture));
            ASSERT_TRUE(isBeginning(part.items, whole.items)) << capture << " " << length;
            ASSERT_TRUE(isBeginning(part.skipped, whole.skipped)) << capture << " " << length;
            ASSERT_TRUE(isBeginning(part.unknownLines, whole.unknownLines)) << capture;
            ASSERT_LE(part.conflicts.size(), whole.conflicts.size());
            for (std::size_t i = 0; i < part.conflicts.size(); ++i) {
                ASSERT_EQ(part.conflicts[i].path, whole.conflicts[i].path) << capture;
            }
        }
    }
}

TEST(ChangeFactsTest, ALineWithoutEndIsReadInLinearTime) {
    ChangeFactsReader reader;
    const std::string piece(64 * 1024, 'x');
    for (int i = 0; i < 1024; ++i) {
        reader.take(piece);
    }
    EXPECT_EQ(reader.facts(), ChangeFacts());
    reader.take("\n");
    ASSERT_EQ(reader.facts().unknownLines.size(), 1U);
    EXPECT_EQ(reader.facts().unknownLines.front().length(), piece.size() * 1024);
}

TEST(ChangeFactsTest, KeepsNoMoreUnknownLinesThanItSays) {
    ChangeFactsReader reader;
    for (std::size_t i = 0; i < 2 * ChangeFacts::maximumOfUnknownLines; ++i) {
        reader.take("What is this?\n");
    }
    EXPECT_EQ(reader.facts().unknownLines.size(), ChangeFacts::maximumOfUnknownLines);
}

} // namespace

} // namespace quen::test
