#include "Tools/Commands/CommandLine/CommandLine.h"
#include "Tools/Commands/Content/ListedEntries.h"
#include "Tools/Commands/Content/NamedPlaces.h"
#include "Tools/Commands/Places/ItemPlace.h"
#include "Tools/Console/JsonOutput.h"

#include <algorithm>
#include <iostream>
#include <memory>

namespace quen::tools {

namespace {

struct Options {
    CommonOptions common;
    LayoutOptions layout;
    std::string path = ".";
};

int runTagsCommand(Session& session, const Options& options) {
    const auto source = findSourceWithLayout(session, options.path, options.layout);
    if (!source) {
        return source.status();
    }
    const std::string place =
        tagsBeside(source->repository->branchesLocation().absoluteString().str());
    auto listed = entriesOf(session, *source, {place});
    if (!listed) {
        return listed.status();
    }
    std::vector<ListEntry> tags = std::move(*listed);
    std::stable_sort(tags.begin(), tags.end(), [](const ListEntry& one, const ListEntry& other) {
        return one.commit.revision > other.commit.revision;
    });
    if (options.common.json) {
        Array records = Array::empty();
        for (const ListEntry& tag : tags) {
            records.append(entryRecord(tag));
        }
        std::cout << jsonText(records) << '\n';
    } else {
        printNamedPlaces(tags, "", options.common.palette());
    }
    if (tags.empty() && !options.common.json) {
        session.tell("There are no tags in " + place + ".");
    }
    return ExitSuccess;
}

} // namespace

void addTagsCommand(CommandLine& line) {
    auto options = std::make_shared<Options>();
    Subcommand command = line.add("tags", "List the project's tags, newest first");
    command.argument("PATH", options->path, "Path or URL in the project (default: .)");
    options->layout.addTo(command);
    runInSession<Options>(command, options, runTagsCommand);
}

} // namespace quen::tools
