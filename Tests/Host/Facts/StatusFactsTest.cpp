#include "Foundation/XMLReport.h"
#include "Host/Facts/StatusFacts.h"
#include "Tests/Host/Facts/FactsText.h"
#include "Tests/Support/Reports.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <span>
#include <stdexcept>

namespace quen::test {

namespace {

using Lines = std::vector<std::string>;

struct Read {
    StatusFacts facts;
    Error error;
};

Read reading(const std::vector<std::string_view>& pieces) {
    StatusFactsReader reader;
    for (const std::string_view piece : pieces) {
        reader.take(piece);
    }
    Error error = reader.finish();
    return {reader.takeFacts(), error};
}

Read captured(std::string_view name) {
    return reading({testData("Facts/status/" + std::string(name))});
}

const StatusEntry& entryOf(const StatusFacts& facts, std::string_view path) {
    const auto found =
        std::find_if(facts.entries.begin(), facts.entries.end(),
                     [=](const StatusEntry& each) { return each.path.view() == path; });
    if (found == facts.entries.end()) {
        throw std::runtime_error("There is no entry " + std::string(path) + ".");
    }
    return *found;
}

TEST(StatusFactsTest, HoldWhatTheRecordsLeaveOut) {
    const Read read = captured("everything.xml");
    EXPECT_FALSE(read.error) << read.error.description().str();
    EXPECT_FALSE(read.facts.against.has_value());
    EXPECT_TRUE(read.facts.unreadable.empty());
    EXPECT_EQ(linesOf(read.facts),
              (Lines{".: normal modified r=2 last=2 by=jane",
                     "branch: normal none r=2 last=1 by=jane switched",
                     "clean: normal none r=2 last=1 by=jane changelist=first",
                     "external/m: modified none r=2 last=1 by=jane",
                     "external: external none",
                     "file-external: normal none r=2 last=1 by=jane fileExternal",
                     "listed & odd: modified none r=2 last=1 by=jane changelist=Later & <never>",
                     "listed: modified none r=2 last=1 by=jane changelist=first",
                     "locked: normal none r=2 last=1 by=jane lock=jane:Mine, \"for\" <now>",
                     "missing: missing none r=2 last=1 by=jane",
                     "modified: modified none r=2 last=1 by=jane",
                     "moved-away: added none last=1 by=jane movedFrom=moved copied",
                     "moved-dir-away/a: modified none last=1 by=jane copied",
                     "moved-dir-away: added none last=1 by=jane movedFrom=moved-dir copied",
                     "moved-dir: deleted none r=2 last=1 by=jane movedTo=moved-dir-away",
                     "moved: deleted none r=2 last=1 by=jane movedTo=moved-away",
                     "properties.prej: unversioned none",
                     "properties: normal conflicted r=2 last=2 by=jane",
                     "replaced: replaced none r=2",
                     "stolen: normal none r=2 last=1 by=jane lock=jane:Mine, \"for\" <now>",
                     "text.mine: unversioned none",
                     "text.r1: unversioned none",
                     "text.r2: unversioned none",
                     "text: conflicted none r=2 last=2 by=jane",
                     "trees: deleted none r=2 last=2 by=jane treeConflict",
                     "unversioned: unversioned none"}));
}

TEST(StatusFactsTest, OfARemoteStatusHoldWhatIsNewerAndWhoHoldsLocks) {
    const Read read = captured("everything-remote.xml");
    EXPECT_FALSE(read.error);
    EXPECT_EQ(read.facts.against, 3);
    EXPECT_EQ(
        lineOf(entryOf(read.facts, "old")),
        "old: normal normal r=2 last=1 by=jane incoming=modified incomingProperties=modified");
    EXPECT_EQ(lineOf(entryOf(read.facts, "incoming")),
              "incoming: none none incoming=added incomingProperties=none");
    EXPECT_EQ(lineOf(entryOf(read.facts, "clean")),
              "clean: normal none r=2 last=1 by=jane changelist=first incoming=deleted "
              "incomingProperties=none");
    EXPECT_EQ(lineOf(entryOf(read.facts, "stolen")),
              "stolen: normal none r=2 last=1 by=jane incoming=none incomingProperties=none "
              "lock=jane:Mine, \"for\" <now> repositoryLock=joe:His")
        << "both, so that a stolen lock can be told";
    const LockFacts& lock = *entryOf(read.facts, "locked").lock;
    EXPECT_TRUE(lock.token.hasPrefix("opaquelocktoken:"));
    EXPECT_TRUE(lock.created.hasSuffix("Z"));
    EXPECT_TRUE(lock.expires.isNil());
}

TEST(StatusFactsTest, KeepAbsolutePathsAsTheyArePrinted) {
    const Read read = captured("absolute.xml");
    EXPECT_FALSE(read.error);
    EXPECT_EQ(linesOf(read.facts),
              (Lines{"/place/ours/listed: modified none r=2 last=1 by=jane changelist=first",
                     "/place/ours/moved-dir-away/a: modified none last=1 by=jane copied",
                     "/place/ours/moved-dir-away: added none last=1 by=jane "
                     "movedFrom=/place/ours/moved-dir copied"}));
}

TEST(StatusFactsTest, TellOfAWorkingCopyThatAKilledClientLeftLocked) {
    const Read read = captured("left-locked.xml");
    EXPECT_EQ(lineOf(entryOf(read.facts, "locked-dir")),
              "locked-dir: normal none r=2 last=1 by=jane workingCopyLocked");
    EXPECT_FALSE(entryOf(read.facts, "locked").isWorkingCopyLocked);
}

// Names and authors that XML cannot hold

TEST(StatusFactsTest, NameWhatXMLCannotHoldAndGiveEverythingElse) {
    const Read read = captured("control-characters.xml");
    EXPECT_FALSE(read.error) << read.error.description().str();
    EXPECT_EQ(linesOf(read.facts),
              (Lines{"bell\a: unversioned none", "line\nfeed: unversioned none",
                     "modified: modified none r=3 last=1 by=ev\002il",
                     "two\001\033[31m: unversioned none"}));
    Lines unreadable;
    for (const UnreadableText& each : read.facts.unreadable) {
        unreadable.push_back(lineOf(each));
    }
    std::sort(unreadable.begin(), unreadable.end());
    EXPECT_EQ(unreadable, (Lines{"author ev\002il of modified", "path bell\a of bell\a",
                                 "path two\001\033[31m of two\001\033[31m"}));
}

TEST(StatusFactsTest, AReportThatTheClientGaveUpIsAnError) {
    const Read read = captured("not-utf-8.xml");
    EXPECT_EQ(read.error.domain(), XMLParserErrorDomain);
    EXPECT_TRUE(read.facts.entries.empty());
}

TEST(StatusFactsTest, NoncharactersOfANameComeBackAsTheyWere) {
    const auto pathIn = [](const std::string& path) {
        const std::string report = "<status><target><entry path='" + path +
                                   "'><wc-status item='unversioned'/></entry></target></status>";
        for (std::size_t size = 1; size < 8; ++size) {
            const Read read = reading(piecesOf(report, size));
            EXPECT_FALSE(read.error);
            EXPECT_EQ(read.facts.entries.size(), 1U);
            EXPECT_EQ(reading({report}).facts.entries.at(0).path, read.facts.entries.at(0).path);
        }
        const Read read = reading({report});
        const bool isNamed = !read.facts.unreadable.empty();
        return read.facts.entries.at(0).path.str() + (isNamed ? " unreadable" : "");
    };
    for (const std::string path : {"plain", "\xEF\xB7\x90", "\xEF\xB7\x99", "\xEF\xB7\xAF!",
                                   "\xEF\xB7\x99\xEF\xB7\x99", "a\xEF\xB7\x8F",
                                   "a\xEF\xB7\xB0"
                                   "b",
                                   "\xEF\xBB\xBF"
                                   "c",
                                   "\xEF\xBC\x81"}) {
        EXPECT_EQ(pathIn(path), path);
    }
    for (const std::string path :
         {"\001", "a\037", "\xEF\xB7\x99\001", "\001\xEF\xB7\x90", "\033[31m\xEF\xB7\xA0"}) {
        EXPECT_EQ(pathIn(path), path + " unreadable");
    }
}

// However it arrives

/// Lines say it more readably and take their time, and there are many cuts.
bool haveTheSame(std::span<const StatusEntry> some, std::span<const StatusEntry> others) {
    const auto isSame = [](const StatusEntry& a, const StatusEntry& b) {
        const auto hasSameLock = (a.lock == nullptr) == (b.lock == nullptr) &&
                                 (a.lock == nullptr || a.lock->comment == b.lock->comment);
        return a.path == b.path && a.item == b.item && a.properties == b.properties &&
               a.revision == b.revision && a.commit.author == b.commit.author &&
               a.changelist == b.changelist && a.incomingItem == b.incomingItem &&
               a.movedFrom == b.movedFrom && a.movedTo == b.movedTo && hasSameLock;
    };
    return std::equal(some.begin(), some.end(), others.begin(), others.end(), isSame);
}

TEST(StatusFactsTest, AreTheSameWhateverTheCuts) {
    for (const std::string& capture : captures("Facts/status", ".xml")) {
        const std::string report = testData(capture);
        const Read whole = reading({report});
        const Lines expected = linesOf(whole.facts);
        for (const std::size_t size : {1U, 2U, 3U, 7U, 64U}) {
            const Read read = reading(piecesOf(report, size));
            EXPECT_EQ(linesOf(read.facts), expected) << capture << " in pieces of " << size;
            EXPECT_EQ(bool(read.error), bool(whole.error)) << capture;
        }
    }
    for (const char* const name : {"absolute.xml", "control-characters.xml", "left-locked.xml"}) {
        const std::string capture = std::string("Facts/status/") + name;
        const std::string report = testData(capture);
        const Read whole = reading({report});
        for (std::size_t cut = 0; cut <= report.size(); ++cut) {
            const std::string_view view = report;
            const Read read = reading({view.substr(0, cut), view.substr(cut)});
            ASSERT_TRUE(haveTheSame(read.facts.entries, whole.facts.entries))
                << capture << " cut at " << cut;
        }
    }
}

TEST(StatusFactsTest, OfAReportThatBreaksOffNothingIsMadeUp) {
    for (const std::string& capture : captures("Facts/status", ".xml")) {
        const std::string report = testData(capture);
        const Read whole = reading({report});
        for (const std::string_view beginning : malformedReports(report)) {
            const Read read = reading({beginning});
            ASSERT_TRUE(read.error) << capture << " " << beginning.size();
            const std::size_t count = read.facts.entries.size();
            ASSERT_LE(count, whole.facts.entries.size());
            const std::span whereItBegins(whole.facts.entries.data(), count);
            ASSERT_TRUE(haveTheSame(read.facts.entries, whereItBegins))
                << capture << " " << beginning.size();
        }
    }
}

// What an entry means

struct MeaningCase {
    const char* name;
    bool isUnchanged;
    bool isLocallyChanged;
    bool isConflicted;
    bool isIncoming;
    StatusEntry entry;
    friend void PrintTo(const MeaningCase& each, std::ostream* out) { *out << each.name; }
};

StatusEntry entryWith(const char* item, const char* properties, const char* incoming = nullptr) {
    StatusEntry entry;
    entry.item = item;
    entry.properties = properties;
    entry.incomingItem = incoming;
    return entry;
}

template <typename Change> StatusEntry normalEntry(Change change) {
    StatusEntry entry = entryWith("normal", "none");
    change(entry);
    return entry;
}

class StatusMeaningTest : public testing::TestWithParam<MeaningCase> {};

TEST_P(StatusMeaningTest, IsTold) {
    const MeaningCase& each = GetParam();
    EXPECT_EQ(isUnchanged(each.entry), each.isUnchanged);
    EXPECT_EQ(isLocallyChanged(each.entry), each.isLocallyChanged);
    EXPECT_EQ(isConflicted(each.entry), each.isConflicted);
    EXPECT_EQ(isIncoming(each.entry), each.isIncoming);
}

INSTANTIATE_TEST_SUITE_P(
    Entries, StatusMeaningTest,
    testing::Values(
        MeaningCase{"normal", true, false, false, false, entryWith("normal", "normal")},
        MeaningCase{"modified", false, true, false, false, entryWith("modified", "none")},
        MeaningCase{"properties", false, true, false, false, entryWith("normal", "modified")},
        MeaningCase{"missing", false, true, false, false, entryWith("missing", "none")},
        MeaningCase{"incomplete", false, true, false, false, entryWith("incomplete", "none")},
        MeaningCase{"obstructed", false, true, false, false, entryWith("obstructed", "none")},
        MeaningCase{"text conflict", false, true, true, false, entryWith("conflicted", "none")},
        MeaningCase{"property conflict", false, true, true, false,
                    entryWith("normal", "conflicted")},
        MeaningCase{"tree conflict", false, true, true, false,
                    normalEntry([](StatusEntry& entry) { entry.isTreeConflict = true; })},
        MeaningCase{"unversioned", false, false, false, false, entryWith("unversioned", "none")},
        MeaningCase{"ignored", false, false, false, false, entryWith("ignored", "none")},
        MeaningCase{"external", false, false, false, false, entryWith("external", "none")},
        MeaningCase{"newer", false, false, false, true, entryWith("normal", "none", "modified")},
        MeaningCase{"nothing newer", true, false, false, false,
                    entryWith("normal", "none", "none")},
        MeaningCase{"newer properties", false, false, false, true,
                    normalEntry([](StatusEntry& entry) { entry.incomingProperties = "modified"; })},
        MeaningCase{"only in the repository", false, false, false, true,
                    entryWith("none", "none", "added")},
        MeaningCase{"listed", false, false, false, false,
                    normalEntry([](StatusEntry& entry) { entry.changelist = "a"; })},
        MeaningCase{"switched", false, false, false, false,
                    normalEntry([](StatusEntry& entry) { entry.isSwitched = true; })},
        MeaningCase{"locked", false, false, false, false, normalEntry([](StatusEntry& entry) {
                        entry.lock = std::make_shared<LockFacts>();
                    })}));

} // namespace

} // namespace quen::test
