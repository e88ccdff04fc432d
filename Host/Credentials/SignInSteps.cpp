#include "Host/Credentials/SignInSteps.h"

#include "Foundation/Format.h"
#include "Foundation/PegPath.h"

#include <algorithm>
#include <utility>

namespace quen {

namespace {

/// What the request says after `--username`.
std::string userOf(const StringArray& arguments) {
    const auto option = std::find(arguments.begin(), arguments.end(), String("--username"));
    return option == arguments.end() || option + 1 == arguments.end() ? std::string()
                                                                      : (option + 1)->str();
}

/// The last argument that is a URL, or else one of the last that lies in a working copy; empty
/// where there is none.
std::string urlAmong(const ToolInvocation& invocation, const ServerQuestions& questions) {
    const StringArray& arguments = invocation.arguments;
    const auto url = std::find_if(arguments.rbegin(), arguments.rend(), [](const String& each) {
        return each.contains("://") && !each.contains(" ");
    });
    if (url != arguments.rend()) {
        return std::string(withoutPeg(url->view()));
    }
    constexpr std::size_t most = 3; // each costs a run of the client
    for (std::size_t i = arguments.size(); i > 1 && i + most > arguments.size(); --i) {
        const String& each = arguments[i - 1];
        const std::string found =
            each.hasPrefix("-") ? std::string() : questions.urlOfWorkingCopy(each.str());
        if (!found.empty()) {
            return found;
        }
    }
    return questions.urlOfWorkingCopy(".");
}

bool isAmong(const std::vector<KeptPassword>& passwords, const String& realm) {
    return std::any_of(passwords.begin(), passwords.end(),
                       [&](const KeptPassword& each) { return realm.view() == each.realm; });
}

void put(SignInFacts& facts, const SignInFacts& more) {
    for (const KeptPassword& password : more.passwords) {
        std::erase_if(facts.passwords,
                      [&](const KeptPassword& each) { return each.realm == password.realm; });
        facts.passwords.push_back(password);
    }
    for (const TrustedCertificate& certificate : more.certificates) {
        std::erase_if(facts.certificates, [&](const TrustedCertificate& each) {
            return each.name == certificate.name;
        });
        facts.certificates.push_back(certificate);
    }
}

TaskFailure failureOf(SignInProblem problem) {
    switch (problem) {
    case SignInProblem::noPassword: return TaskFailure::noPassword;
    case SignInProblem::wrongPassword: return TaskFailure::wrongPassword;
    case SignInProblem::noPermission: return TaskFailure::noPermission;
    case SignInProblem::certificate: return TaskFailure::untrustedCertificate;
    case SignInProblem::keyRefused: return TaskFailure::keyRefused;
    case SignInProblem::hostKeyUnknown: return TaskFailure::hostKeyUnknown;
    case SignInProblem::hostKeyChanged: return TaskFailure::hostKeyChanged;
    case SignInProblem::secureShell:
    case SignInProblem::external:
    case SignInProblem::unreachable: return TaskFailure::offline;
    case SignInProblem::none: break;
    }
    return TaskFailure::other;
}

} // namespace

SignInSteps::SignInSteps(const ToolInvocation& invocation, CredentialsPtr credentials,
                         std::string place, std::stop_token stop)
    : invocation_(invocation), credentials_(std::move(credentials)),
      keeper_(credentials_->keeper()), place_(std::move(place)), stop_(std::move(stop)),
      user_(userOf(invocation.arguments)) {}

ServerQuestions SignInSteps::questions() const {
    return {invocation_, user_, place_, facts_, stop_};
}

std::unique_ptr<SignInAttempt> SignInSteps::prepare() {
    CredentialKeeper::Snapshot snapshot = keeper_.snapshot(user_);
    since_ = snapshot.number;
    facts_ = std::move(snapshot.facts);
    put(facts_, once_);
    failure_ = std::nullopt;
    std::stop_source stop;
    auto questions =
        std::make_unique<SecureShellQuestions>(credentials_, std::string(), stop.get_token());
    return SignInAttempt::make(Person::of(invocation_.environment), place_, facts_,
                               std::move(questions), stop);
}

bool SignInSteps::isWorthAnotherRun(const ToolRun& run, const SignInAttempt& attempt) {
    if (run.end != RunEnd::ended || stop_.stop_requested()) {
        return false;
    }
    if (run.exitStatus == 0) {
        keepWhatWasPromised();
        return false;
    }
    const std::string_view complaint = run.errors->bytes();
    const SignInProblem problem = signInProblemOf(complaint);
    if (problem == SignInProblem::none) {
        return false;
    }
    findUrl(complaint);
    fail(failureOf(problem), user_);
    switch (problem) {
    case SignInProblem::noPassword:
    case SignInProblem::wrongPassword: return isPasswordHad(attempt);
    case SignInProblem::certificate: return isCertificateTrusted();
    case SignInProblem::secureShell: findSecureShellsReason(); return false;
    case SignInProblem::external: return isExternalHad(attempt);
    case SignInProblem::unreachable:
        failure_->nextStep = "Check the spelling of the URL, and that the server can be reached.";
        break;
    case SignInProblem::none:
    case SignInProblem::noPermission:
    case SignInProblem::keyRefused:
    case SignInProblem::hostKeyUnknown:
    case SignInProblem::hostKeyChanged: break;
    }
    return false;
}

void SignInSteps::findUrl(std::string_view complaint) {
    url_ = urlInComplaint(complaint);
    if (url_.empty()) {
        url_ = urlAmong(invocation_, questions());
    }
}

void SignInSteps::fail(TaskFailure failure, const std::string& user) {
    failure_ = signInFailure(failure, serverOf(url_), user);
}

void SignInSteps::findSecureShellsReason() {
    const std::string words = questions().secureShellsWords(url_);
    fail(failureOf(secureShellProblemOf(words)));
    failure_->clientText = words;
}

bool SignInSteps::mayAskAbout(const std::string& realm) const {
    return credentials_->mayAsk() && !keeper_.wasRefusedSince(realm, credentials_->act());
}

CredentialKeeper::Turn SignInSteps::takeTurn(const std::string& server) {
    SignInFacts waited;
    const auto turn = keeper_.takeTurn(server, since_, waited, stop_);
    put(once_, waited);
    return turn;
}

/// Of an external the client says no more than that it could not get there.
bool SignInSteps::isExternalHad(const SignInAttempt& attempt) {
    const auto prompt = questions().promptAt(url_);
    if (prompt && prompt->kind == ClientPrompt::Kind::password) {
        fail(TaskFailure::noPassword, user_);
        return isPasswordHad(attempt);
    }
    if (prompt && prompt->kind == ClientPrompt::Kind::certificate) {
        fail(TaskFailure::untrustedCertificate);
        return isCertificateTrusted();
    }
    return false;
}

bool SignInSteps::isPasswordHad(const SignInAttempt& attempt) {
    if (!credentials_->mayAsk() && attempt.facts().passwords.empty()) {
        return false;
    }
    const std::string server = serverOf(url_);
    if (const auto turn = takeTurn(server); turn != CredentialKeeper::Turn::mine) {
        return turn == CredentialKeeper::Turn::answered;
    }
    CredentialTurn turn(keeper_, server);
    const auto prompt = questions().promptAt(url_);
    if (!prompt || prompt->kind != ClientPrompt::Kind::password) {
        return false;
    }
    if (!isRealmOf(prompt->realm.view(), url_)) {
        failure_->nextStep =
            formatText("%@ asks in a name that is not its own, so nobody was asked "
                       "for a password. Ask whoever runs it.",
                       {String(server)});
        return false;
    }
    const auto refused = attempt.usedPassword(prompt->realm.str());
    if (refused) {
        keeper_.forget(refused->realm, refused->number);
        fail(TaskFailure::wrongPassword, refused->user);
    } else if (isAmong(facts_.passwords, prompt->realm)) {
        return false; // the client does not take what is known, and would not take more
    }
    return mayAskAbout(prompt->realm.str()) && askForPassword(*prompt, refused, turn);
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
        put(once_, {{password}, {}});
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
    if (!credentials_->mayAsk()) {
        return false;
    }
    const std::string server = serverOf(url_);
    if (const auto turn = takeTurn(server); turn != CredentialKeeper::Turn::mine) {
        return turn == CredentialKeeper::Turn::answered;
    }
    CredentialTurn turn(keeper_, server);
    const auto prompt = questions().promptAt(url_);
    return prompt && prompt->kind == ClientPrompt::Kind::certificate && mayAskAbout(server) &&
           prompt->certificate.fingerprint != lastFingerprint_ && askForTrust(*prompt, turn);
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
        put(once_, {{}, {*certificate}});
        turn.setAnswered(keeper_.noteAnswer(), {{}, {*certificate}});
        return true;
    }
    if (answer->keep == CredentialKeep::client) {
        asking.keepInPersonsHome(*certificate);
    }
    turn.setAnswered(keeper_.keep(*certificate));
    return true;
}

void SignInSteps::keepWhatWasPromised() {
    if (promised_) {
        questions().keepInPersonsHome(url_, *promised_);
        promised_ = std::nullopt;
    }
}

} // namespace quen
