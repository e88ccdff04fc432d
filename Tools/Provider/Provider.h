#pragma once

#include "QuenFoundation/QuenSourceControlProtocol.h"

#include <string>

namespace quen::tools {

/// The provider's module where no other is named: QUEN_PLUG_IN, or the one that lies beside the
/// program's libraries, in the build tree and where installed alike.
std::string defaultPlugInPath();

/// Loads the module at `path`, or the default one where that is empty. On failure null, with what
/// is wrong in `problem`.
QuenSourceControlProtocolPtr loadProviderOrExplain(const std::string& path, std::string& problem);

} // namespace quen::tools
