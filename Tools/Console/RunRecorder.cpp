#include "Tools/Console/RunRecorder.h"

#include <utility>

namespace quen::tools {

ToolRun RunRecorder::run(const ToolInvocation& invocation, std::stop_token stop) {
    std::size_t position = 0;
    {
        const std::lock_guard lock(mutex_);
        position = runs_.size();
        runs_.push_back({invocation, {}});
        runs_.back().invocation.operation = nullptr;
        runs_.back().invocation.outputWatcher = nullptr;
        runs_.back().invocation.uncountedTime = nullptr;
    }
    ToolRun run = runner_->run(invocation, std::move(stop));
    const std::lock_guard lock(mutex_);
    // The output is the operation's alone: a record must not keep what an operation lets go of.
    runs_[position].run = run;
    runs_[position].run.output = nullptr;
    return run;
}

std::vector<RecordedRun> RunRecorder::runs() const {
    const std::lock_guard lock(mutex_);
    return runs_;
}

ToolRun PlaybackRunner::run(const ToolInvocation& /*invocation*/, std::stop_token /*stop*/) {
    const std::lock_guard lock(mutex_);
    if (next_ < runs_.size()) {
        return runs_[next_++];
    }
    wasExhausted_ = true;
    ToolRun none;
    none.end = RunEnd::couldNotStart;
    none.output = std::make_shared<Data>();
    none.errors = std::make_shared<Data>();
    none.reason = "the replay has no run left";
    return none;
}

bool PlaybackRunner::wasExhausted() const {
    const std::lock_guard lock(mutex_);
    return wasExhausted_;
}

} // namespace quen::tools
