#include "Host/Credentials/SignInSteps.h"

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
    facts_.put(once_);
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

void SignInSteps::keepWhatWasPromised() {
    if (promised_) {
        questions().keepInPersonsHome(url_, *promised_);
        promised_ = std::nullopt;
    }
}

} // namespace quen
