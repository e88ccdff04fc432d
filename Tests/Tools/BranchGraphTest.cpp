#include "Tests/Support/CaseName.h"
#include "Tools/Commands/History/BranchGraph.h"

#include <gtest/gtest.h>
#include <ostream>
#include <string>

namespace quen::test {

using namespace tools;

namespace {

/// A revision: its number, its branch, and what it stands on; `previous` says that the first parent
/// is what the branch was before.
GraphNode node(std::int64_t revision, const char* branch, std::vector<GraphParent> parents,
               bool hasPrevious = true) {
    GraphNode made;
    made.revision = revision;
    made.branch = branch;
    made.parents = std::move(parents);
    made.hasPrevious = hasPrevious;
    return made;
}

/// On the branch that it was made on, with what it merged.
GraphNode commit(std::int64_t revision, const char* branch, std::vector<GraphParent> merged = {}) {
    merged.insert(merged.begin(), {branch, revision - 1});
    return node(revision, branch, std::move(merged));
}

GraphNode copy(std::int64_t revision, const char* branch, const char* from, std::int64_t fromRev) {
    return node(revision, branch, {{from, fromRev}});
}

GraphNode first(std::int64_t revision, const char* branch) {
    return node(revision, branch, {}, false);
}

struct Case {
    const char* name;
    std::vector<GraphNode> nodes;
    const char* ascii;
    const char* unicode = nullptr;
    std::size_t cells = 80;
    /// Not shown.
    std::int64_t hidden = 0;
};

void PrintTo(const Case& each, std::ostream* out) {
    *out << each.name;
}

std::string withoutBlanks(std::string line) {
    line.erase(line.find_last_not_of(' ') + 1);
    return line + "\n";
}

std::string drawn(const Case& each, const char* locale) {
    const Palette plain(Palette::Use::never);
    BranchGraph graph(marksOf(locale), plain, each.cells);
    GraphQueue queue(100, false);
    for (const GraphNode& node : each.nodes) {
        queue.add(node);
    }
    queue.end();
    std::string text;
    while (const auto next = queue.take()) {
        const GraphRows rows =
            graph.add(*next, next->revision != each.hidden,
                      [&](const std::string& branch) { return queue.nextOn(branch); });
        for (const GraphRow& row : rows.before) {
            text += withoutBlanks(row.text);
        }
        if (rows.node) {
            text +=
                withoutBlanks(rows.node->text + std::string(rows.width() - rows.node->cells, ' ') +
                              "r" + std::to_string(next->revision));
        }
        for (const GraphRow& row : rows.after) {
            text += withoutBlanks(row.text);
        }
    }
    return text;
}

class BranchGraphTest : public testing::TestWithParam<Case> {};

TEST_P(BranchGraphTest, IsDrawn) {
    EXPECT_EQ(drawn(GetParam(), "C"), GetParam().ascii);
    if (GetParam().unicode != nullptr) {
        EXPECT_EQ(drawn(GetParam(), "C.UTF-8"), GetParam().unicode);
    }
}

INSTANTIATE_TEST_SUITE_P(
    Histories, BranchGraphTest,
    testing::Values(
        Case{"one line",
             {commit(3, "/trunk"), commit(2, "/trunk"), first(1, "/trunk")},
             "* r3\n* r2\n* r1\n",
             "● r3\n● r2\n● r1\n"},
        Case{"a branch that goes on",
             {commit(5, "/branches/b"), commit(4, "/trunk"), copy(3, "/branches/b", "/trunk", 2),
              commit(2, "/trunk"), first(1, "/trunk")},
             "* r5\n"
             "| * r4\n"
             "* | r3\n"
             " \\|\n"
             "  * r2\n"
             "  * r1\n"},
        Case{"a merge and what was merged",
             {commit(5, "/trunk", {{"/branches/b", 4}}), commit(4, "/branches/b"),
              copy(3, "/branches/b", "/trunk", 2), commit(2, "/trunk"), first(1, "/trunk")},
             "*   r5\n"
             "|\\\n"
             "| * r4\n"
             "| * r3\n"
             "|/\n"
             "* r2\n"
             "* r1\n",
             "●   r5\n"
             "├─╮\n"
             "│ ● r4\n"
             "│ ● r3\n"
             "├─╯\n"
             "● r2\n"
             "● r1\n"},
        Case{"a merge of a branch that went on",
             {commit(6, "/branches/b"), commit(5, "/trunk", {{"/branches/b", 4}}),
              commit(4, "/branches/b"), copy(3, "/branches/b", "/trunk", 2), first(2, "/trunk")},
             "* r6\n"
             "| * r5\n"
             "|/|\n"
             "* | r4\n"
             "* | r3\n"
             " \\|\n"
             "  * r2\n"},
        Case{"a merge of less than all",
             {commit(6, "/trunk", {{"/branches/b", 4}}), commit(5, "/branches/b"),
              commit(4, "/branches/b"), copy(3, "/branches/b", "/trunk", 2), first(2, "/trunk")},
             "*   r6\n"
             "|\\\n"
             "| | * r5\n"
             "| |/\n"
             "| * r4\n"
             "| * r3\n"
             "|/\n"
             "* r2\n"},
        Case{"a line is crossed",
             {commit(9, "/trunk"), commit(8, "/branches/a"), commit(7, "/branches/b"),
              copy(6, "/branches/b", "/trunk", 4), copy(5, "/branches/a", "/trunk", 4),
              first(4, "/trunk")},
             "* r9\n"
             "| * r8\n"
             "| | * r7\n"
             "| | * r6\n"
             "|_|/\n"
             "| * r5\n"
             "|/\n"
             "* r4\n",
             "● r9\n"
             "│ ● r8\n"
             "│ │ ● r7\n"
             "│ │ ● r6\n"
             "├─│─╯\n"
             "│ ● r5\n"
             "├─╯\n"
             "● r4\n"},
        Case{"no room for all lines",
             {commit(9, "/trunk"), commit(8, "/branches/a"), commit(7, "/branches/b"),
              commit(6, "/branches/c"), commit(5, "/branches/d"), commit(4, "/trunk")},
             "* r9\n"
             "| * r8\n"
             "| | * r7\n"
             "| | | * r6\n"
             "| | | * r5\n"
             "* | | > r4\n",
             nullptr,
             8},
        Case{"a revision that is not shown",
             {commit(5, "/trunk", {{"/branches/b", 4}}), commit(4, "/branches/b"),
              copy(3, "/branches/b", "/trunk", 2), first(2, "/trunk")},
             "*   r5\n"
             "|\\\n"
             "| * r4\n"
             "|/\n"
             "* r2\n",
             nullptr,
             80,
             3},
        Case{"on no branch",
             {commit(3, "/trunk"), first(2, ""), first(1, "/trunk")},
             "* r3\n| * r2\n* r1\n"}),
    CaseName());

TEST(GraphQueue, HoldsBackUntilItIsKnownWhereLinesLeadTo) {
    GraphQueue queue(2, false);
    queue.add(commit(9, "/trunk", {{"/branches/b", 5}}));
    EXPECT_FALSE(queue.take().has_value());
    queue.add(commit(8, "/branches/b"));
    EXPECT_FALSE(queue.take().has_value());
    queue.add(commit(7, "/trunk"));
    // No more than two wait.
    EXPECT_EQ(queue.take()->revision, 9);
    EXPECT_EQ(queue.nextOn("/trunk"), 7);
    EXPECT_EQ(queue.nextOn("/branches/b"), 8);
    EXPECT_EQ(queue.nextOn("/branches/c"), std::nullopt);
    EXPECT_EQ(queue.take()->revision, 8);
}

TEST(GraphQueue, KnowsAllParentsWhereTheyAreNeeded) {
    GraphQueue queue(100, true);
    queue.add(commit(9, "/trunk", {{"/branches/b", 7}}));
    queue.add(commit(8, "/branches/b"));
    queue.add(commit(5, "/branches/b"));
    EXPECT_FALSE(queue.take().has_value());
    queue.add(commit(4, "/trunk"));
    const auto merge = queue.take();
    ASSERT_TRUE(merge.has_value());
    EXPECT_EQ(merge->parents[0].revision, 4);
    EXPECT_EQ(merge->parents[1].revision, 5);
}

} // namespace

} // namespace quen::test
