#include "Tools/Console/RequestConsole.h"

#include "Host/ClassName.h"
#include "Host/RunContext.h"
#include "Tools/Console/ConsoleInput.h"
#include "Tools/Console/EffectsRecorder.h"
#include "Tools/Console/JsonInput.h"
#include "Tools/Console/RunRecorder.h"

#include <exception>
#include <memory>
#include <utility>

namespace quen::tools {

namespace {

OrderedJson describe(const RecordedRun& record) {
    OrderedJson json;
    json["operation"] = toJson(record.invocation.operationClass);
    json["arguments"] = toJson(std::optional(record.invocation.arguments));
    json["exitStatus"] =
        record.run.exitStatus ? OrderedJson(*record.run.exitStatus) : OrderedJson();
    json["signal"] = record.run.signal ? OrderedJson(*record.run.signal) : OrderedJson();
    json["stderr"] = toJson(String(record.run.errors->bytes()));
    return json;
}

OrderedJson describe(const MarlAssertionFailure& failure) {
    OrderedJson json;
    json["method"] = toJson(failure.method);
    json["file"] = toJson(failure.file);
    json["line"] = failure.line;
    json["format"] = toJson(failure.format);
    json["arguments"] = toJson(std::optional(failure.arguments));
    json["message"] = toJson(messageOf(failure));
    return json;
}

OrderedJson describe(const EffectsRecorder::LogLine& line) {
    OrderedJson json;
    json["level"] = line.level;
    json["text"] = toJson(line.text);
    return json;
}

template <typename Element> OrderedJson listToJson(const std::vector<Element>& elements) {
    OrderedJson json = OrderedJson::array();
    for (const Element& element : elements) {
        json.push_back(describe(element));
    }
    return json;
}

/// What the console tells of the operation that the provider made, which may be none.
void addOperation(OrderedJson& json, const QuenSourceControlOperation* operation) {
    const auto* const task = dynamic_cast<const QuenSourceControlTaskOperation*>(operation);
    json["operation"] = operation == nullptr ? OrderedJson() : toJson(classNameOf(*operation));
    json["launchPath"] = task == nullptr ? OrderedJson() : toJson(task->launchPath());
    json["arguments"] = task == nullptr ? OrderedJson() : toJson(task->arguments());
}

void addOutcome(OrderedJson& json, const QuenSourceControlOperation* operation) {
    const auto* const task = dynamic_cast<const QuenSourceControlTaskOperation*>(operation);
    json["result"] = operation == nullptr ? OrderedJson() : toJson(operation->result());
    json["error"] = operation == nullptr ? OrderedJson() : toJson(operation->error());
    json["dataReleased"] = task == nullptr || task->data() == nullptr;
}

RequestConsole::Answer requestError(const std::string& reason) {
    OrderedJson json;
    json["requestError"] = toJson(String(reason));
    return {std::move(json), {}};
}

/// An operation that has an error already is not run; one without arguments does not run itself.
void run(QuenSourceControlOperation& operation) {
    if (!operation.error()) {
        operation.run();
    }
}

} // namespace

RequestConsole::RequestConsole(QuenSourceControlProtocolPtr provider, ToolRunnerPtr runner,
                               Defaults defaults)
    : provider_(std::move(provider)), runner_(std::move(runner)), defaults_(defaults) {}

RequestConsole::Answer RequestConsole::serve(std::string_view text) {
    ConsoleInput input;
    try {
        input = decodeConsoleInput(text);
    } catch (const std::exception& error) {
        Answer answer = requestError(error.what());
        answer.inputError = error.what();
        return answer;
    }
    try {
        return {perform(std::move(input), {}).json, {}};
    } catch (const InputError& error) {
        return requestError(error.what());
    }
}

RequestConsole::Served RequestConsole::perform(ConsoleInput input, const std::stop_token& stop) {
    const auto replay =
        input.replay ? std::make_shared<PlaybackRunner>(std::move(*input.replay)) : nullptr;
    const auto recorder = std::make_shared<RunRecorder>(replay == nullptr ? runner_ : replay);
    const EffectsRecorder effects(recorder, input.logLevel.value_or(defaults_.logLevel));

    OrderedJson json;
    Error validationError;
    json["authenticationRequired"] = provider_->authenticationRequiredForRequest(input.request);
    json["valid"] = provider_->validateRequest(input.request, &validationError);
    json["validationError"] = toJson(validationError);
    const auto operation = provider_->operationForRequest(input.request);
    addOperation(json, operation.get());
    json["files"] = toJson(input.request->files());
    if (operation != nullptr && !input.dryRun.value_or(defaults_.dryRun)) {
        const std::stop_callback onStop(stop, [&] { operation->cancel(); });
        run(*operation);
    }
    if (replay != nullptr && replay->wasExhausted()) {
        throw InputError("replay: the operation started more runs than it holds");
    }
    json["runs"] = listToJson(recorder->runs());
    addOutcome(json, operation.get());
    json["assertions"] = listToJson(effects.assertions());
    json["log"] = listToJson(effects.log());
    return {std::move(json), operation};
}

} // namespace quen::tools
