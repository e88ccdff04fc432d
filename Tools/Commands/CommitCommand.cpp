#include "Foundation/Lines.h"
#include "Host/Places/Locations.h"
#include "QuenFoundation/QuenSourceControlConstants.h"
#include "Tools/Commands/Changes/Change.h"
#include "Tools/Commands/Changes/ChangeRecords.h"
#include "Tools/Commands/Changes/CommitPreview.h"
#include "Tools/Commands/Changes/LogMessage.h"
#include "Tools/Commands/CommandLine/CommandLine.h"
#include "Tools/Commands/Content/LocalDifference.h"
#include "Tools/Commands/Places/SourceTreeFinder.h"

#include <cstdint>
#include <iostream>
#include <memory>
#include <string>
#include <vector>

namespace quen::tools {

namespace {

struct Options {
    CommonOptions common;
    MessageOptions message;
    std::vector<std::string> paths{"."};
};

/// No more than a screen holds.
constexpr std::size_t shownItems = 20;

int tellNothingToCommit(const Session& session, const CommitPreview& preview) {
    const int status = tellNothingToDo(session, "Nothing to commit.");
    for (const std::string& note :
         session.options().json ? std::vector<std::string>() : preview.notes()) {
        std::cout << note << '\n';
    }
    return status;
}

/// With an editor it stands below the message; otherwise the message is there already.
void show(const CommitPreview& preview, const Options& options) {
    if (options.common.json || (options.message.needsEditor() && !options.common.dryRun)) {
        return;
    }
    for (const std::string& line : preview.items(shownItems)) {
        std::cout << line << '\n';
    }
    std::cout.flush();
}

std::vector<std::string> textBelowMessage(const CommitPreview& preview) {
    std::vector<std::string> lines = preview.items(SIZE_MAX);
    const std::vector<std::string> notes = preview.notes();
    if (!notes.empty()) {
        lines.emplace_back();
        lines.insert(lines.end(), notes.begin(), notes.end());
    }
    return lines;
}

/// No more of it is of use below a message.
constexpr std::size_t longestDifference = 256 * 1024;

/// What the message is about, line by line.
std::string differenceOf(Session& session, const SourceTree& source, const Options& options) {
    std::string text;
    session.stream(
        localDifference(source, options.paths), "",
        [&text](std::string_view piece) {
            text += piece;
            return text.size() < longestDifference;
        },
        true);
    if (text.size() >= longestDifference) {
        text.erase(text.rfind('\n', longestDifference) + 1);
        text += "... (the rest is left out)\n";
    }
    return text;
}

std::vector<std::string> textForEditor(Session& session, const SourceTree& source,
                                       const CommitPreview& preview, const Options& options) {
    std::vector<std::string> lines = textBelowMessage(preview);
    if (!options.message.needsEditor() || options.common.dryRun) {
        return lines;
    }
    const std::string difference = differenceOf(session, source, options);
    lines.emplace_back();
    for (const std::string_view line : linesOf(difference)) {
        lines.emplace_back(line);
    }
    return lines;
}

std::string summaryOf(const Value& result, const ChangeOutput& /*output*/) {
    const Array* const records = result.array();
    if (records == nullptr || records->count() == 0) {
        return "Nothing to commit.";
    }
    const Dictionary& record = *(*records)[0].dictionary();
    return "Committed revision " +
           record[QuenSourceControlOperationRevisionKey].stringValue().str() + ".";
}

int runCommitCommand(Session& session, const Options& options) {
    const auto source = findSource(session, options.paths.front());
    if (!source) {
        return source.status();
    }
    const auto request = makeRequest(RequestTypeCommit, *source, clientPaths(options.paths));
    const auto preview = CommitPreview::of(session, request, options.paths);
    if (!preview) {
        return preview.status();
    }
    if (preview->sendsNothing()) {
        return tellNothingToCommit(session, *preview);
    }
    LogMessage message(session);
    if (!message.obtain(options.message, textForEditor(session, *source, *preview, options))) {
        return ExitFailure;
    }
    show(*preview, options);
    request->setOptions({{QuenSourceControlRequestOptionMessage, message.text()}});
    return message.conclude(makeChange(session, {request, options.paths.front()}, summaryOf));
}

} // namespace

void addCommitCommand(CommandLine& line) {
    const auto options = std::make_shared<Options>();
    Subcommand command = line.add("commit", "Commit local changes");
    options->message.addTo(command);
    command.arguments("PATH", options->paths, "Files or directories (default: .)");
    runInSession<Options>(command, options, runCommitCommand);
}

} // namespace quen::tools
