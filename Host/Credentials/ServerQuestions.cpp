#include "Host/Credentials/ServerQuestions.h"

#include "Foundation/PegPath.h"
#include "Host/Credentials/ClientTerminal.h"
#include "Host/Credentials/PrivateDirectory.h"

#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <filesystem>
#include <system_error>
#include <unistd.h>
#include <utility>

namespace quen {

namespace {

/// How long a server may keep the client waiting for its next word.
constexpr std::chrono::seconds patience{60};

bool isPrompt(std::string_view shown) {
    return promptIn(shown).has_value();
}

/// A secure shell's command that speaks, and never asks.
std::string talkativeShell(std::string command) {
    if (const std::size_t at = command.find(" -q"); at != std::string::npos) {
        command.erase(at, 3);
    }
    const std::string program = command.substr(0, command.find(' '));
    const bool isKnown = program == "ssh" || program.ends_with("/ssh");
    return isKnown ? command + " -o BatchMode=yes -o LogLevel=ERROR" : command;
}

} // namespace

ServerQuestions::ServerQuestions(const ToolInvocation& failed, std::string user, std::string place,
                                 const SignInFacts& facts, std::stop_token stop)
    : launchPath_(failed.launchPath), environment_(failed.environment),
      workingDirectory_(failed.workingDirectory), person_(Person::of(failed.environment)),
      user_(std::move(user)), place_(std::move(place)), facts_(facts), stop_(std::move(stop)) {
    environment_.emplace_back("LC_ALL", "C.UTF-8");
    environment_.emplace_back("LANGUAGE", String());
}

ProcessInvocation ServerQuestions::client(StringArray arguments) const {
    ProcessInvocation invocation;
    invocation.launchPath = launchPath_;
    invocation.arguments = std::move(arguments);
    invocation.environment = environment_;
    invocation.workingDirectory = workingDirectory_;
    return invocation;
}

std::optional<ClientPrompt> ServerQuestions::promptOf(StringArray command) const {
    const auto directory = PrivateDirectory::make(place_);
    if (directory == nullptr) {
        return std::nullopt;
    }
    const std::string configuration = directory->path("configuration");
    if (makeConfigDirectoryThatAsks(configuration, person_.configDirectory(),
                                    {{}, facts_.certificates}) != 0) {
        return std::nullopt;
    }
    for (const char* const each : {"--config-dir", configuration.c_str(), "--config-option",
                                   "config:auth:password-stores="}) {
        command.push_back(each);
    }
    if (!user_.empty()) {
        command.push_back("--username");
        command.push_back(user_);
    }
    const auto terminal = ClientTerminal::start(client(std::move(command)));
    return terminal != nullptr && terminal->readUntil(isPrompt, patience, stop_)
               ? promptIn(terminal->shown())
               : std::nullopt;
}

std::optional<ClientPrompt> ServerQuestions::promptAt(const std::string& url) const {
    // Here and below: an empty revision ends the name, also where the client takes a `%40` for an
    // `@`.
    if (auto prompt = promptOf({"info", withPeg(url, "")})) {
        return prompt;
    }
    // Everybody may read there. A directory below one that is not there can never be made, and the
    // question comes before the server says so.
    return promptOf({"mkdir", "-m", "", url + "/.quen/none"});
}

std::optional<TrustedCertificate> ServerQuestions::trust(const std::string& url,
                                                         const String& fingerprint) const {
    const auto directory = PrivateDirectory::make(place_);
    if (directory == nullptr) {
        return std::nullopt;
    }
    const std::string configuration = directory->path("configuration");
    if (makeConfigDirectoryThatAsks(configuration, person_.configDirectory(), {}) != 0) {
        return std::nullopt;
    }
    const auto terminal = ClientTerminal::start(client(
        {"info", withPeg(url, ""), "--config-dir", configuration, "--config-option",
         "config:auth:password-stores=", "--config-option", "config:auth:store-auth-creds=yes",
         "--config-option", "servers:global:store-auth-creds=yes"}));
    if (terminal == nullptr || !terminal->readUntil(isPrompt, patience, stop_)) {
        return std::nullopt;
    }
    const auto prompt = promptIn(terminal->shown());
    if (prompt->kind != ClientPrompt::Kind::certificate || !prompt->canBeKept ||
        prompt->certificate.fingerprint != fingerprint) {
        return std::nullopt;
    }
    terminal->type("p\n");
    // It has written the entry by the time that it asks something else or ends.
    const std::size_t before = terminal->shown().size();
    terminal->readUntil([before](std::string_view shown) { return isPrompt(shown.substr(before)); },
                        patience, stop_);
    const auto entries = trustedCertificatesIn(configuration);
    return entries.empty() ? std::nullopt : std::optional(entries.front());
}

void ServerQuestions::keepInPersonsHome(const std::string& url,
                                        const KeptPassword& password) const {
    Secret line(password.secret->view());
    line.append('\n');
    runWithInput(client({"info", withPeg(url, ""), "--username", password.user,
                         "--password-from-stdin", "--non-interactive"}),
                 line.view(), patience, stop_);
}

bool ServerQuestions::keepInPersonsHome(const TrustedCertificate& certificate) const {
    namespace fs = std::filesystem;
    const fs::path directory = fs::path(person_.configDirectory()) / "auth/svn.ssl.server";
    std::error_code error;
    if (person_.home.empty()) {
        return false;
    }
    fs::create_directories(directory, error);
    std::string path = (directory / ".quen-XXXXXX").string();
    const FileDescriptor file(::mkostemp(path.data(), O_CLOEXEC));
    const bool isWritten = file.isOpen() && writeAll(file.number(), certificate.entry) &&
                           ::fsync(file.number()) == 0 &&
                           std::rename(path.c_str(), (directory / certificate.name).c_str()) == 0;
    if (file.isOpen() && !isWritten) {
        ::unlink(path.c_str());
    }
    return isWritten;
}

std::string ServerQuestions::outputOf(const ProcessInvocation& invocation) const {
    const auto terminal = ClientTerminal::start(invocation);
    if (terminal == nullptr) {
        return {};
    }
    terminal->readUntil([](std::string_view /*shown*/) { return false; }, patience, stop_);
    return std::string(terminal->shown());
}

std::string ServerQuestions::secureShellsWords(const std::string& url) const {
    ProcessInvocation invocation = client({"info", withPeg(url, ""), "--non-interactive"});
    const std::string shell = variableOf(environment_, "SVN_SSH").value_or("ssh");
    invocation.environment.emplace_back("SVN_SSH", talkativeShell(shell));
    invocation.environment.emplace_back("SSH_ASKPASS_REQUIRE", "never");
    return outputOf(invocation);
}

std::string ServerQuestions::urlOfWorkingCopy(const std::string& path) const {
    const std::string url =
        outputOf(client({"info", "--show-item", "url", "--no-newline", "--non-interactive", path}));
    const bool isUrl = url.find("://") != std::string::npos && url.find(' ') == std::string::npos;
    return isUrl ? url : std::string();
}

} // namespace quen
