#pragma once

#include "Foundation/Export.h"
#include "QuenFoundation/QuenSourceControlOperation.h"

#include <memory>

namespace quen {

/// What a provider answers. Implemented by the provider, called by the host. Each answer depends on
/// the request alone; nothing throws.
///
/// Threads: may be called from any thread, also at once.
class QUEN_EXPORT QuenSourceControlProtocol {
public:
    QuenSourceControlProtocol() = default;
    QuenSourceControlProtocol(const QuenSourceControlProtocol&) = delete;
    QuenSourceControlProtocol& operator=(const QuenSourceControlProtocol&) = delete;
    virtual ~QuenSourceControlProtocol() = default;

    /// Whether carrying out the request needs credentials.
    virtual bool authenticationRequiredForRequest(const QuenSourceControlRequestPtr& request) = 0;

    /// Whether the request can be carried out now. A slot is filled with an error whatever the
    /// answer: look at the answer alone to decide. `error` may be null.
    virtual bool validateRequest(const QuenSourceControlRequestPtr& request, Error* error) = 0;

    /// A new operation for the request, the caller's own; null where none serves it. The request's
    /// file list may be rewritten.
    virtual QuenSourceControlOperationPtr
    operationForRequest(const QuenSourceControlRequestPtr& request) = 0;
};

using QuenSourceControlProtocolPtr = std::shared_ptr<QuenSourceControlProtocol>;

} // namespace quen
