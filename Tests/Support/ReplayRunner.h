#pragma once

#include "Host/ToolRunner.h"

#include <cstddef>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

namespace quen {

/// A run that a test has prepared.
struct PreparedRun {
    std::string standardOutput = {};
    std::string standardError = {};
    /// Left out of the outcome where there is a signal.
    int exitStatus = 0;
    std::optional<int> signal = {};
    ToolEnd end = ToolEnd::ended;
    String reason = {};
};

/// Starts nothing: hands out the prepared runs one after the other and keeps what it was asked for.
/// Being asked for more than was prepared fails the test.
class ReplayRunner : public ToolRunner {
public:
    explicit ReplayRunner(std::vector<PreparedRun> runs = {}) : runs_(std::move(runs)) {}

    std::shared_ptr<ToolCanceller> makeCanceller() override;
    ToolRun run(const ToolInvocation& invocation, ToolCanceller& canceller) override;

    /// In the order in which they came.
    std::vector<ToolInvocation> invocations() const;

private:
    mutable std::mutex mutex_;
    const std::vector<PreparedRun> runs_;
    std::vector<ToolInvocation> invocations_;
};

} // namespace quen
