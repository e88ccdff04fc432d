#include "Tools/Console/EffectsRecorder.h"

#include <utility>

namespace quen::tools {

EffectsRecorder::EffectsRecorder(ToolRunnerPtr runner, std::uint32_t logLevel)
    : scope_(recordingContext(std::move(runner), logLevel)) {}

RunContext EffectsRecorder::recordingContext(ToolRunnerPtr runner, std::uint32_t logLevel) {
    return RunContext::current()
        .withToolRunner(std::move(runner))
        .withLogLevel(logLevel)
        .withAssertionHandler([this](const MarlAssertionFailure& failure) {
            const std::lock_guard lock(mutex_);
            assertions_.push_back(failure);
        })
        .withLogHandler([this](std::uint32_t level, const String& text) {
            const std::lock_guard lock(mutex_);
            log_.push_back({level, text});
        });
}

std::vector<MarlAssertionFailure> EffectsRecorder::assertions() const {
    const std::lock_guard lock(mutex_);
    return assertions_;
}

std::vector<EffectsRecorder::LogLine> EffectsRecorder::log() const {
    const std::lock_guard lock(mutex_);
    return log_;
}

} // namespace quen::tools
