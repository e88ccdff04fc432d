#pragma once

#include "Foundation/String.h"
#include "Tools/Commands/CommandLine/Subcommand.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace quen::tools {

/// One revision or two, as a person writes them and as the client reads them: a number, a date in
/// braces, or one of the words HEAD, BASE, COMMITTED and PREV, which may be typed in small letters.
///
/// `~N` behind one is the Nth change before it, of the item that the command is about: what the
/// client does not read, and `resolveRevisions` replaces.
struct RevisionRange {
    /// Empty where none was given.
    std::string start;
    /// Empty for a single revision.
    std::string end;

    bool isGiven() const { return !start.empty(); }
    bool isRange() const { return !end.empty(); }
};

/// `12`, `r12`, `HEAD`, `{2024-01-01 10:00}`, `10:12`, `{2024-01-01}:HEAD`; `12^` and `HEAD~3`,
/// which become `12~1` and `HEAD~3`; nullopt for anything else.
std::optional<RevisionRange> parseRevisionRange(std::string_view text);

/// A revision as a request takes it at its start: the host's own names for HEAD and BASE, anything
/// else as it is, nil for none. Only for requests whose operation knows the names at that place; an
/// ending revision goes to the client word for word.
String startingRevisionFor(const std::string& revision);

/// `-r`, checked while the command line is read. `takesRange` says whether two revisions make
/// sense.
Parameter addRevisionOption(Subcommand& command, RevisionRange& revisions, bool takesRange,
                            const std::string& help);

/// What `-c` was given: revisions, negative ones for their reversal.
struct RevisionChanges {
    std::vector<std::int64_t> numbers;
};

/// `444`, `-444`, `r444`, `443,444`, `440-444`; nullopt for anything else.
std::optional<RevisionChanges> parseChanges(std::string_view text);

/// `-c`, checked while the command line is read.
Parameter addChangeOption(Subcommand& command, RevisionChanges& changes, const std::string& help);

} // namespace quen::tools
