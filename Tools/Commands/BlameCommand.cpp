#include "Foundation/Lines.h"
#include "Host/Places/Locations.h"
#include "QuenFoundation/QuenSourceControlConstants.h"
#include "QuenFoundation/QuenSourceControlFunctions.h"
#include "Tools/Commands/CommandLine/CommandLine.h"
#include "Tools/Commands/Content/FetchFile.h"
#include "Tools/Commands/Places/RevisionArguments.h"
#include "Tools/Commands/Session/Records.h"
#include "Tools/Commands/Session/ShowRecords.h"
#include "Tools/Terminal/Pager.h"
#include "Tools/Terminal/Table.h"
#include "Tools/Terminal/Times.h"

#include <memory>
#include <sstream>

namespace quen::tools {

namespace {

struct Options {
    CommonOptions common;
    RevisionRange revisions;
    std::string path;
};

QuenSourceControlRequestPtr requestFor(const Options& options, const SourceTree& source) {
    auto request = makeRequest(RequestTypeBlame, source, {clientPath(options.path)});
    request->setStartingRevision(startingRevisionFor(options.revisions.start));
    if (options.revisions.isRange()) {
        request->setEndingRevision(options.revisions.end);
    }
    return request;
}

/// The lines of the revision that the report is about, which it does not hold itself. Without a
/// revision that is what stands in the working copy, changes of today included.
class FileText {
public:
    FileText() = default;
    explicit FileText(const std::string& content) {
        const String text = quensc_stringFromData(std::make_shared<Data>(content));
        text_ = text.isNil() ? content : text.str();
    }

    std::vector<std::string> lines() const {
        std::vector<std::string> lines;
        for (std::string_view line : linesOf(text_)) {
            line.remove_suffix(line.ends_with('\r') ? 1 : 0);
            lines.push_back(printableLine(line));
        }
        return lines;
    }

private:
    std::string text_;
};

/// Explained where the text cannot be fetched.
Outcome<FileText> textFor(Session& session, const SourceTree& source, const Options& options) {
    const RevisionRange& revisions = options.revisions;
    const auto file =
        fetchFile(session, source,
                  {options.path, revisions.isRange() ? revisions.end : revisions.start, false});
    if (!file) {
        return file.explained();
    }
    const auto content = contentOf(*file);
    return content
               ? Outcome(FileText(*content))
               : session.fail("The text of \"" + printable(options.path) + "\" cannot be read.");
}

/// Why a line has no revision: of a range, it is older; else it is a change of today.
const char* reasonFor(const RevisionRange& revisions) {
    return revisions.isRange() ? "(earlier)" : "(not committed)";
}

Table::Row rowFor(const Dictionary& record, const std::string& text, const Options& options,
                  Date now) {
    const std::string revision = shownText(record, QuenSourceControlOperationRevisionKey);
    const Date* const date = record[QuenSourceControlOperationDateKey].date();
    return {{revision.empty() ? "-" : "r" + revision, Style::warning, true},
            {revision.empty() ? reasonFor(options.revisions)
                              : shownText(record, QuenSourceControlOperationAuthorKey)},
            {date == nullptr ? "" : ageText(*date, now), Style::faint},
            {shownText(record, QuenSourceControlOperationLineNumberKey), Style::faint, true},
            {text}};
}

void printForPeople(const Array& records, const FileText& text, const Options& options) {
    const std::vector<std::string> lines = text.lines();
    const Date now = currentDate();
    Table table;
    for (std::size_t i = 0; i < records.count(); ++i) {
        table.add(rowFor(*records[i].dictionary(), i < lines.size() ? lines[i] : "", options, now));
    }
    const Palette palette = options.common.palette();
    std::ostringstream out;
    table.print(out, palette);
    printPaged(out.str());
}

int runBlameCommand(Session& session, const Options& options) {
    const auto source = findSource(session, options.path);
    if (!source) {
        return source.status();
    }
    const auto operation = session.perform(requestFor(options, *source));
    int textStatus = ExitSuccess;
    const int status = showRecords(session, operation, [&](const Array& records) {
        const auto text = textFor(session, *source, options);
        textStatus = text ? ExitSuccess : text.status();
        printForPeople(records, text ? *text : FileText(), options);
    });
    return textStatus == ExitSuccess ? status : textStatus;
}

} // namespace

void addBlameCommand(CommandLine& line) {
    auto options = std::make_shared<Options>();
    Subcommand command =
        line.add("blame", "Show who last changed each line of a file, when and in which revision");
    addRevisionOption(command, options->revisions, true,
                      "Blame the file as of a revision, or only the changes of A:B");
    command.argument("FILE", options->path, "Path or URL").required();
    runInSession<Options>(command, options, runBlameCommand);
}

} // namespace quen::tools
