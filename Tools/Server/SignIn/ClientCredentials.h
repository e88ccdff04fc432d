#pragma once

#include "Host/Credentials/CredentialSource.h"
#include "Tools/Server/Dispatch/Questions.h"
#include "Tools/Server/Dispatch/WindowLog.h"

#include <optional>
#include <stop_token>

namespace quen::tools::server {

/// Asks the server's client: `credentials/get`, `certificate/confirm`, `ssh/ask`. An answer that is
/// not one counts as a no, and the log says what was expected.
///
/// Threads: any.
class ClientCredentials : public CredentialSource {
public:
    /// Both must outlive it.
    ClientCredentials(Questions& questions, WindowLog& log) : questions_(questions), log_(log) {}

    std::optional<CredentialAnswer> answer(const CredentialQuestion& question,
                                           std::stop_token stop) override;

private:
    std::optional<CredentialAnswer> askPassword(const CredentialQuestion& question,
                                                const std::stop_token& stop);
    std::optional<CredentialAnswer> askTrust(const CredentialQuestion& question,
                                             const std::stop_token& stop);
    std::optional<CredentialAnswer> askForSecureShell(const CredentialQuestion& question,
                                                      const std::stop_token& stop);

    Questions& questions_;
    WindowLog& log_;
};

} // namespace quen::tools::server
