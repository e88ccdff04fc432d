#include "QuenFoundation/QuenSourceControlConstants.h"
#include "Tools/Commands/CommandLine/CommandLine.h"
#include "Tools/Commands/Content/DifferenceStream.h"
#include "Tools/Commands/History/HistoryFormat.h"
#include "Tools/Commands/History/HistoryQuery.h"
#include "Tools/Commands/Places/EarlierRevisions.h"
#include "Tools/Commands/Places/SourceTreeFinder.h"
#include "Tools/Console/JsonOutput.h"
#include "Tools/Terminal/Times.h"

#include <iostream>
#include <memory>
#include <vector>

namespace quen::tools {

namespace {

struct Options {
    CommonOptions common;
    std::string revision = "HEAD";
    std::string path = ".";
    DifferenceOptions difference;
};

/// Keeps the one revision.
class Keeper : public HistoryView {
public:
    void show(const HistoryEntry& entry) override { entries.push_back(entry); }
    bool flush() override { return true; }

    std::vector<HistoryEntry> entries;
};

/// A revision is about the whole repository; explained where its root cannot be found out.
Outcome<std::string> rootOf(Session& session, const SourceTree& source, const std::string& path) {
    const auto operation = session.query(makeRequest(RequestTypeInfo, source, {String(path)}));
    if (!operation) {
        return operation.explained();
    }
    const Array* const records = (*operation)->result().array();
    if (records == nullptr || records->count() == 0) {
        return session.fail("\"" + printable(path) + "\" was never committed.");
    }
    const Dictionary& record = *(*records)[0].dictionary();
    return record[QuenSourceControlOperationRepositoryRootKey].stringValue().str();
}

int showChange(Session& session, const SourceTree& source, const std::string& root,
               const HistoryEntry& entry, const Options& options) {
    DifferenceStream stream(session, options.difference);
    stream.write(fullText(entry, session.options().palette(), currentDate()) + "\n");
    auto request = makeRequest(RequestTypeDiff, source, {String(root)});
    const std::string number = std::to_string(entry.commit.revision.value_or(0));
    request->setStartingRevision(number + "^");
    request->setEndingRevision(number);
    const int status = stream.show(request);
    stream.finish();
    return status;
}

int runShowCommand(Session& session, const Options& options) {
    const auto range = parseRevisionRange(options.revision);
    if (!range || range->isRange()) {
        return session
            .fail("\"" + printable(options.revision) +
                      "\" is not a valid revision. Use a number, HEAD or a date in braces, with "
                      "^ behind it for the one before; "
                      "`quen log` shows them.",
                  ExitUsage)
            .status;
    }
    const auto source = findSource(session, options.path);
    const auto root =
        source ? rootOf(session, *source, options.path) : Outcome<std::string>(source.explained());
    if (!root) {
        return root.status();
    }
    const auto revisions =
        resolveRevisions(session, *source, options.path == "." ? *root : options.path, *range);
    if (!revisions) {
        return revisions.status();
    }
    HistoryQuery query;
    query.location = *root;
    query.revisions = *revisions;
    query.wantsPaths = true;
    Keeper keeper;
    const int status = showHistory(session, query, keeper);
    if (status != ExitSuccess || keeper.entries.empty()) {
        return status != ExitSuccess
                   ? status
                   : session.fail("There is no revision " + range->start + ".").status;
    }
    if (options.common.json) {
        std::cout << jsonText(shortRecord(keeper.entries.front(), true)) << '\n';
        return ExitSuccess;
    }
    return showChange(session, *source, *root, keeper.entries.front(), options);
}

} // namespace

void addShowCommand(CommandLine& line) {
    auto options = std::make_shared<Options>();
    Subcommand command = line.add("show", "Show one revision: its message and its changes");
    options->difference.addTo(command);
    command.argument("REV", options->revision,
                     "Revision to show (default: HEAD); REV^ is the one before");
    command.argument("PATH", options->path, "Path or URL in the repository (default: .)");
    runInSession<Options>(command, options, runShowCommand);
}

} // namespace quen::tools
