#include "Tools/Server/WorkingCopies/FactsReading.h"

#include "Host/Facts/InfoFacts.h"
#include "QuenFoundation/QuenSourceControlConstants.h"
#include "Tools/Server/Runs/Requests.h"
#include "Tools/Server/WorkingCopies/Discovery.h"

#include <filesystem>

namespace quen::tools::server {

Ran readFacts(Runs& runs, const std::string& root, WorkingCopyFacts& facts,
              const RunOptions& options) {
    const std::string stamp = databaseStampOf(root);
    InfoFactsReader reader;
    RunOptions watched = options;
    watched.watcher = [&](std::string_view piece) { reader.take(piece); };
    Ran ran = runs.perform(makeRequest(RequestTypeInfo, placeOf(root), {root}), watched);
    static_cast<void>(reader.finish());
    if (!ran.isWell() || reader.facts().entries.empty()) {
        return ran;
    }
    const InfoEntry& entry = reader.facts().entries.front();
    facts = {root,
             entry.url.str(),
             entry.repositoryRoot.str(),
             entry.repositoryUUID.str(),
             entry.revision,
             {},
             false,
             stamp};
    const RepositoryLayout layout = layoutOf(root, facts.url, facts.repositoryRoot);
    const Ran branch = runs.perform(
        makeRequest(RequestTypeCurrentBranch, placeWithLayout(root, facts.repositoryRoot, layout)),
        options);
    const Array* const records =
        branch.operation == nullptr ? nullptr : branch.operation->result().array();
    if (records != nullptr && records->count() > 0) {
        const String name =
            (*(*records)[0].dictionary())[QuenSourceControlOperationNameKey].stringValue();
        facts.isTrunk = name == QuenSourceControlTrunkBranchName;
        facts.branch =
            facts.isTrunk ? String(std::filesystem::path(layout.trunk).filename().string()) : name;
    }
    return ran;
}

} // namespace quen::tools::server
