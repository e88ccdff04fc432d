#include "Host/Keeping/UndoGathering.h"

#include "Host/Keeping/FileErrors.h"
#include "Host/Keeping/FileWriter.h"
#include "Host/Places/Locations.h"

#include <algorithm>
#include <cerrno>
#include <system_error>

namespace quen {

namespace fs = std::filesystem;

void UndoGathering::take(const String& path) {
    const fs::path place = fs::path(path.str()).lexically_normal();
    if (!isAtOrBelow(place.string(), workingCopy_)) {
        refuse(path.str(), "it lies outside the working copy");
        return;
    }
    takeOne(place);
}

void UndoGathering::takeOne(const fs::path& path) {
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

void UndoGathering::takeBelow(const fs::path& path) {
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

void UndoGathering::keepFile(const fs::path& path, const struct stat& facts) {
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

ManifestItem& UndoGathering::add(const fs::path& path, UndoItem::Kind kind,
                                 const struct stat& facts) {
    ManifestItem& added = manifest.items.emplace_back();
    added.item.path = path.string();
    added.item.kind = kind;
    added.permissions = facts.st_mode & 07777U;
    return added;
}

void UndoGathering::keepLink(const fs::path& path, const struct stat& facts) {
    std::error_code error;
    const fs::path destination = fs::read_symlink(path, error);
    if (error) {
        refuse(path, error.message());
        return;
    }
    add(path, UndoItem::Kind::link, facts).destination = destination.string();
}

} // namespace quen
