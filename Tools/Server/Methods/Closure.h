#pragma once

#include "Tools/Server/Methods/Services.h"

#include <stop_token>
#include <string>
#include <vector>

namespace quen::tools::server {

/// What the working copy holds at and below paths, from a fresh report.
std::vector<StatusItem> freshItems(const Services& services, const std::stop_token& stop,
                                   const std::string& root, const std::vector<std::string>& paths,
                                   Ran& ran);

/// Whether a commit sends the item.
bool isSent(const StatusItem& item);

/// Items below the paths that a commit of these would send too, without being among them.
std::vector<std::string> takenAlong(const Services& services, const std::stop_token& stop,
                                    const std::string& root, const std::vector<std::string>& paths);

} // namespace quen::tools::server
