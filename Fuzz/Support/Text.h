#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace quen::fuzz {

/// The client's output as a text, worked out byte by byte, to compare the host's answer with: UTF-8
/// as it is; otherwise each line that is not UTF-8 from ISO 8859-1; nullopt for what holds a zero
/// byte and is not UTF-8.
std::optional<std::string> expectedText(std::string_view bytes);

} // namespace quen::fuzz
