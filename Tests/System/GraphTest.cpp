#include "Tests/System/ShowingCase.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

namespace quen::test {

namespace {

/// A branch that goes on behind a merge of it, a merge into it, a tag, a branch that was renamed.
class GraphTest : public testing::Test {
protected:
    GraphTest() {
        commit("a.c", "a\n", "First");
        copy("trunk", "branches/fix", "Branch");
        commit("a.c", "a\nb\n", "Trunk goes on");
        change("branches/fix", "echo f > f.c; svn add -q f.c", "Fix", "bob");
        merge("branches/fix", "Merge the fix");
        change("branches/fix", "svn merge -q ^/trunk", "Catch up", "bob");
        change("branches/fix", "echo g >> f.c", "Fix more\n\nMuch more.", "bob");
        copy("trunk", "tags/1.0", "Release");
        sandbox_.svn({"move", "-q", "--username", "alice", "-m", "Better name",
                      sandbox_.url("branches/fix"), sandbox_.url("branches/repair")});
    }

    void commit(const char* file, const char* text, const char* message) const {
        sandbox_.write(file, text);
        sandbox_.svn({"add", "-q", "--force", file});
        sandbox_.commit(message);
    }

    void copy(const char* from, const char* to, const char* message) const {
        sandbox_.svn({"copy", "-q", "--username", "alice", "-m", message, sandbox_.url(from),
                      sandbox_.url(to)});
    }

    /// A script in a working copy of its own of a branch.
    void change(const char* branch, const std::string& script, const std::string& message,
                const char* author) const {
        const std::filesystem::path other = sandbox_.root() / "other";
        std::filesystem::remove_all(other);
        sandbox_.svn({"checkout", "-q", sandbox_.url(branch), other.string()});
        ASSERT_EQ(sandbox_.run({"sh", "-ec", script}, other).status, 0);
        sandbox_.svn({"commit", "-q", "--username", author, "-m", message, other.string()});
    }

    void merge(const char* branch, const char* message) const {
        sandbox_.svn({"update", "-q"});
        sandbox_.svn({"merge", "-q", sandbox_.url(branch)});
        sandbox_.commit(message);
    }

    Sandbox sandbox_;
};

TEST_F(GraphTest, ShowsBranchesAndMergesInLines) {
    const char* const graph = "● r10  (repair)  alice  AGE  Better name\n"
                              "│ ● r9  (tags/1.0)  alice  AGE  Release\n"
                              "● │ r8  (fix)  bob  AGE  Fix more\n"
                              "● │ r7  (fix)  bob  AGE  Catch up\n"
                              "├─┤\n"
                              "│ ● r6  (trunk)  alice  AGE  Merge the fix\n"
                              "├─┤\n"
                              "● │ r5  (fix)  bob  AGE  Fix\n"
                              "│ ● r4  (trunk)  alice  AGE  Trunk goes on\n"
                              "● │ r3  (fix)  alice  AGE  Branch\n"
                              "╰─┤\n"
                              "  ● r2  (trunk)  alice  AGE  First\n"
                              "  ● r1  (trunk)  alice  AGE  The usual layout\n";
    expectEach(sandbox_, {{{"log", "--graph", "--oneline"}, graph},
                          {{"log", "--graph", "--oneline", sandbox_.url("branches/repair")}, graph},
                          {{"log", "--graph", "--oneline", sandbox_.url()}, graph}});
    const Ran ascii = sandbox_.run({Sandbox::program(), "log", "--graph", "--oneline", "-5"},
                                   sandbox_.workingCopy(), {"LC_ALL=C"});
    EXPECT_EQ(sandbox_.neutral(ascii.out), "* r10  (repair)  alice  AGE  Better name\n"
                                           "| * r9  (tags/1.0)  alice  AGE  Release\n"
                                           "* | r8  (fix)  bob  AGE  Fix more\n"
                                           "* | r7  (fix)  bob  AGE  Catch up\n"
                                           "|\\|\n"
                                           "| * r6  (trunk)  alice  AGE  Merge the fix\n"
                                           "|/|\n");
}

TEST_F(GraphTest, ShowsWholeMessagesBesideIt) {
    expectEach(sandbox_, {{{"log", "--graph", "-4"},
                           "● r10  (repair)  alice  AGE\n"
                           "│\n"
                           "│     Better name\n"
                           "│\n"
                           "│ ● r9  (tags/1.0)  alice  AGE\n"
                           "│ │\n"
                           "│ │     Release\n"
                           "│ │\n"
                           "● │ r8  (fix)  bob  AGE\n"
                           "│ │\n"
                           "│ │     Fix more\n"
                           "│ │\n"
                           "│ │     Much more.\n"
                           "│ │\n"
                           "● │ r7  (fix)  bob  AGE\n"
                           "├─┤\n"
                           "│ │     Catch up\n"
                           "│ │\n"},
                          {{"log", "--graph", "-q", "-2"},
                           "● r10  (repair)  alice  AGE\n"
                           "│ ● r9  (tags/1.0)  alice  AGE\n"},
                          {{"log", "--graph", "--author", "bob", "--oneline"},
                           "● r8  (fix)  bob  AGE  Fix more\n"
                           "●   r7  (fix)  bob  AGE  Catch up\n"
                           "├─╮\n"
                           "● │ r5  (fix)  bob  AGE  Fix\n"
                           "╰─┤\n"}});
    const Ran files = sandbox_.quen({"log", "--graph", "-v", "-1", "--search", "Better"});
    EXPECT_THAT(files.out, testing::HasSubstr("│     deleted  /branches/fix\n"));
    EXPECT_EQ(sandbox_.quen({"log", "--graph", "--since", "2001-01-01"}).out,
              sandbox_.quen({"log", "--graph"}).out);
}

TEST_F(GraphTest, GivesScriptsTheParents) {
    const Ran ran = sandbox_.quen({"log", "--graph", "--jsonl"});
    std::map<int, std::pair<std::string, std::vector<int>>> found;
    std::istringstream lines(ran.out);
    for (std::string line; std::getline(lines, line);) {
        const auto record = nlohmann::json::parse(line);
        found[record.at("revision")] = {record.at("branch"), record.at("parents")};
    }
    using Found = decltype(found);
    EXPECT_EQ(found, (Found{{10, {"repair", {8}}},
                            {9, {"tags/1.0", {6}}},
                            {8, {"fix", {7}}},
                            {7, {"fix", {5, 6}}},
                            {6, {"trunk", {4, 5}}},
                            {5, {"fix", {3}}},
                            {4, {"trunk", {2}}},
                            {3, {"fix", {2}}},
                            {2, {"trunk", {1}}},
                            {1, {"trunk", {}}}}));
    EXPECT_EQ(nlohmann::json::parse(sandbox_.quen({"log", "--graph", "--json"}).out).size(), 10U);
}

TEST_F(GraphTest, EndsWithItsReader) {
    const Ran head =
        sandbox_.run({"sh", "-c", "'" + Sandbox::program() + "' log --graph --oneline | head -n 1"},
                     sandbox_.workingCopy());
    EXPECT_EQ(sandbox_.neutral(head.out), "● r10  (repair)  alice  AGE  Better name\n");
    EXPECT_EQ(head.err, "");
}

TEST_F(GraphTest, IsOfAWholeProject) {
    expectEach(sandbox_,
               {{{"log", "--graph", "a.c"},
                 "",
                 1,
                 "quen log: \"a.c\" is only a part of trunk, and --graph shows the branches of a "
                 "whole project. Leave PATH out, or leave --graph out to see the history of this "
                 "item.\n"},
                {{"log", "--graph", "-c", "3"},
                 "",
                 2,
                 "quen log: --change and --graph cannot be used together. `quen help log` shows "
                 "how to use it.\n"}});
}

} // namespace

} // namespace quen::test
