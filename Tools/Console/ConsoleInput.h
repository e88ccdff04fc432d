#pragma once

#include "Host/ToolRunner.h"
#include "QuenFoundation/QuenSourceControlRequest.h"
#include "Tools/Console/JsonInput.h"

#include <cstdint>
#include <optional>
#include <string_view>
#include <vector>

namespace quen::tools {

/// One input object of the request console.
struct ConsoleInput {
    QuenSourceControlRequestPtr request;
    std::optional<bool> dryRun;
    std::optional<std::uint32_t> logLevel;
    /// The runs to replay; absent where the real client is to run.
    std::optional<std::vector<ToolRun>> replay;
};

/// Throws InputError for a text that is not JSON or not such an object.
ConsoleInput decodeConsoleInput(std::string_view text);

/// The same for an object that has been parsed already.
ConsoleInput decodeConsoleInput(const JsonInput& root);

} // namespace quen::tools
