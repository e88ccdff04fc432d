#pragma once

#include "Foundation/Export.h"
#include "Foundation/OperationQueue.h"
#include "QuenFoundation/QuenSourceControlProtocol.h"

#include <cstddef>
#include <functional>
#include <stop_token>

namespace quen {

/// What somebody who starts an operation wants to hear of it. All are called on the thread that
/// runs the operation: an environment hands them on to its event loop. What they throw is
/// swallowed.
struct OperationListeners {
    /// How many bytes the client has written so far, each time that more of them came.
    std::function<void(std::size_t bytes)> progress = {};
    /// Called once for each operation that was started: when it has ended, when it was cancelled
    /// before it began, and when its queue dropped it. `result` and `error` are final.
    std::function<void(QuenSourceControlOperation& operation)> completion = {};
    /// Cancels the operation, also while it waits in its queue.
    std::stop_token stop = {};
};

/// Makes the operation for a request, in the context that is current, and adds it to the queue.
///
/// Null where nothing is started, and `error`, where given, says why: the request is not valid now,
/// the provider serves no such type, or it refused the request. The completion is not called then.
/// From any thread.
QUEN_EXPORT QuenSourceControlOperationPtr startOperation(
    const QuenSourceControlProtocolPtr& provider, const QuenSourceControlRequestPtr& request,
    OperationQueue& queue, OperationListeners listeners, Error* error = nullptr);

/// The same on the calling thread: returns when it has ended.
QUEN_EXPORT QuenSourceControlOperationPtr runOperation(const QuenSourceControlProtocolPtr& provider,
                                                       const QuenSourceControlRequestPtr& request,
                                                       OperationListeners listeners,
                                                       Error* error = nullptr);

} // namespace quen
