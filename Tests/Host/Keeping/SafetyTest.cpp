#include "Host/Keeping/TheirsKeeper.h"
#include "Host/Keeping/UndoStore.h"
#include "Host/Plans/Plans.h"
#include "QuenFoundation/QuenSourceControlRequestType.h"
#include "Tests/Host/Keeping/TwoPeople.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <iterator>
#include <set>
#include <sstream>

namespace quen::test {

namespace {

namespace fs = std::filesystem;

/// Two people at work on one repository. Every line that either ever writes is different from every
/// other, and is taken down; at the end each must be in the repository, on the disk of the one who
/// wrote it, or must have been named as lost before the step that took it.
class SafetyTest : public testing::Test {
protected:
    /// Writes a file with a line of its own in the middle.
    void write(const fs::path& workingCopy, std::string_view name) {
        const std::string line = "line " + std::to_string(++count_) + " of " + std::string(name);
        lines_.insert(line);
        people_.write(workingCopy, name, "1\n2\n" + line + "\n4\n5\n");
    }
    void writeOurs(std::string_view name) { write(people_.ours(), name); }
    void writeTheirs(std::string_view name) { write(people_.theirs(), name); }
    String pathOf(std::string_view name) const { return (people_.ours() / name).string(); }
    std::string svn(const Sandbox::Words& words) const {
        return people_.svn(people_.ours(), words);
    }
    UndoStore undo() const { return UndoStore((people_.sandbox().root() / "undo").string()); }
    std::string clientDirectory() const { return people_.sandbox().root().string(); }

    /// Keeps what a plan calls lost, performs, and notes the result: a host's order of things.
    UndoStore::Kept keepingLost(const std::vector<LostItem>& lost, std::int32_t type,
                                const std::vector<std::string>& paths) {
        UndoStore::Kept kept =
            undo().keep(pathOf("."), "step", lostContent(lost), lostPropertyNotes(lost));
        EXPECT_FALSE(kept.error) << kept.error.description().str();
        EXPECT_TRUE(kept.refused.empty());
        const Told told = people_.perform(type, paths);
        EXPECT_FALSE(told.error) << told.error.description().str();
        if (!kept.entry.id.isNil()) {
            EXPECT_FALSE(undo().noteResult(kept.entry.id));
        }
        return kept;
    }

    static void collect(const std::string& text, std::set<std::string>& found) {
        std::istringstream stream(text);
        for (std::string line; std::getline(stream, line);) {
            found.insert(line);
        }
    }
    std::set<std::string> linesEverywhere() const {
        std::set<std::string> found;
        for (const fs::path& top : {people_.ours(), people_.theirs()}) {
            for (auto each = fs::recursive_directory_iterator(top);
                 each != fs::recursive_directory_iterator(); ++each) {
                if (each->path().filename() == ".svn") {
                    each.disable_recursion_pending();
                } else if (each->is_regular_file()) {
                    std::ifstream file(each->path(), std::ios::binary);
                    collect({std::istreambuf_iterator<char>(file), {}}, found);
                }
            }
        }
        // Every revision of every file, as differences to the one before: a line and its sign.
        std::set<std::string> history;
        collect(svn({"log", "-q", "--diff", people_.url("").str()}), history);
        for (const std::string& line : history) {
            found.insert(line.empty() ? line : line.substr(1));
        }
        return found;
    }
    void expectNothingLost() const {
        const std::set<std::string> found = linesEverywhere();
        for (const std::string& line : lines_) {
            EXPECT_TRUE(found.contains(line)) << line;
        }
    }

    /// Both have the same files at the same revision.
    void begin(std::initializer_list<std::string_view> names) {
        for (const std::string_view name : names) {
            writeOurs(name);
        }
        svn({"add", "-q", "--force", "."});
        people_.commitOurs("The beginning");
        svn({"update", "-q"});
        people_.updateTheirs();
    }

    const TwoPeople people_;
    std::set<std::string> lines_;
    int count_ = 0;
};

TEST_F(SafetyTest, TheWatchSeesALostLine) {
    writeOurs("a");
    people_.write(people_.ours(), "a", "");
    EXPECT_FALSE(linesEverywhere().contains(*lines_.begin()))
        << "a test that cannot fail would show nothing";
}

TEST_F(SafetyTest, AnUpdateOverEdits) {
    begin({"text", "props", "tree", "gone", "dir/a @2"});
    svn({"propset", "-q", "colour", "blue", "props"});
    people_.commitOurs("Properties");
    svn({"update", "-q"});
    people_.updateTheirs();
    for (const char* const name : {"text", "tree", "dir/a @2", "added"}) {
        writeTheirs(name);
    }
    people_.svn(people_.theirs(), {"propset", "-q", "colour", "red", "props"});
    people_.svn(people_.theirs(), {"add", "-q", "added"});
    people_.svn(people_.theirs(), {"remove", "-q", "gone"});
    people_.commitTheirs("Theirs");
    for (const char* const name : {"text", "gone", "dir/a @2", "added"}) {
        writeOurs(name);
    }
    svn({"propset", "-q", "colour", "green", "props"});
    svn({"remove", "-q", "tree"});

    const UpdatePlan plan = planUpdate({people_.ours().string()});
    const Told told = people_.update();
    std::set<std::string> named;
    for (const auto* const list : {&plan.changedOnBothSides, &plan.inTheWay}) {
        for (const StatusEntry& each : *list) {
            named.insert(fs::path(each.path.str()).lexically_relative(people_.ours()).string());
        }
    }
    for (const ConflictFacts& each : told.facts.conflicts) {
        EXPECT_TRUE(named.contains(each.path.str().substr(3))) << each.path.str();
    }
    const auto kept = keepTheirsOfUpdate(told.facts, clientDirectory());
    EXPECT_EQ(kept.size(), 3U) << "two texts and a property";
    for (const KeptTheirs& each : kept) {
        EXPECT_FALSE(each.error) << each.error.description().str();
        EXPECT_EQ(each.theirs.isNil(), each.conflict.text != ConflictState::settled);
    }
    expectNothingLost();
    // Theirs lies where the person looks, not only in the repository.
    EXPECT_NE(people_.read(people_.ours(), "text.theirs.r4"), "absent");
    EXPECT_NE(people_.read(people_.ours(), "dir/a @2.theirs.r4"), "absent");
}

TEST_F(SafetyTest, FactsAgreeWithTheStatusAfterwards) {
    begin({"text", "tree"});
    writeTheirs("text");
    people_.svn(people_.theirs(), {"remove", "-q", "tree"});
    people_.commitTheirs("Theirs");
    writeOurs("text");
    writeOurs("tree");
    const Told told = people_.update();
    std::set<std::string> left;
    for (const ConflictFacts& each : told.facts.conflicts) {
        if (each.tree == ConflictState::left || each.text == ConflictState::left) {
            left.insert(each.path.str());
        }
    }
    std::set<std::string> shown;
    StatusFactsReader reader;
    reader.take(people_.svn(people_.sandbox().root(), {"status", "--xml", "wc"}));
    EXPECT_FALSE(reader.finish());
    for (const StatusEntry& entry : reader.facts().entries) {
        if (isConflicted(entry)) {
            shown.insert(entry.path.str());
        }
    }
    EXPECT_EQ(left, shown);
    EXPECT_EQ(left, std::set<std::string>{"wc/tree"});
}

TEST_F(SafetyTest, ARevertAndItsUndo) {
    begin({"edited", "source", "listed", "replaced", "dir/a"});
    for (const char* const name : {"edited", "listed", "dir/a"}) {
        writeOurs(name);
    }
    svn({"changelist", "-q", "later", "listed"});
    svn({"copy", "-q", "source", "copied @2@"});
    writeOurs("copied @2");
    svn({"move", "-q", "source", "dir/moved"});
    writeOurs("dir/moved");
    writeOurs("added");
    svn({"add", "-q", "added"});
    svn({"remove", "-q", "replaced"});
    writeOurs("replaced");
    svn({"add", "-q", "replaced"});
    writeOurs("unversioned");

    const RevertPlan plan = planRevert({people_.ours().string()});
    EXPECT_FALSE(plan.error) << plan.error.description().str();
    keepingLost(plan.lost, RequestTypeRevert, {people_.ours().string()});
    EXPECT_TRUE(planRevert({people_.ours().string()}).touched.empty()) << "all is reverted";
    const auto restored = undo().restoreLast(people_.ours().string());
    EXPECT_EQ(restored.restored.size(), 6U);
    EXPECT_TRUE(restored.refused.empty());
    expectNothingLost();
}

TEST_F(SafetyTest, ARevertAndAnUndoOverNewerWork) {
    begin({"a", "b"});
    writeOurs("a");
    writeOurs("b");
    const RevertPlan plan = planRevert({people_.ours().string()});
    keepingLost(plan.lost, RequestTypeRevert, {people_.ours().string()});
    writeOurs("a");
    const auto restored = undo().restoreLast(people_.ours().string());
    ASSERT_EQ(restored.refused.size(), 1U);
    EXPECT_EQ(restored.refused[0].path, pathOf("a"));
    EXPECT_EQ(restored.refused[0].beside, pathOf("a.undone"));
    expectNothingLost();
}

TEST_F(SafetyTest, ARemovalAndItsUndo) {
    begin({"edited", "dir/a", "dir/b", "clean"});
    for (const char* const name :
         {"edited", "dir/a", "dir/unversioned", "dir/deep/er/unversioned", "dir/added"}) {
        writeOurs(name);
    }
    svn({"add", "-q", "dir/added"});
    const std::vector<String> paths{pathOf("edited"), pathOf("dir"), pathOf("clean")};
    const RemovePlan plan = planRemove(paths);
    EXPECT_FALSE(plan.error) << plan.error.description().str();
    keepingLost(plan.lost, RequestTypeRemove, {paths[0].str(), paths[1].str(), paths[2].str()});
    EXPECT_FALSE(fs::exists(pathOf("dir").str()));
    const auto restored = undo().restoreLast(people_.ours().string());
    EXPECT_TRUE(restored.refused.empty());
    EXPECT_NE(people_.read(people_.ours(), "dir/deep/er/unversioned"), "absent");
    expectNothingLost();
}

TEST_F(SafetyTest, AMergeOverEdits) {
    begin({"text", "other"});
    svn({"copy", "-q", "-m", "A branch", "^/trunk", "^/branches/b"});
    people_.updateTheirs();
    writeTheirs("text");
    writeTheirs("other");
    people_.commitTheirs("In the trunk");
    svn({"switch", "-q", "^/branches/b", "."});
    writeOurs("text");
    people_.commitOurs("On the branch");
    svn({"update", "-q"});
    const MergePlan plan = planMerge(people_.url("trunk"), people_.ours().string());
    ASSERT_EQ(plan.facts.conflicts.size(), 1U);
    const Told told = people_.merge(people_.url("trunk"));
    EXPECT_TRUE(told.facts.holdsSettled());
    for (const KeptTheirs& each :
         keepTheirsOfMerge(told.facts, clientDirectory(), people_.url("trunk"))) {
        EXPECT_FALSE(each.error) << each.error.description().str();
        EXPECT_FALSE(each.theirs.isNil());
    }
    expectNothingLost();
}

TEST_F(SafetyTest, ASwitchOverEditsAndThingsInTheWay) {
    begin({"text"});
    svn({"copy", "-q", "-m", "A branch", "^/trunk", "^/branches/b"});
    people_.svn(people_.theirs(), {"switch", "-q", "^/branches/b", "."});
    writeTheirs("text");
    writeTheirs("new");
    people_.svn(people_.theirs(), {"add", "-q", "new"});
    people_.commitTheirs("On the branch");
    writeOurs("text");
    writeOurs("new");
    const SwitchPlan plan = planSwitch(people_.ours().string(), people_.url("branches/b"));
    EXPECT_EQ(plan.changedOnBothSides.size(), 1U);
    EXPECT_EQ(plan.inTheWay.size(), 1U);
    svn({"switch", "-q", "^/branches/b", "."});
    expectNothingLost();
}

} // namespace

} // namespace quen::test
