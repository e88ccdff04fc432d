#pragma once

#include "QuenFoundation/QuenSourceControlProtocol.h"

#include <cstdint>
#include <string>

namespace quen::tools::server {

/// What the command line says.
struct ServerOptions {
    /// The directory of the client; empty for the one on PATH.
    std::string toolsDirectory;
    std::uint32_t logLevel = 0;
};

/// Serves one conversation on two descriptors until it ends: by `exit`, by the input's end, by
/// SIGTERM, SIGINT or SIGHUP, or because the process that the client named is gone. Every client
/// that was started has then been ended. The exit status.
///
/// Blocks the three signals for the whole process: to be called before any thread is started.
int serveStreams(int input, int output, QuenSourceControlProtocolPtr provider,
                 const ServerOptions& options);

} // namespace quen::tools::server
