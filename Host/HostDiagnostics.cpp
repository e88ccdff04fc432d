#include "Host/RunContext.h"
#include "QuenFoundation/QuenSourceControlManager.h"

namespace quen {

std::shared_ptr<MarlLogAspect> QuenSourceControlManager::sourceControlLogAspect() {
    return RunContext::current().logAspect();
}

void MarlAssertionFailureHandler(const MarlAssertionFailure& failure) {
    RunContext::current().assertionHandler()(failure);
}

} // namespace quen
