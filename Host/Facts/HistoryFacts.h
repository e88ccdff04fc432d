#pragma once

#include "Foundation/Value.h"
#include "Host/Facts/ReportFacts.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string_view>
#include <vector>

namespace quen {

/// One item that a revision changed.
struct HistoryPath {
    /// Below the repository's root: `/trunk/a.c`.
    String path;
    /// `A`, `D`, `M` or `R`.
    char action = 'M';
    /// `file` or `dir`; nil where the report does not say.
    String kind;
    /// Where a copy comes from; nil and absent for anything else.
    String copiedFrom;
    std::optional<std::int64_t> copiedFromRevision;
};

/// One revision of `svn log --xml`.
struct HistoryEntry {
    /// The revision, author and date. An author or date that may not be read is nil.
    CommitFacts commit;
    String message;
    /// Where the report holds them (`-v`).
    std::vector<HistoryPath> paths;
    /// The revisions that it merged, where the report was asked for them (`-g`); each may have
    /// merged others in its turn.
    std::vector<HistoryEntry> merged;
};

/// Reads the bytes of a log while the client writes them, and hands each revision over as soon as
/// it is there; keeps none. Control characters, which a strict reader refuses, stay as they are: a
/// host makes them harmless before a terminal sees them.
///
/// Threads: one thread at a time.
class HistoryReader {
public:
    using Taker = std::function<void(const HistoryEntry& entry)>;

    explicit HistoryReader(Taker take);
    ~HistoryReader();

    void take(std::string_view piece);
    /// Ends the report; call once. nil when all of it was read; otherwise why not.
    Error finish();

private:
    struct State;
    std::unique_ptr<State> state_;
};

/// Likewise the lines of `svn blame --xml`: what each was changed in. A line without a revision is
/// not committed, or older than the range that was asked for.
class BlameReader {
public:
    using Taker = std::function<void(const CommitFacts& line)>;

    explicit BlameReader(Taker take);
    ~BlameReader();

    void take(std::string_view piece);
    Error finish();

private:
    struct State;
    std::unique_ptr<State> state_;
};

} // namespace quen
