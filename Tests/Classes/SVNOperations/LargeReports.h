#pragma once

#include <cstddef>
#include <string>

namespace quen {

/// Reports as the client prints them, of any size and always the same: a history of revisions with
/// the paths that each changed, and the lines of one file.
std::string logReportOf(std::size_t revisions);
std::string blameReportOf(std::size_t lines);

} // namespace quen
