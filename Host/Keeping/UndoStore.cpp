#include "Host/Keeping/UndoStore.h"

#include "Foundation/PathComponents.h"
#include "Host/Keeping/FileErrors.h"
#include "Host/Keeping/UndoDirectory.h"
#include "Host/Keeping/UndoGathering.h"
#include "Host/Keeping/UndoManifest.h"
#include "Host/Keeping/UndoPlace.h"
#include "Host/Places/Locations.h"

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <filesystem>
#include <system_error>
#include <utility>

namespace quen {

namespace {

namespace fs = std::filesystem;

String realPath(const String& path) {
    std::error_code error;
    const fs::path real = fs::canonical(path.str(), error);
    return error ? path : String(real.string());
}

/// The steps after one of the same working copy, that have not been undone.
std::vector<UndoManifest> laterSteps(const UndoDirectory& directory, const String& id,
                                     const String& workingCopy) {
    const std::vector<String> ids = directory.ids();
    std::vector<UndoManifest> later;
    for (auto each = std::find(ids.begin(), ids.end(), id); each != ids.end(); ++each) {
        auto manifest = *each == id ? std::nullopt : directory.manifest(*each);
        if (manifest && manifest->workingCopy == workingCopy) {
            later.push_back(std::move(*manifest));
        }
    }
    return later;
}

/// What a later step left in the item's place is not newer work: that step has kept what it met.
void acceptLaterResults(ManifestItem& item, const std::vector<UndoManifest>& later) {
    const PlaceState now = PlaceState::at(item.item.path.str());
    for (const UndoManifest& step : later) {
        for (const ManifestItem& each : step.items) {
            if (each.item.path == item.item.path && each.left == now) {
                item.left = now;
            }
        }
    }
}

} // namespace

String UndoStore::defaultDirectory() {
    // NOLINTNEXTLINE(concurrency-mt-unsafe): nothing changes the environment
    const char* const state = std::getenv("XDG_STATE_HOME");
    if (state != nullptr && *state == '/') {
        return appendingPathComponent(state, "quen/undo");
    }
    // NOLINTNEXTLINE(concurrency-mt-unsafe): nothing changes the environment
    const char* const home = std::getenv("HOME");
    return home != nullptr && *home == '/' ? appendingPathComponent(home, ".local/state/quen/undo")
                                           : String();
}

UndoStore::Kept UndoStore::keep(const String& workingCopy, const String& step,
                                const std::vector<String>& paths, std::vector<String> notes) {
    Kept result;
    UndoDirectory directory(directory_);
    const std::string unfinished = directory.error() ? std::string() : directory.makeUnfinished();
    if (directory.error()) {
        result.error = directory.error();
        return result;
    }
    const String top = realPath(workingCopy);
    UndoGathering gathering(unfinished, top, limits_.bytes);
    for (const String& path : paths) {
        // A working copy that was named through a link is kept under its real path.
        const bool isNamedSo = isAtOrBelow(path.view(), workingCopy.view());
        gathering.take(isNamedSo ? String(top.str() + path.str().substr(workingCopy.length()))
                                 : path);
    }
    result.refused = std::move(gathering.refused);
    UndoManifest& manifest = gathering.manifest;
    if (manifest.items.empty() && notes.empty()) {
        std::error_code ignored;
        fs::remove_all(unfinished, ignored);
        return result;
    }
    manifest.workingCopy = top;
    manifest.step = step;
    manifest.notes = std::move(notes);
    manifest.time = std::chrono::duration_cast<std::chrono::microseconds>(
                        std::chrono::system_clock::now().time_since_epoch())
                        .count();
    result.error = directory.setManifest(unfinished, manifest);
    const String id = result.error ? String() : directory.finish(unfinished);
    if (id.isNil()) {
        result.error = result.error ? result.error : directory.error();
        return result;
    }
    directory.trim(limits_, id);
    result.entry = manifest.entry(id);
    return result;
}

Error UndoStore::noteResult(const String& id) {
    const UndoDirectory directory(directory_);
    if (directory.error()) {
        return directory.error();
    }
    auto manifest = directory.manifest(id);
    if (!manifest) {
        return fileError(ENOENT, directory.pathOf(id), "could not be read");
    }
    for (ManifestItem& each : manifest->items) {
        each.left = PlaceState::at(each.item.path.str());
    }
    return directory.setManifest(directory.pathOf(id), *manifest);
}

std::vector<UndoEntry> UndoStore::entries(const String& workingCopy) const {
    std::vector<UndoEntry> found;
    std::error_code ignored;
    if (directory_.isEmpty() || !fs::exists(directory_.str(), ignored)) {
        return found;
    }
    const UndoDirectory directory(directory_);
    const String top = realPath(workingCopy);
    for (const String& id : directory.error() ? std::vector<String>() : directory.ids()) {
        const auto manifest = directory.manifest(id);
        if (manifest && manifest->workingCopy == top) {
            found.push_back(manifest->entry(id));
        }
    }
    std::reverse(found.begin(), found.end());
    return found;
}

void UndoStore::forget(const String& id) {
    const UndoDirectory directory(directory_);
    if (!directory.error() && !id.isNil()) {
        directory.remove(id);
    }
}

UndoStore::Restored UndoStore::restoreLast(const String& workingCopy) {
    const std::vector<UndoEntry> known = entries(workingCopy);
    return known.empty() ? Restored() : restore(workingCopy, known.front().id);
}

UndoStore::Restored UndoStore::restore(const String& workingCopy, const String& id) {
    Restored result;
    const UndoDirectory directory(directory_);
    const auto manifest = directory.error() ? std::nullopt : directory.manifest(id);
    if (!manifest || manifest->workingCopy != realPath(workingCopy)) {
        // Perhaps another process was quicker.
        result.error = directory.error()
                           ? directory.error()
                           : fileError(ENOENT, directory.pathOf(id), "could not be read");
        return result;
    }
    result.entry = manifest->entry(id);
    bool isAllSomewhere = true;
    const std::vector<UndoManifest> later = laterSteps(directory, id, manifest->workingCopy);
    for (std::size_t i = 0; i < manifest->items.size(); ++i) {
        ManifestItem each = manifest->items[i];
        acceptLaterResults(each, later);
        const UndoPlace place(manifest->workingCopy.str(), each);
        const PlacedItem placed = place.put(directory.contentOf(result.entry.id, i));
        if (placed.isInPlace) {
            result.restored.push_back(each.item.path);
        } else {
            result.refused.push_back({each.item.path, placed.reason, placed.beside});
            isAllSomewhere = isAllSomewhere && !placed.beside.isNil();
        }
    }
    if (isAllSomewhere) {
        directory.remove(result.entry.id);
    }
    return result;
}

} // namespace quen
