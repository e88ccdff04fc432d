// What is asked of the person on the way: a password, and whether a certificate is to be trusted.

#include "Foundation/Format.h"
#include "Host/Credentials/SignInSteps.h"

#include <algorithm>
#include <utility>

namespace quen {

namespace {

bool isAmong(const std::vector<KeptPassword>& passwords, const String& realm) {
    return std::any_of(passwords.begin(), passwords.end(),
                       [&](const KeptPassword& each) { return realm.view() == each.realm; });
}

} // namespace

bool SignInSteps::mayAskAbout(const std::string& realm) const {
    return credentials_->mayAsk() && !keeper_.wasRefusedSince(realm, credentials_->act());
}

CredentialKeeper::Turn SignInSteps::takeTurn(const std::string& server) {
    SignInFacts waited;
    const auto turn = keeper_.takeTurn(server, since_, waited, stop_);
    once_.put(waited);
    return turn;
}

bool SignInSteps::isAnswerHad(ClientPrompt::Kind wanted, const PersonsAnswer& ask) {
    const std::string server = serverOf(url_);
    if (const auto turn = takeTurn(server); turn != CredentialKeeper::Turn::mine) {
        return turn == CredentialKeeper::Turn::answered;
    }
    CredentialTurn turn(keeper_, server);
    const auto prompt = questions().promptAt(url_);
    return prompt && prompt->kind == wanted && ask(*prompt, turn);
}

bool SignInSteps::isPasswordHad(const SignInAttempt& attempt) {
    const bool canChange = credentials_->mayAsk() || !attempt.facts().passwords.empty();
    return canChange && isAnswerHad(ClientPrompt::Kind::password,
                                    [&](const ClientPrompt& prompt, CredentialTurn& turn) {
                                        return isPasswordGiven(prompt, attempt, turn);
                                    });
}

bool SignInSteps::isPasswordGiven(const ClientPrompt& prompt, const SignInAttempt& attempt,
                                  CredentialTurn& turn) {
    if (!isRealmOf(prompt.realm.view(), url_)) {
        failure_->nextStep =
            formatText("%@ asks in a name that is not its own, so nobody was asked "
                       "for a password. Ask whoever runs it.",
                       {String(serverOf(url_))});
        return false;
    }
    const auto refused = attempt.usedPassword(prompt.realm.str());
    if (refused) {
        keeper_.forget(refused->realm, refused->number);
        fail(TaskFailure::wrongPassword, refused->user);
    } else if (isAmong(facts_.passwords, prompt.realm)) {
        return false; // the client does not take what is known, and would not take more
    }
    return mayAskAbout(prompt.realm.str()) && askForPassword(prompt, refused, turn);
}

bool SignInSteps::askForPassword(const ClientPrompt& prompt,
                                 const std::optional<KeptPassword>& refused, CredentialTurn& turn) {
    const CredentialQuestion question{.kind = CredentialKind::password,
                                      .realm = prompt.realm,
                                      .url = url_,
                                      .user = refused ? String(refused->user) : prompt.user,
                                      .isUserFixed = !user_.empty(),
                                      .wasRefused = refused.has_value()};
    auto answer = credentials_->source().answer(question, stop_);
    if (stop_.stop_requested()) {
        return false;
    }
    if (!answer) {
        keeper_.noteRefusal(prompt.realm.str());
        return false;
    }
    const String user = answer->user.isEmpty() ? question.user : answer->user;
    if (question.isUserFixed && user != question.user) {
        keeper_.noteRefusal(prompt.realm.str());
        failure_->nextStep = formatText("The request signs in as %@, so the password of %@ cannot "
                                        "be used. Name the right user in the request.",
                                        {question.user, user});
        return false;
    }
    KeptPassword password{.realm = prompt.realm.str(),
                          .user = user.str(),
                          .secret = std::make_shared<const Secret>(std::move(answer->secret))};
    promised_ = std::nullopt;
    if (answer->keep == CredentialKeep::once) {
        password.number = keeper_.noteAnswer();
        once_.put({{password}, {}});
        turn.setAnswered(password.number, {{password}, {}});
        return true;
    }
    if (answer->keep == CredentialKeep::client) {
        promised_ = password;
    }
    turn.setAnswered(keeper_.keep(std::move(password)));
    return true;
}

bool SignInSteps::isCertificateTrusted() {
    return credentials_->mayAsk() &&
           isAnswerHad(ClientPrompt::Kind::certificate,
                       [&](const ClientPrompt& prompt, CredentialTurn& turn) {
                           return mayAskAbout(serverOf(url_)) &&
                                  prompt.certificate.fingerprint != lastFingerprint_ &&
                                  askForTrust(prompt, turn);
                       });
}

bool SignInSteps::askForTrust(const ClientPrompt& prompt, CredentialTurn& turn) {
    const CredentialQuestion question{.kind = CredentialKind::certificate,
                                      .realm = serverOf(url_),
                                      .url = url_,
                                      .certificate = prompt.certificate};
    const auto answer = credentials_->source().answer(question, stop_);
    if (stop_.stop_requested()) {
        return false;
    }
    if (!answer) {
        keeper_.noteRefusal(serverOf(url_));
        return false;
    }
    lastFingerprint_ = prompt.certificate.fingerprint;
    const ServerQuestions asking = questions();
    const auto certificate = asking.trust(url_, prompt.certificate.fingerprint);
    if (!certificate) {
        return false;
    }
    if (answer->keep == CredentialKeep::once) {
        once_.put({{}, {*certificate}});
        turn.setAnswered(keeper_.noteAnswer(), {{}, {*certificate}});
        return true;
    }
    if (answer->keep == CredentialKeep::client) {
        asking.keepInPersonsHome(*certificate);
    }
    turn.setAnswered(keeper_.keep(*certificate));
    return true;
}

} // namespace quen
