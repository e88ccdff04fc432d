#include "Host/ClientCommand.h"
#include "Host/Facts/InfoFacts.h"
#include "Host/Places/Locations.h"
#include "Tools/Commands/CommandLine/CommandLine.h"
#include "Tools/Commands/Content/StatusItem.h"
#include "Tools/Commands/Content/StatusRecords.h"
#include "Tools/Commands/Content/StatusViews.h"
#include "Tools/Commands/Places/MissingPaths.h"
#include "Tools/Commands/Places/SourceTreeFinder.h"
#include "Tools/Commands/Session/CleanupAdvice.h"
#include "Tools/Commands/Session/HostQueries.h"
#include "Tools/Terminal/SafeText.h"

#include <algorithm>
#include <iostream>
#include <map>
#include <memory>
#include <set>
#include <utility>

namespace quen::tools {

namespace {

struct Options {
    CommonOptions common;
    StatusFormat format;
    std::vector<std::string> paths{"."};
};

/// The client's own words for tree conflicts, by path: a status knows that there is one, an info
/// why.
std::map<std::string, std::string> reasonsOfTreeConflicts(const std::vector<StatusEntry>& entries) {
    std::map<std::string, std::string> reasons;
    StringArray arguments{"info", "--xml"};
    for (const StatusEntry& entry : entries) {
        if (entry.isTreeConflict) {
            arguments.push_back(closedClientPath(entry.path.str()));
        }
    }
    if (arguments.size() == 2) {
        return reasons;
    }
    const auto query = ClientCommand::makeQuery(std::move(arguments));
    runHostQuery(*query);
    InfoFactsReader reader;
    reader.take(query->output()->bytes());
    reader.finish();
    for (const InfoEntry& entry : reader.facts().entries) {
        for (const InfoConflict& conflict : entry.conflicts) {
            if (conflict.type.view() == "tree") {
                reasons[entry.path.str()] = descriptionOf(conflict).str();
            }
        }
    }
    return reasons;
}

/// Shows a status while the client writes it, and notes what is to be told at its end.
class StatusRun {
public:
    StatusRun(Session& session, const Options& options)
        : session_(session), options_(options),
          missing_(missingAmong(options.paths, std::vector<StatusEntry>())),
          view_(StatusView::make(options.format, options.common.palette())),
          isGathered_(options.format.asksRepository && !options.format.isInLines) {}

    int run(const SourceTree& source) {
        const auto type =
            options_.format.asksRepository ? RequestTypeRemoteStatus : RequestTypeStatus;
        const int status =
            session_.stream(makeRequest(type, source, clientPaths(options_.paths)), "<status/>",
                            [this](std::string_view piece) { return take(piece); });
        const Error broken = reader_.finish();
        takeEntries();
        showHeld();
        const bool isWell = status == ExitSuccess && (!broken || !std::cout);
        view_->finish(isWell && missing_.size() < options_.paths.size());
        std::cout.flush();
        tellWhatWasFound();
        if (status == ExitSuccess && !isWell) {
            session_.tell(broken);
        }
        return isWell ? tellOfMissing(session_, missing_, ExitSuccess)
                      : (status == ExitSuccess ? ExitFailure : status);
    }

private:
    bool take(std::string_view piece) {
        reader_.take(piece);
        takeEntries();
        return std::cout.flush().good();
    }

    void takeEntries() {
        StatusFacts facts = reader_.takeFacts();
        for (StatusEntry& entry : facts.entries) {
            takeEntry(std::move(entry));
        }
        unreadable_.insert(unreadable_.end(), facts.unreadable.begin(), facts.unreadable.end());
    }

    void takeEntry(StatusEntry entry) {
        // What several targets told counts once.
        if (options_.paths.size() > 1 && !seen_.insert(entry.path.str()).second) {
            return;
        }
        if (!missing_.empty()) {
            missing_ = missingAmong(missing_, std::vector{entry});
        }
        if (entry.isWorkingCopyLocked && locked_.isNil()) {
            locked_ = entry.path;
        }
        if (isGathered_ || entry.isTreeConflict) {
            held_.push_back(std::move(entry));
        } else {
            view_->show(entry, "");
        }
    }

    /// Last of all. The client is asked once for the reasons of all tree conflicts.
    void showHeld() {
        if (isGathered_) {
            sortByPath(held_);
            std::stable_sort(held_.begin(), held_.end(),
                             [](const StatusEntry& a, const StatusEntry& b) {
                                 return a.changelist.view() < b.changelist.view();
                             });
        }
        auto reasons = reasonsOfTreeConflicts(held_);
        for (const StatusEntry& entry : held_) {
            view_->show(entry, reasons[entry.path.str()]);
        }
    }

    void tellWhatWasFound() const {
        for (const UnreadableText& text : unreadable_) {
            session_.tell(sentenceOnUnreadable(text));
        }
        if (!locked_.isNil()) {
            session_.tell("\"" + printable(locked_.view()) +
                          "\" is locked: a client is at work there, or one was killed. Unless one "
                          "is at work, run: " +
                          cleanupCommandFor(locked_.str()));
        }
    }

    Session& session_;
    const Options& options_;
    /// The paths that nothing was told of; the client says nothing at all of one that is not there.
    std::vector<std::string> missing_;
    std::unique_ptr<StatusView> view_;
    /// With what the server told of, the client's order is not one that a person can read.
    const bool isGathered_;
    StatusFactsReader reader_;
    std::set<std::string> seen_;
    std::vector<StatusEntry> held_;
    std::vector<UnreadableText> unreadable_;
    String locked_;
};

int runStatusCommand(Session& session, const Options& options) {
    const auto source = findSource(session, options.paths.front());
    if (!source) {
        return source.status();
    }
    Options shown = options;
    shown.format.isJson = options.common.json;
    return StatusRun(session, shown).run(*source);
}

} // namespace

void addStatusCommand(CommandLine& line) {
    auto options = std::make_shared<Options>();
    StatusFormat& format = options->format;
    Subcommand command = line.add("status", "Show local changes");
    command.flag("-u,--show-updates", format.asksRepository,
                 "Also show what others have committed since");
    command.flag("-s,--short", format.isShort,
                 "Show two letters and the path of each item, as svn status does");
    command.flag("--ignored", format.showsIgnored, "Also show ignored items");
    command.flag("--jsonl", format.isInLines, "Print one JSON object per item, as they arrive");
    command.arguments("PATH", options->paths, "Files or directories (default: .)");
    runInSession<Options>(command, options, runStatusCommand);
}

} // namespace quen::tools
