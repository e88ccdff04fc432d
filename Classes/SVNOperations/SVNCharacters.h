#pragma once

#include <string_view>

namespace quen {

/// The first character of a UTF-8 text; one byte where it is not well-formed, nothing of an empty
/// text.
std::string_view firstCharacterOf(std::string_view text) noexcept;

/// The text behind the white space that it begins with: Unicode's separators of every kind, the
/// tabulator, and the controls that end a line (U+000A to U+000D, U+0085).
std::string_view withoutLeadingWhiteSpace(std::string_view text) noexcept;

/// Whether any character is a letter, a mark or a digit by Unicode's classes. Bytes that are not
/// UTF-8 are not characters.
bool holdsAlphanumeric(std::string_view text) noexcept;

} // namespace quen
