#pragma once

#include "Host/ToolRunner.h"

#include <utility>

namespace quen::tools {

/// Hands runs on to another runner and keeps the last one whole: an operation lets go of what its
/// client wrote. One run at a time.
class KeptRun : public ToolRunner {
public:
    explicit KeptRun(ToolRunnerPtr runner) : runner_(std::move(runner)) {}

    ToolRun run(const ToolInvocation& invocation, std::stop_token stop) override {
        last_ = runner_->run(invocation, std::move(stop));
        return last_;
    }

    /// What the last run wrote to standard output; nothing before there was one.
    std::string_view output() const noexcept {
        return last_.output == nullptr ? std::string_view() : last_.output->bytes();
    }
    /// The client of the last run ended by itself, and said that all was well.
    bool endedWell() const noexcept { return last_.end == RunEnd::ended && last_.exitStatus == 0; }

private:
    ToolRunnerPtr runner_;
    ToolRun last_{};
};

} // namespace quen::tools
