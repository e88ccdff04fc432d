#pragma once

#include "QuenFoundation/QuenSourceControlOperation.h"

#include <cstdint>
#include <span>
#include <string_view>

namespace quen {

/// Something that a request of a type must bring along.
struct SVNPrecondition {
    /// The condition's text; in the nil form, the expression in parentheses.
    std::string_view text;
    bool (*holds)(const QuenSourceControlRequest& request);
    bool isNilForm = false;
};

/// One line of the dispatch table: what a request type requires, and the class that serves it.
struct SVNDispatchRow {
    std::span<const SVNPrecondition> preconditions;
    /// A new, initialised operation, or null when it cannot be initialised. Null where no class
    /// serves the type.
    QuenSourceControlOperationPtr (*make)(const QuenSourceControlRequestPtr& request) = nullptr;
    /// A request of this type is a mistake in the host.
    bool isUnreachable = false;
};

/// The row of a type; an empty row for one outside the table.
const SVNDispatchRow& dispatchRowForType(std::int32_t type);

} // namespace quen
