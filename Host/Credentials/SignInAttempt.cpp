#include "Host/Credentials/SignInAttempt.h"

#include "Host/OwnLibrary.h"

#include <algorithm>
#include <cerrno>
#include <filesystem>
#include <unistd.h>
#include <vector>

namespace quen {

namespace {

namespace fs = std::filesystem;

} // namespace

std::string askpassProgram() {
    const fs::path program = directoryOfLibraries() / QUEN_ASKPASS;
    return ::access(program.c_str(), X_OK) == 0 ? program.string() : std::string();
}

std::unique_ptr<SignInAttempt> SignInAttempt::make(const Person& person, const std::string& place,
                                                   SignInFacts facts,
                                                   std::unique_ptr<SecureShellQuestions> questions,
                                                   std::stop_source stop) {
    std::unique_ptr<SignInAttempt> attempt(
        new SignInAttempt(std::move(facts), std::move(questions), std::move(stop)));
    return attempt->prepare(person, place) ? std::move(attempt) : nullptr;
}

SignInAttempt::~SignInAttempt() {
    // A question that is still open is about a run that has ended.
    stop_.request_stop();
}

bool SignInAttempt::prepare(const Person& person, const std::string& place) {
    directory_ = PrivateDirectory::make(place);
    if (directory_ == nullptr) {
        return false;
    }
    std::vector<LocalService::Endpoint> endpoints{
        {directory_->path("ask"), [this](int connection) { questions_->hold(connection); }}};
    if (!facts_.isEmpty()) {
        errno = makeHome(directory_->path("home"), person.home, facts_);
        if (errno != 0) {
            return false;
        }
        const std::string socket = directory_->path("agent");
        agent_ = std::make_unique<AgentConversation>(
            socket, [this](const AgentQuestion& question) { return passwordFor(question); },
            person.agents);
        endpoints.push_back({socket, [this](int connection) { agent_->hold(connection); }});
    }
    service_ = LocalService::start(std::move(endpoints));
    return service_ != nullptr;
}

EnvironmentChanges SignInAttempt::environment() const {
    EnvironmentChanges changes;
    if (const std::string program = askpassProgram(); !program.empty()) {
        changes.emplace_back("SSH_ASKPASS", program);
        changes.emplace_back("SSH_ASKPASS_REQUIRE", "force");
        changes.emplace_back("QUEN_ASKPASS_SOCKET", directory_->path("ask"));
    }
    if (!facts_.isEmpty()) {
        changes.emplace_back("HOME", directory_->path("home"));
        changes.emplace_back("GPG_AGENT_INFO", directory_->path("agent") + ":0:1");
        // The client does not turn to an agent without them.
        changes.emplace_back("GPG_TTY", "/dev/null");
        changes.emplace_back("TERM", "dumb");
    }
    return changes;
}

SecretPtr SignInAttempt::passwordFor(const AgentQuestion& question) {
    const auto found = std::find_if(
        facts_.passwords.begin(), facts_.passwords.end(),
        [&](const KeptPassword& each) { return entryNameOf(each.realm) == question.entry; });
    // Under another name the client would send it to where it was not meant for.
    if (found == facts_.passwords.end() || !question.isAbout(found->user)) {
        return nullptr;
    }
    const std::lock_guard lock(mutex_);
    usedEntries_.insert(question.entry);
    return found->secret;
}

std::optional<KeptPassword> SignInAttempt::usedPassword(const std::string& realm) const {
    const std::lock_guard lock(mutex_);
    const auto found = std::find_if(facts_.passwords.begin(), facts_.passwords.end(),
                                    [&](const KeptPassword& each) { return each.realm == realm; });
    const bool wasUsed =
        found != facts_.passwords.end() && usedEntries_.contains(entryNameOf(realm));
    return wasUsed ? std::optional(*found) : std::nullopt;
}

} // namespace quen
