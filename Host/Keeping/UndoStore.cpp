#include "Host/Keeping/UndoStore.h"

#include "Foundation/PathComponents.h"
#include "Host/Keeping/FileErrors.h"
#include "Host/Keeping/FileWriter.h"
#include "Host/Keeping/FreeName.h"
#include "Host/Keeping/UndoDirectory.h"
#include "Host/Keeping/UndoManifest.h"
#include "Host/Keeping/UndoPlace.h"

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <filesystem>
#include <sys/stat.h>
#include <system_error>
#include <utility>

namespace quen {

namespace {

namespace fs = std::filesystem;

/// What one step keeps, gathered item by item.
class Gathering {
public:
    Gathering(std::string directory, const String& workingCopy, std::uint64_t room)
        : directory_(std::move(directory)), workingCopy_(workingCopy.str()), room_(room) {}

    void take(const String& path);

    UndoManifest manifest;
    std::vector<UndoRefusal> refused;

private:
    void takeOne(const fs::path& path);
    void takeBelow(const fs::path& path);
    void keepFile(const fs::path& path, const struct stat& facts);
    void keepLink(const fs::path& path, const struct stat& facts);
    ManifestItem& add(const fs::path& path, UndoItem::Kind kind, const struct stat& facts);
    void refuse(const fs::path& path, std::string reason) {
        refused.push_back({String(path.string()), String(reason), {}});
    }

    const std::string directory_;
    const std::string workingCopy_;
    std::uint64_t room_;
};

void Gathering::take(const String& path) {
    const fs::path place = fs::path(path.str()).lexically_normal();
    if (!isAtOrBelow(place.string(), workingCopy_)) {
        refuse(path.str(), "it lies outside the working copy");
        return;
    }
    takeOne(place);
}

void Gathering::takeOne(const fs::path& path) {
    if (path.filename() == ".svn") {
        refuse(path, "the client's own records are never kept");
        return;
    }
    struct stat facts = {};
    if (::lstat(path.c_str(), &facts) != 0) {
        if (errno != ENOENT && errno != ENOTDIR) {
            refuse(
                path,
                fileError(errno, path.string(), "could not be read").localizedDescription().str());
        }
        return;
    }
    if (S_ISREG(facts.st_mode)) {
        keepFile(path, facts);
    } else if (S_ISLNK(facts.st_mode)) {
        keepLink(path, facts);
    } else if (S_ISDIR(facts.st_mode)) {
        add(path, UndoItem::Kind::directory, facts);
        takeBelow(path);
    } else {
        refuse(path, "it is neither a file, a link nor a directory");
    }
}

void Gathering::takeBelow(const fs::path& path) {
    std::error_code error;
    std::vector<fs::path> children;
    for (auto each = fs::directory_iterator(path, error);
         !error && each != fs::directory_iterator(); each.increment(error)) {
        children.push_back(each->path());
    }
    if (error) {
        refuse(path, error.message());
    }
    std::sort(children.begin(), children.end());
    for (const fs::path& child : children) {
        takeOne(child);
    }
}

void Gathering::keepFile(const fs::path& path, const struct stat& facts) {
    const auto size = static_cast<std::uint64_t>(facts.st_size);
    if (size > room_) {
        refuse(path, "it is larger than what can be kept (" + std::to_string(room_) + " bytes)");
        return;
    }
    FileWriter::Options options;
    options.mode = 0600;
    const std::string content = directory_ + "/" + std::to_string(manifest.items.size());
    if (const Error error = copyFile(String(path.string()), String(content), options)) {
        refuse(path, error.localizedDescription().str());
        return;
    }
    // It may have grown meanwhile.
    std::error_code ignored;
    const std::uint64_t kept = fs::file_size(content, ignored);
    room_ -= std::min(room_, kept);
    add(path, UndoItem::Kind::file, facts).item.size = kept;
}

ManifestItem& Gathering::add(const fs::path& path, UndoItem::Kind kind, const struct stat& facts) {
    ManifestItem& added = manifest.items.emplace_back();
    added.item.path = path.string();
    added.item.kind = kind;
    added.permissions = facts.st_mode & 07777U;
    return added;
}

void Gathering::keepLink(const fs::path& path, const struct stat& facts) {
    std::error_code error;
    const fs::path destination = fs::read_symlink(path, error);
    if (error) {
        refuse(path, error.message());
        return;
    }
    add(path, UndoItem::Kind::link, facts).destination = destination.string();
}

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

/// What a later step left in the item's place is no newer work: that step has kept what it met.
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
    Gathering gathering(unfinished, top, limits_.bytes);
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
