#pragma once

#include "Foundation/Export.h"
#include "Host/Credentials/CredentialSource.h"

#include <cstdint>
#include <memory>

namespace quen {

class CredentialKeeper;
class Credentials;
using CredentialsPtr = std::shared_ptr<const Credentials>;

/// Signs in for the runs of a context (`RunContext::withCredentials`): a run that a server does not
/// let in for want of a password, or whose certificate nobody vouches for, makes a question to the
/// source; after the answer the run is made again, once for each answer.
///
/// Any number of runs that want the same make one question. What is answered is kept in memory, for
/// that realm, as long as the answer says and no longer than the last holder of this or of another
/// made from it. A no, or an answer that no better one followed, is remembered for as long as the
/// same act of a person goes on: within it nobody asks about that realm again.
///
/// A secret is handed to the client in memory alone, see Documentation/security.md.
///
/// Immutable. Threads: any.
class QUEN_EXPORT Credentials {
public:
    /// One act of a person, with nothing kept and nothing refused. `source` must not be null.
    static CredentialsPtr make(CredentialSourcePtr source);
    ~Credentials();
    Credentials(const Credentials&) = delete;
    Credentials& operator=(const Credentials&) = delete;

    /// The same for a new act of a person, a command or a press of a button: what was refused
    /// before is asked again.
    CredentialsPtr forPerson() const;
    /// The same for work that no person asked for: what is kept is used, and nothing asked.
    CredentialsPtr forBackground() const;

    bool mayAsk() const noexcept { return mayAsk_; }
    CredentialSource& source() const noexcept { return *source_; }
    CredentialKeeper& keeper() const noexcept { return *keeper_; }
    /// The number of the keeper when the act began.
    std::uint64_t act() const noexcept { return act_; }

private:
    Credentials(CredentialSourcePtr source, std::shared_ptr<CredentialKeeper> keeper, bool mayAsk);

    CredentialSourcePtr source_;
    std::shared_ptr<CredentialKeeper> keeper_;
    bool mayAsk_;
    std::uint64_t act_;
};

} // namespace quen
