#pragma once

#include "Foundation/Value.h"
#include "Host/Facts/ListFacts.h"
#include "Host/Facts/StatusFacts.h"

#include <map>
#include <string>

namespace quen::tools {

/// The client's own words for tree conflicts, by path.
using TreeConflicts = std::map<std::string, std::string>;

/// A status as JSON has it: for each entry the contract's keys with their flags, and beside them
/// what the flags leave out, under the client's words. What does not apply is left out.
Array statusRecords(const StatusFacts& facts, const TreeConflicts& treeConflicts);

/// A sentence that names what made a report unreadable for a strict reader: `The name "a?b" holds
/// control characters, ..`.
std::string sentenceOnUnreadable(const UnreadableText& text);

} // namespace quen::tools
