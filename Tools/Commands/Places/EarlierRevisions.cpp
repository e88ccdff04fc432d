#include "Tools/Commands/Places/EarlierRevisions.h"

#include "Host/Facts/HistoryFacts.h"
#include "Host/Places/Locations.h"

#include <utility>
#include <vector>

namespace quen::tools {

namespace {

/// The changes of the item up to a revision, the youngest first, at most `count`.
Outcome<std::vector<std::int64_t>> changesUpTo(Session& session, const SourceTree& source,
                                               const std::string& location,
                                               const std::string& revision, std::int64_t count,
                                               bool pegs) {
    std::vector<std::string> words = userOption(source);
    words.insert(words.end(),
                 {"log", "--xml", "-q", "-r", revision + ":1", "-l", std::to_string(count)});
    const bool isURL = isRepositoryURL(location) || location.starts_with("^/");
    const std::string place = isURL ? location : absolutePath(location);
    std::vector<std::string> places{place};
    if (pegs) {
        words.push_back(place + "@" + revision);
        places.clear();
    }
    std::vector<std::int64_t> changes;
    HistoryReader reader(
        [&](const HistoryEntry& entry) { changes.push_back(entry.commit.revision.value_or(0)); });
    const int status = session.streamClient(words, places, [&](std::string_view piece) {
        reader.take(piece);
        return true;
    });
    const Error broken = reader.finish();
    if (status != ExitSuccess) {
        return Explained{status};
    }
    if (broken) {
        session.tell(broken);
        return Explained{ExitFailure};
    }
    return changes;
}

std::string shown(const std::string& revision) {
    return revision.find_first_not_of("0123456789") == std::string::npos ? "r" + revision
                                                                         : revision;
}

Outcome<std::string> resolve(Session& session, const SourceTree& source,
                             const std::string& location, const std::string& revision, bool pegs) {
    const std::size_t mark = revision.find('~');
    if (mark == std::string::npos) {
        return revision;
    }
    const std::string base = revision.substr(0, mark);
    const std::int64_t steps = std::stoll(revision.substr(mark + 1));
    const auto changes = changesUpTo(session, source, location, base, steps + 1, pegs);
    if (!changes) {
        return changes.explained();
    }
    if (static_cast<std::int64_t>(changes->size()) > steps) {
        return std::to_string(changes->back());
    }
    const std::string item = "\"" + printable(location) + "\"";
    const std::string asked = shown(base) + (steps == 1 ? "^" : "~" + std::to_string(steps));
    return session.fail(changes->empty() ? item + " was not changed up to " + shown(base) + "."
                                         : asked + " does not exist: the first change of " + item +
                                               " is r" + std::to_string(changes->back()) + ".");
}

} // namespace

Outcome<RevisionRange> resolveRevisions(Session& session, const SourceTree& source,
                                        const std::string& location, RevisionRange revisions,
                                        bool pegs) {
    for (std::string* const each : {&revisions.start, &revisions.end}) {
        auto resolved = resolve(session, source, location.empty() ? "." : location, *each, pegs);
        if (!resolved) {
            return resolved.explained();
        }
        *each = std::move(*resolved);
    }
    return revisions;
}

} // namespace quen::tools
