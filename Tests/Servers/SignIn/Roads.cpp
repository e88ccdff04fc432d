#include "Tests/Servers/SignIn/Roads.h"

#include "QuenFoundation/QuenSourceControlRequestType.h"
#include "Tests/Servers/SignIn/Editor.h"
#include "Tests/System/Terminal.h"

#include <array>
#include <gtest/gtest.h>
#include <mutex>
#include <utility>

namespace quen::test {

namespace {

/// What a program finds around it: nothing of the machine's own agents, and a place of its own for
/// what it makes for a while.
Sandbox::Words surroundings(const std::filesystem::path& temporary) {
    return {"TMPDIR=" + temporary.string(),
            "XDG_RUNTIME_DIR=", "SSH_AUTH_SOCK=", "GPG_AGENT_INFO=", "DBUS_SESSION_BUS_ADDRESS="};
}

class LibraryRoad : public Road, public CredentialSource {
public:
    LibraryRoad(SignInPlace& place, std::filesystem::path temporary)
        : place_(place), temporary_(std::move(temporary)) {}

    std::string attempt(const std::string& url, const Replies& replies) override {
        replies_ = replies;
        given_ = 0;
        const auto mine = std::shared_ptr<CredentialSource>(this, [](CredentialSource*) {});
        credentials_ = credentials_ == nullptr ? Credentials::make(mine) : credentials_;
        const RunContext context =
            place_
                .contextWith(replies.mayAsk ? credentials_->forPerson()
                                            : credentials_->forBackground())
                .withTemporaryDirectory(temporary_.string())
                .withLogLevel(9)
                .withLogHandler([this](std::uint32_t, const String& text) { say(text.str()); });
        const ToolRun run = place_.svn(context, {"mkdir", "-m", "Made", url});
        say(std::string(run.output->bytes()) + std::string(run.errors->bytes()));
        if (run.exitStatus == 0) {
            EXPECT_FALSE(run.signInFailure);
            return "in";
        }
        if (!run.signInFailure) {
            return std::string(run.errors->bytes());
        }
        say(run.signInFailure->nextStep.str() + run.signInFailure->clientText.str());
        return failureToldBy(run.signInFailure->nextStep.str());
    }

    std::optional<CredentialAnswer> answer(const CredentialQuestion& question,
                                           std::stop_token /*stop*/) override {
        const std::lock_guard lock(mutex_);
        if (question.kind == CredentialKind::certificate ||
            question.kind == CredentialKind::hostKey) {
            ++decisionsAsked_;
            return replies_.decision == "no"
                       ? std::nullopt
                       : std::optional(CredentialAnswer{.keep = replies_.decision == "always"
                                                                    ? CredentialKeep::client
                                                                    : CredentialKeep::process});
        }
        ++secretsAsked_;
        return given_ < replies_.secrets.size()
                   ? std::optional(CredentialAnswer{.user = Server::user,
                                                    .secret = Secret(replies_.secrets[given_++])})
                   : std::nullopt;
    }

private:
    void say(const std::string& text) {
        const std::lock_guard lock(mutex_);
        said_ += text + "\n";
    }

    SignInPlace& place_;
    std::filesystem::path temporary_;
    std::mutex mutex_;
    Replies replies_;
    std::size_t given_ = 0;
    CredentialsPtr credentials_;
};

class CommandLineRoad : public Road {
public:
    CommandLineRoad(SignInPlace& place, const std::filesystem::path& temporary)
        : place_(place), variables_(surroundings(temporary)) {
        const Sandbox::Words& more = place.server().variables();
        variables_.insert(variables_.end(), more.begin(), more.end());
    }

    std::string attempt(const std::string& url, const Replies& replies) override {
        Sandbox::Words words{Sandbox::program(), "mkdir", "--color", "never", "-m", "Made", url};
        if (!replies.mayAsk) {
            words.emplace_back("--no-ask");
        }
        Terminal terminal(place_.sandbox().invocation(words, place_.sandbox().root(), variables_));
        std::size_t given = 0;
        const auto secret = [&] {
            ++secretsAsked_;
            return given < replies.secrets.size() ? replies.secrets[given++] + "\n" : "\x04";
        };
        const auto decision = [&] {
            ++decisionsAsked_;
            return replies.decision + "\n";
        };
        while (const auto which = terminal.waitForNext(
                   {"User name [", "Password for alice: ", "nter passphrase for key",
                    "Accept it? "})) {
            switch (*which) {
            case 0: terminal.type(std::string(Server::user) + "\n"); break;
            case 1: terminal.type(secret()); break;
            case 2:
                terminal.waitForNext({": "});
                terminal.type(secret());
                break;
            default:
                terminal.waitForNext({": "});
                terminal.type(decision());
                break;
            }
        }
        const int status = terminal.waitForEnd();
        said_ += terminal.shown();
        return status == 0 ? "in" : failureToldBy(terminal.shown());
    }

private:
    SignInPlace& place_;
    Sandbox::Words variables_;
};

class ServerRoad : public Road {
public:
    ServerRoad(SignInPlace& place, const std::filesystem::path& temporary)
        : place_(place), editor_(place.sandbox(), place.server(), surroundings(temporary)) {}

    std::string attempt(const std::string& url, const Replies& replies) override {
        const Json repository{
            {"kind", "repository"}, {"name", "quen"}, {"location", place_.server().url()}};
        const Json request{{"type", RequestTypeMakeDirectory},
                           {"sourceTree", repository},
                           {"repositoryToAuthenticate", repository},
                           {"destination", url},
                           {"options", {{"QuenSourceControlRequestOptionMessage", "Made"}}}};
        Json params{{"request", request}, {"logLevel", 9}};
        if (!replies.mayAsk) {
            params["background"] = true;
        }
        const Json answer = converse(editor_.server().start("provider/perform", params), replies);
        editor_.ask("server/statistics", Json::object());
        said_ = editor_.said();
        if (answer.at("error").is_null()) {
            return "in";
        }
        return failureToldBy(answer.at("error").dump());
    }

private:
    Json converse(int id, const Replies& replies) {
        secrets_ = replies.secrets;
        given_ = 0;
        for (int i = 0; i < 20; ++i) { // more questions than anybody may ask
            editor_.willAnswer([&](const Json& question) { return reply(question, replies); });
        }
        const Json whole = editor_.answerOf(id);
        editor_.forgetAnswers();
        return whole.is_object() && whole.contains("result")
                   ? whole.at("result")
                   : Json{{"error", whole.is_null() ? Json("no answer") : whole.at("error")}};
    }

    Json reply(const Json& question, const Replies& replies) {
        const std::string method = question.at("method");
        if (method == "certificate/confirm") {
            ++decisionsAsked_;
            const std::string& word = replies.decision;
            return word == "no" ? "reject" : word == "yes" ? "once" : "always";
        }
        if (method == "ssh/ask" && question.at("params").at("secret") == false) {
            ++decisionsAsked_;
            return replies.decision == "no" ? Json() : Json("yes");
        }
        ++secretsAsked_;
        if (given_ >= secrets_.size()) {
            return nullptr;
        }
        const std::string secret = secrets_[given_++];
        return method == "ssh/ask"
                   ? Json(secret)
                   : Json{{"user", Server::user}, {"password", secret}, {"keep", "process"}};
    }

    SignInPlace& place_;
    Editor editor_;
    std::vector<std::string> secrets_;
    std::size_t given_ = 0;
};

} // namespace

std::ostream& operator<<(std::ostream& out, Way way) {
    constexpr std::array names{"commandLine", "library", "server"};
    return out << names.at(static_cast<std::size_t>(way));
}

std::unique_ptr<Road> makeRoad(Way way, SignInPlace& place,
                               const std::filesystem::path& temporary) {
    switch (way) {
    case Way::commandLine: return std::make_unique<CommandLineRoad>(place, temporary);
    case Way::library: return std::make_unique<LibraryRoad>(place, temporary);
    case Way::server: break;
    }
    return std::make_unique<ServerRoad>(place, temporary);
}

std::string failureToldBy(const std::string& text) {
    const std::array<std::pair<const char*, const char*>, 8> steps{
        {{"wants a user name and a password", "noPassword"},
         {"did not accept the password", "wrongPassword"},
         {"does not allow you to do this", "noPermission"},
         {"is not trusted. Compare its fingerprint", "untrustedCertificate"},
         {"accepted none of your keys", "keyRefused"},
         {"is not known here", "hostKeyUnknown"},
         {"is not the one that is known", "hostKeyChanged"},
         {"does not answer", "offline"}}};
    for (const auto& [words, name] : steps) {
        if (text.find(words) != std::string::npos) {
            return name;
        }
    }
    return "not told: " + text;
}

} // namespace quen::test
