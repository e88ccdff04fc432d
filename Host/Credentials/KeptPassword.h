#pragma once

#include "Host/Credentials/Secret.h"

#include <cstdint>
#include <string>
#include <string_view>

namespace quen {

/// A password that somebody gave for one realm.
struct KeptPassword {
    std::string realm = {};
    std::string user = {};
    SecretPtr secret = {};
    /// Grows with each answer, so that an answer is told from the one that replaced it.
    std::uint64_t number = 0;
    /// An answer to the secure shell, whose realm is `secureShellRealm`. The client gets none of
    /// it.
    bool isOfSecureShell = false;
};

/// What an answer to the secure shell's question counts for. The client puts `<` in front of every
/// realm, so that no server can make its realm look like a question.
std::string secureShellRealm(std::string_view prompt);

/// What the client calls a realm's entry in its own files, and in its talk with an agent: the
/// realm's MD5 in hexadecimal digits.
std::string entryNameOf(std::string_view realm);

/// An entry that tells the client to ask its agent for the user's password in the realm. It holds
/// no password.
std::string agentEntry(const KeptPassword& password);

/// The user that the client's entry for a realm names; empty where the entry names none.
std::string userOfEntry(std::string_view entry);

} // namespace quen
