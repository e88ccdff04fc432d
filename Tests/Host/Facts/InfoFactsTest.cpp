#include "Host/Facts/InfoFacts.h"
#include "Host/Facts/ListFacts.h"
#include "Tests/Host/Facts/FactsText.h"
#include "Tests/Support/Reports.h"

#include <algorithm>
#include <gtest/gtest.h>

namespace quen::test {

namespace {

template <typename Reader> auto factsOf(std::string_view capture) {
    Reader reader;
    const std::string report = testData(capture);
    for (const std::string_view piece : piecesOf(report, 7)) {
        reader.take(piece);
    }
    const Error error = reader.finish();
    EXPECT_FALSE(error) << capture << ": " << error.description().str();
    return reader.takeFacts();
}

InfoEntry entryOf(std::string_view capture, std::string_view path) {
    for (const InfoEntry& each : factsOf<InfoFactsReader>(capture).entries) {
        if (each.path.view() == path) {
            return each;
        }
    }
    ADD_FAILURE() << "There is no entry " << path << " in " << capture << ".";
    return {};
}

constexpr std::string_view workingCopy = "Facts/info/working-copy.xml";

TEST(InfoFactsTest, SayWhereAnItemStands) {
    const InfoEntry top = entryOf(workingCopy, ".");
    EXPECT_EQ(top.kind, "dir");
    EXPECT_EQ(top.url, "file:///place/repository");
    EXPECT_EQ(top.repositoryRoot, "file:///place/repository");
    EXPECT_EQ(top.repositoryUUID.length(), 36U);
    EXPECT_EQ(top.workingCopy, "/place/ours");
    EXPECT_EQ(top.schedule, "normal");
    EXPECT_EQ(top.depth, "infinity");
    EXPECT_EQ(top.revision, 2);
    EXPECT_EQ(top.commit.revision, 2);
    EXPECT_EQ(top.commit.author, "jane");
    EXPECT_TRUE(top.conflicts.empty());
    EXPECT_EQ(entryOf(workingCopy, "branch").url, "file:///place/repository/main");
    EXPECT_EQ(entryOf(workingCopy, "listed").changelist, "first");
    EXPECT_EQ(entryOf(workingCopy, "locked").lock->comment, "Mine, \"for\" <now>");
    EXPECT_EQ(entryOf("Facts/info/depth.xml", "main").depth, "empty");
    const InfoEntry remote = entryOf("Facts/info/repository.xml", "main");
    EXPECT_TRUE(remote.workingCopy.isNil());
    EXPECT_EQ(remote.url, "file:///place/repository/main");
}

TEST(InfoFactsTest, NameBothEndsOfAMove) {
    EXPECT_EQ(entryOf(workingCopy, "moved").movedTo, "moved-away");
    const InfoEntry moved = entryOf(workingCopy, "moved-away");
    EXPECT_EQ(moved.movedFrom, "moved");
    EXPECT_EQ(moved.copiedFromURL, "file:///place/repository/moved");
    EXPECT_EQ(moved.copiedFromRevision, 2);
    EXPECT_EQ(moved.schedule, "add");
}

TEST(InfoFactsTest, HoldEveryConflictOnce) {
    const InfoEntry text = entryOf(workingCopy, "text");
    ASSERT_EQ(text.conflicts.size(), 1U);
    EXPECT_EQ(text.conflicts[0].type, "text");
    EXPECT_EQ(text.conflicts[0].operation, "update");
    EXPECT_EQ(text.conflicts[0].incomingRevision, 2);
    EXPECT_EQ(text.conflicts[0].incomingPath, "text");
    EXPECT_EQ(text.conflicts[0].mineFile, "/place/ours/text.mine");
    EXPECT_EQ(text.conflicts[0].incomingFile, "/place/ours/text.r2");
    EXPECT_EQ(text.conflicts[0].previousBaseFile, "/place/ours/text.r1");
    const InfoEntry properties = entryOf(workingCopy, "properties");
    ASSERT_EQ(properties.conflicts.size(), 1U);
    EXPECT_EQ(properties.conflicts[0].type, "property");
    EXPECT_EQ(properties.conflicts[0].propertyFile, "/place/ours/properties.prej");
    const InfoEntry trees = entryOf(workingCopy, "trees");
    ASSERT_EQ(trees.conflicts.size(), 1U);
    EXPECT_EQ(descriptionOf(trees.conflicts[0]),
              "local file delete, incoming file edit upon update");
}

TEST(InfoFactsTest, DescribeTreeConflictsAsTheClientDoes) {
    const auto described = [](const char* kind, const char* reason, const char* incomingKind,
                              const char* action, const char* operation) {
        InfoConflict conflict;
        conflict.kind = kind;
        conflict.reason = reason;
        conflict.incomingKind = incomingKind;
        conflict.action = action;
        conflict.operation = operation;
        return descriptionOf(conflict);
    };
    // As in Tests/Data/Facts/change/status-after-update.txt.
    EXPECT_EQ(described("file", "edit", "file", "delete", "update"),
              "local file edit, incoming file delete or move upon update");
    EXPECT_EQ(described("file", "edit", "none", "delete", "update"),
              "local file edit, incoming file delete or move upon update");
    EXPECT_EQ(described("dir", "moved-away", "dir", "edit", "update"),
              "local dir moved away, incoming dir edit upon update");
    EXPECT_EQ(described("dir", "unversioned", "file", "add", "switch"),
              "local dir unversioned, incoming file add upon switch");
    EXPECT_EQ(described("file", "edit", nullptr, "add", "merge"),
              "local file edit, incoming file add upon merge");
}

TEST(InfoFactsTest, ReadAnAuthorThatXMLCannotHold) {
    const InfoFacts facts = factsOf<InfoFactsReader>("Facts/info/control-characters.xml");
    ASSERT_EQ(facts.unreadable.size(), 1U);
    EXPECT_EQ(lineOf(facts.unreadable[0]), "author ev\002il of modified");
}

TEST(ListFactsTest, ReadAnAuthorThatXMLCannotHold) {
    const ListFacts facts = factsOf<ListFactsReader>("Facts/list/control-characters.xml");
    std::vector<std::string> names;
    for (const ListEntry& each : facts.entries) {
        names.push_back(each.name.str() + " " + each.kind.str());
        EXPECT_EQ(each.location, "file:///place/repository");
        EXPECT_EQ(each.size.has_value(), each.kind == "file") << each.name.str();
    }
    EXPECT_EQ(names.size(), 17U);
    EXPECT_TRUE(std::find(names.begin(), names.end(), "moved-dir dir") != names.end());
    ASSERT_FALSE(facts.unreadable.empty());
    for (const UnreadableText& each : facts.unreadable) {
        EXPECT_EQ(each.kind, UnreadableText::Kind::author);
        EXPECT_EQ(each.text, "ev\002il");
    }
}

TEST(ListFactsTest, HoldLocksAndLocations) {
    const ListFacts facts = factsOf<ListFactsReader>("Facts/list/locked.xml");
    const auto found = std::find_if(facts.entries.begin(), facts.entries.end(),
                                    [](const ListEntry& each) { return each.name == "text"; });
    ASSERT_NE(found, facts.entries.end());
    EXPECT_EQ(found->lock->comment, "Busy");
    EXPECT_EQ(facts.entries.back().location, "file:///place/repository/branch");
    EXPECT_EQ(facts.entries.back().commit.revision, 1);
}

template <typename Reader> void expectPrefixes(const std::string& directory) {
    for (const std::string& capture : captures(directory, ".xml")) {
        const std::string report = testData(capture);
        const std::size_t whole = factsOf<Reader>(capture).entries.size();
        for (const std::string_view beginning : malformedReports(report)) {
            Reader reader;
            reader.take(beginning);
            ASSERT_TRUE(reader.finish()) << capture << " " << beginning.size();
            ASSERT_LE(reader.facts().entries.size(), whole);
        }
    }
}

TEST(InfoFactsTest, OfAReportThatBreaksOffAreABeginning) {
    expectPrefixes<InfoFactsReader>("Facts/info");
}

TEST(ListFactsTest, OfAReportThatBreaksOffAreABeginning) {
    expectPrefixes<ListFactsReader>("Facts/list");
}

} // namespace

} // namespace quen::test
