#pragma once

#include "Tests/Servers/Journey.h"

#include <cstdint>
#include <string>
#include <vector>

namespace quen::test {

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

/// It must hold one of the client's numbers for a httpd that goes: which one is up to what the
/// client is at in that moment.
void expectLostReply(const Json& answer, const std::vector<std::int64_t>& numbers);

} // namespace quen::test
