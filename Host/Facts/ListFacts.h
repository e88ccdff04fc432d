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

/// One item of `svn list --xml`.
struct ListEntry {
    /// What was listed, as the client printed it.
    String location;
    /// Below the location.
    String name;
    /// `file` or `dir`.
    String kind;
    /// In bytes; files have one.
    std::optional<std::int64_t> size;
    CommitFacts commit;
    std::shared_ptr<const LockFacts> lock;
};

/// A report of `svn list --xml`.
struct ListFacts {
    std::vector<ListEntry> entries;
    /// For want of more, the `path` of an author is the name of the item.
    std::vector<UnreadableText> unreadable;
};

/// Reads the bytes of a list; what is said of `StatusFactsReader` holds here.
class QUEN_EXPORT ListFactsReader {
public:
    ListFactsReader();
    ListFactsReader(ListFactsReader&&) noexcept;
    ListFactsReader& operator=(ListFactsReader&&) noexcept;
    ~ListFactsReader();

    void take(std::string_view piece);
    Error finish();
    const ListFacts& facts() const noexcept;
    /// What has been read since the last call, to keep. Reading may go on.
    ListFacts takeFacts();

private:
    struct State;
    std::unique_ptr<State> state_;
};

} // namespace quen
