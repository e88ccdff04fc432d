#include "Tools/Commands/Content/DiffStat.h"
#include "Tools/Commands/Content/DiffText.h"
#include "Tools/Commands/Content/ListedEntries.h"
#include "Tools/Commands/History/HistoryFilter.h"
#include "Tools/Commands/History/HistoryFormat.h"
#include "Tools/Commands/Places/RevisionArguments.h"

#include <gtest/gtest.h>

namespace quen::test {

using namespace tools;

namespace {

HistoryEntry anEntry() {
    HistoryEntry entry;
    entry.commit = {12, "Alice", "2026-01-02T03:04:05.000006Z"};
    entry.message = "Fix the parser\n\nIt was wrong.";
    entry.paths = {{"/trunk/a.c", 'M', "file", String(), {}},
                   {"/branches/b", 'A', "dir", "/trunk", 11}};
    return entry;
}

TEST(HistoryFilter, AdmitsByAuthorTextAndDate) {
    struct Case {
        HistoryFilter filter;
        bool isAdmitted;
    };
    const Date date = *dateOf(anEntry().commit);
    const auto second = std::chrono::seconds(1);
    for (const Case& each : {Case{{"", "", {}}, true},
                             {{"ali", "", {}}, true},
                             {{"bob", "", {}}, false},
                             {{"", "PARSER", {}}, true},
                             {{"", "branches/b", {}}, true},
                             {{"", "nothing", {}}, false},
                             {{"", "", date}, true},
                             {{"", "", date + second}, false},
                             {{"alice", "wrong", date - second}, true},
                             {{"alice", "right", date - second}, false}}) {
        EXPECT_EQ(each.filter.admits(anEntry()), each.isAdmitted)
            << each.filter.author << " " << each.filter.text;
    }
}

TEST(ParseMoment, TakesAgesAndDates) {
    const Date now = *dateOf(anEntry().commit);
    using namespace std::chrono_literals;
    EXPECT_EQ(parseMoment("2 weeks", now), now - 14 * 24h);
    EXPECT_EQ(parseMoment("2w", now), now - 14 * 24h);
    EXPECT_EQ(parseMoment("3 days ago", now), now - 72h);
    EXPECT_EQ(parseMoment("1h", now), now - 1h);
    EXPECT_EQ(parseMoment("yesterday", now), now - 24h);
    EXPECT_TRUE(parseMoment("2024-01-31", now).has_value());
    EXPECT_EQ(parseMoment("{2024-01-31}", now), parseMoment("2024-01-31", now));
    EXPECT_TRUE(parseMoment("2024-01-31 10:11", now).has_value());
    for (const char* const wrong : {"", "soon", "3", "3 fortnights", "-1 days", "2024-01-31x"}) {
        EXPECT_FALSE(parseMoment(wrong, now).has_value()) << wrong;
    }
}

TEST(OneLine, FitsTheWidth) {
    const Palette plain(Palette::Use::never);
    EXPECT_EQ(oneLine(anEntry(), plain, 0), "r12     2026-01-02  Alice       Fix the parser\n");
    EXPECT_EQ(oneLine(anEntry(), plain, 30), "r12     2026-01-02  Fix the p\xE2\x80\xA6\n");
    EXPECT_EQ(oneLine(anEntry(), plain, 80), "r12     2026-01-02  Alice       Fix the parser\n");
}

TEST(OneLine, ALongNameOfAnAuthorKeepsTheColumns) {
    const Palette plain(Palette::Use::never);
    HistoryEntry entry = anEntry();
    entry.commit.author = "bartholomew.longfellow";
    const std::string start = "r12     2026-01-02  ";
    EXPECT_EQ(oneLine(entry, plain, 0), start + "bartholom\xE2\x80\xA6  Fix the parser\n");
    EXPECT_EQ(oneLine(entry, plain, 40), start + "Fix the parser\n");
    EXPECT_EQ(oneLine(entry, plain, 80), start + "bartholom\xE2\x80\xA6  Fix the parser\n");
    EXPECT_EQ(oneLine(entry, plain, 250),
              start + "bartholomew.longfel\xE2\x80\xA6  Fix the parser\n");
    entry.commit.author = String();
    EXPECT_EQ(oneLine(entry, plain, 0), start + "-           Fix the parser\n");
}

TEST(ParseChanges, ReadsWhatTheClientReads) {
    using Numbers = std::vector<std::int64_t>;
    struct Case {
        const char* text;
        Numbers numbers;
    };
    for (const Case& each : {Case{"444", {444}},
                             {"r444", {444}},
                             {"-444", {-444}},
                             {"-r444", {-444}},
                             {"443,444", {443, 444}},
                             {"443,-444", {443, -444}},
                             {"440-442", {440, 441, 442}},
                             {"-1-2", {-1, -2}}}) {
        const auto changes = parseChanges(each.text);
        ASSERT_TRUE(changes.has_value()) << each.text;
        EXPECT_EQ(changes->numbers, each.numbers) << each.text;
    }
    for (const char* const wrong : {"", "x", "0", "1,", ",1", "3-2", "1-9999999", "--1", "1:2"}) {
        EXPECT_FALSE(parseChanges(wrong).has_value()) << wrong;
    }
}

constexpr const char* aDifference = "Index: a.c\n"
                                    "===\n"
                                    "--- a.c\t(revision 1)\n"
                                    "+++ a.c\t(revision 2)\n"
                                    "@@ -1,2 +1,3 @@\n"
                                    " same\n"
                                    "-the old word\n"
                                    "+the new word\n"
                                    "+++ more\n"
                                    "Index: b.bin\n"
                                    "===\n"
                                    "Cannot display: file marked as a binary type.\n";

TEST(DiffStat, CountsLinesHoweverThePiecesAreCut) {
    const std::string_view whole = aDifference;
    for (std::size_t cut = 0; cut <= whole.size(); ++cut) {
        DiffStat stat;
        stat.take(whole.substr(0, cut));
        stat.take(whole.substr(cut));
        stat.finish();
        EXPECT_EQ(stat.text(Palette(Palette::Use::never), 80),
                  " a.c   |   3 ++-\n"
                  " b.bin | bin\n"
                  " 2 files changed, 2 lines added, 1 line removed\n")
            << cut;
    }
}

TEST(DiffStat, LongNamesAndManyLinesFitTheWidth) {
    DiffStat stat;
    stat.take("Index: " + std::string(100, 'n') + "\n@@ -0,0 +1,500 @@\n");
    for (int i = 0; i < 500; ++i) {
        stat.take("+x\n");
    }
    stat.finish();
    for (const std::size_t width : {40U, 80U, 250U}) {
        const std::string text = stat.text(Palette(Palette::Use::never), width);
        // The ellipsis takes three bytes for one cell.
        EXPECT_LE(text.find('\n'), width + 2) << text;
    }
}

TEST(DifferencePainter, MarksTheWordsThatDiffer) {
    const Palette colours(Palette::Use::always);
    DifferencePainter painter(colours);
    std::string shown;
    for (const char c : std::string_view("@@ -1 +1 @@\n-the old word\n+the new word\n x\n")) {
        shown += painter.take({&c, 1});
    }
    shown += painter.finish();
    EXPECT_EQ(shown, "\x1b[34m@@ -1 +1 @@\x1b[0m\n"
                     "\x1b[31m-the \x1b[0m\x1b[1m\x1b[31mold\x1b[0m\x1b[31m word\x1b[0m\n"
                     "\x1b[32m+the \x1b[0m\x1b[1m\x1b[32mnew\x1b[0m\x1b[32m word\x1b[0m\n"
                     " x\n");
}

TEST(SizeText, HasThreeDigitsAtMost) {
    struct Case {
        std::int64_t bytes;
        const char* text;
    };
    for (const Case& each : {Case{0, "0"},
                             {999, "999"},
                             {1000, "1.0k"},
                             {1449, "1.4k"},
                             {20'000'000, "20M"},
                             {999'600, "1.0M"},
                             {1'500'000'000, "1.5G"}}) {
        EXPECT_EQ(sizeText(each.bytes), each.text);
    }
}

TEST(HistoryReader, HandsOverEachRevisionAsSoonAsItIsThere) {
    const std::string report =
        "<?xml version=\"1.0\"?><log><logentry revision=\"2\"><author>a</author>"
        "<date>2026-01-02T03:04:05.000006Z</date><paths><path action=\"A\" kind=\"dir\" "
        "copyfrom-path=\"/trunk\" copyfrom-rev=\"1\">/b</path></paths><msg>M</msg></logentry>"
        "<logentry revision=\"1\"><msg>\x01</msg></logentry></log>";
    for (std::size_t cut = 0; cut <= report.size(); ++cut) {
        std::vector<HistoryEntry> entries;
        HistoryReader reader([&](const HistoryEntry& entry) { entries.push_back(entry); });
        reader.take(std::string_view(report).substr(0, cut));
        reader.take(std::string_view(report).substr(cut));
        EXPECT_FALSE(reader.finish()) << cut;
        ASSERT_EQ(entries.size(), 2U) << cut;
        EXPECT_EQ(entries[0].commit.revision, 2);
        EXPECT_EQ(entries[0].message, "M");
        ASSERT_EQ(entries[0].paths.size(), 1U);
        EXPECT_EQ(entries[0].paths[0].copiedFrom, "/trunk");
        EXPECT_EQ(entries[0].paths[0].copiedFromRevision, 1);
        EXPECT_EQ(entries[1].message, "\x01");
    }
}

} // namespace

} // namespace quen::test
