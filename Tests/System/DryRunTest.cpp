#include "Tests/System/ShowingCase.h"
#include "Tools/Commands/CommandLine/CommandLine.h"

#include <filesystem>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <map>
#include <set>

namespace quen::test {

namespace {

using testing::HasSubstr;

/// A command that would change something, and what its dry run says.
struct DryCase {
    Sandbox::Words words;
    std::string says;
    std::string tells = {};
};

class DryRunTest : public testing::Test {
protected:
    DryRunTest() {
        makeHistory(sandbox_);
        sandbox_.write("hello.c", "mine\n");
        sandbox_.write("notes.txt", "new\n");
        sandbox_.write("undone.c", "u\n");
        sandbox_.svn({"add", "-q", "undone.c"});
    }

    /// Everything below the sandbox, the client's own data too, with what the files hold.
    std::map<std::string, std::string> everything() const {
        std::map<std::string, std::string> files;
        for (const char* const directory : {"wc", "repository"}) {
            for (const auto& entry :
                 std::filesystem::recursive_directory_iterator(sandbox_.root() / directory)) {
                const std::string path = entry.path().string();
                // The client's caches and locks are not content.
                const bool isContent =
                    entry.is_regular_file() && path.find("/.svn/") == std::string::npos;
                files[path] = isContent ? sandbox_.read(entry.path()) : "";
            }
        }
        files["status"] = sandbox_.svn({"status", "-v", "--no-ignore"});
        files["properties"] = sandbox_.svn({"proplist", "-vR"});
        return files;
    }

    std::vector<DryCase> cases() const {
        const std::string trunk = sandbox_.url("trunk");
        const std::string run = "Would run: svn ";
        return {
            {{"add", "notes.txt"}, run + "add notes.txt"},
            {{"add"}, run + "add notes.txt"},
            {{"remove", "hello.c"}, run + "remove --force hello.c"},
            {{"remove", trunk + "/empty", "-m", "M"}, run + "remove --force -m M "},
            {{"revert", "hello.c"}, run + "revert -R hello.c"},
            {{"revert", "--yes", "hello.c"}, run + "revert -R hello.c", "  modified  hello.c\n"},
            {{"resolve", "hello.c"}, run + "resolve --accept working hello.c"},
            {{"resolve", "--accept", "theirs", "hello.c"}, run + "resolve --accept theirs-full "},
            {{"copy", "empty", "copied"}, run + "copy empty copied"},
            {{"move", "empty", "moved"}, run + "move --parents "},
            {{"mkdir", "made"}, run + "mkdir made"},
            {{"mkdir", "-p", "made/below"}, run + "mkdir --parents "},
            {{"ignore", "*.o"}, run + "propset svn:ignore '*.o"},
            {{"unignore", "*.log"}, run + "prop"},
            {{"cleanup"}, run + "cleanup "},
            {{"undo"}, "Would bring back:\n  blob\n"},
            {{"commit"}, run + "commit -m MESSAGE ."},
            {{"commit", "-m", "Two words"}, run + "commit -m 'Two words' ."},
            {{"update"}, run + "update --accept mine-full ."},
            {{"switch", "feature"}, run + "switch "},
            {{"merge", "feature"}, run + "merge --accept mine-full "},
            {{"checkout", trunk, "other"}, run + "checkout -r HEAD "},
            {{"export", "empty", "exported"}, "Would write \"exported\"."},
            {{"import", "notes.txt", trunk + "/n"}, run + "import notes.txt "},
            {{"branch", "create", "b"}, run + "copy -m MESSAGE "},
            {{"branch", "delete", "feature"}, run + "remove --force -m MESSAGE "},
            {{"tag", "v1"}, run + "copy -m MESSAGE "}};
    }

    Sandbox sandbox_;
};

TEST_F(DryRunTest, ChangesNothingAndSaysWhatWouldBeRun) {
    sandbox_.svn({"propset", "-q", "svn:ignore", "*.log", "."});
    sandbox_.write("blob", "changed\n");
    ASSERT_EQ(sandbox_.quen({"revert", "--yes", "blob"}).status, 0);
    const auto before = everything();
    for (const DryCase& each : cases()) {
        Sandbox::Words words = each.words;
        words.insert(words.begin() + (words.front() == "branch" ? 2 : 1), "--dry-run");
        SCOPED_TRACE(testing::PrintToString(words));
        const Ran ran = sandbox_.quen(words);
        EXPECT_THAT(ran.out, HasSubstr(each.says)) << ran.err;
        EXPECT_THAT(ran.err, HasSubstr(each.tells));
        EXPECT_THAT(ran.status, testing::AnyOf(0, 3)) << ran.err;
        EXPECT_EQ(everything(), before);
    }
}

void addNames(const tools::CommandText& command, std::set<std::string>& names) {
    if (command.option("--dry-run") != nullptr && command.name != "request") {
        names.insert(command.name);
    }
    for (const tools::CommandText& each : command.commands) {
        addNames(each, names);
    }
}

/// A command that is not in the table above would be a hole in it.
TEST_F(DryRunTest, EveryCommandThatHasOneIsTried) {
    tools::CommandLine line;
    tools::addAllCommands(line);
    std::set<std::string> names;
    addNames(line.text(), names);
    std::set<std::string> tried;
    for (const DryCase& each : cases()) {
        tried.insert(each.words.front() +
                     (each.words.front() == "branch" ? " " + each.words[1] : ""));
    }
    EXPECT_EQ(names, tried);
}

} // namespace

} // namespace quen::test
