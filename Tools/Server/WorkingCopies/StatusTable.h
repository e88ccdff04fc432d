#pragma once

#include "Host/Facts/StatusFacts.h"
#include "Tools/Server/Wire/Message.h"

#include <cstddef>
#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace quen::tools::server {

/// One item with something to say, as the client's status tells it.
struct StatusItem {
    std::string path;
    /// The client's words; shared among the items.
    String status;
    String property;
    String incoming;
    String incomingProperty;
    String changelist;
    String movedFrom;
    String movedTo;
    String lockOwner;
    String lockComment;
    String lockCreated;
    std::optional<std::int64_t> revision;
    bool copied = false;
    bool treeConflict = false;
    bool locked = false;
    bool switched = false;
    bool external = false;

    bool isIgnored() const { return status == "ignored"; }
    bool isUnversioned() const { return status == "unversioned" || isIgnored(); }

    friend bool operator==(const StatusItem&, const StatusItem&) = default;
};

StatusItem statusItemOf(const StatusEntry& entry);

/// `path`, `status` and `property` always, the rest only where it says something.
OrderedJson statusItemJson(const StatusItem& item);

/// What a new report changed.
struct StatusChange {
    std::vector<StatusItem> changed;
    /// Items that have nothing to say any more.
    std::vector<StatusItem> removed;
    /// Those among the changed ones that are ignored now and were not before.
    std::vector<std::string> hidden;

    bool isEmpty() const noexcept { return changed.empty() && removed.empty(); }
};

/// Items by path, and how many of them there are of each kind.
///
/// Threads: one at a time.
class StatusItems {
public:
    using ByPath = std::map<std::string, StatusItem, std::less<>>;

    /// The later of two entries of a path counts: a report tells members of changelists again at
    /// its end. Quickest in the order of the paths.
    void put(StatusItem item);
    /// Takes out what lies at and below the path, and adds it to `others`.
    void moveTo(StatusItems& others, std::string_view path);

    const ByPath& byPath() const noexcept { return byPath_; }
    std::size_t countOf(std::string_view word) const;
    std::size_t externals() const noexcept { return externals_; }
    /// The number of items by status word.
    std::map<std::string, std::size_t> counts(bool includeIgnored) const;

private:
    ByPath byPath_;
    std::map<std::string, std::size_t, std::less<>> counts_;
    std::size_t externals_ = 0;
};

/// The items of a working copy, by path.
///
/// Threads: one at a time.
class StatusTable {
public:
    /// The report of everything, of which nobody needs to know what it changed.
    void fill(StatusItems items);
    /// The report of everything.
    StatusChange replaceAll(StatusItems items);
    /// The report of some paths, with all that lies below them.
    StatusChange replaceBelow(const std::vector<std::string>& paths, const StatusItems& items);

    const StatusItems& items() const noexcept { return items_; }
    /// The item itself or the one above it that is not versioned; null where there is none.
    const StatusItem* unversionedAt(std::string_view path) const;

private:
    StatusItems items_;
};

} // namespace quen::tools::server
