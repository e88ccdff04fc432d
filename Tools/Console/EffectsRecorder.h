#pragma once

#include "Host/ToolRunner.h"
#include "MarlFoundation/MarlAssertionFailureHandler.h"

#include <cstdint>
#include <mutex>
#include <vector>

namespace quen::tools {

/// Takes the place of the host's assertion handler, log handler and tool runner for as long as it
/// lives, and keeps what reaches the first two. The defaults come back afterwards. One at a time.
class EffectsRecorder {
public:
    struct LogLine {
        std::uint32_t level = 0;
        String text;
    };

    EffectsRecorder(ToolRunnerPtr runner, std::uint32_t logLevel);
    EffectsRecorder(const EffectsRecorder&) = delete;
    EffectsRecorder& operator=(const EffectsRecorder&) = delete;
    ~EffectsRecorder();

    std::vector<MarlAssertionFailure> assertions() const;
    std::vector<LogLine> log() const;

private:
    mutable std::mutex mutex_;
    std::vector<MarlAssertionFailure> assertions_;
    std::vector<LogLine> log_;
};

} // namespace quen::tools
