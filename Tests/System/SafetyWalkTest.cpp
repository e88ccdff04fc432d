#include "Tests/System/ShowingCase.h"
#include "Tests/System/Terminal.h"
#include "Tests/System/TwoWorkingCopies.h"

#include <fstream>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <iterator>
#include <set>
#include <sstream>

namespace quen::test {

namespace {

namespace fs = std::filesystem;

using testing::HasSubstr;
using Names = std::vector<std::string>;

/// Two people at work on one repository, through all ways to lose work with this client, by the
/// command line. Every line that either ever writes differs from every other and is taken down, and
/// so is every value of a property. At the end each is in the repository, in a working copy, in a
/// file beside, kept for an undo, or was named in a question that was answered with yes.
class SafetyWalk : public testing::Test {
protected:
    std::string freshLine(const std::string& about) {
        const std::string line = "line " + std::to_string(++count_) + " of " + about;
        lines_.insert(line);
        return line;
    }
    /// A file with a line of its own in the middle, where it conflicts with everybody else's.
    void write(const std::string& name) {
        people_.write(name, "1\n2\n" + freshLine(name) + "\n4\n5\n");
    }
    void writeTheirs(const std::string& name) {
        people_.writeTheirs(name, "1\n2\n" + freshLine(name) + "\n4\n5\n");
    }
    void setProperty(const std::string& name) {
        sandbox_.svn({"propset", "-q", "colour", freshLine("property of " + name), name});
    }
    void setTheirProperty(const std::string& name) {
        people_.svnTheirs({"propset", "-q", "colour", freshLine("property of " + name), name});
    }

    /// A command that must end with a status; what it says counts as told.
    std::string quen(const Sandbox::Words& words, int status = 0) {
        const Ran ran = sandbox_.quen(words);
        EXPECT_EQ(ran.status, status) << words[0] << '\n' << ran.out << ran.err;
        said_ += ran.out + ran.err;
        return ran.out + ran.err;
    }
    /// A command that is refused where nobody can be asked, and changes nothing then; and that asks
    /// at a terminal, naming each of the items.
    std::string quenAsking(Sandbox::Words words, const Names& named, int status = 0) {
        const std::string before = everything();
        const Ran refused = sandbox_.quen(words);
        EXPECT_EQ(refused.status, 1) << words[0] << refused.out;
        EXPECT_EQ(everything(), before) << words[0] << " has changed something";
        words.insert(words.begin(), Sandbox::program());
        Terminal terminal(sandbox_.invocation(words, sandbox_.workingCopy()));
        EXPECT_TRUE(terminal.waitFor("[y/N] ")) << words[1] << terminal.shown();
        for (const std::string& name : named) {
            EXPECT_THAT(terminal.shown(), HasSubstr(name + "\r\n")) << words[1];
            EXPECT_THAT(refused.err, HasSubstr(name + "\n")) << words[1];
        }
        terminal.type("y\n");
        EXPECT_EQ(terminal.waitForEnd(), status) << terminal.shown();
        return terminal.shown();
    }

    /// All names and contents of the working copy.
    std::string everything() const {
        std::string all;
        std::set<fs::path> paths;
        for (auto each = fs::recursive_directory_iterator(sandbox_.workingCopy());
             each != fs::recursive_directory_iterator(); ++each) {
            if (each->path().filename() == ".svn") {
                each.disable_recursion_pending();
            } else {
                paths.insert(each->path());
            }
        }
        for (const fs::path& path : paths) {
            all += path.string() + '\n';
            all += fs::is_regular_file(fs::symlink_status(path)) ? sandbox_.read(path) : "";
        }
        return all + sandbox_.svn({"status"});
    }

    static void collect(const std::string& text, std::set<std::string>& found) {
        std::istringstream stream(text);
        for (std::string line; std::getline(stream, line);) {
            const auto begin = line.find("line ");
            if (begin != std::string::npos) {
                found.insert(line.substr(begin));
            }
        }
    }
    static void collectBelow(const fs::path& top, std::set<std::string>& found) {
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
    std::set<std::string> linesEverywhere() const {
        std::set<std::string> found;
        collectBelow(sandbox_.workingCopy(), found);
        collectBelow(people_.theirs(), found);
        // What `quen undo` would bring back.
        const fs::path kept = sandbox_.root() / "home/.local/state/quen/undo";
        if (fs::exists(kept)) {
            collectBelow(kept, found);
        }
        collect(sandbox_.svn({"log", "-q", "--diff", sandbox_.url()}), found);
        collect(sandbox_.svn({"proplist", "-v", "-R", "."}), found);
        collect(people_.svnTheirs({"proplist", "-v", "-R", "."}), found);
        return found;
    }
    /// Told to the person: the values of properties that an undo does not set again.
    void expectNothingLost() const {
        std::set<std::string> found = linesEverywhere();
        collect(said_, found);
        for (const std::string& line : lines_) {
            EXPECT_TRUE(found.contains(line)) << line;
        }
    }

    /// Both have the same files at the same revision.
    void begin(const Names& names) {
        for (const std::string& name : names) {
            write(name);
        }
        people_.commitOurs();
    }
    void commitBoth() {
        quen({"commit", "-m", "Ours"});
        quen({"update"});
        people_.svnTheirs({"update", "-q", "--accept", "postpone"});
    }

    void updateOverEdits();
    void commitIsOutOfDate();
    void mergeIntoLocalChanges();
    void switchWithEdits();
    void checkoutOverThings();
    void revertAndUndo();
    void removeAndUndo();
    void removeInTheRepository();
    void exportOverAFile();
    void resolveForTheirs();

    const TwoWorkingCopies people_;
    const Sandbox& sandbox_ = people_.sandbox;
    std::set<std::string> lines_;
    std::string said_;
    int count_ = 0;
};

void SafetyWalk::updateOverEdits() {
    begin({"text", "props", "gone here", "gone there", "dir/a@2"});
    for (const char* const name : {"text", "gone here", "dir/a@2", "new"}) {
        writeTheirs(name);
    }
    setTheirProperty("props");
    people_.svnTheirs({"remove", "-q", "gone there"});
    people_.commitTheirs();
    for (const char* const name : {"text", "gone there", "dir/a@2", "new"}) {
        write(name);
    }
    setProperty("props");
    sandbox_.svn({"remove", "-q", "gone here"});

    EXPECT_THAT(quen({"update", "--preview"}, 3), HasSubstr("  modified             text\n"));
    const std::string said = quen({"update"}, 3);
    for (const char* const named : {"  text ", "  dir/a@2 ", "  props (", "  gone here (tree)",
                                    "  gone there (tree)", "  new (tree)"}) {
        EXPECT_THAT(said, HasSubstr(named));
    }
    quen({"resolve", "gone here", "gone there", "new"});
    // "new" was ours alone, and theirs is in the repository.
    EXPECT_THAT(sandbox_.read("new"), HasSubstr("line"));
    quen({"revert", "--yes", "gone here", "gone there", "new"});
}

void SafetyWalk::commitIsOutOfDate() {
    writeTheirs("text");
    people_.commitTheirs();
    quen({"commit", "-m", "Too early"}, 1);
    quen({"update"}, 3);
    commitBoth();
}

void SafetyWalk::mergeIntoLocalChanges() {
    sandbox_.svn({"copy", "-q", "-m", "B", sandbox_.url("trunk"), sandbox_.url("branches/b")});
    people_.svnTheirs({"switch", "-q", "^/branches/b"});
    writeTheirs("text");
    writeTheirs("dir/only there");
    setTheirProperty("props");
    people_.commitTheirs();
    write("text");
    setProperty("props");
    commitBoth();
    write("dir/a@2");
    EXPECT_THAT(quenAsking({"merge", "b"}, {"  modified  dir/a@2"}, 3),
                HasSubstr("conflicts were decided for your version"));
    quenAsking({"revert", "."}, {"dir/a@2"});
    quen({"undo", "--step", "2"});
    EXPECT_THAT(sandbox_.svn({"status", "-q"}), HasSubstr("M       dir/a@2\n"));
    quen({"undo"});
}

void SafetyWalk::switchWithEdits() {
    quen({"revert", "--yes", "props", "text"});
    write("text");
    write("dir/only there");
    const std::string said =
        quenAsking({"switch", "b"}, {"different there  text", "in the way    dir/only there"}, 3);
    EXPECT_THAT(said, HasSubstr("text.mine"));
    quen({"resolve", "--accept", "working", "text"});
    quen({"resolve", "dir/only there"});
    quen({"revert", "--yes", "dir/only there"});
}

void SafetyWalk::checkoutOverThings() {
    write("place/text");
    quenAsking({"checkout", sandbox_.url("trunk"), "place"}, {"  in the way  place/text"}, 3);
    EXPECT_THAT(sandbox_.read("place/text"), HasSubstr("line"));
}

void SafetyWalk::revertAndUndo() {
    quen({"revert", "--yes", "text", "props", "dir"});
    for (const char* const name : {"edited", "source", "listed", "replaced", "d/a", "d@/a"}) {
        write(name);
    }
    sandbox_.svn({"add", "-q", "edited", "source", "listed", "replaced", "d", "d@@"});
    sandbox_.svn(
        {"commit", "-q", "-m", "More", "edited", "source", "listed", "replaced", "d", "d@@"});
    for (const char* const name : {"edited", "listed", "d/a", "d@/a"}) {
        write(name);
    }
    setProperty("edited");
    sandbox_.svn({"changelist", "-q", "later", "listed"});
    sandbox_.svn({"copy", "-q", "source", "copied @2@"});
    write("copied @2");
    sandbox_.svn({"move", "-q", "source", "moved"});
    write("moved");
    write("added");
    sandbox_.svn({"add", "-q", "added"});
    sandbox_.svn({"remove", "-q", "replaced"});
    write("replaced");
    sandbox_.svn({"add", "-q", "replaced"});
    fs::create_symlink("edited", sandbox_.workingCopy() / "link");

    quenAsking({"revert", "d@"}, {"  modified  d@/a"});
    EXPECT_THAT(sandbox_.svn({"status", "d"}), HasSubstr("M       d/a\n")) << "the other one";
    quen({"undo"});
    const std::string said = quenAsking(
        {"revert", "edited", "listed", "copied @2", "moved", "source", "added", "replaced", "d"},
        {"edited", "listed", "copied @2", "moved", "replaced", "d/a"});
    EXPECT_THAT(said, HasSubstr("properties modified"));
    write("listed"); // newer work, in the way of the undo
    EXPECT_THAT(quen({"undo"}, 1), HasSubstr("\"listed.undone\""));
}

void SafetyWalk::removeAndUndo() {
    for (const char* const name :
         {"tree/edited", "tree/added", "tree/deep/unversioned", "tree/ignored.o"}) {
        write(name);
    }
    sandbox_.svn({"add", "-q", "--depth", "empty", "tree"});
    sandbox_.svn({"add", "-q", "tree/edited"});
    sandbox_.svn({"commit", "-q", "-m", "Tree", "tree"});
    sandbox_.svn({"propset", "-q", "svn:ignore", "*.o", "tree"});
    write("tree/edited");
    sandbox_.svn({"add", "-q", "tree/added"});
    quenAsking({"remove", "tree"}, {"tree/edited", "tree/added", "tree/deep", "tree/ignored.o"});
    EXPECT_FALSE(people_.exists("tree/edited"));
    quen({"undo"});
    EXPECT_TRUE(people_.exists("tree/deep/unversioned"));
}

void SafetyWalk::removeInTheRepository() {
    quenAsking({"remove", "-m", "M", sandbox_.url("branches/b/dir")},
               {sandbox_.url("branches/b/dir")});
}

void SafetyWalk::exportOverAFile() {
    write("exported");
    quen({"export", "edited", "exported"}, 1);
    EXPECT_THAT(sandbox_.read("exported"), HasSubstr("of exported"));
}

void SafetyWalk::resolveForTheirs() {
    write("text");
    quen({"switch", "--yes", "trunk"}, 3);
    people_.write("text", sandbox_.read("text") + freshLine("text") + "\n");
    quen({"resolve", "--accept", "theirs", "text"});
    quen({"undo"});
}

TEST_F(SafetyWalk, NothingIsLostOnTheWholeWay) {
    updateOverEdits();
    expectNothingLost();
    commitIsOutOfDate();
    expectNothingLost();
    mergeIntoLocalChanges();
    expectNothingLost();
    switchWithEdits();
    expectNothingLost();
    checkoutOverThings();
    revertAndUndo();
    expectNothingLost();
    removeAndUndo();
    expectNothingLost();
    removeInTheRepository();
    exportOverAFile();
    resolveForTheirs();
    expectNothingLost();
    EXPECT_GT(lines_.size(), 40U);
}

TEST_F(SafetyWalk, TheWatchSeesALostLine) {
    write("a");
    people_.write("a", "");
    EXPECT_FALSE(linesEverywhere().contains(*lines_.begin()))
        << "a test that cannot fail would show nothing";
}

} // namespace

} // namespace quen::test
