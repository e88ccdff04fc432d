#pragma once

#include "Foundation/String.h"

#include <string>
#include <string_view>

namespace quen {

/// Why a client was not let in, as far as its complaint tells.
enum class SignInProblem {
    none,
    noPassword,    ///< nobody knows a password, or a web server did not accept what was known
    wrongPassword, ///< the server knows the user or the password otherwise
    noPermission,  ///< the server knows who it is, and says no
    certificate,   ///< the server's certificate is not trusted
    secureShell,   ///< the secure shell did not get through, for a reason that it keeps to itself
    keyRefused,    ///< the host accepts none of the secure shell's keys and passwords
    hostKeyUnknown,
    hostKeyChanged,
    external,    ///< an external's server cannot be reached, or wants something: it does not say
    unreachable, ///< nobody answers there
};

/// What the client's standard error tells.
SignInProblem signInProblemOf(std::string_view standardError);

/// What the secure shell's own words tell; `secureShell` where they are not known.
SignInProblem secureShellProblemOf(std::string_view text);

/// Where the client says that it could not get to; empty where it does not.
std::string urlInComplaint(std::string_view standardError);

/// `https://host:443` of `https://host:443/repository/trunk`; empty for what is not a URL.
std::string serverOf(std::string_view url);

/// Whether a realm is one of that server's: the client puts `<svn://host:3690> ` in front of what
/// the server calls it. No for a realm that is too long to be read by anybody.
bool isRealmOf(std::string_view realm, std::string_view url);

} // namespace quen
