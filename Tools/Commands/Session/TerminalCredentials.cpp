#include "Tools/Commands/Session/TerminalCredentials.h"

#include "Foundation/Lines.h"
#include "Tools/Terminal/SafeText.h"

#include <algorithm>
#include <unistd.h>
#include <utility>

namespace quen::tools {

namespace {

/// As secure shells and clients have it.
constexpr int mostRefusals = 2;

enum class Consent { no, once, always };

/// Everything but a clear yes is a no.
Consent consentIn(const std::string& answer) {
    if (answer == "y" || answer == "yes") {
        return Consent::once;
    }
    return answer == "a" || answer == "always" ? Consent::always : Consent::no;
}

void appendFact(std::string& text, const char* label, const String& fact) {
    if (!fact.isEmpty()) {
        text += "  " + std::string(label) + printable(fact.view()) + "\n";
    }
}

std::string textOfCertificate(const CredentialQuestion& question) {
    const CertificateFacts& facts = question.certificate;
    std::string text =
        "The certificate of " + printable(question.realm.view()) + " cannot be verified:\n";
    for (const String& failure : facts.failures) {
        appendFact(text, "- ", failure);
    }
    appendFact(text, "Host:        ", facts.hostname);
    appendFact(text, "Valid:       ", facts.validity);
    appendFact(text, "Issuer:      ", facts.issuer);
    appendFact(text, "Fingerprint: ", facts.fingerprint);
    return text;
}

/// The secure shell's own lines, without the last one, which asks.
std::string textOfHostKey(std::string_view prompt) {
    std::string text;
    const std::string_view ended = prompt.substr(0, prompt.rfind('\n') + 1);
    for (const std::string_view line : linesOf(ended)) {
        text += printable(line) + "\n";
    }
    return text;
}

} // namespace

std::string textOfQuestion(const CredentialQuestion& question) {
    switch (question.kind) {
    case CredentialKind::password:
        return (question.wasRefused ? "That was not accepted. " : "") + std::string("Sign in to ") +
               printable(question.realm.view()) + "\n";
    case CredentialKind::certificate: return textOfCertificate(question);
    case CredentialKind::hostKey: return textOfHostKey(question.prompt.view());
    case CredentialKind::passphrase: break;
    }
    return question.wasRefused ? "That was not accepted.\n" : "";
}

std::optional<CredentialAnswer> TerminalCredentials::answer(const CredentialQuestion& question,
                                                            std::stop_token stop) {
    const std::lock_guard lock(mutex_);
    if (options_.readsPassword && question.kind == CredentialKind::password) {
        return answerFromInput(question);
    }
    const bool isEnough = question.wasRefused && ++refusals_[question.realm.str()] > mostRefusals;
    if (!options_.asks || !person_.isThere() || isEnough || stop.stop_requested()) {
        return std::nullopt;
    }
    preventCoreFiles();
    pause_(true);
    auto answer = ask(question, stop);
    pause_(false);
    return answer;
}

std::optional<CredentialAnswer>
TerminalCredentials::answerFromInput(const CredentialQuestion& question) {
    // It was meant for the one server that the person had in mind.
    if (std::exchange(hasReadInput_, true) || question.wasRefused) {
        return std::nullopt;
    }
    preventCoreFiles();
    auto line = readSecretLine(STDIN_FILENO);
    if (!line) {
        return std::nullopt;
    }
    return CredentialAnswer{.user = question.user,
                            .secret = std::move(*line),
                            .keep =
                                options_.keeps ? CredentialKeep::client : CredentialKeep::process};
}

std::optional<CredentialAnswer> TerminalCredentials::ask(const CredentialQuestion& question,
                                                         const std::stop_token& stop) {
    person_.show(textOfQuestion(question));
    switch (question.kind) {
    case CredentialKind::password: return askPassword(question, stop);
    case CredentialKind::certificate: return askTrust(stop);
    case CredentialKind::passphrase:
    case CredentialKind::hostKey: break;
    }
    return askForSecureShell(question, stop);
}

std::optional<CredentialAnswer> TerminalCredentials::askPassword(const CredentialQuestion& question,
                                                                 const std::stop_token& stop) {
    CredentialAnswer answer{.user = question.user,
                            .keep =
                                options_.keeps ? CredentialKeep::client : CredentialKeep::process};
    if (!question.isUserFixed) {
        const auto user =
            person_.askLine("User name [" + printable(question.user.view()) + "]: ", stop);
        if (!user) {
            return std::nullopt;
        }
        answer.user = user->empty() ? question.user : String(*user);
    }
    auto secret = person_.askSecret("Password for " + printable(answer.user.view()) + ": ", stop);
    if (!secret) {
        return std::nullopt;
    }
    answer.secret = std::move(*secret);
    return answer;
}

std::optional<CredentialAnswer> TerminalCredentials::askTrust(const std::stop_token& stop) const {
    const auto line = person_.askLine("Accept it? [y]es, this once; [a]lways; [N]o: ", stop);
    switch (line ? consentIn(*line) : Consent::no) {
    case Consent::no: return std::nullopt;
    case Consent::once: return CredentialAnswer{.keep = CredentialKeep::process};
    case Consent::always: break;
    }
    return CredentialAnswer{.keep = CredentialKeep::client};
}

std::optional<CredentialAnswer>
TerminalCredentials::askForSecureShell(const CredentialQuestion& question,
                                       const std::stop_token& stop) const {
    if (question.kind == CredentialKind::passphrase) {
        auto secret = person_.askSecret(printableLine(question.prompt.view()), stop);
        return secret ? std::optional(CredentialAnswer{.secret = std::move(*secret)})
                      : std::nullopt;
    }
    const auto line =
        person_.askLine("Accept it? ssh keeps it once it is accepted. [a]lways, [N]o: ", stop);
    return line && consentIn(*line) != Consent::no ? std::optional(CredentialAnswer())
                                                   : std::nullopt;
}

} // namespace quen::tools
