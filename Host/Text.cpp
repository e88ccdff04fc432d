#include "Host/Text.h"

#include <algorithm>
#include <utf8proc.h>

namespace quen {

namespace {

struct Character {
    /// -1 for a byte that begins no well-formed sequence.
    utf8proc_int32_t codepoint = -1;
    std::size_t length = 1;
};

/// `bytes` must not be empty.
Character firstCharacter(std::string_view bytes) noexcept {
    if (static_cast<unsigned char>(bytes.front()) < 0x80) {
        return {static_cast<unsigned char>(bytes.front()), 1};
    }
    Character character;
    const auto length =
        utf8proc_iterate(reinterpret_cast<const utf8proc_uint8_t*>(bytes.data()),
                         static_cast<utf8proc_ssize_t>(std::min<std::size_t>(bytes.size(), 4)),
                         &character.codepoint);
    if (length > 0) {
        character.length = static_cast<std::size_t>(length);
    } else {
        character.codepoint = -1;
    }
    return character;
}

} // namespace

bool isUTF8(std::string_view bytes) noexcept {
    while (!bytes.empty()) {
        const Character character = firstCharacter(bytes);
        if (character.codepoint < 0) {
            return false;
        }
        bytes.remove_prefix(character.length);
    }
    return true;
}

std::string fromLatin1(std::string_view bytes) {
    std::string text;
    text.reserve(bytes.size() + bytes.size() / 8);
    for (const char c : bytes) {
        const auto byte = static_cast<unsigned char>(c);
        if (byte < 0x80) {
            text += c;
        } else {
            text += static_cast<char>(0xC0 | (byte >> 6));
            text += static_cast<char>(0x80 | (byte & 0x3F));
        }
    }
    return text;
}

std::string replacingInvalidUTF8(std::string_view bytes) {
    std::string text;
    while (!bytes.empty()) {
        const Character character = firstCharacter(bytes);
        text += character.codepoint < 0 ? std::string_view("\xEF\xBF\xBD")
                                        : bytes.substr(0, character.length);
        bytes.remove_prefix(character.length);
    }
    return text;
}

std::size_t terminalWidth(std::string_view text) noexcept {
    std::size_t width = 0;
    while (!text.empty()) {
        const Character character = firstCharacter(text);
        width +=
            character.codepoint < 0
                ? 1
                : static_cast<std::size_t>(std::max(0, utf8proc_charwidth(character.codepoint)));
        text.remove_prefix(character.length);
    }
    return width;
}

} // namespace quen
