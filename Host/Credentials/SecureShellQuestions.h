#pragma once

#include "Host/Credentials/CredentialKeeper.h"
#include "Host/Credentials/Credentials.h"
#include "Host/Credentials/QuestionTime.h"

#include <atomic>
#include <map>
#include <mutex>
#include <stop_token>
#include <string>
#include <utility>

namespace quen {

/// Answers what the secure shell asks during one run, by way of the helper program that it starts.
///
/// The helper says the number of the process that started it and the question, each as a line, the
/// question with as many lines as it has, and closes its side. It hears `+` and the answer, or `-`.
///
/// Threads: any.
class SecureShellQuestions {
public:
    SecureShellQuestions(CredentialsPtr credentials, std::string url, std::stop_token stop)
        : credentials_(std::move(credentials)), url_(std::move(url)), stop_(std::move(stop)) {}

    void hold(int connection);

    /// How long the run has waited for answers.
    const QuestionTimePtr& time() const { return time_; }
    /// Whether a host's key was accepted.
    bool hasAcceptedHostKey() const { return hasAcceptedHostKey_; }

    /// The answer to a question of the process `asker`, which asks the same again where an answer
    /// did not do. Null for none.
    SecretPtr answerTo(const std::string& prompt, const std::string& asker);

private:
    enum class Outcome { again, none };

    Outcome ask(const CredentialQuestion& question, CredentialKeeper::Number& since,
                SecretPtr& answer);

    CredentialsPtr credentials_;
    std::string url_;
    std::stop_token stop_;
    std::atomic<bool> hasAcceptedHostKey_ = false;
    QuestionTimePtr time_ = std::make_shared<QuestionTime>();
    std::mutex mutex_;
    /// The number of the answer that each asker had to each question.
    std::map<std::pair<std::string, std::string>, CredentialKeeper::Number> given_;
};

/// Whether the secure shell asks about a host's key.
bool isAboutHostKey(std::string_view prompt);

} // namespace quen
