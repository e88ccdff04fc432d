#pragma once

#include "Foundation/Export.h"
#include "Foundation/String.h"

#include <vector>

namespace quen {

/// A programming error that a provider met: what it was asked for should never have been asked.
struct MarlAssertionFailure {
    /// The object that met it; null in a class message. Only to tell objects apart.
    const void* receiver = nullptr;
    /// The message it was serving, such as `operationForRequest:`.
    String selector;
    /// That message with its class, such as `-[SVNController operationForRequest:]`.
    String method;
    /// The source: `Classes/SVNController` or `Classes/SVNOperations`.
    String file;
    int line = 0;
    /// See formatText. Filled by the first of `arguments`.
    String format;
    /// What fills the format, then what else the form of the assertion carries; the text of the
    /// condition comes last.
    std::vector<String> arguments;
};

/// Reports the failure. Implemented by the host. Whether it returns is the host's own matter; where
/// it does, the provider goes on as if the check had passed. From any thread.
QUEN_EXPORT void MarlAssertionFailureHandler(const MarlAssertionFailure& failure);

} // namespace quen
