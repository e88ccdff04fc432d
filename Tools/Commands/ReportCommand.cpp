#include "Host/Keeping/FileWriter.h"
#include "Host/Places/Locations.h"
#include "Tools/Commands/Changes/Summaries.h"
#include "Tools/Commands/CommandLine/CommandLine.h"
#include "Tools/Commands/Places/SourceTreeFinder.h"
#include "Tools/Commands/Report/ReportPage.h"
#include "Tools/Commands/Report/ReportReader.h"
#include "Tools/Terminal/Times.h"

#include <iostream>
#include <memory>

namespace quen::tools {

namespace {

struct Options {
    CommonOptions common;
    LayoutOptions layout;
    ReportLimits limits;
    std::string path = ".";
    std::string output = "report.html";
    bool overwrites = false;
};

bool isForStandardOutput(const Options& options) {
    return options.output == "-";
}

/// Before anything is asked of a server.
int checkOutput(const Session& session, const Options& options) {
    const bool isThere = !isForStandardOutput(options) && isOnDisk(options.output);
    return isThere && !options.overwrites
               ? session
                     .fail("\"" + printable(options.output) +
                           "\" already exists; use --force to overwrite it.")
                     .status
               : ExitSuccess;
}

void tellDone(const ReportFacts& facts, const Options& options) {
    if (options.common.json) {
        Array leftOut = Array::empty();
        for (const std::string& text : facts.leftOut) {
            leftOut.append(String(text));
        }
        printJson(Dictionary{{"path", String(absolutePath(options.output))},
                             {"revisions", static_cast<std::int64_t>(facts.revisions.size())},
                             {"files", static_cast<std::int64_t>(facts.files)},
                             {"blamedFiles", static_cast<std::int64_t>(facts.ages.size())},
                             {"leftOut", leftOut}});
        return;
    }
    std::cout << "Wrote " << printable(options.output) << " ("
              << counted(facts.revisions.size(), "revision") << ", "
              << counted(facts.authors.size(), "author") << ").\n";
    for (const std::string& text : facts.leftOut) {
        std::cout << "Not in it: " << text << '\n';
    }
}

int runReportCommand(Session& session, const Options& options) {
    if (options.common.json && isForStandardOutput(options)) {
        return session.fail("--json tells of a file; it cannot be used with --output -.", ExitUsage)
            .status;
    }
    if (const int status = checkOutput(session, options); status != ExitSuccess) {
        return status;
    }
    const auto source = findSourceWithLayout(session, options.path, options.layout);
    if (!source) {
        return source.status();
    }
    const auto facts = readReport(session, *source, options.limits);
    if (!facts) {
        return facts.status();
    }
    const std::string page = reportPage(*facts, currentDate());
    if (isForStandardOutput(options)) {
        std::cout << page;
        return ExitSuccess;
    }
    const Error failure = writeFile(options.output, page,
                                    {.existing = options.overwrites ? FileWriter::Existing::replaced
                                                                    : FileWriter::Existing::refused,
                                     .link = FileWriter::Link::replaced,
                                     .mode = {},
                                     .isSynced = false});
    if (failure) {
        session.tell(failure);
        return ExitFailure;
    }
    tellDone(*facts, options);
    return ExitSuccess;
}

std::string complaintAboutCount(const std::string& word) {
    const bool isNumber = !word.empty() && word.size() < 8 &&
                          word.find_first_not_of("0123456789") == std::string::npos;
    return isNumber ? "" : "\"" + printable(word) + "\" is not a number.";
}

} // namespace

void addReportCommand(CommandLine& line) {
    auto options = std::make_shared<Options>();
    Subcommand command = line.add(
        "report", "Write an HTML page about a project's history: activity, authors, files, "
                  "branches, age of lines");
    command
        .option("-o,--output", options->output,
                "File to write (default: report.html); - is standard output")
        .named("FILE");
    command.flag("--force", options->overwrites, "Overwrite an existing file");
    command
        .option("-l,--limit", options->limits.revisions,
                "Take the last N revisions (default: 10000)")
        .checked(complaintAboutCount, "N");
    command
        .option("--blame", options->limits.blamedFiles,
                "Show the age of lines of N files, those that change most (default: 50)")
        .checked(complaintAboutCount, "N");
    command.argument("PATH", options->path, "Path or URL in the project (default: .)");
    options->layout.addTo(command);
    command.details(
        "The page is one file that needs no network. Charts can be filtered by author,\n"
        "text and time; it follows the browser's light or dark theme.");
    runInSession<Options>(command, options, runReportCommand);
}

} // namespace quen::tools
