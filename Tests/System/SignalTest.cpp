#include "Tests/System/Sandbox.h"
#include "Tests/System/StuckServer.h"
#include "Tests/System/Terminal.h"

#include <chrono>
#include <csignal>
#include <filesystem>
#include <fstream>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <stop_token>
#include <thread>

namespace quen::test {

namespace {

using testing::HasSubstr;

/// A program that goes on in the background, to be sent any signal.
class InBackground {
public:
    InBackground(const Sandbox& sandbox, const Sandbox::Words& words)
        : pidFile_((sandbox.root() / "pid").string()) {
        Sandbox::Words command{"sh", "-c", "echo $$ > '" + pidFile_ + "'; exec \"$0\" \"$@\""};
        command.insert(command.end(), words.begin(), words.end());
        thread_ =
            std::thread([this, invocation = sandbox.invocation(command, sandbox.workingCopy())] {
                outcome_ = runProcess(invocation, stop_.get_token());
            });
    }
    InBackground(const InBackground&) = delete;
    InBackground& operator=(const InBackground&) = delete;
    ~InBackground() {
        if (thread_.joinable()) {
            stop_.request_stop();
            thread_.join();
        }
    }

    /// For a program that is known to be at work by then.
    Ran endBy(int signal) {
        pid_t pid = 0;
        std::ifstream(pidFile_) >> pid;
        EXPECT_GT(pid, 0);
        kill(pid, signal);
        thread_.join();
        return {outcome_.exitStatus.value_or(-1), std::string(outcome_.output->bytes()),
                std::string(outcome_.errors->bytes())};
    }

private:
    std::string pidFile_;
    std::stop_source stop_;
    ProcessOutcome outcome_;
    std::thread thread_;
};

class SignalTest : public testing::Test {
protected:
    SignalTest() : server_(sandbox_) { std::filesystem::create_directory(temporary()); }

    std::filesystem::path temporary() const { return sandbox_.root() / "tmp"; }

    /// A request whose client talks to a server that never answers.
    Sandbox::Words stuckRequest() const {
        server_.stick();
        sandbox_.write("request.json", R"({"request": {"type": "RequestTypeList", "files": [")" +
                                           server_.url("trunk") +
                                           R"("], "sourceTree": {"kind": "repository"}}})");
        return {Sandbox::program(), "request", "request.json"};
    }
    /// A client on PATH that heeds no signal that can be ignored.
    std::string pathOfDeafClient() const {
        sandbox_.write(sandbox_.root() / "bin/svn", "#!/bin/sh\n"
                                                    "trap '' INT TERM HUP QUIT\n"
                                                    "exec 9>'" +
                                                        (sandbox_.root() / "stuck").string() +
                                                        "'\n"
                                                        "echo called >&9\n"
                                                        "exec sleep 600\n");
        std::filesystem::permissions(sandbox_.root() / "bin/svn",
                                     std::filesystem::perms::owner_all);
        return "PATH=" + (sandbox_.root() / "bin").string() + ":/usr/bin:/bin";
    }
    ProcessInvocation invocation(const Sandbox::Words& words, Sandbox::Words variables = {}) const {
        variables.push_back("TMPDIR=" + temporary().string());
        return sandbox_.invocation(words, sandbox_.workingCopy(), variables);
    }

    Sandbox sandbox_;
    mutable StuckServer server_;
};

TEST_F(SignalTest, ARequestTakesItsClientAlongWhateverTheSignal) {
    for (const int signal : {SIGINT, SIGTERM, SIGHUP, SIGQUIT}) {
        SCOPED_TRACE(signal);
        std::filesystem::remove(sandbox_.root() / "stuck");
        InBackground request(sandbox_, stuckRequest());
        ASSERT_TRUE(server_.waitForClient());

        EXPECT_EQ(request.endBy(signal).status, 130);
        EXPECT_TRUE(server_.waitForEndOfAll());
    }
}

TEST_F(SignalTest, TheSecondInterruptKillsADeafClient) {
    const std::string path = pathOfDeafClient();
    for (const Sandbox::Words& words : {Sandbox::Words{Sandbox::program(), "request", "r.json"},
                                        Sandbox::Words{Sandbox::program(), "status"}}) {
        SCOPED_TRACE(words[1]);
        std::filesystem::remove(sandbox_.root() / "stuck");
        server_.stick();
        sandbox_.write("r.json", R"({"request": {"type": "RequestTypeStatus", "files": ["."]}})");
        Terminal terminal(invocation(words, {path}));
        ASSERT_TRUE(server_.waitForClient());

        terminal.type("\x03\x03");

        EXPECT_EQ(terminal.waitForEnd(), 130);
        EXPECT_TRUE(server_.waitForEndOfAll());
        EXPECT_TRUE(std::filesystem::is_empty(temporary()));
    }
}

TEST_F(SignalTest, TheTourLeavesNoDirectoryHoweverItIsEnded) {
    for (const char* keys : {"\x1c", "\x03\x03"}) {
        Terminal terminal(invocation({Sandbox::program(), "tour"}));
        ASSERT_TRUE(terminal.waitFor("Check out the trunk")) << terminal.shown();

        terminal.type(keys);

        EXPECT_EQ(terminal.waitForEnd(), 130);
        EXPECT_TRUE(std::filesystem::is_empty(temporary()));
    }
}

/// A commit whose client waits for a hook: everything was sent.
class InterruptedCommit : public SignalTest {
protected:
    InterruptedCommit() {
        sandbox_.write("a.c", "one\n");
        sandbox_.svn({"add", "-q", "a.c"});
        const std::filesystem::path hook = sandbox_.root() / "repository/hooks/pre-commit";
        sandbox_.write(hook, "#!/bin/sh\nexec 9>'" + (sandbox_.root() / "stuck").string() +
                                 "'\necho called >&9\nexec sleep 600\n");
        std::filesystem::permissions(hook, std::filesystem::perms::owner_all);
        server_.stick();
    }
};

TEST_F(InterruptedCommit, SaysThatItMayBeMadeAndWhereTheMessageIs) {
    Terminal terminal(
        invocation({Sandbox::program(), "commit"}, {"SVN_EDITOR=sed -i '1s/^/Precious/'"}));
    ASSERT_TRUE(server_.waitForClient());

    terminal.type("\x03");

    EXPECT_EQ(terminal.waitForEnd(), 130);
    EXPECT_THAT(terminal.shown(),
                HasSubstr("It may already have been committed: `quen log -l 1` shows the last "
                          "revision.\r\n"));
    EXPECT_THAT(terminal.shown(), HasSubstr("Your message was saved in "));
    EXPECT_FALSE(std::filesystem::is_empty(temporary()));
}

TEST_F(InterruptedCommit, EndedAtOnceItStillTellsWhereTheMessageIs) {
    Terminal terminal(
        invocation({Sandbox::program(), "commit"}, {"SVN_EDITOR=sed -i '1s/^/Precious/'"}));
    ASSERT_TRUE(server_.waitForClient());

    terminal.type("\x1c");

    EXPECT_EQ(terminal.waitForEnd(), 130);
    EXPECT_THAT(terminal.shown(), HasSubstr("quen: Your message was saved in "));
    EXPECT_TRUE(server_.waitForEndOfAll());
    EXPECT_FALSE(std::filesystem::is_empty(temporary()));
}

TEST_F(SignalTest, AWorkingCopyThatAKilledClientLockedSaysSo) {
    std::filesystem::remove_all(sandbox_.workingCopy());
    std::filesystem::create_directory(sandbox_.workingCopy());
    sandbox_.svn({"checkout", "-q", server_.url("trunk"), "."});
    server_.stick();
    InBackground update(sandbox_, {"svn", "update"});
    ASSERT_TRUE(server_.waitForClient());
    update.endBy(SIGKILL);

    const Ran ran = sandbox_.quen({"status"});

    EXPECT_EQ(ran.out, "working copy locked  .\n1 item: 1 working copy locked\n");
    EXPECT_EQ(ran.err,
              "quen status: \".\" is locked: a client is at work there, or one was killed. "
              "Unless one is at work, run: quen cleanup\n");
    EXPECT_EQ(ran.status, 0);
}

} // namespace

} // namespace quen::test
