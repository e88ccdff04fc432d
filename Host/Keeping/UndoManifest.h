#pragma once

#include "Host/Keeping/UndoStore.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <sys/stat.h>
#include <vector>

namespace quen {

/// What tells one state of a place on the disk from another.
struct PlaceState {
    bool exists = false;
    std::uint64_t inode = 0;
    std::uint64_t size = 0;
    std::int64_t modified = 0; // nanoseconds
    std::int64_t changed = 0;  // nanoseconds

    static PlaceState at(const std::string& path);
    friend bool operator==(const PlaceState&, const PlaceState&) = default;
};

/// An item of a manifest: what UndoItem tells, and where its content lies.
struct ManifestItem {
    UndoItem item;
    mode_t permissions = 0;
    /// Of a link: where it leads.
    std::string destination;
    /// What the step left in its place; absent until that is noted.
    std::optional<PlaceState> left;
};

/// The manifest of one step, one fact a line: a word and values, separated by blanks, with every
/// byte that is not a plain character percent-encoded. Private to `UndoStore`.
///
///     quen-undo 1
///     workingCopy /home/jane/wc
///     step revert
///     time 1763000000000000
///     note colour%20of%20a.c
///     file 100644 12 /home/jane/wc/a.c
///     left 1 1234 12 1763000000000000000 1763000000000000000
///
/// The content of the n-th item, from 0, lies in the file `n` beside the manifest; `left` belongs
/// to the item before it.
struct UndoManifest {
    String workingCopy;
    String step;
    std::int64_t time = 0; // microseconds
    std::vector<String> notes;
    std::vector<ManifestItem> items;

    std::string text() const;
    /// nullopt for what is not a manifest of this form, or not all of one.
    static std::optional<UndoManifest> fromText(std::string_view text);

    UndoEntry entry(const String& id) const;
};

} // namespace quen
