#include "Tools/Server/WorkingCopies/StatusRefresh.h"

#include "Host/Places/Locations.h"
#include "Tools/Console/JsonOutput.h"
#include "Tools/Server/Dispatch/ProtocolError.h"
#include "Tools/Server/Runs/Requests.h"
#include "Tools/Server/WorkingCopies/Discovery.h"

#include <algorithm>
#include <filesystem>
#include <utility>

namespace quen::tools::server {

namespace {

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

Ran StatusRefresh::whole(const WorkingCopyPtr& copy, const RunOptions& options,
                         const Watcher& watcher) {
    const auto turn = copy->takeTurn(options.stop);
    if (!turn) {
        throw requestCancelled(false);
    }
    return wholeInTurn(copy, options, watcher);
}

Ran StatusRefresh::makeKnown(const WorkingCopyPtr& copy, const RunOptions& options,
                             const Watcher& watcher) {
    const auto turn = copy->takeTurn(options.stop);
    if (!turn) {
        throw requestCancelled(false);
    }
    return copy->isKnown() ? Ran() : wholeInTurn(copy, options, watcher);
}

Ran StatusRefresh::wholeInTurn(const WorkingCopyPtr& copy, const RunOptions& options,
                               const Watcher& watcher) {
    const std::string stamp = databaseStampOf(copy->root());
    StatusFactsReader reader;
    ReportItems items;
    StatusItems taken;
    const auto takeNew = [&] {
        std::vector<StatusItem> fresh = items.takeNew(reader);
        if (watcher.items && !fresh.empty()) {
            watcher.items(fresh);
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
        const WorkingCopy::TakenIn report = copy->replaceAll(std::move(taken));
        if (watcher.takenIn) {
            watcher.takenIn(report.generation);
        }
        announce(*copy, report.news);
    }
    return ran;
}

Ran StatusRefresh::below(const WorkingCopyPtr& copy, std::vector<std::string> paths,
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

void StatusRefresh::announce(const WorkingCopy& copy,
                             const std::optional<WorkingCopy::News>& news) {
    if (news) {
        sink_.send(notificationText("workingCopy/changed", newsJson(copy, *news)), stop_);
    }
}

} // namespace quen::tools::server
