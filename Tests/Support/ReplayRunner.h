#pragma once

#include "Host/ToolRunner.h"

#include <cstddef>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

namespace quen::test {

/// A run that a test has prepared.
struct PreparedRun {
    std::string standardOutput = {};
    std::string standardError = {};
    /// Left out of the outcome where there is a signal.
    int exitStatus = 0;
    std::optional<int> signal = {};
    RunEnd end = RunEnd::ended;
    String reason = {};
    bool leftOutputOpen = false;
};

/// Starts nothing: hands out the prepared runs one after the other and keeps what it was asked for.
/// Being asked for more than was prepared fails the test.
class ReplayRunner : public ToolRunner {
public:
    explicit ReplayRunner(std::vector<PreparedRun> runs = {}) : runs_(std::move(runs)) {}

    ToolRun run(const ToolInvocation& invocation, std::stop_token stop) override;

    /// What the next runs give. Forgets what it was asked for so far.
    void replay(std::vector<PreparedRun> runs);

    /// In the order in which they came; without what belongs to the operations.
    std::vector<ToolInvocation> invocations() const;

private:
    mutable std::mutex mutex_;
    std::vector<PreparedRun> runs_;
    std::vector<ToolInvocation> invocations_;
};

} // namespace quen::test
