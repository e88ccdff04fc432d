#include "Tools/Commands/Places/BranchLocation.h"

#include "Host/Places/Locations.h"

namespace quen::tools {

std::string branchNameSaid(const std::string& word) {
    return word.starts_with("./-") ? word.substr(2) : word;
}

std::optional<String> branchLocation(Session& session, const CommonOptions& common,
                                     const LayoutOptions& layout, const std::string& place,
                                     const std::string& word) {
    const std::string branch = branchNameSaid(word);
    if (isRepositoryURL(branch) || branch.starts_with("^/")) {
        return closedClientPath(branch);
    }
    if (!isBranchName(branch)) {
        session.tell("\"" + printable(branch) + "\" is no branch: give its name, a URL or ^/NAME.");
        return std::nullopt;
    }
    const auto source = SourceTreeFinder(session, common).findWithLayout(place, layout);
    if (!source) {
        return std::nullopt;
    }
    if (branch == "trunk") {
        return closedClientPath(source->repository->trunkLocation().absoluteString().str());
    }
    return String(source->repository->branchesLocation().absoluteString().str() + "/" +
                  branchNameInURL(branch).str());
}

} // namespace quen::tools
