#pragma once

#include "Tools/Server/Runs/Runs.h"
#include "Tools/Server/WorkingCopies/ChangeWatch.h"
#include "Tools/Server/WorkingCopies/StatusRefresh.h"
#include "Tools/Server/WorkingCopies/WorkingCopy.h"

#include <condition_variable>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <set>
#include <stop_token>
#include <string>
#include <utility>
#include <vector>

namespace quen::tools::server {

class Dispatcher;

/// The open working copies: one object for one real path, whichever way it was named. What is kept
/// of each is brought up to date from the client's own reports, and differences are sent.
///
/// Threads: any.
class WorkingCopies {
public:
    WorkingCopies(Runs& runs, Dispatcher& dispatcher, MessageSink& sink, WindowLog& log);
    WorkingCopies(const WorkingCopies&) = delete;
    WorkingCopies& operator=(const WorkingCopies&) = delete;
    ~WorkingCopies();

    struct Opened {
        WorkingCopyPtr copy;
        Ran ran;
        /// It was not open before.
        bool isNew = false;
    };
    using StatusWatcher = StatusRefresh::Watcher;
    /// Opens the working copy that a path lies in, and gets its first status, whose items `watcher`
    /// hears of while the client writes. `copy` is null where the path lies in none, and where the
    /// client failed, which `ran` tells. Of several that open one at once, one runs the client and
    /// the others wait.
    Opened open(const std::string& path, const RunOptions& options,
                const StatusWatcher& watcher = {});
    /// Asks the client again what an open working copy is: it may have been switched.
    Ran readAgain(const std::string& root, const RunOptions& options);
    /// Only where its database has changed since the client was asked last.
    Ran readAgainWhereChanged(const WorkingCopyPtr& copy, const RunOptions& options);
    /// Whether the kept status can be answered with: there is one, and whoever changes the working
    /// copy is seen, or nobody has.
    bool isKept(const WorkingCopy& copy) const;
    /// False where it was not open.
    bool close(const std::string& root);
    /// Null where it is not open.
    WorkingCopyPtr find(const std::string& root) const;
    std::vector<WorkingCopyPtr> all() const;

    /// Runs the client for the whole status.
    Ran refresh(const WorkingCopyPtr& copy, const RunOptions& options,
                const StatusWatcher& watcher = {}) {
        return refresh_.whole(copy, options, watcher);
    }
    /// Likewise, but only where no status is kept yet: of several that ask for it at once, one runs
    /// the client and the others wait.
    Ran makeKnown(const WorkingCopyPtr& copy, const RunOptions& options,
                  const StatusWatcher& watcher = {}) {
        return refresh_.makeKnown(copy, options, watcher);
    }
    /// Runs the client for some paths alone.
    Ran refreshBelow(const WorkingCopyPtr& copy, std::vector<std::string> paths,
                     const RunOptions& options) {
        return refresh_.below(copy, std::move(paths), options);
    }

    /// The editor says that paths were touched; served later, all of a short time in one run.
    void noteTouched(const std::vector<std::string>& paths);
    /// Makes a change of a working copy and brings what is kept of it up to date: at and below the
    /// paths, or everything where there are none. Events of its database meanwhile are the
    /// change's. After `stop` nobody waits for that: it is done behind the answer.
    Ran change(const std::string& root, const std::vector<std::string>& paths,
               const std::stop_token& stop, const std::function<Ran()>& run);

    /// Working copies in it that it does not know of.
    static std::vector<std::string> nestedIn(const WorkingCopy& copy);

    std::size_t watches() const { return watch_.watches(); }
    /// About so many bytes are kept.
    std::size_t bytes() const;
    /// No more work of its own begins.
    void end();

private:
    void afterChange(const WorkingCopyPtr& copy, const std::vector<std::string>& paths,
                     const std::stop_token& stop);
    void refreshBehind(const WorkingCopyPtr& copy);
    void serveDue(const ChangeWatch::Due& due);
    class Opening;

    Runs& runs_;
    Dispatcher& dispatcher_;
    MessageSink& sink_;
    WindowLog& log_;
    std::stop_source stop_;
    StatusRefresh refresh_;
    mutable std::mutex mutex_;
    std::map<std::string, WorkingCopyPtr> copies_;
    std::set<std::string> beingOpened_;
    std::condition_variable_any isOpened_;
    /// Last, so that nothing is due any more while the rest goes.
    ChangeWatch watch_;
};

} // namespace quen::tools::server
