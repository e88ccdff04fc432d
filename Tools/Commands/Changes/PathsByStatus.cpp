#include "Tools/Commands/Changes/PathsByStatus.h"

#include "Host/Places/Locations.h"
#include "Host/Plans/Plans.h"
#include "Tools/Commands/Changes/Change.h"
#include "Tools/Commands/Changes/Losses.h"
#include "Tools/Commands/Changes/Summaries.h"
#include "Tools/Commands/Content/StatusItem.h"
#include "Tools/Commands/Session/HostQueries.h"
#include "Tools/Commands/Session/Records.h"

#include <filesystem>
#include <system_error>

namespace quen::tools {

namespace {

/// As it would be typed here.
std::string typedPath(const String& path) {
    std::error_code ignored;
    const auto here = std::filesystem::current_path(ignored);
    const std::string relative =
        std::filesystem::path(path.str()).lexically_relative(here).string();
    return relative.empty() || relative.starts_with("..") ? path.str() : relative;
}

} // namespace

Outcome<std::vector<std::string>> pathsWithStatus(const Session& session, const std::string& word,
                                                  const std::string& directory) {
    LocalState state = localStateOf(absolutePaths({directory}), runHostQuery);
    if (state.error) {
        return Losses::explain(session, state.error);
    }
    std::vector<StatusEntry> entries = std::move(state.changes);
    entries.insert(entries.end(), state.unversioned.begin(), state.unversioned.end());
    sortByPath(entries);
    std::vector<std::string> paths;
    String last;
    for (const StatusEntry& entry : entries) {
        const bool isBelowLast = !last.isNil() && isBelow(entry.path.view(), last.view());
        if (entry.item == word && !isBelowLast) {
            paths.push_back(typedPath(entry.path));
            last = entry.path;
        }
    }
    return paths;
}

int editByStatus(Session& session, const LocalEdit& edit, const LocalEditOptions& options,
                 const std::vector<std::string>& paths, const std::string& word) {
    if (paths.empty()) {
        return tellNothingToDo(session, "Nothing to " + edit.toDo + ".");
    }
    Confirmation confirmation("According to the status:", capitalised(edit.toDo) + " " +
                                                              counted(paths.size(), edit.noun) +
                                                              "?");
    for (const std::string& path : word.empty() ? std::vector<std::string>() : paths) {
        confirmation.add(word, shownPath(path));
    }
    if (const int status = confirmation.obtain(session, options.isSure); status != ExitSuccess) {
        return status;
    }
    LocalEditOptions named = options;
    named.paths = paths;
    return runLocalEdit(session, edit, named);
}

} // namespace quen::tools
