#pragma once

#include "QuenFoundation/QuenSourceControlOperation.h"
#include "QuenFoundation/QuenSourceControlRequestFacts.h"

#include <cstdint>
#include <string_view>

namespace quen {

/// Makes a new, initialised operation; null when it cannot be initialised.
using SVNOperationMaker =
    QuenSourceControlOperationPtr (*)(const QuenSourceControlRequestPtr& request);

/// What makes the operation of a type; null for a type that is not served.
SVNOperationMaker operationMakerForType(std::int32_t type);

bool hasInput(const QuenSourceControlRequest& request, RequestInput input);

/// How the check of an input reads in the assertion about its absence.
struct SVNCondition {
    /// The condition; in the nil form, the expression in parentheses.
    std::string_view text;
    bool isNilForm = false;
};

/// `type` counts: an import checks its options in the nil form, every other type in the plain one.
SVNCondition conditionOf(RequestInput input, std::int32_t type);

} // namespace quen
