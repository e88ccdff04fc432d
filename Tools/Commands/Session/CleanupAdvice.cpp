#include "Tools/Commands/Session/CleanupAdvice.h"

#include "Foundation/ShellWord.h"
#include "Host/ClientCommand.h"
#include "Host/Facts/StatusFacts.h"
#include "Host/Places/Locations.h"
#include "Host/Places/SettingsFile.h"
#include "Host/TaskFailure.h"

#include <algorithm>
#include <filesystem>
#include <utility>

namespace quen::tools {

bool saysLocked(const Error& error) {
    return taskFailureOf(error) == TaskFailure::locked;
}

bool isLeftLocked(const std::string& path) {
    const std::filesystem::path top = topDirectoryOf(path);
    if (top.empty()) {
        return false;
    }
    StringArray arguments{"status", "--xml", "--depth", "empty", closedClientPath(top.string())};
    for (auto at = std::filesystem::absolute(path).lexically_normal();
         at != top && at != at.parent_path(); at = at.parent_path()) {
        arguments.push_back(closedClientPath(at.string()));
    }
    const auto query = ClientCommand::makeQuery(std::move(arguments));
    query->run();
    StatusFactsReader reader;
    reader.take(query->output()->bytes());
    reader.finish();
    const auto& entries = reader.facts().entries;
    return saysLocked(query->error()) ||
           std::any_of(entries.begin(), entries.end(),
                       [](const StatusEntry& entry) { return entry.isWorkingCopyLocked; });
}

std::string cleanupCommandFor(const std::string& path) {
    std::string top = topDirectoryOf(path).string();
    while (top.size() > 1 && top.ends_with('/')) {
        top.pop_back();
    }
    if (top.empty()) {
        return {};
    }
    const bool isHere = topDirectoryOf(".") == topDirectoryOf(path);
    return isHere ? "quen cleanup" : "quen cleanup " + shellWord(top);
}

} // namespace quen::tools
