#include "Tests/Servers/ClosingServer.h"
#include "Tests/Servers/Failure.h"
#include "Tests/System/Terminal.h"

#include <array>
#include <csignal>
#include <fcntl.h>
#include <filesystem>
#include <future>
#include <gmock/gmock.h>
#include <poll.h>
#include <sstream>
#include <sys/stat.h>
#include <unistd.h>

namespace quen::test {

namespace {

using ::testing::HasSubstr;

const std::string credentials = "QuenSourceControlAuthenticationCredentialsIncorrect";
const std::string connection = "QuenSourceControlSSHConnectionErrorKey";

void expectFailure(const Json& answer, const Failure& failure) {
    expectError(answer, failure);
    EXPECT_TRUE(answer.at("result").is_null()) << answer.at("result");
}

struct Case {
    std::string name;
    ServerKind kind;
    void (*spoil)(Journey& journey);
    Failure failure;
    /// Another place to ask than the server.
    std::string url = "";
};

std::ostream& operator<<(std::ostream& out, const Case& each) {
    return out << each.name;
}

class ServerFailures : public ::testing::TestWithParam<Case> {};

/// On a terminal of its own, with somebody in front of it who is not to be asked.
void expectNoQuestion(const Journey& journey, const std::string& url) {
    Terminal terminal(journey.sandbox().invocation({Sandbox::program(), "log", "--no-ask", url},
                                                   journey.sandbox().root(),
                                                   journey.server().variables()));
    EXPECT_EQ(terminal.waitForEnd(), 1) << terminal.shown();
    EXPECT_THAT(terminal.shown(), HasSubstr("quen log: "));
}

TEST_P(ServerFailures, AreToldAndNeverAsk) {
    Journey journey(GetParam().kind);
    if (GetParam().spoil != nullptr) {
        GetParam().spoil(journey);
    }
    const std::string url = GetParam().url.empty() ? journey.server().url("trunk") : GetParam().url;

    const Json answer = journey.serve({{"files", {url}}}, RequestTypeLog, journey.repository());

    expectFailure(answer, GetParam().failure);
    expectNoQuestion(journey, url);
}

void giveWrongPassword(Journey& journey) {
    journey.server().keepPassword("waterland");
}

void forgetPassword(Journey& journey) {
    journey.server().forgetPassword();
}

void stop(Journey& journey) {
    journey.server().stop();
}

void replaceInFile(const Journey& journey, const std::string& name, const std::string& old,
                   const std::string& with) {
    const auto path = journey.place("server") / name;
    std::string text = journey.sandbox().read(path);
    text.replace(text.find(old), old.size(), with);
    journey.sandbox().write(path, text);
}

void useStrangersKey(Journey& journey) {
    replaceInFile(journey, "ssh_config", "/key\n", "/stranger\n");
}

/// ssh would ask for its pass phrase on a terminal.
void lockKey(Journey& journey) {
    journey.sandbox().run({"ssh-keygen", "-q", "-p", "-N", "secret", "-f", "server/key"},
                          journey.sandbox().root());
}

/// ssh would ask on a terminal whether to go on.
void forgetHost(Journey& journey) {
    journey.sandbox().write(journey.place("server/known"), "");
}

void changeHost(Journey& journey) {
    journey.sandbox().write(journey.place("server/known"),
                            "quen-test " +
                                journey.sandbox().read(journey.place("server/stranger.pub")));
}

const std::string couldNotConnect =
    "Authentication failed because the SSH could not connect to the repository \"quen\".";

INSTANTIATE_TEST_SUITE_P(
    Credentials, ServerFailures,
    ::testing::Values(
        Case{"svnserveWrongPassword",
             ServerKind::svnserveWithPassword,
             giveWrongPassword,
             {170013, {170013, 170001}, credentials, "Password incorrect"}},
        Case{"svnserveNoPassword",
             ServerKind::svnserveWithPassword,
             forgetPassword,
             {170013, {170013, 170001}, credentials, "Can't get username or password"}},
        Case{"httpdWrongPassword",
             ServerKind::httpd,
             giveWrongPassword,
             {170013, {170013, 215004}, credentials, "Authentication failed"}},
        Case{"httpdNoPassword",
             ServerKind::httpd,
             forgetPassword,
             {170013, {170013, 215004}, credentials, "Authentication failed"}},
        Case{"sshdStrangersKey",
             ServerKind::sshd,
             useStrangersKey,
             {-21, {}, connection, couldNotConnect}},
        Case{"sshdLockedKey", ServerKind::sshd, lockKey, {-21, {}, connection, couldNotConnect}},
        Case{"sshdUnknownHostKey",
             ServerKind::sshd,
             forgetHost,
             {-21, {}, connection, couldNotConnect}},
        Case{"sshdChangedHostKey",
             ServerKind::sshd,
             changeHost,
             {-21, {}, connection, couldNotConnect}}),
    ::testing::PrintToStringParamName());

/// ssh's word that it has taken a host for known: the provider drops it for RSA keys alone, so a
/// request that has done its work has an error too. The client's own setting, `ssh -q`, avoids it.
TEST(NewHostKey, IsTakenForAnErrorUnlessTheTransportIsQuiet) {
    Journey journey(ServerKind::sshd);
    replaceInFile(journey, "ssh_config", "Host *\n",
                  "Host *\n    StrictHostKeyChecking accept-new\n");
    const auto infoAsNew = [&] {
        forgetHost(journey);
        return journey.serve({{"files", {journey.server().url("trunk")}}}, RequestTypeInfo,
                             journey.repository());
    };

    const Json loud = infoAsNew();
    EXPECT_EQ(loud.at("result").size(), 1U);
    EXPECT_THAT(loud.at("error").at("userInfo").at("NSLocalizedDescriptionKey"),
                HasSubstr("Warning: Permanently added 'quen-test' (ED25519)"));

    replaceInFile(journey, "ssh_config", "Host *\n", "Host *\n    LogLevel QUIET\n");
    const Json quiet = infoAsNew();
    EXPECT_EQ(quiet.at("result").size(), 1U);
    EXPECT_EQ(quiet.at("error"), nullptr);
}

INSTANTIATE_TEST_SUITE_P(
    Absence, ServerFailures,
    ::testing::Values(
        Case{"svnserveGone",
             ServerKind::svnserve,
             stop,
             {170013, {170013, 111}, "", "Connection refused"}},
        Case{"httpdGone",
             ServerKind::httpd,
             stop,
             {170013, {170013, 111}, "", "Connection refused"}},
        Case{"sshdGone", ServerKind::sshd, stop, {-21, {}, connection, couldNotConnect}},
        Case{"svnserveUnknownHost",
             ServerKind::files,
             nullptr,
             {170013, {170013, 670002}, "", "Unknown hostname 'nowhere.invalid'"},
             "svn://nowhere.invalid/repository"},
        Case{"httpdUnknownHost",
             ServerKind::files,
             nullptr,
             {170013, {170013, 670002}, "", "http://nowhere.invalid/repository"},
             "http://nowhere.invalid/repository"},
        Case{"sshdUnknownHost",
             ServerKind::sshd,
             nullptr,
             {-20, {}, connection, "The repository \"quen\" could not be reached."},
             "svn+ssh://nowhere.invalid/repository"}),
    ::testing::PrintToStringParamName());

/// What is kept for the client is the client's alone.
TEST(Passwords, AreInNoArgumentLogOrError) {
    for (const ServerKind kind : {ServerKind::svnserveWithPassword, ServerKind::httpd}) {
        const Journey journey(kind);
        const auto textOfInfo = [&](const std::string& password) {
            journey.server().keepPassword(password);
            return journey
                .serve({{"files", {journey.server().url("trunk")}}}, RequestTypeInfo,
                       journey.repository())
                .dump();
        };
        const std::string good = textOfInfo(Server::password);
        EXPECT_THAT(good, HasSubstr("\"error\":null"));
        EXPECT_THAT(good, ::testing::Not(HasSubstr(Server::password)));
        const std::string bad = textOfInfo("waterland");
        EXPECT_THAT(bad, HasSubstr(credentials));
        EXPECT_THAT(bad, ::testing::Not(HasSubstr("waterland")));
    }
}

// Servers that go in the middle.

struct Cut {
    std::string name;
    std::string scheme;
    std::string words;
    Failure failure;
};

std::ostream& operator<<(std::ostream& out, const Cut& cut) {
    return out << cut.name;
}

class CutConnections : public ::testing::TestWithParam<Cut> {};

TEST_P(CutConnections, AreToldAndNeverWaitedFor) {
    const Journey journey(ServerKind::files);
    const ClosingServer server(GetParam().words);
    const std::string url = GetParam().scheme + server.place().text() + "/repository";

    const Json answer = journey.serve({{"files", {url}}}, RequestTypeLog, journey.repository());

    expectFailure(answer, GetParam().failure);
    expectNoQuestion(journey, url);
}

INSTANTIATE_TEST_SUITE_P(
    OfA, CutConnections,
    ::testing::Values(
        Cut{"svnserveAtOnce", "svn://", "", takenForRefused()},
        Cut{"svnserveInTheGreeting", "svn://", "( success ( 2 2 ( ) ( edit-", takenForRefused()},
        Cut{"svnserveAfterTheGreeting", "svn://",
            "( success ( 2 2 ( ) ( edit-pipeline svndiff1 ) ) ) ", takenForRefused()},
        Cut{"httpdAtOnce", "http://", "", {170013, {170013, 120108}, "", "closed the connection"}}),
    ::testing::PrintToStringParamName());

/// A commit that hangs in the server's hook until the server is killed.
class KilledServer : public ::testing::TestWithParam<ServerKind> {
protected:
    KilledServer() : journey_(GetParam()) {
        const auto pipe = journey_.place("repository/hooks/pipe");
        const auto hook = journey_.place("repository/hooks/start-commit");
        journey_.sandbox().write(hook, "#!/bin/sh\necho $$ $PPID >'" + pipe.string() +
                                           "'\nexec sleep 600 >&- 2>&-\n");
        std::filesystem::permissions(hook, std::filesystem::perms(0755));
        if (mkfifo(pipe.c_str(), 0666) != 0 || chmod(pipe.c_str(), 0666) != 0) {
            throw std::runtime_error("No pipe can be made at " + pipe.string());
        }
        pipe_ = FileDescriptor(open(pipe.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC));
    }

    /// Waits, with a bound, for the hook, and kills it and what called it. sshd gives each of its
    /// children a session of its own, where its end does not reach.
    void killServer() {
        pollfd source{pipe_.number(), POLLIN, 0};
        ASSERT_GT(poll(&source, 1, 20000), 0);
        std::array<char, 64> line{};
        ASSERT_GT(::read(pipe_.number(), line.data(), line.size() - 1), 0);
        pid_t hook = 0;
        pid_t caller = 0;
        ASSERT_TRUE(std::istringstream(line.data()) >> hook >> caller);
        kill(caller, SIGKILL);
        kill(hook, SIGKILL);
        journey_.server().stop();
    }

    Journey journey_;
    FileDescriptor pipe_;
};

TEST_P(KilledServer, EndsACommitWithAnError) {
    const std::string url = journey_.server().url("trunk/new");
    auto answer = std::async(std::launch::async, [&] {
        return journey_.serve(
            {{"destination", url}, {"options", {{"QuenSourceControlRequestOptionMessage", "New"}}}},
            RequestTypeMakeDirectory, journey_.repository());
    });
    killServer();

    if (GetParam() == ServerKind::httpd) {
        expectLostReply(answer.get(), {104, 120108}); // reset, or ended
    } else {
        expectFailure(answer.get(), takenForRefused());
    }
    EXPECT_EQ(journey_.sandbox().svn({"list", journey_.sandbox().url("trunk")}), "");
}

INSTANTIATE_TEST_SUITE_P(On, KilledServer,
                         ::testing::Values(ServerKind::svnserve, ServerKind::httpd,
                                           ServerKind::sshd),
                         ::testing::PrintToStringParamName());

} // namespace

} // namespace quen::test
