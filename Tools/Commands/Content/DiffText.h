#pragma once

#include "Tools/Terminal/Style.h"

#include <string>
#include <string_view>

namespace quen::tools {

/// The text of a difference for a person: safe to show, additions and removals in their colours,
/// the lines between the changes of one file as headings.
std::string shownDifference(std::string_view text, const Palette& palette);

} // namespace quen::tools
