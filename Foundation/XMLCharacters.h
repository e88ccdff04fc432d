#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace quen {

/// What characters plain reports may hold, in UTF-8. Private to the XML reader.

struct XMLCharacter {
    /// Its bytes. 0 where there is none, and nothing that comes makes it one.
    std::size_t length = 0;
    /// False also where bytes are missing.
    bool isKnown = false;
};

/// The character, one that is not ASCII, at the beginning of `bytes`, of which there is one.
XMLCharacter xmlCharacter(std::string_view bytes) noexcept;

/// Appends what a reference stands for; `name` is what stands between its ampersand and its
/// semicolon. False where that is not known, or no character of XML.
bool appendXMLReference(std::string& text, std::string_view name);

} // namespace quen
