#pragma once

#include "Host/Credentials/AgentConversation.h"
#include "Host/Credentials/ClientHome.h"
#include "Host/Credentials/LocalService.h"
#include "Host/Credentials/Person.h"
#include "Host/Credentials/PrivateDirectory.h"
#include "Host/Credentials/SecureShellQuestions.h"

#include <memory>
#include <mutex>
#include <set>
#include <string>

namespace quen {

/// What one run of the client needs to sign in with what is known: a private directory with a
/// socket for its agent, one for the secure shell's helper, and a home in which the client finds
/// what it may use. All of it goes with this object; no secret is written anywhere.
class SignInAttempt {
public:
    /// Null, with errno, where that cannot be had.
    static std::unique_ptr<SignInAttempt> make(const Person& person, const std::string& place,
                                               SignInFacts facts,
                                               std::unique_ptr<SecureShellQuestions> questions,
                                               std::stop_source stop);
    SignInAttempt(const SignInAttempt&) = delete;
    SignInAttempt& operator=(const SignInAttempt&) = delete;
    ~SignInAttempt();

    /// Changes to the environment of the run.
    EnvironmentChanges environment() const;

    const SignInFacts& facts() const { return facts_; }
    /// How long the run has waited for answers to questions of its own.
    const QuestionTimePtr& questionTime() const { return questions_->time(); }
    bool hasAcceptedHostKey() const { return questions_->hasAcceptedHostKey(); }
    /// The password for the realm, if the client has asked for it.
    std::optional<KeptPassword> usedPassword(const std::string& realm) const;

private:
    SignInAttempt(SignInFacts facts, std::unique_ptr<SecureShellQuestions> questions,
                  std::stop_source stop)
        : facts_(std::move(facts)), questions_(std::move(questions)), stop_(std::move(stop)) {}

    bool prepare(const Person& person, const std::string& place);
    SecretPtr passwordFor(const AgentQuestion& question);

    const SignInFacts facts_;
    const std::unique_ptr<SecureShellQuestions> questions_;
    std::stop_source stop_;
    std::unique_ptr<PrivateDirectory> directory_;
    mutable std::mutex mutex_;
    std::set<std::string> usedEntries_;
    std::unique_ptr<AgentConversation> agent_;
    std::unique_ptr<LocalService> service_; // ends first
};

/// The program that the secure shell asks through; empty where it is not installed.
std::string askpassProgram();

} // namespace quen
