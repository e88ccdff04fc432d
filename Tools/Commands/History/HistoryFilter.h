#pragma once

#include "Foundation/Date.h"
#include "Host/Facts/HistoryFacts.h"
#include "Tools/Commands/CommandLine/Subcommand.h"

#include <optional>
#include <string>
#include <string_view>

namespace quen::tools {

/// Which revisions of a history are shown. The client has no options for this that a provider
/// could pass: it is done here, while the client writes.
struct HistoryFilter {
    /// A part of the author's name; letters of either case. Empty for anybody.
    std::string author;
    /// A part of the message or of a changed path that was asked for, likewise.
    std::string text;
    /// The earliest moment.
    std::optional<Date> since;

    void addTo(Subcommand& command);
    bool isGiven() const { return !author.empty() || !text.empty() || since.has_value(); }
    bool admits(const HistoryEntry& entry) const;
};

/// A moment as a person writes it: `2024-01-31`, `2024-01-31 10:00`, `3 days`, `2w`, `1 year ago`,
/// `yesterday`. nullopt for anything else. Dates are those of this machine's clock.
std::optional<Date> parseMoment(std::string_view text, Date now);

/// The date in the client's reports; nullopt for anything else.
std::optional<Date> dateOf(const CommitFacts& commit);

} // namespace quen::tools
