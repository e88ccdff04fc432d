#include "Host/IgnoreEdits.h"

#include "Foundation/Data.h"
#include "Foundation/PathComponents.h"
#include "Host/ClientMessage.h"
#include "Host/TaskErrors.h"

#include <algorithm>
#include <iterator>
#include <memory>

namespace quen {

namespace {

/// Why the list cannot be written; nil where it can, and for other runs.
String objectionTo(const StringArray& arguments) {
    const auto command = std::find(arguments.begin(), arguments.end(), "propset");
    if (std::distance(command, arguments.end()) < 4) {
        return {};
    }
    const String& list = *(command + 2);
    const String& directory = *(command + 3);
    if (!list.hasPrefix("-")) {
        return {};
    }
    return "the list of ignored names of \"" + directory.str() +
           "\" would begin with -, which the client takes for an option; another name is put in "
           "front with svn propedit svn:ignore";
}

/// How a client run failed; nil where it did not.
Error errorOf(const ToolInvocation& invocation, const ToolRun& run) {
    if (const Error interrupted = errorOfInterruptedRun(invocation, run, true)) {
        return interrupted;
    }
    const ClientMessage message = readClientMessage(run.errors->bytes());
    const RunFacts facts{run.exitStatus, run.signal, message.numbers};
    const Error error = genericError(message.text, facts);
    return error ? error : errorOfSilentFailure(facts);
}

} // namespace

ToolRun IgnoreEditRunner::runGuarded(const ToolInvocation& invocation,
                                     const std::stop_token& stop) {
    const String objection = objectionTo(invocation.arguments);
    if (objection.isNil()) {
        return runner_->run(invocation, stop);
    }
    return {.end = RunEnd::couldNotStart,
            .exitStatus = {},
            .signal = {},
            .output = std::make_shared<Data>(),
            .errors = std::make_shared<Data>(),
            .reason = objection};
}

ToolRun IgnoreEditRunner::run(const ToolInvocation& invocation, std::stop_token stop) {
    ToolRun run = runGuarded(invocation, stop);
    if (invocation.operationClass != "SVNPropGetOperation") {
        const Error error = errorOf(invocation, run);
        const std::lock_guard lock(mutex_);
        error_ = error_ ? error_ : error;
    }
    return run;
}

Error IgnoreEditRunner::error() const {
    const std::lock_guard lock(mutex_);
    return error_;
}

std::string problemOfIgnoredName(const std::string& path, RequestType type) {
    std::string name(lastPathComponent(path));
    if (name.find('@') != std::string::npos) {
        // It would be closed for the client, and get into the list like that.
        std::replace(name.begin(), name.end(), '@', '?');
        return "holds an @, which cannot be written to the list of ignored names. The pattern \"" +
               name + "\" matches it.";
    }
    if (name.starts_with('-') && type == RequestTypeIgnore) {
        return "begins with -, which would be taken for an option. The pattern \"[-]" +
               name.substr(1) + "\" matches it.";
    }
    return {};
}

} // namespace quen
