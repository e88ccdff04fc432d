#include "Host/Places/SettingsFile.h"
#include "Tools/Commands/Changes/LocalEdit.h"
#include "Tools/Commands/Changes/PathsByStatus.h"
#include "Tools/Commands/CommandLine/CommandLine.h"
#include "Tools/Commands/Places/ItemPlace.h"

#include <algorithm>
#include <filesystem>
#include <memory>
#include <system_error>

namespace quen::tools {

namespace {

const LocalEdit addition{RequestTypeAdd, "Added", "add"};

bool isDirectoryInWorkingCopy(const std::string& path) {
    std::error_code ignored;
    const auto kind = std::filesystem::symlink_status(path, ignored).type();
    return kind == std::filesystem::file_type::directory && !topDirectoryOf(path).empty() &&
           infoOf(path).has_value();
}

/// A directory under version control stands for what is new in it, but for what is ignored.
Outcome<std::vector<std::string>> whatIsNew(const Session& session,
                                            const std::vector<std::string>& paths) {
    std::vector<std::string> found;
    for (const std::string& path : paths) {
        if (!isDirectoryInWorkingCopy(path)) {
            found.push_back(path);
            continue;
        }
        const auto below = pathsWithStatus(session, "unversioned", path);
        if (!below) {
            return below;
        }
        found.insert(found.end(), below->begin(), below->end());
    }
    return found;
}

bool hasControlCharacter(const std::string& path) {
    return std::any_of(path.begin(), path.end(),
                       [](char c) { return static_cast<unsigned char>(c) < 0x20 || c == 0x7F; });
}

/// Takes out the names that no repository takes, on which the client would end with the rest not
/// added, and tells of them. Whether there were any.
bool dropUnusable(const Session& session, std::vector<std::string>& paths) {
    for (const std::string& path : paths) {
        if (hasControlCharacter(path)) {
            session.tell("\"" + printable(path) +
                         "\" cannot be added: its name holds a control character. Rename it.");
        }
    }
    return std::erase_if(paths, hasControlCharacter) > 0;
}

int runAddCommand(Session& session, const LocalEditOptions& options) {
    const bool isByStatus = options.paths.empty();
    auto paths = whatIsNew(session, isByStatus ? std::vector<std::string>{"."} : options.paths);
    if (!paths) {
        return paths.status();
    }
    const bool isAnyLeft = dropUnusable(session, *paths);
    const int status = editByStatus(session, addition, options, *paths,
                                    isByStatus ? "unversioned" : std::string());
    return status == ExitSuccess && isAnyLeft ? static_cast<int>(ExitFailure) : status;
}

} // namespace

void addAddCommand(CommandLine& line) {
    const auto options = std::make_shared<LocalEditOptions>();
    Subcommand command = line.add("add", "Put files and directories under version control");
    options->addOptionalTo(command,
                           "Files or directories; of a directory under version control, all that "
                           "is new in it (default: all that is new here, after a question)");
    runInSession<LocalEditOptions>(command, options, runAddCommand);
}

} // namespace quen::tools
