#pragma once

#include "Host/Facts/ChangeFacts.h"

#include <optional>
#include <string_view>

namespace quen {

/// Columns, or a sentence about one item: `U    a.c`, `Restored 'a.c'`, `Sending        a.c`.
/// nullopt for a line of another kind. Private to `ChangeFactsReader`.
std::optional<ChangedItem> itemIn(std::string_view line, ChangeColumns columns);

} // namespace quen
