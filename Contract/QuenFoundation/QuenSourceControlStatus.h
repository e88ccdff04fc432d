#pragma once

#include <cstdint>

namespace quen {

/// What a status record says of an item: bit flags, under the two status keys of a result and as
/// the values of a log record's files. 0 is nothing to report.
enum QuenSourceControlStatus : std::uint32_t {
    QuenSourceControlStatusNone = 0,
    QuenSourceControlStatusAdded = 1,
    QuenSourceControlStatusDeleted = 2,
    QuenSourceControlStatusModified = 4,
    QuenSourceControlStatusPropertiesModified = 8,
    QuenSourceControlStatusConflicted = 16,
    QuenSourceControlStatusPropertiesConflicted = 32,
    QuenSourceControlStatusIgnored = 128,
    QuenSourceControlStatusUnversioned = 256,
    /// Missing from the disk, or there only in part.
    QuenSourceControlStatusMissing = 512,
    /// Somebody else changed it in the repository.
    QuenSourceControlStatusModifiedInRepository = 1024,
    /// Something of another kind stands in its place.
    QuenSourceControlStatusObstructed = 2048,
    QuenSourceControlStatusAddedWithHistory = 4096,
    QuenSourceControlStatusReplaced = 8192,
};

} // namespace quen
