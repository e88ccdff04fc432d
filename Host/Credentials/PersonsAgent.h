#pragma once

#include "Host/Credentials/Secret.h"

#include <string>
#include <string_view>
#include <vector>

namespace quen {

/// Where the agent of a person with that environment may listen, as the client itself looks for it.
/// Each may be nil.
std::vector<std::string> socketsOfPersonsAgent(const char* agentInfo, const char* home,
                                               const char* runtimeDirectory);

/// What the person's own agent answers to the question, whole lines: a refusal where none listens,
/// does not know the entry, or would have to ask the person first.
Secret answerOfPersonsAgent(const std::vector<std::string>& sockets, std::string_view entry,
                            std::string_view question);

} // namespace quen
