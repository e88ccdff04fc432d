#include "Foundation/PathComponents.h"
#include "Host/Keeping/FileWriter.h"
#include "Host/Places/Locations.h"
#include "MarlFoundation/MarlFilePath.h"
#include "QuenFoundation/QuenSourceControlConstants.h"
#include "Tools/Commands/CommandLine/CommandLine.h"
#include "Tools/Commands/Content/FetchFile.h"
#include "Tools/Commands/Places/EarlierRevisions.h"

#include <filesystem>
#include <iostream>
#include <memory>
#include <system_error>

namespace quen::tools {

namespace {

namespace fs = std::filesystem;

struct Options {
    CommonOptions common;
    RevisionRange revision;
    bool pegs = false;
    bool overwrites = false;
    std::string path;
    std::string target;
};

/// Where the file goes; the name that it has where it comes from, unless another is given.
fs::path targetFor(const Options& options, const FetchedFile& file) {
    const fs::path target = options.target.empty() ? "." : options.target;
    std::error_code error;
    return fs::is_directory(target, error) ? target / file.path.filename() : target;
}

/// Whole or not at all: a file is written beside its place and renamed into it. A link in its place
/// is replaced, never followed. What is not a file, such as a link, is moved.
std::error_code put(const fs::path& from, const fs::path& to, bool overwrites) {
    std::error_code error;
    if (fs::is_regular_file(fs::symlink_status(from, error))) {
        const Error failure = copyFile(from.string(), to.string(),
                                       {.existing = overwrites ? FileWriter::Existing::replaced
                                                               : FileWriter::Existing::refused,
                                        .link = FileWriter::Link::replaced,
                                        .mode = {}});
        // The code of such an error is the system's.
        return failure ? std::error_code(static_cast<int>(failure.code()), std::generic_category())
                       : std::error_code();
    }
    fs::rename(from, to, error);
    if (error == std::errc::cross_device_link) {
        fs::copy(from, to, fs::copy_options::recursive | fs::copy_options::copy_symlinks, error);
    }
    return error;
}

void printTarget(const fs::path& target, const Options& options) {
    if (options.common.json) {
        const String path = absolutePath(target.string());
        printJson(Array{Dictionary{
            {QuenSourceControlOperationPathKey, MarlFilePath::filePathForPathString(path)}}});
        return;
    }
    std::cout << "Exported to " << printable(target.lexically_normal().string()) << '\n';
}

int place(const Session& session, const FetchedFile& file, const Options& options) {
    const fs::path target = targetFor(options, file);
    const std::string shown = "\"" + printable(target.lexically_normal().string()) + "\"";
    std::error_code ignored;
    if (!options.overwrites &&
        fs::symlink_status(target, ignored).type() != fs::file_type::not_found) {
        session.tell(shown + " already exists; use --force to overwrite it.");
        return ExitFailure;
    }
    if (options.common.dryRun) {
        std::cout << "Would write " << shown << ".\n";
        return ExitSuccess;
    }
    if (const std::error_code error = put(file.path, target, options.overwrites)) {
        session.tell(shown + " cannot be written: " + error.message() + ".");
        return ExitFailure;
    }
    printTarget(target, options);
    return ExitSuccess;
}

int runExportCommand(Session& session, const Options& options) {
    const auto source = findSource(session, options.path);
    if (!source) {
        return source.status();
    }
    const auto revision =
        resolveRevisions(session, *source, options.path, options.revision, options.pegs);
    if (!revision) {
        return revision.status();
    }
    const auto file = fetchFile(session, *source, {options.path, revision->start, options.pegs});
    return file ? place(session, *file, options) : file.status();
}

} // namespace

void addExportCommand(CommandLine& line) {
    auto options = std::make_shared<Options>();
    Subcommand command = line.add("export", "Write a file as of a revision to another place");
    const Parameter revision =
        addRevisionOption(command, options->revision, false,
                          "Revision to export (default: the file in the working copy, or HEAD of a "
                          "URL)");
    command.flag("--peg", options->pegs, "Look the path up in revision REV, to reach deleted items")
        .needs(revision);
    command.flag("--force", options->overwrites, "Overwrite an existing file");
    command.argument("FILE", options->path, "Path or URL").required();
    command.argument("TARGET", options->target, "File or directory to write to (default: .)");
    runInSession<Options>(command, options, runExportCommand);
}

} // namespace quen::tools
