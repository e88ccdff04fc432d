#include "Tools/Console/EffectsRecorder.h"

#include "Host/HostServices.h"
#include "QuenFoundation/QuenSourceControlManager.h"

#include <utility>

namespace quen::tools {

EffectsRecorder::EffectsRecorder(ToolRunnerPtr runner, std::uint32_t logLevel) {
    HostServices& services = HostServices::shared();
    services.setToolRunner(std::move(runner));
    services.setAssertionHandler([this](const MarlAssertionFailure& failure) {
        const std::lock_guard lock(mutex_);
        assertions_.push_back(failure);
    });
    services.setLogHandler([this](std::uint32_t level, const String& text) {
        const std::lock_guard lock(mutex_);
        log_.push_back({level, text});
    });
    QuenSourceControlManager::sourceControlLogAspect()->_logLevel = logLevel;
}

EffectsRecorder::~EffectsRecorder() {
    HostServices& services = HostServices::shared();
    services.setToolRunner(nullptr);
    services.setAssertionHandler(nullptr);
    services.setLogHandler(nullptr);
    QuenSourceControlManager::sourceControlLogAspect()->_logLevel = 0;
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
