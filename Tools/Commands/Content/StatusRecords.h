#pragma once

#include "Foundation/Value.h"
#include "Host/Facts/StatusFacts.h"

#include <string>

namespace quen::tools {

/// An entry of a status as JSON has it: the contract's keys with their flags, and beside them what
/// the flags leave out, under the client's words. What does not apply is left out. `reason` is the
/// client's own word for a tree conflict.
Dictionary statusRecord(const StatusEntry& entry, const std::string& reason);

/// Likewise, without the contract's keys.
Dictionary shortStatusRecord(const StatusEntry& entry, const std::string& reason);

/// A sentence that names what made a report unreadable for a strict reader: `The name "a?b" holds
/// control characters, ..`.
std::string sentenceOnUnreadable(const UnreadableText& text);

} // namespace quen::tools
