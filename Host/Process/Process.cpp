#include "Host/Process/Process.h"

#include "Host/Process/ProcessRun.h"
#include "Host/Process/Spawn.h"

#include <cerrno>
#include <fcntl.h>
#include <system_error>
#include <utility>

namespace quen {

namespace {

/// Stands for the output where there was no memory even to hold nothing.
constinit const Data nothing;

SpawnResult noDescriptors(std::string_view what) {
    const int error = errno;
    return {-1, error, std::string(what) + std::generic_category().message(error)};
}

/// The host's ends of the pipes go to `output` and `errors`, the child's are closed on return: a
/// stream ends when nobody can write to it any more.
SpawnResult startChild(const ProcessInvocation& invocation, ChildStream& output,
                       ChildStream& errors) {
    const FileDescriptor input =
        aboveStandard(FileDescriptor(::open("/dev/null", O_RDONLY | O_CLOEXEC)));
    if (!input.isOpen()) {
        return noDescriptors("/dev/null: ");
    }
    std::optional<Pipe> outputPipe = makePipe();
    std::optional<Pipe> errorPipe = outputPipe ? makePipe() : std::nullopt;
    if (!errorPipe) {
        return noDescriptors("pipe: ");
    }
    SpawnResult result = spawn(
        invocation, {input.number(), outputPipe->writeEnd.number(), errorPipe->writeEnd.number()});
    output.open(std::move(outputPipe->readEnd));
    errors.open(std::move(errorPipe->readEnd));
    return result;
}

void refuse(ProcessOutcome& outcome, const SpawnResult& result) {
    outcome.error = result.error;
    outcome.reason = result.reason.isNil() ? String(std::generic_category().message(result.error))
                                           : result.reason;
}

void run(const ProcessInvocation& invocation, std::stop_token stop, const RunClock& clock,
         RunClock::TimePoint start, ProcessOutcome& outcome) {
    const auto outputData = std::make_shared<Data>();
    const auto errorData = std::make_shared<Data>();
    outcome.output = outputData;
    outcome.errors = errorData;
    const CancelWatch cancel(std::move(stop));
    if (cancel.isCancelled()) {
        outcome.end = RunEnd::cancelled;
        return;
    }
    if (cancel.error() != 0) {
        return refuse(outcome, {-1, cancel.error(), nullptr});
    }
    ChildStream output(outputData, invocation.outputWatcher, invocation.keepsOutput);
    ChildStream errors(errorData, invocation.errorWatcher);
    const SpawnResult result = startChild(invocation, output, errors);
    if (result.pid < 0) {
        return refuse(outcome, result);
    }
    ChildProcess child(result.pid, invocation.ownSession);
    ProcessRun(invocation, cancel, child, output, errors, clock, start).finish(outcome);
}

} // namespace

ProcessOutcome runProcess(const ProcessInvocation& invocation, std::stop_token stop,
                          const RunClock& clock) noexcept {
    const auto start = clock.now();
    ProcessOutcome outcome;
    try {
        run(invocation, std::move(stop), clock, start, outcome);
    } catch (const std::exception&) { // no memory; nothing throws once the child runs
        outcome.error = outcome.error != 0 ? outcome.error : ENOMEM;
    }
    if (outcome.errors == nullptr) {
        outcome.output = outcome.errors = DataPtr(DataPtr(), &nothing);
    }
    outcome.duration = std::chrono::duration_cast<std::chrono::microseconds>(clock.now() - start);
    return outcome;
}

} // namespace quen
