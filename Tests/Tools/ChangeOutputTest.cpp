#include "Tests/Support/CaseName.h"
#include "Tools/Commands/Changes/ChangeOutput.h"

#include <gtest/gtest.h>
#include <ostream>

namespace quen::test {

using namespace tools;

namespace {

struct LineCase {
    std::string name;
    std::string line;
    bool isItem;
};

void PrintTo(const LineCase& line, std::ostream* out) {
    *out << '"' << line.line << '"';
}

class TellsOfItem : public testing::TestWithParam<LineCase> {};

TEST_P(TellsOfItem, ByTheClientsWords) {
    EXPECT_EQ(tellsOfItem(GetParam().line), GetParam().isItem);
}

INSTANTIATE_TEST_SUITE_P(
    Table, TellsOfItem,
    testing::Values(
        LineCase{"an update's file", "U    a.c", true},
        LineCase{"its properties", " U   a.c", true}, LineCase{"both", "UU   a.c", true},
        LineCase{"a broken lock", "U B  a.c", true},
        LineCase{"a conflict of trees", "   C src", true},
        LineCase{"an addition", "A         a.c", true},
        LineCase{"a binary addition", "A  (bin)  a.png", true},
        LineCase{"a commit's file", "Sending        a.c", true},
        LineCase{"a commit's new file", "Adding  (bin)  a.png", true},
        LineCase{"a commit's replaced file", "Replacing      a.c", true},
        LineCase{"a reverted file", "Reverted 'a.c'", true},
        LineCase{"a file brought back", "Restored 'a.c'", true},
        LineCase{"a settled conflict", "Merge conflict in 'a.c' marked as resolved.", true},
        LineCase{"settled conflicts", "Merge conflicts in 'a.c' marked as resolved.", true},
        LineCase{"nothing", "", false}, LineCase{"the start of an update", "Updating '.':", false},
        LineCase{"its end", "Updated to revision 8.", false},
        LineCase{"its end without a change", "At revision 8.", false},
        LineCase{"a commit's data", "Transmitting file data ..done", false},
        LineCase{"a commit's end", "Committed revision 8.", false},
        LineCase{"a merge's start", "--- Merging r2 into '.':", false},
        LineCase{"a conflict in the summary", "  Text conflicts: 1", false},
        LineCase{"a blank column too many", "      a.c", false}),
    CaseName());

/// An update and a merge in one, with all that is read from them.
constexpr std::string_view output = "Updating '.':\n"
                                    "U    a.c\n"
                                    " U   .\n"
                                    "Updated to revision 8.\n"
                                    "--- Merging r9 into '.':\n"
                                    "C    b.c\n"
                                    "--- Recording mergeinfo for merge of r9 into '.':\n"
                                    " U   .\n"
                                    "--- Merging r10 into '.':\n"
                                    "A    c.c\n"
                                    "\n"
                                    "Summary of conflicts:\n"
                                    "  Text conflicts: 0 remaining (and 1 resolved)\n"
                                    "  Skipped paths: 1\n";

TEST(ChangeOutput, CountsItemsAndKeepsWhatThereIsToSay) {
    ChangeOutput read;
    read.take(output);

    EXPECT_EQ(read.items(), 4U);
    EXPECT_EQ(read.revision(), "8");
    EXPECT_EQ(read.lastLine(), "  Skipped paths: 1");
}

TEST(ChangeOutput, DoesNotDependOnWhereThePiecesAreCut) {
    for (std::size_t cut = 0; cut <= output.size(); ++cut) {
        ChangeOutput read;
        read.take(output.substr(0, cut));
        read.take(output.substr(cut));

        EXPECT_EQ(read.items(), 4U) << "cut at " << cut;
        EXPECT_EQ(read.revision(), "8") << "cut at " << cut;
    }
}

TEST(ChangeOutput, KeepsOnlyFinishedLines) {
    ChangeOutput read;
    read.take("Adding         a.c\nTransmitting fi");

    EXPECT_EQ(read.lastLine(), "Adding         a.c");
    EXPECT_EQ(read.revision(), "");
}

struct RevisionCase {
    std::string name;
    std::string line;
    std::string revision;
};

void PrintTo(const RevisionCase& revision, std::ostream* out) {
    *out << '"' << revision.line << '"';
}

class RevisionInOutput : public testing::TestWithParam<RevisionCase> {};

TEST_P(RevisionInOutput, IsTheNumberInTheSentence) {
    ChangeOutput read;
    read.take(GetParam().line + "\n");
    EXPECT_EQ(read.revision(), GetParam().revision);
}

INSTANTIATE_TEST_SUITE_P(
    Table, RevisionInOutput,
    testing::Values(RevisionCase{"checkout", "Checked out revision 12.", "12"},
                    RevisionCase{"update", "Updated to revision 3.", "3"},
                    RevisionCase{"nothing new", "At revision 3.", "3"},
                    RevisionCase{"commit", "Committed revision 1234567890123.", "1234567890123"},
                    RevisionCase{"export", "Exported revision 3.", "3"},
                    RevisionCase{"no number", "Committed revision .", ""},
                    RevisionCase{"within a line", "Adding  Committed revision 3.", ""}),
    CaseName());

} // namespace

} // namespace quen::test
