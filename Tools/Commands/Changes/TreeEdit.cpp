#include "Tools/Commands/Changes/TreeEdit.h"

#include "Host/Places/Locations.h"
#include "Tools/Terminal/SafeText.h"

#include <filesystem>

namespace quen::tools {

namespace {

/// The path that an item gets in the directory that it goes into.
std::string pathIn(const std::string& directory, const std::string& source) {
    std::filesystem::path path(source);
    if (!path.has_filename()) {
        path = path.parent_path();
    }
    const std::string name =
        isRepositoryURL(source) ? directoryNameFor(source) : path.filename().string();
    return (std::filesystem::path(directory) / name).string();
}

} // namespace

void TreeEditOptions::addTo(Subcommand& command, const std::string& help) {
    command.arguments("PATH", places, help).required();
}

int runTreeEdit(const Session& session, const TreeEditOptions& options, const TreeEdit& edit) {
    if (options.places.size() < 2) {
        return session.fail("Where to? Give the new path, or a directory, last.", ExitUsage).status;
    }
    const std::string destination = options.places.back();
    const std::vector<std::string> sources(options.places.begin(), options.places.end() - 1);
    const bool goesInto = isDirectory(destination);
    if (sources.size() > 1 && !goesInto) {
        return session
            .fail("\"" + printable(destination) +
                  "\" is not a directory, and several items need one to go into.")
            .status;
    }
    int status = ExitSuccess;
    for (const std::string& source : sources) {
        if (status == ExitSuccess) {
            status = edit(source, goesInto ? pathIn(destination, source) : destination);
        }
    }
    return status;
}

} // namespace quen::tools
