#pragma once

#include "Host/ToolRunner.h"
#include "QuenFoundation/QuenSourceControlProtocol.h"
#include "Tools/Console/ConsoleInput.h"
#include "Tools/Console/JsonOutput.h"

#include <cstdint>
#include <nlohmann/json.hpp>
#include <stop_token>
#include <string>
#include <string_view>

namespace quen::tools {

/// Drives a provider exactly as a host does, one request at a time, with every input and every
/// effect visible as JSON. Each object is served in a context of its own.
///
/// Threads: one console serves one object at a time; several consoles may be at work at once.
class RequestConsole {
public:
    struct Defaults {
        bool dryRun = false;
        std::uint32_t logLevel = 0;
    };

    /// Runs go to `runner` where an object brings no replay along.
    RequestConsole(QuenSourceControlProtocolPtr provider, ToolRunnerPtr runner, Defaults defaults);

    struct Answer {
        OrderedJson json;
        /// Why the input object could not be read; empty when it could.
        std::string inputError;
    };

    /// Serves one input object. Never throws for what the text holds.
    Answer serve(std::string_view text);

    struct Served {
        OrderedJson json;
        /// Null where the provider has none for the request.
        QuenSourceControlOperationPtr operation;
    };
    /// The same for an input object that has been read. `stop` ends the operation early. Throws
    /// InputError for a replay that is too short.
    Served perform(ConsoleInput input, const std::stop_token& stop);

private:
    QuenSourceControlProtocolPtr provider_;
    ToolRunnerPtr runner_;
    Defaults defaults_;
};

} // namespace quen::tools
