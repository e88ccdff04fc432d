#pragma once

#include "Host/Credentials/KeptPassword.h"

#include <string>
#include <vector>

namespace quen {

/// One file of the client's list of trusted certificates.
struct TrustedCertificate {
    std::string name;
    std::string entry;
};

/// What a client finds in a configuration directory of ours beside what the person's own holds.
struct SignInFacts {
    std::vector<KeptPassword> passwords = {};
    std::vector<TrustedCertificate> certificates = {};

    bool isEmpty() const { return passwords.empty() && certificates.empty(); }
    /// Adds these, in the place of what was there of the same realm or name.
    void put(const SignInFacts& more);
};

/// Makes a configuration directory of the client at `path`: links to all that the person's own one
/// holds, but that the entries of `facts` stand in the place of theirs. The person's own is neither
/// changed nor written through, but for the directories of it that are links as a whole.
/// 0, or why not, as in errno.
int makeConfigDirectory(const std::string& path, const std::string& persons,
                        const SignInFacts& facts);

/// The same without any of the person's passwords, so that the client must ask for one.
int makeConfigDirectoryThatAsks(const std::string& path, const std::string& persons,
                                const SignInFacts& facts);

/// Makes a home at `path`: links to all that the person's home holds, but with a configuration
/// directory of ours. 0, or why not, as in errno.
int makeHome(const std::string& path, const std::string& persons, const SignInFacts& facts);

/// The entries of a configuration directory's list of trusted certificates.
std::vector<TrustedCertificate> trustedCertificatesIn(const std::string& configDirectory);

} // namespace quen
