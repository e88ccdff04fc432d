#pragma once

#include "Foundation/Value.h"
#include "Tools/Terminal/Style.h"

#include <string>
#include <string_view>

namespace quen::tools {

/// A record's text, safe to show; empty where the record has none.
std::string shownText(const Dictionary& record, const String& key);

/// An absolute path as a person would type it here, safe to show: relative at and below the working
/// directory.
std::string shownPath(std::string_view path);

/// Who changed something and when: `r12  alice  3 days ago (2024-01-01 10:11:12 +0100)`. What the
/// record does not say is left out, but for the author, whose absence is worth a word.
std::string changeLine(const Dictionary& record, const Palette& palette, Date now);

} // namespace quen::tools
