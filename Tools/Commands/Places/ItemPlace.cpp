#include "Tools/Commands/Places/ItemPlace.h"

#include "Foundation/PercentCoding.h"
#include "Host/ClientCommand.h"
#include "Host/Places/Locations.h"
#include "Tools/Commands/Session/HostQueries.h"

namespace quen::tools {

namespace {

/// The first name below a directory; empty where the URL does not lie below it.
std::string nameBelow(std::string_view url, const std::string& directory) {
    if (directory.empty() || !isBelow(url, directory)) {
        return {};
    }
    const std::string_view below = url.substr(directory.size() + 1);
    return percentDecoded(below.substr(0, below.find('/')));
}

} // namespace

std::optional<InfoEntry> infoOf(const std::string& location) {
    const std::string place = isRepositoryURL(location) ? location : absolutePath(location);
    const auto info = ClientCommand::make({"info", "--xml"}, {place});
    runHostQuery(*info);
    if (info->error()) {
        return std::nullopt;
    }
    InfoFactsReader reader;
    reader.take(info->output()->bytes());
    const Error broken = reader.finish();
    InfoFacts facts = reader.takeFacts();
    return broken || facts.entries.empty() ? std::nullopt
                                           : std::optional(std::move(facts.entries.front()));
}

std::string branchNameOf(std::string_view url, const RepositoryLayout& layout) {
    if (isAtOrBelow(url, layout.trunk)) {
        return "trunk";
    }
    if (std::string name = nameBelow(url, layout.branches); !name.empty()) {
        return name;
    }
    const std::string tag = nameBelow(url, tagsBeside(layout.branches));
    return tag.empty() ? "" : "tag " + tag;
}

} // namespace quen::tools
