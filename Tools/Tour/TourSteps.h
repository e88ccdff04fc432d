#pragma once

#include "Tools/Tour/TourProject.h"
#include "Tools/Tour/TourStage.h"

namespace quen::tools {

/// The journey of one small project through every request type that the contract serves. The
/// current directory must be the project's; it is the working copy afterwards. Throws
/// std::filesystem::filesystem_error when the disk fails.
void walkTour(const TourProject& project, TourStage& stage);

} // namespace quen::tools
