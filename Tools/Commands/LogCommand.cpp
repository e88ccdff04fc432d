#include "Tools/Commands/CommandLine/CommandLine.h"
#include "Tools/Commands/History/HistoryFormat.h"
#include "Tools/Commands/History/HistoryQuery.h"
#include "Tools/Commands/History/ShowGraph.h"
#include "Tools/Console/JsonOutput.h"
#include "Tools/Terminal/Columns.h"
#include "Tools/Terminal/Pager.h"
#include "Tools/Terminal/Times.h"

#include <charconv>
#include <cstdint>
#include <iostream>
#include <memory>

namespace quen::tools {

namespace {

struct Options {
    CommonOptions common;
    HistoryQuery query;
    RevisionChanges changes;
    bool isOneLine = false;
    bool isQuiet = false;
    bool isInLines = false;
    bool isGraph = false;
    LayoutOptions layout;
};

class PeoplesView : public HistoryView {
public:
    explicit PeoplesView(const Options& options)
        : options_(options), palette_(options.common.palette()) {}

    void show(const HistoryEntry& entry) override {
        if (options_.isOneLine) {
            text_ += oneLine(entry, palette_, width_);
        } else {
            text_ += isFirst_ ? "" : "\n";
            text_ += options_.isQuiet ? commitLine(entry.commit, palette_, now_) + "\n"
                                      : fullText(entry, palette_, now_);
        }
        isFirst_ = options_.isQuiet;
    }

    bool flush() override {
        const bool isWatched = output_.write(text_);
        text_.clear();
        return isWatched;
    }

private:
    const Options& options_;
    const Palette palette_;
    const Date now_ = currentDate();
    const std::size_t width_ = outputIsTerminal() ? outputColumns() : 0;
    PagedOutput output_;
    std::string text_;
    bool isFirst_ = true;
};

/// One array of the contract's records, or one short record a line.
class ScriptsView : public HistoryView {
public:
    explicit ScriptsView(const Options& options) : options_(options) {}

    void show(const HistoryEntry& entry) override {
        if (options_.isInLines) {
            std::cout << jsonText(shortRecord(entry, options_.query.wantsPaths)) << '\n';
            return;
        }
        std::cout << (isFirst_ ? "[" : ",")
                  << jsonText(contractRecord(entry, options_.query.wantsPaths));
        isFirst_ = false;
    }

    bool flush() override { return std::cout.flush().good(); }

    /// Ends the array. What failed before there was anything has no result.
    void finish(int status) const {
        if (!options_.isInLines) {
            std::cout << (!isFirst_ ? "]\n" : status == ExitSuccess ? "[]\n" : "null\n");
        }
    }

private:
    const Options& options_;
    bool isFirst_ = true;
};

int showAll(Session& session, const Options& options, HistoryView& view) {
    if (options.changes.numbers.empty()) {
        return showHistory(session, options.query, view);
    }
    int status = ExitSuccess;
    for (const std::int64_t number : options.changes.numbers) {
        HistoryQuery query = options.query;
        query.revisions.start = std::to_string(number < 0 ? -number : number);
        const int each = showHistory(session, query, view);
        status = status == ExitSuccess ? each : status;
    }
    return status;
}

GraphOptions graphOptions(const Options& options) {
    GraphOptions graph;
    graph.query.limit = options.query.limit;
    graph.query.filter = options.query.filter;
    graph.layout = options.layout;
    graph.location = options.query.location;
    graph.isOneLine = options.isOneLine;
    graph.isQuiet = options.isQuiet;
    graph.wantsPaths = options.query.wantsPaths;
    graph.isInLines = options.isInLines;
    return graph;
}

int runLogCommand(Session& session, const Options& options) {
    if (options.isGraph) {
        return showGraph(session, graphOptions(options));
    }
    if (options.common.json || options.isInLines) {
        ScriptsView view(options);
        const int status = showAll(session, options, view);
        view.finish(status);
        return status;
    }
    PeoplesView view(options);
    return showAll(session, options, view);
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
    HistoryQuery& query = options->query;
    Subcommand command = line.add("log", "Show the history of a file or directory");
    const Parameter revision =
        addRevisionOption(command, query.revisions, true, "Revision, or range of revisions A:B");
    Parameter change = addChangeOption(command, options->changes, "Show only revision N; also N,M");
    change.excludes(revision);
    const Parameter path = command.argument("PATH", query.location, "Path or URL (default: .)");
    command.option("-l,--limit", query.limit, "Show at most N revisions; -N is short for it")
        .checked(complaintAboutLimit);
    command.flag("--oneline", options->isOneLine, "Show each revision in one line");
    command.flag("-q,--quiet", options->isQuiet, "Leave out the messages");
    command.flag("-v,--verbose,-f,--files", query.wantsPaths,
                 "Also show the changed files of each revision");
    query.filter.addTo(command);
    const Parameter stop = command.flag("--stop-on-copy", query.stopsOnCopy,
                                        "Stop at the revision that created the item by copying");
    command
        .flag("--graph", options->isGraph,
              "Draw the branches and merges of the whole project beside its revisions")
        .excludes(revision)
        .excludes(change)
        .excludes(stop);
    command.flag("--peg", query.pegs, "Look the path up in revision REV, to reach deleted items")
        .needs(path)
        .needs(revision);
    options->layout.addTo(command);
    command.flag("--jsonl", options->isInLines, "Print one JSON object per line, as they arrive");
    command.details("Without -r, the history starts at HEAD, so that what others have committed\n"
                    "since your last update is shown too.\n\n"
                    "--graph is about the project that PATH lies in, from HEAD; trunk, branches\n"
                    "and tags are found as for `quen branches`.\n\n"
                    "--author, --search and --since are applied to what svn log reports; letter\n"
                    "case does not matter.");
    runInSession<Options>(command, options, runLogCommand);
}

} // namespace quen::tools
