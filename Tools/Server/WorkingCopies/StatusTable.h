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

/// The items of a working copy, by path.
///
/// Threads: one at a time.
class StatusTable {
public:
    using Items = std::map<std::string, StatusItem, std::less<>>;

    /// The report of everything.
    StatusChange replaceAll(std::vector<StatusItem> items);
    /// The report of some paths, with all that lies below them.
    StatusChange replaceBelow(const std::vector<std::string>& paths, std::vector<StatusItem> items);

    const Items& items() const noexcept { return items_; }
    /// The number of items by status word.
    std::map<std::string, std::size_t> counts(bool includeIgnored) const;
    /// The item itself or the one above it that is not versioned; null where there is none.
    const StatusItem* unversionedAt(std::string_view path) const;

private:
    void take(std::vector<StatusItem> items, Items& former, StatusChange& change);

    Items items_;
};

} // namespace quen::tools::server
