#include "Host/ClientRunner.h"

#include "Foundation/Format.h"
#include "Host/Process/Process.h"

namespace quen {

namespace {

class ClientCanceller : public ToolCanceller {
public:
    void cancel() override { process.cancel(); }

    ProcessCanceller process;
};

String seconds(const std::optional<std::chrono::milliseconds>& limit) {
    const std::chrono::duration<double> duration = limit.value_or(std::chrono::milliseconds(0));
    return formatText("%.1f seconds", {duration.count()});
}

using Watcher = std::function<void(std::string_view)>;

/// Both, one after the other; either may be empty.
Watcher watcherOf(const Watcher& first, const Watcher& second) {
    if (!first || !second) {
        return first ? first : second;
    }
    return [first, second](std::string_view piece) {
        first(piece);
        second(piece);
    };
}

ToolEnd endOf(ProcessEnd end) {
    switch (end) {
    case ProcessEnd::cancelled: return ToolEnd::cancelled;
    case ProcessEnd::timedOut: return ToolEnd::timedOut;
    case ProcessEnd::fellSilent: return ToolEnd::fellSilent;
    case ProcessEnd::outputLost:
    case ProcessEnd::statusUnknown: return ToolEnd::failed;
    case ProcessEnd::couldNotStart: return ToolEnd::couldNotStart;
    case ProcessEnd::exited:
    case ProcessEnd::signalled: break;
    }
    return ToolEnd::ended;
}

} // namespace

std::shared_ptr<ToolCanceller> ClientRunner::makeCanceller() {
    return std::make_shared<ClientCanceller>();
}

ToolRun ClientRunner::run(const ToolInvocation& invocation, ToolCanceller& canceller) {
    ProcessInvocation process;
    process.launchPath = invocation.launchPath;
    process.arguments = invocation.arguments;
    // A language list would win over the locale.
    process.environment = {{"LC_ALL", "C.UTF-8"}, {"LANGUAGE", String()}};
    process.ownSession = !options_.keepsTerminal;
    process.totalLimit = options_.totalLimit;
    process.silenceLimit = options_.silenceLimit;
    process.politeness = options_.politeness;
    process.outputWatcher = watcherOf(invocation.outputWatcher, options_.outputWatcher);

    ProcessOutcome outcome = runProcess(process, dynamic_cast<ClientCanceller&>(canceller).process);
    String reason = outcome.reason;
    if (outcome.end == ProcessEnd::timedOut) {
        reason = "its limit is " + seconds(options_.totalLimit).str();
    } else if (outcome.end == ProcessEnd::fellSilent) {
        reason = "it wrote nothing for " + seconds(options_.silenceLimit).str();
    } else if (outcome.end == ProcessEnd::statusUnknown) {
        reason = "its status was lost: this program ignores SIGCHLD, or reaps every child itself";
    }
    return {.end = endOf(outcome.end),
            .exitStatus = outcome.exitStatus,
            .signal = outcome.signal,
            .output = std::move(outcome.output),
            .errors = std::move(outcome.errors),
            .reason = reason};
}

} // namespace quen
