#include "Tests/Servers/SignIn/CommitMoment.h"
#include "Tests/Servers/SignIn/Editor.h"
#include "Tests/Servers/SignIn/RecordingServer.h"
#include "Tests/Servers/SignIn/SecretSearch.h"
#include "Tests/Servers/SignInFixture.h"
#include "Tests/System/Terminal.h"

#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <gmock/gmock.h>
#include <sstream>
#include <sys/resource.h>

namespace quen::test {

namespace {

using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::Not;

/// A person at a terminal of 60 columns, and quen.
class AtTheTerminal : public ::testing::Test {
protected:
    static Sandbox::Words listing(const std::string& url, const Sandbox::Words& options = {}) {
        Sandbox::Words words{Sandbox::program(), "list", "--color", "never", url};
        words.insert(words.end(), options.begin(), options.end());
        return words;
    }
    static ProcessInvocation invocation(SignInPlace& place, const Sandbox::Words& words) {
        return place.sandbox().invocation(words, place.sandbox().root(),
                                          place.server().variables());
    }
    /// What a program says of a file of the server's, without its last line end.
    static std::string said(SignInPlace& place, const Sandbox::Words& words) {
        std::string text = place.sandbox().run(words, place.sandbox().root()).out;
        text.erase(text.find_last_not_of('\n') + 1);
        return text;
    }
};

TEST_F(AtTheTerminal, APasswordIsAskedForWithItsRealmAndNotShown) {
    SignInPlace place(ServerKind::svnserveWithPassword);
    Terminal terminal(invocation(place, listing(place.server().url(), {"--username", "alice"})));
    ASSERT_TRUE(terminal.waitFor("Password for alice: ")) << terminal.shown();
    EXPECT_THAT(terminal.shown(),
                HasSubstr("Sign in to <svn://" + place.server().place().text() + "> quen"));
    EXPECT_THAT(terminal.shown(), Not(HasSubstr("User name")));
    terminal.type("waterland\n");
    ASSERT_TRUE(terminal.waitFor("That was not accepted."));
    ASSERT_TRUE(terminal.waitForNext({"not accepted."}));
    ASSERT_TRUE(terminal.waitForNext({"Password for alice: "}));
    terminal.type(std::string(Server::password) + "\n");
    EXPECT_EQ(terminal.waitForEnd(), 0) << terminal.shown();
    EXPECT_THAT(terminal.shown(), HasSubstr("trunk"));
    EXPECT_THAT(terminal.shown(), Not(HasSubstr(Server::password)));
    EXPECT_THAT(terminal.shown(), Not(HasSubstr("waterland")));
}

TEST_F(AtTheTerminal, AnInterruptEndsAQuestion) {
    SignInPlace place(ServerKind::svnserveWithPassword);
    Terminal terminal(invocation(place, listing(place.server().url(), {"--username", "alice"})));
    ASSERT_TRUE(terminal.waitFor("Password for alice: "));
    terminal.type("\x03");
    EXPECT_EQ(terminal.waitForEnd(), 130) << terminal.shown();
    EXPECT_THAT(terminal.shown(), HasSubstr("Interrupted."));
}

TEST_F(AtTheTerminal, APasswordComesFromStandardInputOnce) {
    SignInPlace place(ServerKind::svnserveWithPassword);
    const auto input = place.sandbox().root() / "input";
    place.sandbox().write(input, std::string(Server::password) + "\n");
    const std::string command = Sandbox::program() +
                                " list --username alice --password-from-stdin " +
                                place.server().url() + " <" + input.string();
    const auto run = [&] {
        return place.sandbox().run({"sh", "-c", command}, place.sandbox().root());
    };
    EXPECT_THAT(run().out, HasSubstr("trunk"));
    place.sandbox().write(input, "waterland\n" + std::string(Server::password) + "\n");
    const Ran wrong = run();
    EXPECT_EQ(wrong.status, 1) << "the second line is not taken";
    EXPECT_THAT(wrong.err, HasSubstr("did not accept the password of alice"));
}

struct Decision {
    std::string typed;
    bool isIn = false;
    bool isKept = false;
};

TEST_F(AtTheTerminal, ACertificateIsShownWithItsFacts) {
    SignInPlace place(ServerKind::httpsd);
    place.server().keepPassword(Server::password);
    const std::string fingerprint = said(place, {"openssl", "x509", "-noout", "-fingerprint",
                                                 "-sha1", "-in", "server/certificate.pem"});
    for (const Decision& each :
         {Decision{"\n"}, Decision{"n\n"}, Decision{"maybe\n"}, Decision{"\x04"},
          Decision{"y\n", true}, Decision{"always\n", true, true}}) {
        Terminal terminal(invocation(place, listing(place.server().url())));
        ASSERT_TRUE(terminal.waitFor("[N]o: ")) << terminal.shown();
        EXPECT_THAT(terminal.shown(),
                    HasSubstr("The certificate of https://" + place.server().place().text()));
        EXPECT_THAT(terminal.shown(), HasSubstr("not issued by a trusted authority"));
        EXPECT_THAT(terminal.shown(), HasSubstr("Host:        quen-test"));
        EXPECT_THAT(terminal.shown(), HasSubstr("Valid:       from "));
        EXPECT_THAT(terminal.shown(), HasSubstr("Issuer:      quen-test"));
        EXPECT_THAT(terminal.shown(),
                    HasSubstr("Fingerprint: " + fingerprint.substr(fingerprint.find('=') + 1)));
        terminal.type(each.typed);
        EXPECT_EQ(terminal.waitForEnd(), each.isIn ? 0 : 1) << terminal.shown();
        EXPECT_THAT(terminal.shown(), HasSubstr(each.isIn ? "trunk" : "Compare its fingerprint"));
        const auto kept = place.clientsFiles() / "auth/svn.ssl.server";
        EXPECT_EQ(!std::filesystem::is_empty(kept), each.isKept) << each.typed;
    }
    const Ran persons = place.sandbox().run(
        {"svn", "info", "--non-interactive", place.server().url()}, place.sandbox().root());
    EXPECT_EQ(persons.status, 0) << "the person's own client knows it too: " << persons.err;
}

TEST_F(AtTheTerminal, AHostKeyIsShownWithItsFingerprint) {
    SignInPlace place(ServerKind::sshd);
    const auto known = place.sandbox().root() / "server/known";
    const std::string facts = said(place, {"ssh-keygen", "-lf", "server/host.pub"});
    const std::size_t begin = facts.find("SHA256:");
    const std::string fingerprint = facts.substr(begin, facts.find(' ', begin) - begin);
    for (const Decision& each : {Decision{"\n"}, Decision{"n\n"}, Decision{"a\n", true, true}}) {
        place.sandbox().write(known, "");
        Terminal terminal(invocation(place, listing(place.server().url())));
        ASSERT_TRUE(terminal.waitFor("[N]o: ")) << terminal.shown();
        EXPECT_THAT(terminal.shown(), HasSubstr("authenticity of host 'quen-test"));
        EXPECT_THAT(terminal.shown(), HasSubstr(fingerprint));
        terminal.type(each.typed);
        EXPECT_EQ(terminal.waitForEnd(), each.isIn ? 0 : 1) << terminal.shown();
        EXPECT_THAT(terminal.shown(), HasSubstr(each.isIn ? "trunk" : "is not known here"));
        EXPECT_EQ(!place.sandbox().read(known).empty(), each.isKept);
    }
}

TEST_F(AtTheTerminal, APassphraseIsAskedForWithItsKeyAndNotShown) {
    SignInPlace place(ServerKind::sshd);
    place.server().changePassword("", "open sesame");
    Terminal terminal(invocation(place, listing(place.server().url())));
    ASSERT_TRUE(terminal.waitFor("Enter passphrase for key ")) << terminal.shown();
    ASSERT_TRUE(terminal.waitFor("/server/key': ")) << terminal.shown();
    terminal.type("open sesame\n");
    EXPECT_EQ(terminal.waitForEnd(), 0) << terminal.shown();
    EXPECT_THAT(terminal.shown(), HasSubstr("trunk"));
    EXPECT_THAT(terminal.shown(), Not(HasSubstr("open sesame")));
}

TEST_F(AtTheTerminal, ARealmCannotDriveTheTerminal) {
    SignInPlace place(ServerKind::svnserveWithPassword);
    const RecordingServer evil([](const std::string&) {
        return wantsPassword("\x1b]0;title\x07\x1b[2J\x9b"
                             "31m");
    });
    Terminal terminal(invocation(place, listing(evil.url(), {"--username", "alice"})));
    ASSERT_TRUE(terminal.waitFor("Password for alice: ")) << terminal.shown();
    const std::string& shown = terminal.shown();
    const std::string question = shown.substr(shown.find("Sign in to"));
    EXPECT_THAT(question, Not(HasSubstr("\x1b")));
    EXPECT_THAT(question, Not(HasSubstr("\x07")));
    terminal.type("\x04");
    EXPECT_EQ(terminal.waitForEnd(), 1);
}

/// A process of each way, while it has a secret and its client waits for the server.
class HoldsASecret : public ::testing::Test {
protected:
    HoldsASecret() {
        std::filesystem::create_directory(temporary());
        rlimit limit{};
        getrlimit(RLIMIT_CORE, &limit);
        limit.rlim_cur = limit.rlim_max;
        setrlimit(RLIMIT_CORE, &limit);
    }

    std::filesystem::path temporary() const { return place.sandbox().root() / "temporary"; }
    Sandbox::Words variables() const {
        return {"TMPDIR=" + temporary().string(), "XDG_RUNTIME_DIR="};
    }
    /// The sandbox's processes that are quen or the client, by number.
    std::vector<int> programs() const {
        std::vector<int> numbers;
        for (const auto& entry : std::filesystem::directory_iterator("/proc")) {
            const int number = std::atoi(entry.path().filename().c_str());
            std::error_code none;
            const std::string program =
                number == 0 ? std::filesystem::path()
                            : std::filesystem::read_symlink(entry.path() / "exe", none).filename();
            if ((program == "quen" || program == "svn") &&
                textOf(entry.path() / "environ").find(place.sandbox().root().string()) !=
                    std::string::npos) {
                numbers.push_back(number);
            }
        }
        return numbers;
    }
    static std::string textOf(const std::filesystem::path& path) {
        std::ifstream file(path, std::ios::binary);
        std::ostringstream text;
        text << file.rdbuf();
        return text.str();
    }
    /// The soft limit, as the system writes it.
    static std::string coreLimitOf(int process) {
        std::istringstream text(textOf("/proc/" + std::to_string(process) + "/limits"));
        for (std::string line; std::getline(text, line);) {
            if (line.starts_with("Max core file size")) {
                std::istringstream words(line.substr(18));
                std::string soft;
                words >> soft;
                return soft;
            }
        }
        return "gone";
    }
    int startCommit(Editor& editor) {
        const Json repository{
            {"kind", "repository"}, {"name", "quen"}, {"location", place.server().url()}};
        return editor.server().start(
            "provider/perform",
            {{"request",
              {{"type", RequestTypeMakeDirectory},
               {"sourceTree", repository},
               {"repositoryToAuthenticate", repository},
               {"destination", place.server().url("made")},
               {"options", {{"QuenSourceControlRequestOptionMessage", "Made"}}}}}});
    }

    SignInPlace place{ServerKind::svnserveWithPassword};
    SecretSearch search{{Server::password}, Server::user};
    std::vector<std::filesystem::path> serversOwn{place.sandbox().root() / "repository/conf"};
};

TEST_F(HoldsASecret, AndWritesNoCoreFile) {
    std::vector<std::string> limits;
    const CommitMoment moment(place.sandbox(), [&] {
        for (const int number : programs()) {
            limits.push_back(coreLimitOf(number));
        }
    });
    Terminal terminal(
        place.sandbox().invocation({Sandbox::program(), "mkdir", "--username", "alice", "-m",
                                    "Made", place.server().url("first")},
                                   place.sandbox().root(), variables()));
    ASSERT_TRUE(terminal.waitFor("Password for alice: "));
    terminal.type(std::string(Server::password) + "\n");
    EXPECT_EQ(terminal.waitForEnd(), 0) << terminal.shown();
    EXPECT_THAT(limits, ::testing::ElementsAre("0", "0")) << "quen and its client";

    limits.clear();
    Editor editor(place.sandbox(), place.server(), variables());
    EXPECT_NE(coreLimitOf(editor.server().number()), "0") << "before it is asked";
    editor.willAnswer(signInAs("alice", Server::password));
    EXPECT_EQ(editor.answerOf(startCommit(editor)).at("result").at("error"), nullptr);
    EXPECT_THAT(limits, ::testing::ElementsAre("0", "0")) << "the server and its client";
}

TEST_F(HoldsASecret, AndLeavesNoneWhenItIsKilled) {
    const auto home = filesBelow(place.home());
    Editor editor(place.sandbox(), place.server(), variables());
    const CommitMoment moment(place.sandbox(), [&] { kill(editor.server().number(), SIGKILL); });
    editor.willAnswer(signInAs("alice", Server::password));
    startCommit(editor);
    const Json question = editor.nextQuestion();
    editor.reply(question, {{"user", "alice"}, {"password", Server::password}});
    EXPECT_EQ(editor.server().waitForEnd(), 128 + SIGKILL);
    EXPECT_EQ(moment.count(), 1);
    EXPECT_THAT(search.filesWith(place.sandbox().root(), serversOwn), IsEmpty());
    EXPECT_TRUE(becomesTrue([&] { return programs().empty(); })) << "the client goes with it";
    EXPECT_EQ(filesBelow(place.home()), home);
    int left = 0;
    for (const auto& entry : std::filesystem::directory_iterator(temporary())) {
        EXPECT_EQ(entry.status().permissions() & std::filesystem::perms(0077),
                  std::filesystem::perms::none)
            << entry.path();
        ++left;
    }
    EXPECT_GT(left, 0) << "what is left is the owner's alone";
}

} // namespace

} // namespace quen::test
