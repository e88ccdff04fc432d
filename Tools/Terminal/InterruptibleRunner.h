#pragma once

#include "Host/ToolRunner.h"

#include <utility>

namespace quen::tools {

/// Hands runs on to another runner, and stops them when the program is interrupted: the run that
/// goes on, and those that come afterwards. One run at a time.
class InterruptibleRunner : public ToolRunner {
public:
    explicit InterruptibleRunner(ToolRunnerPtr runner) : runner_(std::move(runner)) {}

    ToolRun run(const ToolInvocation& invocation, std::stop_token stop) override;

private:
    ToolRunnerPtr runner_;
};

} // namespace quen::tools
