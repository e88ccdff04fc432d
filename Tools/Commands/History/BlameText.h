#pragma once

#include "Tools/Commands/History/BlameLines.h"
#include "Tools/Terminal/Style.h"

#include <string_view>

namespace quen::tools {

/// What is said of the lines that no revision is known for.
struct BlameFormat {
    /// They are older than what was asked for; otherwise they are changes of today.
    bool isRange = false;
};

/// Prints the lines of a text with who changed them last, for people. `*` behind a revision says
/// that it is an ignored one, and that nothing stood in the line's place before.
void printBlame(const BlameLines& lines, std::string_view text, const BlameFormat& format,
                const Palette& palette);

/// Prints one JSON object a line of the text.
void printBlameInLines(const BlameLines& lines, std::string_view text);

/// The records that the provider makes of the lines, with `ignoredRevision` in addition where an
/// ignored one changed the line last.
Value blameRecords(const BlameLines& lines);

} // namespace quen::tools
