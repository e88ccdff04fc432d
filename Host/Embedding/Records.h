#pragma once

#include "Foundation/Date.h"
#include "Foundation/Export.h"
#include "Foundation/Value.h"
#include "QuenFoundation/QuenSourceControlStatus.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

/// The records of results, each kind as a structure. What the client did not say is empty or
/// absent; a record of another shape than expected gives a structure with nothing in it, so that
/// the number of records is kept.
namespace quen {

/// A set of status flags.
class StatusFlags {
public:
    constexpr StatusFlags() = default;
    explicit constexpr StatusFlags(std::uint32_t flags) : flags_(flags) {}

    constexpr bool has(QuenSourceControlStatus flag) const { return (flags_ & flag) != 0; }
    constexpr bool isNone() const { return flags_ == 0; }
    constexpr std::uint32_t value() const { return flags_; }
    friend constexpr bool operator==(StatusFlags, StatusFlags) = default;

private:
    std::uint32_t flags_ = 0;
};

/// One item of `RequestTypeStatus` or `RequestTypeRemoteStatus`.
struct QUEN_EXPORT StatusItem {
    /// In the form in which it was asked for: absolute where the request's file was.
    std::string path;
    StatusFlags local;
    /// What somebody else has changed; of a remote status alone.
    StatusFlags repository;

    /// Changed here, in conflict or missing. Unversioned and ignored items are not.
    bool isChanged() const;
    bool isConflicted() const;
    bool isUnversioned() const { return local.has(QuenSourceControlStatusUnversioned); }
    bool isIgnored() const { return local.has(QuenSourceControlStatusIgnored); }
};

/// A path that a revision changed.
struct ChangedPath {
    std::string path;
    StatusFlags status;
    /// Whether it is a directory; absent where the report does not say.
    std::optional<bool> isDirectory = std::nullopt;
};

/// One revision of `RequestTypeLog` or `RequestTypeLogAll`.
struct LogEntry {
    std::int64_t revision = 0;
    /// Empty where nobody is named.
    std::string author;
    std::optional<Date> date;
    std::string message;
    /// Empty where they were not asked for.
    std::vector<ChangedPath> changedPaths;
};

/// One line of `RequestTypeBlame`. A line that is not committed has no revision.
struct BlameLine {
    /// From 1.
    std::int64_t line = 0;
    std::optional<std::int64_t> revision;
    std::string author;
    std::optional<Date> date;
};

/// One item of `RequestTypeInfo`.
struct ItemInfo {
    std::string url;
    std::string repositoryRoot;
    std::optional<std::int64_t> revision;
    std::string author;
    std::optional<Date> date;
};

/// One name of `RequestTypeList` or `RequestTypeListBranches`.
struct ListItem {
    std::string name;
    bool isDirectory = false;
};

QUEN_EXPORT std::vector<StatusItem> statusItems(const Value& result);
QUEN_EXPORT std::vector<LogEntry> logEntries(const Value& result);
QUEN_EXPORT std::vector<BlameLine> blameLines(const Value& result);
QUEN_EXPORT std::vector<ItemInfo> itemInfos(const Value& result);
QUEN_EXPORT std::vector<ListItem> listItems(const Value& result);
/// Of `RequestTypeDiff` with a destination.
QUEN_EXPORT std::vector<ChangedPath> changedPaths(const Value& result);
/// Of `RequestTypeDiff` without a destination; empty where nothing differs.
QUEN_EXPORT std::string differenceText(const Value& result);
/// Of `RequestTypeCommit`; absent where there was nothing to commit.
QUEN_EXPORT std::optional<std::int64_t> committedRevision(const Value& result);
/// Of `RequestTypeCheckout` and `RequestTypeExportFile`; empty where there is none. An exported
/// file goes with the last holder of the result.
QUEN_EXPORT std::string writtenPath(const Value& result);
/// Of `RequestTypeCurrentBranch`: the branch's name, which is that of
/// `QuenSourceControlTrunkBranchName` for the trunk; empty where it is on neither.
QUEN_EXPORT std::string branchName(const Value& result);

} // namespace quen
