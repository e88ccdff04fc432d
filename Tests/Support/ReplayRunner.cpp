#include "Tests/Support/ReplayRunner.h"

#include <gtest/gtest.h>
#include <memory>
#include <utility>

namespace quen::test {

namespace {

ToolRun outcomeOf(const PreparedRun& prepared, bool isCancelled) {
    ToolRun run;
    run.end = isCancelled ? RunEnd::cancelled : prepared.end;
    if (prepared.signal) {
        run.signal = prepared.signal;
    } else if (run.end != RunEnd::couldNotStart) {
        run.exitStatus = prepared.exitStatus;
    }
    run.output = std::make_shared<const Data>(prepared.standardOutput);
    run.errors = std::make_shared<const Data>(prepared.standardError);
    run.reason = prepared.reason;
    run.leftOutputOpen = prepared.leftOutputOpen;
    return run;
}

} // namespace

void ReplayRunner::replay(std::vector<PreparedRun> runs) {
    const std::lock_guard lock(mutex_);
    runs_ = std::move(runs);
    invocations_.clear();
}

ToolRun ReplayRunner::run(const ToolInvocation& invocation, std::stop_token stop) {
    const bool isCancelled = stop.stop_requested();
    const std::lock_guard lock(mutex_);
    invocations_.push_back(invocation);
    invocations_.back().operation = nullptr;
    invocations_.back().outputWatcher = nullptr;
    if (invocations_.size() <= runs_.size()) {
        return outcomeOf(runs_[invocations_.size() - 1], isCancelled);
    }
    ADD_FAILURE() << invocation.operationClass << " asked for run " << invocations_.size() << " of "
                  << runs_.size() << " prepared: " << testing::PrintToString(invocation.arguments);
    return outcomeOf({.end = RunEnd::couldNotStart, .reason = "no run is prepared"}, false);
}

std::vector<ToolInvocation> ReplayRunner::invocations() const {
    const std::lock_guard lock(mutex_);
    return invocations_;
}

} // namespace quen::test
