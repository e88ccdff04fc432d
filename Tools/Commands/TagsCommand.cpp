#include "Tools/Commands/CommandLine/CommandLine.h"
#include "Tools/Commands/Content/ListedEntries.h"
#include "Tools/Commands/History/HistoryFilter.h"
#include "Tools/Commands/Places/SourceTreeFinder.h"
#include "Tools/Console/JsonOutput.h"
#include "Tools/Terminal/Table.h"
#include "Tools/Terminal/Times.h"

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

/// Beside the directory that holds the branches.
std::string tagsBeside(std::string branches) {
    while (branches.ends_with('/')) {
        branches.pop_back();
    }
    return branches.substr(0, branches.rfind('/')) + "/tags";
}

void printForPeople(const std::vector<ListEntry>& tags, const Palette& palette) {
    const Date now = currentDate();
    Table table;
    for (const ListEntry& tag : tags) {
        const auto date = dateOf(tag.commit);
        table.add({{printable(tag.name.view())},
                   {"r" + std::to_string(tag.commit.revision.value_or(0)), Style::warning, true},
                   {printable(tag.commit.author.view())},
                   {date ? ageText(*date, now) : "", Style::faint}});
    }
    table.print(std::cout, palette);
}

int runTagsCommand(Session& session, const Options& options) {
    const auto source = findSourceWithLayout(session, options.path, options.layout);
    if (!source) {
        return source.status();
    }
    std::vector<std::string> words = userOption(*source);
    words.insert(words.end(), {"list", "--xml"});
    ListFactsReader reader;
    const int status = session.streamClient(
        words, {tagsBeside(source->repository->branchesLocation().absoluteString().str())},
        [&](std::string_view piece) {
            reader.take(piece);
            return true;
        });
    const Error broken = reader.finish();
    if (status != ExitSuccess) {
        return status;
    }
    if (broken) {
        session.tell(broken);
        return ExitFailure;
    }
    std::vector<ListEntry> tags = reader.takeFacts().entries;
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
        printForPeople(tags, options.common.palette());
    }
    return ExitSuccess;
}

} // namespace

void addTagsCommand(CommandLine& line) {
    auto options = std::make_shared<Options>();
    Subcommand command = line.add("tags", "List the project's tags, the youngest first");
    command.argument("PATH", options->path, "Path or URL in the project (default: .)");
    options->layout.addTo(command);
    runInSession<Options>(command, options, runTagsCommand);
}

} // namespace quen::tools
