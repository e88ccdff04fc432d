#include "Tests/System/Sandbox.h"
#include "Tests/System/StuckServer.h"
#include "Tests/System/Terminal.h"

#include <algorithm>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <thread>

namespace quen::test {

namespace {

using testing::HasSubstr;

/// A run of quen that a test can end while it goes on; it is ended as a service manager would, with
/// SIGTERM. Given more time than any of its waits takes before it would be killed.
class Going {
public:
    Going(const Sandbox& sandbox, Sandbox::Words words)
        : invocation_(sandbox.invocation(withProgram(std::move(words)), sandbox.workingCopy())) {
        invocation_.limits.terminationGrace = std::chrono::seconds(25);
        thread_ = std::thread([this] { outcome_ = runProcess(invocation_, stop_.get_token()); });
    }
    Going(const Going&) = delete;
    Going& operator=(const Going&) = delete;
    ~Going() {
        if (thread_.joinable()) {
            end();
        }
    }

    Ran end() {
        stop_.request_stop();
        thread_.join();
        return {outcome_.exitStatus.value_or(-1), std::string(outcome_.output->bytes()),
                std::string(outcome_.errors->bytes())};
    }

private:
    static Sandbox::Words withProgram(Sandbox::Words words) {
        words.insert(words.begin(), Sandbox::program());
        return words;
    }

    ProcessInvocation invocation_;
    std::stop_source stop_;
    ProcessOutcome outcome_;
    std::thread thread_;
};

class InterruptTest : public testing::Test {
protected:
    InterruptTest() : server_(sandbox_) {}

    /// The working copy, checked out from the server while it answers.
    void checkOutFromServer() const {
        std::filesystem::remove_all(sandbox_.workingCopy());
        std::filesystem::create_directory(sandbox_.workingCopy());
        sandbox_.svn({"checkout", "-q", server_.url("trunk"), "."});
    }

    Sandbox sandbox_;
    StuckServer server_;
};

TEST_F(InterruptTest, EndsTheClientWithAllThatItStarted) {
    server_.stick();
    Going checkout(sandbox_, {"checkout", server_.url("trunk"), "new"});
    ASSERT_TRUE(server_.waitForClient());

    const Ran ran = checkout.end();

    EXPECT_EQ(ran.err, "quen checkout: Interrupted.\n");
    EXPECT_EQ(ran.out, "");
    EXPECT_EQ(ran.status, 130);
    EXPECT_TRUE(server_.waitForEndOfAll());
}

TEST_F(InterruptTest, SaysNothingOfLocksWhereNoneIsLeft) {
    checkOutFromServer();
    server_.stick();
    Going update(sandbox_, {"update"});
    ASSERT_TRUE(server_.waitForClient());

    const Ran ran = update.end();

    // The client has taken its lock away, so that there is nothing to do.
    EXPECT_EQ(ran.err, "quen update: Interrupted.\n");
    EXPECT_EQ(ran.status, 130);
    EXPECT_TRUE(server_.waitForEndOfAll());
}

TEST_F(InterruptTest, TellsHowToCleanUpAWorkingCopy) {
    checkOutFromServer();
    sandbox_.write("a.c", "one\n");
    server_.stick();
    {
        // Killed at the end of the block, with the working copy locked.
        const Terminal client(
            sandbox_.invocation({"svn", "--non-interactive", "update"}, sandbox_.workingCopy()));
        ASSERT_TRUE(server_.waitForClient());
    }
    EXPECT_EQ(sandbox_.neutral(sandbox_.quen({"add", "a.c"}).err).substr(0, 9), "quen add:");

    // An interrupted command looks whether there is a lock.
    sandbox_.write(sandbox_.root() / "bin/svn", "#!/bin/sh\n"
                                                "[ $1 = update ] || exec /usr/bin/svn \"$@\"\n"
                                                "echo \"Updating '.':\"\n"
                                                "while :; do sleep 1; done\n");
    std::filesystem::permissions(sandbox_.root() / "bin/svn", std::filesystem::perms::owner_all);
    Terminal update(
        sandbox_.invocation({Sandbox::program(), "update"}, sandbox_.workingCopy(),
                            {"PATH=" + (sandbox_.root() / "bin").string() + ":/usr/bin:/bin"}));
    ASSERT_TRUE(update.waitFor("0 items  0:0")) << update.shown();
    update.type("\x03");
    EXPECT_EQ(update.waitForEnd(), 130);
    EXPECT_THAT(sandbox_.neutral(update.shown()),
                HasSubstr("quen update: The working copy is locked; run: quen cleanup\r\n"));

    const Ran cleaned = sandbox_.quen({"cleanup"});
    EXPECT_EQ(sandbox_.neutral(cleaned.out), "Cleaned up SANDBOX/wc.\n");
    EXPECT_EQ(cleaned.status, 0);
    EXPECT_EQ(sandbox_.quen({"add", "a.c"}).status, 0);
    EXPECT_EQ(sandbox_.quen({"cleanup", ".."}).status, 1);
    EXPECT_EQ(sandbox_.neutral(sandbox_.quen({"cleanup", "--json"}).out),
              "[{\"path\":\"SANDBOX/wc\"}]\n");
}

TEST_F(InterruptTest, AQueryIsInterruptedToo) {
    server_.stick();
    Going log(sandbox_, {"log", server_.url("trunk")});
    ASSERT_TRUE(server_.waitForClient());

    const Ran ran = log.end();

    EXPECT_EQ(ran.err, "quen log: Interrupted.\n");
    EXPECT_EQ(ran.status, 130);
    EXPECT_TRUE(server_.waitForEndOfAll());
}

/// Where a word holds SERVER it is the server's address.
class EveryCommandTest : public InterruptTest, public testing::WithParamInterface<Sandbox::Words> {
protected:
    Sandbox::Words words() const {
        Sandbox::Words words = GetParam();
        for (std::string& word : words) {
            if (word.starts_with("SERVER/")) {
                word = server_.url(word.substr(7));
            }
        }
        return words;
    }
};

TEST_P(EveryCommandTest, EndsWith130WhenInterrupted) {
    checkOutFromServer();
    sandbox_.write("a.c", "one\n");
    sandbox_.svn({"add", "-q", "a.c"});
    server_.stick();
    Going command(sandbox_, words());
    ASSERT_TRUE(server_.waitForClient());

    const Ran ran = command.end();

    EXPECT_EQ(ran.status, 130);
    EXPECT_THAT(ran.err, HasSubstr(": Interrupted.\n"));
    EXPECT_EQ(ran.out, GetParam().front() == "commit" ? "added  a.c\n" : "");
    EXPECT_TRUE(server_.waitForEndOfAll());
}

INSTANTIATE_TEST_SUITE_P(
    Commands, EveryCommandTest,
    testing::Values(Sandbox::Words{"status", "-u"}, Sandbox::Words{"diff", "-r", "0:1", "SERVER/"},
                    Sandbox::Words{"log", "SERVER/trunk"}, Sandbox::Words{"blame", "SERVER/a.c"},
                    Sandbox::Words{"info", "SERVER/trunk"}, Sandbox::Words{"list", "SERVER/trunk"},
                    Sandbox::Words{"cat", "SERVER/a.c"},
                    Sandbox::Words{"export", "SERVER/a.c", "a.txt"},
                    Sandbox::Words{"branch", "SERVER/trunk"},
                    Sandbox::Words{"branch", "create", "new", "-m", "M"},
                    Sandbox::Words{"branch", "delete", "new", "--yes", "-m", "M"},
                    Sandbox::Words{"branches", "SERVER/trunk"}, Sandbox::Words{"commit", "-m", "M"},
                    Sandbox::Words{"report", "SERVER/trunk"},
                    Sandbox::Words{"remove", "SERVER/trunk", "-m", "M"},
                    Sandbox::Words{"update", "--preview"},
                    Sandbox::Words{"copy", "SERVER/trunk", "copy"},
                    Sandbox::Words{"mkdir", "SERVER/trunk/new", "-m", "M"},
                    Sandbox::Words{"merge", "--yes", "SERVER/branches"},
                    Sandbox::Words{"merge", "--preview", "SERVER/branches"},
                    Sandbox::Words{"checkout", "SERVER/trunk", "new"},
                    Sandbox::Words{"import", "a.c", "SERVER/b.c", "-m", "M"},
                    Sandbox::Words{"switch", "SERVER/branches"},
                    Sandbox::Words{"switch", "--yes", "SERVER/branches"}, Sandbox::Words{"update"}),
    [](const auto& each) {
        const Sandbox::Words& words = each.param;
        return words.front() + std::to_string(each.index);
    });

/// Whatever it is at, nothing of a page is left, and one that was there stays.
TEST_F(InterruptTest, AReportLeavesNoHalfPage) {
    sandbox_.write("a.c", "one\n");
    sandbox_.svn({"add", "-q", "a.c"});
    sandbox_.commit("A");
    sandbox_.write("old.html", "an older page\n");
    for (const std::string at : {"log", "list", "blame"}) {
        SCOPED_TRACE(at);
        sandbox_.write(sandbox_.root() / "bin/svn", "#!/bin/sh\n"
                                                    "[ $1 = " +
                                                        at +
                                                        " ] || exec /usr/bin/svn \"$@\"\n"
                                                        "while :; do sleep 1; done\n");
        std::filesystem::permissions(sandbox_.root() / "bin/svn",
                                     std::filesystem::perms::owner_all);
        Terminal report(sandbox_.invocation(
            {Sandbox::program(), "report", "--force", "-o", "old.html"}, sandbox_.workingCopy(),
            {"PATH=" + (sandbox_.root() / "bin").string() + ":/usr/bin:/bin"}));
        ASSERT_TRUE(report.waitFor("0:0")) << report.shown();
        report.type("\x03");
        EXPECT_EQ(report.waitForEnd(), 130) << report.shown();
        EXPECT_THAT(report.shown(), HasSubstr("quen report: Interrupted."));
        EXPECT_EQ(sandbox_.read("old.html"), "an older page\n");
        EXPECT_EQ(sandbox_.svn({"status"}), "?       old.html\n");
    }
}

TEST_F(InterruptTest, ARequestTakesItsClientAlong) {
    server_.stick();
    sandbox_.write("request.json", R"({"request": {"type": "RequestTypeList", "files": [")" +
                                       server_.url("trunk") +
                                       R"("], "sourceTree": {"kind": "repository"}}})");
    Going request(sandbox_, {"request", "request.json"});
    ASSERT_TRUE(server_.waitForClient());

    const Ran ran = request.end();

    EXPECT_TRUE(server_.waitForEndOfAll());
    EXPECT_EQ(ran.status, 130);
}

TEST_F(InterruptTest, TheTourLeavesNothingBehind) {
    std::filesystem::create_directory(sandbox_.root() / "tmp");
    Terminal terminal(sandbox_.invocation({Sandbox::program(), "tour"}, sandbox_.workingCopy(),
                                          {"TMPDIR=" + (sandbox_.root() / "tmp").string()}));
    ASSERT_TRUE(terminal.waitFor("Check out the trunk")) << terminal.shown();

    terminal.type("\x03");

    EXPECT_EQ(terminal.waitForEnd(), 130);
    EXPECT_THAT(terminal.shown(), HasSubstr("quen tour: Interrupted."));
    EXPECT_TRUE(std::filesystem::is_empty(sandbox_.root() / "tmp"));
}

TEST_F(InterruptTest, AWorkingCopyInUseIsToldWithItsRemedy) {
    checkOutFromServer();
    sandbox_.write("a.c", "one\n");
    server_.stick();
    Going update(sandbox_, {"update"});
    ASSERT_TRUE(server_.waitForClient());

    const Ran ran = sandbox_.quen({"add", "a.c"});

    EXPECT_THAT(sandbox_.neutral(ran.err),
                HasSubstr("quen add: Unless another svn is at work there, run: quen cleanup\n"));
    EXPECT_EQ(ran.status, 1);
}

TEST_F(InterruptTest, OnATerminalProgressIsShownAndErased) {
    checkOutFromServer();
    server_.stick();
    Terminal terminal(sandbox_.invocation({Sandbox::program(), "update"}, sandbox_.workingCopy()));
    ASSERT_TRUE(terminal.waitFor("0 items  0:0")) << terminal.shown();
    ASSERT_TRUE(server_.waitForClient());

    terminal.type("\x03");

    EXPECT_EQ(terminal.waitForEnd(), 130);
    EXPECT_THAT(terminal.shown(), HasSubstr("\r\x1b[Kquen update: Interrupted."));
    EXPECT_TRUE(server_.waitForEndOfAll());
}

/// What is lost by one command or another.
class QuestionTest : public testing::Test {
protected:
    QuestionTest() {
        sandbox_.write("a.c", "one\n");
        sandbox_.svn({"add", "-q", "a.c"});
        sandbox_.commit("A");
        sandbox_.write("a.c", "two\n");
    }
    ProcessInvocation invocation(Sandbox::Words words) const {
        words.insert(words.begin(), Sandbox::program());
        return sandbox_.invocation(words, sandbox_.workingCopy());
    }

    Sandbox sandbox_;
};

TEST_F(QuestionTest, RevertAsksAndHeedsTheAnswer) {
    struct Case {
        std::string answer;
        int status;
        std::string content;
    };
    for (const auto& [answer, status, content] :
         {Case{"n\n", 1, "two\n"}, Case{"\n", 1, "two\n"}, Case{"yes please\n", 1, "two\n"},
          Case{"\x04", 1, "two\n"}, Case{"YES\n", 0, "one\n"}}) {
        SCOPED_TRACE(answer);
        Terminal terminal(invocation({"revert", "."}));
        ASSERT_TRUE(terminal.waitFor("Revert 1 item? [y/N]")) << terminal.shown();
        EXPECT_THAT(terminal.shown(), HasSubstr("quen revert: These changes will be lost:\r\n"
                                                "  modified  a.c\r\n"));

        terminal.type(answer);

        EXPECT_EQ(terminal.waitForEnd(), status);
        EXPECT_EQ(sandbox_.read("a.c"), content);
    }
}

TEST_F(QuestionTest, AnInterruptIsNotAnAnswer) {
    Terminal terminal(invocation({"revert", "."}));
    ASSERT_TRUE(terminal.waitFor("Revert 1 item? [y/N]")) << terminal.shown();

    terminal.type("\x03");

    EXPECT_EQ(terminal.waitForEnd(), 130);
    EXPECT_EQ(sandbox_.read("a.c"), "two\n");
}

TEST_F(QuestionTest, RevertDoesNotAskWhereNothingIsLostOrThePersonIsSure) {
    sandbox_.write("new.c", "new\n");
    sandbox_.svn({"add", "-q", "new.c"});
    Terminal added(invocation({"revert", "new.c"}));
    EXPECT_EQ(added.waitForEnd(), 0);
    EXPECT_THAT(added.shown(), HasSubstr("Reverted 1 item."));
    EXPECT_EQ(sandbox_.read("new.c"), "new\n");

    Terminal sure(invocation({"revert", "--yes", "a.c"}));
    EXPECT_EQ(sure.waitForEnd(), 0);
    EXPECT_EQ(sandbox_.read("a.c"), "one\n");
}

TEST_F(QuestionTest, WhereNobodyCanBeAskedNothingIsLost) {
    sandbox_.write("new.c", "new\n");
    struct Case {
        Sandbox::Words words;
        std::string shown;
    };
    for (const auto& [words, shown] :
         {Case{{"revert", "."}, "  modified  a.c\n"},
          Case{{"remove", "a.c", "new.c"}, "  modified     a.c\n  unversioned  new.c\n"}}) {
        const Ran ran = sandbox_.quen(words);
        EXPECT_EQ(ran.status, 1);
        EXPECT_THAT(ran.err, HasSubstr(shown));
        EXPECT_THAT(ran.err, HasSubstr("--yes"));
        EXPECT_EQ(sandbox_.read("a.c"), "two\n");
    }
}

TEST_F(QuestionTest, UndoBringsBackWhatWasLost) {
    sandbox_.write("new.c", "new\n");
    EXPECT_EQ(sandbox_.quen({"undo"}).out, "Nothing to undo.\n");
    for (const Sandbox::Words& words :
         {Sandbox::Words{"revert", "--yes", "."}, {"remove", "--yes", "a.c", "new.c"}}) {
        ASSERT_EQ(sandbox_.quen(words).status, 0);
        EXPECT_NE(sandbox_.svn({"status"}), "M       a.c\n");

        const Ran ran = sandbox_.quen({"undo"});

        EXPECT_EQ(ran.status, 0) << ran.err;
        EXPECT_THAT(ran.out, HasSubstr("Brought back "));
        EXPECT_EQ(sandbox_.read("a.c"), "two\n");
        EXPECT_EQ(sandbox_.read("new.c"), "new\n");
        sandbox_.svn({"revert", "-q", "a.c"});
        sandbox_.write("a.c", "two\n");
    }
}

TEST_F(QuestionTest, NoMoreIsShownThanAScreenHolds) {
    for (int i = 0; i < 25; ++i) {
        sandbox_.write("new/" + std::to_string(i) + ".c", "one\n");
    }
    sandbox_.svn({"add", "-q", "new"});

    const Ran ran = sandbox_.quen({"remove", "new"});

    EXPECT_EQ(std::count(ran.err.begin(), ran.err.end(), '\n'), 23) << ran.err;
    EXPECT_THAT(ran.err, HasSubstr("\n  ... and 5 more items\n"));
    EXPECT_EQ(ran.status, 1);
}

TEST_F(QuestionTest, RevertLooksIntoCopies) {
    sandbox_.svn({"revert", "-q", "a.c"});
    sandbox_.svn({"copy", "-q", "a.c", "copy.c"});
    sandbox_.write("copy.c", "edited\n");

    EXPECT_THAT(sandbox_.quen({"revert", "copy.c"}).err, HasSubstr("copy.c\n"));
    EXPECT_EQ(sandbox_.read("copy.c"), "edited\n");
    EXPECT_EQ(sandbox_.quen({"revert", "--yes", "copy.c"}).status, 0);
    EXPECT_EQ(sandbox_.quen({"undo"}).out, "copy.c\nBrought back 1 item of the last revert.\n");
    EXPECT_EQ(sandbox_.read("copy.c"), "edited\n");
}

TEST_F(QuestionTest, PropertiesAreNamed) {
    sandbox_.svn({"propset", "-q", "color", "red", "a.c"});

    EXPECT_THAT(sandbox_.quen({"revert", "a.c"}).err,
                HasSubstr("modified, properties modified  a.c\n"));
    EXPECT_EQ(sandbox_.quen({"revert", "--yes", "a.c"}).status, 0);
    const Ran ran = sandbox_.quen({"undo"});
    EXPECT_THAT(sandbox_.neutral(ran.err),
                HasSubstr("quen undo: Not brought back; make these changes again where you want "
                          "them:\n"));
    EXPECT_THAT(ran.err, HasSubstr("\n  Added: color\n"));
    EXPECT_THAT(ran.err, HasSubstr("\n  +red\n"));
    EXPECT_EQ(ran.status, 0);
    EXPECT_EQ(sandbox_.svn({"status"}), "M       a.c\n");
}

TEST_F(QuestionTest, UndoNeverOverwritesNewerWork) {
    ASSERT_EQ(sandbox_.quen({"revert", "--yes", "a.c"}).status, 0);
    sandbox_.write("a.c", "newer\n");

    const Ran ran = sandbox_.quen({"undo"});

    EXPECT_THAT(ran.err, HasSubstr("What was kept is in \"a.c.undone\".\n"));
    EXPECT_EQ(ran.status, 1);
    EXPECT_EQ(sandbox_.read("a.c"), "newer\n");
    EXPECT_EQ(sandbox_.read("a.c.undone"), "two\n");
}

TEST_F(QuestionTest, WhatIsPrintedAsJsonIsUndoneAsWell) {
    EXPECT_EQ(sandbox_.quen({"revert", "--yes", "--json", "a.c"}).out,
              "{\"summary\":\"Reverted 1 item. `quen undo` brings back what the files held.\","
              "\"revision\":null,\"items\":1}\n");
    EXPECT_EQ(sandbox_.neutral(sandbox_.quen({"undo", "--json"}).out),
              "[{\"QuenSourceControlOperationPathKey\":{\"MarlFilePath\":\"SANDBOX/wc/a.c\"},"
              "\"path\":\"SANDBOX/wc/a.c\"}]\n");
    EXPECT_EQ(sandbox_.read("a.c"), "two\n");
    EXPECT_EQ(sandbox_.quen({"undo", "--json"}).out, "[]\n");
}

TEST_F(QuestionTest, RemoveAsksForWhatIsOnTheDiskAlone) {
    Terminal terminal(invocation({"remove", "a.c"}));
    ASSERT_TRUE(terminal.waitFor("Remove 1 item? [y/N]")) << terminal.shown();
    terminal.type("y\n");
    EXPECT_EQ(terminal.waitForEnd(), 0);
    EXPECT_EQ(sandbox_.svn({"status"}), "D       a.c\n");
}

/// The system forgets how children ended whose parent ignores their end, and ignoring is inherited.
TEST(Parent, MayIgnoreTheEndOfItsChildren) {
    const Sandbox sandbox;
    sandbox.write("a.c", "one\n");
    for (const Sandbox::Words& words : {Sandbox::Words{"status"}, Sandbox::Words{"add", "a.c"}}) {
        Sandbox::Words command{"env", "--ignore-signal=CHLD", Sandbox::program()};
        command.insert(command.end(), words.begin(), words.end());
        const Ran ran = sandbox.run(command, sandbox.workingCopy());
        EXPECT_EQ(ran.status, 0) << words.front();
        EXPECT_EQ(ran.err.find("status"), std::string::npos) << ran.err;
    }
}

} // namespace

} // namespace quen::test
