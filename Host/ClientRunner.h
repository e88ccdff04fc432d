#pragma once

#include "Foundation/Export.h"
#include "Host/ToolRunner.h"

namespace quen {

/// Runs the real client: as a child in a session of its own, which can never stop to ask on a
/// terminal, with messages in English and file names in UTF-8 (`LC_ALL=C.UTF-8`).
class QUEN_EXPORT ClientRunner : public ToolRunner {
public:
    struct Options {
        /// Leaves the client the host's terminal, so that it may ask for a password there. Only for
        /// a host that is itself a person's command line.
        bool keepsTerminal = false;
        /// The client is asked to end when this process dies, however that happens. For a host that
        /// is a program of its own; a client of a long-lived host ends its work without it.
        bool endsWithHost = false;
        /// With false a run's output is empty: only the watcher has it.
        bool keepsOutput = true;
    };

    ClientRunner() = default;
    explicit ClientRunner(Options options) : options_(options) {}

    ToolRun run(const ToolInvocation& invocation, std::stop_token stop) override;

private:
    Options options_;
};

} // namespace quen
