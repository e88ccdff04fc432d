#include "Host/ClientRunner.h"

#include "Foundation/Format.h"
#include "Host/Process/Process.h"
#include "Host/RequestRefusal.h"
#include "QuenFoundation/QuenSourceControlOperation.h"

#include <chrono>
#include <utility>

namespace quen {

namespace {

String seconds(const std::optional<std::chrono::milliseconds>& limit) {
    const std::chrono::duration<double> duration = limit.value_or(std::chrono::milliseconds(0));
    return formatText("%.1f seconds", {duration.count()});
}

ProcessInvocation processOf(const ToolInvocation& invocation) {
    ProcessInvocation process;
    process.launchPath = invocation.launchPath;
    process.arguments = invocation.arguments;
    process.environment = invocation.environment;
    process.environment.emplace_back("LC_ALL", "C.UTF-8");
    process.environment.emplace_back("LANGUAGE", String()); // it would win over the locale
    process.workingDirectory = invocation.workingDirectory;
    process.limits = invocation.limits;
    process.uncountedTime = invocation.uncountedTime;
    process.outputWatcher = invocation.outputWatcher;
    return process;
}

String reasonOf(const ProcessOutcome& outcome, const RunLimits& limits) {
    switch (outcome.end) {
    case RunEnd::timedOut: return "its limit is " + seconds(limits.total).str();
    case RunEnd::idleTimedOut: return "it wrote nothing for " + seconds(limits.idle).str();
    case RunEnd::statusUnknown:
        return "its status was lost: this program ignores SIGCHLD, or reaps every child itself";
    case RunEnd::ended:
    case RunEnd::cancelled:
    case RunEnd::outputLost:
    case RunEnd::couldNotStart: break;
    }
    return outcome.reason;
}

Error refusalOf(const ToolInvocation& invocation) {
    const auto request =
        invocation.operation == nullptr ? nullptr : invocation.operation->request();
    return request == nullptr ? Error() : refusalOfRequest(*request);
}

} // namespace

ToolRun ClientRunner::run(const ToolInvocation& invocation, std::stop_token stop) {
    if (const Error refusal = refusalOf(invocation)) {
        return {.end = RunEnd::couldNotStart,
                .exitStatus = {},
                .signal = {},
                .output = std::make_shared<Data>(),
                .errors = std::make_shared<Data>(),
                .reason = refusal.localizedDescription()};
    }
    ProcessInvocation process = processOf(invocation);
    process.ownSession = !options_.keepsTerminal;
    process.endsWithHost = options_.endsWithHost;
    process.keepsOutput = options_.keepsOutput;
    ProcessOutcome outcome = runProcess(process, std::move(stop));
    return {.end = outcome.end,
            .exitStatus = outcome.exitStatus,
            .signal = outcome.signal,
            .output = std::move(outcome.output),
            .errors = std::move(outcome.errors),
            .reason = reasonOf(outcome, invocation.limits),
            .leftOutputOpen = outcome.leftOutputOpen};
}

} // namespace quen
