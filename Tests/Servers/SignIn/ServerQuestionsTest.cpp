#include "Tests/Servers/SignIn/Editor.h"

#include <filesystem>
#include <gmock/gmock.h>

namespace quen::test {

namespace {

using ::testing::HasSubstr;
using ::testing::Not;

/// A repository that wants a password, and an editor that knows none.
class ServeSignIn : public ::testing::Test {
protected:
    explicit ServeSignIn(ServerKind kind = ServerKind::svnserveWithPassword)
        : server(sandbox, kind) {
        if (kind != ServerKind::sshd) {
            server.forgetPassword();
        }
    }

    Json list(const Json& more = Json::object()) const {
        Json params{{"url", server.url()}};
        params.update(more);
        return params;
    }
    std::string realm() const { return "<svn://" + server.place().text() + "> quen"; }

    Sandbox sandbox;
    Server server;
    Editor editor{sandbox, server};
};

void expectIn(const Json& answer) {
    EXPECT_EQ(answer.at("error"), nullptr) << answer.dump(1);
    EXPECT_EQ(answer.at("failure"), nullptr);
    EXPECT_EQ(answer.at("entries").size(), 3U) << answer.dump(1);
}

void expectOut(const Json& answer, const std::string& failure, const std::string& nextStep) {
    EXPECT_EQ(answer.at("failure"), failure) << answer.dump(1);
    EXPECT_THAT(answer.at("error").at("suggestion"), HasSubstr(nextStep));
    EXPECT_FALSE(answer.at("error").at("clientText").is_null());
}

TEST_F(ServeSignIn, AsksWithRealmUrlUserAndReason) {
    editor.willAnswer(signInAs("alice", "waterland"));
    editor.willAnswer(signInAs("alice", Server::password));
    expectIn(editor.ask("repository/list", list()));
    ASSERT_EQ(editor.asked().size(), 2U);
    const Json& first = editor.asked()[0];
    EXPECT_EQ(first.at("method"), "credentials/get");
    Json params = first.at("params");
    EXPECT_TRUE(params.at("user").is_string() || params.at("user").is_null());
    params.erase("user");
    EXPECT_EQ(params, (Json{{"realm", realm()}, {"url", server.url()}, {"reason", "first"}}));
    EXPECT_EQ(
        editor.asked()[1].at("params"),
        (Json{
            {"realm", realm()}, {"url", server.url()}, {"user", "alice"}, {"reason", "refused"}}));
}

TEST_F(ServeSignIn, KeepsTheAnswerForTheProcess) {
    editor.willAnswer(signInAs("alice", Server::password));
    expectIn(editor.ask("repository/list", list()));
    expectIn(editor.ask("repository/list", list()));
    EXPECT_EQ(editor.asked().size(), 1U);
}

TEST_F(ServeSignIn, KeepsAnAnswerForOnceNoLonger) {
    editor.willAnswer(signInAs("alice", Server::password, "once"));
    editor.willAnswer(signInAs("alice", Server::password, "once"));
    expectIn(editor.ask("repository/list", list()));
    expectIn(editor.ask("repository/list", list()));
    EXPECT_EQ(editor.asked().size(), 2U);
}

TEST_F(ServeSignIn, AsksOnceForTenRequestsAtOnce) {
    std::vector<int> ids;
    for (int i = 0; i < 10; ++i) {
        ids.push_back(editor.server().start("repository/list", list()));
    }
    editor.willAnswer(signInAs("alice", Server::password));
    for (const int id : ids) {
        expectIn(editor.answerOf(id).at("result"));
    }
    EXPECT_EQ(editor.asked().size(), 1U);
}

TEST_F(ServeSignIn, RemembersADismissalUntilAPersonActsAgain) {
    std::vector<int> ids;
    for (int i = 0; i < 10; ++i) {
        ids.push_back(editor.server().start("repository/list", list()));
    }
    for (const int id : ids) {
        expectOut(editor.answerOf(id).at("result"), "notAuthorised",
                  server.place().text() + " wants a user name and a password");
    }
    EXPECT_EQ(editor.asked().size(), 1U) << "no request that came before the answer asks again";
    editor.willAnswer(signInAs("alice", Server::password));
    expectIn(editor.ask("repository/list", list()));
    EXPECT_EQ(editor.asked().size(), 2U);
}

TEST_F(ServeSignIn, NeverAsksForWorkThatNoPersonAskedFor) {
    expectOut(editor.ask("repository/list", list({{"background", true}})), "notAuthorised",
              server.place().text());
    EXPECT_EQ(editor.asked().size(), 0U);
    editor.willAnswer(signInAs("alice", Server::password));
    expectIn(editor.ask("repository/list", list()));
    expectIn(editor.ask("repository/list", list({{"background", true}})));
    EXPECT_EQ(editor.asked().size(), 1U) << "what is kept is used";
}

TEST_F(ServeSignIn, TakesTheQuestionBackWhenTheRequestIsCancelled) {
    const int id = editor.server().start("repository/list", list());
    const Json question = editor.nextQuestion();
    ASSERT_EQ(question.at("method"), "credentials/get");
    editor.server().notify("$/cancelRequest", {{"id", id}});
    EXPECT_EQ(editor.answerOf(id).at("error").at("code"), -32800);
    const auto takenBack = editor.server().client().waitFor(
        [](const Json& message) { return message.value("method", "") == "$/cancelRequest"; });
    ASSERT_TRUE(takenBack);
    EXPECT_EQ(takenBack->at("params"), (Json{{"id", question.at("id")}}));
    // A late answer changes nothing, and the next request asks.
    editor.reply(question, {{"user", "alice"}, {"password", Server::password}});
    editor.willAnswer(signInAs("alice", Server::password));
    expectIn(editor.ask("repository/list", list()));
    EXPECT_EQ(editor.asked().size(), 2U);
}

TEST_F(ServeSignIn, EndsWithAQuestionOpen) {
    editor.server().start("repository/list", list());
    ASSERT_FALSE(editor.nextQuestion().is_null());
    editor.server().ask("shutdown");
    editor.server().notify("exit");
    EXPECT_EQ(editor.server().waitForEnd(), 0);
}

TEST_F(ServeSignIn, TakesWhatIsNoAnswerForANo) {
    for (const Json& answer :
         {Json("wonder land"), Json{{"user", "alice"}}, Json{{"password", 7}},
          Json{{"user", "alice"}, {"password", Server::password}, {"keep", "forever"}}}) {
        editor.willAnswer(says(answer));
        expectOut(editor.ask("repository/list", list()), "notAuthorised", server.place().text());
        EXPECT_TRUE(editor.server().client().waitFor([&](const Json& message) {
            return message.value("method", "") == "window/logMessage" &&
                   message.dump().find("credentials/get: ") != std::string::npos;
        })) << answer;
    }
    EXPECT_EQ(editor.asked().size(), 4U);
}

TEST_F(ServeSignIn, SaysNoSecretInLogResultOrStatistics) {
    editor.willAnswer(signInAs("alice", "waterland"));
    editor.willAnswer(signInAs("alice", Server::password));
    expectIn(editor.ask("repository/list", list()));
    editor.ask("server/statistics", Json::object());
    const std::string said = editor.said();
    EXPECT_THAT(said, HasSubstr("svn list --xml")) << "runs are logged at this level";
    EXPECT_THAT(said, Not(HasSubstr(Server::password)));
    EXPECT_THAT(said, Not(HasSubstr("waterland")));
}

class ServeCertificate : public ServeSignIn {
protected:
    ServeCertificate() : ServeSignIn(ServerKind::httpsd) {}

    std::size_t entriesKept() const {
        std::size_t count = 0;
        std::error_code none;
        for ([[maybe_unused]] const auto& entry : std::filesystem::directory_iterator(
                 sandbox.root() / "home/.subversion/auth/svn.ssl.server", none)) {
            ++count;
        }
        return count;
    }
};

TEST_F(ServeCertificate, IsShownWithItsFacts) {
    expectOut(editor.ask("repository/list", list()), "untrusted", server.place().text());
    ASSERT_EQ(editor.asked("certificate/confirm"), 1U);
    const Json params = editor.asked()[0].at("params");
    EXPECT_EQ(params.size(), 6U) << params;
    EXPECT_EQ(params.at("url"), server.url());
    EXPECT_EQ(params.at("hostname"), "quen-test");
    EXPECT_THAT(params.at("validity"), HasSubstr("until"));
    EXPECT_EQ(params.at("issuer"), "quen-test");
    EXPECT_EQ(params.at("fingerprint").get<std::string>().size(), 59U) << "SHA-1 with colons";
    EXPECT_THAT(params.at("failures").dump(), HasSubstr("not issued by a trusted authority"));
}

TEST_F(ServeCertificate, IsAcceptedForTheProcessOrAlways) {
    editor.willAnswer(says("once"));
    editor.willAnswer(signInAs("alice", Server::password));
    expectIn(editor.ask("repository/list", list()));
    expectIn(editor.ask("repository/list", list()));
    EXPECT_EQ(editor.asked().size(), 2U);
    EXPECT_EQ(entriesKept(), 0U);

    Editor another(sandbox, server);
    another.willAnswer(says("always"));
    another.willAnswer(signInAs("alice", Server::password));
    expectIn(another.ask("repository/list", list()));
    EXPECT_EQ(another.asked().size(), 2U);
    EXPECT_EQ(entriesKept(), 1U);
}

class ServeSecureShell : public ServeSignIn {
protected:
    ServeSecureShell() : ServeSignIn(ServerKind::sshd) {}
};

TEST_F(ServeSecureShell, AsksForAPassphrase) {
    sandbox.run({"ssh-keygen", "-q", "-p", "-N", "open sesame", "-f", "server/key"},
                sandbox.root());
    editor.willAnswer(says("open barley"));
    editor.willAnswer(says("open sesame"));
    expectIn(editor.ask("repository/list", list()));
    expectIn(editor.ask("repository/list", list()));
    EXPECT_EQ(editor.asked("ssh/ask"), 2U);
    const Json params = editor.asked()[0].at("params");
    EXPECT_THAT(params.at("prompt"), HasSubstr("passphrase for key"));
    EXPECT_EQ(params, (Json{{"prompt", params.at("prompt")}, {"secret", true}}));
    EXPECT_THAT(editor.said(), Not(HasSubstr("open sesame")));
}

TEST_F(ServeSecureShell, AsksAboutAHostKey) {
    const std::string known = sandbox.read(sandbox.root() / "server/known");
    for (const Json& no : {Json(nullptr), Json("no"), Json("")}) {
        sandbox.write(sandbox.root() / "server/known", "");
        editor.willAnswer(says(no));
        expectOut(editor.ask("repository/list", list()), "untrusted", "quen-test is not known");
    }
    editor.willAnswer(says("yes"));
    expectIn(editor.ask("repository/list", list()));
    expectIn(editor.ask("repository/list", list()));
    EXPECT_EQ(editor.asked("ssh/ask"), 4U);
    const Json params = editor.asked()[0].at("params");
    EXPECT_EQ(params.at("secret"), false);
    EXPECT_THAT(params.at("prompt"), HasSubstr("SHA256:"));
    EXPECT_THAT(sandbox.read(sandbox.root() / "server/known"), HasSubstr("ssh-ed25519"));
}

} // namespace

} // namespace quen::test
