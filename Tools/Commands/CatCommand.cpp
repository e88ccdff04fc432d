#include "Host/Places/Locations.h"
#include "QuenFoundation/QuenSourceControlConstants.h"
#include "QuenFoundation/QuenSourceControlFunctions.h"
#include "Tools/Commands/CommandLine/CommandLine.h"
#include "Tools/Commands/Content/FetchFile.h"
#include "Tools/Commands/Content/StreamFile.h"
#include "Tools/Commands/Places/EarlierRevisions.h"

#include <iostream>
#include <memory>

namespace quen::tools {

namespace {

struct Options {
    CommonOptions common;
    RevisionRange revision;
    bool pegs = false;
    std::string path;
};

/// What the repository holds, not what was made of it here since.
FileToFetch fileFor(const Options& options) {
    const bool isLocal = !isRepositoryURL(options.path);
    const bool asksForBase = isLocal && !options.revision.isGiven();
    return {options.path, asksForBase ? "BASE" : options.revision.start, options.pegs};
}

int printContent(const Session& session, const std::string& content, const Options& options) {
    if (!options.common.json) {
        std::cout.write(content.data(), static_cast<std::streamsize>(content.size()));
        return ExitSuccess;
    }
    const String text = quensc_stringFromData(std::make_shared<Data>(content));
    if (text.isNil()) {
        const Explained failure =
            session.fail("\"" + printable(options.path) +
                         "\" is not text, and JSON holds nothing else. Without --json it is "
                         "printed as it is.");
        return failure.status;
    }
    printJson(Array{Dictionary{{QuenSourceControlOperationContentKey, text}}});
    return ExitSuccess;
}

int tellDirectory(const Session& session, const Options& options) {
    return session
        .fail("\"" + printable(options.path) +
              "\" is not a file. `quen list` shows what a directory holds.")
        .status;
}

int printFetched(Session& session, const SourceTree& source, const Options& options) {
    const auto file = fetchFile(session, source, fileFor(options));
    if (!file) {
        return file.status();
    }
    const auto content = contentOf(*file);
    return content ? printContent(session, *content, options) : tellDirectory(session, options);
}

/// Where nothing came, the provider is asked as well, which fails in words of its own.
int printStreamed(Session& session, const SourceTree& source, const Options& options) {
    const StreamedFile file = streamFile(source, fileFor(options));
    if (file.failed == nullptr) {
        return ExitSuccess;
    }
    if (file.isDirectory) {
        return tellDirectory(session, options);
    }
    return file.hasBegun || session.wasStopped(*file.failed)
               ? session.finish(*file.failed)
               : printFetched(session, source, options);
}

int runCatCommand(Session& session, const Options& asked) {
    const auto source = findSource(session, asked.path);
    const auto revision =
        source ? resolveRevisions(session, *source, asked.path, asked.revision, asked.pegs)
               : Outcome<RevisionRange>(source.explained());
    if (!revision) {
        return revision.status();
    }
    Options options = asked;
    options.revision = *revision;
    return options.common.json ? printFetched(session, *source, options)
                               : printStreamed(session, *source, options);
}

} // namespace

void addCatCommand(CommandLine& line) {
    auto options = std::make_shared<Options>();
    Subcommand command = line.add("cat", "Print a file as of a revision");
    const Parameter revision = addRevisionOption(
        command, options->revision, false, "Revision to print (default: BASE, or HEAD of a URL)");
    command.flag("--peg", options->pegs, "Look the path up in revision REV, to reach deleted items")
        .needs(revision);
    command.argument("FILE", options->path, "Path or URL").required();
    runInSession<Options>(command, options, runCatCommand);
}

} // namespace quen::tools
