#include "Tools/Commands/Places/MissingPaths.h"

#include "Host/Places/Locations.h"
#include "Host/Plans/Plans.h"
#include "Tools/Commands/Session/ErrorReason.h"
#include "Tools/Commands/Session/HostQueries.h"

#include <algorithm>
#include <iterator>

namespace quen::tools {

namespace {

bool isOrHolds(const std::string& path, const StatusEntry& entry) {
    return isAtOrBelow(absolutePath(entry.path.str()), absolutePath(path));
}

} // namespace

std::vector<std::string> missingAmong(const std::vector<std::string>& paths,
                                      const std::vector<StatusEntry>& entries) {
    std::vector<std::string> missing;
    std::copy_if(paths.begin(), paths.end(), std::back_inserter(missing),
                 [&](const std::string& path) {
                     return !isRepositoryURL(path) && !isOnDisk(path) &&
                            std::none_of(entries.begin(), entries.end(),
                                         [&](const auto& entry) { return isOrHolds(path, entry); });
                 });
    return missing;
}

std::vector<std::string> missingAmong(const std::vector<std::string>& paths) {
    const std::vector<std::string> suspects = missingAmong(paths, {});
    if (suspects.empty()) {
        return {};
    }
    return missingAmong(suspects, localStateOf(absolutePaths(suspects), runHostQuery).changes);
}

int tellOfMissing(const Session& session, const std::vector<std::string>& missing, int status) {
    for (const std::string& path : missing) {
        if (!isOnDisk(path)) {
            session.tell(sentenceOnMissingPath(path));
            status = status == ExitSuccess ? static_cast<int>(ExitFailure) : status;
        }
    }
    return status;
}

} // namespace quen::tools
