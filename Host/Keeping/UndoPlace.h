#pragma once

#include "Host/Keeping/UndoManifest.h"

#include <string>
#include <string_view>

namespace quen {

/// What became of one item that was to be put back.
struct PlacedItem {
    bool isInPlace = false;
    /// Why not, and where it is instead; nil for nowhere.
    String reason;
    String beside;
};

/// The place of one item of an undo on the disk. Private to `UndoStore`. Directories that lead to
/// it are made; nothing is written outside the working copy.
class UndoPlace {
public:
    UndoPlace(std::string workingCopy, const ManifestItem& item)
        : workingCopy_(std::move(workingCopy)), item_(item), path_(item.item.path.str()) {}

    /// `content` is the file that holds what was kept of a file.
    PlacedItem put(const std::string& content) const;

private:
    PlacedItem putFile(const std::string& content) const;
    PlacedItem putLink() const;
    PlacedItem putDirectory() const;
    PlacedItem putBeside(const std::string& content) const;
    /// Empty where it is there and inside the working copy; otherwise why not.
    std::string makeParent() const;

    const std::string workingCopy_;
    const ManifestItem& item_;
    const std::string path_;
};

} // namespace quen
