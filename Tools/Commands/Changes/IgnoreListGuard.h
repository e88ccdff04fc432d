#pragma once

#include "Host/ToolRunner.h"

#include <utility>

namespace quen::tools {

/// Hands runs on to another runner, but for one that would write a list of ignored names that
/// begins with `-`. The plug-in gives the list to the client as an argument, and the client would
/// take it for an option: a list that came with the working copy, `-F/home/me/secret` behind a name
/// that is taken out, would make the secret the directory's property.
class IgnoreListGuard : public ToolRunner {
public:
    explicit IgnoreListGuard(ToolRunnerPtr runner) : runner_(std::move(runner)) {}

    ToolRun run(const ToolInvocation& invocation, std::stop_token stop) override;

private:
    ToolRunnerPtr runner_;
};

} // namespace quen::tools
