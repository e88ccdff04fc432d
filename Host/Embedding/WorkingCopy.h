#pragma once

#include "Foundation/Export.h"
#include "Host/Embedding/Records.h"
#include "QuenFoundation/QuenSourceControlProtocol.h"

#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace quen {

/// What a question answers. Both may be there: a status of two paths, one of which is not under
/// version control, has items for the one and an error for the other.
template <typename Items> struct Answer {
    Items items = {};
    /// nil where all went well.
    Error error = {};
};

/// One page of a history, newest first.
struct LogPage {
    std::vector<LogEntry> entries;
    Error error;
    /// Where the next page begins; absent where this is the last one, and after an error.
    std::optional<std::int64_t> next;
};

/// A working copy, and what environments ask of one. Each call runs the client on the calling
/// thread, in the context that is current; call it from a thread that may wait. Paths are absolute.
///
/// Threads: one that changes (`addIgnored`, `removeIgnored`) at a time; questions from any thread.
class QUEN_EXPORT WorkingCopy {
public:
    /// `repository` is what its requests authenticate at; where it is null, one that can be reached
    /// and has no name stands in for it.
    WorkingCopy(QuenSourceControlProtocolPtr provider, std::string directory,
                QuenSourceControlRepositoryPtr repository = nullptr);

    const std::string& directory() const { return directory_; }
    /// For requests of one's own.
    const QuenSourceControlSourceTreePtr& tree() const { return tree_; }
    const QuenSourceControlRepositoryPtr& repository() const { return repository_; }

    /// Everything that is not as it was checked out, at or below the path: changed, added, removed,
    /// missing, in conflict, and what is not under version control. Ignored items are left out.
    Answer<std::vector<StatusItem>> localChanges(const std::string& path) const;
    Answer<std::vector<StatusItem>> localChanges() const { return localChanges(directory_); }
    /// The changes of the paths as one text, as `diff` writes it.
    Answer<std::string> localDifference(const std::vector<std::string>& paths) const;

    /// At most `size` revisions of the path, from `start` backwards; without `start` from the
    /// youngest one that the path was updated to.
    LogPage log(const std::string& path, std::size_t size,
                std::optional<std::int64_t> start = std::nullopt, bool withPaths = false) const;
    Answer<std::vector<BlameLine>> blame(const std::string& file) const;
    Answer<std::optional<ItemInfo>> info(const std::string& path) const;

    /// Adds the files' names to the lists of ignored names of their directories, or takes them out.
    /// An edit that the client refused is an error too, which the operation itself leaves out. A
    /// name that cannot stand in a list is refused before anything is done.
    Error addIgnored(const std::vector<std::string>& files) const;
    Error removeIgnored(const std::vector<std::string>& files) const;

private:
    Error editIgnored(std::int32_t type, const std::vector<std::string>& files) const;

    QuenSourceControlProtocolPtr provider_;
    std::string directory_;
    QuenSourceControlRepositoryPtr repository_;
    QuenSourceControlSourceTreePtr tree_;
};

} // namespace quen
