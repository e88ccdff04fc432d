#include "Host/Keeping/ItemInfo.h"

#include "Foundation/PathComponents.h"
#include "Host/Places/Locations.h"
#include "Host/RunContext.h"

#include <algorithm>
#include <filesystem>
#include <system_error>
#include <utility>

namespace quen {

namespace {

String directoryOfClient() {
    const String& said = RunContext::current().workingDirectory();
    std::error_code ignored;
    return said.isNil() ? String(std::filesystem::current_path(ignored).string()) : said;
}

} // namespace

std::map<std::string, InfoEntry> askItemInfo(const std::vector<std::string>& absolutePaths,
                                             const QueryRunner& run) {
    constexpr std::size_t atOnce = 500; // keeps the argument list within the system's limits
    std::map<std::string, InfoEntry> found;
    const String directory = directoryOfClient();
    for (std::size_t first = 0; first < absolutePaths.size(); first += atOnce) {
        StringArray arguments{"info", "--xml"};
        for (std::size_t i = first; i < std::min(absolutePaths.size(), first + atOnce); ++i) {
            arguments.emplace_back(closedClientPath(absolutePaths[i]));
        }
        const auto query = ClientCommand::makeQuery(std::move(arguments));
        run(*query);
        InfoFactsReader reader;
        reader.take(query->output()->bytes());
        reader.finish(); // an item that is gone ends the report early; the others count
        for (const InfoEntry& entry : reader.facts().entries) {
            found[absoluteClientPath(entry.path, directory)] = entry;
        }
    }
    return found;
}

std::string absoluteClientPath(const String& path, const String& directory) {
    if (path.hasPrefix("/") || directory.isEmpty() || isRepositoryURL(path.view())) {
        return path.str();
    }
    return path == "." ? directory.str()
                       : std::string(appendingPathComponent(directory.view(), path.view()).view());
}

} // namespace quen
