#pragma once

#include "Host/ToolRunner.h"
#include "Tools/Server/Dispatch/WindowLog.h"
#include "Tools/Server/Runs/Statistics.h"

#include <utility>

namespace quen::tools::server {

/// Hands runs on to another runner, counts them, and tells of each at level 4: arguments, status,
/// milliseconds.
class TellingRunner : public ToolRunner {
public:
    TellingRunner(ToolRunnerPtr runner, ClientRuns& runs, WindowLog& log)
        : runner_(std::move(runner)), runs_(runs), log_(log) {}

    ToolRun run(const ToolInvocation& invocation, std::stop_token stop) override;

private:
    ToolRunnerPtr runner_;
    ClientRuns& runs_;
    WindowLog& log_;
};

} // namespace quen::tools::server
