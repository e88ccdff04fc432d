#pragma once

#include "Host/Credentials/ClientHome.h"

#include <condition_variable>
#include <cstdint>
#include <map>
#include <mutex>
#include <optional>
#include <stop_token>
#include <string>
#include <utility>

namespace quen {

/// What was answered so far, and who may ask next. Each answer and each refusal has a number of its
/// own, growing.
///
/// Threads: any.
class CredentialKeeper {
public:
    using Number = std::uint64_t;

    /// What a run begins with.
    struct Snapshot {
        Number number = 0;
        SignInFacts facts;
    };
    /// One password for each realm: that of `user`, or where `user` is empty the latest.
    Snapshot snapshot(const std::string& user) const;
    Number number() const;

    Number keep(KeptPassword password);
    Number keep(const TrustedCertificate& certificate);
    /// The number of an answer that is not kept.
    Number noteAnswer();
    /// Forgets the answer of that number, unless it has been replaced.
    void forget(const std::string& realm, Number number);
    /// The answer to a question of the secure shell.
    std::optional<KeptPassword> secureShellAnswer(const std::string& realm) const;

    void noteRefusal(const std::string& realm);
    /// Whether somebody has said no since that number.
    bool wasRefusedSince(const std::string& realm, Number number) const;

    /// What a turn to ask came to.
    enum class Turn {
        mine,     ///< nobody else asks: ask, and call `endTurn`
        answered, ///< somebody else's question was answered: try again
        stopped,
    };
    /// Waits while somebody else asks about the same. `answered` is told where there is an answer
    /// since `since`. An answer that counts for those who wait alone is put into `waited`.
    Turn takeTurn(const std::string& about, Number since, SignInFacts& waited,
                  std::stop_token stop);
    /// Ends the turn, with the answer of that number, or without one: 0. `once` is for those who
    /// wait alone.
    void endTurn(const std::string& about, Number answered, const SignInFacts& once);

private:
    struct Asking {
        bool isOpen = false;
        int waiting = 0;
        Number answered = 0;
        SignInFacts once;
    };

    mutable std::mutex mutex_;
    std::condition_variable_any changed_;
    Number number_ = 0;
    std::map<std::pair<std::string, std::string>, KeptPassword> passwords_; // by realm and user
    std::map<std::string, TrustedCertificate> certificates_;
    std::map<std::string, Number> refusals_;
    std::map<std::string, Asking> askings_;
};

/// A turn to ask, ended at the end of the scope.
class CredentialTurn {
public:
    CredentialTurn(CredentialKeeper& keeper, std::string about)
        : keeper_(keeper), about_(std::move(about)) {}
    CredentialTurn(const CredentialTurn&) = delete;
    CredentialTurn& operator=(const CredentialTurn&) = delete;
    ~CredentialTurn() { keeper_.endTurn(about_, answered_, once_); }

    void setAnswered(CredentialKeeper::Number number, SignInFacts once = {}) {
        answered_ = number;
        once_ = std::move(once);
    }

private:
    CredentialKeeper& keeper_;
    std::string about_;
    CredentialKeeper::Number answered_ = 0;
    SignInFacts once_;
};

} // namespace quen
