#pragma once

#include "Host/Credentials/CredentialSource.h"

#include <optional>
#include <string_view>

namespace quen {

/// What the client asks on a terminal.
struct ClientPrompt {
    enum class Kind {
        password,
        certificate,
        /// A client certificate or its passphrase, which no road leads to.
        other,
    };

    Kind kind = Kind::other;
    /// Of a password.
    String realm = {};
    String user = {};
    /// Of a certificate, with whether the client offers to remember it.
    CertificateFacts certificate = {};
    bool canBeKept = false;
};

/// The question that stands at the end of what a client has shown; nothing where it does not end in
/// one.
std::optional<ClientPrompt> promptIn(std::string_view shown);

} // namespace quen
