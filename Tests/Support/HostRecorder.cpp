#include "Tests/Support/HostRecorder.h"

#include <gtest/gtest.h>
#include <string>
#include <utility>

namespace quen::test {

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
    : context_(recordingContext(logLevel)), scope_(context_) {}

RunContext HostRecorder::recordingContext(std::uint32_t logLevel) {
    return RunContext()
        .withToolRunner(runner_)
        .withLogLevel(logLevel)
        .withToolsDirectory(toolsDirectory)
        .withAssertionHandler([this](const MarlAssertionFailure& failure) {
            const std::lock_guard lock(mutex_);
            assertions_.push_back(failure);
        })
        .withLogHandler([this](std::uint32_t level, const String& text) {
            const std::lock_guard lock(mutex_);
            log_.push_back({level, text});
        });
}

void HostRecorder::setLogLevel(std::uint32_t level) {
    context_.logAspect()->_logLevel = level;
}

void HostRecorder::replay(std::vector<PreparedRun> runs) {
    runner_->replay(std::move(runs));
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

} // namespace quen::test
