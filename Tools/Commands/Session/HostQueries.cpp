#include "Tools/Commands/Session/HostQueries.h"

#include "Tools/Terminal/InterruptWatch.h"

#include <algorithm>
#include <filesystem>
#include <iterator>
#include <system_error>

namespace quen::tools {

void runHostQuery(QuenSourceControlTaskOperation& query) {
    const InterruptWatch::Action action([&query] { query.cancel(); });
    query.run();
}

std::vector<String> absolutePaths(const std::vector<std::string>& paths) {
    std::vector<String> absolute;
    std::transform(paths.begin(), paths.end(), std::back_inserter(absolute),
                   [](const std::string& path) {
                       std::error_code ignored;
                       std::string plain =
                           std::filesystem::absolute(path, ignored).lexically_normal().string();
                       while (plain.size() > 1 && plain.ends_with('/')) {
                           plain.pop_back();
                       }
                       return String(plain);
                   });
    return absolute;
}

} // namespace quen::tools
