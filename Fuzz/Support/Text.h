#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace quen {

/// The client's output as a text, worked out byte by byte, to compare the host's answer with: UTF-8
/// as it is, ISO 8859-1 where it is not, nullopt for what is neither.
std::optional<std::string> expectedText(std::string_view bytes);

} // namespace quen
