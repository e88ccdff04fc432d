#include "Tools/Commands/Session/CleanupAdvice.h"

#include "Foundation/ShellWord.h"
#include "Host/Places/Locations.h"
#include "Host/Places/SettingsFile.h"
#include "Host/TaskFailure.h"

namespace quen::tools {

bool saysLocked(const Error& error) {
    return taskFailureOf(error) == TaskFailure::locked;
}

std::string cleanupCommandFor(const std::string& path) {
    std::string top = topDirectoryOf(path).string();
    while (top.size() > 1 && top.ends_with('/')) {
        top.pop_back();
    }
    return top.empty() ? std::string() : "svn cleanup " + shellWord(closedClientPath(top).view());
}

} // namespace quen::tools
