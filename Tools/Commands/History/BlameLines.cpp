#include "Tools/Commands/History/BlameLines.h"

#include "Host/Places/Locations.h"

namespace quen::tools {

void BlameLines::add(const CommitFacts& commit) {
    const std::int64_t revision = commit.revision.value_or(noRevision);
    numbers_.push_back(revision);
    if (!commits_.contains(revision)) {
        commits_.emplace(revision, commit);
    }
}

void BlameLines::passOver(std::size_t index, std::int64_t ignored, const CommitFacts& commit) {
    ignored_.emplace(index, ignored);
    numbers_[index] = commit.revision.value_or(noRevision);
    commits_.emplace(numbers_[index], commit);
}

std::optional<std::int64_t> BlameLines::ignoredAt(std::size_t index) const {
    const auto found = ignored_.find(index);
    return found == ignored_.end() ? std::nullopt : std::optional(found->second);
}

QuenSourceControlRequestPtr blameRequest(const SourceTree& source, const std::string& path,
                                         const RevisionRange& revisions) {
    auto request = makeRequest(RequestTypeBlame, source, {clientPath(path)});
    request->setStartingRevision(startingRevisionFor(revisions.start));
    if (revisions.isRange()) {
        request->setEndingRevision(revisions.end);
    }
    return request;
}

int readBlame(Session& session, const QuenSourceControlRequestPtr& request, BlameLines& lines) {
    BlameReader reader([&](const CommitFacts& commit) { lines.add(commit); });
    const int status = session.stream(request, "<blame/>", [&](std::string_view piece) {
        reader.take(piece);
        return true;
    });
    const Error broken = reader.finish();
    if (status == ExitSuccess && broken) {
        session.tell(broken);
        return ExitFailure;
    }
    return status;
}

} // namespace quen::tools
