#pragma once

#include "Foundation/Export.h"
#include "Foundation/String.h"
#include "Host/Credentials/Secret.h"

#include <memory>
#include <optional>
#include <stop_token>
#include <vector>

namespace quen {

/// What a server, or the secure shell on the way to it, wants to know.
enum class CredentialKind {
    password,    ///< a user's password for a realm
    certificate, ///< whether a server's certificate, which nobody vouches for, is the right one
    passphrase,  ///< what unlocks a key of the secure shell, or a password that it asks for
    hostKey,     ///< whether a host's key, which is not known yet, is the right one
};

/// What a server's certificate says of itself.
struct CertificateFacts {
    String hostname = {};
    String validity = {};
    String issuer = {};
    String fingerprint = {};
    /// Why it is not trusted, in the client's words.
    std::vector<String> failures = {};
};

struct CredentialQuestion {
    CredentialKind kind = CredentialKind::password;
    /// What the answer counts for, and nothing else: `<https://host:443> Team`, `https://host:443`
    /// for a certificate, the whole question for the secure shell.
    String realm = {};
    /// Where the client wanted to go; nil where that is not known.
    String url = {};
    /// Whose password; a guess unless `isUserFixed`. nil where there is not even that.
    String user = {};
    /// The request names the user, so that no other can answer.
    bool isUserFixed = false;
    /// The answer given before was not accepted.
    bool wasRefused = false;
    /// Of a certificate.
    CertificateFacts certificate = {};
    /// Of the secure shell: its own words.
    String prompt = {};
};

/// How long an answer counts.
enum class CredentialKeep {
    once,    ///< for the operations that wait for it now
    process, ///< until the last holder of the Credentials lets go
    /// Beyond that, as the client itself keeps such things: in a keyring, its list of trusted
    /// certificates. Where it has no place for a password, until the last holder lets go.
    client,
};

struct CredentialAnswer {
    /// Whose password; nil for the one of the question.
    String user = {};
    /// Empty for a certificate, whose answer is a yes by being there, and for a host's key, where
    /// empty stands for `yes`.
    Secret secret = {};
    CredentialKeep keep = CredentialKeep::process;
};

/// Answers questions: the one who knows a person to ask. An application implements it.
///
/// Threads: called from the threads that operations run on, with one question for each realm at a
/// time, but several at once for several realms. It may take as long as a person takes.
class QUEN_EXPORT CredentialSource {
public:
    CredentialSource() = default;
    CredentialSource(const CredentialSource&) = delete;
    CredentialSource& operator=(const CredentialSource&) = delete;
    virtual ~CredentialSource() = default;

    /// Nothing is a no. `stop` is requested when the operation that asks is cancelled; the answer
    /// then does not matter, and nobody takes it for a no. Must not throw.
    virtual std::optional<CredentialAnswer> answer(const CredentialQuestion& question,
                                                   std::stop_token stop) = 0;
};

using CredentialSourcePtr = std::shared_ptr<CredentialSource>;

} // namespace quen
