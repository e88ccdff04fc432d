#include "Foundation/XMLCharacters.h"

#include <charconv>
#include <cstdint>
#include <optional>
#include <system_error>

namespace quen {

namespace {

constexpr unsigned byteOf(char c) noexcept {
    return static_cast<unsigned char>(c);
}

/// The bytes of a character that is not ASCII, by the first; 0 where none begins so.
std::size_t lengthOfCharacter(char first) noexcept {
    const unsigned byte = byteOf(first);
    return byte < 0xC2 ? 0 : byte < 0xE0 ? 2 : byte < 0xF0 ? 3 : byte < 0xF5 ? 4 : 0;
}

/// Neither longer than it need be, nor half of a pair, nor above the last; 0 where the bytes make
/// no character of two bytes or more.
char32_t characterOf(std::string_view bytes) noexcept {
    constexpr char32_t leasts[] = {0, 0, 0x80, 0x800, 0x10000};
    char32_t character = byteOf(bytes[0]) & (0xFFU >> (bytes.size() + 1));
    for (const char c : bytes.substr(1)) {
        if ((byteOf(c) & 0xC0U) != 0x80) {
            return 0;
        }
        character = character << 6U | (byteOf(c) & 0x3FU);
    }
    return character < leasts[bytes.size()] ? 0 : character;
}

bool isCharacter(char32_t c) noexcept {
    return c == '\t' || c == '\n' || c == '\r' || (c >= 0x20 && c < 0xD800) ||
           (c >= 0xE000 && c < 0xFFFE) || (c >= 0x10000 && c < 0x110000);
}

void append(std::string& text, char32_t c) {
    const auto continuation = [&](unsigned shift) {
        text += static_cast<char>(0x80U | (c >> shift & 0x3FU));
    };
    if (c < 0x80) {
        text += static_cast<char>(c);
        return;
    }
    if (c < 0x800) {
        text += static_cast<char>(0xC0U | c >> 6U);
    } else if (c < 0x10000) {
        text += static_cast<char>(0xE0U | c >> 12U);
        continuation(6);
    } else {
        text += static_cast<char>(0xF0U | c >> 18U);
        continuation(12);
        continuation(6);
    }
    continuation(0);
}

std::optional<char32_t> numberOf(std::string_view digits) noexcept {
    const int base = digits.starts_with('x') ? 16 : 10;
    digits.remove_prefix(base == 16 ? 1 : 0);
    std::uint32_t number = 0;
    const char* const end = digits.data() + digits.size();
    const auto [stop, error] = std::from_chars(digits.data(), end, number, base);
    const bool isNumber = !digits.empty() && error == std::errc() && stop == end;
    return isNumber && isCharacter(number) ? std::optional<char32_t>(number) : std::nullopt;
}

/// What a reference stands for; `name` is what is between its signs.
std::optional<char32_t> meaningOf(std::string_view name) noexcept {
    if (name.starts_with('#')) {
        return numberOf(name.substr(1));
    }
    constexpr struct {
        std::string_view name;
        char character;
    } entities[] = {{"lt", '<'}, {"gt", '>'}, {"amp", '&'}, {"quot", '"'}, {"apos", '\''}};
    for (const auto& entity : entities) {
        if (entity.name == name) {
            return static_cast<char32_t>(entity.character);
        }
    }
    return std::nullopt;
}

} // namespace

XMLCharacter xmlCharacter(std::string_view bytes) noexcept {
    const std::size_t length = lengthOfCharacter(bytes.front());
    if (length == 0 || bytes.size() < length) {
        return {length, false};
    }
    const bool isKnown = isCharacter(characterOf(bytes.substr(0, length)));
    return {isKnown ? length : 0, isKnown};
}

bool appendXMLReference(std::string& text, std::string_view name) {
    const auto meaning = meaningOf(name);
    if (meaning) {
        append(text, *meaning);
    }
    return meaning.has_value();
}

} // namespace quen
