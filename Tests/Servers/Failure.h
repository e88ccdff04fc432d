#pragma once

#include "Tests/Servers/Journey.h"

#include <cstdint>
#include <string>

namespace quen {

/// What a host reads from an error.
struct Failure {
    std::int64_t code = 0;
    /// All of the client's own numbers; none where the provider knew the text.
    Json numbers;
    /// Whether a host may ask again; empty where that does not help.
    std::string authenticationType;
    std::string text;
};

/// What is told of a svnserve that hangs up: it is taken for one that refuses.
Failure takenForRefused();

/// The console's answer must hold this error.
void expectError(const Json& answer, const Failure& failure);

/// It must hold one of those that a httpd leaves when it goes: the connection reset, ended, or
/// refused to a client that tries again, a reply cut by the transport's or by its own rules. That
/// is up to what the client is at in that moment.
void expectLostReply(const Json& answer);

} // namespace quen
