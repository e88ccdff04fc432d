#pragma once

#include "QuenFoundation/QuenSourceControlOperation.h"

#include <memory>
#include <mutex>

namespace quen {

class SVNPropGetOperation;

/// Adds the request's files to the ignore lists of the directories that hold them, or takes them
/// out, one file after another: each query reads the list as the previous file's edit left it. It
/// runs no client itself; the queries and the edits that they queue do, on a queue of its own.
///
/// `result` is always set: the results of the queries, of which there are none. A query that fails
/// adds to `error`, and the other files are still served; how an edit ends is not looked at.
///
/// Cancelled, it ends the client that is running and starts no other: each file whose query or edit
/// failed or did not run adds that one's error.
class SVNIgnoreOperation : public QuenSourceControlOperation {
public:
    void main() override;
    void cancel() override;

    /// The queue that the queries and the edits run on; made anew by `main`, null before. Not to be
    /// read while `main` runs on another thread.
    const OperationQueuePtr& operationQueue() const { return _operationQueue; }
    void setOperationQueue(OperationQueuePtr queue);

private:
    std::shared_ptr<SVNPropGetOperation> runQuery(OperationQueue& queue, const String& file) const;
    Error errorOf(const SVNPropGetOperation& query) const;

    std::mutex mutex_; // between `cancel` and the change of the queue
    OperationQueuePtr _operationQueue;
};

} // namespace quen
