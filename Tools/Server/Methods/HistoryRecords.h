#pragma once

#include "Host/Facts/HistoryFacts.h"
#include "Tools/Console/JsonOutput.h"

namespace quen::tools::server {

/// `{revision, author, date, message, files: [{path, action}]}`.
OrderedJson logEntryJson(const HistoryEntry& entry);

/// The entry that a JSON text of ours was made from, as far as the text holds it.
HistoryEntry logEntryFrom(const OrderedJson& json);

/// `{revision, author, date}`; nulls for a line that is not committed.
OrderedJson commitJson(const CommitFacts& commit);

} // namespace quen::tools::server
