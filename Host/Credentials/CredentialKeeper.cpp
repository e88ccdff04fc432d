#include "Host/Credentials/CredentialKeeper.h"

#include <utility>

namespace quen {

CredentialKeeper::Snapshot CredentialKeeper::snapshot(const std::string& user) const {
    const std::lock_guard lock(mutex_);
    std::map<std::string, KeptPassword> chosen;
    for (const auto& [key, password] : passwords_) {
        KeptPassword& best = chosen[password.realm];
        const bool fits = user.empty() ? best.number < password.number : password.user == user;
        if (fits && !password.isOfSecureShell) {
            best = password;
        }
    }
    Snapshot snapshot{number_, {}};
    for (const auto& [realm, password] : chosen) {
        if (password.number != 0) {
            snapshot.facts.passwords.push_back(password);
        }
    }
    for (const auto& [name, certificate] : certificates_) {
        snapshot.facts.certificates.push_back(certificate);
    }
    return snapshot;
}

CredentialKeeper::Number CredentialKeeper::number() const {
    const std::lock_guard lock(mutex_);
    return number_;
}

CredentialKeeper::Number CredentialKeeper::keep(KeptPassword password) {
    const std::lock_guard lock(mutex_);
    password.number = ++number_;
    std::pair key(password.realm, password.user);
    passwords_[std::move(key)] = std::move(password);
    return number_;
}

CredentialKeeper::Number CredentialKeeper::keep(const TrustedCertificate& certificate) {
    const std::lock_guard lock(mutex_);
    certificates_[certificate.name] = certificate;
    return ++number_;
}

CredentialKeeper::Number CredentialKeeper::noteAnswer() {
    const std::lock_guard lock(mutex_);
    return ++number_;
}

void CredentialKeeper::forget(const std::string& realm, Number number) {
    const std::lock_guard lock(mutex_);
    std::erase_if(passwords_, [&](const auto& each) {
        return each.second.realm == realm && each.second.number == number;
    });
}

std::optional<KeptPassword> CredentialKeeper::secureShellAnswer(const std::string& realm) const {
    const std::lock_guard lock(mutex_);
    const auto found = passwords_.find({realm, std::string()});
    return found == passwords_.end() ? std::nullopt : std::optional(found->second);
}

void CredentialKeeper::noteRefusal(const std::string& realm) {
    const std::lock_guard lock(mutex_);
    refusals_[realm] = ++number_;
}

bool CredentialKeeper::wasRefusedSince(const std::string& realm, Number number) const {
    const std::lock_guard lock(mutex_);
    const auto found = refusals_.find(realm);
    return found != refusals_.end() && found->second > number;
}

CredentialKeeper::Turn CredentialKeeper::takeTurn(const std::string& about, Number since,
                                                  SignInFacts& waited, std::stop_token stop) {
    std::unique_lock lock(mutex_);
    Asking& asking = askings_[about]; // never erased
    if (asking.isOpen) {
        ++asking.waiting;
        changed_.wait(lock, stop, [&] { return !asking.isOpen || asking.answered > since; });
        --asking.waiting;
        if (asking.answered > since) {
            waited = asking.once;
        }
        if (asking.waiting == 0) {
            asking.once = {};
        }
    }
    if (stop.stop_requested()) {
        return Turn::stopped;
    }
    if (asking.answered > since) {
        return Turn::answered;
    }
    asking.isOpen = true;
    return Turn::mine;
}

void CredentialKeeper::endTurn(const std::string& about, Number answered, const SignInFacts& once) {
    {
        const std::lock_guard lock(mutex_);
        Asking& asking = askings_[about];
        asking.isOpen = false;
        if (answered != 0) {
            asking.answered = answered;
            asking.once = asking.waiting > 0 ? once : SignInFacts();
        }
    }
    changed_.notify_all();
}

} // namespace quen
