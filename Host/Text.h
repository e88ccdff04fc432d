#pragma once

#include <string>
#include <string_view>

namespace quen {

/// Whether every byte belongs to a well-formed UTF-8 sequence.
bool isUTF8(std::string_view bytes) noexcept;

/// ISO 8859-1 as UTF-8: every byte is the character of its number.
std::string fromLatin1(std::string_view bytes);

/// The text with U+FFFD for each byte that is not part of well-formed UTF-8.
std::string replacingInvalidUTF8(std::string_view bytes);

/// How many cells of a terminal the text takes: 0 for combining marks, 2 for wide characters.
std::size_t terminalWidth(std::string_view text) noexcept;

} // namespace quen
