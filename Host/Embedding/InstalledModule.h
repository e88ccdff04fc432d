#pragma once

#include "Foundation/Export.h"
#include "Foundation/String.h"

namespace quen {

/// The path of the provider's module that was built or installed with this library, or with the
/// program that it is a part of: it is found from where that lies, so it holds in a moved tree.
/// Absolute; whether the file is there is told by `loadProvider`. From any thread.
QUEN_EXPORT String installedModule();

} // namespace quen
