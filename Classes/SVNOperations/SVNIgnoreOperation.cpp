#include "Classes/SVNOperations/SVNIgnoreOperation.h"

#include "Classes/SVNDiagnostics.h"
#include "Classes/SVNOperations/SVNPropGetOperation.h"
#include "QuenFoundation/QuenSourceControlConstants.h"

#include <exception>
#include <memory>
#include <utility>

namespace quen {

namespace {

QuenSourceControlRequestPtr requestForFile(const QuenSourceControlRequest& whole,
                                           const String& file) {
    Dictionary options = whole.options();
    options.set(QuenSourceControlRequestOptionIgnoreItem, "svn:ignore");
    auto request = std::make_shared<QuenSourceControlRequest>();
    request->initWithType(whole.type(), whole.sourceTree(), StringArray{file}, std::move(options));
    return request;
}

/// The texts speak of unignoring also when it was ignoring that failed: hosts show them as they
/// are.
Error wrappedError(const Error& error, const StringArray& files) {
    const bool isPlural = files.size() > 1;
    const String description =
        isPlural
            ? String("An error occurred trying to unignore the files.")
            : formatText("An error occurred trying to unignore the file \"%@\".", {files.front()});
    const String suggestion = isPlural ? "Check the files' ignore properties and try again."
                                       : "Check the file's ignore properties and try again.";
    return sourceControlError(-11, description,
                              {{QuenSourceControlUnderlyingErrorsKey, error},
                               {NSLocalizedRecoverySuggestionErrorKey, suggestion}});
}

/// Runs the query and the edit that it queues to their end.
void runOnQueue(OperationQueue& queue, const std::shared_ptr<SVNPropGetOperation>& query) {
    try {
        queue.addOperation(query);
        queue.waitUntilAllOperationsAreFinished();
    } catch (const std::exception&) {
        // The queue has no thread to run on: the query never runs, and its file fails.
        query->setError({QuenSourceControlErrorDomain, -11});
    }
}

} // namespace

void SVNIgnoreOperation::cancel() {
    const std::lock_guard lock(mutex_);
    if (_operationQueue != nullptr) {
        _operationQueue->cancel();
    }
    // Behind the queue: `main` takes this for a queue that starts nothing any more.
    Operation::cancel();
}

void SVNIgnoreOperation::setOperationQueue(OperationQueuePtr queue) {
    const std::lock_guard lock(mutex_);
    _operationQueue = std::move(queue);
    if (isCancelled() && _operationQueue != nullptr) {
        _operationQueue->cancel();
    }
}

/// Null where there can be no query.
std::shared_ptr<SVNPropGetOperation> SVNIgnoreOperation::runQuery(const String& file) {
    auto query = std::make_shared<SVNPropGetOperation>();
    if (!query->initWithRequest(requestForFile(*request(), file))) {
        return nullptr;
    }
    runOnQueue(*operationQueue(), query);
    if (isCancelled() && !query->error() && !query->wasSkipped()) {
        // Its edit may have been cut short. The next query is skipped, and says so.
        return runQuery(file);
    }
    return query;
}

void SVNIgnoreOperation::main() {
    setOperationQueue(OperationQueue::make());
    const StringArray files = request()->files().value_or(StringArray());
    Array results = Array::empty();
    Array errors = Array::empty();
    for (const String& file : files) {
        const auto query = runQuery(file);
        if (query == nullptr) {
            continue;
        }
        if (!query->result().isNothing()) {
            results.append(query->result());
        }
        if (query->error()) {
            errors.append(wrappedError(query->error(), files));
        }
    }
    setResult(std::move(results));
    if (errors.count() > 0) {
        setError({QuenSourceControlErrorDomain,
                  -1,
                  {{QuenSourceControlUnderlyingErrorsKey, std::move(errors)}}});
    }
}

} // namespace quen
