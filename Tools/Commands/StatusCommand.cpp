#include "Foundation/XMLReport.h"
#include "Host/ClientCommand.h"
#include "Host/Facts/InfoFacts.h"
#include "Host/Places/Locations.h"
#include "QuenFoundation/QuenSourceControlConstants.h"
#include "Tools/Commands/CommandLine/CommandLine.h"
#include "Tools/Commands/Content/StatusItem.h"
#include "Tools/Commands/Content/StatusRecords.h"
#include "Tools/Commands/Places/MissingPaths.h"
#include "Tools/Commands/Places/SourceTreeFinder.h"
#include "Tools/Commands/Session/CleanupAdvice.h"
#include "Tools/Commands/Session/HostQueries.h"
#include "Tools/Commands/Session/KeptRun.h"
#include "Tools/Terminal/SafeText.h"
#include "Tools/Terminal/Table.h"

#include <algorithm>
#include <iostream>
#include <memory>
#include <utility>

namespace quen::tools {

namespace {

struct Options {
    CommonOptions common;
    bool asksRepository = false;
    bool showsIgnored = false;
    bool isShort = false;
    std::vector<std::string> paths{"."};
};

/// What the client said, read a second time for what the provider's records leave out.
struct Answer {
    StatusFacts facts;
    /// The whole report was there, and the client ended well.
    bool isWhole = false;
    TreeConflicts treeConflicts;
};

/// A status knows that there is a tree conflict, an info why.
TreeConflicts reasonsOfTreeConflicts(const std::vector<StatusEntry>& entries) {
    StringArray arguments{"info", "--xml"};
    for (const StatusEntry& entry : entries) {
        if (entry.isTreeConflict) {
            arguments.push_back(closedClientPath(entry.path.str()));
        }
    }
    TreeConflicts reasons;
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

Answer answerIn(const KeptRun& run) {
    Answer answer;
    StatusFactsReader reader;
    reader.take(run.output());
    answer.isWhole = !reader.finish() && run.endedWell();
    answer.facts = reader.takeFacts();
    sortByPath(answer.facts.entries);
    answer.treeConflicts = reasonsOfTreeConflicts(answer.facts.entries);
    return answer;
}

/// Rows of one changelist, or of what is in none.
struct Group {
    std::string name;
    std::vector<StatusItem> items;
};

std::vector<Group> groupsOf(std::vector<StatusItem> items) {
    std::vector<Group> groups;
    for (StatusItem& item : items) {
        auto group = std::find_if(groups.begin(), groups.end(),
                                  [&](const Group& each) { return each.name == item.changelist; });
        if (group == groups.end()) {
            group = groups.insert(groups.end(), {item.changelist, {}});
        }
        group->items.push_back(std::move(item));
    }
    std::sort(groups.begin(), groups.end(),
              [](const Group& a, const Group& b) { return a.name < b.name; });
    return groups;
}

/// One width for all groups, so that their columns line up.
struct Widths {
    std::size_t here = 0;
    std::size_t incoming = 0;
};

std::string padded(std::string text, std::size_t width) {
    text.resize(std::max(text.size(), width), ' ');
    return text;
}

std::string incomingText(const StatusItem& item) {
    return item.incoming.empty() ? "-" : joinedWords(item.incoming);
}

Table tableOf(const std::vector<StatusItem>& items, const Widths& widths, bool asksRepository) {
    Table table;
    for (const StatusItem& item : items) {
        Table::Row row;
        row.push_back({padded(joinedWords(item.here), widths.here), item.here.front().style});
        if (asksRepository) {
            row.push_back({padded(incomingText(item), widths.incoming),
                           item.incoming.empty() ? Style::faint : item.incoming.front().style});
        }
        row.push_back({item.described()});
        table.add(std::move(row));
    }
    return table;
}

void printHeading(const Widths& widths, const Palette& palette) {
    Table heading;
    heading.add({{padded("Here", widths.here), Style::heading},
                 {padded("Repository", widths.incoming), Style::heading},
                 {"Path", Style::heading}});
    heading.print(std::cout, palette);
}

void printItems(std::vector<StatusItem> items, bool asksRepository, const Palette& palette) {
    Widths widths;
    for (const StatusItem& item : items) {
        widths.here = std::max(widths.here, joinedWords(item.here).size());
        widths.incoming = std::max(widths.incoming, incomingText(item).size());
    }
    if (asksRepository && !items.empty()) {
        widths = {std::max(widths.here, std::string_view("Here").size()),
                  std::max(widths.incoming, std::string_view("Repository").size())};
        printHeading(widths, palette);
    }
    bool isFirst = true;
    for (const Group& group : groupsOf(std::move(items))) {
        if (!group.name.empty()) {
            std::cout << (isFirst ? "" : "\n")
                      << palette.paint(Style::heading, "Changelist " + group.name + ":") << '\n';
        }
        tableOf(group.items, widths, asksRepository).print(std::cout, palette);
        isFirst = false;
    }
}

/// `M  greet.c`: the letters of the client for the item and its properties, a line each.
void printShort(const Answer& answer, const Options& options) {
    const Palette palette = options.common.palette();
    for (const StatusEntry& entry : answer.facts.entries) {
        const StatusItem item = statusItem(entry, "", options.asksRepository);
        if (item.isIgnored && !options.showsIgnored) {
            continue;
        }
        const std::string incoming = !options.asksRepository ? ""
                                     : item.incoming.empty() ? "  "
                                                             : "* ";
        std::cout << palette.paint(item.here.front().style, statusLetters(entry)) << ' '
                  << palette.paint(Style::warning, incoming) << item.path << '\n';
    }
}

void printForPeople(const Answer& answer, const Options& options) {
    if (options.isShort) {
        return printShort(answer, options);
    }
    const Palette palette = options.common.palette();
    StatusSummary summary;
    std::vector<StatusItem> items;
    std::size_t hidden = 0;
    for (const StatusEntry& entry : answer.facts.entries) {
        const auto reason = answer.treeConflicts.find(entry.path.str());
        StatusItem item =
            statusItem(entry, reason == answer.treeConflicts.end() ? "" : reason->second,
                       options.asksRepository);
        if (item.isIgnored && !options.showsIgnored) {
            ++hidden;
        } else {
            summary.count(item);
            items.push_back(std::move(item));
        }
    }
    printItems(std::move(items), options.asksRepository, palette);
    std::cout << palette.paint(Style::heading, summary.isEmpty() ? "No changes" : summary.text());
    if (hidden > 0) {
        std::cout << palette.paint(Style::faint, " (" + std::to_string(hidden) +
                                                     " ignored; --ignored shows them)");
    }
    std::cout << '\n';
}

void tellOfUnreadable(const Session& session, const StatusFacts& facts) {
    for (const UnreadableText& text : facts.unreadable) {
        session.tell(sentenceOnUnreadable(text));
    }
}

void tellOfLock(const Session& session, const StatusFacts& facts) {
    const auto& entries = facts.entries;
    const auto locked = std::find_if(entries.begin(), entries.end(), [](const StatusEntry& entry) {
        return entry.isWorkingCopyLocked;
    });
    if (locked != entries.end()) {
        session.tell("\"" + printable(locked->path.view()) +
                     "\" is locked: a client is at work there, or one was killed. Unless one is at "
                     "work, run: " +
                     cleanupCommandFor(locked->path.str()));
    }
}

int show(const Session& session, const QuenSourceControlOperation& operation,
         const Options& options, const KeptRun& run) {
    const Answer answer = answerIn(run);
    // Of a whole report nothing is missing, though XML cannot hold some of its texts.
    const bool isWell = !operation.error() ||
                        (answer.isWhole && operation.error().domain() == XMLParserErrorDomain);
    // The client says nothing at all of a path that is not there.
    const auto missing = missingAmong(options.paths, answer.facts.entries);
    if (options.common.json) {
        printJson(answer.facts.entries.empty() && !isWell
                      ? operation.result()
                      : Value(statusRecords(answer.facts, answer.treeConflicts)));
    } else if (!answer.facts.entries.empty() || (isWell && missing.size() < options.paths.size())) {
        printForPeople(answer, options);
    }
    std::cout.flush();
    tellOfUnreadable(session, answer.facts);
    tellOfLock(session, answer.facts);
    if (!isWell || session.wasStopped(operation)) {
        return session.finish(operation);
    }
    return tellOfMissing(session, missing, ExitSuccess);
}

int runStatusCommand(Session& session, const Options& options) {
    const auto source = findSource(session, options.paths.front());
    if (!source) {
        return source.status();
    }
    const auto run = std::make_shared<KeptRun>(RunContext::current().toolRunner());
    const RunContext::Scope scope(RunContext::current().withToolRunner(run));
    const auto operation = session.perform(
        makeRequest(options.asksRepository ? RequestTypeRemoteStatus : RequestTypeStatus, *source,
                    clientPaths(options.paths)));
    return operation ? show(session, **operation, options, *run) : operation.status();
}

} // namespace

void addStatusCommand(CommandLine& line) {
    auto options = std::make_shared<Options>();
    Subcommand command = line.add("status", "Show local changes");
    command.flag("-u,--show-updates", options->asksRepository,
                 "Also show what others have committed since");
    command.flag("-s,--short", options->isShort,
                 "Show two letters and the path of each item, as svn status does");
    command.flag("--ignored", options->showsIgnored, "Also show ignored items");
    command.arguments("PATH", options->paths, "Files or directories (default: .)");
    runInSession<Options>(command, options, runStatusCommand);
}

} // namespace quen::tools
