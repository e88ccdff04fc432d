#include "Tools/Commands/History/HistoryQuery.h"

#include "Host/Places/Locations.h"
#include "QuenFoundation/QuenSourceControlConstants.h"
#include "Tools/Commands/Places/EarlierRevisions.h"
#include "Tools/Commands/Places/SourceTreeFinder.h"

#include <utility>

namespace quen::tools {

namespace {

/// What is read: the client can leave out what is too old, and count where nothing else is left
/// out here.
Dictionary optionsFor(const HistoryQuery& query) {
    Dictionary options = Dictionary::empty();
    if (query.limit > 0 && !query.filter.isGiven()) {
        options.set(QuenSourceControlRequestOptionLogOutputLimit, query.limit);
    }
    options.set(QuenSourceControlRequestOptionLogStopOnBranching, query.stopsOnCopy);
    options.set(QuenSourceControlRequestOptionLogOutputFilesChanged, query.wantsPaths);
    options.set(QuenSourceControlRequestOptionSupplyDirectRevision, query.pegs);
    return options;
}

QuenSourceControlRequestPtr requestFor(const HistoryQuery& query, const SourceTree& source) {
    // Without a path the history is that of the directory that the client runs in.
    const bool isOfAll = query.location.empty();
    auto request = makeRequest(isOfAll ? RequestTypeLogAll : RequestTypeLog, source,
                               isOfAll ? StringArray() : StringArray{clientPath(query.location)},
                               optionsFor(query));
    request->setStartingRevision(startingRevisionFor(query.revisions.start));
    if (query.revisions.isRange()) {
        request->setEndingRevision(query.revisions.end);
    }
    return request;
}

/// One run of the client.
class Stretch {
public:
    Stretch(Session& session, const SourceTree& source, HistoryView& view)
        : session_(session), source_(source), view_(view) {}

    int show(const HistoryQuery& query, bool isQuiet) {
        std::int64_t left = query.limit > 0 ? query.limit : -1;
        HistoryReader reader([&](const HistoryEntry& entry) {
            if (left != 0 && query.filter.admits(entry)) {
                left -= left > 0 ? 1 : 0;
                hasShown_ = true;
                view_.show(entry);
            }
        });
        const int status = session_.stream(
            requestFor(query, source_), "<log/>",
            [&](std::string_view piece) {
                reader.take(piece);
                return view_.flush() && left != 0;
            },
            isQuiet);
        if (status != ExitSuccess || left == 0) {
            return status;
        }
        const Error broken = reader.finish();
        if (broken && view_.flush()) {
            session_.tell(broken);
            return ExitFailure;
        }
        return ExitSuccess;
    }

    bool hasShown() const { return hasShown_; }

private:
    Session& session_;
    const SourceTree& source_;
    HistoryView& view_;
    bool hasShown_ = false;
};

} // namespace

std::string revisionAt(Date date) {
    return "{" + dateText(date).substr(0, 19) + "Z}";
}

int showHistory(Session& session, const HistoryQuery& query, HistoryView& view) {
    const auto source = findSource(session, query.location.empty() ? "." : query.location);
    if (!source) {
        return source.status();
    }
    Stretch stretch(session, *source, view);
    if (query.revisions.isGiven()) {
        const auto revisions =
            resolveRevisions(session, *source, query.location, query.revisions, query.pegs);
        HistoryQuery ofRevisions = query;
        ofRevisions.revisions = revisions ? *revisions : RevisionRange();
        return revisions ? stretch.show(ofRevisions, false) : revisions.status();
    }
    HistoryQuery fromYoungest = query;
    fromYoungest.revisions = {"HEAD", query.filter.since ? revisionAt(*query.filter.since) : "1"};
    if (isRepositoryURL(query.location)) {
        return stretch.show(query.filter.since ? fromYoungest : query, false);
    }
    const int status = stretch.show(fromYoungest, true);
    // What is gone from the youngest revision has a history all the same.
    const bool isWorthAnother = status == ExitFailure && !stretch.hasShown();
    return isWorthAnother ? stretch.show(query, false) : status;
}

} // namespace quen::tools
