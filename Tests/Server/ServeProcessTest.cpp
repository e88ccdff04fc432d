#include "Tests/Server/RunningServer.h"
#include "Tools/Server/Wire/Message.h"

#include <csignal>
#include <gmock/gmock.h>
#include <poll.h>
#include <spawn.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

namespace quen::test {

namespace {

using ::testing::Contains;
using ::testing::HasSubstr;

class ServeProcess : public ::testing::Test {
protected:
    Sandbox sandbox;
    RunningServer server{sandbox};
};

TEST_F(ServeProcess, TellsWhatItIsAndEndsWithStatus0AfterShutdown) {
    const Json told = server.initialize({{"processId", ::getpid()}});
    EXPECT_EQ(told.at("serverInfo").at("name"), "quen");
    EXPECT_THAT(told.at("client").at("path").get<std::string>(), HasSubstr("/svn"));
    EXPECT_THAT(told.at("client").at("version").get<std::string>(), HasSubstr("1."));
    for (const char* method : {"initialize",
                               "shutdown",
                               "provider/describe",
                               "provider/perform",
                               "workingCopy/open",
                               "workingCopy/close",
                               "workingCopy/status",
                               "workingCopy/incoming",
                               "workingCopy/info",
                               "workingCopy/cleanup",
                               "workingCopy/update",
                               "workingCopy/switch",
                               "workingCopy/checkout",
                               "change/plan",
                               "change/commit",
                               "change/add",
                               "change/remove",
                               "change/revert",
                               "change/resolve",
                               "change/move",
                               "change/copy",
                               "change/makeDirectory",
                               "change/ignore",
                               "change/unignore",
                               "change/adoptMove",
                               "file/content",
                               "file/blame",
                               "history/log",
                               "history/search",
                               "diff/summary",
                               "diff/text",
                               "branch/list",
                               "branch/current",
                               "branch/create",
                               "branch/delete",
                               "branch/merge",
                               "tag/create",
                               "tag/delete",
                               "repository/list",
                               "repository/export",
                               "repository/import",
                               "server/statistics"}) {
        EXPECT_THAT(told.at("capabilities").at("methods"), Contains(method)) << method;
    }
    EXPECT_THAT(told.at("capabilities").at("requestTypes"), Contains("RequestTypeStatus"));
    EXPECT_EQ(server.ask("shutdown"), nullptr);
    server.notify("exit");
    EXPECT_EQ(server.waitForEnd(), 0);
}

TEST_F(ServeProcess, EndsWithItsInput) {
    server.initialize();
    server.closeInput();
    EXPECT_EQ(server.waitForEnd(), 1);
}

TEST_F(ServeProcess, ExitAloneIsStatus1) {
    server.initialize();
    server.notify("exit");
    EXPECT_EQ(server.waitForEnd(), 1);
}

TEST_F(ServeProcess, GoesOnBehindBadFramesAndEndsWithStatus1WhereNoneFollows) {
    server.sendRaw("no header\r\n" + tools::server::framed("{") +
                   tools::server::framed(R"({"jsonrpc":"2.0","id":7,"method":"none"})"));
    EXPECT_EQ(server.answer(7).at("error").at("code"), -32002);
    ASSERT_EQ(server.client().messages().size(), 3U);
    for (std::size_t i : {0U, 1U}) {
        EXPECT_EQ(server.client().messages()[i].at("id"), nullptr);
        EXPECT_EQ(server.client().messages()[i].at("error").at("code"), -32700);
    }
    server.sendRaw("Content-Length: many\r\n\r\n");
    server.closeInput();
    EXPECT_EQ(server.waitForEnd(), 1);
}

TEST_F(ServeProcess, EndsOnSignals) {
    for (const int signal : {SIGTERM, SIGINT, SIGHUP}) {
        RunningServer other(sandbox);
        other.initialize();
        ::kill(other.number(), signal);
        EXPECT_EQ(other.waitForEnd(), 1) << signal;
    }
}

TEST_F(ServeProcess, EndsWithTheProcessThatTheClientNames) {
    pid_t parent = -1;
    std::string program = "sleep";
    std::string time = "100";
    char* const arguments[] = {program.data(), time.data(), nullptr};
    ASSERT_EQ(::posix_spawnp(&parent, "sleep", nullptr, nullptr, arguments, environ), 0);
    server.initialize({{"processId", parent}});
    EXPECT_EQ(server.ask("server/statistics").at("watches"), 0);
    ::kill(parent, SIGKILL);
    ::waitpid(parent, nullptr, 0);
    EXPECT_EQ(server.waitForEnd(), 1);
}

TEST_F(ServeProcess, EndsWhereTheNamedProcessIsGoneAlready) {
    server.initialize({{"processId", 4'000'000}});
    EXPECT_EQ(server.waitForEnd(), 1);
}

/// A client that sleeps, so that it is at work until it is ended.
std::string sleepingClient(const Sandbox& sandbox) {
    const auto tools = sandbox.root() / "tools";
    std::filesystem::create_directory(tools);
    sandbox.write(tools / "svn", "#!/bin/sh\n[ \"$1\" = --version ] && echo 1.14.2 && exit\n"
                                 "exec sleep 1000\n");
    std::filesystem::permissions(tools / "svn", std::filesystem::perms::owner_all);
    return tools.string();
}

TEST_F(ServeProcess, EndsEveryClientThatItStarted) {
    server.initialize({{"options", {{"toolsDirectory", sleepingClient(sandbox)}}}});
    for (int i = 0; i < 5; ++i) {
        server.start("history/log", {{"path", sandbox.workingCopy().string()}, {"limit", 9}});
    }
    ASSERT_TRUE(becomesTrue([&] { return server.children().size() == 5; }));
    const std::vector<pid_t> children = server.children();
    server.closeInput();
    EXPECT_EQ(server.waitForEnd(), 1);
    for (const pid_t child : children) {
        EXPECT_NE(::kill(child, 0), 0) << child;
    }
    EXPECT_EQ(server.answer(2).at("error").at("code"), -32800);
}

/// Bounded; a process that has ended and is not reaped has ended too.
bool endsSoon(const FileDescriptor& process) {
    pollfd end{process.number(), POLLIN, 0};
    return ::poll(&end, 1, 10'000) == 1;
}

TEST_F(ServeProcess, IsNotOutlivedByAClientWhenItIsKilled) {
    server.initialize({{"options", {{"toolsDirectory", sleepingClient(sandbox)}}}});
    server.start("workingCopy/open", {{"path", sandbox.workingCopy().string()}});
    ASSERT_TRUE(becomesTrue([&] { return server.children().size() == 1; }));
    const FileDescriptor client(
        static_cast<int>(::syscall(SYS_pidfd_open, server.children().front(), 0)));
    ASSERT_TRUE(client.isOpen());
    ::kill(server.number(), SIGKILL);
    EXPECT_TRUE(endsSoon(client));
}

TEST_F(ServeProcess, ACancelEndsTheClientAndLimitsDo) {
    server.initialize({{"options", {{"toolsDirectory", sleepingClient(sandbox)}}}});
    const int id = server.start("workingCopy/open", {{"path", sandbox.workingCopy().string()}});
    ASSERT_TRUE(becomesTrue([&] { return server.children().size() == 1; }));
    server.notify("$/cancelRequest", {{"id", id}});
    EXPECT_EQ(server.answer(id).at("error").at("code"), -32800);
    EXPECT_EQ(server.answer(id).at("error").at("data").at("mayHaveLeftLock"), false);
    EXPECT_TRUE(becomesTrue([&] { return server.children().empty(); }));

    RunningServer limited(sandbox);
    limited.initialize(
        {{"options",
          {{"toolsDirectory", (sandbox.root() / "tools").string()}, {"idleLimit", 50}}}});
    const Json silent = limited.ask("repository/list", {{"url", sandbox.url()}});
    EXPECT_EQ(silent.at("failure"), "fellSilent");
    EXPECT_THAT(silent.at("error").at("description").get<std::string>(), HasSubstr("too long"));
}

TEST_F(ServeProcess, AMissingClientIsToldWithItsPlace) {
    const Json told =
        server.initialize({{"options", {{"toolsDirectory", "/nowhere"}, {"logLevel", 1}}}});
    EXPECT_EQ(told.at("client").at("path"), "/nowhere/svn");
    EXPECT_EQ(told.at("client").at("version"), nullptr);
    const Json open = server.ask("workingCopy/open", {{"path", sandbox.workingCopy().string()}});
    EXPECT_EQ(open.at("failure"), "couldNotStart");
    EXPECT_TRUE(server.client().waitFor([](const Json& message) {
        return message.value("method", "") == "window/logMessage" &&
               message.at("params").at("type") == 1;
    }));
}

TEST_F(ServeProcess, EveryRunIsToldAtLevel4) {
    server.initialize({{"options", {{"logLevel", 4}}}});
    server.ask("repository/list", {{"url", sandbox.url("trunk")}});
    const auto told = server.client().waitFor([](const Json& message) {
        return message.value("method", "") == "window/logMessage" &&
               message.at("params").at("message").get<std::string>().starts_with("svn list --xml");
    });
    ASSERT_TRUE(told);
    EXPECT_EQ(told->at("params").at("type"), 4);
    EXPECT_THAT(told->at("params").at("message").get<std::string>(), HasSubstr(": status 0, "));
}

} // namespace

} // namespace quen::test
