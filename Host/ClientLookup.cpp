#include "Host/ClientLookup.h"

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <system_error>
#include <unistd.h>

namespace quen {

namespace {

/// A directory may be called `svn` too.
bool isProgram(const std::string& path) {
    std::error_code ignored;
    return std::filesystem::is_regular_file(path, ignored) && access(path.c_str(), X_OK) == 0;
}

} // namespace

String variableOf(const EnvironmentChanges& changes, const char* name) {
    const auto found = std::find_if(changes.rbegin(), changes.rend(),
                                    [name](const auto& change) { return change.first == name; });
    return found != changes.rend() ? found->second
                                   : String(std::getenv(name)); // NOLINT(concurrency-mt-unsafe)
}

String directoryOfClient(std::string_view path) {
    while (!path.empty()) {
        const std::size_t end = std::min(path.find(':'), path.size());
        const std::string directory(path.substr(0, end));
        if (directory.starts_with('/') && isProgram(directory + "/svn")) {
            return directory;
        }
        path.remove_prefix(std::min(end + 1, path.size()));
    }
    return "/usr/bin";
}

} // namespace quen
