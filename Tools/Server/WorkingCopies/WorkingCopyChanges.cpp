// What happens to working copies that are open: touched paths, changes seen in the database, and
// changes of the server's own.

#include "Host/Places/Locations.h"
#include "Tools/Console/JsonOutput.h"
#include "Tools/Server/Dispatch/Dispatcher.h"
#include "Tools/Server/Dispatch/ProtocolError.h"
#include "Tools/Server/WorkingCopies/Discovery.h"
#include "Tools/Server/WorkingCopies/WorkingCopies.h"

#include <filesystem>

namespace quen::tools::server {

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

} // namespace quen::tools::server
