#include "Tools/Commands/Places/BranchLocation.h"

#include "Host/Places/Locations.h"

namespace quen::tools {

std::string branchNameSaid(const std::string& word) {
    return word.starts_with("./-") ? word.substr(2) : word;
}

Outcome<String> branchLocation(Session& session, const LayoutOptions& layout,
                               const std::string& place, const std::string& word) {
    const std::string branch = branchNameSaid(word);
    if (isRepositoryURL(branch) || isBelowRoot(branch)) {
        return closedClientPath(branch);
    }
    if (!isBranchName(branch)) {
        return session.fail("\"" + printable(branch) +
                            "\" is not a branch: give its name, a URL or ^/NAME.");
    }
    const auto source = findSourceWithLayout(session, place, layout);
    if (!source) {
        return source.explained();
    }
    if (branch == "trunk") {
        return closedClientPath(source->repository->trunkLocation().absoluteString().str());
    }
    return String(source->repository->branchesLocation().absoluteString().str() + "/" +
                  branchNameInURL(branch).str());
}

} // namespace quen::tools
