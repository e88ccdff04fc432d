#include "Host/Text.h"
#include "QuenFoundation/QuenSourceControlFunctions.h"
#include "Tools/Commands/CommandLine/CommandLine.h"
#include "Tools/Commands/Content/FetchFile.h"
#include "Tools/Commands/History/BlameText.h"
#include "Tools/Commands/History/IgnoredRevisions.h"
#include "Tools/Commands/Places/EarlierRevisions.h"
#include "Tools/Commands/Session/ShowRecords.h"

#include <memory>
#include <utility>

namespace quen::tools {

namespace {

struct Options {
    CommonOptions common;
    RevisionRange revisions;
    IgnoredRevisions ignored;
    bool isInLines = false;
    std::string path;
};

/// The lines of the revision that the report is about, which it does not hold itself. Without a
/// revision that is what stands in the working copy, changes of today included. Explained where
/// they cannot be fetched.
Outcome<std::string> textFor(Session& session, const SourceTree& source, const Options& options) {
    const RevisionRange& revisions = options.revisions;
    const auto file =
        fetchFile(session, source,
                  {options.path, revisions.isRange() ? revisions.end : revisions.start, false});
    if (!file) {
        return file.explained();
    }
    auto content = contentOf(*file);
    if (!content) {
        return session.fail("The text of \"" + printable(options.path) + "\" cannot be read.");
    }
    const String text = quensc_stringFromData(std::make_shared<Data>(*content));
    return text.isNil() ? Outcome(std::move(*content)) : Outcome(text.str());
}

/// What was read is shown also where the client failed in the end.
int readLines(Session& session, const SourceTree& source, const Options& options,
              BlameLines& lines) {
    const int status =
        readBlame(session, blameRequest(source, options.path, options.revisions), lines);
    return status == ExitSuccess
               ? passOverIgnored(session, source, {options.path, options.revisions},
                                 options.ignored, lines)
               : status;
}

int showLines(Session& session, const SourceTree& source, const Options& options) {
    BlameLines lines;
    const int status = readLines(session, source, options, lines);
    if (lines.count() == 0) {
        return status;
    }
    const auto text = textFor(session, source, options);
    const std::string content = text ? *text : std::string();
    if (options.isInLines) {
        printBlameInLines(lines, content);
    } else {
        printBlame(lines, content, {options.revisions.isRange()}, options.common.palette());
    }
    return text ? status : text.status();
}

/// The operation's own records, unless they are not the whole truth.
int showJson(Session& session, const SourceTree& source, const Options& options) {
    if (options.ignored.numbers.empty()) {
        return showRecords(session,
                           session.perform(blameRequest(source, options.path, options.revisions)),
                           [](const Array& /*records*/) {});
    }
    BlameLines lines;
    const int status = readLines(session, source, options, lines);
    printJson(status == ExitSuccess ? blameRecords(lines) : Value());
    return status;
}

int runBlameCommand(Session& session, const Options& asked) {
    const auto source = findSource(session, asked.path);
    const auto revisions = source ? resolveRevisions(session, *source, asked.path, asked.revisions)
                                  : Outcome<RevisionRange>(source.explained());
    if (!revisions) {
        return revisions.status();
    }
    Options options = asked;
    options.revisions = *revisions;
    return options.common.json && !options.isInLines ? showJson(session, *source, options)
                                                     : showLines(session, *source, options);
}

/// `--before N`: the file as it was before that revision.
std::string takeBefore(const std::string& word, RevisionRange& revisions) {
    const auto changes = parseChanges(word);
    if (!changes || changes->numbers.size() != 1 || changes->numbers.front() < 2) {
        return "\"" + word + "\" is not a revision number greater than 1.";
    }
    revisions = {std::to_string(changes->numbers.front() - 1), ""};
    return {};
}

} // namespace

void addBlameCommand(CommandLine& line) {
    auto options = std::make_shared<Options>();
    Subcommand command =
        line.add("blame", "Show who last changed each line of a file, when and in which revision");
    const Parameter revision =
        addRevisionOption(command, options->revisions, true,
                          "Blame the file as of a revision, or only the changes of A:B");
    command
        .option(
            "--before", "N",
            [options](const std::string& word) { return takeBefore(word, options->revisions); },
            "Blame the file as it was before revision N: who wrote what N replaced")
        .excludes(revision);
    options->ignored.addTo(command);
    command.flag("--jsonl", options->isInLines, "Print one JSON object per line of the file");
    command.argument("FILE", options->path, "Path or URL").required();
    runInSession<Options>(command, options, runBlameCommand);
}

} // namespace quen::tools
