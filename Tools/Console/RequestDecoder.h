#pragma once

#include "QuenFoundation/QuenSourceControlRequest.h"
#include "Tools/Console/JsonInput.h"

namespace quen::tools {

/// The request that a JSON object describes. Throws InputError.
QuenSourceControlRequestPtr decodeRequest(const JsonInput& input);

} // namespace quen::tools
