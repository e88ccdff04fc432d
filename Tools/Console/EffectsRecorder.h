#pragma once

#include "Host/RunContext.h"

#include <cstdint>
#include <mutex>
#include <vector>

namespace quen::tools {

/// Makes a context with a runner, an assertion handler and a log handler of its own the current one
/// for as long as it lives, and keeps what reaches the handlers.
class EffectsRecorder {
public:
    struct LogLine {
        std::uint32_t level = 0;
        String text;
    };

    EffectsRecorder(ToolRunnerPtr runner, std::uint32_t logLevel);
    EffectsRecorder(const EffectsRecorder&) = delete;
    EffectsRecorder& operator=(const EffectsRecorder&) = delete;

    std::vector<MarlAssertionFailure> assertions() const;
    std::vector<LogLine> log() const;

private:
    RunContext recordingContext(ToolRunnerPtr runner, std::uint32_t logLevel);

    mutable std::mutex mutex_;
    std::vector<MarlAssertionFailure> assertions_;
    std::vector<LogLine> log_;
    const RunContext::Scope scope_;
};

} // namespace quen::tools
