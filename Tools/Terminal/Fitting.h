#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace quen::tools {

/// The text in at most `width` cells of a terminal. Of one that is too long the middle is left out:
/// the front says what is done, the end which file it is done to.
std::string fittingText(std::string_view text, std::size_t width);

/// Likewise; of a text that is too long the end is left out.
std::string startingText(std::string_view text, std::size_t width);

/// Likewise, in exactly `width` cells: a shorter one is followed by blanks.
std::string columnText(std::string_view text, std::size_t width);

/// The text with line feeds between its words, so that its lines take at most `width` cells; all
/// but the first begin with `indent` blanks. With very little room, or a very long word, they take
/// more.
std::string wrappedText(const std::string& text, std::size_t indent, std::size_t width);

} // namespace quen::tools
