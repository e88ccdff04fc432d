#include "Host/Keeping/ConflictOutcome.h"
#include "Host/TaskErrors.h"
#include "Host/TaskFailure.h"
#include "QuenFoundation/QuenSourceControlConstants.h"
#include "Tests/Host/Keeping/TwoPeople.h"

#include <gtest/gtest.h>
#include <set>
#include <string>
#include <vector>

namespace quen::test {

namespace {

using Kind = ConflictOutcome::Kind;

/// In a line: what it is about, who decided, and where theirs is.
std::string lineOf(const ConflictOutcome& outcome) {
    const char* const kind = outcome.kind == Kind::text       ? "text"
                             : outcome.kind == Kind::property ? "property"
                             : outcome.kind == Kind::tree     ? "tree"
                                                              : "unspecified";
    std::string line = outcome.path.str() + " " + kind;
    line += outcome.state == ConflictState::settled ? " settled" : " left";
    line += outcome.theirs.isNil() ? "" : " theirs " + outcome.theirs.str();
    line += outcome.mine.isNil() ? "" : " mine " + outcome.mine.str();
    line += outcome.description.isNil() ? "" : " " + outcome.description.str();
    return line;
}

std::vector<std::string> linesOf(const std::vector<ConflictOutcome>& outcomes) {
    std::vector<std::string> lines;
    for (const ConflictOutcome& each : outcomes) {
        lines.push_back(lineOf(each));
    }
    return lines;
}

TEST(ConflictOutcomeTest, EachConflictOfAnItemCountsForItself) {
    ChangeFacts facts;
    ConflictFacts both;
    both.path = "both";
    both.text = ConflictState::settled;
    both.properties = ConflictState::settled;
    ConflictFacts tree;
    tree.path = ".";
    tree.tree = ConflictState::left;
    ConflictFacts unspecified;
    unspecified.path = "/elsewhere";
    unspecified.unspecified = ConflictState::settled;
    facts.conflicts = {both, tree, unspecified};
    KeptTheirs kept;
    kept.conflict = both;
    kept.theirs = "/wc/both.theirs.r3";
    kept.revision = 3;

    const auto outcomes = conflictOutcomes(facts, {kept}, "/wc");

    EXPECT_EQ(linesOf(outcomes),
              (std::vector<std::string>{"/wc/both text settled theirs /wc/both.theirs.r3",
                                        "/wc/both property settled", "/wc tree left",
                                        "/elsewhere unspecified settled"}));
    EXPECT_EQ(outcomes[0].revision, 3);
    EXPECT_TRUE(conflictOutcomes({}, {}, "/wc").empty());
}

/// As a task's error tells them.
Error errorWithNumbers(std::initializer_list<Value> numbers) {
    return {QuenSourceControlTaskErrorDomain,
            155027,
            {{QuenSourceControlTaskErrorCodesKey, Array(numbers)}}};
}

TEST(ConflictOutcomeTest, AnErrorIsHarmlessWhereItSaysOnlyThatConflictsAreLeft) {
    EXPECT_TRUE(saysOnlyConflictsLeft(errorWithNumbers({155027})));
    EXPECT_TRUE(saysOnlyConflictsLeft(errorWithNumbers({195024, 155027})));
    EXPECT_TRUE(saysOnlyConflictsLeft(
        Error(QuenSourceControlErrorDomain, -1,
              {{QuenSourceControlUnderlyingErrorsKey, errorWithNumbers({195024, 155027})}})));
    EXPECT_FALSE(saysOnlyConflictsLeft(Error()));
    EXPECT_FALSE(saysOnlyConflictsLeft(errorWithNumbers({})));
    EXPECT_FALSE(saysOnlyConflictsLeft(errorWithNumbers({195024})));
    EXPECT_FALSE(saysOnlyConflictsLeft(errorWithNumbers({155027, 170013})));
    EXPECT_FALSE(saysOnlyConflictsLeft(Error(QuenSourceControlErrorDomain, -1)));
}

TEST(ConflictOutcomeTest, WhatIsLeftIsExplainedByTheClient) {
    const TwoPeople people;
    for (const char* const name : {"text", "tree@2"}) {
        people.write(people.ours(), name, "1\n2\n3\n");
    }
    people.svn(people.ours(), {"add", "-q", "--force", "."});
    people.commitOurs("The beginning");
    people.updateTheirs();
    people.write(people.theirs(), "text", "theirs\n");
    people.svn(people.theirs(), {"remove", "-q", "tree@2@"});
    people.commitTheirs("Theirs");
    for (const char* const name : {"text", "tree@2"}) {
        people.write(people.ours(), name, "ours\n");
    }
    ChangeFactsReader reader;
    reader.take(people.svn(people.ours(), {"update", "--accept", "postpone"}));

    auto outcomes = conflictOutcomes(reader.facts(), {}, people.ours().string());
    explainLeft(outcomes);

    const std::string top = people.ours().string();
    const auto lines = linesOf(outcomes);
    EXPECT_EQ(std::set<std::string>(lines.begin(), lines.end()),
              (std::set<std::string>{
                  top + "/text text left theirs " + top + "/text.r3 mine " + top + "/text.mine",
                  top + "/tree@2 tree left local file edit, incoming file delete or move upon "
                        "update"}));
}

} // namespace

} // namespace quen::test
