#pragma once

#include "Host/Facts/HistoryFacts.h"
#include "Tools/Server/Methods/Services.h"

#include <functional>
#include <stop_token>

namespace quen::tools::server {

/// A stretch of a history, the newest first.
struct HistoryQuery {
    /// A path or a URL.
    std::string location;
    /// As the client takes them; empty for its own default.
    std::string from;
    std::string to;
    std::int64_t limit = 0;
    bool files = false;
    bool stopOnCopy = false;
};

struct HistoryPage {
    std::vector<HistoryEntry> entries;
    /// Where the next page begins; nullopt at the end.
    std::optional<std::int64_t> next;
    Ran ran;
};

/// Reads a page; `watcher` is given its entries as the client writes them. What a URL holds from a
/// numbered revision on never changes, and is kept.
HistoryPage readHistory(const Services& services, const std::stop_token& stop,
                        const HistoryQuery& query,
                        const std::function<void(const std::vector<HistoryEntry>&)>& watcher);

} // namespace quen::tools::server
