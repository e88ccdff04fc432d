#pragma once

#include "Tools/Server/Runs/Runs.h"
#include "Tools/Server/WorkingCopies/WorkingCopy.h"

#include <cstdint>
#include <functional>
#include <optional>
#include <stop_token>
#include <string>
#include <vector>

namespace quen::tools::server {

/// Brings the status that is kept of a working copy up to date from the client's own reports, and
/// sends what has changed. Throws requestCancelled where a run is ended by `options.stop`.
///
/// Threads: any.
class StatusRefresh {
public:
    /// After `stop` nothing is sent any more.
    StatusRefresh(Runs& runs, MessageSink& sink, std::stop_token stop)
        : runs_(runs), sink_(sink), stop_(std::move(stop)) {}

    /// Who sends a whole status while it is read.
    struct Watcher {
        /// Hears of items while the client writes them.
        std::function<void(const std::vector<StatusItem>&)> items;
        /// Hears which generation these items are, before another can follow.
        std::function<void(std::uint64_t)> takenIn;
    };

    /// Runs the client for the whole status.
    Ran whole(const WorkingCopyPtr& copy, const RunOptions& options, const Watcher& watcher);
    /// Likewise, but only where no status is kept yet: of several that ask for it at once, one runs
    /// the client and the others wait.
    Ran makeKnown(const WorkingCopyPtr& copy, const RunOptions& options, const Watcher& watcher);
    /// Runs the client for some paths alone.
    Ran below(const WorkingCopyPtr& copy, std::vector<std::string> paths,
              const RunOptions& options);

private:
    Ran wholeInTurn(const WorkingCopyPtr& copy, const RunOptions& options, const Watcher& watcher);
    void announce(const WorkingCopy& copy, const std::optional<WorkingCopy::News>& news);

    Runs& runs_;
    MessageSink& sink_;
    std::stop_token stop_;
};

} // namespace quen::tools::server
