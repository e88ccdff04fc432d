#include "Tests/Servers/SignInFixture.h"

#include <algorithm>
#include <fstream>
#include <sstream>
#include <utility>

namespace quen::test {

void ScriptedSource::willAnswer(Answer answer) {
    const std::lock_guard lock(mutex_);
    answers_.push_back({std::move(answer)});
}

void ScriptedSource::willAnswerSlowly(Answer answer, std::chrono::milliseconds time) {
    const std::lock_guard lock(mutex_);
    answers_.push_back({std::move(answer), time});
}

std::vector<CredentialQuestion> ScriptedSource::asked() const {
    const std::lock_guard lock(mutex_);
    return asked_;
}

std::optional<CredentialAnswer> ScriptedSource::answer(const CredentialQuestion& question,
                                                       std::stop_token stop) {
    Planned next;
    {
        std::unique_lock lock(mutex_);
        asked_.push_back(question);
        if (answers_.empty()) {
            return std::nullopt;
        }
        next = std::move(answers_.front());
        answers_.pop_front();
        std::condition_variable_any never;
        never.wait_for(lock, stop, next.time, [] { return false; });
    }
    return next.answer(question);
}

ScriptedSource::Answer password(const std::string& text, CredentialKeep keep,
                                const std::string& user) {
    return [=](const CredentialQuestion& /*question*/) {
        return CredentialAnswer{.user = user, .secret = Secret(text), .keep = keep};
    };
}

ScriptedSource::Answer yes(CredentialKeep keep) {
    return [=](const CredentialQuestion& /*question*/) { return CredentialAnswer{.keep = keep}; };
}

ScriptedSource::Answer no() {
    return [](const CredentialQuestion& /*question*/) { return std::nullopt; };
}

SignInPlace::SignInPlace(ServerKind kind) : server_(sandbox_, kind) {
    if (kind != ServerKind::sshd) {
        server_.forgetPassword();
    }
}

RunContext SignInPlace::contextWith(const CredentialsPtr& credentials) const {
    EnvironmentChanges changes{{"HOME", home().string()},
                               {"SSH_AUTH_SOCK", String()},
                               {"XDG_RUNTIME_DIR", String()},
                               {"GPG_AGENT_INFO", String()},
                               {"DBUS_SESSION_BUS_ADDRESS", String()}};
    for (const std::string& variable : server_.variables()) {
        const std::size_t end = variable.find('=');
        changes.emplace_back(variable.substr(0, end), variable.substr(end + 1));
    }
    return RunContext()
        .withEnvironment(changes)
        .withWorkingDirectory(sandbox_.root().string())
        .withCredentials(credentials);
}

ToolRun SignInPlace::svn(const RunContext& context, const Sandbox::Words& words,
                         std::stop_token stop) const {
    const RunContext::Scope scope(context);
    return context.toolRunner()->run({.operationClass = "SignInPlace",
                                      .launchPath = "/usr/bin/svn",
                                      .arguments = {words.begin(), words.end()},
                                      .environment = context.environment(),
                                      .workingDirectory = context.workingDirectory(),
                                      .limits = context.limits()},
                                     std::move(stop));
}

std::map<std::string, std::string> filesBelow(const std::filesystem::path& directory) {
    std::map<std::string, std::string> files;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(directory)) {
        std::ostringstream text;
        if (entry.is_regular_file()) {
            text << std::ifstream(entry.path(), std::ios::binary).rdbuf();
        }
        files[entry.path().string()] = text.str();
    }
    return files;
}

} // namespace quen::test
