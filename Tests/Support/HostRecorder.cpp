#include "Tests/Support/HostRecorder.h"

#include "QuenFoundation/QuenSourceControlManager.h"

#include <gtest/gtest.h>
#include <string>

namespace quen {

AssertionFacts AssertionFacts::plain(const String& method, const String& file,
                                     const String& condition) {
    return {method, file, "Assertion failed: %s", {condition}};
}

AssertionFacts AssertionFacts::notNil(const String& method, const String& file,
                                      std::string_view expression) {
    return {method,
            file,
            "%s should not be nil.",
            {expression, "Assertion failed: %s", "(" + std::string(expression) + ") != nil"}};
}

AssertionFacts AssertionFacts::unreachable(const String& method, const String& file) {
    return {method, file, "code which should be unreachable has been reached", {"0"}};
}

void PrintTo(const AssertionFacts& facts, std::ostream* out) {
    *out << facts.method << " (" << facts.file << ") \"" << facts.format << "\" with "
         << testing::PrintToString(facts.arguments);
}

void PrintTo(const LogLine& line, std::ostream* out) {
    *out << '[' << line.level << "] " << line.text;
}

HostRecorder::HostRecorder(std::uint32_t logLevel)
    : previousAssertionHandler_(HostServices::shared().assertionHandler()),
      previousLogHandler_(HostServices::shared().logHandler()),
      previousRunner_(HostServices::shared().toolRunner()),
      previousLogLevel_(QuenSourceControlManager::sourceControlLogAspect()->_logLevel.load()) {
    HostServices& services = HostServices::shared();
    services.setAssertionHandler([this](const MarlAssertionFailure& failure) {
        const std::lock_guard lock(mutex_);
        assertions_.push_back(failure);
    });
    services.setLogHandler([this](std::uint32_t level, const String& text) {
        const std::lock_guard lock(mutex_);
        log_.push_back({level, text});
    });
    services.setToolsDirectory(toolsDirectory);
    replay({});
    setLogLevel(logLevel);
}

HostRecorder::~HostRecorder() {
    HostServices& services = HostServices::shared();
    services.setAssertionHandler(previousAssertionHandler_);
    services.setLogHandler(previousLogHandler_);
    services.setToolsDirectory(nullptr);
    services.setToolRunner(previousRunner_);
    setLogLevel(previousLogLevel_);
}

void HostRecorder::setLogLevel(std::uint32_t level) {
    QuenSourceControlManager::sourceControlLogAspect()->_logLevel.store(level);
}

void HostRecorder::replay(std::vector<PreparedRun> runs) {
    runner_ = std::make_shared<ReplayRunner>(std::move(runs));
    HostServices::shared().setToolRunner(runner_);
}

std::vector<ToolInvocation> HostRecorder::invocations() const {
    return runner_->invocations();
}

std::vector<MarlAssertionFailure> HostRecorder::assertions() const {
    const std::lock_guard lock(mutex_);
    return assertions_;
}

std::vector<AssertionFacts> HostRecorder::assertionFacts() const {
    std::vector<AssertionFacts> facts;
    for (const MarlAssertionFailure& failure : assertions()) {
        facts.push_back({failure.method, failure.file, failure.format, failure.arguments});
    }
    return facts;
}

std::vector<LogLine> HostRecorder::log() const {
    const std::lock_guard lock(mutex_);
    return log_;
}

void HostRecorder::clear() {
    const std::lock_guard lock(mutex_);
    assertions_.clear();
    log_.clear();
}

} // namespace quen
