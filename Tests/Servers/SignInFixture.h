#pragma once

#include "Host/Credentials/Credentials.h"
#include "Host/RunContext.h"
#include "Tests/Servers/Server.h"

#include <chrono>
#include <condition_variable>
#include <deque>
#include <filesystem>
#include <functional>
#include <map>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

namespace quen::test {

/// Somebody who answers as a test says, and remembers what was asked.
class ScriptedSource : public CredentialSource {
public:
    using Answer = std::function<std::optional<CredentialAnswer>(const CredentialQuestion&)>;

    /// One for each question, in order; a no when there are none left.
    void willAnswer(Answer answer);
    /// The same after some time, or at once where nobody wants to know any more.
    void willAnswerSlowly(Answer answer, std::chrono::milliseconds time);
    /// The questions so far.
    std::vector<CredentialQuestion> asked() const;

    std::optional<CredentialAnswer> answer(const CredentialQuestion& question,
                                           std::stop_token stop) override;

private:
    mutable std::mutex mutex_;
    struct Planned {
        Answer answer;
        std::chrono::milliseconds time{0};
    };
    std::deque<Planned> answers_;
    std::vector<CredentialQuestion> asked_;
};

ScriptedSource::Answer password(const std::string& text,
                                CredentialKeep keep = CredentialKeep::process,
                                const std::string& user = Server::user);
ScriptedSource::Answer yes(CredentialKeep keep);
ScriptedSource::Answer no();

/// A server that wants to be signed in to, a person's home that knows nothing of it, and the host
/// with somebody to ask.
class SignInPlace {
public:
    explicit SignInPlace(ServerKind kind);

    const Sandbox& sandbox() const { return sandbox_; }
    Server& server() { return server_; }
    ScriptedSource& source() { return *source_; }
    const CredentialsPtr& credentials() const { return credentials_; }
    std::filesystem::path home() const { return sandbox_.root() / "home"; }
    std::filesystem::path clientsFiles() const { return home() / ".subversion"; }

    /// The host's context for a new act of a person.
    RunContext person() const { return contextWith(credentials_->forPerson()); }
    RunContext contextWith(const CredentialsPtr& credentials) const;

    /// Runs the client there, as an operation does.
    ToolRun svn(const RunContext& context, const Sandbox::Words& words,
                std::stop_token stop = {}) const;
    ToolRun info() const { return svn(person(), {"info", server_.url()}); }

private:
    Sandbox sandbox_;
    Server server_;
    std::shared_ptr<ScriptedSource> source_ = std::make_shared<ScriptedSource>();
    CredentialsPtr credentials_ = Credentials::make(source_);
};

/// The names of all that lies in a directory and below, with what the files hold.
std::map<std::string, std::string> filesBelow(const std::filesystem::path& directory);

} // namespace quen::test
