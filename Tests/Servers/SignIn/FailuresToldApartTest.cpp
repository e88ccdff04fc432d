#include "Host/ClientCommand.h"
#include "Host/TaskFailure.h"
#include "QuenFoundation/QuenSourceControlConstants.h"
#include "Tests/Servers/SignIn/Roads.h"
#include "Tests/Servers/SignInFixture.h"

#include <chrono>
#include <gmock/gmock.h>

namespace quen::test {

namespace {

using ::testing::HasSubstr;

struct Told {
    const char* name;
    ServerKind kind;
    void (*spoil)(SignInPlace& place);
    TaskFailure failure;
    /// In the next step, beside the server's name.
    std::string nextStep;
    /// A part of the client's or the secure shell's own line.
    std::string clientText;
};

std::ostream& operator<<(std::ostream& out, const Told& told) {
    return out << told.name;
}

/// A file of the server's, changed.
void replace(SignInPlace& place, const std::string& file, const std::string& old,
             const std::string& with) {
    const auto path = place.sandbox().root() / file;
    std::string text = place.sandbox().read(path);
    const std::size_t at = text.find(old);
    ASSERT_NE(at, std::string::npos) << file << " does not hold " << old;
    text.replace(at, old.size(), with);
    place.sandbox().write(path, text);
}

void answerWrong(SignInPlace& place) {
    place.source().willAnswer(password("waterland"));
}

void forbid(SignInPlace& place) {
    place.source().willAnswer(password(Server::password));
    replace(place, "repository/conf/svnserve.conf", "[general]\n", "[general]\nauthz-db = authz\n");
    place.sandbox().write(place.sandbox().root() / "repository/conf/authz", "[/]\nbob = rw\n");
}

void stop(SignInPlace& place) {
    place.server().stop();
}

void answerNothing(SignInPlace& /*place*/) {}

void useStrangersKey(SignInPlace& place) {
    replace(place, "server/ssh_config", "/key\n", "/stranger\n");
}

void forgetHost(SignInPlace& place) {
    place.sandbox().write(place.sandbox().root() / "server/known", "");
}

void changeHost(SignInPlace& place) {
    place.sandbox().write(place.sandbox().root() / "server/known",
                          "quen-test " +
                              place.sandbox().read(place.sandbox().root() / "server/stranger.pub"));
}

class ToldApart : public ::testing::TestWithParam<Told> {};

TEST_P(ToldApart, NamesTheServerTheNextStepAndTheClientsLine) {
    SignInPlace place(GetParam().kind);
    GetParam().spoil(place);
    const RunContext::Scope scope(place.person());
    const auto operation = ClientCommand::make({"info"}, {place.server().url()}, RequestTypeInfo);
    operation->run();
    const Error& error = operation->error();
    ASSERT_TRUE(error);
    EXPECT_EQ(taskFailureOf(error), GetParam().failure) << error.description().str();
    const Dictionary& facts = error.userInfo();
    const std::string server =
        GetParam().kind == ServerKind::sshd
            ? "svn+ssh://quen-test"
            : place.server().url().substr(0, place.server().url().rfind('/'));
    EXPECT_EQ(facts[QuenSourceControlSignInServerKey].stringValue().str(), server);
    const std::string nextStep = facts[NSLocalizedRecoverySuggestionErrorKey].stringValue().str();
    EXPECT_THAT(nextStep, HasSubstr(GetParam().nextStep));
    EXPECT_THAT(nextStep + error.localizedDescription().str(), HasSubstr(server));
    EXPECT_THAT(facts[QuenSourceControlSignInClientTextKey].stringValue().str(),
                HasSubstr(GetParam().clientText));
}

INSTANTIATE_TEST_SUITE_P(
    On, ToldApart,
    ::testing::Values(
        Told{"svnserveNoPassword", ServerKind::svnserveWithPassword, answerNothing,
             TaskFailure::noPassword, "wants a user name and a password",
             "Can't get username or password"},
        Told{"svnserveWrongPassword", ServerKind::svnserveWithPassword, answerWrong,
             TaskFailure::wrongPassword, "did not accept the password of alice",
             "Password incorrect"},
        Told{"svnserveNoPermission", ServerKind::svnserveWithPassword, forbid,
             TaskFailure::noPermission, "does not allow you to do this", "Authorization failed"},
        Told{"svnserveGone", ServerKind::svnserveWithPassword, stop, TaskFailure::offline,
             "that the server can be reached", "Connection refused"},
        Told{"SASLNoPassword", ServerKind::svnserveWithSASL, answerNothing, TaskFailure::noPassword,
             "wants a user name and a password", "Can't get username or password"},
        Told{"SASLWrongPassword", ServerKind::svnserveWithSASL, answerWrong,
             TaskFailure::wrongPassword, "did not accept the password of alice",
             "Authentication error from server"},
        Told{"SASLNoPermission", ServerKind::svnserveWithSASL, forbid, TaskFailure::noPermission,
             "does not allow you to do this", "Authorization failed"},
        Told{"basicNoPassword", ServerKind::httpd, answerNothing, TaskFailure::noPassword,
             "wants a user name and a password", "Authentication failed"},
        Told{"basicWrongPassword", ServerKind::httpd, answerWrong, TaskFailure::wrongPassword,
             "did not accept the password of alice", "Authentication failed"},
        Told{"basicGone", ServerKind::httpd, stop, TaskFailure::offline,
             "that the server can be reached", "Connection refused"},
        Told{"digestWrongPassword", ServerKind::httpdWithDigest, answerWrong,
             TaskFailure::wrongPassword, "did not accept the password of alice",
             "Authentication failed"},
        Told{"httpsCertificate", ServerKind::httpsd, answerNothing,
             TaskFailure::untrustedCertificate, "Compare its fingerprint",
             "certificate verification failed"},
        Told{"sshdKeyRefused", ServerKind::sshd, useStrangersKey, TaskFailure::keyRefused,
             "accepted none of your keys", "Permission denied (publickey)"},
        Told{"sshdHostUnknown", ServerKind::sshd, forgetHost, TaskFailure::hostKeyUnknown,
             "is not known here", "Host key verification failed"},
        Told{"sshdHostChanged", ServerKind::sshd, changeHost, TaskFailure::hostKeyChanged,
             "is not the one that is known", "HOST IDENTIFICATION HAS CHANGED"},
        Told{"sshdGone", ServerKind::sshd, stop, TaskFailure::offline, "does not answer",
             "Connection refused"}),
    ::testing::PrintToStringParamName());

/// A person thinks for longer than a client may be silent.
TEST(SlowPerson, IsWaitedForWhileTheSecureShellAsks) {
    SignInPlace place(ServerKind::sshd);
    place.sandbox().write(place.sandbox().root() / "server/known", "");
    place.source().willAnswerSlowly(yes(CredentialKeep::process), std::chrono::milliseconds(1500));
    RunLimits limits;
    limits.idle = std::chrono::milliseconds(1000);
    limits.total = std::chrono::milliseconds(2400);
    const ToolRun run =
        place.svn(place.person().withLimits(limits), {"info", place.server().url()});
    EXPECT_EQ(run.end, RunEnd::ended) << run.reason.str();
    EXPECT_EQ(run.exitStatus, 0) << run.errors->bytes();
    EXPECT_EQ(place.source().asked().size(), 1U);
}

} // namespace

} // namespace quen::test
