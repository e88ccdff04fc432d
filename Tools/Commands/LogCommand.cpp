#include "Foundation/Lines.h"
#include "Host/Places/Locations.h"
#include "QuenFoundation/QuenSourceControlConstants.h"
#include "Tools/Commands/CommandLine/CommandLine.h"
#include "Tools/Commands/Places/RevisionArguments.h"
#include "Tools/Commands/Places/SourceTreeFinder.h"
#include "Tools/Commands/Session/Records.h"
#include "Tools/Commands/Session/ShowRecords.h"
#include "Tools/Terminal/Pager.h"
#include "Tools/Terminal/StatusWords.h"
#include "Tools/Terminal/Table.h"
#include "Tools/Terminal/Times.h"

#include <charconv>
#include <cstdint>
#include <memory>
#include <sstream>

namespace quen::tools {

namespace {

struct Options {
    CommonOptions common;
    RevisionRange revisions;
    std::int64_t limit = 0;
    bool stopsOnCopy = false;
    bool showsFiles = false;
    bool pegs = false;
    std::string path;
};

Dictionary requestOptions(const Options& options) {
    Dictionary request = Dictionary::empty();
    if (options.limit > 0) {
        request.set(QuenSourceControlRequestOptionLogOutputLimit, options.limit);
    }
    request.set(QuenSourceControlRequestOptionLogStopOnBranching, options.stopsOnCopy);
    request.set(QuenSourceControlRequestOptionLogOutputFilesChanged, options.showsFiles);
    request.set(QuenSourceControlRequestOptionSupplyDirectRevision, options.pegs);
    return request;
}

QuenSourceControlRequestPtr requestFor(const Options& options, const SourceTree& source) {
    // Without a path the history is that of the directory that the client runs in.
    const bool isOfAll = options.path.empty();
    auto request = makeRequest(isOfAll ? RequestTypeLogAll : RequestTypeLog, source,
                               isOfAll ? StringArray() : StringArray{clientPath(options.path)},
                               requestOptions(options));
    request->setStartingRevision(startingRevisionFor(options.revisions.start));
    if (options.revisions.isRange()) {
        request->setEndingRevision(options.revisions.end);
    }
    return request;
}

void printFiles(std::ostream& out, const Dictionary& files, const Palette& palette) {
    Table table;
    for (const Dictionary::Entry& file : files) {
        const std::int64_t* const status = file.value.integer();
        const auto words =
            wordsForStatus(status == nullptr ? 0 : static_cast<std::uint32_t>(*status));
        const StatusWord word = words.empty() ? StatusWord{"changed"} : words.front();
        table.add({{"  "}, {word.text, word.style}, {printable(file.key.view())}});
    }
    if (!table.isEmpty()) {
        out << '\n';
        table.print(out, palette);
    }
}

void printRecord(std::ostream& out, const Dictionary& record, const Palette& palette) {
    out << changeLine(record, palette, currentDate()) << '\n';
    const String message = record[QuenSourceControlOperationMessageKey].stringValue();
    if (!message.isEmpty()) {
        out << '\n';
    }
    for (const std::string_view line : linesOf(message.view())) {
        out << (line.empty() ? "" : "    ") << printableLine(line) << '\n';
    }
    if (const Dictionary* const files = record[QuenSourceControlOperationFilesKey].dictionary()) {
        printFiles(out, *files, palette);
    }
}

void printForPeople(const Array& records, const Options& options) {
    const Palette palette = options.common.palette();
    std::ostringstream out;
    for (const Value& record : records) {
        out << (&record == records.begin() ? "" : "\n");
        printRecord(out, *record.dictionary(), palette);
    }
    printPaged(out.str());
}

int runLogCommand(Session& session, const Options& options) {
    const auto source = findSource(session, options.path.empty() ? "." : options.path);
    if (!source) {
        return source.status();
    }
    const auto operation = session.perform(requestFor(options, *source));
    return showRecords(session, operation,
                       [&](const Array& records) { printForPeople(records, options); });
}

/// What is wrong with a limit; the empty text where it is good.
std::string complaintAboutLimit(const std::string& text) {
    std::int64_t limit = 0;
    const char* const end = text.data() + text.size();
    const auto read = std::from_chars(text.data(), end, limit);
    const bool isGood = read.ec == std::errc() && read.ptr == end && limit > 0;
    return isGood ? "" : "\"" + text + "\" is not a number of revisions (at least 1).";
}

} // namespace

void addLogCommand(CommandLine& line) {
    auto options = std::make_shared<Options>();
    Subcommand command = line.add("log", "Show the history of a file or directory");
    const Parameter revision =
        addRevisionOption(command, options->revisions, true, "Revision, or range of revisions A:B");
    const Parameter path = command.argument("PATH", options->path, "Path or URL (default: .)");
    command.option("-l,--limit", options->limit, "Show at most N revisions")
        .checked(complaintAboutLimit);
    command.flag("--stop-on-copy", options->stopsOnCopy,
                 "Stop at the revision that created the item by copying");
    command.flag("-f,--files", options->showsFiles, "Also show the changed files of each revision");
    command.flag("--peg", options->pegs, "Look the path up in revision REV, to reach deleted items")
        .needs(path)
        .needs(revision);
    runInSession<Options>(command, options, runLogCommand);
}

} // namespace quen::tools
