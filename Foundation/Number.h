#pragma once

#include <charconv>
#include <cstdint>
#include <optional>
#include <string_view>
#include <system_error>

namespace quen {

/// The number that a text is, without anything before or behind it; nullopt for any other text and
/// for a number that the type cannot hold.
template <typename Number = std::int64_t>
std::optional<Number> numberFrom(std::string_view text, int base = 10) noexcept {
    Number number = 0;
    const char* const end = text.data() + text.size();
    const auto read = std::from_chars(text.data(), end, number, base);
    const bool isWhole = read.ec == std::errc() && read.ptr == end;
    return isWhole ? std::optional(number) : std::nullopt;
}

} // namespace quen
