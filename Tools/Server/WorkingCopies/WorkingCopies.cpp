#include "Tools/Server/WorkingCopies/WorkingCopies.h"

#include "Tools/Server/Dispatch/ProtocolError.h"
#include "Tools/Server/WorkingCopies/Discovery.h"
#include "Tools/Server/WorkingCopies/FactsReading.h"

#include <utility>

namespace quen::tools::server {

namespace {

/// About what one item takes in memory, its texts aside.
constexpr std::size_t bytesOfItem = sizeof(StatusItem) + 64;

} // namespace

WorkingCopies::WorkingCopies(Runs& runs, Dispatcher& dispatcher, MessageSink& sink, WindowLog& log)
    : runs_(runs), dispatcher_(dispatcher), sink_(sink), log_(log),
      refresh_(runs, sink, stop_.get_token()),
      watch_([this](const ChangeWatch::Due& due) { serveDue(due); }) {}

WorkingCopies::~WorkingCopies() {
    end();
}

void WorkingCopies::end() {
    stop_.request_stop();
}

WorkingCopyPtr WorkingCopies::find(const std::string& root) const {
    const std::lock_guard lock(mutex_);
    const auto found = copies_.find(root);
    return found == copies_.end() ? nullptr : found->second;
}

std::vector<WorkingCopyPtr> WorkingCopies::all() const {
    const std::lock_guard lock(mutex_);
    std::vector<WorkingCopyPtr> copies;
    for (const auto& [root, copy] : copies_) {
        copies.push_back(copy);
    }
    return copies;
}

/// Whoever opens a working copy; waits until nobody else does.
class WorkingCopies::Opening {
public:
    Opening(WorkingCopies& copies, const std::string& root, const std::stop_token& stop)
        : copies_(copies), root_(root) {
        std::unique_lock lock(copies_.mutex_);
        if (!copies_.isOpened_.wait(lock, stop,
                                    [&] { return !copies_.beingOpened_.contains(root); })) {
            throw requestCancelled(false);
        }
        copies_.beingOpened_.insert(root);
    }
    Opening(const Opening&) = delete;
    Opening& operator=(const Opening&) = delete;
    ~Opening() {
        {
            const std::lock_guard lock(copies_.mutex_);
            copies_.beingOpened_.erase(root_);
        }
        copies_.isOpened_.notify_all();
    }

private:
    WorkingCopies& copies_;
    std::string root_;
};

WorkingCopies::Opened WorkingCopies::open(const std::string& path, const RunOptions& options,
                                          const StatusWatcher& watcher) {
    const std::string root = rootAbove(path);
    if (root.empty()) {
        return {};
    }
    const Opening opening(*this, root, options.stop);
    if (const WorkingCopyPtr copy = find(root)) {
        return {copy, {}, false};
    }
    WorkingCopyFacts facts;
    Opened opened;
    opened.ran = readFacts(runs_, root, facts, options);
    if (!opened.ran.isWell() || facts.root.empty()) {
        return opened;
    }
    {
        const std::lock_guard lock(mutex_);
        const auto [found, isNew] = copies_.try_emplace(root);
        if (isNew) {
            found->second = std::make_shared<WorkingCopy>(facts);
        }
        opened.copy = found->second;
        opened.isNew = isNew;
    }
    if (opened.isNew && !watch_.add(root)) {
        log_.say(WindowLog::warning,
                 root + "/.svn/wc.db cannot be watched: changes made elsewhere show after a "
                        "refresh.");
    }
    if (!opened.copy->isKnown()) {
        opened.ran = makeKnown(opened.copy, options, watcher);
    }
    return opened;
}

Ran WorkingCopies::readAgainWhereChanged(const WorkingCopyPtr& copy, const RunOptions& options) {
    return databaseStampOf(copy->root()) == copy->facts().databaseStamp
               ? Ran()
               : readAgain(copy->root(), options);
}

bool WorkingCopies::isKept(const WorkingCopy& copy) const {
    return copy.isKnown() &&
           (watch_.watches(copy.root()) || databaseStampOf(copy.root()) == copy.databaseStamp());
}

Ran WorkingCopies::readAgain(const std::string& root, const RunOptions& options) {
    WorkingCopyFacts facts;
    Ran ran = readFacts(runs_, root, facts, options);
    const WorkingCopyPtr copy = find(root);
    if (copy != nullptr && !facts.root.empty()) {
        copy->setFacts(std::move(facts));
    }
    return ran;
}

bool WorkingCopies::close(const std::string& root) {
    watch_.remove(root);
    const std::lock_guard lock(mutex_);
    return copies_.erase(root) > 0;
}

std::vector<std::string> WorkingCopies::nestedIn(const WorkingCopy& copy) {
    std::vector<std::string> nested;
    for (const std::string& path : copy.unversionedPaths()) {
        for (std::string& root : rootsBelow(path)) {
            nested.push_back(std::move(root));
        }
    }
    return nested;
}

std::size_t WorkingCopies::bytes() const {
    std::size_t bytes = 0;
    for (const WorkingCopyPtr& copy : all()) {
        bytes += copy->bytes(bytesOfItem);
    }
    return bytes;
}

} // namespace quen::tools::server
