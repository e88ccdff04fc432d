#pragma once

#include "Host/ToolRunner.h"

#include <chrono>
#include <functional>
#include <optional>
#include <string_view>

namespace quen {

/// Runs the real client: as a child in a session of its own, which can never stop to ask on a
/// terminal, with messages in English and file names in UTF-8 (`LC_ALL=C.UTF-8`).
class ClientRunner : public ToolRunner {
public:
    struct Options {
        /// The longest run, and the longest time without a word; none by default.
        std::optional<std::chrono::milliseconds> totalLimit;
        std::optional<std::chrono::milliseconds> silenceLimit;
        /// How long a client that is asked to end, by a cancel or a limit, may take to tidy up
        /// before it is killed.
        std::chrono::milliseconds politeness{2000};
        /// Leaves the client the host's terminal, so that it may ask for a password there. Only for
        /// a host that is itself a person's command line.
        bool keepsTerminal = false;
        /// Called with every piece of standard output as it arrives, on the running thread.
        std::function<void(std::string_view)> outputWatcher;
    };

    ClientRunner() = default;
    explicit ClientRunner(Options options) : options_(std::move(options)) {}

    std::shared_ptr<ToolCanceller> makeCanceller() override;
    ToolRun run(const ToolInvocation& invocation, ToolCanceller& canceller) override;

private:
    Options options_;
};

} // namespace quen
