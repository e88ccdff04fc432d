#include "Tests/Support/ReplayRunner.h"

#include <atomic>
#include <gtest/gtest.h>
#include <memory>

namespace quen {

namespace {

class ReplayCanceller : public ToolCanceller {
public:
    void cancel() override { isCancelled_.store(true); }
    bool isCancelled() const noexcept { return isCancelled_.load(); }

private:
    std::atomic<bool> isCancelled_ = false;
};

ToolRun outcomeOf(const PreparedRun& prepared, bool isCancelled) {
    ToolRun run;
    run.end = isCancelled ? ToolEnd::cancelled : prepared.end;
    if (prepared.signal) {
        run.signal = prepared.signal;
    } else if (run.end != ToolEnd::couldNotStart) {
        run.exitStatus = prepared.exitStatus;
    }
    run.output = std::make_shared<const Data>(prepared.standardOutput);
    run.errors = std::make_shared<const Data>(prepared.standardError);
    run.reason = prepared.reason;
    return run;
}

} // namespace

std::shared_ptr<ToolCanceller> ReplayRunner::makeCanceller() {
    return std::make_shared<ReplayCanceller>();
}

ToolRun ReplayRunner::run(const ToolInvocation& invocation, ToolCanceller& canceller) {
    const bool isCancelled = dynamic_cast<const ReplayCanceller&>(canceller).isCancelled();
    const std::lock_guard lock(mutex_);
    invocations_.push_back(invocation);
    if (invocations_.size() <= runs_.size()) {
        return outcomeOf(runs_[invocations_.size() - 1], isCancelled);
    }
    ADD_FAILURE() << invocation.operation << " asked for run " << invocations_.size() << " of "
                  << runs_.size() << " prepared: " << testing::PrintToString(invocation.arguments);
    return outcomeOf({.end = ToolEnd::couldNotStart, .reason = "no run is prepared"}, false);
}

std::vector<ToolInvocation> ReplayRunner::invocations() const {
    const std::lock_guard lock(mutex_);
    return invocations_;
}

} // namespace quen
