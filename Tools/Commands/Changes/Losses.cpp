#include "Tools/Commands/Changes/Losses.h"

#include "Foundation/ShellWord.h"
#include "Host/Keeping/UndoStore.h"
#include "Host/Places/Locations.h"
#include "Host/Places/SettingsFile.h"
#include "Tools/Commands/Changes/Summaries.h"
#include "Tools/Commands/Session/HostQueries.h"
#include "Tools/Commands/Session/Records.h"
#include "Tools/Terminal/InterruptWatch.h"

#include <algorithm>
#include <filesystem>
#include <map>

namespace quen::tools {

namespace {

/// The top of the working copy that a lost item is kept with: that of the path of the command that
/// it lies at or below. What lies in an external goes with the working copy around it.
std::string topFor(const String& lost, const std::vector<String>& paths) {
    String longest;
    for (const String& path : paths) {
        if (isAtOrBelow(lost.view(), path.view()) && path.length() >= longest.length()) {
            longest = path;
        }
    }
    return topDirectoryOf((longest.isNil() ? lost : longest).str()).string();
}

} // namespace

std::string wordsForItem(const StatusEntry& entry) {
    const std::string word = printable(entry.item.view());
    const bool isNew = word == "unversioned" || word == "ignored";
    const bool hasProperties =
        entry.properties.view() == "modified" || entry.properties.view() == "conflicted";
    if (isNew || !hasProperties) {
        return entry.isTreeConflict ? "tree conflict" : word;
    }
    const std::string properties = "properties " + printable(entry.properties.view());
    return word == "normal" || word == "none" ? properties : word + ", " + properties;
}

Explained Losses::explain(const Session& session, const Error& error,
                          const QuenSourceControlRequest* request) {
    if (InterruptWatch::wasInterrupted()) {
        return session.fail("Interrupted.", ExitInterrupted);
    }
    session.tell(error, request);
    return {ExitFailure};
}

Losses Losses::lostBy(const std::string& step, const std::vector<LostItem>& lost) {
    Confirmation confirmation("These changes will be lost:",
                              capitalised(step) + " " + counted(lost.size(), "item") + "?");
    for (const LostItem& item : lost) {
        StatusEntry entry = item.status;
        entry.properties = item.losesProperties ? String("modified") : String("none");
        confirmation.add(wordsForItem(entry), shownPath(item.path.str()));
    }
    return {step, std::move(confirmation), lost};
}

void Losses::keepOf(const Session& session, const std::string& workingCopy,
                    const std::vector<LostItem>& lost, Confirmation& unkept) {
    const std::vector<String> paths = lostContent(lost);
    const auto kept =
        UndoStore().keep(workingCopy, step_, paths, lostPropertyNotes(lost, runHostQuery));
    if (kept.error) {
        session.tell(kept.error);
        for (const LostItem& item : lost) {
            unkept.add(wordsForItem(item.status), shownPath(item.path.str()));
        }
    }
    for (const UndoRefusal& refusal : kept.refused) {
        unkept.add(printable(refusal.reason.view()), shownPath(refusal.path.str()));
    }
    if (!kept.entry.id.isNil()) {
        kept_.push_back({workingCopy, kept.entry.id});
    }
}

int Losses::keep(const Session& session, const std::vector<std::string>& paths, bool isSure) {
    if (session.options().dryRun) {
        return ExitSuccess;
    }
    const std::vector<String> places = absolutePaths(paths);
    std::map<std::string, std::vector<LostItem>> groups;
    for (const LostItem& item : lost_) {
        if (const std::string top = topFor(item.path, places); !top.empty()) {
            groups[top].push_back(item);
        }
    }
    Confirmation unkept("`quen undo` cannot bring these back:",
                        capitalised(step_) + " all the same?");
    for (const auto& [top, lost] : groups) {
        keepOf(session, top, lost, unkept);
    }
    if (!unkept.isEmpty() && isSure) {
        unkept.show(session);
    }
    const int status = unkept.obtain(session, isSure);
    if (status != ExitSuccess) {
        forget();
    }
    return status;
}

void Losses::forget() {
    for (const Kept& kept : kept_) {
        UndoStore().forget(kept.id);
    }
    kept_.clear();
}

std::size_t Losses::unversionedAmong(const std::vector<std::string>& paths) const {
    const std::vector<String> named = absolutePaths(paths);
    return static_cast<std::size_t>(
        std::count_if(lost_.begin(), lost_.end(), [&](const LostItem& item) {
            const bool isVersioned =
                item.status.item != "unversioned" && item.status.item != "ignored";
            return !isVersioned && std::find(named.begin(), named.end(), item.path) != named.end();
        }));
}

std::string Losses::undoCommand() const {
    const std::string here = topDirectoryOf(".").string();
    std::string places;
    for (const Kept& kept : kept_) {
        places += " " + shellWord(shownPath(kept.workingCopy));
    }
    const bool isHere = kept_.size() == 1 && kept_.front().workingCopy == here;
    return isHere ? "quen undo" : "quen undo" + places;
}

std::string Losses::advice() const {
    return kept_.empty() ? "" : " `" + undoCommand() + "` brings back what the files held.";
}

int Losses::conclude(const Session& session, int status) const {
    for (const Kept& kept : kept_) {
        if (const Error error = UndoStore().noteResult(kept.id)) {
            session.tell(error);
        }
    }
    if (!kept_.empty() && status != ExitSuccess && status != ExitConflicts) {
        session.tell("What the files held is kept: `" + undoCommand() +
                     "` brings back what is gone.");
    }
    return status;
}

} // namespace quen::tools
