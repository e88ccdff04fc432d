#pragma once

#include "Tools/Server/WorkingCopies/StatusTable.h"

#include <condition_variable>
#include <cstdint>
#include <memory>
#include <mutex>
#include <optional>
#include <stop_token>
#include <string>
#include <vector>

namespace quen::tools::server {

/// What a working copy is, as the client says it.
struct WorkingCopyFacts {
    /// The real path of its top directory, which is its identity.
    std::string root;
    std::string url;
    std::string repositoryRoot;
    std::string repositoryUUID;
    std::optional<std::int64_t> revision;
    /// nil where the URL lies neither on the trunk nor on a branch.
    String branch;
    bool isTrunk = false;
    /// What the database looked like when the client was asked.
    std::string databaseStamp = {};
};

/// An open working copy with what is kept of it.
///
/// Threads: any. Whoever refreshes takes a turn, so that an older report never follows a newer one.
class WorkingCopy {
public:
    explicit WorkingCopy(WorkingCopyFacts facts) : facts_(std::move(facts)), root_(facts_.root) {}

    const std::string& root() const noexcept { return root_; }
    WorkingCopyFacts facts() const;
    void setFacts(WorkingCopyFacts facts);

    /// The turn to refresh, until it is destroyed.
    class Turn {
    public:
        explicit Turn(WorkingCopy& copy) : copy_(&copy) {}
        Turn(Turn&& other) noexcept : copy_(std::exchange(other.copy_, nullptr)) {}
        Turn& operator=(Turn&&) = delete;
        ~Turn();

    private:
        WorkingCopy* copy_;
    };
    /// nullopt where `stop` comes first.
    std::optional<Turn> takeTurn(const std::stop_token& stop);

    struct Summary {
        std::uint64_t generation = 0;
        std::map<std::string, std::size_t> counts;
    };
    /// Whoever asks for ignored items once is told of their changes from then on.
    Summary summary(bool includeIgnored);
    struct Snapshot {
        Summary summary;
        std::vector<StatusItem> items;
    };
    /// Likewise, with the items.
    Snapshot snapshot(bool includeIgnored);

    /// What is left of a change for the client to hear; nothing where it hears of none.
    struct News {
        std::uint64_t generation = 0;
        StatusChange change;
        std::map<std::string, std::size_t> counts;
    };
    /// A whole report, once it is taken in: the generation that it is, and what it changed.
    struct TakenIn {
        std::uint64_t generation = 0;
        std::optional<News> news;
    };
    TakenIn replaceAll(StatusItems items);
    std::optional<News> replaceBelow(const std::vector<std::string>& paths,
                                     const StatusItems& items);

    /// What is kept of a path and of what lies below it.
    std::vector<StatusItem> itemsAtOrBelow(const std::string& path) const;

    /// Whether a full report has been taken in.
    bool isKnown() const;
    /// The item at the path, or above it, that is not versioned; empty where there is none.
    std::string unversionedAt(const std::string& path) const;
    /// Directories that are working copies of their own: externals, and what may hold nested ones.
    std::vector<std::string> externals() const;
    std::vector<std::string> unversionedPaths() const;
    bool isInsideExternal(std::string_view path) const;
    /// Whether there is an item of exactly this path.
    bool knows(std::string_view path) const;

    /// About what is kept takes, where an item takes so much beside its path.
    std::size_t bytes(std::size_t ofItem) const;

    /// A change of the server's own is going on: what happens to the database is its doing.
    void beginChange();
    void endChange();
    bool isChanging() const;

    /// What the database looked like when the last report was asked for, so that the server's own
    /// changes are not seen as another's.
    std::string databaseStamp() const;
    void setDatabaseStamp(std::string stamp);

private:
    Summary summarise(bool includeIgnored);
    std::optional<News> newsOf(StatusChange change);

    mutable std::mutex mutex_;
    std::condition_variable_any turnIsFree_;
    WorkingCopyFacts facts_;
    const std::string root_;
    StatusTable table_;
    std::uint64_t generation_ = 0;
    std::string databaseStamp_;
    int changes_ = 0;
    bool isKnown_ = false;
    bool isTurnTaken_ = false;
    bool showsIgnored_ = false;
};

using WorkingCopyPtr = std::shared_ptr<WorkingCopy>;

} // namespace quen::tools::server
