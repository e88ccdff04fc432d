#include "Host/ClassName.h"
#include "Host/ClientMessage.h"
#include "Host/HostServices.h"
#include "Host/TaskErrors.h"
#include "Host/WorkingCopyCleanup.h"
#include "QuenFoundation/QuenSourceControlFunctions.h"
#include "QuenFoundation/QuenSourceControlOperation.h"

#include <exception>
#include <mutex>
#include <utility>

namespace quen {

struct QuenSourceControlTaskOperation::TaskState {
    String launchPath;
    std::optional<StringArray> arguments;
    DataPtr data;
    RunFacts facts;

    std::mutex mutex;
    /// While the tool runs.
    std::shared_ptr<ToolCanceller> canceller;
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

void QuenSourceControlTaskOperation::cancel() {
    Operation::cancel();
    const std::lock_guard lock(task_->mutex);
    if (task_->canceller != nullptr) {
        task_->canceller->cancel();
    }
}

namespace {

/// Standard error as text: bytes that are no text still tell more than nothing.
String textOfErrors(const DataPtr& errors) {
    const String text = quensc_stringFromData(errors);
    return text.isNil() ? String(errors->bytes()) : text;
}

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

void QuenSourceControlTaskOperation::main() {
    if (error() || !arguments()) {
        return;
    }
    const ToolRunnerPtr runner = HostServices::shared().toolRunner();
    const std::shared_ptr<ToolCanceller> canceller = runner->makeCanceller();
    {
        const std::lock_guard lock(task_->mutex);
        task_->canceller = canceller;
    }
    if (isCancelled()) {
        canceller->cancel();
    }
    const ToolInvocation invocation{classNameOf(*this), launchPath(), *arguments(),
                                    [this](std::string_view piece) { outputArrived(piece); }};
    const ToolRun run = runner->run(invocation, *canceller);
    {
        const std::lock_guard lock(task_->mutex);
        task_->canceller = nullptr;
    }

    const Error interrupted =
        errorOfInterruptedRun(invocation, run, writesWorkingCopy(request()->type()));
    if (run.end == ToolEnd::couldNotStart) {
        setError(interrupted);
        return;
    }
    const ClientMessage message = readClientMessage(textOfErrors(run.errors).view());
    task_->facts = {run.exitStatus, run.signal, message.numbers};
    setData(run.output);
    const Error parseError = parsed(*this);
    Error translated = message.text.isEmpty() ? Error() : errorFromErrorMessage(message.text);
    if (!translated) {
        translated = errorOfSilentFailure(task_->facts);
    }
    setError(interrupted ? interrupted : betterError(parseError, translated));
}

} // namespace quen
