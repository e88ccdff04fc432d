#include "Host/Embedding/OperationStart.h"

#include "Foundation/Format.h"
#include "Host/RunContext.h"
#include "Host/TaskFailure.h"
#include "QuenFoundation/QuenSourceControlRequestFacts.h"

#include <memory>
#include <string_view>
#include <utility>

namespace quen {

namespace {

std::nullptr_t refuse(Error* error, Error reason) {
    if (error != nullptr) {
        *error = std::move(reason);
    }
    return nullptr;
}

Error notServed(const QuenSourceControlRequest& request) {
    return {
        QuenSourceControlTaskErrorDomain,
        TaskErrorCouldNotStart,
        {{NSLocalizedDescriptionKey, formatText("The provider does not serve requests of type %ld.",
                                                {std::int64_t{request.type()}})}}};
}

/// The current context with the listener beside the watcher that it has.
RunContext contextWith(std::function<void(std::size_t)> progress) {
    const RunContext context = RunContext::current();
    if (progress == nullptr) {
        return context;
    }
    return context.withOutputWatcher(
        [progress = std::move(progress), inner = context.outputWatcher(), bytes = std::size_t{0}](
            const QuenSourceControlOperation& operation, std::string_view piece) mutable {
            if (inner) {
                inner(operation, piece);
            }
            bytes += piece.size();
            try {
                progress(bytes);
            } catch (...) { // NOLINT(bugprone-empty-catch): as promised
            }
        });
}

/// Cancels an operation as long as it has not ended.
class StopWatch {
public:
    StopWatch(std::stop_token stop, std::weak_ptr<Operation> operation)
        : callback_(std::move(stop), Cancel{std::move(operation)}) {}

private:
    struct Cancel {
        std::weak_ptr<Operation> operation;
        void operator()() const {
            if (const auto alive = operation.lock()) {
                alive->cancel();
            }
        }
    };
    std::stop_callback<Cancel> callback_;
};

QuenSourceControlOperationPtr prepare(const QuenSourceControlProtocolPtr& provider,
                                      const QuenSourceControlRequestPtr& request,
                                      OperationListeners listeners, Error* error) {
    Error problem;
    if (!provider->validateRequest(request, &problem)) {
        return refuse(error, problem);
    }
    const RunContext::Scope scope(contextWith(std::move(listeners.progress)));
    auto operation = provider->operationForRequest(request);
    if (operation == nullptr) {
        return refuse(error, notServed(*request));
    }
    if (operation->error()) {
        return refuse(error, operation->error());
    }
    auto watch = std::make_shared<StopWatch>(std::move(listeners.stop), operation);
    operation->setCompletion(
        [watch, completion = std::move(listeners.completion)](Operation& ended) mutable {
            watch.reset();
            if (completion) {
                completion(static_cast<QuenSourceControlOperation&>(ended));
            }
        });
    return operation;
}

} // namespace

QuenSourceControlOperationPtr startOperation(const QuenSourceControlProtocolPtr& provider,
                                             const QuenSourceControlRequestPtr& request,
                                             OperationQueue& queue, OperationListeners listeners,
                                             Error* error) {
    auto operation = prepare(provider, request, std::move(listeners), error);
    if (operation != nullptr) {
        queue.addOperation(operation);
    }
    return operation;
}

QuenSourceControlOperationPtr runOperation(const QuenSourceControlProtocolPtr& provider,
                                           const QuenSourceControlRequestPtr& request,
                                           OperationListeners listeners, Error* error) {
    auto operation = prepare(provider, request, std::move(listeners), error);
    if (operation != nullptr) {
        operation->run();
    }
    return operation;
}

} // namespace quen
