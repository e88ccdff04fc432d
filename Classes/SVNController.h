#pragma once

#include "QuenFoundation/QuenSourceControlProtocol.h"

namespace quen {

/// The provider: says of a request whether it needs authentication, whether it can be carried out
/// now, and which operation carries it out. Keeps no state; may be called from any thread.
class SVNController : public QuenSourceControlProtocol {
public:
    bool authenticationRequiredForRequest(const QuenSourceControlRequestPtr& request) override;

    /// A slot is always filled, also when the answer is yes.
    bool validateRequest(const QuenSourceControlRequestPtr& request, Error* error) override;

    /// Reports unmet preconditions as assertions and goes on. Null for a type that is not served.
    QuenSourceControlOperationPtr
    operationForRequest(const QuenSourceControlRequestPtr& request) override;
};

} // namespace quen
