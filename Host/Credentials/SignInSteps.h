#pragma once

#include "Host/Credentials/CredentialKeeper.h"
#include "Host/Credentials/Credentials.h"
#include "Host/Credentials/ServerQuestions.h"
#include "Host/Credentials/SignInAttempt.h"
#include "Host/Credentials/SignInFailure.h"
#include "Host/Credentials/SignInProblem.h"
#include "Host/ToolRunner.h"

#include <functional>
#include <memory>
#include <optional>
#include <stop_token>
#include <string>

namespace quen {

/// The way of one run of the client to where it is let in, or to a no: prepare, run, look, ask, and
/// again.
class SignInSteps {
public:
    SignInSteps(const ToolInvocation& invocation, CredentialsPtr credentials, std::string place,
                std::stop_token stop);

    /// What the next run needs; null, with errno, where it cannot be had.
    std::unique_ptr<SignInAttempt> prepare();

    /// After a run. Asks where an answer is wanted; true where there is one now.
    bool isWorthAnotherRun(const ToolRun& run, const SignInAttempt& attempt);

    /// Why the last run was not let in; nothing where it was, or did not get that far.
    const std::optional<SignInFailure>& failure() const { return failure_; }

private:
    CredentialKeeper::Turn takeTurn(const std::string& server);
    bool isExternalHad(const SignInAttempt& attempt);
    using PersonsAnswer = std::function<bool(const ClientPrompt& prompt, CredentialTurn& turn)>;
    /// Unless another run has had an answer meanwhile, learns what the server asks, and where that
    /// is what is wanted has `ask` get the answer.
    bool isAnswerHad(ClientPrompt::Kind wanted, const PersonsAnswer& ask);
    bool isPasswordHad(const SignInAttempt& attempt);
    bool isPasswordGiven(const ClientPrompt& prompt, const SignInAttempt& attempt,
                         CredentialTurn& turn);
    bool isCertificateTrusted();
    bool askForPassword(const ClientPrompt& prompt, const std::optional<KeptPassword>& refused,
                        CredentialTurn& turn);
    bool askForTrust(const ClientPrompt& prompt, CredentialTurn& turn);
    bool mayAskAbout(const std::string& realm) const;
    void keepWhatWasPromised();
    void findUrl(std::string_view complaint);
    void fail(TaskFailure failure, const std::string& user = {});
    void findSecureShellsReason();
    ServerQuestions questions() const;

    const ToolInvocation& invocation_;
    CredentialsPtr credentials_;
    CredentialKeeper& keeper_;
    std::string place_;
    std::stop_token stop_;

    std::string user_; // that the request names
    std::string url_;
    CredentialKeeper::Number since_ = 0;
    SignInFacts facts_;                    // of the last run
    SignInFacts once_;                     // for this operation alone
    std::optional<KeptPassword> promised_; // to be kept by the client, once it has proved right
    String lastFingerprint_;
    std::optional<SignInFailure> failure_;
};

} // namespace quen
