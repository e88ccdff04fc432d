#include "Tests/Servers/SignIn/SecretSearch.h"
#include "Tests/Servers/SignInFixture.h"

#include <gmock/gmock.h>

namespace quen::test {

namespace {

using ::testing::HasSubstr;
using ::testing::SizeIs;

class PasswordServers : public ::testing::TestWithParam<ServerKind> {
protected:
    PasswordServers() : place_(GetParam()) {
        if (GetParam() == ServerKind::httpsd) {
            place_.source().willAnswer(yes(CredentialKeep::client));
        }
    }

    /// Runs that ask for nothing but passwords.
    std::size_t passwordsAsked() {
        const auto asked = place_.source().asked();
        return static_cast<std::size_t>(
            std::count_if(asked.begin(), asked.end(), [](const CredentialQuestion& question) {
                return question.kind == CredentialKind::password;
            }));
    }

    void expectIn(const ToolRun& run) {
        EXPECT_EQ(run.exitStatus, 0) << run.errors->bytes();
        EXPECT_THAT(std::string(run.output->bytes()), HasSubstr("Repository Root"));
        EXPECT_FALSE(run.signInFailure);
    }

    void expectOut(const ToolRun& run, TaskFailure failure) {
        EXPECT_EQ(run.exitStatus, 1) << run.output->bytes();
        ASSERT_TRUE(run.signInFailure) << run.errors->bytes();
        EXPECT_EQ(run.signInFailure->failure, failure) << run.errors->bytes();
        EXPECT_THAT(run.signInFailure->nextStep.str(), HasSubstr(place_.server().place().text()));
    }

    SignInPlace place_;
};

TEST_P(PasswordServers, LetInWhoHasTheRightPassword) {
    place_.source().willAnswer(password(Server::password));
    expectIn(place_.info());
    EXPECT_EQ(passwordsAsked(), 1U);
    expectIn(place_.info());
    EXPECT_EQ(passwordsAsked(), 1U) << "it is kept";
}

TEST_P(PasswordServers, AskAgainAfterAWrongPassword) {
    place_.source().willAnswer(password("waterland"));
    place_.source().willAnswer(password(Server::password));
    expectIn(place_.info());
    EXPECT_EQ(passwordsAsked(), 2U);
    EXPECT_TRUE(place_.source().asked().back().wasRefused);
}

TEST_P(PasswordServers, LeaveItAtANo) {
    place_.source().willAnswer(no());
    const RunContext act = place_.person();
    expectOut(place_.svn(act, {"info", place_.server().url()}), TaskFailure::noPassword);
    expectOut(place_.svn(act, {"info", place_.server().url()}), TaskFailure::noPassword);
    EXPECT_EQ(passwordsAsked(), 1U) << "within one act";
    place_.source().willAnswer(password(Server::password));
    expectIn(place_.info());
    EXPECT_EQ(passwordsAsked(), 2U) << "a new act asks again";
}

INSTANTIATE_TEST_SUITE_P(SignIn, PasswordServers,
                         ::testing::Values(ServerKind::svnserveWithPassword,
                                           ServerKind::svnserveWithSASL, ServerKind::httpd,
                                           ServerKind::httpdWithDigest, ServerKind::httpsd),
                         ::testing::PrintToStringParamName());

/// Without a keyring, Debian's client keeps the name alone; the answer counts for the process too.
TEST(KeptByTheClient, IsWhatTheClientItselfKeeps) {
    SignInPlace place(ServerKind::svnserveWithPassword);
    place.source().willAnswer(password("waterland", CredentialKeep::client));
    place.source().willAnswer(password(Server::password, CredentialKeep::client));
    EXPECT_EQ(place.info().exitStatus, 0);
    EXPECT_EQ(place.info().exitStatus, 0);
    EXPECT_THAT(place.source().asked(), SizeIs(2));
    std::string entries;
    for (const auto& [name, text] : filesBelow(place.clientsFiles() / "auth/svn.simple")) {
        entries += text;
    }
    EXPECT_THAT(entries, HasSubstr("<svn://" + place.server().place().text() + "> quen"));
    EXPECT_THAT(entries, HasSubstr("alice"));
    EXPECT_THAT(entries, ::testing::Not(HasSubstr("gpg-agent"))) << "nothing of ours";
    const SecretSearch search({Server::password, "waterland"}, Server::user);
    EXPECT_THAT(search.filesWith(place.home(), {}), ::testing::IsEmpty());
}

} // namespace

} // namespace quen::test
