#include "Tools/Server/SignIn/ClientCredentials.h"

#include "Tools/Console/JsonOutput.h"

#include <string>
#include <utility>

namespace quen::tools::server {

namespace {

/// The member's text; nullptr where there is none.
std::string* textIn(Json& object, const char* name) {
    const auto found = object.find(name);
    return found == object.end() ? nullptr : found->get_ptr<std::string*>();
}

std::optional<CredentialKeep> keepIn(Json& answer) {
    const std::string* const word = textIn(answer, "keep");
    if (word == nullptr) {
        return answer.contains("keep") ? std::nullopt : std::optional(CredentialKeep::process);
    }
    if (*word == "once") {
        return CredentialKeep::once;
    }
    if (*word == "client") {
        return CredentialKeep::client;
    }
    return *word == "process" ? std::optional(CredentialKeep::process) : std::nullopt;
}

OrderedJson passwordQuestion(const CredentialQuestion& question) {
    return {{"realm", toJson(question.realm)},
            {"url", toJson(question.url)},
            {"user", toJson(question.user)},
            {"reason", question.wasRefused ? "refused" : "first"}};
}

OrderedJson certificateQuestion(const CredentialQuestion& question) {
    const CertificateFacts& facts = question.certificate;
    OrderedJson failures = OrderedJson::array();
    for (const String& failure : facts.failures) {
        failures.push_back(toJson(failure));
    }
    return {{"url", toJson(question.url)},
            {"hostname", toJson(facts.hostname)},
            {"validity", toJson(facts.validity)},
            {"issuer", toJson(facts.issuer)},
            {"fingerprint", toJson(facts.fingerprint)},
            {"failures", std::move(failures)}};
}

} // namespace

std::optional<CredentialAnswer> ClientCredentials::answer(const CredentialQuestion& question,
                                                          std::stop_token stop) {
    preventCoreFiles();
    switch (question.kind) {
    case CredentialKind::password: return askPassword(question, stop);
    case CredentialKind::certificate: return askTrust(question, stop);
    case CredentialKind::passphrase:
    case CredentialKind::hostKey: break;
    }
    return askForSecureShell(question, stop);
}

std::optional<CredentialAnswer> ClientCredentials::askPassword(const CredentialQuestion& question,
                                                               const std::stop_token& stop) {
    auto answer = questions_.ask("credentials/get", passwordQuestion(question), stop);
    if (!answer || answer->is_null()) {
        return std::nullopt;
    }
    std::string* const password = answer->is_object() ? textIn(*answer, "password") : nullptr;
    if (password == nullptr) {
        log_.say(WindowLog::error, "credentials/get: the answer must be null or an object with a "
                                   "password, so nobody signs in");
        return std::nullopt;
    }
    CredentialAnswer given{.secret = Secret::takenFrom(*password)};
    const auto keep = keepIn(*answer);
    if (!keep) {
        log_.say(WindowLog::error, "credentials/get: keep must be \"once\", \"process\" or "
                                   "\"client\", so nobody signs in");
        return std::nullopt;
    }
    given.keep = *keep;
    if (const std::string* const user = textIn(*answer, "user"); user != nullptr) {
        given.user = String(*user);
    }
    return given;
}

std::optional<CredentialAnswer> ClientCredentials::askTrust(const CredentialQuestion& question,
                                                            const std::stop_token& stop) {
    const auto answer = questions_.ask("certificate/confirm", certificateQuestion(question), stop);
    const std::string word = answer && answer->is_string() ? answer->get<std::string>() : "";
    if (word == "always") {
        return CredentialAnswer{.keep = CredentialKeep::client};
    }
    if (word == "once") {
        return CredentialAnswer{.keep = CredentialKeep::process};
    }
    if (answer && word != "reject") {
        log_.say(WindowLog::error, "certificate/confirm: the answer must be \"reject\", \"once\" "
                                   "or \"always\", so the certificate is not accepted");
    }
    return std::nullopt;
}

std::optional<CredentialAnswer>
ClientCredentials::askForSecureShell(const CredentialQuestion& question,
                                     const std::stop_token& stop) {
    const bool isSecret = question.kind == CredentialKind::passphrase;
    auto answer = questions_.ask("ssh/ask",
                                 {{"prompt", toJson(question.prompt)}, {"secret", isSecret}}, stop);
    if (!answer || answer->is_null()) {
        return std::nullopt;
    }
    auto* const text = answer->get_ptr<std::string*>();
    if (text == nullptr) {
        log_.say(WindowLog::error, "ssh/ask: the answer must be null or a text");
        return std::nullopt;
    }
    if (!isSecret && (text->empty() || *text == "no")) {
        return std::nullopt;
    }
    return CredentialAnswer{.secret = Secret::takenFrom(*text)};
}

} // namespace quen::tools::server
