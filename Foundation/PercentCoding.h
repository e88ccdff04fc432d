#pragma once

#include "Foundation/Export.h"

#include <array>
#include <optional>
#include <string>
#include <string_view>

namespace quen {

/// Percent coding, as in URLs: `%20` stands for a blank, any byte for itself as `%` and two
/// hexadecimal digits.

/// The code of a byte, in capitals.
QUEN_EXPORT std::array<char, 3> percentCode(char byte) noexcept;

/// The byte whose code the text begins with, in capitals or not; nullopt where it begins with none.
QUEN_EXPORT std::optional<char> byteOfPercentCode(std::string_view text) noexcept;

/// Every byte as its code, but for the letters and digits of ASCII and what is in `plain`.
QUEN_EXPORT std::string percentEncoded(std::string_view text, std::string_view plain);

/// Every code as its byte; a `%` that begins none stays.
QUEN_EXPORT std::string percentDecoded(std::string_view text);

} // namespace quen
