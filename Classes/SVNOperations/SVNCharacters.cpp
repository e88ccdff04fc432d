#include "Classes/SVNOperations/SVNCharacters.h"

#include <algorithm>
#include <utf8proc.h>

namespace quen {

namespace {

struct Character {
    /// -1 for a byte that begins no well-formed sequence.
    utf8proc_int32_t codepoint = -1;
    std::size_t length = 1;
};

/// `text` must not be empty.
Character characterAt(std::string_view text) noexcept {
    Character character;
    const utf8proc_ssize_t length =
        utf8proc_iterate(reinterpret_cast<const utf8proc_uint8_t*>(text.data()),
                         static_cast<utf8proc_ssize_t>(text.size()), &character.codepoint);
    if (length > 0) {
        character.length = static_cast<std::size_t>(length);
    } else {
        character.codepoint = -1;
    }
    return character;
}

/// The classes stand in this order: the letters, the marks, the digits and other numbers.
bool isAlphanumeric(utf8proc_int32_t codepoint) noexcept {
    const utf8proc_category_t category = utf8proc_category(codepoint);
    return category >= UTF8PROC_CATEGORY_LU && category <= UTF8PROC_CATEGORY_NO;
}

bool isWhiteSpace(utf8proc_int32_t codepoint) noexcept {
    if ((codepoint >= 0x09 && codepoint <= 0x0D) || codepoint == 0x85) {
        return true;
    }
    const utf8proc_category_t category = utf8proc_category(codepoint);
    return category == UTF8PROC_CATEGORY_ZS || category == UTF8PROC_CATEGORY_ZL ||
           category == UTF8PROC_CATEGORY_ZP;
}

} // namespace

std::string_view firstCharacterOf(std::string_view text) noexcept {
    return text.empty() ? text : text.substr(0, characterAt(text).length);
}

std::string_view withoutLeadingWhiteSpace(std::string_view text) noexcept {
    while (!text.empty()) {
        const Character character = characterAt(text);
        if (character.codepoint < 0 || !isWhiteSpace(character.codepoint)) {
            break;
        }
        text.remove_prefix(character.length);
    }
    return text;
}

bool holdsAlphanumeric(std::string_view text) noexcept {
    while (!text.empty()) {
        const Character character = characterAt(text);
        if (character.codepoint >= 0 && isAlphanumeric(character.codepoint)) {
            return true;
        }
        text.remove_prefix(character.length);
    }
    return false;
}

} // namespace quen
