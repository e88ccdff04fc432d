#include "Tests/Servers/SignIn/RecordingServer.h"
#include "Tests/Servers/SignIn/SecretSearch.h"
#include "Tests/Servers/SignInFixture.h"

#include <future>
#include <gmock/gmock.h>

namespace quen::test {

namespace {

using ::testing::HasSubstr;
using ::testing::Not;

/// A person who knows the password for one server, and servers that would like to have it.
class OtherServers : public ::testing::Test {
protected:
    OtherServers() { place.source().willAnswer(password(Server::password)); }

    ToolRun svn(const Sandbox::Words& words) { return place.svn(place.person(), words); }
    void signInFirst() { ASSERT_EQ(place.info().exitStatus, 0); }
    std::vector<std::string> realmsAsked() {
        std::vector<std::string> realms;
        for (const CredentialQuestion& question : place.source().asked()) {
            realms.push_back(question.realm.str());
        }
        return realms;
    }
    std::string realmAt(const Loopback& at, const std::string& name = "quen") const {
        return "<http://" + at.text() + "> " + name;
    }

    SignInPlace place{ServerKind::httpd};
    SecretSearch search{{Server::password}, Server::user};
};

TEST_F(OtherServers, GetNothingForARealmOfTheSameName) {
    const RecordingServer other([](const std::string&) { return wantsPassword("quen"); });
    signInFirst();
    EXPECT_NE(svn({"info", other.url()}).exitStatus, 0);
    EXPECT_THAT(realmsAsked(),
                ::testing::ElementsAre(realmAt(place.server().place()), realmAt(other.place())));
    EXPECT_THAT(other.heard(), HasSubstr("OPTIONS /repository"));
    EXPECT_FALSE(search.isIn(other.heard())) << other.heard();
    EXPECT_THAT(other.heard(), Not(HasSubstr("Authorization:")));
}

TEST_F(OtherServers, GetNothingAsAnExternal) {
    const RecordingServer other([](const std::string&) { return wantsPassword("quen"); });
    const std::string copy = (place.sandbox().root() / "copy").string();
    place.sandbox().svn({"propset", "-q", "svn:externals", other.url() + " ext", "."});
    place.sandbox().svn({"commit", "-q", "--username", "alice", "-m", "An external"});
    const ToolRun run = svn({"checkout", place.server().url("trunk"), copy});
    EXPECT_NE(run.exitStatus, 0);
    EXPECT_THAT(realmsAsked(), ::testing::Contains(realmAt(other.place()))) << run.errors->bytes();
    EXPECT_THAT(other.heard(), HasSubstr("OPTIONS /repository"));
    EXPECT_FALSE(search.isIn(other.heard())) << other.heard();
    EXPECT_THAT(other.heard(), Not(HasSubstr("Authorization:")));
}

/// The server that has the password sends the client on, once it has signed in.
TEST_F(OtherServers, GetNothingByARedirect) {
    const RecordingServer other([](const std::string&) { return wantsPassword("quen"); });
    const RecordingServer first([&](const std::string& request) {
        return request.find("Authorization:") == std::string::npos ? wantsPassword("quen")
                                                                   : movedTo(other.url());
    });
    const std::string copy = (place.sandbox().root() / "copy").string();
    EXPECT_NE(svn({"checkout", first.url(), copy}).exitStatus, 0);
    EXPECT_TRUE(search.isIn(first.heard())) << "it was given there: " << first.heard();
    EXPECT_THAT(other.heard(), HasSubstr("OPTIONS /repository")) << "it was sent on";
    EXPECT_FALSE(search.isIn(other.heard())) << other.heard();
    EXPECT_THAT(other.heard(), Not(HasSubstr("Authorization:")));
}

/// What a server calls its realm is its own choice.
struct Realm {
    const char* name;
    /// With $PLACE for another server.
    std::string text;
    bool isAsked = false;
};

std::ostream& operator<<(std::ostream& out, const Realm& realm) {
    return out << realm.name;
}

class HostileRealms : public OtherServers, public ::testing::WithParamInterface<Realm> {};

TEST_P(HostileRealms, AreAnotherServersForNobody) {
    std::string text = GetParam().text;
    const std::string good = place.server().place().text();
    if (const auto at = text.find("$PLACE"); at != std::string::npos) {
        text.replace(at, 6, good);
    }
    signInFirst();
    const std::size_t before = place.source().asked().size();
    const RecordingServer evil([&](const std::string&) { return wantsPassword(text); });
    const ToolRun run = svn({"info", evil.url()});
    EXPECT_NE(run.exitStatus, 0);
    const auto asked = place.source().asked();
    ASSERT_EQ(asked.size() - before, GetParam().isAsked ? 1U : 0U)
        << asked.back().realm.str() << run.errors->bytes();
    if (GetParam().isAsked) {
        EXPECT_THAT(asked.back().realm.str(),
                    ::testing::StartsWith("<http://" + evil.place().text() + "> "));
    }
}

INSTANTIATE_TEST_SUITE_P(As, HostileRealms,
                         ::testing::Values(Realm{"itsOwn", "quen", true},
                                           Realm{"ofTheSameName", "<http://$PLACE> quen", true},
                                           Realm{"withTheClientsLabel",
                                                 "x Authentication realm: <http://$PLACE> quen",
                                                 true},
                                           Realm{"withEscapes", "\x1b]0;title\x07\x1b[2J", true},
                                           Realm{"tooLongToRead", std::string(5000, 'x')}),
                         ::testing::PrintToStringParamName());

/// Ten operations at once.
TEST(OneRealm, IsAskedAboutOnce) {
    for (const ServerKind kind : {ServerKind::svnserveWithPassword, ServerKind::httpd}) {
        SignInPlace place(kind);
        place.source().willAnswer(password(Server::password));
        const RunContext act = place.person();
        std::vector<std::future<ToolRun>> runs;
        for (int i = 0; i < 10; ++i) {
            runs.push_back(std::async(std::launch::async, [&] {
                return place.svn(act, {"info", place.server().url()});
            }));
        }
        for (auto& run : runs) {
            EXPECT_EQ(run.get().exitStatus, 0);
        }
        EXPECT_EQ(place.source().asked().size(), 1U) << kind;
    }
}

} // namespace

} // namespace quen::test
