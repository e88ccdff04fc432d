#pragma once

#include "Host/ToolRunner.h"

#include <memory>
#include <mutex>
#include <vector>

namespace quen::tools {

/// A run as it went, without what belongs to its operation.
struct RecordedRun {
    ToolInvocation invocation;
    ToolRun run;
};

/// Hands runs on to another runner and keeps a record of them, in the order in which they started.
/// From any thread.
class RunRecorder : public ToolRunner {
public:
    explicit RunRecorder(ToolRunnerPtr runner) : runner_(std::move(runner)) {}

    ToolRun run(const ToolInvocation& invocation, std::stop_token stop) override;

    std::vector<RecordedRun> runs() const;

private:
    ToolRunnerPtr runner_;
    mutable std::mutex mutex_;
    std::vector<RecordedRun> runs_;
};

/// Starts nothing: each run takes the next of the prepared ones. From any thread.
class PlaybackRunner : public ToolRunner {
public:
    explicit PlaybackRunner(std::vector<ToolRun> runs) : runs_(std::move(runs)) {}

    ToolRun run(const ToolInvocation& invocation, std::stop_token stop) override;

    /// A run was asked for after the last prepared one. It counted as one that could not start.
    bool wasExhausted() const;

private:
    mutable std::mutex mutex_;
    std::vector<ToolRun> runs_;
    std::size_t next_ = 0;
    bool wasExhausted_ = false;
};

} // namespace quen::tools
