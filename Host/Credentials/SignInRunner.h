#pragma once

#include "Host/Credentials/Credentials.h"
#include "Host/ToolRunner.h"

namespace quen {

/// Runs the client by another runner, and signs in for it: where a server does not let a run in for
/// want of an answer, the answer is had from the credentials and the very run made again.
///
/// The watcher hears of a failed run's first words nothing, where nothing but those came; otherwise
/// it hears the pieces of each run.
class SignInRunner : public ToolRunner {
public:
    /// Neither may be null.
    SignInRunner(ToolRunnerPtr runner, CredentialsPtr credentials)
        : runner_(std::move(runner)), credentials_(std::move(credentials)) {}

    ToolRun run(const ToolInvocation& invocation, std::stop_token stop) override;

private:
    ToolRunnerPtr runner_;
    CredentialsPtr credentials_;
};

/// Whether the client's command can turn to a server at all.
bool mayNeedServer(const StringArray& arguments);

} // namespace quen
