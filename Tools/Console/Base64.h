#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace quen::tools {

/// Padded, on one line.
std::string base64FromBytes(std::string_view bytes);

/// The bytes that a base64 text stands for (the alphabet with `+` and `/`, padded with `=`);
/// nullopt for anything else.
std::optional<std::string> bytesFromBase64(std::string_view text);

} // namespace quen::tools
