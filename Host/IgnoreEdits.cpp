#include "Host/IgnoreEdits.h"

#include "Foundation/Data.h"
#include "Foundation/Lines.h"
#include "Foundation/PathComponents.h"
#include "Foundation/PegPath.h"
#include "Host/ClientMessage.h"
#include "Host/IgnoreLists.h"
#include "Host/TaskErrors.h"
#include "QuenFoundation/QuenSourceControlOperation.h"

#include <algorithm>
#include <chrono>
#include <filesystem>
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

bool isEdit(const String& argument) {
    return argument == "propset" || argument == "propdel";
}

bool holdsLine(std::string_view text, std::string_view line) {
    const auto lines = linesOf(text);
    return std::find(lines.begin(), lines.end(), line) != lines.end();
}

/// A directory as the plug-in hands it to the client, without what is there for the client alone.
std::string_view withoutClosingPeg(std::string_view directory) {
    const std::string_view plain =
        directory.substr(0, directory.size() - (directory.empty() ? 0 : 1));
    return directory.ends_with('@') && needsPegClosed(plain) ? plain : directory;
}

/// The name that an operation's query is made for.
String nameIn(const ToolInvocation& invocation) {
    const auto request =
        invocation.operation == nullptr ? nullptr : invocation.operation->request();
    const auto files = request == nullptr ? std::nullopt : request->files();
    return files && !files->empty() ? String(lastPathComponent(files->front().view())) : String();
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

ToolRun IgnoreEditRunner::runQuery(const ToolInvocation& invocation, const std::stop_token& stop) {
    constexpr std::chrono::seconds longestWait{30};
    edited_ = {};
    edited_.directory = invocation.arguments.empty() ? String() : invocation.arguments.back();
    const std::string directory(withoutClosingPeg(edited_.directory.view()));
    const std::filesystem::path place =
        invocation.workingDirectory.isNil()
            ? std::filesystem::path(directory)
            : std::filesystem::path(invocation.workingDirectory.str()) / directory;
    edited_.lock = DirectoryLock::waitFor(place.string(), longestWait, stop);
    edited_.name = nameIn(invocation);
    ToolRun run = runner_->run(invocation, stop);
    edited_.list = ignoreListIn(run.output->bytes()).value_or(StringArray());
    return run;
}

StringArray IgnoreEditRunner::withKeptEntries(const StringArray& arguments) const {
    const auto command = std::find_if(arguments.begin(), arguments.end(), isEdit);
    if (command == arguments.end() || arguments.back() != edited_.directory) {
        return arguments;
    }
    const bool isRemoval = *command == "propdel";
    std::string list = isRemoval ? std::string() : (command + 2)->str();
    const std::string written = list;
    for (const String& entry : edited_.list) {
        if (entry != edited_.name && !holdsLine(written, entry.view())) {
            list.append(list.empty() ? "" : "\n").append(entry.view());
        }
    }
    StringArray kept(arguments.begin(), command);
    if (isRemoval && list.empty()) {
        return arguments;
    }
    kept.insert(kept.end(), {"propset", "svn:ignore", list, edited_.directory});
    return kept;
}

ToolRun IgnoreEditRunner::run(const ToolInvocation& invocation, std::stop_token stop) {
    const bool isQuery = invocation.operationClass == "SVNPropGetOperation";
    if (isQuery) {
        return runQuery(invocation, stop);
    }
    ToolInvocation edit = invocation;
    edit.arguments = withKeptEntries(invocation.arguments);
    ToolRun run = runGuarded(edit, stop);
    if (!isQuery) {
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

} // namespace quen
