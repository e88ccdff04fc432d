#include "Host/Places/Locations.h"
#include "Host/Text.h"
#include "QuenFoundation/QuenSourceControlConstants.h"
#include "Tools/Commands/CommandLine/CommandLine.h"
#include "Tools/Commands/Content/DiffSummary.h"
#include "Tools/Commands/Content/DifferenceStream.h"
#include "Tools/Commands/Content/LocalDifference.h"
#include "Tools/Commands/Places/EarlierRevisions.h"
#include "Tools/Commands/Session/ShowRecords.h"
#include "Tools/Console/Base64.h"

#include <algorithm>
#include <iostream>
#include <memory>

namespace quen::tools {

namespace {

struct Options {
    CommonOptions common;
    DiffTargets targets;
    RevisionChanges changes;
    bool summarizes = false;
    DifferenceOptions difference;
    /// Empty for what the client's settings say.
    std::string program;
};

/// What is wrong with the command line; empty for nothing.
std::string faultOf(const Options& options) {
    const RevisionRange& revisions = options.targets.revisions;
    const auto& paths = options.targets.paths;
    if (revisions.isGiven() && !revisions.isRange()) {
        return "-r " + revisions.start + " is one revision, and a difference has two ends: -r " +
               revisions.start + ":BASE compares it with what the working copy is based on, -r " +
               revisions.start + ":HEAD with the youngest. Your own changes are shown without -r.";
    }
    if (options.summarizes) {
        return faultOfSummary(options.targets);
    }
    const bool hasURL = std::any_of(paths.begin(), paths.end(), isRepositoryURL);
    return hasURL && !revisions.isGiven() && options.changes.numbers.empty()
               ? "A URL has no changes of its own. Compare two revisions of it with -r A:B, or "
                 "show "
                 "what one changed with -c N."
               : "";
}

/// The operation hands both ends to the client word for word.
void setRevisions(QuenSourceControlRequest& request, const Options& options,
                  const std::string& change) {
    const DiffTargets& targets = options.targets;
    if (targets.revisions.isRange()) {
        request.setStartingRevision(targets.revisions.start);
        request.setEndingRevision(targets.revisions.end);
    } else if (!change.empty()) {
        request.setStartingRevision(change + "^");
        request.setEndingRevision(change);
    }
}

/// What the client wrote, to the last byte; empty where nothing ran.
std::string_view bytesOf(const QuenSourceControlOperation& operation) {
    const auto* const task = dynamic_cast<const QuenSourceControlTaskOperation*>(&operation);
    const DataPtr data = task == nullptr ? nullptr : task->data();
    return data == nullptr ? std::string_view() : data->bytes(); // the operation keeps them
}

/// JSON holds text alone: bytes that are not UTF-8 stand beside it in base64.
Value recordsWithBytes(const Value& result, std::string_view bytes) {
    if (isUTF8(bytes)) {
        return result;
    }
    Dictionary record;
    if (const Array* const records = result.array(); records != nullptr && records->count() > 0) {
        record = *(*records)[0].dictionary();
    }
    record.set("contentBase64", String(base64FromBytes(bytes)));
    return Array{record};
}

/// One record a change, in one array; a change without differences has none, and nothing at all is
/// null.
int printRecords(Session& session, const std::vector<QuenSourceControlRequestPtr>& requests) {
    Array records;
    int status = ExitSuccess;
    for (const QuenSourceControlRequestPtr& request : requests) {
        const auto operation = session.perform(request);
        if (!operation) {
            return operation.status();
        }
        const Value result = recordsWithBytes((*operation)->result(), bytesOf(**operation));
        for (const Value& record : result.array() == nullptr ? Array() : *result.array()) {
            records.append(record);
        }
        const int each = session.finish(**operation);
        status = status == ExitSuccess ? each : status;
    }
    printJson(records.count() == 0 ? Value() : Value(records));
    return status;
}

QuenSourceControlRequestPtr requestFor(const Options& options, const SourceTree& source,
                                       const std::string& change) {
    const DiffTargets& targets = options.targets;
    if (!targets.revisions.isGiven() && change.empty()) {
        return localDifference(source, targets.paths);
    }
    auto request = makeRequest(RequestTypeDiff, source, clientPaths(targets.paths));
    setRevisions(*request, options, change);
    return request;
}

int showDifferences(Session& session, const SourceTree& source, const Options& options) {
    std::vector<std::string> changes{""};
    if (!options.changes.numbers.empty()) {
        changes.clear();
        for (const std::int64_t number : options.changes.numbers) {
            changes.push_back(std::to_string(number));
        }
    }
    if (options.common.json && !options.difference.isStat) {
        std::vector<QuenSourceControlRequestPtr> requests;
        requests.reserve(changes.size());
        for (const std::string& change : changes) {
            requests.push_back(requestFor(options, source, change));
        }
        return printRecords(session, requests);
    }
    DifferenceStream stream(session, options.difference);
    int status = ExitSuccess;
    for (const std::string& change : changes) {
        const int each = stream.show(requestFor(options, source, change));
        status = status == ExitSuccess ? each : status;
    }
    stream.finish();
    return status;
}

int runDiffCommand(Session& session, const Options& asked) {
    if (const std::string fault = faultOf(asked); !fault.empty()) {
        session.tell(fault);
        return ExitUsage;
    }
    const auto& paths = asked.targets.paths;
    const std::string place = paths.empty() ? "." : paths.front();
    const auto source = findSource(session, place);
    const auto revisions = source
                               ? resolveRevisions(session, *source, place, asked.targets.revisions)
                               : Outcome<RevisionRange>(source.explained());
    if (!revisions) {
        return revisions.status();
    }
    Options options = asked;
    options.targets.revisions = *revisions;
    if (!options.program.empty()) {
        session.compareWith({"--diff-cmd", options.program});
    }
    if (options.summarizes) {
        return showSummary(session, *source, options.targets);
    }
    return showDifferences(session, *source, options);
}

} // namespace

void addDiffCommand(CommandLine& line) {
    auto options = std::make_shared<Options>();
    Subcommand command = line.add("diff", "Show changes line by line");
    const Parameter revisions =
        addRevisionOption(command, options->targets.revisions, true, "Compare two revisions, A:B");
    Parameter change = addChangeOption(command, options->changes,
                                       "Show what revision N changed; -N reversed; also N,M");
    change.excludes(revisions);
    command
        .flag("--summarize", options->summarizes,
              "Show only the names of what differs between OLD and NEW, or between two "
              "revisions of one place")
        .excludes(change);
    const std::vector<Parameter> forms = options->difference.addTo(command);
    Parameter program =
        command
            .option("--diff-cmd", options->program,
                    "Compare files with PROGRAM (default: diff-cmd in the settings of svn, if any)")
            .named("PROGRAM");
    for (const Parameter& form : forms) {
        program.excludes(form);
    }
    command.arguments("PATH", options->targets.paths,
                      "Paths or URLs (default: .); with --summarize, OLD and NEW");
    runInSession<Options>(command, options, runDiffCommand);
}

} // namespace quen::tools
