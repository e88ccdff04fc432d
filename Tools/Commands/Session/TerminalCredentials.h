#pragma once

#include "Host/Credentials/CredentialSource.h"
#include "Tools/Terminal/SecretPrompt.h"

#include <functional>
#include <map>
#include <mutex>
#include <optional>
#include <string>

namespace quen::tools {

/// Who answers when a server asks, as the options of a command say.
struct SignInOptions {
    /// Ask the person at the terminal.
    bool asks = false;
    /// The first password that is asked for is the first line of standard input, and no other is.
    bool readsPassword = false;
    /// Have the client keep passwords that prove right.
    bool keeps = false;
};

/// Asks the person at the terminal, or reads a password from standard input.
class TerminalCredentials : public CredentialSource {
public:
    /// `pause` is called before a question is shown, with true, and after it, with false.
    TerminalCredentials(SignInOptions options, std::function<void(bool)> pause)
        : options_(options), pause_(std::move(pause)) {}

    std::optional<CredentialAnswer> answer(const CredentialQuestion& question,
                                           std::stop_token stop) override;

private:
    std::optional<CredentialAnswer> answerFromInput(const CredentialQuestion& question);
    std::optional<CredentialAnswer> ask(const CredentialQuestion& question,
                                        const std::stop_token& stop);
    std::optional<CredentialAnswer> askPassword(const CredentialQuestion& question,
                                                const std::stop_token& stop);
    std::optional<CredentialAnswer> askTrust(const std::stop_token& stop) const;
    std::optional<CredentialAnswer> askForSecureShell(const CredentialQuestion& question,
                                                      const std::stop_token& stop) const;

    SignInOptions options_;
    std::function<void(bool)> pause_;
    std::mutex mutex_; // one question at a time on one terminal
    PersonAtTerminal person_;
    std::map<std::string, int> refusals_; // by realm
    bool hasReadInput_ = false;
};

/// What a person is shown of a question, one line or several, each ended.
std::string textOfQuestion(const CredentialQuestion& question);

} // namespace quen::tools
