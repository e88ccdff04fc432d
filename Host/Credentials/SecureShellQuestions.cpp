#include "Host/Credentials/SecureShellQuestions.h"

#include <array>
#include <cerrno>
#include <new>
#include <sys/socket.h>
#include <unistd.h>

namespace quen {

namespace {

/// Everything that the other side says until it closes its side; the start of it where that is more
/// than a question can be.
std::string readQuestion(int connection) {
    constexpr std::size_t longest = 65536;
    std::string text;
    std::array<char, 4096> piece{};
    for (;;) {
        const ssize_t count = ::read(connection, piece.data(), piece.size());
        if (count < 0 && errno == EINTR) {
            continue;
        }
        if (count <= 0 || text.size() > longest) {
            return text;
        }
        text.append(piece.data(), static_cast<std::size_t>(count));
    }
}

Secret answerFor(const CredentialQuestion& question, CredentialAnswer& answer) {
    const bool isYes = question.kind == CredentialKind::hostKey && answer.secret.isEmpty();
    return isYes ? Secret("yes") : std::move(answer.secret);
}

} // namespace

bool isAboutHostKey(std::string_view prompt) {
    return prompt.find("(yes/no") != std::string_view::npos ||
           prompt.find("'yes', 'no'") != std::string_view::npos;
}

void SecureShellQuestions::hold(int connection) {
    try {
        const std::string text = readQuestion(connection);
        const std::size_t end = text.find('\n');
        const SecretPtr answer = end == std::string::npos
                                     ? nullptr
                                     : answerTo(text.substr(end + 1), text.substr(0, end));
        writeAll(connection, answer == nullptr ? "-" : "+");
        if (answer != nullptr) {
            hasAcceptedHostKey_ = hasAcceptedHostKey_ || isAboutHostKey(text);
            writeAll(connection, answer->view());
        }
    } catch (const std::bad_alloc&) { // the helper takes that for no answer
    }
}

SecretPtr SecureShellQuestions::answerTo(const std::string& prompt, const std::string& asker) {
    const QuestionTime::Open open(*time_);
    CredentialKeeper& keeper = credentials_->keeper();
    const std::string realm = secureShellRealm(prompt);
    CredentialKeeper::Number since = keeper.number();
    for (;;) {
        const auto kept = keeper.secureShellAnswer(realm);
        bool wasRefused = false;
        {
            const std::lock_guard lock(mutex_);
            CredentialKeeper::Number& given = given_[{asker, prompt}];
            if (kept && kept->number != given) {
                given = kept->number;
                return kept->secret;
            }
            wasRefused = given != 0;
        }
        if (kept) {
            keeper.forget(realm, kept->number);
        }
        const bool isHostKey = isAboutHostKey(prompt);
        const CredentialQuestion question{.kind = isHostKey ? CredentialKind::hostKey
                                                            : CredentialKind::passphrase,
                                          .realm = prompt,
                                          .url = url_,
                                          .wasRefused = wasRefused,
                                          .prompt = prompt};
        SecretPtr answer;
        if (ask(question, since, answer) == Outcome::none) {
            return nullptr;
        }
        if (answer != nullptr) { // for this once
            const std::lock_guard lock(mutex_);
            given_[{asker, prompt}] = keeper.number();
            return answer;
        }
    }
}

SecureShellQuestions::Outcome SecureShellQuestions::ask(const CredentialQuestion& question,
                                                        CredentialKeeper::Number& since,
                                                        SecretPtr& answer) {
    CredentialKeeper& keeper = credentials_->keeper();
    const std::string realm = secureShellRealm(question.prompt.view());
    SignInFacts waited;
    const auto turn = keeper.takeTurn(realm, since, waited, stop_);
    if (turn == CredentialKeeper::Turn::answered) {
        answer = waited.passwords.empty() ? nullptr : waited.passwords.front().secret;
        since = keeper.number(); // that answer may have been refused and forgotten by now
        return Outcome::again;
    }
    if (turn == CredentialKeeper::Turn::stopped) {
        return Outcome::none;
    }
    CredentialTurn mine(keeper, realm);
    if (!credentials_->mayAsk() || keeper.wasRefusedSince(realm, credentials_->act())) {
        return Outcome::none;
    }
    auto given = credentials_->source().answer(question, stop_);
    if (stop_.stop_requested()) {
        return Outcome::none;
    }
    if (!given) {
        keeper.noteRefusal(realm);
        return Outcome::none;
    }
    KeptPassword kept{.realm = realm,
                      .secret = std::make_shared<const Secret>(answerFor(question, *given)),
                      .isOfSecureShell = true};
    // The secure shell remembers a host's key by itself; who asks in this moment does not know yet.
    if (given->keep == CredentialKeep::once && question.kind != CredentialKind::hostKey) {
        answer = kept.secret;
        mine.setAnswered(keeper.noteAnswer(), {{kept}, {}});
    } else {
        mine.setAnswered(keeper.keep(std::move(kept)));
    }
    return Outcome::again;
}

} // namespace quen
