#include "Classes/SVNOperations/SVNIgnoreOperation.h"

#include "Classes/SVNDiagnostics.h"
#include "Classes/SVNOperations/SVNPropGetOperation.h"
#include "QuenFoundation/QuenSourceControlConstants.h"
#include "QuenFoundation/QuenSourceControlErrorCode.h"

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
    return sourceControlError(QuenSourceControlErrorNotIgnored, description,
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
        query->setError({QuenSourceControlErrorDomain, QuenSourceControlErrorNotIgnored});
    }
}

} // namespace

void SVNIgnoreOperation::cancel() {
    // Before the queue: a client that is ended by this must find the whole cancelled.
    Operation::cancel();
    const std::lock_guard lock(mutex_);
    if (_operationQueue != nullptr) {
        _operationQueue->cancel();
    }
}

void SVNIgnoreOperation::setOperationQueue(OperationQueuePtr queue) {
    const std::lock_guard lock(mutex_);
    _operationQueue = std::move(queue);
}

std::shared_ptr<SVNPropGetOperation> SVNIgnoreOperation::runQuery(OperationQueue& queue,
                                                                  const String& file) const {
    auto query = std::make_shared<SVNPropGetOperation>();
    query->initWithRequest(requestForFile(*request(), file));
    runOnQueue(queue, query);
    return query;
}

/// How an edit ends is not looked at, unless the whole was cancelled: then it may have been ended,
/// or never have run.
Error SVNIgnoreOperation::errorOf(const SVNPropGetOperation& query) const {
    const bool looksAtEdit = isCancelled() && !query.error() && query.queuedEdit() != nullptr;
    return looksAtEdit ? query.queuedEdit()->error() : query.error();
}

void SVNIgnoreOperation::main() {
    if (request() == nullptr) {
        return;
    }
    const OperationQueuePtr queue = OperationQueue::make();
    setOperationQueue(queue);
    if (isCancelled()) {
        queue->cancel(); // nobody had the queue to cancel it
    }
    const StringArray files = request()->files().value_or(StringArray());
    Array results = Array::empty();
    Array errors = Array::empty();
    for (const String& file : files) {
        const auto query = runQuery(*queue, file);
        if (!query->result().isNothing()) {
            results.append(query->result());
        }
        if (const Error error = errorOf(*query)) {
            errors.append(wrappedError(error, files));
        }
    }
    setResult(std::move(results));
    if (errors.count() > 0) {
        setError({QuenSourceControlErrorDomain,
                  QuenSourceControlErrorSeveral,
                  {{QuenSourceControlUnderlyingErrorsKey, std::move(errors)}}});
    }
}

} // namespace quen
