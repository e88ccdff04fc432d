#pragma once

#include "Foundation/Export.h"
#include "Foundation/Value.h"
#include "QuenFoundation/QuenSourceControlPlugIn.h"

namespace quen {

/// The domain of the loader's errors.
QUEN_EXPORT extern const String QuenPlugInErrorDomain;

enum PlugInErrorCode : std::int64_t {
    /// There is no such file.
    PlugInErrorMissingFile = 1,
    /// The file is not a module that this system can load; the description gives its reason.
    PlugInErrorNotLoadable = 2,
    /// The module is not a source-control provider: it has no entry point.
    PlugInErrorMissingEntryPoint = 3,
    /// The module was built for another version of the contract.
    PlugInErrorWrongVersion = 4,
};

/// Loads a provider's module and makes a provider. The module stays loaded for the rest of the
/// process, because the provider's operations may outlive every place that could unload it.
///
/// On failure null, with the reason in `error`, which may be null. From any thread.
QUEN_EXPORT QuenSourceControlProtocolPtr loadProvider(const String& path, Error* error);

} // namespace quen
