#pragma once

#include "Foundation/Export.h"
#include "MarlFoundation/MarlLogAspect.h"

#include <memory>

namespace quen {

/// The host's source-control manager, as far as a provider needs it.
class QUEN_EXPORT QuenSourceControlManager {
public:
    /// The aspect that everything about source control is logged to where the caller is: hosts may
    /// have several, so it is asked for anew rather than kept. Never null. From any thread.
    static std::shared_ptr<MarlLogAspect> sourceControlLogAspect();
};

} // namespace quen
