#pragma once

#include "Host/Facts/ChangeFacts.h"
#include "Host/Keeping/ConflictOutcome.h"
#include "Tools/Commands/Changes/ChangeOutput.h"

#include <string>
#include <vector>

namespace quen::tools {

/// A change that was made, for a script: the members of the operation's one record, where it has
/// one, under long and short names; `summary`, the sentence that a person reads; `revision`, the
/// one that was made or reached, null where there is none; `items`, how many the client named.
Dictionary changeRecord(const Value& result, const std::string& summary,
                        const ChangeOutput& output);

/// Adds what a transfer did: `changes`, `conflicts` and `skipped`. Paths are as the client printed
/// them, those of conflicts absolute.
void addTransfer(Dictionary& record, const ChangeFacts& facts,
                 const std::vector<ConflictOutcome>& outcomes);

} // namespace quen::tools
