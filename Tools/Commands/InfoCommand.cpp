#include "Host/Places/Locations.h"
#include "QuenFoundation/QuenSourceControlConstants.h"
#include "Tools/Commands/CommandLine/CommandLine.h"
#include "Tools/Commands/Places/ItemPlace.h"
#include "Tools/Commands/Places/SourceTreeFinder.h"
#include "Tools/Commands/Session/KeptRun.h"
#include "Tools/Commands/Session/Records.h"
#include "Tools/Commands/Session/ShowRecords.h"
#include "Tools/Terminal/Times.h"

#include <algorithm>
#include <iostream>
#include <memory>

namespace quen::tools {

namespace {

struct Options {
    CommonOptions common;
    bool onlyChecks = false;
    std::vector<std::string> paths{"."};
};

/// Where the usual names say, or the `.quen` file of the working copy.
RepositoryLayout layoutOf(const InfoEntry& entry) {
    std::string ignored;
    const auto settings =
        entry.workingCopy.isNil() ? std::nullopt : settingsFor(entry.workingCopy.str(), ignored);
    return wholeLayout(settings ? settings->layout : RepositoryLayout(), entry.url.view(),
                       entry.repositoryRoot.view());
}

/// What the provider's records leave out: the branch, and the revision of a working copy.
void printPlace(const InfoEntry& entry, const Palette& palette) {
    if (const std::string branch = branchNameOf(entry.url.view(), layoutOf(entry));
        !branch.empty()) {
        std::cout << palette.paint(Style::faint, "Branch        ") << printable(branch) << '\n';
    }
    if (!entry.workingCopy.isNil() && entry.revision) {
        std::cout << palette.paint(Style::faint, "Working copy  ")
                  << palette.paint(Style::warning, "r" + std::to_string(*entry.revision)) << "  "
                  << printable(entry.workingCopy.view()) << '\n';
    }
}

void printRecord(const Dictionary& record, const std::string& path, const InfoFacts& facts,
                 const Palette& palette) {
    const auto line = [&](const std::string& name, const std::string& text) {
        std::cout << palette.paint(Style::faint, name) << text << '\n';
    };
    if (!path.empty()) {
        line("Path          ", palette.paint(Style::heading, printable(path)));
    }
    line("URL           ", shownText(record, QuenSourceControlOperationRemoteOriginKey));
    line("Repository    ", shownText(record, QuenSourceControlOperationRepositoryRootKey));
    const String url = record[QuenSourceControlOperationRemoteOriginKey].stringValue();
    const auto entry = std::find_if(facts.entries.begin(), facts.entries.end(),
                                    [&](const InfoEntry& each) { return each.url == url; });
    if (entry != facts.entries.end()) {
        printPlace(*entry, palette);
    }
    line("Last changed  ", changeLine(record, palette, currentDate()));
}

/// The records do not say whose they are, and leave out items that were never committed; the rest
/// come in the client's order.
class Places {
public:
    explicit Places(const InfoFacts& facts) : entries_(facts.entries) {}

    /// Of the next record; null where the client names none.
    const InfoEntry* next(const Dictionary& record) {
        const String url = record[QuenSourceControlOperationRemoteOriginKey].stringValue();
        const auto found =
            std::find_if(entries_.begin() + static_cast<std::ptrdiff_t>(index_), entries_.end(),
                         [&](const InfoEntry& each) { return each.url == url; });
        if (found == entries_.end()) {
            return nullptr;
        }
        index_ = static_cast<std::size_t>(found - entries_.begin()) + 1;
        return &*found;
    }

private:
    const std::vector<InfoEntry>& entries_;
    std::size_t index_ = 0;
};

/// What a script needs besides: whose record it is, and what only a working copy knows.
Dictionary withPlace(Dictionary record, const InfoEntry& entry) {
    record.set("kind", entry.kind);
    if (const std::string branch = branchNameOf(entry.url.view(), layoutOf(entry));
        !branch.empty()) {
        record.set("branch", String(branch));
    }
    if (!entry.workingCopy.isNil()) {
        record.set("path", String(absolutePath(entry.path.str())));
        record.set("workingCopy", entry.workingCopy);
        record.set("workingCopyRevision", entry.revision ? Value(*entry.revision) : Value());
    }
    return record;
}

Value withPlaces(const Value& result, const InfoFacts& facts) {
    if (result.array() == nullptr) {
        return result;
    }
    Places places(facts);
    Array records = Array::empty();
    for (const Value& value : *result.array()) {
        const Dictionary& record = *value.dictionary();
        const InfoEntry* const entry = places.next(record);
        records.append(entry == nullptr ? record : withPlace(record, *entry));
    }
    return records;
}

InfoFacts factsIn(const KeptRun& run) {
    InfoFactsReader reader;
    reader.take(run.output());
    reader.finish();
    return reader.takeFacts();
}

void printForPeople(const Array& records, const Options& options, const KeptRun& run) {
    const Palette palette = options.common.palette();
    const InfoFacts facts = factsIn(run);
    const bool allAreThere = records.count() == options.paths.size();
    for (std::size_t i = 0; i < records.count(); ++i) {
        std::cout << (i == 0 ? "" : "\n");
        printRecord(*records[i].dictionary(), allAreThere ? options.paths[i] : "", facts, palette);
    }
}

int printForScripts(const Session& session, const QuenSourceControlOperation& operation,
                    const KeptRun& run) {
    printJson(withPlaces(operation.result(), factsIn(run)));
    return session.finish(operation);
}

/// How many of the items have no record, where that is not an error.
void tellWhatIsMissing(const Session& session, const QuenSourceControlOperation& operation,
                       const Options& options) {
    const Array* const records = operation.result().array();
    if (operation.error() || records == nullptr || records->count() == options.paths.size()) {
        return;
    }
    const std::size_t missing = options.paths.size() - records->count();
    session.tell(options.paths.size() == 1
                     ? "\"" + printable(options.paths.front()) + "\" was never committed."
                     : std::to_string(missing) + " of the " + std::to_string(options.paths.size()) +
                           " items " + (missing == 1 ? "was" : "were") + " never committed.");
}

int runInfoCommand(Session& session, const Options& options) {
    const auto source = findSource(session, options.paths.front());
    if (!source) {
        return source.status();
    }
    const auto run = std::make_shared<KeptRun>(RunContext::current().toolRunner());
    const RunContext::Scope scope(RunContext::current().withToolRunner(run));
    const auto operation =
        session.perform(makeRequest(options.onlyChecks ? RequestTypeInfoCheck : RequestTypeInfo,
                                    *source, clientPaths(options.paths)));
    if (operation && options.onlyChecks) {
        return session.finish(**operation);
    }
    if (operation && options.common.json) {
        return printForScripts(session, **operation, *run);
    }
    const int status = showRecords(
        session, operation, [&](const Array& records) { printForPeople(records, options, *run); });
    if (operation) {
        tellWhatIsMissing(session, **operation, options);
    }
    return status;
}

} // namespace

void addInfoCommand(CommandLine& line) {
    auto options = std::make_shared<Options>();
    Subcommand command =
        line.add("info", "Show where items lie, their branch and their last change");
    command.flag("--check", options->onlyChecks,
                 "Print nothing; the exit status says whether all items are under version control");
    command.arguments("PATH", options->paths, "Paths or URLs (default: .)");
    runInSession<Options>(command, options, runInfoCommand);
}

} // namespace quen::tools
