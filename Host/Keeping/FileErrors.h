#pragma once

#include "Foundation/Export.h"
#include "Foundation/Value.h"

#include <string_view>

namespace quen {

/// The domain of what goes wrong with files. The code is the system's number (`errno`), the
/// description names the file and gives the system's reason: `"/tmp/a.c" could not be written: No
/// space left on device.`
QUEN_EXPORT extern const String FileErrorDomain;

/// `what` says what failed: `could not be written`.
QUEN_EXPORT Error fileError(int number, std::string_view path, std::string_view what);

} // namespace quen
