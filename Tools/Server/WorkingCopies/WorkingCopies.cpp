#include "Tools/Server/WorkingCopies/WorkingCopies.h"

#include "Host/Facts/InfoFacts.h"
#include "Host/Places/Locations.h"
#include "QuenFoundation/QuenSourceControlConstants.h"
#include "Tools/Console/JsonOutput.h"
#include "Tools/Server/Dispatch/Dispatcher.h"
#include "Tools/Server/Dispatch/ProtocolError.h"
#include "Tools/Server/Runs/Requests.h"
#include "Tools/Server/WorkingCopies/Discovery.h"

#include <algorithm>
#include <filesystem>
#include <utility>

namespace quen::tools::server {

namespace {

/// About what one item takes in memory, its texts aside.
constexpr std::size_t bytesOfItem = sizeof(StatusItem) + 64;

/// The items of a report, but for those that another working copy answers for.
class ReportItems {
public:
    /// What has been read since the last call. The reader keeps none of it.
    std::vector<StatusItem> takeNew(StatusFactsReader& reader) {
        std::vector<StatusItem> items;
        for (const StatusEntry& entry : reader.takeFacts().entries) {
            if (entry.item == "external") {
                externals_.push_back(entry.path.str() + "/");
            }
            if (!isUnchanged(entry) && !isElsewhere(entry.path.view())) {
                items.push_back(statusItemOf(entry));
            }
        }
        return items;
    }

private:
    bool isElsewhere(std::string_view path) const {
        return std::any_of(externals_.begin(), externals_.end(), [&](const std::string& directory) {
            return path.starts_with(directory);
        });
    }

    std::vector<std::string> externals_;
};

void append(StatusItems& items, std::vector<StatusItem> more) {
    for (StatusItem& item : more) {
        items.put(std::move(item));
    }
}

/// Whether the client said that it does not know a path, nor what it lies in.
bool isUnknown(const std::string& path, const std::string& clientText) {
    return clientText.find("'" + path + "'") != std::string::npos;
}

std::string parentOf(const std::string& path) {
    return std::filesystem::path(path).parent_path().string();
}

/// Without what lies below another of them.
std::vector<std::string> outermost(std::vector<std::string> paths) {
    std::sort(paths.begin(), paths.end());
    std::vector<std::string> kept;
    for (const std::string& path : paths) {
        // All that lies below a path comes behind it, though names such as `a.c` may stand between.
        const bool isBelow = std::any_of(kept.begin(), kept.end(), [&](const std::string& other) {
            return isAtOrBelow(path, other);
        });
        if (!isBelow) {
            kept.push_back(path);
        }
    }
    return kept;
}

/// What of the paths is this working copy's to tell. One inside it that is known answers for
/// itself; one that is not known yet is seen by a look at the directory that it lies in, because
/// the client, asked about its top, would tell of its inside.
std::vector<std::string> ownPaths(const WorkingCopy& copy, const std::vector<std::string>& paths) {
    std::vector<std::string> own;
    for (const std::string& path : paths) {
        std::error_code ignored;
        const bool isLink = std::filesystem::is_symlink(path, ignored);
        const std::string root = rootAbove(isLink ? parentOf(path) : path);
        const bool isOther = root != copy.root() && isAtOrBelow(root, copy.root());
        if (!isOther) {
            own.push_back(path);
        } else if (!copy.knows(root)) {
            own.push_back(parentOf(root));
        }
    }
    return own;
}

OrderedJson newsJson(const WorkingCopy& copy, const WorkingCopy::News& news) {
    OrderedJson changed = OrderedJson::array();
    for (const StatusItem& item : news.change.changed) {
        changed.push_back(statusItemJson(item));
    }
    OrderedJson removed = OrderedJson::array();
    for (const StatusItem& item : news.change.removed) {
        removed.push_back(toJson(String(item.path)));
    }
    return {{"workingCopy", toJson(String(copy.root()))},
            {"generation", news.generation},
            {"changed", std::move(changed)},
            {"removed", std::move(removed)},
            {"counts", news.counts}};
}

} // namespace

WorkingCopies::WorkingCopies(Runs& runs, Dispatcher& dispatcher, MessageSink& sink, WindowLog& log)
    : runs_(runs), dispatcher_(dispatcher), sink_(sink), log_(log),
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

/// What the client says of the root; the error of whichever run failed.
Ran WorkingCopies::readFacts(const std::string& root, WorkingCopyFacts& facts,
                             const RunOptions& options) {
    const std::string stamp = databaseStampOf(root);
    InfoFactsReader reader;
    RunOptions watched = options;
    watched.watcher = [&](std::string_view piece) { reader.take(piece); };
    Ran ran = runs_.perform(makeRequest(RequestTypeInfo, placeOf(root), {root}), watched);
    static_cast<void>(reader.finish());
    if (!ran.isWell() || reader.facts().entries.empty()) {
        return ran;
    }
    const InfoEntry& entry = reader.facts().entries.front();
    facts = {root,
             entry.url.str(),
             entry.repositoryRoot.str(),
             entry.repositoryUUID.str(),
             entry.revision,
             {},
             false,
             stamp};
    const RepositoryLayout layout = layoutOf(root, facts.url, facts.repositoryRoot);
    const Ran branch = runs_.perform(
        makeRequest(RequestTypeCurrentBranch, placeWithLayout(root, facts.repositoryRoot, layout)),
        options);
    const Array* const records =
        branch.operation == nullptr ? nullptr : branch.operation->result().array();
    if (records != nullptr && records->count() > 0) {
        const String name =
            (*(*records)[0].dictionary())[QuenSourceControlOperationNameKey].stringValue();
        facts.isTrunk = name == QuenSourceControlTrunkBranchName;
        facts.branch =
            facts.isTrunk ? String(std::filesystem::path(layout.trunk).filename().string()) : name;
    }
    return ran;
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
                                          const ItemWatcher& watcher) {
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
    opened.ran = readFacts(root, facts, options);
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
                 "There is no watch to be had on " + root +
                     "/.svn/wc.db: changes made elsewhere show after a refresh.");
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
    Ran ran = readFacts(root, facts, options);
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

Ran WorkingCopies::refresh(const WorkingCopyPtr& copy, const RunOptions& options,
                           const ItemWatcher& watcher) {
    const auto turn = copy->takeTurn(options.stop);
    if (!turn) {
        throw requestCancelled(false);
    }
    return refreshInTurn(copy, options, watcher);
}

Ran WorkingCopies::makeKnown(const WorkingCopyPtr& copy, const RunOptions& options,
                             const ItemWatcher& watcher) {
    const auto turn = copy->takeTurn(options.stop);
    if (!turn) {
        throw requestCancelled(false);
    }
    return copy->isKnown() ? Ran() : refreshInTurn(copy, options, watcher);
}

Ran WorkingCopies::refreshInTurn(const WorkingCopyPtr& copy, const RunOptions& options,
                                 const ItemWatcher& watcher) {
    const std::string stamp = databaseStampOf(copy->root());
    StatusFactsReader reader;
    ReportItems items;
    StatusItems taken;
    const auto takeNew = [&] {
        std::vector<StatusItem> fresh = items.takeNew(reader);
        if (watcher && !fresh.empty()) {
            watcher(fresh);
        }
        append(taken, std::move(fresh));
    };
    RunOptions watched = options;
    watched.watcher = [&](std::string_view piece) {
        reader.take(piece);
        takeNew();
    };
    Ran ran = runs_.perform(makeRequest(RequestTypeStatus, placeOf(copy->root()), {copy->root()}),
                            watched);
    static_cast<void>(reader.finish());
    takeNew();
    if (ran.isWell()) {
        copy->setDatabaseStamp(stamp);
        announce(*copy, copy->replaceAll(std::move(taken)));
    }
    return ran;
}

Ran WorkingCopies::refreshBelow(const WorkingCopyPtr& copy, std::vector<std::string> paths,
                                const RunOptions& options) {
    const auto turn = copy->takeTurn(options.stop);
    if (!turn) {
        throw requestCancelled(false);
    }
    // Another working copy may have been told of since the paths were touched.
    paths = ownPaths(*copy, paths);
    if (paths.empty()) {
        return {};
    }
    for (std::string& path : paths) {
        const std::string unversioned = copy->unversionedAt(path);
        path = unversioned.empty() ? path : unversioned;
    }
    paths = outermost(std::move(paths));
    while (true) {
        StatusFactsReader reader;
        RunOptions watched = options;
        watched.watcher = [&](std::string_view piece) { reader.take(piece); };
        Ran ran =
            runs_.perform(makeRequest(RequestTypeStatus, placeOf(copy->root()), paths), watched);
        static_cast<void>(reader.finish());
        // What lies in a new directory is told by the directory: the client does not know it.
        bool isAnyUnknown = false;
        for (std::string& path : paths) {
            if (path.size() > copy->root().size() && isUnknown(path, ran.clientText)) {
                path = parentOf(path);
                isAnyUnknown = true;
            }
        }
        if (isAnyUnknown) {
            paths = outermost(std::move(paths));
            continue;
        }
        if (ran.isWell()) {
            StatusItems items;
            append(items, ReportItems().takeNew(reader));
            announce(*copy, copy->replaceBelow(paths, items));
        }
        return ran;
    }
}

void WorkingCopies::noteTouched(const std::vector<std::string>& paths) {
    for (const std::string& path : paths) {
        // The item itself may be a link, or gone: its directory is what has a real path.
        const std::filesystem::path given(path);
        const std::string directory = realPathOf(given.parent_path().string());
        const std::string real =
            directory.empty() ? given.lexically_normal().string()
                              : (std::filesystem::path(directory) / given.filename()).string();
        for (const WorkingCopyPtr& copy : all()) {
            const bool isOurs = isAtOrBelow(real, copy->root()) &&
                                !isAtOrBelow(real, copy->root() + "/.svn") &&
                                !copy->isInsideExternal(real);
            if (isOurs) {
                watch_.noteTouched(copy->root(), real);
            }
        }
    }
}

void WorkingCopies::serveDue(const ChangeWatch::Due& due) {
    const WorkingCopyPtr copy = find(due.root);
    if (copy == nullptr || stop_.stop_requested()) {
        return;
    }
    const std::string stamp = databaseStampOf(due.root);
    if (stamp.empty()) {
        close(due.root);
        sink_.send(
            notificationText("workingCopy/didClose", {{"workingCopy", toJson(String(due.root))}}),
            stop_.get_token());
        return;
    }
    if (due.isWatchLost) {
        watch_.add(due.root); // another database is in its place
    }
    const bool isForeign = due.isDatabase && !copy->isChanging() && stamp != copy->databaseStamp();
    if (!isForeign && due.touched.empty()) {
        return;
    }
    if (isForeign) {
        copy->setDatabaseStamp(stamp);
    }
    dispatcher_.enqueue({}, [this, copy, due, isForeign] {
        const RunOptions options{stop_.get_token(), {}, {}};
        try {
            const Ran ran =
                isForeign ? refresh(copy, options)
                          : refreshBelow(copy, {due.touched.begin(), due.touched.end()}, options);
            if (!ran.isWell()) {
                log_.say(WindowLog::warning,
                         copy->root() + ": " + ran.error.localizedDescription().str());
            }
        } catch (const std::exception& error) {
            log_.say(WindowLog::warning, copy->root() + ": " + error.what());
        }
    });
}

Ran WorkingCopies::change(const std::string& root, const std::vector<std::string>& paths,
                          const std::stop_token& stop, const std::function<Ran()>& run) {
    const WorkingCopyPtr copy = find(root);
    if (copy == nullptr) {
        return run();
    }
    struct Change {
        explicit Change(WorkingCopy& ofCopy) : copy(ofCopy) { copy.beginChange(); }
        Change(const Change&) = delete;
        Change& operator=(const Change&) = delete;
        ~Change() { copy.endChange(); }
        WorkingCopy& copy;
    };
    const Change change(*copy);
    // A change that fails, or is cancelled, may have done a part of its work.
    try {
        Ran ran = run();
        afterChange(copy, paths, stop);
        return ran;
    } catch (const ProtocolError&) {
        refreshBehind(copy);
        throw;
    }
}

void WorkingCopies::refreshBehind(const WorkingCopyPtr& copy) {
    if (!stop_.stop_requested()) {
        dispatcher_.enqueue({}, [this, copy] { afterChange(copy, {}, stop_.get_token()); });
    }
}

void WorkingCopies::afterChange(const WorkingCopyPtr& copy, const std::vector<std::string>& paths,
                                const std::stop_token& stop) {
    const RunOptions options{stop, {}, {}};
    try {
        const std::string stamp = databaseStampOf(copy->root());
        const Ran ran = paths.empty() ? refresh(copy, options) : refreshBelow(copy, paths, options);
        copy->setDatabaseStamp(stamp);
        if (!ran.isWell()) {
            log_.say(WindowLog::warning,
                     copy->root() + ": " + ran.error.localizedDescription().str());
        }
    } catch (const ProtocolError&) {
        refreshBehind(copy); // the change has been made, and its answer does not wait
    }
}

void WorkingCopies::announce(const WorkingCopy& copy,
                             const std::optional<WorkingCopy::News>& news) {
    if (news) {
        sink_.send(notificationText("workingCopy/changed", newsJson(copy, *news)),
                   stop_.get_token());
    }
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
