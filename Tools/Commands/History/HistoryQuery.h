#pragma once

#include "Host/Facts/HistoryFacts.h"
#include "Tools/Commands/History/HistoryFilter.h"
#include "Tools/Commands/Places/RevisionArguments.h"
#include "Tools/Commands/Session/Session.h"

#include <cstdint>
#include <functional>
#include <string>

namespace quen::tools {

/// A stretch of the history of one place.
struct HistoryQuery {
    /// A path or URL; empty for the directory here.
    std::string location;
    RevisionRange revisions;
    /// Of what the filter admits; 0 for any number.
    std::int64_t limit = 0;
    bool stopsOnCopy = false;
    bool wantsPaths = false;
    bool pegs = false;
    HistoryFilter filter;
};

/// What is shown of a history, as it arrives.
class HistoryView {
public:
    HistoryView() = default;
    HistoryView(const HistoryView&) = delete;
    HistoryView& operator=(const HistoryView&) = delete;
    virtual ~HistoryView() = default;

    virtual void show(const HistoryEntry& entry) = 0;
    /// Called now and then: what has been shown should be seen. False when nobody looks any more.
    virtual bool flush() = 0;
};

/// The youngest revision at a date, as the client takes it.
std::string revisionAt(Date date);

/// Reads a history, the youngest first unless the range says otherwise, and shows it while the
/// client writes. Without revisions that of a working copy begins with what others have committed
/// since, as far as the item is still there. The exit status.
int showHistory(Session& session, const HistoryQuery& query, HistoryView& view);

} // namespace quen::tools
