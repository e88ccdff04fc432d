#pragma once

#include "Host/ToolRunner.h"

#include <string_view>
#include <utility>

namespace quen::tools {

/// Whether a sub-command, as it is typed, changes a working copy, a repository or a file: those
/// have `--dry-run`.
bool changesSomething(std::string_view command);

/// Runs the client where it only reads. Where it would change something, its command line is
/// printed on standard output instead, and the run counts as one that did well and said nothing.
class DryRunner : public ToolRunner {
public:
    explicit DryRunner(ToolRunnerPtr runner) : runner_(std::move(runner)) {}

    ToolRun run(const ToolInvocation& invocation, std::stop_token stop) override;

private:
    ToolRunnerPtr runner_;
};

} // namespace quen::tools
