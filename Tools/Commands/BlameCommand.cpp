#include "Foundation/Lines.h"
#include "Host/Facts/HistoryFacts.h"
#include "Host/Places/Locations.h"
#include "Host/Text.h"
#include "QuenFoundation/QuenSourceControlConstants.h"
#include "QuenFoundation/QuenSourceControlFunctions.h"
#include "Tools/Commands/CommandLine/CommandLine.h"
#include "Tools/Commands/Content/FetchFile.h"
#include "Tools/Commands/History/HistoryFilter.h"
#include "Tools/Commands/Places/RevisionArguments.h"
#include "Tools/Commands/Session/Records.h"
#include "Tools/Commands/Session/ShowRecords.h"
#include "Tools/Console/JsonOutput.h"
#include "Tools/Terminal/Pager.h"
#include "Tools/Terminal/Times.h"

#include <algorithm>
#include <iostream>
#include <map>
#include <memory>
#include <utility>

namespace quen::tools {

namespace {

/// What is printed at once.
constexpr std::size_t pieceSize = 64 * 1024;
/// The number of a line that no revision is known for.
constexpr std::int64_t noRevision = -1;

struct Options {
    CommonOptions common;
    RevisionRange revisions;
    bool isInLines = false;
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

/// What the client says of the lines, kept small: a revision of many lines is kept once.
class Lines {
public:
    void add(const CommitFacts& commit) {
        const std::int64_t revision = commit.revision.value_or(noRevision);
        numbers_.push_back(revision);
        if (!commits_.contains(revision)) {
            commits_.emplace(revision, commit);
        }
    }

    const std::vector<std::int64_t>& numbers() const { return numbers_; }
    const std::map<std::int64_t, CommitFacts>& commits() const { return commits_; }

private:
    std::vector<std::int64_t> numbers_;
    std::map<std::int64_t, CommitFacts> commits_;
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

/// The younger, the more striking.
Style styleForAge(Date date, Date now) {
    if (now - date < std::chrono::weeks(1)) {
        return Style::good;
    }
    if (now - date < std::chrono::months(3)) {
        return Style::warning;
    }
    return now - date < std::chrono::years(1) ? Style::changed : Style::faint;
}

std::string padding(const std::string& text, std::size_t width) {
    const std::size_t used = terminalWidth(text);
    return std::string(width > used ? width - used : 0, ' ');
}

/// What stands in front of the lines of each revision.
class Margins {
public:
    Margins(const Lines& lines, const Options& options, const Palette& palette)
        : palette_(palette), now_(currentDate()) {
        for (const auto& [revision, commit] : lines.commits()) {
            Margin margin;
            margin.revision = revision == noRevision ? "-" : "r" + std::to_string(revision);
            margin.author = revision != noRevision ? printable(commit.author.view())
                            // Of a range it is older; else it is a change of today.
                            : options.revisions.isRange() ? "(earlier)"
                                                          : "(not committed)";
            margin.date = dateOf(commit);
            margin.age = margin.date ? ageText(*margin.date, now_) : "";
            widest_.revision = std::max(widest_.revision, margin.revision.size());
            widest_.author = std::max(widest_.author, terminalWidth(margin.author));
            widest_.age = std::max(widest_.age, margin.age.size());
            margins_.emplace(revision, std::move(margin));
        }
        for (auto& [revision, margin] : margins_) {
            margin.text = textOf(margin);
        }
    }

    const std::string& of(std::int64_t revision) const { return margins_.at(revision).text; }

private:
    struct Margin {
        std::string revision;
        std::string author;
        std::string age;
        std::optional<Date> date;
        std::string text;
    };

    std::string textOf(const Margin& margin) const {
        const Style style = margin.date ? styleForAge(*margin.date, now_) : Style::bad;
        std::string text = padding(margin.revision, widest_.revision);
        text.append(palette_.paint(Style::warning, margin.revision)).append("  ");
        text.append(margin.author).append(padding(margin.author, widest_.author)).append("  ");
        return text.append(palette_.paint(style, margin.age))
            .append(padding(margin.age, widest_.age))
            .append("  ");
    }

    struct {
        std::size_t revision = 0;
        std::size_t author = 0;
        std::size_t age = 0;
    } widest_;
    const Palette& palette_;
    const Date now_;
    std::map<std::int64_t, Margin> margins_;
};

/// Takes the next line, without its end.
std::string_view nextLine(std::string_view& text) {
    std::string_view line = takeLine(text);
    line.remove_suffix(line.ends_with('\r') ? 1 : 0);
    return line;
}

void printForPeople(const Lines& lines, std::string_view text, const Options& options) {
    const Palette palette = options.common.palette();
    const Margins margins(lines, options, palette);
    const std::size_t numberWidth = std::to_string(lines.numbers().size()).size();
    PagedOutput output;
    std::string piece;
    for (std::size_t i = 0; i < lines.numbers().size(); ++i) {
        const std::string number = std::to_string(i + 1);
        const std::string line = printableLine(nextLine(text));
        piece.append(margins.of(lines.numbers()[i]));
        piece.append(padding(number, numberWidth)).append(palette.paint(Style::faint, number));
        piece.append(line.empty() ? "" : "  ").append(line).append("\n");
        if (piece.size() > pieceSize) {
            if (!output.write(std::exchange(piece, {}))) {
                return;
            }
        }
    }
    output.write(piece);
}

void printInLines(const Lines& lines, std::string_view text) {
    for (std::size_t i = 0; i < lines.numbers().size() && std::cout; ++i) {
        const CommitFacts& commit = lines.commits().at(lines.numbers()[i]);
        Dictionary record = Dictionary::empty();
        record.set("line", static_cast<std::int64_t>(i + 1));
        record.set("revision", commit.revision ? Value(*commit.revision) : Value());
        record.set("author", commit.author.isNil() ? Value() : Value(commit.author));
        record.set("date", commit.date.isNil() ? Value() : Value(commit.date));
        record.set("text", String(nextLine(text)));
        std::cout << jsonText(record) << '\n';
    }
}

int showLines(Session& session, const SourceTree& source, const Options& options) {
    Lines lines;
    BlameReader reader([&](const CommitFacts& commit) { lines.add(commit); });
    int status =
        session.stream(requestFor(options, source), "<blame/>", [&](std::string_view piece) {
            reader.take(piece);
            return true;
        });
    const Error broken = reader.finish();
    if (status == ExitSuccess && broken) {
        session.tell(broken);
        status = ExitFailure;
    }
    if (lines.numbers().empty()) {
        return status;
    }
    const auto text = textFor(session, source, options);
    const std::string content = text ? *text : std::string();
    if (options.isInLines) {
        printInLines(lines, content);
    } else {
        printForPeople(lines, content, options);
    }
    return text ? status : text.status();
}

int runBlameCommand(Session& session, const Options& options) {
    const auto source = findSource(session, options.path);
    if (!source) {
        return source.status();
    }
    if (!options.common.json) {
        return showLines(session, *source, options);
    }
    return showRecords(session, session.perform(requestFor(options, *source)),
                       [](const Array& /*records*/) {});
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
    command.flag("--jsonl", options->isInLines, "Print one JSON object per line of the file");
    command.argument("FILE", options->path, "Path or URL").required();
    runInSession<Options>(command, options, runBlameCommand);
}

} // namespace quen::tools
