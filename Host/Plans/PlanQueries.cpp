#include "Host/Plans/PlanQueries.h"

#include "Foundation/Lines.h"
#include "Host/Places/Locations.h"
#include "Host/TaskFailure.h"
#include "Host/WorkingCopyCleanup.h"

#include <algorithm>
#include <utility>

namespace quen {

namespace {

/// Keeps an argument list within the system's limits.
constexpr std::size_t atOnce = 500;

template <typename Name, typename Take>
void inGroups(const std::vector<String>& paths, const StringArray& command, Name name, Take take) {
    for (std::size_t first = 0; first < paths.size(); first += atOnce) {
        StringArray arguments = command;
        for (std::size_t i = first; i < std::min(paths.size(), first + atOnce); ++i) {
            arguments.push_back(name(paths[i]));
        }
        take(std::move(arguments));
    }
}

String closed(const String& path) {
    return closedClientPath(path.str());
}

/// Between a working copy and what it rests on, the client's diff alone looks for no revision in a
/// name: a closing `@` would be part of it.
String asItIs(const String& path) {
    return path;
}

void appendFacts(StatusFacts& all, StatusFacts&& more, std::set<std::string>& known) {
    for (StatusEntry& entry : more.entries) {
        if (known.insert(entry.path.str()).second) {
            all.entries.push_back(std::move(entry));
        }
    }
    all.unreadable.insert(all.unreadable.end(), more.unreadable.begin(), more.unreadable.end());
    all.against = more.against ? more.against : all.against;
}

/// The client only warns of a path that lies in no working copy, and says that all is well.
Error errorOfPlaces(const std::vector<String>& paths) {
    constexpr std::int64_t notAWorkingCopy = 155007; // the client's own number
    for (const String& path : paths) {
        if (topOfWorkingCopy(path).isNil()) {
            const String text = "\"" + path.str() + "\" does not lie in a working copy.";
            return Error(QuenSourceControlTaskErrorDomain, notAWorkingCopy,
                         {{NSLocalizedDescriptionKey, text}});
        }
    }
    return {};
}

} // namespace

StatusAnswer askStatus(const std::vector<String>& paths, const StringArray& options,
                       const QueryRunner& run) {
    StatusAnswer answer;
    answer.error = errorOfPlaces(paths);
    if (answer.error) {
        return answer;
    }
    std::set<std::string> known;
    StringArray command{"status", "--xml"};
    command.insert(command.end(), options.begin(), options.end());
    inGroups(paths, command, closed, [&](StringArray arguments) {
        const auto query = ClientCommand::makeQuery(std::move(arguments));
        run(*query);
        StatusFactsReader reader;
        reader.take(query->output()->bytes());
        const Error broken = reader.finish();
        appendFacts(answer.facts, reader.takeFacts(), known);
        const Error failed = query->error() ? query->error() : broken;
        answer.error = answer.error ? answer.error : failed;
    });
    return answer;
}

CopiedEdits copiedEditsIn(std::string_view diff) {
    CopiedEdits edits;
    std::string path;
    // Lines of files and of properties' values begin with a sign of their own, so that none of them
    // can pass for one of these.
    constexpr std::string_view index = "Index: ";
    constexpr std::string_view properties = "Property changes on: ";
    while (!diff.empty()) {
        const std::string_view line = takeLine(diff);
        if (line.starts_with(index)) {
            path = line.substr(index.size());
        } else if (line.starts_with("--- ") || line.starts_with("Cannot display: ")) {
            edits.texts.insert(path);
        } else if (line.starts_with(properties)) {
            edits.properties.insert(std::string(line.substr(properties.size())));
        }
    }
    return edits;
}

CopiedEdits askCopiedEdits(const std::vector<String>& paths, const QueryRunner& run) {
    CopiedEdits all;
    // A person's own program for differences would write in a form of its own.
    const StringArray command{"diff", "--internal-diff", "--depth", "empty"};
    inGroups(paths, command, asItIs, [&](StringArray arguments) {
        const auto query = ClientCommand::makeQuery(std::move(arguments));
        run(*query);
        CopiedEdits some = copiedEditsIn(query->output()->bytes());
        all.texts.merge(some.texts);
        all.properties.merge(some.properties);
        all.error = all.error ? all.error : query->error();
    });
    return all;
}

std::string askPropertyDifferences(const std::vector<String>& paths, const QueryRunner& run) {
    std::string text;
    const StringArray command{"diff", "--internal-diff", "--properties-only", "--depth", "empty"};
    inGroups(paths, command, asItIs, [&](StringArray arguments) {
        const auto query = ClientCommand::makeQuery(std::move(arguments));
        run(*query);
        text += query->output()->bytes();
    });
    return text;
}

} // namespace quen
