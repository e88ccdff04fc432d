#include "Tests/System/Sandbox.h"

#include <cctype>
#include <fstream>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <string>
#include <vector>

namespace quen::test {

namespace {

/// The rows of the tables on the page about exit statuses, as written: `1 | quen revert | ..`.
std::vector<std::string> documentedRows() {
    std::ifstream page(QUEN_DOCUMENTATION "/exit-statuses.md");
    std::vector<std::string> rows;
    for (std::string line; std::getline(page, line);) {
        if (line.starts_with("| ") && line.size() > 2 &&
            std::isdigit(static_cast<unsigned char>(line[2])) != 0) {
            rows.push_back(line.substr(2, line.size() - 4));
        }
    }
    return rows;
}

/// What leads to a row: a situation, made by a script of a shell, and the command.
struct Row {
    std::string text;
    std::string situation;
    std::string command;
};

/// `$Q` is the program.
std::vector<Row> rows() {
    return {
        {"0 | any | done; all output was written", "", "$Q status"},
        {"0 | `quen status` | with changes or without", "echo x >> a.c", "$Q status"},
        {"0 | `quen commit` | nothing to commit", "", "$Q commit -m M"},
        {"0 | `quen info --check` | all the items are known", "", "$Q info --check a.c"},
        {"0 | `quen request` | its one object was read and answered, whatever the answer", "",
         "echo '{\"request\": {\"type\": 99}}' | $Q request"},
        {"1 | any | an error, with a message on standard error", "", "$Q log nowhere"},
        {"1 | any | the output could not be written", "", "$Q status > /dev/full"},
        {"1 | `quen status` | a path names nothing", "", "$Q status nowhere"},
        {"1 | `quen commit` | the message is empty", "echo x >> a.c", "$Q commit -m ''"},
        {"1 | `quen revert`, `quen remove` | something would be lost, and the answer is no or "
         "nobody "
         "can be asked; nothing is done",
         "echo x >> a.c", "$Q revert a.c"},
        {"1 | `quen merge`, `quen switch`, `quen checkout`, `quen remove` of a URL | local changes "
         "or "
         "things in the way are concerned, or something goes for everybody, and the answer is no "
         "or nobody can be asked; nothing is done",
         "echo x >> a.c", "$Q merge ^/branches"},
        {"1 | `quen branch delete` | the answer is no or nobody can be asked; nothing is done",
         "svn copy -q -m B ^/trunk ^/branches/b", "$Q branch delete b -m M"},
        {"1 | `quen ignore`, `quen unignore` | one of the names cannot be used; nothing is done",
         "", "$Q ignore fine a@b"},
        {"1 | `quen undo` | a file could not be put back, for instance because it was changed "
         "since",
         "echo x >> a.c; $Q revert -y a.c; echo newer > a.c", "$Q undo"},
        {"1 | `quen info --check` | an item is not known", "", "$Q info --check nowhere"},
        {"1 | `quen request` | its command line was not understood, because 2 is for the object",
         "", "$Q request --nonsense"},
        {"1 | `quen serve` | its input ends, a signal, or `exit` without `shutdown`", "",
         "$Q serve < /dev/null"},
        {"2 | any | the command line was not understood", "", "$Q status --nonsense"},
        {"2 | `quen request` | its input object was not understood", "", "echo '[' | $Q request"},
        {"3 | `quen update`, `quen merge`, `quen switch`, `quen checkout` | done, and conflicts "
         "were "
         "decided for your version or are left, or items were skipped",
         "echo theirs > a.c; svn commit -q -m T; svn update -q -r PREV a.c; echo mine > a.c",
         "$Q update"},
        {"3 | `quen update --preview`, `quen merge --preview` | both sides have changed something",
         "svn update -q -r PREV a.c; echo mine > a.c", "$Q update --preview"},
        {"130 | any | interrupted (SIGINT, SIGTERM, SIGHUP), also while no client ran",
         "echo x >> a.c; mkfifo ../fifo",
         "timeout --preserve-status -s TERM 0.5 $Q commit -F - 0<>../fifo"},
    };
}

class ExitStatusTest : public testing::Test {
protected:
    ExitStatusTest() {
        sandbox_.write("a.c", "one\n");
        sandbox_.svn({"add", "-q", "a.c"});
        sandbox_.commit("A");
    }

    Ran shell(const std::string& script) const {
        return sandbox_.run({"sh", "-c", script}, sandbox_.workingCopy(),
                            {"Q=" + Sandbox::program()});
    }

    Sandbox sandbox_;
};

TEST_F(ExitStatusTest, EachRowOfThePageHolds) {
    for (const Row& row : rows()) {
        SCOPED_TRACE(row.text);
        sandbox_.svn({"revert", "-q", "-R", "."});
        ASSERT_EQ(shell("true; " + row.situation).status, 0);
        const Ran ran = shell(row.command);
        EXPECT_EQ(std::to_string(ran.status), row.text.substr(0, row.text.find(' '))) << ran.err;
    }
}

TEST_F(ExitStatusTest, EveryRowOfThePageIsTested) {
    std::vector<std::string> tested;
    for (const Row& row : rows()) {
        tested.push_back(row.text);
    }
    EXPECT_THAT(documentedRows(), testing::UnorderedElementsAreArray(tested));
}

} // namespace

} // namespace quen::test
