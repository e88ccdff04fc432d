#pragma once

#include <string>
#include <string_view>

namespace quen::tools {

/// A text from outside, made safe to show: control characters, characters that change the direction
/// of writing or begin a line, and bytes that are not UTF-8, all of which could play tricks on a
/// terminal or its reader, are shown as U+FFFD, or as `?` where the locale is not one of UTF-8.
std::string printable(std::string_view text);

/// Likewise for a line of a text, whose tabs stay as they are.
std::string printableLine(std::string_view line);

/// Likewise for all that a terminal is sent: line feeds, tabs and this program's own colours stay.
std::string safeForTerminal(std::string_view text);

} // namespace quen::tools
