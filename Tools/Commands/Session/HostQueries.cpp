#include "Tools/Commands/Session/HostQueries.h"

#include "Host/Places/Locations.h"
#include "Tools/Terminal/InterruptWatch.h"

#include <algorithm>
#include <iterator>

namespace quen::tools {

void runHostQuery(QuenSourceControlTaskOperation& query) {
    const InterruptWatch::Action action([&query] { query.cancel(); });
    query.run();
}

std::vector<String> absolutePaths(const std::vector<std::string>& paths) {
    std::vector<String> absolute;
    std::transform(paths.begin(), paths.end(), std::back_inserter(absolute),
                   [](const std::string& path) { return String(absolutePath(path)); });
    return absolute;
}

} // namespace quen::tools
