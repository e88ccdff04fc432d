#pragma once

#include "Tools/Server/Runs/Runs.h"
#include "Tools/Server/WorkingCopies/WorkingCopy.h"

#include <string>

namespace quen::tools::server {

/// Asks the client what the working copy with that top directory is. `facts` stays as it is where
/// the client cannot tell; its branch stays unknown where only that cannot be found out.
Ran readFacts(Runs& runs, const std::string& root, WorkingCopyFacts& facts,
              const RunOptions& options);

} // namespace quen::tools::server
