#include "Host/ClassName.h"
#include "Host/ClientMessage.h"
#include "Host/RunContext.h"
#include "Host/TaskErrors.h"
#include "Host/WorkingCopyCleanup.h"
#include "QuenFoundation/QuenSourceControlFunctions.h"
#include "QuenFoundation/QuenSourceControlOperation.h"

#include <exception>
#include <utility>

namespace quen {

struct QuenSourceControlTaskOperation::TaskState {
    String launchPath;
    std::optional<StringArray> arguments;
    DataPtr data;
    RunFacts facts;
};

QuenSourceControlTaskOperation::QuenSourceControlTaskOperation()
    : task_(std::make_unique<TaskState>()) {}

QuenSourceControlTaskOperation::~QuenSourceControlTaskOperation() = default;

bool QuenSourceControlTaskOperation::initWithRequest(QuenSourceControlRequestPtr request) {
    return QuenSourceControlOperation::initWithRequest(std::move(request));
}

String QuenSourceControlTaskOperation::launchPath() const {
    return task_->launchPath;
}

void QuenSourceControlTaskOperation::setLaunchPath(String launchPath) {
    task_->launchPath = std::move(launchPath);
}

const std::optional<StringArray>& QuenSourceControlTaskOperation::arguments() const {
    return task_->arguments;
}

void QuenSourceControlTaskOperation::setArguments(std::optional<StringArray> arguments) {
    task_->arguments = std::move(arguments);
}

DataPtr QuenSourceControlTaskOperation::data() const {
    return task_->data;
}

void QuenSourceControlTaskOperation::setData(DataPtr data) {
    task_->data = std::move(data);
}

void QuenSourceControlTaskOperation::outputArrived(std::string_view /*piece*/) {}

void QuenSourceControlTaskOperation::parseData() {}

Error QuenSourceControlTaskOperation::errorFromErrorMessage(const String& message) {
    return genericError(message, task_->facts);
}

namespace {

/// What parsing the report gives as an error, exceptions included: nothing may throw past the host.
Error parsed(QuenSourceControlTaskOperation& operation) {
    try {
        operation.parseData();
        return operation.error();
    } catch (const std::exception& exception) {
        return taskError(TaskErrorFailed, String("The client's report could not be read: ").str() +
                                              exception.what());
    }
}

} // namespace

namespace {

ToolInvocation invocationOf(QuenSourceControlTaskOperation& operation, const RunContext& context) {
    return {.operationClass = classNameOf(operation),
            .launchPath = operation.launchPath(),
            .arguments = *operation.arguments(),
            .operation = &operation,
            .environment = context.environment(),
            .workingDirectory = context.workingDirectory(),
            .limits = context.limits(),
            .outputWatcher = [&operation, watcher = context.outputWatcher()](auto piece) {
                operation.outputArrived(piece);
                if (watcher) {
                    watcher(operation, piece);
                }
            }};
}

} // namespace

void QuenSourceControlTaskOperation::main() {
    if (request() == nullptr || error() || !arguments()) {
        return;
    }
    const RunContext context = RunContext::current();
    const ToolInvocation invocation = invocationOf(*this, context);
    const ToolRun run = context.toolRunner()->run(invocation, stopToken());
    const bool writes = writesWorkingCopy(request()->type());
    const Error interrupted = errorOfInterruptedRun(invocation, run, writes);
    if (run.end == RunEnd::couldNotStart) {
        setError(interrupted);
        return;
    }
    const ClientMessage message = messageOfRun(run);
    task_->facts = {run.exitStatus, run.signal, message.numbers};
    setData(run.output);
    const Error parseError = parsed(*this);
    const Error translated = message.text.isEmpty() ? Error() : errorFromErrorMessage(message.text);
    const Error error = interrupted
                            ? interrupted
                            : betterError(parseError, errorOfComplaint(translated, task_->facts));
    // A difference is the one result that is the output itself. What other clients print beside
    // reports is not their work, which was done when they ended.
    const bool needsAllOutput =
        !error && request()->type() == RequestTypeDiff && !result().isNothing();
    const Error ended = needsAllOutput ? errorOfCutOutput(run) : error;
    setError(run.signInFailure ? withSignInFailure(ended, *run.signInFailure, message.text)
                               : ended);
}

} // namespace quen
