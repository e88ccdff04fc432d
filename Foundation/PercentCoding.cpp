#include "Foundation/PercentCoding.h"

namespace quen {

namespace {

constexpr std::string_view digits = "0123456789ABCDEF";

bool isAlphanumeric(char c) noexcept {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9');
}

/// -1 for what is not a digit.
int hexValue(char c) noexcept {
    const char capital = c >= 'a' && c <= 'f' ? static_cast<char>(c - 'a' + 'A') : c;
    const std::size_t digit = digits.find(capital);
    return digit == std::string_view::npos ? -1 : static_cast<int>(digit);
}

} // namespace

std::array<char, 3> percentCode(char byte) noexcept {
    const auto value = static_cast<unsigned char>(byte);
    return {'%', digits[value >> 4U], digits[value & 15U]};
}

std::optional<char> byteOfPercentCode(std::string_view text) noexcept {
    if (text.size() < 3 || text[0] != '%' || hexValue(text[1]) < 0 || hexValue(text[2]) < 0) {
        return std::nullopt;
    }
    return static_cast<char>(hexValue(text[1]) * 16 + hexValue(text[2]));
}

std::string percentEncoded(std::string_view text, std::string_view plain) {
    std::string encoded;
    encoded.reserve(text.size());
    for (const char c : text) {
        if (isAlphanumeric(c) || plain.find(c) != std::string_view::npos) {
            encoded += c;
        } else {
            const std::array<char, 3> code = percentCode(c);
            encoded.append(code.data(), code.size());
        }
    }
    return encoded;
}

std::string percentDecoded(std::string_view text) {
    std::string decoded;
    decoded.reserve(text.size());
    while (!text.empty()) {
        const std::optional<char> byte = byteOfPercentCode(text);
        decoded += byte.value_or(text.front());
        text.remove_prefix(byte ? 3 : 1);
    }
    return decoded;
}

} // namespace quen
