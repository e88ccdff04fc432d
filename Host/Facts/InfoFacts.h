#pragma once

#include "Foundation/Export.h"
#include "Foundation/Value.h"
#include "Host/Facts/ReportFacts.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <string_view>
#include <vector>

namespace quen {

/// One conflict of an item. Texts are nil where the report does not hold them.
struct InfoConflict {
    /// `text`, `property` or `tree`.
    String type;
    /// What brought it: `update`, `switch` or `merge`.
    String operation;
    /// Of trees: what came in (`edit`, `add`, `delete`, `replace`), what stood against it (`edit`,
    /// `delete`, `missing`, `unversioned`, `add`, `moved-away`, `obstruction`, ..), and the kind of
    /// what it befell (`file`, `dir`).
    String action;
    String reason;
    String kind;
    /// What came in: where it lies in the repository, and in which revision.
    String incomingRepository;
    String incomingPath;
    String incomingKind;
    std::optional<std::int64_t> incomingRevision;
    /// The files that the client keeps beside: absolute paths.
    String previousBaseFile;
    String mineFile;
    String incomingFile;
    String propertyFile;

    friend bool operator==(const InfoConflict&, const InfoConflict&) = default;
};

/// A tree conflict in the client's own words, as its plain status prints them: `local file delete,
/// incoming file edit upon update`.
QUEN_EXPORT String descriptionOf(const InfoConflict& treeConflict);

/// All that the client says of one item in `svn info --xml`. A text is nil and a number absent
/// where the report does not hold it: most are about working copies only.
struct InfoEntry {
    /// As the client printed it, byte for byte.
    String path;
    /// `file` or `dir`.
    String kind;
    String url;
    String repositoryRoot;
    String repositoryUUID;
    std::optional<std::int64_t> revision;
    CommitFacts commit;
    /// The absolute path of the working copy's top.
    String workingCopy;
    /// `normal`, `add`, `delete`, `replace`.
    String schedule;
    /// `infinity`, `immediates`, `files`, `empty`, `exclude`.
    String depth;
    String changelist;
    String checksum;
    String movedFrom;
    String movedTo;
    String copiedFromURL;
    std::optional<std::int64_t> copiedFromRevision;
    std::shared_ptr<const LockFacts> lock;
    /// Each once, though the client may print a pair twice.
    std::vector<InfoConflict> conflicts;
};

/// A report of `svn info --xml`.
struct InfoFacts {
    std::vector<InfoEntry> entries;
    std::vector<UnreadableText> unreadable;
};

/// Reads the bytes of an info; what is said of `StatusFactsReader` holds here.
class QUEN_EXPORT InfoFactsReader {
public:
    InfoFactsReader();
    InfoFactsReader(InfoFactsReader&&) noexcept;
    InfoFactsReader& operator=(InfoFactsReader&&) noexcept;
    ~InfoFactsReader();

    void take(std::string_view piece);
    Error finish();
    const InfoFacts& facts() const noexcept;
    InfoFacts takeFacts();

private:
    struct State;
    std::unique_ptr<State> state_;
};

} // namespace quen
