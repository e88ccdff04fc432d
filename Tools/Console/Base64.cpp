#include "Tools/Console/Base64.h"

#include <cstdint>

namespace quen::tools {

namespace {

constexpr std::string_view alphabet =
    "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";

} // namespace

std::string base64FromBytes(std::string_view bytes) {
    std::string text;
    text.reserve((bytes.size() + 2) / 3 * 4);
    std::uint32_t bits = 0;
    unsigned count = 0;
    for (const char c : bytes) {
        bits = (bits << 8) | static_cast<unsigned char>(c);
        count += 8;
        while (count >= 6) {
            count -= 6;
            text += alphabet[(bits >> count) & 0x3F];
        }
    }
    if (count > 0) {
        text += alphabet[(bits << (6 - count)) & 0x3F];
    }
    text.append((4 - text.size() % 4) % 4, '=');
    return text;
}

std::optional<std::string> bytesFromBase64(std::string_view text) {
    if (text.size() % 4 != 0) {
        return std::nullopt;
    }
    text = text.substr(0, text.size() - (text.ends_with("==") ? 2 : text.ends_with('=') ? 1 : 0));
    std::string bytes;
    std::uint32_t bits = 0;
    unsigned count = 0;
    for (const char c : text) {
        const std::size_t digit = alphabet.find(c);
        if (digit == std::string_view::npos) {
            return std::nullopt;
        }
        bits = (bits << 6) | static_cast<std::uint32_t>(digit);
        count += 6;
        if (count >= 8) {
            count -= 8;
            bytes += static_cast<char>((bits >> count) & 0xFF);
        }
    }
    return bytes;
}

} // namespace quen::tools
