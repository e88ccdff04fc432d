#pragma once

#include "Foundation/String.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <vector>

namespace quen {

/// A lock, as a working copy holds it or as the repository knows it. A text is nil where the report
/// does not hold it.
struct LockFacts {
    String token;
    String owner;
    String comment;
    /// Dates as the client writes them, in universal time.
    String created;
    String expires;
};

/// The revision in which an item last changed. The author is nil where there is none, and the
/// number where the report gives none.
struct CommitFacts {
    std::optional<std::int64_t> revision;
    String author;
    String date;
};

/// A text of a report that XML cannot hold, because control characters are part of it: the reason
/// why the report as a whole cannot be read by a strict reader.
struct UnreadableText {
    enum class Kind {
        /// The name of an item.
        path,
        /// The author of the item's last change.
        author,
        /// Anything else: the text of a lock, the name of a changelist.
        other,
    };
    Kind kind = Kind::path;
    /// The item that it belongs to, and the text itself, byte for byte.
    String path;
    String text;
};

} // namespace quen
